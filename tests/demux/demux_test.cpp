// Packets: their parts, the loop that reads them, the texts.

#include "tests/demux/table_demux.h"
#include "tests/support/faces.h"
#include "tests/support/log_file.h"

#include <climits>

#include <quillon/demux/demux.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string hexadecimal(const void* pointer) {
  char text[16];
  std::snprintf(text, sizeof text, "%#x", static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer)));
  return text;
}

}  // namespace

// The parts of a packet

TEST(TSHeader, ReadsItsFields) {
  const Demux::TSHeader header = header_of(
      {.pid = 0x1234, .start = 1, .counter = 11, .control = 1, .error = 1, .priority = 1, .scrambling = 2});
  EXPECT_EQ(header.get_transport_error_indicator(), 1);
  EXPECT_EQ(header.get_payload_unit_start_indicator(), 1);
  EXPECT_EQ(header.get_transport_priority(), 1);
  EXPECT_EQ(header.get_pid(), 0x1234);
  EXPECT_EQ(header.get_transport_scrambling_control(), 2);
  EXPECT_EQ(header.get_adaption_field_control(), 1);
  EXPECT_EQ(header.get_continuity_counter(), 11);
}

TEST(TSHeader, ReadsEachFieldApart) {
  for (const int pid : {0, 1, 0xFF, 0x100, 0x1000, 0x1FFF}) EXPECT_EQ(header_of({.pid = pid}).get_pid(), pid);
  EXPECT_EQ(header_of({.pid = 0, .error = 1}).get_transport_error_indicator(), 1);
  EXPECT_EQ(header_of({.pid = 0x1FFF, .start = 1}).get_transport_error_indicator(), 0);
  EXPECT_EQ(header_of({.pid = 0x1FFF, .error = 1}).get_payload_unit_start_indicator(), 0);
  EXPECT_EQ(header_of({.pid = 0x1FFF, .start = 1}).get_transport_priority(), 0);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(header_of({.control = 3 - i, .scrambling = i}).get_transport_scrambling_control(), i);
    EXPECT_EQ(header_of({.control = i, .scrambling = 3 - i}).get_adaption_field_control(), i);
  }
  for (int i = 0; i < 16; ++i)
    EXPECT_EQ(header_of({.counter = i, .scrambling = 3}).get_continuity_counter(), i);
}

TEST(TSHeader, RefusesAnotherFirstByte) {
  for (int byte = 0; byte < 256; ++byte) {
    const uint8_t bytes[] = {static_cast<uint8_t>(byte), 0, 0, 0};
    EXPECT_EQ(failure([&] { Demux::TSHeader{bytes}; }),
              byte == 0x47 ? "nothing" : "-1: TS syncbyte expected");
  }
}

TEST(TSHeader, ReportsOneLineTheSecondHalfInHexadecimal) {
  const Demux::TSHeader header =
      header_of({.pid = 0x1A0B, .start = 1, .counter = 15, .control = 3, .scrambling = 2});
  std::ostringstream stream;
  header.dump_state(stream);
  stream << 255;
  EXPECT_EQ(stream.str(), "tei: 0 pusi: 1 tp: 0 pid: 1a0b tsc: 2 afc: 3 cc: f\nff");
}

TEST(AdaptionFieldHeader, MeasuresTheFieldWithItsLengthByte) {
  for (const int length : {0, 1, 182, 183, 255}) {
    const uint8_t field[] = {static_cast<uint8_t>(length)};
    int size = -1;
    Demux::AdaptionFieldHeader(field, size);
    EXPECT_EQ(size, length + 1);
  }
}

// The read loop

TEST(Demux, OnEmptyInputGivesOneWithoutAnyHook) {
  RecordingDemux demux;
  EXPECT_EQ(demux.start(), 1);
  EXPECT_TRUE(demux.calls.empty());
  EXPECT_EQ(demux.reads(), 1);
}

TEST(Demux, IgnoresAShortRead) {
  const Bytes whole = start_packet(kPid, 0, section_of(kTable, 20));
  for (const size_t size : {size_t{1}, size_t{187}}) {
    TableDemux demux(first(whole, size));
    EXPECT_EQ(demux.start(), 1);
    EXPECT_TRUE(demux.calls.empty());
  }
  TableDemux demux(joined({whole, first(whole, 187)}));
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.heard.size(), 1u);
}

TEST(Demux, EndsWhenAReadFailsWhateverItRead) {
  struct Failing : Demux {
    bool read_buf(uint8_t* buffer, int size, int& bytes_read) override {
      std::fill_n(buffer, size, uint8_t{0x47});
      bytes_read = size;
      return false;
    }
    void on_raw_ts_packet(const uint8_t*) override { FAIL(); }
  } demux;
  EXPECT_EQ(demux.start(), 1);
}

TEST(Demux, ReadsIntoRoomForOnePacket) {
  struct Asked : Demux {
    int asked = 0;
    bool read_buf(uint8_t*, int size, int&) override { return asked = size, false; }
  } demux;
  demux.start();
  EXPECT_EQ(demux.asked, 188);
}

