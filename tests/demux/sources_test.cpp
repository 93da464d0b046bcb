// The ways in which packets reach a demultiplexer.

#include "tests/demux/table_demux.h"
#include "tests/support/faces.h"
#include "tests/support/log_file.h"

#include <deque>
#include <map>
#include <span>

#include <quillon/demux/sources.h>
#include <quillon/stream/packet_reader.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::istringstream stream_of(const Bytes& bytes) {
  return std::istringstream(std::string(bytes.begin(), bytes.end()));
}

struct PushDemux : Recording<DemuxPush> {
  PushDemux() { add_psi_handler(kPid, kTable); }
  int push(Bytes bytes) { return push_data(bytes.data(), static_cast<int>(bytes.size())); }
};

// A device that delivers each PID apart: per PID the reads to come, none left being a read that fails. Ends
// after `passes` passes.
class Device : public Recording<Demux2> {
 public:
  struct Read {
    Bytes bytes;
    bool result = true;
  };
  std::map<int, std::deque<Read>> reads;
  int passes = 1;
  std::function<void(int pid)> when_read = [](int) {};

  // Each packet of the bytes is one read.
  void give(int pid, const Bytes& stream) {
    for (size_t at = 0; at < stream.size(); at += kPacketSize) {
      const auto from = stream.begin() + static_cast<ptrdiff_t>(at);
      reads[pid].push_back({Bytes(from, from + static_cast<ptrdiff_t>(kPacketSize))});
    }
  }

 protected:
  bool at_end() override { return passes-- == 0; }
  bool read_packet(int pid, uint8_t* buffer, int size, int& bytes_read) override {
    EXPECT_EQ(size, 188);
    calls.push_back("read " + std::to_string(pid));
    when_read(pid);
    std::deque<Read>& left = reads[pid];
    if (left.empty()) return false;
    const Read read = left.front();
    left.pop_front();
    std::copy(read.bytes.begin(), read.bytes.end(), buffer);
    bytes_read = static_cast<int>(read.bytes.size());
    return read.result;
  }
};

}  // namespace

// From a stream

TEST(DemuxIstream, ReadsWholePacketsAndIgnoresTheLastPartialOne) {
  const Bytes section = section_of(kTable, 500);
  std::istringstream stream = stream_of(joined({packets({section}), Bytes(10, 0x47)}));
  Recording<DemuxIstream> demux(stream);
  demux.add_psi_handler(kPid, kTable);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.count("raw"), 3u);
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(DemuxIstream, ReadsTheLastWholePacketOfAStream) {
  const Bytes section = section_of(kTable, 20);
  std::istringstream stream = stream_of(packets({section, section}));
  Recording<DemuxIstream> demux(stream);
  demux.add_psi_handler(kPid, kTable);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.heard.size(), 2u);
}

TEST(DemuxIstream, GivesTheStopResultAndTwoLikeEveryDemultiplexer) {
  std::istringstream stream = stream_of(packets({section_of(kTable, 20), section_of(kTable, 20)}));
  Recording<DemuxIstream> demux(stream);
  demux.then = [&](const std::string&) { demux.stop(8); };
  EXPECT_EQ(demux.start(), 8);
  EXPECT_EQ(demux.count("raw"), 1u);

  std::istringstream bad = stream_of(Bytes(188, 0x11));
  Recording<DemuxIstream> other(bad);
  EXPECT_EQ(other.start(), 2);
}

