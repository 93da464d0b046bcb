// Sections out of packets: what is put together, what is followed, what is repeated, and what it takes.

#include "tests/stream/streams.h"
#include "tests/support/sample.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

#include <quillon/sections/crc.h>
#include <quillon/sections/error.h>
#include <quillon/stream/internal/siphash.h>
#include <quillon/stream/section_reader.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr int kTablePid = 0x123;

struct Given {
  int pid;
  uint64_t packet;
  Bytes bytes;
  bool has_crc;
  bool crc_ok;
  bool repeated;
};

// Writes down what its reader gives.
class Listener {
 public:
  explicit Listener(const SectionReaderOptions& options = {.pids = {kTablePid}})
      : reader(
            [this](const StreamSection& s) {
              given.push_back(
                  {s.pid, s.packet, Bytes(s.bytes, s.bytes + s.size), s.has_crc, s.crc_ok, s.repeated});
              then(s);
            },
            options) {}

  Listener& push(const Bytes& packets) {
    for (size_t at = 0; at < packets.size(); at += kPacketSize)
      reader.push({packets.data() + at, pushed++, at, false});
    return *this;
  }
  std::vector<Bytes> sections() const {
    std::vector<Bytes> out;
    for (const Given& g : given) out.push_back(g.bytes);
    return out;
  }
  std::vector<int> pids() const {
    std::vector<int> out;
    for (const Given& g : given) out.push_back(g.pid);
    return out;
  }

  std::vector<Given> given;
  uint64_t pushed = 0;
  std::function<void(const StreamSection&)> then = [](const StreamSection&) {};
  SectionReader reader;
};

Bytes packets_of(const Bytes& stream, size_t first, size_t count) {
  const auto from = stream.begin() + static_cast<ptrdiff_t>(first * kPacketSize);
  return Bytes(from, from + static_cast<ptrdiff_t>(count * kPacketSize));
}

Bytes numbered_table(int number, size_t size, int table_id = 0x80) {
  return long_section(table_id, Bytes(size - 12, static_cast<uint8_t>(number)), {.extension = number});
}

// The packet's header changed in place.
Bytes changed(Bytes packet, const std::function<void(uint8_t*)>& change) {
  change(packet.data());
  return packet;
}

}  // namespace

// The example of the class.
TEST(SectionReader, IsUsedLikeThis) {
  const Bytes stream = sample_stream();
  PacketReader packets;
  packets.feed(stream.data(), stream.size());
  packets.finish();
  TsPacket packet;
  std::ostringstream out;

  SectionReader sections([&](const StreamSection& section) {
    if (section.crc_ok) out << section.pid << ": " << section.table_id() << "\n";
  });
  while (packets.next(packet)) sections.push(packet);

  EXPECT_EQ(out.str().substr(0, 5), "0: 0\n");
}

TEST(SectionReader, ReadsEverySectionThatBeginsInAPacket) {
  std::vector<Bytes> sections;
  for (int i = 0; i < 200; ++i) sections.push_back(numbered_table(i, 12 + static_cast<size_t>(i * i) % 900));
  sections.push_back(numbered_table(200, 4098));
  for (const bool shared : {false, true})
    for (const int field : {-1, 0, 1, 100, 180, 181}) {
      Listener listener;
      listener.push(packets(sections, {.pid = kTablePid, .shared = shared, .field = field}));
      EXPECT_EQ(listener.sections(), sections) << shared << ", " << field;
    }
}

TEST(SectionReader, TellsWhereASectionWasComplete) {
  Listener listener;
  listener.push(joined({packet({.pid = 0x1FFF}, {}), packets({numbered_table(1, 500)}, {.pid = kTablePid})}));
  ASSERT_EQ(listener.given.size(), 1u);
  EXPECT_EQ(listener.given[0].pid, kTablePid);
  EXPECT_EQ(listener.given[0].packet, 3u);
  EXPECT_TRUE(listener.given[0].has_crc);
  EXPECT_TRUE(listener.given[0].crc_ok);
  EXPECT_FALSE(listener.given[0].repeated);
}

