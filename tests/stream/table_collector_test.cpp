// Tables out of sections: when they are complete, changed, gone or forgotten, and what they take.

#include "tests/stream/collected.h"
#include "tests/support/sample.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

#include <quillon/sections/error.h>
#include <quillon/stream/stream_statistics.h>
#include <quillon/stream/table_collector.h>
#include <quillon/tables/nit.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr int kSomePid = 0x123;

struct Announced {
  std::string what;  // "complete 80/1 v3", "changed 80/1 v4 of v3"
  TableId table;
  std::vector<Bytes> sections;
};

// Writes down what its collector says.
class Announcements {
 public:
  explicit Announcements(const TableCollectorOptions& options = {})
      : collector(
            [this](const TableEvent& event) {
              static constexpr const char* names[] = {"complete", "changed", "gone", "forgotten"};
              std::ostringstream text;
              text << names[static_cast<int>(event.kind)] << std::hex << " " << event.table.table_id << "/"
                   << event.table.extension << std::dec << " v" << event.version;
              if (event.kind == TableEvent::Kind::changed) text << " of v" << event.old_version;
              if (!event.table.is_current) text << " next";
              said.push_back({text.str(), event.table, event.sections});
              then(event);
            },
            options) {}

  Announcements& push(const Bytes& section, int pid = kSomePid) {
    collector.push(stream_section(section, pid));
    return *this;
  }
  // What was said since the last call.
  std::vector<std::string> take() {
    std::vector<std::string> out;
    for (const Announced& one : said) out.push_back(one.what);
    said.clear();
    return out;
  }

  std::vector<Announced> said;
  std::function<void(const TableEvent&)> then = [](const TableEvent&) {};
  TableCollector collector;
};

using Lines = std::vector<std::string>;

Bytes numbered_part(int number, int last, int version = 3, uint8_t body = 0, int extension = 1) {
  return long_section(
      0x80, {body},
      {.extension = extension, .version = version, .section_number = number, .last_section_number = last});
}

Bytes eit_section(int table_id, int number, int last, int segment_last, int service = 1, int stream = 0x451,
                  int network = 0x233A) {
  return long_section(table_id,
                      bits({{16, static_cast<uint64_t>(stream), "transport_stream_id"},
                            {16, static_cast<uint64_t>(network), "original_network_id"},
                            {8, static_cast<uint64_t>(segment_last), "segment_last_section_number"},
                            {8, static_cast<uint64_t>(table_id), "last_table_id"}}),
                      {.extension = service, .section_number = number, .last_section_number = last});
}

}  // namespace

// The example of the class.
TEST(TableCollector, IsUsedLikeThis) {
  const Bytes stream = sample_stream();
  PacketReader packets;
  packets.feed(stream.data(), stream.size());
  packets.finish();
  TsPacket packet;
  StreamStatistics statistics;
  std::ostringstream out;

  TableCollector tables([&](const TableEvent& event) {
    if (event.table.table_id != 0x40 || !event.is_there()) return;
    Nit network;
    for (const auto& section : event.sections) network.Parse(section.data(), section.size(), false);
    out << network.get_stream_infos().size() << " transport streams\n";
  });
  SectionReader sections([&](const StreamSection& section) { tables.push(section); }, {.repeats = true});
  while (packets.next(packet)) {
    statistics.push(packet);
    sections.push(packet);
    tables.advance(statistics.seconds());
  }

  EXPECT_EQ(out.str(), "1 transport streams\n");
}

TEST(TableCollector, AnnouncesATableOnceAllItsSectionsCame) {
  Announcements tables;
  tables.push(numbered_part(2, 2)).push(numbered_part(0, 2)).push(numbered_part(2, 2));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(numbered_part(1, 2));
  ASSERT_EQ(tables.said.size(), 1u);
  EXPECT_EQ(tables.said[0].what, "complete 80/1 v3");
  EXPECT_EQ(tables.said[0].sections,
            (std::vector<Bytes>{numbered_part(0, 2), numbered_part(1, 2), numbered_part(2, 2)}));
  EXPECT_EQ(tables.said[0].table.pid, kSomePid);
  tables.said.clear();
  // Repetitions say nothing.
  tables.push(numbered_part(0, 2)).push(numbered_part(1, 2)).push(numbered_part(2, 2));
  EXPECT_EQ(tables.take(), Lines{});
}

