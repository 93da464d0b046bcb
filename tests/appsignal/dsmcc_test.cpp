// Sections of DSM-CC, held as bytes.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/table_cases.h"

#include <quillon/appsignal/dsmcc.h>

using namespace quillon;
using namespace quillon::test;

namespace {

DsmCC parsed(const Bytes& section, bool keep_raw = false) {
  DsmCC table;
  table.Parse(section.data(), section.size(), keep_raw);
  return table;
}

std::string refusal(const Bytes& section) {
  return failure([&] { parsed(section); });
}

// What SaveSection leaves on an element, and what it says.
std::string saved_in_vain(const DsmCC& table) {
  xml::Document document;
  EXPECT_FALSE(table.SaveSection(document.dom(), document.create_root("d")));
  return plain(document);
}

const TableCases kTables = {table_case<DsmCC>(
    "DsmCC: messages", "dsmcc", long_section(0x3B, text("message"), {.extension = 0xABCD}), Back::unsaved)};

}  // namespace

TEST(DsmCC, HoldsWhatStandsBetweenHeaderAndCrc) {
  const DsmCC table = parsed(long_section(0x3B, text("message"), {.extension = 0xABCD}));
  EXPECT_EQ(table.get_table_id(), 0x3B);
  EXPECT_EQ(table.get_table_extension(), 0xABCD);
  EXPECT_EQ(table.get_data(), text("message"));
  EXPECT_TRUE(table.is_parsed());
  EXPECT_STREQ(table.get_table_id_text(), "DSMCC");
}

TEST(DsmCC, ReportsItsHeaderAlone) {
  EXPECT_EQ(report(parsed(long_section(0x3C, text("block")))),
            "table name: DSMCC\n"
            "table_id 3C\n"
            "section_length 000E\n"
            "context_id 1234\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 50151915\n");
}

TEST(DsmCC, SavesItsHeaderAloneAndSaysThatItFailed) {
  const std::string xml = saved_in_vain(parsed(long_section(0x3C, text("block"))));
  EXPECT_EQ(xml,
            R"(<d table_id="60" syntax_indicator="1" section_length="14" context_id="4660")"
            R"( version_number="3" section_number="0" last_section_number="0" current_next_indicator="1")"
            R"( crc32="1343559957" />)");
  const DsmCC again = loaded_table<DsmCC>(xml);
  EXPECT_EQ(again.get_table_extension(), 0x1234);
  EXPECT_TRUE(again.get_data().empty());
  EXPECT_TRUE(again.is_parsed());
  EXPECT_EQ(saved_in_vain(again), xml);
}

TEST(DsmCC, TakesTheTwoTableIdsOnly) {
  for (int id = 0; id <= 255; ++id)
    EXPECT_EQ(refusal(long_section(id, text("x"))),
              id == 0x3B || id == 0x3C ? "nothing" : "-1: invalid table id")
        << id;
}

TEST(DsmCC, TakesAnyReservedBits) {
  for (int reserved = 0; reserved < 4; ++reserved)
    EXPECT_EQ(refusal(long_section(0x3B, {}, {.private_bit = 1, .reserved = reserved})), "nothing");
  EXPECT_EQ(refusal(long_section(0x3B, {}, {.syntax_indicator = 0})), "2: ");
}

TEST(DsmCC, HoldsNothingOfASectionWithoutAPayload) {
  EXPECT_TRUE(parsed(long_section(0x3B, {})).get_data().empty());
  EXPECT_EQ(parsed(long_section(0x3B, {0x5A})).get_data(), Bytes{0x5A});
  const Bytes largest(4095 - 9, 0x5A);
  EXPECT_EQ(parsed(long_section(0x3B, largest)).get_data(), largest);
  // Sections that are too short for a header and a CRC, the last four bytes still right.
  for (int length = 5; length < 9; ++length) {
    Bytes section = {0x3B, 0xB0, static_cast<uint8_t>(length)};
    section.resize(static_cast<size_t>(length) + 3);
    repair_crc(section);
    EXPECT_TRUE(parsed(section).get_data().empty()) << length;
  }
}

TEST(DsmCC, AddsToWhatItHoldsAlsoAfterAReset) {
  DsmCC table = parsed(long_section(0x3B, text("ab")));
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_data(), text("ab"));
  const Bytes second = long_section(0x3C, text("cd"));
  table.Parse(second.data(), second.size(), true);
  EXPECT_EQ(table.get_data(), text("abcd"));
  EXPECT_EQ(table.get_section_raw_bytes(), second);
}
