// The master guide table.

#include "tests/atsc/tables.h"
#include "tests/support/table_cases.h"

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/mgt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Table = AtscMGT::Table;

// The CRC is from a calculator of its own.
const Bytes kMgt = {
    0xC7,                    // table_id
    0xF0, 0x2B,              // section_length 43
    0x00, 0x00,              // table_id_extension
    0xC7, 0x00, 0x00,        // version 3, current; section 0 of 0
    0x00, 0x00, 0x02,        // protocol_version, tables_defined
    0x00, 0x00, 0xFF, 0xFB,  // a terrestrial channel table on PID 0x1FFB
    0xE5,                    // version 5
    0x00, 0x00, 0x01, 0x23,  // number_bytes
    0xF0, 0x00,              // no descriptors
    0x01, 0x01, 0xFD, 0x01,  // EIT-1 on PID 0x1D01
    0xFF,                    // version 31
    0x00, 0x01, 0x02, 0x03,  // number_bytes
    0xF0, 0x03,              // descriptors
    0xAB, 0x01, 0xE0,        //
    0xF0, 0x02,              // descriptors_length, which is wrong
    0x80, 0x02, 0xFF, 0xFF,  //
    0x0E, 0xE7, 0x4E, 0x7C,  // CRC_32
};

const char* const kReport =
    "table name: master_guide_table\n"
    "table_id C7\n"
    "section_length 002B\n"
    "context_id 0000\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 0EE74E7C\n"
    "protocol_version: 0\n"
    "tables_defined: 2\n"
    "table_type: 0\n"
    "table_type_PID: 1FFB\n"
    "table_type_version_number: 5\n"
    "number_bytes: 87\n"
    "table_type_descriptors_length: 0\n"
    "\n"
    "table_type: 101\n"
    "table_type_PID: 1D01\n"
    "table_type_version_number: 1F\n"
    "number_bytes: 100CB\n"
    "table_type_descriptors_length: 3\n"
    "\n";

const char* const kXml =
    R"(<mgt table_id="199" syntax_indicator="1" section_length="43" context_id="0" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="250039932" />)";

const std::string kMismatch = "-1: AtscMGT: descriptor start end mismatch";

const Bytes kGenre = descriptor(0xAB, {0xE0});

Bytes table(const Bytes& descriptors, int length_change = 0) {
  const size_t length = descriptors.size() + static_cast<size_t>(length_change);
  return joined({bits({{16, 0x0200, "table_type"},
                       {3, 7, "reserved"},
                       {13, 0x1E00, "table_type_PID"},
                       {3, 7, "reserved"},
                       {5, 1, "table_type_version_number"},
                       {32, 0x10, "number_bytes"},
                       {4, 15, "reserved"},
                       {12, length, "table_type_descriptors_length"}}),
                 descriptors});
}

// `rest` are the tables, and what follows them.
Bytes section(uint64_t tables_defined, const Bytes& rest) {
  return long_section(
      0xC7, joined({bits({{8, 0xA5, "protocol_version"}, {16, tables_defined, "tables_defined"}}), rest}));
}
Bytes length_of(uint64_t descriptors_length) {
  return bits({{4, 15, "reserved"}, {12, descriptors_length, "descriptors_length"}});
}

const TableCases kTables = {table_case<AtscMGT>("AtscMGT", "atsc_mgt", kMgt)};

}  // namespace

TEST(AtscMGT, ReadsASection) {
  const auto mgt = parsed<AtscMGT>(kMgt);
  EXPECT_TRUE(mgt.is_parsed());
  EXPECT_EQ(mgt.protocol_version, 0);
  EXPECT_EQ(mgt.tables_defined, 2);
  EXPECT_EQ(mgt.descriptors_length, 2);
  ASSERT_EQ(mgt.get_atsc_stuffing_descriptor().size(), 1u);
  EXPECT_EQ(mgt.get_atsc_stuffing_descriptor()[0].data, (Bytes{0xFF, 0xFF}));
  ASSERT_EQ(mgt.tables.size(), 2u);
  EXPECT_EQ(mgt.tables[0].table_type, 0);
  EXPECT_EQ(mgt.tables[0].table_type_PID, 0x1FFB);
  EXPECT_EQ(mgt.tables[0].table_type_version_number, 5);
  EXPECT_EQ(mgt.tables[0].number_bytes, 135);
  EXPECT_EQ(mgt.tables[0].table_type_descriptors_length, 0);
  EXPECT_STREQ(mgt.tables[0].get_table_type_text(), "Terrestrial VCT with current_next_indicator=\2221\222");
  EXPECT_EQ(mgt.tables[1].table_type, 0x101);
  EXPECT_EQ(mgt.tables[1].table_type_PID, 0x1D01);
  EXPECT_EQ(mgt.tables[1].table_type_version_number, 31);
  EXPECT_EQ(mgt.tables[1].number_bytes, 65739);
  EXPECT_EQ(mgt.tables[1].table_type_descriptors_length, 3);
  EXPECT_STREQ(mgt.tables[1].get_table_type_text(), "EIT-0 to EIT-127");
  EXPECT_EQ(mgt.tables[1].get_atsc_genre_descriptor().size(), 1u);
}