TEST(TableCollector, AnnouncesAnotherVersionWithTheOneBefore) {
  Announcements tables;
  tables.push(numbered_part(0, 1, 31)).push(numbered_part(1, 1, 31)).take();
  tables.push(numbered_part(1, 1, 0));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(numbered_part(0, 1, 0));
  EXPECT_EQ(tables.take(), Lines{"changed 80/1 v0 of v31"});
  // The last number is another, and the version not: the sections so far are not of that table.
  tables.push(numbered_part(0, 2, 1)).push(numbered_part(1, 2, 1)).push(numbered_part(0, 1, 1));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(numbered_part(1, 1, 1));
  EXPECT_EQ(tables.take(), Lines{"changed 80/1 v1 of v0"});
}

TEST(TableCollector, TakesOtherBytesOfAVersionForAnotherTable) {
  Announcements tables;
  tables.push(numbered_part(0, 1)).push(numbered_part(1, 1)).take();
  tables.push(numbered_part(1, 1, 3, 0xAA));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(numbered_part(0, 1));
  ASSERT_EQ(tables.said.size(), 1u);
  EXPECT_EQ(tables.said[0].what, "changed 80/1 v3 of v3");
  EXPECT_EQ(tables.said[0].sections, (std::vector<Bytes>{numbered_part(0, 1), numbered_part(1, 1, 3, 0xAA)}));
  tables.said.clear();
  // Back at what it was before all its sections came again, it did not change.
  tables.push(numbered_part(1, 1, 3, 0xBB)).push(numbered_part(1, 1, 3, 0xAA)).push(numbered_part(0, 1));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(numbered_part(0, 1, 4)).push(numbered_part(0, 1)).push(numbered_part(1, 1, 4));
  EXPECT_EQ(tables.take(), Lines{});
}

TEST(TableCollector, TakesNoSectionsWithAWrongCrcOrNumber) {
  Announcements tables;
  Bytes broken = numbered_part(0, 0);
  broken.back() ^= 1;
  const Bytes no_header = [] {
    Bytes out = {0x80, 0xB0, 0x04, 0, 0, 0, 0};
    repair_crc(out);
    return out;
  }();
  tables.push(broken).push(numbered_part(1, 0)).push(no_header);
  EXPECT_EQ(tables.take(), Lines{});
}

TEST(TableCollector, KeepsNextTablesApart) {
  Announcements tables;
  Header next{.extension = 1, .version = 4, .current_next = 0};
  tables.push(numbered_part(0, 0)).push(long_section(0x80, {1}, next));
  EXPECT_EQ(tables.take(), (Lines{"complete 80/1 v3", "complete 80/1 v4 next"}));
  next.current_next = 1;
  tables.push(long_section(0x80, {1}, next));
  EXPECT_EQ(tables.take(), Lines{"changed 80/1 v4 of v3"});
}

TEST(TableCollector, EndsSegmentsOfAScheduleWithTheirLastSection) {
  Announcements tables;
  // Segments: 0, 1; 8; 16 to 23.
  for (int number = 23; number >= 16; --number) tables.push(eit_section(0x50, number, 23, 23));
  tables.push(eit_section(0x50, 1, 23, 1)).push(eit_section(0x50, 0, 23, 1));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(eit_section(0x50, 8, 23, 8));
  ASSERT_EQ(tables.said.size(), 1u);
  EXPECT_EQ(tables.said[0].what, "complete 50/1 v3");
  EXPECT_EQ(tables.said[0].sections.size(), 11u);
  EXPECT_EQ(tables.said[0].sections[2], eit_section(0x50, 8, 23, 8));
  tables.said.clear();
  // A last number from another segment ends none.
  tables.push(eit_section(0x51, 8, 9, 0)).push(eit_section(0x51, 0, 9, 0));
  EXPECT_EQ(tables.take(), Lines{});
  tables.push(eit_section(0x51, 9, 9, 0));
  EXPECT_EQ(tables.take(), Lines{"complete 51/1 v3"});
  tables.push(eit_section(0x4E, 1, 1, 1)).push(eit_section(0x4E, 0, 1, 1));
  EXPECT_EQ(tables.take(), Lines{"complete 4e/1 v3"});
}