TEST(SectionReader, TellsTheNumbersOfASection) {
  const Bytes bytes = long_section(
      0x42, {1, 2, 3}, {.extension = 0x1234, .version = 7, .section_number = 4, .last_section_number = 5});
  StreamSection section{1, 2, bytes.data(), bytes.size(), true, true, false};
  EXPECT_EQ(section.table_id(), 0x42);
  EXPECT_EQ(section.extension(), 0x1234);
  EXPECT_EQ(section.version(), 7);
  EXPECT_EQ(section.section_number(), 4);
  EXPECT_EQ(section.last_section_number(), 5);
  EXPECT_TRUE(section.is_long());
  EXPECT_TRUE(section.is_current());
  section.size = 7;
  EXPECT_EQ(section.extension(), 0);
  const Bytes brief = short_section(0x70, {1, 2, 3, 4, 5});
  section = {1, 2, brief.data(), brief.size(), false, false, false};
  EXPECT_FALSE(section.is_long());
  EXPECT_EQ(section.extension(), 0);
  EXPECT_EQ(section.version(), 0);
  EXPECT_TRUE(section.is_current());
}

// What ISO/IEC 13818-1, 2.4.3.3 allows: a packet twice.
TEST(SectionReader, PassesOverDuplicatePackets) {
  const std::vector<Bytes> sections = {numbered_table(1, 500), numbered_table(2, 20), numbered_table(3, 600)};
  const Bytes stream = packets(sections, {.pid = kTablePid, .shared = true});
  Bytes twice;
  for (size_t i = 0; i < stream.size() / kPacketSize; ++i)
    twice = joined({twice, packets_of(stream, i, 1), packets_of(stream, i, 1)});
  Listener listener({.pids = {kTablePid}, .repeats = true});
  listener.push(twice);
  EXPECT_EQ(listener.sections(), sections);
}

TEST(SectionReader, DropsTheSectionThatMissesAPacket) {
  const std::vector<Bytes> sections = {numbered_table(1, 500), numbered_table(2, 500),
                                       numbered_table(3, 500)};
  for (const bool shared : {false, true}) {
    const Bytes stream = packets(sections, {.pid = kTablePid, .shared = shared});
    const size_t count = stream.size() / kPacketSize;
    for (size_t lost = 0; lost < count; ++lost) {
      Listener listener;
      listener.push(joined({packets_of(stream, 0, lost), packets_of(stream, lost + 1, count - lost - 1)}));
      for (const Given& g : listener.given) EXPECT_TRUE(g.crc_ok) << lost;
      EXPECT_GE(listener.given.size(), shared ? 1u : 2u) << lost;
    }
  }
}

// As many packets lost as the counter has values; the next has the same counter, and other bytes.
TEST(SectionReader, TellsADuplicateFromALossByItsBytes) {
  const Bytes first = packets({numbered_table(1, 500)}, {.pid = kTablePid});
  const Bytes second = packets({numbered_table(2, 100)}, {.pid = kTablePid, .counter = 1});
  Listener listener;
  listener.push(joined({packets_of(first, 0, 2), second}));
  EXPECT_EQ(listener.sections(), std::vector<Bytes>{numbered_table(2, 100)});
}

TEST(SectionReader, PassesOverPacketsThatCannotBeRead) {
  const Bytes stream = packets({numbered_table(1, 500)}, {.pid = kTablePid});
  const std::vector<std::function<void(uint8_t*)>> changes = {
      [](uint8_t* p) { p[1] |= 0x80; },                // an error is indicated
      [](uint8_t* p) { p[3] |= 0x80; },                // scrambled
      [](uint8_t* p) { p[3] &= 0xCF; },                // neither field nor payload
      [](uint8_t* p) { p[3] |= 0x20, p[4] = 183; },    // a field of the whole packet
      [](uint8_t* p) { p[3] |= 0x20, p[4] = 0xFF; }};  // or of more
  for (const auto& change : changes)
    for (size_t i = 0; i < 3; ++i) {
      Listener listener;
      for (size_t at = 0; at < 3; ++at)
        listener.push(at == i ? changed(packets_of(stream, at, 1), change) : packets_of(stream, at, 1));
      EXPECT_TRUE(listener.given.empty());
    }
}