TEST(DemuxIstream, GoesOnWhereItsStreamDoes) {
  const Bytes section = section_of(kTable, 300);
  const Bytes whole = packets({section});
  std::stringstream stream;
  stream.write(reinterpret_cast<const char*>(whole.data()), 188);
  Recording<DemuxIstream> demux(stream);
  demux.add_psi_handler(kPid, kTable);
  EXPECT_EQ(demux.start(), 1);
  stream.clear();
  stream.write(reinterpret_cast<const char*>(whole.data()) + 188, 188);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(DemuxIstream, EndsAtOnceOnAStreamThatFailed) {
  std::istringstream stream = stream_of(packets({section_of(kTable, 20)}));
  stream.setstate(std::ios::failbit);
  Recording<DemuxIstream> demux(stream);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_TRUE(demux.calls.empty());
}

// Pushed

TEST(DemuxPush, ProcessesWholePackets) {
  const Bytes section = section_of(kTable, 500);
  PushDemux demux;
  EXPECT_EQ(demux.push(packets({section})), 0);
  EXPECT_EQ(demux.calls, (Texts{"packet 256", "packet 256", "packet 256", "section 256/66"}));
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(DemuxPush, TakesNoPacketAtAll) {
  PushDemux demux;
  EXPECT_EQ(demux.push_data(nullptr, 0), 0);
  EXPECT_TRUE(demux.calls.empty());
}

TEST(DemuxPush, RefusesALengthThatIsNoMultipleOfAPacketAndLogsIt) {
  const TemporaryLog log("push_length.csv", log_create_always, 1);
  PushDemux demux;
  Bytes stream = packets({section_of(kTable, 300)});
  for (const int length : {187, 1, 189, 375, -1}) EXPECT_EQ(demux.push_data(stream.data(), length), -1);
  EXPECT_TRUE(demux.calls.empty());
  EXPECT_EQ(
      log.messages(),
      (Texts{"Buffer length 187 not a multiple of 188 bytes", "Buffer length 1 not a multiple of 188 bytes",
             "Buffer length 189 not a multiple of 188 bytes", "Buffer length 375 not a multiple of 188 bytes",
             "Buffer length -1 not a multiple of 188 bytes"}));
}

TEST(DemuxPush, GivesTwoAtAPacketWithoutSyncByteBehindThoseInFrontOfIt) {
  const TemporaryLog log("push_sync.csv", log_create_always, 1);
  const Bytes section = section_of(kTable, 20);
  Bytes stream = packets({section, section, section, section});
  stream[2 * kPacketSize] = 0x0B;
  PushDemux demux;
  EXPECT_EQ(demux.push(stream), 2);
  EXPECT_EQ(demux.sections(), (Sections{section, section}));
  EXPECT_EQ(log.messages(), (Texts{"TS sync byte not found: 0B"}));
}

TEST(DemuxPush, GoesOnWithASectionInTheNextCall) {
  const Bytes section = section_of(kTable, 300);
  const Bytes stream = packets({section});
  PushDemux demux;
  EXPECT_EQ(demux.push(first(stream, 188)), 0);
  EXPECT_TRUE(demux.heard.empty());
  EXPECT_EQ(demux.push(Bytes(stream.begin() + 188, stream.end())), 0);
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(DemuxPush, CallsNeitherTheRawHookNorIdle) {
  PushDemux demux;
  demux.push(packets({section_of(kTable, 300)}));
  EXPECT_EQ(demux.count("raw") + demux.count("idle"), 0u);
}

TEST(DemuxPush, CannotBeStopped) {
  const Bytes section = section_of(kTable, 20);
  PushDemux demux;
  demux.then = [&](const std::string&) { demux.stop(9); };
  EXPECT_EQ(demux.push(packets({section, section})), 0);
  EXPECT_EQ(demux.push(packets({section})), 0);
  EXPECT_EQ(demux.heard.size(), 3u);
}

TEST(DemuxPush, GivesTheAdaptationHookAPlaceInTheFirstPacketAndTheHandlersTheRightBytes) {
  const Bytes section = section_of(kTable, 500);
  PushDemux demux;
  EXPECT_EQ(demux.push(packets({section}, {.field = 7})), 0);
  EXPECT_EQ(demux.calls, (Texts{"packet 256", "field 12", "packet 256", "field -176", "packet 256",
                                "field -364", "section 256/66"}));
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

TEST(DemuxPush, KeepsThatPlaceWithinThePacket) {
  Bytes full = packet({.pid = kPid, .field = 183}, {});
  full[4] = 255;
  PushDemux demux;
  EXPECT_EQ(demux.push(joined({full, full})), 0);
  EXPECT_EQ(demux.calls, (Texts{"packet 256", "field 188", "packet 256", "field 0"}));
}

TEST(DemuxPush, PassesOnWhatAHookThrows) {
  const Bytes section = section_of(kTable, 20);
  PushDemux demux;
  demux.then = [&](const std::string& hook) {
    if (hook == "section") throw error("from the hook");
  };
  EXPECT_EQ(failure([&] { demux.push(packets({section, section})); }), "-1: from the hook");
  demux.then = [](const std::string&) {};
  EXPECT_EQ(demux.push(packets({section})), 0);
  EXPECT_EQ(demux.sections(), (Sections{section, section}));
}

TEST(DemuxPush, MayBePushedByItsHooks) {
  const Bytes section = section_of(kTable, 300);
  PushDemux demux;
  int depth = 0;
  demux.then = [&](const std::string& hook) {
    if (hook != "section" || depth++ > 5) return;
    demux.push(packets({section}));
    demux.reset();
    demux.add_psi_handler(kPid, kTable);
  };
  EXPECT_EQ(demux.push(packets({section})), 0);
  EXPECT_GE(demux.heard.size(), 2u);
}

TEST(DemuxPush, HasAReadLoopThatEndsAtOnce) {
  PushDemux demux;
  EXPECT_EQ(demux.start(), 1);
}

TEST(DemuxPush, TakesConstantBytes) {
  const Bytes section = section_of(kTable, 500);
  const Bytes stream = packets({section, section_of(kTable, 20)});
  PushDemux demux;
  EXPECT_EQ(demux.push_data(std::span<const uint8_t>(stream)), 0);
  PushDemux by_pointer;
  EXPECT_EQ(by_pointer.push(stream), 0);
  EXPECT_EQ(demux.calls, by_pointer.calls);
  EXPECT_EQ(demux.sections(), by_pointer.sections());
  EXPECT_EQ(demux.sections().at(0), section);

  EXPECT_EQ(demux.push_data(std::span<const uint8_t>()), 0);
  EXPECT_EQ(demux.push_data({stream.data(), kPacketSize - 1}), -1);
  EXPECT_EQ(demux.push_data(Bytes(kPacketSize)), 2);
  EXPECT_EQ(demux.calls, by_pointer.calls);
}

// Whole packets come of any pieces.
TEST(DemuxPush, TakesAnySplitThroughAPacketReader) {
  const Bytes stream = packets({section_of(kTable, 500), section_of(kTable, 20), section_of(kTable, 999)});
  PushDemux at_once;
  EXPECT_EQ(at_once.push_data(stream), 0);
  ASSERT_EQ(at_once.sections().size(), 3u);
  for (const size_t size : {size_t{1}, size_t{7}, kPacketSize, size_t{400}}) {
    PushDemux demux;
    PacketReader reader;
    TsPacket packet;
    const auto push_all = [&] {
      while (reader.next(packet)) EXPECT_EQ(demux.push_data({packet.data, TsPacket::size}), 0);
    };
    for (size_t at = 0; at < stream.size(); at += size) {
      reader.feed(std::span(stream).subspan(at, std::min(size, stream.size() - at)));
      push_all();
    }
    reader.finish();
    push_all();
    EXPECT_EQ(demux.calls, at_once.calls) << size;
    EXPECT_EQ(demux.sections(), at_once.sections()) << size;
  }
}

// A device that delivers each PID apart

TEST(Demux2, ReadsOnePacketAPidInTurnAndIdlesAfterEachPass) {
  const Bytes one = section_of(kTable, 300, 1);
  const Bytes two = section_of(kTable, 300, 2);
  Device demux;
  demux.add_psi_handler(0x12, kTable);
  demux.add_psi_handler(0x11, kTable);
  demux.give(0x11, packets({one}, {.pid = 0x11, .field = 2}));
  demux.give(0x12, packets({two}, {.pid = 0x12}));
  demux.passes = 2;
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.calls,
            (Texts{"read 17", "raw", "packet 17", "field 7", "read 18", "raw", "packet 18", "idle",  //
                   "read 17", "raw", "packet 17", "field 7", "section 17/66", "read 18", "raw", "packet 18",
                   "section 18/66", "idle"}));
  EXPECT_EQ(demux.sections(), (Sections{one, two}));
}

TEST(Demux2, AsksForTheEndBeforeEachPass) {
  Device demux;
  demux.add_psi_handler(kPid, kTable);
  demux.passes = 0;
  EXPECT_EQ(demux.start(), 1);
  EXPECT_TRUE(demux.calls.empty());

  Device none;
  none.passes = 3;
  EXPECT_EQ(none.start(), 1);
  EXPECT_EQ(none.calls, (Texts{"idle", "idle", "idle"}));
}

TEST(Demux2, GivesTheStopResultButDoesNotStop) {
  Device demux;
  demux.add_psi_handler(kPid, kTable);
  demux.passes = 3;
  demux.then = [&](const std::string&) { demux.stop(5); };
  EXPECT_EQ(demux.start(), 5);
  EXPECT_EQ(demux.count("idle"), 3u);
}

TEST(Demux2, PassesOverAPidWhoseReadFailedOrWasShort) {
  const Bytes section = section_of(kTable, 20);
  const Bytes good = packets({section}, {.pid = 0x11});
  Device demux;
  for (const int pid : {0x11, 0x12}) demux.add_psi_handler(pid, kTable);
  demux.reads[0x11] = {{good}, {good, false}, {first(good, 187)}, {good}};
  demux.give(0x12, packets({section, section, section, section}, {.pid = 0x12}));
  demux.passes = 4;
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.count("section 17/66"), 2u);
  EXPECT_EQ(demux.count("section 18/66"), 4u);
  EXPECT_EQ(demux.count("raw"), 6u);
}

TEST(Demux2, DropsSectionsInProgressAtAWrongSyncByteInTheFirstSlot) {
  const Bytes long_one = section_of(kTable, 500, 1);
  const Bytes short_one = section_of(kTable, 20, 2);
  const uint8_t none = 0;
  const Bytes stream = packets({long_one}, {.pid = 0x12});
  Device demux;
  for (const int pid : {0x11, 0x12}) demux.add_psi_handler(pid, kTable);
  demux.add_psi_handler(0x12, &none, &none, 0, 5);
  Bytes bad = packets({short_one}, {.pid = 0x11});
  bad[0] = 0;
  // In the second pass nothing is processed; in the third the rest comes.
  demux.give(0x11, joined({packets({short_one}, {.pid = 0x11}), bad, packets({short_one}, {.pid = 0x11}),
                           packets({short_one}, {.pid = 0x11})}));
  demux.reads[0x12] = {{first(stream, 188)},
                       {first(stream, 188)},
                       {Bytes(stream.begin() + 188, stream.begin() + 376)},
                       {Bytes(stream.begin() + 376, stream.end())}};
  demux.passes = 4;
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.count("section 17/66"), 3u);
  EXPECT_EQ(demux.count("section 18/66"), 0u);  // dropped
  EXPECT_EQ(demux.count("filtered 5"), 1u);     // a filter keeps its own
  EXPECT_EQ(demux.count("packet 18"), 3u);      // the one in its right slot was passed over with the first
  EXPECT_EQ(demux.count("raw"), 8u);            // the raw hook saw all
}

TEST(Demux2, ThrowsAtAWrongSyncByteInAnotherSlot) {
  const Bytes good = packets({section_of(kTable, 20)}, {.pid = 0x11});
  Device demux;
  for (const int pid : {0x11, 0x12}) demux.add_psi_handler(pid, kTable);
  demux.give(0x11, good);
  demux.give(0x12, Bytes(188, 0x46));
  EXPECT_EQ(failure([&] { demux.start(); }), "-1: TS syncbyte expected");
  EXPECT_EQ(demux.calls, (Texts{"read 17", "raw", "packet 17", "section 17/66", "read 18", "raw"}));
}

TEST(Demux2, LooksAtTheFirstSlotAlsoBeforeItWasRead) {
  // Nothing came of the first PID yet: its slot has no sync byte.
  Device demux;
  for (const int pid : {0x11, 0x12}) demux.add_psi_handler(pid, kTable);
  demux.give(0x12, packets({section_of(kTable, 20)}, {.pid = 0x12}));
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.calls, (Texts{"read 17", "read 18", "raw", "idle"}));
}

