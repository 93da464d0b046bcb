// Handlers that come and go, and exceptions, from inside every hook of every kind of source.

#include "tests/demux/table_demux.h"
#include "tests/support/faces.h"

#include <functional>
#include <iterator>

#include <quillon/demux/sources.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr int kOtherPid = 0x101;
constexpr uint8_t kNone = 0;

// Sections over several packets and several in one, with adaptation fields.
Bytes stream_of(int pid) {
  return packets({section_of(kTable, 300, 1), section_of(0x43, 20, 2), section_of(kTable, 400, 3),
                  section_of(0x43, 500, 4), section_of(0x44, 30, 5)},
                 {.pid = pid, .shared = true, .field = 3});
}

template <class Source>
void add_handlers(Source& source) {
  for (const int pid : {kPid, kOtherPid}) {
    source.add_psi_handler(pid, kTable);
    source.add_psi_handler(pid, 0x43);
    source.add_psi_handler(pid, &kNone, &kNone, 0, 5);
    source.add_psi_handler(pid, &kNone, &kNone, 0, 6);
  }
}

// Pulls packets; its read_buf is a hook too.
struct Pulling : Recording<MemoryDemux> {
  void run(const Bytes& stream) {
    add(stream);
    start();
  }
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override {
    then("read");
    return MemoryDemux::read_buf(buffer, size, bytes_read);
  }
};

// Is fed a few packets at a time.
struct Pushed : Recording<DemuxPush> {
  void run(Bytes stream) {
    constexpr int at_once = 3 * static_cast<int>(kPacketSize);
    for (int left = static_cast<int>(stream.size()); left > 0; left -= at_once)
      push_data(stream.data() + (static_cast<int>(stream.size()) - left), std::min(left, at_once));
  }
};

// Reads each PID apart; its two questions are hooks too.
struct Polled : Recording<Demux2> {
  void run(Bytes stream) {
    stream_ = std::move(stream);
    at_ = 0;
    passes_ = 12;
    start();
  }
  bool at_end() override {
    then("end");
    return passes_-- <= 0;
  }
  bool read_packet(int pid, uint8_t* buffer, int size, int& bytes_read) override {
    then("read");
    if (at_ >= stream_.size()) return false;
    std::copy_n(stream_.begin() + static_cast<ptrdiff_t>(at_), size, buffer);
    buffer[1] = static_cast<uint8_t>((buffer[1] & 0xE0) | pid >> 8);
    buffer[2] = static_cast<uint8_t>(pid);
    at_ += kPacketSize;
    bytes_read = size;
    return true;
  }

 private:
  Bytes stream_;
  size_t at_ = 0;
  int passes_ = 0;
};

template <class Source>
struct Change {
  const char* name;
  void (*act)(Source&);
};

template <class Source>
const Change<Source> changes[] = {
    {"nothing", [](Source&) {}},
    {"add a filter", [](Source& s) { s.add_psi_handler(kPid, &kNone, &kNone, 0, 7); }},
    {"add a filter on a new PID", [](Source& s) { s.add_psi_handler(0x0FF, &kNone, &kNone, 0, 7); }},
    {"add a table", [](Source& s) { s.add_psi_handler(kPid, 0x44); }},
    {"remove a table", [](Source& s) { s.remove_psi_handler(kPid, kTable); }},
    {"remove both tables of a PID, and so its filters",
     [](Source& s) {
       s.remove_psi_handler(kPid, kTable);
       s.remove_psi_handler(kPid, 0x43);
     }},
    {"remove and add a table",
     [](Source& s) {
       s.remove_psi_handler(kPid, kTable);
       s.add_psi_handler(kPid, kTable);
     }},
    {"reset", [](Source& s) { s.reset(); }},
    {"reset and add",
     [](Source& s) {
       s.reset();
       add_handlers(s);
     }},
};