// They neither count nor carry anything.
TEST(SectionReader, GoesOnAfterPacketsWithoutPayload) {
  const Bytes stream = packets({numbered_table(1, 500)}, {.pid = kTablePid});
  Listener listener;
  listener.push(joined({packets_of(stream, 0, 1),
                        packet({.pid = kTablePid, .counter = 0, .field = 183, .control = 2}, {}),
                        packets_of(stream, 1, 2)}));
  EXPECT_EQ(listener.sections(), std::vector<Bytes>{numbered_table(1, 500)});
}

TEST(SectionReader, DropsWhatTheNextPointerCutsOff) {
  Listener listener;
  listener.push(joined({packets_of(packets({numbered_table(1, 500)}, {.pid = kTablePid}), 0, 2),
                        changed(start_packet(kTablePid, 10, joined({Bytes(10, 0), numbered_table(2, 50)})),
                                [](uint8_t* p) { p[3] |= 2; }),
                        changed(start_packet(kTablePid, 200, {}), [](uint8_t* p) { p[3] |= 3; })}));
  EXPECT_EQ(listener.sections(), std::vector<Bytes>{numbered_table(2, 50)});
}

TEST(SectionReader, IgnoresElementaryStreams) {
  Listener listener;
  listener.push(packet({.pid = kTablePid, .start = 1}, {0x00, 0x00, 0x01, 0xE0, 0x00, 0x00, 0x80}));
  listener.push(packet({.pid = kTablePid, .counter = 1}, Bytes(184, 0)));
  EXPECT_TRUE(listener.given.empty());
}

TEST(SectionReader, GivesSectionsWithAWrongCrcAsSuch) {
  Bytes broken = numbered_table(1, 100);
  broken[50] ^= 1;
  Listener listener;
  listener.push(packets({broken}, {.pid = kTablePid}));
  ASSERT_EQ(listener.given.size(), 1u);
  EXPECT_TRUE(listener.given[0].has_crc);
  EXPECT_FALSE(listener.given[0].crc_ok);
}

TEST(SectionReader, KnowsWhichShortSectionsHaveACrc) {
  Bytes offset = short_section(0x73, Bytes(11, 0));
  repair_crc(offset);
  Listener listener;
  listener.push(packets({short_section(0x70, Bytes(5, 1)), offset}, {.pid = 0x14}));
  ASSERT_EQ(listener.given.size(), 2u);
  EXPECT_FALSE(listener.given[0].has_crc);
  EXPECT_FALSE(listener.given[0].crc_ok);
  EXPECT_TRUE(listener.given[1].has_crc);
  EXPECT_TRUE(listener.given[1].crc_ok);
}

TEST(SectionReader, FollowsProgramsAndWhatTheirMapsName) {
  const Bytes ait_named = descriptor(0x6F, {0x00, 0x01, 0xE1});
  const Bytes notification = descriptor(0x66, {0x00, 0x0B, 0x00});
  Listener listener(SectionReaderOptions{});
  listener.push(packets({pat_of({{0, 0x31}, {1, 0x100}})}, {.pid = 0}));
  listener.push(packets({pmt_of(1, {{0x02, 0x101},
                                    {0x05, 0x102, ait_named},
                                    {0x05, 0x103},
                                    {0x0D, 0x104, notification},
                                    {0x0B, 0x105},
                                    {0x0C, 0x106},
                                    {0x06, 0x107, notification}})},
                        {.pid = 0x100}));
  for (int pid = 0x101; pid <= 0x107; ++pid) listener.push(packets({numbered_table(pid, 30)}, {.pid = pid}));
  listener.push(packets({numbered_table(1, 40)}, {.pid = 0x31}));
  EXPECT_EQ(listener.pids(), (std::vector<int>{0, 0x100, 0x102, 0x104, 0x105, 0x106, 0x107, 0x31}));
  EXPECT_TRUE(listener.reader.reads_pid(0x102));
  EXPECT_FALSE(listener.reader.reads_pid(0x103));
  EXPECT_FALSE(listener.reader.reads_pid(-1));
  EXPECT_FALSE(listener.reader.reads_pid(0x2000));
}