TEST(AtscMGT, PrintsItsReport) {
  const auto mgt = parsed<AtscMGT>(kMgt);
  EXPECT_EQ(report(mgt), kReport);
  EXPECT_EQ(report(mgt.tables[1]),
            "table_type: 257\n"
            "table_type_PID: 7425\n"
            "table_type_version_number: 31\n"
            "number_bytes: 65739\n"
            "table_type_descriptors_length: 3\n");
}

TEST(AtscMGT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(saved(parsed<AtscMGT>(kMgt), "mgt"), kXml);
  EXPECT_EQ(saved(loaded_table<AtscMGT>(kXml), "mgt"), kXml);
  expect_descriptors_loaded<AtscMGT>(0xC7);
}

TEST(AtscMGT, TakesEachBitOfATableForItsField) {
  // Lengths are even here: two zeros are a descriptor.
  expect_places<Table>(11,
                       {{&Table::table_type, 0, 16},
                        {&Table::table_type_PID, 19, 13},
                        {&Table::table_type_version_number, 35, 5},
                        {&Table::table_type_descriptors_length, 76, 12}},
                       {5, 6, 7, 8, 10});
  for (const int length : {2, 4, 8, 16, 32, 64, 128}) {
    const Read<Table> read(table(Bytes(static_cast<size_t>(length))));
    EXPECT_EQ(read.row.table_type_descriptors_length, length);
    EXPECT_EQ(read.used, length + 11);
  }
  EXPECT_EQ(row_refusal<Table>(table({}, 1)), kMismatch);
}

TEST(AtscMGT, WeighsTheThirdByteOfASizeWithAHundred) {
  const auto size = [](std::initializer_list<uint8_t> bytes) {
    Bytes row = table({});
    std::copy(bytes.begin(), bytes.end(), row.begin() + 5);
    return Read<Table>(row).row.number_bytes;
  };
  EXPECT_EQ(size({0, 0, 0, 0xFF}), 255);
  EXPECT_EQ(size({0, 0, 1, 0}), 100);
  EXPECT_EQ(size({0, 0, 0xFF, 0xFF}), 25755);
  EXPECT_EQ(size({0, 1, 0, 0}), 65536);
  EXPECT_EQ(size({0, 1, 2, 3}), 65739);
  EXPECT_EQ(size({1, 0, 0, 0}), 0x1000000);
  EXPECT_EQ(size({0x80, 0, 0, 1}), -0x7FFFFFFF);
  EXPECT_EQ(size({0xFF, 0xFF, 0xFF, 0xFF}), -65536 + 25755);
}

TEST(AtscMGT, ReadsItsDescriptorsUpToTheCrc) {
  for (const unsigned told : {0u, 3u, 6u, 0xFFFu}) {
    const auto mgt = parsed<AtscMGT>(section(0, joined({length_of(told), kGenre, kGenre})));
    EXPECT_EQ(mgt.protocol_version, 0xA5);
    EXPECT_EQ(mgt.descriptors_length, static_cast<int>(told));
    EXPECT_EQ(mgt.get_atsc_genre_descriptor().size(), 2u) << told;
  }
  EXPECT_EQ(failure_of<AtscMGT>(section(0, joined({length_of(4), kGenre, Bytes(1)}))), kMismatch);
}

TEST(AtscMGT, KeepsWhereItsOwnDescriptorsLie) {
  const Bytes bytes = section(1, joined({table(kGenre), length_of(6), kGenre, kGenre}));
  EXPECT_EQ(parsed<AtscMGT>(bytes, true).get_descriptor_pos(), (std::vector<int>{19, 22}));
  EXPECT_TRUE(parsed<AtscMGT>(bytes).get_descriptor_pos().empty());
}