TEST(Demux2, GivesAPacketToTheHandlerOfThePidThatWasRead) {
  const Bytes section = section_of(kTable, 20);
  Device demux;
  demux.add_psi_handler(0x11, kTable);
  demux.give(0x11, packets({section}, {.pid = 0x99}));
  demux.start();
  ASSERT_EQ(demux.sections(), (Sections{section}));
  EXPECT_EQ(demux.heard[0].pid, 0x99);  // the hook hears what the packet says
}

TEST(Demux2, TakesNumbersThatNoPacketHas) {
  const Bytes section = section_of(kTable, 100);
  Device device;
  device.add_psi_handler(0x2001, kTable);
  device.give(0x2001, packets({section}));
  EXPECT_EQ(device.start(), 1);
  EXPECT_EQ(device.sections(), (Sections{section}));
}

TEST(Demux2, GivesThePacketsOfANumberToItsOwnHandlers) {
  const Bytes section = section_of(kTable, 20);
  for (const int number : {kPid - 0x2000, -1, kPid + 0x2000}) {
    Device device;
    device.add_psi_handler(kPid, kTable);
    device.add_psi_handler(number, kTable + 1);
    device.give(number, packets({section}));  // which say that they are of kPid
    device.give(kPid, packets({section_of(0, 20)}));
    EXPECT_EQ(device.start(), 1);
    EXPECT_EQ(device.count("read " + std::to_string(number)), 1u);
    EXPECT_TRUE(device.heard.empty());
  }
}

