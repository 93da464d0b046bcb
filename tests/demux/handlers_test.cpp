// Filters, and the handlers of a PID by themselves.

#include "tests/demux/table_demux.h"
#include "tests/support/faces.h"

#include <climits>

using namespace quillon;
using namespace quillon::test;

// Filters

TEST(DemuxFilter, ComparesFromTheTableIdOnOverTheLengthBytes) {
  const Bytes section = section_of(0x42, 20, 0x10);  // 42 70 11 10 11 12 ...
  struct Row {
    Bytes data, mask;
    bool match;
  };
  const Row rows[] = {
      {{}, {}, true},
      {{0x42}, {0xFF}, true},
      {{0x43}, {0xFF}, false},
      {{0x42, 0x70, 0x11, 0x10}, {0xFF, 0xFF, 0xFF, 0xFF}, true},
      {{0x42, 0x70, 0x12, 0x10}, {0xFF, 0xFF, 0xFF, 0xFF}, false},
      {{0x42, 0x10, 0x11}, {0xFF, 0xFF, 0xFF}, false},  // the length bytes are not skipped
      {{0x40, 0x00, 0x00, 0x10}, {0xF0, 0x00, 0x00, 0xFF}, true},
      {{0x00, 0x00}, {0x00, 0x00}, true},
      {{0x42}, {0xF0}, false},  // a data bit outside of the mask never matches
      {{0x01}, {0x00}, false},
      {{0x00}, {0x80}, true},
  };
  for (const Row& row : rows) {
    RecordingDemux demux(packets({section}));
    demux.add_psi_handler(kPid, row.data.data(), row.mask.data(), static_cast<int>(row.data.size()), 77);
    demux.start();
    EXPECT_EQ(demux.order(), row.match ? Texts{"filtered 77"} : Texts{}) << &row - rows;
    EXPECT_EQ(demux.sections(), row.match ? Sections{section} : Sections{});
  }
}

TEST(DemuxFilter, OfNoLengthTakesEverySectionOfThePid) {
  for (const int length : {0, -1, INT_MIN}) {
    const Sections sections{section_of(0x00, 20), section_of(0x42, 4098), section_of(0xFF, 3)};
    RecordingDemux demux(packets(sections));
    demux.add_psi_handler(kPid, nullptr, nullptr, length, 5);
    demux.start();
    EXPECT_EQ(demux.sections(), sections) << length;
  }
}

TEST(DemuxFilter, LongerThanTheSectionReadsWhatTheBufferHolds) {
  const Bytes data{0x42, 0x70, 0x00, 0xFF, 0xFF, 0x55};
  const Bytes mask(6, 0xFF);
  RecordingDemux demux;
  demux.add_psi_handler(kPid, data.data(), mask.data(), 6, 5);
  demux.feed(start_packet(kPid, 0, joined({section_of(0x42, 3), {0xFF, 0xFF, 0x55}})));
  EXPECT_EQ(demux.sections(), (Sections{section_of(0x42, 3)}));
  demux.feed(start_packet(kPid, 0, joined({section_of(0x42, 3), {0xFF, 0xFF, 0x56}})));
  EXPECT_EQ(demux.heard.size(), 1u);
}

TEST(DemuxFilter, LongerThanTheBufferNeverMatches) {
  const Bytes nothing(8193);
  RecordingDemux demux(packets({section_of(0x42, 20), section_of(0x42, 4098)}));
  demux.add_psi_handler(kPid, nothing.data(), nothing.data(), 8192, 1);
  demux.add_psi_handler(kPid, nothing.data(), nothing.data(), 8193, 2);
  demux.start();
  EXPECT_EQ(demux.order(), (Texts{"filtered 1", "filtered 1"}));
}

TEST(DemuxFilter, IsTestedWithTheCallersBytesAsTheyAreThen) {
  uint8_t data = 0x40;
  const uint8_t mask = 0xFF;
  RecordingDemux demux;
  demux.add_psi_handler(kPid, &data, &mask, 1, 5);
  demux.feed(packets({section_of(0x42, 20)}));
  EXPECT_TRUE(demux.heard.empty());
  data = 0x42;
  demux.feed(packets({section_of(0x42, 20)}));
  EXPECT_EQ(demux.heard.size(), 1u);
}