TEST(AtscMGT, FailsWhenTheDescriptorsOfATableMissTheirEnd) {
  for (const int change : {-1, 1, 0x800}) {
    EXPECT_EQ(row_refusal<Table>(joined({table(kGenre, change), Bytes(1)})), kMismatch) << change;
    EXPECT_EQ(failure_of<AtscMGT>(section(1, joined({table(kGenre, change), length_of(0)}))), kMismatch);
  }
}

TEST(AtscMGT, IgnoresWhatATableIsOffered) {
  const Bytes bytes = table(kGenre);
  EXPECT_EQ(Read<Table>(bytes, -100).used, 14);
  EXPECT_EQ(Read<Table>(bytes, 0).used, 14);
}

TEST(AtscMGT, StopsAtTheSectionsEndWhateverItsCount) {
  // Tables are read up to the CRC and into it.
  for (const unsigned told : {3u, 4u, 255u, 65535u}) {
    AtscMGT mgt;
    const Bytes bytes = section(told, joined({table({}), table({}), length_of(0)}));
    EXPECT_EQ(failure([&] { mgt.Parse(bytes.data(), bytes.size(), false); }), kMismatch) << told;
    EXPECT_EQ(mgt.tables_defined, static_cast<int>(told));
    EXPECT_EQ(mgt.tables.size(), 3u) << told;
    EXPECT_FALSE(mgt.is_parsed());
  }
  AtscMGT mgt;
  const Bytes longest = with_length(section(65535, {}), 4095);  // zeros: a table is 11 bytes
  EXPECT_EQ(failure([&] { mgt.Parse(longest.data(), longest.size(), false); }), kMismatch);
  EXPECT_EQ(mgt.tables.size(), (4095u - 9 - 3 + 4 + 10) / 11);
}

TEST(AtscMGT, AddsASecondSectionToTheFirstAndIsNotEmptiedByReset) {
  auto mgt = parsed<AtscMGT>(kMgt);
  mgt.reset();
  EXPECT_FALSE(mgt.is_parsed());
  EXPECT_EQ(mgt.tables.size(), 2u);
  EXPECT_EQ(mgt.tables_defined, 2);
  EXPECT_EQ(mgt.get_atsc_stuffing_descriptor().size(), 1u);
  mgt.Parse(kMgt.data(), kMgt.size(), false);
  EXPECT_EQ(mgt.tables.size(), 4u);
  EXPECT_EQ(mgt.get_atsc_stuffing_descriptor().size(), 2u);
}

TEST(AtscMGT, AcceptsItsHeader) {
  expect_header<AtscMGT>(0xC7, joined({Bytes(3), length_of(0)}), true);
}

TEST(AtscMGT, NamesTableTypes) {
  const std::vector<Until> ranges = {
      {0x0000, "Terrestrial VCT with current_next_indicator=\2221\222"},
      {0x0001, "Terrestrial VCT with current_next_indicator=\2220\222"},
      {0x0002, "Cable VCT with current_next_indicator=\2221\222"},
      {0x0003, "Cable VCT with current_next_indicator=\2220\222"},
      {0x0004, "Channel ETT"},
      {0x0005, "DCCSCT"},
      {0x00FF, "[Reserved for future ATSC use]"},
      {0x017F, "EIT-0 to EIT-127"},
      {0x01FF, "[Reserved for future ATSC use]"},
      {0x027F, "Event ETT-0 to event ETT-127"},
      {0x0300, "[Reserved for future ATSC use]"},
      {0x03FF, "RRT with rating_region 1-255"},
      {0x0FFF, "[User private]"},
      {0x13FF, "[Reserved for future ATSC use]"},
      {0x1400, "DCCT with dcc_id 0x00 \226 0xFF"},
      {0x14FF, ""},
      {0xFFFF, "[Reserved for future ATSC use]"},
  };
  expect_ranges(&Table::get_table_type_text, ranges, -2, 0x10002);
  EXPECT_STREQ(Table::get_table_type_text(0x1405), "");
}

TEST(AtscMGT, StaysWithinAnySection) {
  expect_bounded<AtscMGT>(kMgt, {kMismatch});
}