TEST(Demux2, TracesAtLevelThree) {
  const TemporaryLog log("demux2_trace.csv", log_create_always, 3);
  const Bytes good = packets({section_of(kTable, 20)});
  Device demux;
  demux.add_psi_handler(kPid, kTable);
  demux.reads[kPid] = {{good}, {first(good, 100)}, {good, false}, {Bytes(188)}};
  demux.passes = 5;
  demux.start();
  EXPECT_EQ(log.messages(), (Texts{"read_buf(188)=1", "bytes read", "Demux::PidHandler::parse()",
                                   "checking 0 psifilter handlers", "read_buf(100)=1", "read_buf(188)=0",
                                   "read_buf(188)=1", "bytes read", "invalid sync byte", "read_buf(0)=0"}));
}

TEST(Demux2, StandsPidsThatItsHooksRemove) {
  const Bytes section = section_of(kTable, 20);
  for (const char* hook : {"raw", "packet", "section", "idle", "read"})
    for (const int gone : {0x11, 0x12, 0x13}) {
      SCOPED_TRACE(std::string(hook) + " removes " + std::to_string(gone));
      Device demux;
      for (const int pid : {0x11, 0x12, 0x13}) {
        demux.add_psi_handler(pid, kTable);
        demux.give(pid, packets({section, section}, {.pid = pid}));
      }
      demux.passes = 2;
      bool done = false;
      const auto remove = [&] {
        if (!std::exchange(done, true)) demux.remove_psi_handler(gone, kTable);
      };
      demux.then = [&](const std::string& called) {
        if (called == hook) remove();
      };
      if (hook == std::string("read")) demux.when_read = [&](int) { remove(); };
      EXPECT_EQ(demux.start(), 1);
      // The others have all their sections, and in the pass after the removal nobody reads the PID.
      for (const int pid : {0x11, 0x12, 0x13}) {
        const std::string number = std::to_string(pid);
        if (pid != gone) {
          EXPECT_EQ(demux.count("section " + number + "/66"), 2u);
        }
        if (pid == gone) {
          EXPECT_LE(demux.count("read " + number), 1u);
        }
      }
    }
}

TEST(Demux2, StaysWithinItsSlotsWhereAHookAddsPids) {
  const Bytes section = section_of(kTable, 20);
  Device demux;
  for (const int pid : {0x11, 0x13}) {
    demux.add_psi_handler(pid, kTable);
    demux.give(pid, packets({section, section, section}, {.pid = pid}));
  }
  demux.passes = 3;
  demux.then = [&](const std::string& hook) {
    if (hook != "section") return;
    demux.add_psi_handler(0x10, kTable);
    demux.add_psi_handler(0x12, kTable);
    demux.add_psi_handler(0x14, kTable);
  };
  EXPECT_EQ(demux.start(), 1);
  EXPECT_LE(demux.count("section 17/66") + demux.count("section 19/66"), 6u);
}

TEST(Demux2, StandsAReset) {
  Device demux;
  for (const int pid : {0x11, 0x12, 0x13}) {
    demux.add_psi_handler(pid, kTable);
    demux.give(pid, packets({section_of(kTable, 20)}, {.pid = pid}));
  }
  demux.passes = 2;
  demux.then = [&](const std::string& hook) {
    if (hook == "section") demux.reset();
  };
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.calls, (Texts{"read 17", "raw", "packet 17", "section 17/66", "idle", "idle"}));
}