TEST(TableCollector, TellsTablesApartByAllTheirIds) {
  Announcements tables;
  tables.push(eit_section(0x4F, 0, 0, 0)).push(eit_section(0x4F, 0, 0, 0, 1, 0x452));
  tables.push(eit_section(0x4F, 0, 0, 0, 1, 0x451, 0x1)).push(eit_section(0x4F, 0, 0, 0), 0x12);
  EXPECT_EQ(tables.take(), Lines(4, "complete 4f/1 v3"));
  const auto table = [](int table_id, const Bytes& body) { return long_section(table_id, body); };
  for (const auto& [table_id, one, two] :
       std::vector<std::tuple<int, Bytes, Bytes>>{{0x46, {0, 1, 0xFF}, {0, 2, 0xFF}},  // original_network_id
                                                  {0x4C, {0, 0, 1, 0}, {0, 0, 2, 0}},  // platform_id
                                                  {0xCC, {0, 0, 0, 0, 1}, {0, 0, 0, 0, 2}}})  // ETM_id
  {
    tables.push(table(table_id, one)).push(table(table_id, two)).push(table(table_id, one));
    EXPECT_EQ(tables.said.size(), 2u) << table_id;
    EXPECT_NE(tables.said[0].table, tables.said[1].table) << table_id;
    tables.said.clear();
  }
  // Ids that do not fit into the section are 0.
  tables.push(table(0x4E, {})).push(table(0xCC, {1, 2}));
  EXPECT_EQ(tables.said[0].table.original_network_id, 0);
  EXPECT_EQ(tables.said[1].table.further_id, 0x02000000u);
}

TEST(TableCollector, TakesAShortSectionForATable) {
  Announcements tables;
  tables.push(short_section(0x70, {1, 2, 3, 4, 5}), 0x14).push(short_section(0x70, {1, 2, 3, 4, 6}), 0x14);
  tables.push(short_section(0x72, {}), 0x14);
  EXPECT_EQ(tables.take(), (Lines{"complete 70/0 v0", "changed 70/0 v0 of v0", "complete 72/0 v0"}));
  // A time offset table has a CRC.
  Bytes offsets = short_section(0x73, {1, 2, 3, 4, 5, 0xF0, 0x00, 0, 0, 0, 0});
  tables.push(offsets, 0x14);
  EXPECT_EQ(tables.take(), Lines{});
  repair_crc(offsets);
  tables.push(offsets, 0x14);
  EXPECT_EQ(tables.take(), Lines{"complete 73/0 v0"});
}

TEST(TableCollector, SaysWhenATableIsGone) {
  Announcements tables;
  const Bytes network = long_section(0x40, {0xF0, 0x00, 0xF0, 0x00});
  const Bytes association = pat_of({{1, 0x100}});
  // What came before time was known counts from there.
  tables.push(network).push(association);
  tables.push(numbered_part(0, 0)).push(eit_section(0x60, 0, 1, 1)).take();
  tables.collector.advance(1000);
  tables.collector.advance(1001.5);
  EXPECT_EQ(tables.take(), Lines{});
  tables.collector.advance(1001.6);
  EXPECT_EQ(tables.take(), Lines{"gone 0/1234 v3"});
  tables.collector.advance(1020);
  tables.push(network);
  tables.collector.advance(900);  // back in time
  tables.collector.advance(1050);
  EXPECT_EQ(tables.take(), Lines{});
  tables.collector.advance(1050.1);
  EXPECT_EQ(tables.take(), Lines{"gone 40/1234 v3"});
  // Half of a table goes without a word, a private one never.
  tables.collector.advance(1e9);
  tables.push(eit_section(0x60, 1, 1, 1)).push(numbered_part(0, 0)).push(network);
  EXPECT_EQ(tables.take(), Lines{"complete 40/1234 v3"});
}

TEST(TableCollector, IsAsPatientAsItIsAsked) {
  Announcements tables({.patience = 10});
  tables.collector.advance(0);
  tables.push(pat_of({{1, 0x100}})).take();
  tables.collector.advance(5);
  EXPECT_EQ(tables.take(), Lines{});
  tables.collector.advance(5.1);
  EXPECT_EQ(tables.take(), Lines{"gone 0/1234 v3"});
}

TEST(TableCollector, KnowsTheLongestIntervals) {
  const auto interval = [](int table_id, int pid) {
    return TableCollector::longest_interval({.pid = pid, .table_id = table_id});
  };
  EXPECT_EQ(interval(0x42, 0x11), 2);
  EXPECT_EQ(interval(0x50, 0x12), 30);
  EXPECT_EQ(interval(0xC8, kPsipPid), 0.4);
  EXPECT_EQ(interval(0xC8, -1), 0.4);
  EXPECT_EQ(interval(0xCB, 0x1D00), 60);
  EXPECT_GT(interval(0xC8, 0x123), 1e300);  // a private table
  EXPECT_GT(interval(0x71, 0x13), 1e300);
}