TEST(Demux, ShowsAPacketWithoutSyncByteToTheRawHookAndGivesTwo) {
  Bytes bad = start_packet(kPid, 0, section_of(kTable, 20));
  bad[0] = 0x48;
  const Bytes good = start_packet(kPid, 0, section_of(kTable, 20));
  TableDemux demux(joined({good, bad, good}));
  EXPECT_EQ(demux.start(), 2);
  EXPECT_EQ(demux.calls, (Texts{"raw", "packet 256", "section 256/66", "raw"}));
}

TEST(Demux, CallsItsHooksInOrder) {
  const Bytes section = section_of(kTable, 20);
  TableDemux demux(packets({section}, {.field = 7}));
  const uint8_t none = 0;
  demux.add_psi_handler(kPid, &none, &none, 0, 5);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.calls, (Texts{"raw", "packet 256", "field 12", "section 256/66", "filtered 5"}));
  EXPECT_EQ(demux.sections(), (Sections{section, section}));
}

TEST(Demux, NeverCallsIdle) {
  TableDemux demux(packets({section_of(kTable, 4000)}));
  demux.start();
  EXPECT_EQ(demux.count("idle"), 0u);
}

TEST(Demux, ShowsOtherPidsToThePacketHooksAlone) {
  TableDemux demux(
      joined({start_packet(0x101, 0, section_of(kTable, 20)),  //
              start_packet(0x1FFF, 0, section_of(kTable, 20)), start_packet(0, 0, section_of(kTable, 20))}));
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.calls, (Texts{"raw", "packet 257", "raw", "packet 8191", "raw", "packet 0"}));
}

TEST(Demux, TakesPidsThatNoPacketCanHave) {
  RecordingDemux demux(start_packet(kPid, 0, section_of(kTable, 20)));
  for (const int pid : {-1, 0x2000, INT_MIN, INT_MAX}) demux.add_psi_handler(pid, kTable);
  EXPECT_EQ(demux.start(), 1);
  EXPECT_TRUE(demux.heard.empty());
  EXPECT_EQ(report(demux),
            "pid: 80000000\ntable_id: 42\npid: ffffffff\ntable_id: 42\n"
            "pid: 2000\ntable_id: 42\npid: 7fffffff\ntable_id: 42\n");
  for (const int pid : {-1, 0x2000, INT_MIN, INT_MAX}) demux.remove_psi_handler(pid, kTable);
  EXPECT_EQ(report(demux), "");
}

TEST(Demux, StoppedByAHookReadsOnePacketMoreAndGivesTheResult) {
  const Bytes one = start_packet(kPid, 0, section_of(kTable, 20));
  TableDemux demux(joined({one, one, one}));
  demux.then = [&](const std::string& hook) {
    if (hook == "raw") demux.stop(7);
  };
  EXPECT_EQ(demux.start(), 7);
  EXPECT_EQ(demux.reads(), 2);
  EXPECT_EQ(demux.calls, (Texts{"raw", "packet 256", "section 256/66"}));

  // Nothing clears the stop again, reset neither.
  demux.reset();
  EXPECT_EQ(demux.start(), 7);
  EXPECT_EQ(demux.reads(), 3);
  EXPECT_EQ(demux.start(), 7);  // at the end of the input
  EXPECT_EQ(demux.calls.size(), 3u);
}

TEST(Demux, StoppedGivesTheResultAlsoWhenTheInputEnds) {
  TableDemux demux(start_packet(kPid, 0, section_of(kTable, 20)));
  demux.then = [&](const std::string&) { demux.stop(-3); };
  EXPECT_EQ(demux.start(), -3);
}

TEST(Demux, LooksAtNeitherErrorNorCounterNorScrambling) {
  const Bytes section = section_of(kTable, 300);
  PacketHeader head{.pid = kPid, .start = 1, .counter = 3, .error = 1, .priority = 1, .scrambling = 3};
  PacketHeader next{.pid = kPid, .counter = 9, .error = 1, .scrambling = 2};
  TableDemux demux(joined({packet(head, joined({{0}, first(section, 183)})),  //
                           packet(next, behind(section, 183))}));
  EXPECT_EQ(demux.start(), 1);
  EXPECT_EQ(demux.sections(), (Sections{section}));
}

// Adaptation fields

TEST(Demux, SkipsAnAdaptationFieldOfAnyLength) {
  const Bytes section = section_of(kTable, 500);
  for (const int length : {-1, 0, 1, 7, 100, 180, 181}) {
    TableDemux demux(packets({section}, {.field = length}));
    EXPECT_EQ(demux.start(), 1);
    EXPECT_EQ(demux.sections(), (Sections{section})) << length;
    EXPECT_EQ(demux.count("field " + std::to_string(length + 5)) > 0, length >= 0) << length;
  }
}