TEST(SectionReader, LeavesAPidThatNoMapNamesAnyMore) {
  Listener listener(SectionReaderOptions{});
  const auto reads = [&](std::set<int> pids) {
    for (int pid = 0x100; pid < 0x110; ++pid)
      EXPECT_EQ(listener.reader.reads_pid(pid), pids.contains(pid)) << pid;
  };
  listener.push(packets({pat_of({{1, 0x100}, {2, 0x101}})}, {.pid = 0}));
  reads({0x100, 0x101});
  listener.push(packets({pmt_of(1, {{0x0B, 0x102}, {0x0B, 0x103}})}, {.pid = 0x100}));
  listener.push(packets({pmt_of(2, {{0x0B, 0x103}, {0x0B, 0x104}})}, {.pid = 0x101}));
  reads({0x100, 0x101, 0x102, 0x103, 0x104});
  listener.push(packets({pmt_of(1, {{0x0B, 0x105}}, 4)}, {.pid = 0x100, .counter = 1}));
  reads({0x100, 0x101, 0x103, 0x104, 0x105});
  // A map that is gone takes along what it named; one that comes back brings it back.
  listener.push(packets({pat_of({{1, 0x100}}, {.version = 4})}, {.pid = 0, .counter = 1}));
  reads({0x100, 0x105});
  listener.push(packets({pat_of({{1, 0x100}, {2, 0x101}}, {.version = 5})}, {.pid = 0, .counter = 2}));
  listener.push(packets({pmt_of(2, {{0x0B, 0x103}, {0x0B, 0x104}})}, {.pid = 0x101, .counter = 1}));
  reads({0x100, 0x101, 0x103, 0x104, 0x105});
}

TEST(SectionReader, FollowsAllSectionsOfTheProgramAssociation) {
  Listener listener(SectionReaderOptions{});
  listener.push(packets({pat_of({{1, 0x100}}, {.last_section_number = 1}),
                         pat_of({{2, 0x101}}, {.section_number = 1, .last_section_number = 1})},
                        {.pid = 0}));
  EXPECT_TRUE(listener.reader.reads_pid(0x100));
  EXPECT_TRUE(listener.reader.reads_pid(0x101));
  listener.push(packets({pat_of({{1, 0x100}}, {.version = 4})}, {.pid = 0, .counter = 2}));
  EXPECT_TRUE(listener.reader.reads_pid(0x100));
  EXPECT_FALSE(listener.reader.reads_pid(0x101));
}

TEST(SectionReader, LearnsNothingFromWhatIsWrongOrNotYetValid) {
  Listener listener(SectionReaderOptions{});
  Bytes broken = pat_of({{1, 0x100}});
  broken.back() ^= 1;
  listener.push(packets({broken, pat_of({{1, 0x101}}, {.current_next = 0})}, {.pid = 0}));
  EXPECT_FALSE(listener.reader.reads_pid(0x100));
  EXPECT_FALSE(listener.reader.reads_pid(0x101));
  EXPECT_EQ(listener.given.size(), 2u);
}

TEST(SectionReader, BearsMapsThatNameWhatTheyShouldNot) {
  Listener listener(SectionReaderOptions{});
  listener.push(packets({pat_of({{1, 0}, {2, 0x1FFF}, {3, 0x11}, {4, 0x100}})}, {.pid = 0}));
  EXPECT_FALSE(listener.reader.reads_pid(0x1FFF));
  listener.push(
      packets({pmt_of(4, {{0x0B, 0x100}, {0x0B, 0}, {0x0B, 0x11}, {0x0B, 0x1FFF}})}, {.pid = 0x100}));
  listener.push(packets({pat_of({}, {.version = 4})}, {.pid = 0, .counter = 1}));
  EXPECT_TRUE(listener.reader.reads_pid(0));
  EXPECT_TRUE(listener.reader.reads_pid(0x11));
  EXPECT_FALSE(listener.reader.reads_pid(0x100));
  // A map whose descriptors pass its end is refused, and nothing of it is learnt.
  listener.push(packets({pat_of({{1, 0x100}}, {.version = 5})}, {.pid = 0, .counter = 2}));
  Bytes refused = pmt_of(1, {{0x0B, 0x101}});
  refused[11] = 0xFF;
  repair_crc(refused);
  listener.push(packets({refused, refused}, {.pid = 0x100, .counter = 1}));
  EXPECT_FALSE(listener.reader.reads_pid(0x101));
}

