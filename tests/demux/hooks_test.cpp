// Handlers that come and go, also while packets are in progress.

#include "tests/demux/table_demux.h"
#include "tests/support/faces.h"

#include <functional>

using namespace quillon;
using namespace quillon::test;

// Removal

TEST(Demux, RemovingTheLastTableOfAPidTakesItsFilters) {
  const uint8_t none = 0;
  TableDemux demux;
  demux.add_psi_handler(kPid, 0x43);
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.remove_psi_handler(kPid, kTable);
  demux.feed(packets({section_of(kTable, 20), section_of(0x43, 20)}));
  EXPECT_EQ(demux.order(), (Texts{"filtered 5", "section 256/67", "filtered 5"}));
  demux.heard.clear();
  demux.remove_psi_handler(kPid, 0x43);
  demux.feed(packets({section_of(kTable, 20), section_of(0x43, 20)}));
  EXPECT_TRUE(demux.heard.empty());
  EXPECT_EQ(report(demux), "");
}

TEST(Demux, RemovingAnUnknownTableChangesNothingUnlessThePidHasFiltersAlone) {
  const uint8_t none = 0;
  TableDemux demux;
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.add_psi_handler(0x101, &none, &none, 0, 6);
  demux.remove_psi_handler(kPid, 0x43);
  demux.remove_psi_handler(0x101, 0x43);
  demux.feed(joined({packets({section_of(kTable, 20)}), packets({section_of(kTable, 20)}, {.pid = 0x101})}));
  EXPECT_EQ(demux.order(), (Texts{"section 256/66", "filtered 5"}));
  EXPECT_EQ(report(demux), "pid: 100\ntable_id: 42\n");
}

TEST(Demux, RemovingFromAPidThatWasNeverAddedChangesNothing) {
  TableDemux demux;
  for (const int pid : {-1, 0, 0x101, 0x1FFF, 0x2000}) demux.remove_psi_handler(pid, kTable);
  EXPECT_EQ(report(demux), "pid: 100\ntable_id: 42\n");
}

TEST(Demux, ForgetsASectionInProgressWithItsHandler) {
  const Bytes section = section_of(kTable, 300);
  TableDemux demux;
  demux.add_psi_handler(kPid, 0x43);
  demux.feed(start_packet(kPid, 0, first(section, 183)));
  demux.remove_psi_handler(kPid, kTable);
  demux.add_psi_handler(kPid, kTable);
  demux.feed(next_packet(kPid, behind(section, 183)));
  EXPECT_TRUE(demux.heard.empty());
  demux.feed(packets({section}));
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(Demux, ResetRemovesEverything) {
  const uint8_t none = 0;
  TableDemux demux;
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.add_psi_handler(0x2001, 0x43);
  demux.reset();
  demux.feed(packets({section_of(kTable, 20)}));
  EXPECT_TRUE(demux.heard.empty());
  EXPECT_EQ(report(demux), "");
  demux.add_psi_handler(kPid, kTable);
  demux.feed(packets({section_of(kTable, 20)}));
  EXPECT_EQ(demux.heard.size(), 1u);
}

// Hooks that change the tables of handlers

namespace {

constexpr const char* kHooks[] = {"raw", "packet", "field", "section", "filtered"};

// Two tables and two filters; packets in which a section ends and two begin, with adaptation fields.
struct BusyDemux : RecordingDemux {
  explicit BusyDemux(bool every_section) {
    serve_every_section(every_section);
    add_handlers();
    add(packets({section_of(kTable, 300, 1), section_of(0x43, 20, 2), section_of(kTable, 400, 3),
                 section_of(0x43, 500, 4), section_of(0x44, 30, 5)},
                {.shared = true, .field = 3}));
  }
  void add_handlers() {
    add_psi_handler(kPid, kTable);
    add_psi_handler(kPid, 0x43);
    add_psi_handler(kPid, &none, &none, 0, 5);
    add_psi_handler(kPid, &none, &none, 0, 6);
  }
  static constexpr uint8_t none = 0;
};

struct Change {
  const char* name;
  std::function<void(BusyDemux&)> act;
};

const Change kChanges[] = {
    {"remove one table", [](BusyDemux& d) { d.remove_psi_handler(kPid, kTable); }},
    {"remove the other table", [](BusyDemux& d) { d.remove_psi_handler(kPid, 0x43); }},
    {"remove both tables",
     [](BusyDemux& d) {
       d.remove_psi_handler(kPid, kTable);
       d.remove_psi_handler(kPid, 0x43);
     }},
    {"reset", [](BusyDemux& d) { d.reset(); }},
    {"reset and add",
     [](BusyDemux& d) {
       d.reset();
       d.add_handlers();
     }},
    {"remove and add one table",
     [](BusyDemux& d) {
       d.remove_psi_handler(kPid, kTable);
       d.add_psi_handler(kPid, kTable);
     }},
    {"add a table and a PID",
     [](BusyDemux& d) {
       d.add_psi_handler(kPid, 0x44);
       d.add_psi_handler(0x1FFF, 0x44);
     }},
    {"stop", [](BusyDemux& d) { d.stop(9); }},
};

}  // namespace

TEST(DemuxHooks, MayChangeTheHandlersAtAnyCall) {
  for (const bool every_section : {false, true})
    for (const Change& change : kChanges)
      for (const char* hook : kHooks)
        for (int turn = 1; turn < 20; ++turn) {
          SCOPED_TRACE(std::string(change.name) + " in " + hook + " " + std::to_string(turn));
          BusyDemux demux(every_section);
          int left = turn;
          demux.then = [&](const std::string& called) {
            if (called == hook && --left == 0) change.act(demux);
          };
          const int result = demux.start();
          EXPECT_TRUE(result == 1 || result == 9);
          for (const Heard& h : demux.heard)
            if (h.key < 0) {
              EXPECT_EQ(h.bytes[0], h.table_id);
            }
        }
}

TEST(DemuxHooks, AreNotCalledAgainForWhatTheyRemoved) {
  for (const bool every_section : {false, true}) {
    // The table's hook removes everything: no filter hears of the section, no later packet is routed.
    BusyDemux all(every_section);
    all.then = [&](const std::string& hook) {
      if (hook == "section") all.reset();
    };
    all.start();
    EXPECT_EQ(all.order(), (Texts{"section 256/66"}));

    // The first filter's hook does: the second hears nothing.
    BusyDemux filters(every_section);
    filters.then = [&](const std::string& hook) {
      if (hook == "filtered") filters.reset();
    };
    filters.start();
    EXPECT_EQ(filters.heard.size(), 2u);
    EXPECT_EQ(filters.order().front(), "section 256/66");

    // Nor does anybody of the sections after it in the packet.
    TableDemux next(start_packet(kPid, 0, joined({section_of(kTable, 9), section_of(kTable, 9)})));
    next.serve_every_section(every_section);
    next.then = [&](const std::string& hook) {
      if (hook == "section") next.reset();
    };
    next.start();
    EXPECT_EQ(next.heard.size(), 1u);

    // One table removes the other, which begins in the same packet.
    BusyDemux other(every_section);
    other.then = [&](const std::string& hook) {
      if (hook == "section") other.remove_psi_handler(kPid, 0x43);
    };
    other.start();
    for (const Heard& h : other.heard) EXPECT_NE(h.table_id, 0x43);
    EXPECT_EQ(other.count("section 256/66"), every_section ? 2u : 1u);
  }
}

TEST(DemuxHooks, HearOfATableThatTheyAddedFromItsNextStartOn) {
  const Bytes one = section_of(kTable, 20, 1);
  const Bytes two = section_of(0x43, 20, 2);
  TableDemux demux(packets({two, one, two}));
  demux.then = [&](const std::string& hook) {
    if (hook == "section") demux.add_psi_handler(kPid, 0x43);
  };
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{one, two}));

  // Added in front of the routing, a PID has its handler in the same packet.
  RecordingDemux early(packets({one}, {.field = 0}));
  early.then = [&](const std::string& hook) {
    if (hook == "field") early.add_psi_handler(kPid, kTable);
  };
  early.start();
  EXPECT_EQ(early.sections(), (Sections{one}));
}