TEST(DemuxFilter, IsAddedAnewEachTime) {
  const uint8_t none = 0;
  RecordingDemux demux(packets({section_of(0x42, 20)}));
  for (int i = 0; i < 3; ++i) demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.start();
  EXPECT_EQ(demux.order(), (Texts{"filtered 5", "filtered 5", "filtered 5"}));
  EXPECT_EQ(report(demux), "pid: 100\n");  // filters are not listed
}

TEST(DemuxFilter, GoesOnWhereTheTableIdHasNoHandler) {
  const Bytes one = section_of(0x43, 500, 1);
  const uint8_t none = 0;
  TableDemux demux(packets({one}));
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.start();
  EXPECT_EQ(demux.order(), (Texts{"filtered 5"}));
  EXPECT_EQ(demux.sections(), (Sections{one}));
}

TEST(DemuxFilter, IsTestedOnceOnTheCompleteSection) {
  // The first section does not match; nothing of it reaches the next.
  const uint8_t data = 0x42;
  const uint8_t mask = 0xFF;
  const Bytes match = section_of(0x42, 300, 2);
  RecordingDemux demux(packets({section_of(0x41, 300, 1), match}, {.shared = true}));
  demux.add_psi_handler(kPid, &data, &mask, 1, 5);
  demux.start();
  EXPECT_EQ(demux.sections(), (Sections{match}));
}

TEST(DemuxFilter, HearsOfATailBehindTheTablesHandler) {
  const Bytes one = section_of(kTable, 188, 1);
  const Bytes two = section_of(kTable, 20, 2);
  const uint8_t none = 0;
  TableDemux demux(joined({start_packet(kPid, 0, first(one, 183)),  //
                           start_packet(kPid, 5, joined({behind(one, 183), two}))}));
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  demux.start();
  EXPECT_EQ(demux.order(), (Texts{"section 256/66", "filtered 5", "section 256/66", "filtered 5"}));
  EXPECT_EQ(demux.sections(), (Sections{one, one, two, two}));
}

// The handlers of a PID by themselves

TEST(PidHandler, HoldsOneHandlerATable) {
  RecordingDemux demux;
  Demux::PidHandler handler(demux);
  EXPECT_TRUE(handler.get_psihandler().empty());
  handler.AddPsiHandler(0x43);
  handler.AddPsiHandler(0x42);
  Demux::PSIHandler* const there = handler.get_psihandler().at(0x42);
  handler.AddPsiHandler(0x42);
  EXPECT_EQ(handler.get_psihandler().size(), 2u);
  EXPECT_EQ(handler.get_psihandler().at(0x42), there);
  handler.AddPsiHandler(nullptr, nullptr, 0, 5);
  EXPECT_EQ(report(handler), "table_id: 66\ntable_id: 67\n");  // in the stream's base
  handler.RemovePsiHandler(0x42);
  handler.RemovePsiHandler(0x42);
  EXPECT_EQ(report(handler), "table_id: 67\n");
}

TEST(PidHandler, DropsSectionsInProgressWhenInvalidatedButNotThoseOfFilters) {
  RecordingDemux demux;
  Demux::PidHandler handler(demux);
  const uint8_t none = 0;
  handler.AddPsiHandler(kTable);
  handler.AddPsiHandler(&none, &none, 0, 5);
  const Bytes section = section_of(kTable, 300);
  Demux::TSHeader start = header_of({.pid = kPid, .start = 1});
  Demux::TSHeader next = header_of({.pid = kPid});
  const Bytes head = joined({{0}, first(section, 183)});
  const Bytes tail = behind(section, 183);

  handler.parse(start, head.data(), 184);
  handler.invalidate();
  handler.parse(next, tail.data(), static_cast<int>(tail.size()));
  EXPECT_EQ(demux.order(), (Texts{"filtered 5"}));
  EXPECT_EQ(demux.sections(), (Sections{section}));
  // Nothing is begun by a continuation, not even by one that looks like a section.
  const Bytes whole = section_of(kTable, 20);
  handler.parse(next, whole.data(), 20);
  EXPECT_EQ(demux.heard.size(), 1u);

  demux.heard.clear();
  handler.parse(start, head.data(), 184);
  handler.parse(next, tail.data(), static_cast<int>(tail.size()));
  EXPECT_EQ(demux.order(), (Texts{"section 256/66", "filtered 5"}));
}