Bytes mixed_stream() {
  const Bytes one = stream_of(kPid);
  const Bytes other = stream_of(kOtherPid);
  Bytes out;
  for (size_t at = 0; at < one.size(); at += kPacketSize)
    out = joined({out, first(behind(one, at), kPacketSize), first(behind(other, at), kPacketSize)});
  return out;
}

// A demultiplexer that is as good as new: everything is heard.
template <class Source>
void expect_usable(Source& source) {
  source.then = [](const std::string&) {};
  source.reset();
  source.run({});  // to the end of what an exception left unread
  source.add_psi_handler(kPid, kTable);
  source.add_psi_handler(kPid, &kNone, &kNone, 0, 8);
  source.heard.clear();
  const Bytes section = section_of(kTable, 300, 9);
  source.run(packets({section}));
  EXPECT_EQ(source.sections(), (Sections{section, section}));
}

template <class Source>
struct Hooks;
template <>
struct Hooks<Pulling> {
  static constexpr const char* names[] = {"read", "raw", "packet", "field", "section", "filtered"};
};
template <>
struct Hooks<Pushed> {
  static constexpr const char* names[] = {"packet", "field", "section", "filtered"};
};
template <>
struct Hooks<Polled> {
  static constexpr const char* names[] = {"end",   "read",    "raw",      "packet",
                                          "field", "section", "filtered", "idle"};
};

template <class Source>
class HostileHooks : public testing::Test {
 protected:
  // Runs the stream once for each call of each hook, which makes the change; then `also`.
  template <class Also>
  void at_each_call(Also also) {
    const Bytes stream = mixed_stream();
    for (const bool every_section : {false, true})
      for (const auto& change : changes<Source>)
        for (const char* hook : Hooks<Source>::names) {
          bool reached = true;
          int turn = 1;
          for (; reached && turn < 40; ++turn) {
            SCOPED_TRACE(std::string(change.name) + " in " + hook + " " + std::to_string(turn));
            Source source;
            source.serve_every_section(every_section);
            add_handlers(source);
            int left = turn;
            reached = false;
            source.then = [&](const std::string& called) {
              if (called != hook || --left != 0) return;
              reached = true;
              change.act(source);
              also();
            };
            const std::string thrown = failure([&] { source.run(stream); });
            EXPECT_EQ(thrown, reached && throws_ ? "-1: from the hook" : "nothing");
            for (const Heard& h : source.heard)
              if (h.key < 0) {
                EXPECT_EQ(h.bytes.at(0), h.table_id);
              }
            expect_usable(source);
          }
          EXPECT_GT(turn, 2) << hook << " was not called";
        }
  }
  bool throws_ = false;
};

using Sources = testing::Types<Pulling, Pushed, Polled>;

}  // namespace

TYPED_TEST_SUITE(HostileHooks, Sources, );

TYPED_TEST(HostileHooks, MayChangeTheHandlers) {
  this->at_each_call([] {});
}

TYPED_TEST(HostileHooks, MayChangeTheHandlersAndThrow) {
  this->throws_ = true;
  this->at_each_call([] { throw error("from the hook"); });
}

// A filter that is made for each section that another reports, as a monitor might, does not hear that very
// section: else each would make the next.
TYPED_TEST(HostileHooks, MayAddAFilterAtEachCall) {
  for (const char* hook : Hooks<TypeParam>::names) {
    TypeParam source;
    source.serve_every_section(true);
    source.add_psi_handler(kPid, kTable);
    source.add_psi_handler(kPid, &kNone, &kNone, 0, 0);
    unsigned long made = 0;
    source.then = [&](const std::string& called) {
      if (called != hook) return;
      ASSERT_LT(made, 1000u) << hook;
      source.add_psi_handler(kPid, &kNone, &kNone, 0, ++made);
    };
    source.run(
        packets({section_of(kTable, 20), section_of(kTable, 20), section_of(kTable, 20)}, {.field = 0}));
    EXPECT_GE(made, 3u) << hook;
    // One filter hears the first section, two the second, four the third.
    if (hook == std::string("filtered")) {
      EXPECT_EQ(made, 7u);
    }
  }
}