TEST(DemuxHooks, ThatReplaceTheirHandlerLeaveItWithoutTheRestOfThePacket) {
  const Bytes section = section_of(kTable, 20);
  TableDemux demux;
  demux.then = [&](const std::string& hook) {
    if (hook != "section") return;
    demux.remove_psi_handler(kPid, kTable);
    demux.add_psi_handler(kPid, kTable);
  };
  demux.feed(start_packet(kPid, 0, section));
  demux.feed(next_packet(kPid, section));
  EXPECT_EQ(demux.heard.size(), 1u);
  demux.feed(start_packet(kPid, 0, section));
  EXPECT_EQ(demux.heard.size(), 2u);
}

TEST(DemuxHooks, ThatThrowLeaveADemultiplexerThatGoesOn) {
  for (const char* hook : kHooks)
    for (const Change& change : kChanges)
      for (const bool every_section : {false, true}) {
        SCOPED_TRACE(std::string(hook) + ", " + change.name);
        BusyDemux demux(every_section);
        bool thrown = false;
        demux.then = [&](const std::string& called) {
          if (thrown || called != hook) return;
          thrown = true;
          change.act(demux);
          throw error("from the hook");
        };
        EXPECT_EQ(failure([&] { demux.start(); }), "-1: from the hook");
        const int result = demux.start();
        EXPECT_TRUE(result == 1 || result == 9);
        demux.reset();
        demux.add_handlers();
        EXPECT_EQ(demux.feed(packets({section_of(kTable, 50)})), result);
      }
}

TEST(DemuxHooks, ThatThrowKeepTheSectionInItsBuffer) {
  const Bytes section = section_of(kTable, 300);
  TableDemux demux;
  demux.then = [&](const std::string& hook) {
    if (hook == "section") throw error("refused");
  };
  demux.add(packets({section}));
  EXPECT_EQ(failure([&] { demux.start(); }), "-1: refused");
  demux.then = [](const std::string&) {};
  // It is still the one in progress: the next continuation, even an empty one, delivers it again.
  demux.feed(packet({.pid = kPid, .field = 183}, {}));
  EXPECT_EQ(demux.sections(), (Sections{section, section}));
  demux.feed(next_packet(kPid, {}));
  EXPECT_EQ(demux.heard.size(), 2u);
}

TEST(DemuxHooks, MayRunADemultiplexerOfTheirOwn) {
  const Bytes section = section_of(kTable, 300);
  TableDemux outer(packets({section, section}));
  TableDemux inner(packets({section, section}));
  outer.then = [&](const std::string& hook) {
    if (hook == "section") inner.start();
  };
  outer.start();
  EXPECT_EQ(outer.heard.size(), 2u);
  EXPECT_EQ(inner.heard.size(), 2u);
}

TEST(DemuxHooks, MayReenterStart) {
  const Bytes section = section_of(kTable, 300);
  TableDemux demux(packets({section, section, section}));
  bool inside = false;
  demux.then = [&](const std::string& hook) {
    if (hook != "section" || inside) return;
    inside = true;
    demux.start();
    demux.reset();
  };
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.heard.size(), 3u);
}