TEST(SectionReader, FollowsTheTablesOfAMasterGuide) {
  const Bytes guide = long_section(0xC7, bits({{8, 0, "protocol_version"},
                                               {16, 1, "tables_defined"},
                                               {16, 0x0100, "table_type"},
                                               {3, 7, "reserved"},
                                               {13, 0x1D00, "table_type_PID"},
                                               {3, 7, "reserved"},
                                               {5, 0, "table_type_version_number"},
                                               {32, 100, "number_bytes"},
                                               {4, 15, "reserved"},
                                               {12, 0, "table_type_descriptors_length"},
                                               {4, 15, "reserved"},
                                               {12, 0, "descriptors_length"}}));
  Listener listener(SectionReaderOptions{});
  EXPECT_EQ(listener.reader.standard(), Standard::dvb);
  listener.push(packets({guide}, {.pid = 0x1FFB}));
  EXPECT_TRUE(listener.reader.reads_pid(0x1D00));
  EXPECT_EQ(listener.reader.standard(), Standard::atsc);

  Listener dvb({.standard = Standard::dvb});
  dvb.push(packets({guide}, {.pid = 0x1FFB}));
  EXPECT_FALSE(dvb.reader.reads_pid(0x1D00));
  EXPECT_TRUE(dvb.reader.reads_pid(0x11));
  EXPECT_EQ(dvb.reader.standard(), Standard::dvb);
  Listener atsc({.standard = Standard::atsc});
  EXPECT_EQ(atsc.reader.standard(), Standard::atsc);
  EXPECT_FALSE(atsc.reader.reads_pid(0x11));
}

TEST(SectionReader, ReadsPidsThatAreAskedFor) {
  Listener listener(SectionReaderOptions{});
  for (const int pid : {-1, 0x1FFF, 0x2000}) listener.reader.add_pid(pid);
  const Bytes first = packets({section_of(0x90, 300)}, {.pid = 0x500});
  listener.push(first);
  EXPECT_TRUE(listener.given.empty());
  listener.reader.add_pid(0x500);
  listener.reader.add_pid(0x500);
  listener.push(first);
  EXPECT_EQ(listener.sections(), std::vector<Bytes>{section_of(0x90, 300)});
  listener.reader.remove_pid(0x500);
  EXPECT_FALSE(listener.reader.reads_pid(0x500));
  // What the stream names stays.
  listener.reader.remove_pid(0x11);
  EXPECT_TRUE(listener.reader.reads_pid(0x11));
}

TEST(SectionReader, TakesTheCrcForProofOnPidsThatNothingNames) {
  Bytes broken = numbered_table(2, 300);
  broken[20] ^= 1;
  const std::vector<Bytes> sections = {numbered_table(1, 300), broken, section_of(0x70, 8),
                                       numbered_table(3, 30)};
  Listener listener({.every_pid = true});
  for (const bool shared : {false, true}) {
    listener.given.clear();
    listener.push(packets(sections, {.pid = shared ? 0x500 : 0x501, .shared = shared}));
    EXPECT_EQ(listener.sections(), (std::vector<Bytes>{numbered_table(1, 300), numbered_table(3, 30)}))
        << shared;
  }
}