TEST(TableCollector, PassesOverCarousels) {
  Announcements tables;
  tables.push(long_section(0x3B, {1})).push(long_section(0x3C, {1})).push(long_section(0x3E, {1}));
  EXPECT_EQ(tables.take(), Lines{});
}

TEST(TableCollector, HandsOverWhatIsThere) {
  Announcements tables;
  tables.push(numbered_part(0, 0)).push(numbered_part(0, 1, 3, 0, 2)).push(pat_of({{1, 0x100}}), 0);
  Lines there;
  tables.collector.each([&](const TableEvent& event) {
    EXPECT_TRUE(event.is_there());
    there.push_back(std::to_string(event.table.table_id) + " " + std::to_string(event.sections.size()));
  });
  EXPECT_EQ(there, (Lines{"0 1", "128 1"}));
}

TEST(TableCollector, GoesOnAfterASinkThatThrows) {
  Announcements tables;
  tables.then = [](const TableEvent&) { throw error("the sink's own"); };
  EXPECT_THROW(tables.push(numbered_part(0, 0)), error);
  EXPECT_THROW(tables.push(pat_of({{1, 0x100}})), error);
  tables.collector.advance(1);
  EXPECT_THROW(tables.collector.advance(10), error);
  tables.collector.advance(10);
  EXPECT_NO_THROW(tables.push(numbered_part(0, 0)));
  EXPECT_EQ(tables.take(), (Lines{"complete 80/1 v3", "complete 0/1234 v3", "gone 0/1234 v3"}));
}

TEST(TableCollector, ForgetsTheTablesThatWereSilentForTheLongestTime) {
  Announcements tables({.memory = 0});  // what it needs in any case
  const Bytes kept = numbered_part(0, 0, 3, 0, 0xFFFF);
  tables.push(kept).take();
  for (int number = 0; number < 20000; ++number) {
    tables.push(numbered_part(0, 0, 3, 0, number));
    tables.push(kept);
  }
  std::map<std::string, int> kinds;
  for (const std::string& what : tables.take()) ++kinds[what.substr(0, what.find(' '))];
  EXPECT_EQ(kinds["complete"], 20000);
  EXPECT_GT(kinds["forgotten"], 5000);
  EXPECT_LT(kinds["forgotten"], 15000);
  int there = 0;
  bool kept_is_there = false;
  tables.collector.each([&](const TableEvent& event) {
    ++there;
    kept_is_there |= event.table.extension == 0xFFFF;
  });
  EXPECT_TRUE(kept_is_there);
  EXPECT_EQ(there, 20001 - kinds["forgotten"]);
  // A forgotten table is met anew.
  tables.push(numbered_part(0, 0, 3, 0, 0));
  EXPECT_EQ(tables.take().back(), "complete 80/0 v3");
}

// Short captures: of the tables that have several sections few came whole.
TEST(TableCollector, CollectsRecordedTables) {
  if (!has_recorded_streams()) GTEST_SKIP() << "no recorded streams";
  // Different sections of complete tables, by table id.
  const std::map<std::string, std::map<int, size_t>> expected = {
      {"dvb-eit-schedule.ts", {{0x00, 1}, {0x02, 5}, {0x40, 1}, {0x42, 1}, {0x4E, 10}}},
      {"dvb-sat-bat.ts", {{0x00, 1}, {0x01, 1}, {0x02, 5}}},
      {"dvbt-ait.ts", {{0x00, 1}, {0x02, 2}, {0x40, 1}, {0x42, 1}, {0x70, 4}, {0x73, 3}, {0x74, 3}}},
      {"atsc-psip.ts", {{0x00, 1}, {0x02, 3}, {0xC7, 1}, {0xC8, 1}, {0xCB, 12}, {0xCD, 1}}},
      {"atsc-sections.bin", {{0x00, 1}, {0x02, 3}, {0xC7, 1}, {0xC8, 1}, {0xCB, 7}, {0xCC, 13}, {0xCD, 1}}}};
  for (const auto& [name, counts] : expected) {
    std::map<int, std::set<Bytes>> sections;
    TableCollector tables([&](const TableEvent& event) {
      sections[event.table.table_id].insert(event.sections.begin(), event.sections.end());
    });
    read_recorded_sections(name, [&](const StreamSection& section) { tables.push(section); });
    std::map<int, size_t> counted;
    for (const auto& [table_id, different] : sections) counted[table_id] = different.size();
    EXPECT_EQ(counted, counts) << name;
  }
}