TEST(PidHandler, TakesNothingFromAPayloadOfNoLength) {
  RecordingDemux demux;
  Demux::PidHandler handler(demux);
  const uint8_t none = 0;
  handler.AddPsiHandler(0);
  handler.AddPsiHandler(&none, &none, 0, 5);
  Demux::TSHeader start = header_of({.pid = kPid, .start = 1});
  Demux::TSHeader next = header_of({.pid = kPid});
  for (const int length : {0, -1, -72, INT_MIN}) {
    handler.parse(start, nullptr, length);
    handler.parse(next, nullptr, length);
  }
  EXPECT_TRUE(demux.heard.empty());
}

TEST(PSIHandler, CanBeDriven) {
  RecordingDemux demux;
  Demux::PSIHandler handler(demux, kTable);
  const Bytes section = section_of(kTable, 20);
  handler.parse(header_of({.pid = 7}), false, section.data(), 20);
  EXPECT_TRUE(demux.heard.empty());
  handler.parse(header_of({.pid = 7}), true, section.data(), 10);
  handler.parse(header_of({.pid = 8}), false, section.data() + 10, 10);
  EXPECT_EQ(demux.order(), (Texts{"section 8/66"}));
  EXPECT_EQ(demux.sections(), (Sections{section}));
  EXPECT_EQ(report(handler), "table_id: 66\n");
}

TEST(PSIHandler, StaysWithinItsBuffer) {
  RecordingDemux demux;
  Demux::PSIHandler handler(demux, kTable);
  const Bytes section = joined({section_of(kTable, 4098), Bytes(20000, 0x11)});
  handler.parse(header_of({}), true, section.data(), static_cast<int>(section.size()));
  EXPECT_EQ(demux.sections(), (Sections{section_of(kTable, 4098)}));
}

TEST(PSIFilterHandler, ReportsNothing) {
  RecordingDemux demux;
  const Demux::PSIFilterHandler handler(demux, nullptr, nullptr, 0, 5);
  EXPECT_EQ(report(handler), "");
}

// PIDs and table ids that no packet carries

namespace {

// Of ids that nothing carries, those whose low bits are the ids that are sent.
const int kStrangePids[] = {kPid + 0x2000, kPid - 0x2000, 0x2000, -1, INT_MIN, INT_MAX, kPid + 0x10000};
const int kStrangeTables[] = {kTable + 0x100, kTable - 0x100, 0x100, -1, INT_MIN, INT_MAX};

}  // namespace

TEST(StrangeIds, AreKeptListedAndRemovedAndHearNothing) {
  const uint8_t none = 0;
  RecordingDemux demux;
  for (const int pid : kStrangePids) {
    demux.add_psi_handler(pid, kTable);
    demux.add_psi_handler(pid, &none, &none, 0, 5);
  }
  for (const int table_id : kStrangeTables) demux.add_psi_handler(kPid, table_id);
  EXPECT_EQ(report(demux), R"(pid: 80000000
table_id: 42
pid: ffffe100
table_id: 42
pid: ffffffff
table_id: 42
pid: 100
table_id: 80000000
table_id: ffffff42
table_id: ffffffff
table_id: 100
table_id: 142
table_id: 7fffffff
pid: 2000
table_id: 42
pid: 2100
table_id: 42
pid: 10100
table_id: 42
pid: 7fffffff
table_id: 42
)");

  for (const int pid : {0, kPid, 0x1FFF})
    for (const int table_id : {0x00, kTable, 0xFF})
      EXPECT_EQ(demux.feed(packets({section_of(table_id, 300)}, {.pid = pid})), 1);
  EXPECT_TRUE(demux.heard.empty());

  // Beside them the others work.
  demux.add_psi_handler(kPid, kTable);
  demux.feed(packets({section_of(kTable, 300)}));
  EXPECT_EQ(demux.order(), Texts{"section 256/66"});

  for (const int pid : kStrangePids) demux.remove_psi_handler(pid, kTable);
  for (const int table_id : kStrangeTables) demux.remove_psi_handler(kPid, table_id);
  EXPECT_EQ(report(demux), "pid: 100\ntable_id: 42\n");
  demux.add_psi_handler(-1, -1);
  demux.reset();
  EXPECT_EQ(report(demux), "");
}