TEST(SectionReader, GivesARepeatedSectionOnce) {
  const Bytes first = numbered_table(1, 300);
  const Bytes other = long_section(0x80, Bytes(10, 7), {.extension = 1, .section_number = 1});
  const Bytes next = long_section(0x80, Bytes(10, 8), {.extension = 1, .version = 4, .current_next = 0});
  const Bytes newer = long_section(0x80, Bytes(10, 8), {.extension = 1, .version = 4});
  const Bytes brief = section_of(0x70, 8);
  Bytes broken = numbered_table(5, 30);
  broken.back() ^= 1;
  const std::vector<Bytes> sent = {first, other,  next,  first, next,  other, brief, broken,
                                   brief, broken, newer, next,  newer, first, broken};
  const std::vector<Bytes> wanted = {first, other, next, brief, broken, newer, first};
  Listener listener;
  listener.push(packets(sent, {.pid = kTablePid}));
  EXPECT_EQ(listener.sections(), wanted);

  Listener all({.pids = {kTablePid}, .repeats = true});
  all.push(packets(sent, {.pid = kTablePid}));
  EXPECT_EQ(all.sections(), sent);
  std::vector<Bytes> not_repeated;
  for (const Given& g : all.given)
    if (!g.repeated) not_repeated.push_back(g.bytes);
  EXPECT_EQ(not_repeated, wanted);
}

// Tables that share PID, table id and extension.
TEST(SectionReader, TellsTablesApartByTheirFurtherIds) {
  for (const int table_id : {0x42, 0x46, 0x4C, 0x4E, 0x50, 0x6F, 0xCC})
    for (const size_t id : {size_t{1}, size_t{3}}) {
      if (id == 3 && (table_id == 0x42 || table_id == 0x46 || table_id == 0x4C)) continue;
      Bytes one(20, 0);
      Bytes two(20, 0);
      two[id] = 1;
      const std::vector<Bytes> sections = {long_section(table_id, one), long_section(table_id, two)};
      Listener listener;
      for (int round = 0; round < 3; ++round)
        listener.push(packets(sections, {.pid = kTablePid, .counter = 2 * round}));
      EXPECT_EQ(listener.sections(), sections) << table_id;
    }
}

TEST(SectionReader, ReadsAChainOfBareSections) {
  Listener listener;
  const Bytes first = numbered_table(1, 30);
  const Bytes second = long_section(0xCB, Bytes(20, 0));
  for (const Bytes& section : {first, second, first})
    listener.reader.push_section(section.data(), section.size());
  listener.reader.push_section(first.data(), 2);
  listener.reader.push_section(first.data(), first.size() - 1);
  EXPECT_EQ(listener.sections(), (std::vector<Bytes>{first, second}));
  EXPECT_EQ(listener.pids(), (std::vector<int>{-1, -1}));
  EXPECT_EQ(listener.given[1].packet, 1u);
  EXPECT_EQ(listener.reader.standard(), Standard::atsc);
}

TEST(SectionReader, LetsItsSinkChangeWhatIsRead) {
  Listener listener;
  listener.then = [&](const StreamSection& section) {
    listener.reader.remove_pid(section.pid);
    EXPECT_EQ(section_crc(section.bytes, section.size), good_section_crc);  // it is still there
    listener.reader.add_pid(0x200);
  };
  listener.push(packets({numbered_table(1, 500), numbered_table(2, 20), numbered_table(3, 20)},
                        {.pid = kTablePid, .shared = true}));
  EXPECT_EQ(listener.sections(), std::vector<Bytes>{numbered_table(1, 500)});
  EXPECT_TRUE(listener.reader.reads_pid(0x200));
}

TEST(SectionReader, GoesOnAfterASinkThatThrows) {
  Listener listener;
  listener.then = [](const StreamSection&) { throw error("the sink's own"); };
  const Bytes stream = packets({numbered_table(1, 500), numbered_table(2, 500)}, {.pid = kTablePid});
  for (size_t i = 0; i < stream.size() / kPacketSize; ++i) try {
      listener.push(packets_of(stream, i, 1));
    } catch (const error&) {
    }
  EXPECT_EQ(listener.sections(), (std::vector<Bytes>{numbered_table(1, 500), numbered_table(2, 500)}));
}