TEST(Demux, TakesControlTwoLikeThreeAndZeroLikeOne) {
  const Bytes section = section_of(kTable, 20);
  for (const int control : {0, 1, 2, 3}) {
    const int field = control < 2 ? -1 : 3;
    TableDemux demux(
        packet({.pid = kPid, .start = 1, .field = field, .control = control}, joined({{0}, section})));
    demux.start();
    EXPECT_EQ(demux.sections(), (Sections{section})) << control;
    EXPECT_EQ(demux.count("field 8"), control < 2 ? 0u : 1u);
  }
}

TEST(Demux, AddsNothingForAFieldThatFillsOrOverrunsThePacket) {
  const Bytes section = section_of(kTable, 300);
  for (int length = 183; length < 256; ++length) {
    Bytes full = packet({.pid = kPid, .control = 3}, Bytes(184, 0x5A));
    full[4] = static_cast<uint8_t>(length);
    const Bytes start = start_packet(kPid, 0, first(section, 183));
    TableDemux demux(joined({start, full, next_packet(kPid, behind(section, 183))}));
    demux.start();
    EXPECT_EQ(demux.sections(), (Sections{section})) << length;
    EXPECT_EQ(demux.count("field 188"), 1u) << length;  // never past the packet

    // One that claims a start begins nothing, and does not end what is in progress.
    full[1] |= 0x40;
    TableDemux other(joined({start, full, next_packet(kPid, behind(section, 183))}));
    other.start();
    EXPECT_EQ(other.sections(), (Sections{section})) << length;
  }
}

TEST(Demux, TakesAPayloadOfThePointerAloneForNoSection) {
  const Bytes section = section_of(kTable, 300);
  TableDemux demux(joined({start_packet(kPid, 0, first(section, 183)),  //
                           packet({.pid = kPid, .start = 1, .field = 182}, {0}),
                           next_packet(kPid, behind(section, 183))}));
  demux.start();
  EXPECT_TRUE(demux.heard.empty());
}

// Texts

TEST(Demux, ReportsPidsAndTablesInOrderAndInHexadecimal) {
  RecordingDemux demux;
  demux.add_psi_handler(0x1FFF, 0xFF);
  demux.add_psi_handler(0x10, 0x41);
  demux.add_psi_handler(0x10, 0x0A);
  demux.add_psi_handler(0x11, nullptr, nullptr, 0, 5);
  std::ostringstream stream;
  demux.dump_state(stream);
  stream << 255;
  EXPECT_EQ(stream.str(), "pid: 10\ntable_id: a\ntable_id: 41\npid: 11\npid: 1fff\ntable_id: ff\nff");
}

TEST(Demux, TracesAtLevelThree) {
  const uint8_t data = 0x42;
  const uint8_t mask = 0xFF;
  const Bytes one = section_of(kTable, 188, 1);
  const TemporaryLog log("demux_trace.csv", log_create_always, 3);
  TableDemux demux;
  demux.add_psi_handler(kPid, &data, &mask, 1, 0xABCDEF);
  demux.feed(joined({start_packet(0x101, 0, one),  // unwanted
                     start_packet(kPid, 0, first(one, 183)),
                     start_packet(kPid, 5, joined({behind(one, 183), section_of(kTable, 20)})),
                     packet({.pid = kPid, .field = 183}, {})}));
  Texts records = log.messages();
  for (std::string& record : records) {
    const std::string prefix = "Demux::PSIFilterHandler::parse(TSHeader,";
    if (record.rfind(prefix, 0) != 0) continue;
    // The place in start's own buffer is nobody's business but that it is a number.
    const size_t at = record.find("0x");
    ASSERT_NE(at, std::string::npos) << record;
    record.replace(at, record.rfind(',') - at, "PLACE");
  }
  EXPECT_EQ(records,
            (Texts{"Demux::PidHandler::AddPsiHandler(" + hexadecimal(&data) + "," + hexadecimal(&mask) +
                       ",1,0xabcdef)",
                   "Demux::PidHandler::parse()",  //
                   "checking 1 psifilter handlers", "Demux::PSIFilterHandler::parse(TSHeader,1,PLACE,183)",
                   "Demux::PidHandler::parse()",  //
                   "checking 1 psifilter handlers", "Demux::PSIFilterHandler::parse(TSHeader,0,PLACE,5)",
                   "checking 1 psifilter handlers", "Demux::PSIFilterHandler::parse(TSHeader,1,PLACE,178)",
                   "Demux::PidHandler::parse()",  //
                   "checking 1 psifilter handlers", "Demux::PSIFilterHandler::parse(TSHeader,0,PLACE,0)"}));
}

TEST(Demux, TracesNothingAtLevelTwo) {
  const TemporaryLog log("demux_silent.csv", log_create_always, 2);
  TableDemux demux(packets({section_of(kTable, 300)}));
  demux.add_psi_handler(kPid, nullptr, nullptr, 0, 5);
  demux.start();
  EXPECT_EQ(log.text(), "");
}