TEST(SectionReader, ReadsRecordedStreams) {
  const std::map<std::string, std::map<int, size_t>> expected = {
      {"dvb-eit-schedule.ts",
       {{0x00, 1},
        {0x02, 5},
        {0x40, 1},
        {0x42, 1},
        {0x4E, 10},
        {0x4F, 18},
        {0x50, 113},
        {0x51, 36},
        {0x52, 29},
        {0x53, 23}}},
      {"dvb-sat-bat.ts",
       {{0x00, 1}, {0x01, 1}, {0x02, 10}, {0x40, 1}, {0x4A, 3}, {0x4E, 1}, {0x4F, 11}, {0xE4, 4}}},
      {"dvbt-ait.ts", {{0x00, 1}, {0x02, 2}, {0x40, 1}, {0x42, 1}, {0x70, 4}, {0x73, 3}, {0x74, 3}}},
      {"atsc-psip.ts", {{0x00, 1}, {0x02, 3}, {0xC7, 1}, {0xC8, 1}, {0xCB, 12}, {0xCD, 1}}}};
  if (!has_recorded_streams()) GTEST_SKIP() << "no recorded streams";
  for (const auto& [name, counts] : expected) {
    std::map<int, std::set<Bytes>> sections;
    SectionReader reader(
        [&](const StreamSection& s) {
          if (s.crc_ok || s.pid == 0x14) sections[s.table_id()].insert(Bytes(s.bytes, s.bytes + s.size));
        },
        {.every_pid = true});
    read_packets(recorded_stream(name), [&](const TsPacket& packet) { reader.push(packet); });
    std::map<int, size_t> counted;
    for (const auto& [table_id, different] : sections) counted[table_id] = different.size();
    EXPECT_EQ(counted, counts) << name;
  }
}

// The reference vectors of the authors: the key and the input count up from 0.
TEST(SipHash, GivesThePublishedDigests) {
  constexpr detail::SipKey key = {0x0706050403020100, 0x0F0E0D0C0B0A0908};
  Bytes input(64);
  for (size_t i = 0; i < input.size(); ++i) input[i] = static_cast<uint8_t>(i);
  const auto digest = [&](size_t size) { return detail::SipHash(key).finish(input.data(), size, size); };
  EXPECT_EQ(digest(0), (detail::SipDigest{0xE6A825BA047F81A3, 0x930255C71472F66D}));
  EXPECT_EQ(digest(1), (detail::SipDigest{0x44AF996BD8C187DA, 0x45FC229B11597634}));
  EXPECT_EQ(digest(2), (detail::SipDigest{0xC75DA4A48D227781, 0xE4FF0AF6DE8BA3FC}));
  EXPECT_EQ(digest(8), (detail::SipDigest{0x61F55862BAA9623B, 0xB49714F364E2830F}));
  EXPECT_EQ(digest(15), (detail::SipDigest{0x11A8B03399E99354, 0xD9C3CF970FEC087E}));
  EXPECT_EQ(digest(63), (detail::SipDigest{0x4A83502F77D15051, 0x7CBD3F979A063E50}));
}

TEST(SectionReader, RemembersAsManySectionsAsItSays) {
  constexpr uint32_t kMost = 262144;
  uint32_t given = 0;
  SectionReader reader([&](const StreamSection&) { ++given; });
  const auto push = [&](uint32_t number) {
    const Bytes section = bits({{8, 0x70, "table_id"}, {16, 4, "length"}, {32, number, "body"}});
    reader.push_section(section.data(), section.size());
  };
  const auto given_again = [&](uint32_t first, uint32_t count) {
    given = 0;
    for (uint32_t i = 0; i < count; ++i) push(first + i);
    return given;
  };
  for (uint32_t i = 0; i < kMost / 4; ++i) push(i);
  EXPECT_EQ(given_again(0, kMost / 4), 0u);
  // Of many more the last are remembered, but for a few whose bucket had other ones.
  for (uint32_t i = 0; i < 3 * kMost; ++i) push(i);
  EXPECT_LT(given_again(5 * kMost / 2, kMost / 2), kMost / 2 / 20);
  EXPECT_EQ(given_again(0, kMost / 4), kMost / 4);
}
