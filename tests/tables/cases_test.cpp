// What holds for every section of every table class, and for what damage makes of it.

#include "tests/support/table_cases.h"

#include <set>

using namespace quillon;
using namespace quillon::test;

namespace {

int section_length_of(const Bytes& section) {
  return (section[1] & 0x0F) << 8 | section[2];
}

// The section with a CRC that is right for its section_length; bytes after that are gone, missing ones zero.
Bytes fitted(const TableCase& table, Bytes section) {
  section.resize(static_cast<size_t>(section_length_of(section)) + 3);
  if (table.has_crc) repair_crc(section);
  return section;
}

// Documents that a load makes longer: vectors of integers come back twice.
bool grows(const std::string& xml) {
  return xml.find("<service_availability_descriptor ") != std::string::npos ||
         xml.find("<frequency_list_descriptor ") != std::string::npos;
}

void expect_saved_and_loaded(const TableCase& table, const Outcome& out) {
  EXPECT_EQ(out.save_result, table.back != Back::unsaved);
  const Reloaded back = reloaded(table, out.saved);
  EXPECT_TRUE(back.parsed);
  EXPECT_EQ(back.failure, "nothing");
  if (!grows(out.saved)) {
    EXPECT_EQ(back.saved, out.saved);
  }
}

// Whatever the section holds, it gives a failure or a table with all its faces; and a tolerant table differs
// from a strict one in descriptors alone.
void expect_survived(const TableCase& table, const Bytes& section) {
  const Outcome strict = outcome_of(table, section, false);
  const Outcome tolerant = outcome_of(table, section, true);
  EXPECT_EQ(strict.parsed, strict.good());
  EXPECT_EQ(tolerant.parsed, tolerant.good());
  EXPECT_TRUE(strict.refused.empty());
  // The first refused descriptor is where a strict table stops; without any both say the same.
  EXPECT_EQ(strict.failure, tolerant.refused.empty() ? tolerant.failure : tolerant.refused.front());
  if (tolerant.refused.empty()) {
    EXPECT_EQ(strict.report, tolerant.report);
    EXPECT_EQ(strict.saved, tolerant.saved);
  }
  if (tolerant.good()) expect_saved_and_loaded(table, tolerant);
}

}  // namespace

TEST(TableCases, CoverEachTableClass) {
  std::set<std::string> elements;
  for (const TableCase& table : TableCases::all()) elements.insert(table.element);
  EXPECT_EQ(elements, (std::set<std::string>{"pat",      "cat",       "pmt",        "nit",       "bat",
                                             "sdt",      "eit",       "tdt",        "tot",       "rst",
                                             "ait",      "int",       "dsmcc",      "atsc_pmt",  "atsc_mgt",
                                             "atsc_stt", "atsc_eit",  "atsc_ett",   "atsc_tvct", "atsc_cvct",
                                             "atsc_rrt", "atsc_dcct", "atsc_dccsct"}));
}

TEST(TableCases, AreWholeAndGood) {
  for (const TableCase& table : TableCases::all()) {
    SCOPED_TRACE(table.name);
    EXPECT_EQ(section_length_of(table.section) + 3, static_cast<int>(table.section.size()));
    EXPECT_EQ(fitted(table, table.section), table.section);
    EXPECT_EQ(outcome_of(table, table.section, false).failure, "nothing");
    expect_survived(table, table.section);
    if (table.has_crc) {
      Bytes wrong = table.section;
      wrong.back() ^= 1;
      EXPECT_EQ(outcome_of(table, wrong, true).failure, "-1: crc error");
    }
  }
}

TEST(TableCases, SurviveBeingCutAtEachLength) {
  for (const TableCase& table : TableCases::all())
    for (size_t size = 0; size < table.section.size(); ++size) {
      SCOPED_TRACE(table.name + " cut at " + std::to_string(size));
      Bytes cut(table.section.begin(), table.section.begin() + static_cast<ptrdiff_t>(size));
      EXPECT_EQ(outcome_of(table, cut, false).failure, "-1: section is shorter than its section_length");
      if (size < 3) continue;
      set_length(cut, 1, static_cast<int>(size) - 3);
      expect_survived(table, fitted(table, cut));
    }
}

TEST(TableCases, SurviveEachByteBeingDamaged) {
  for (const TableCase& table : TableCases::all())
    for (size_t at = 0; at < table.section.size(); ++at)
      for (const uint8_t value : Bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        SCOPED_TRACE(table.name + " byte " + std::to_string(at) + " = " + std::to_string(value));
        Bytes damaged = table.section;
        damaged[at] = value;
        expect_survived(table, fitted(table, damaged));
      }
}

TEST(TableCases, SurviveAnyLengthAtEachPlace) {
  for (const TableCase& table : TableCases::all())
    for (size_t at = 0; at + 1 < table.section.size(); ++at) {
      const int told = (table.section[at] & 0x0F) << 8 | table.section[at + 1];
      for (const int value : {0, 1, told - 1, told + 1, 4095}) {
        SCOPED_TRACE(table.name + " length at " + std::to_string(at) + " = " + std::to_string(value));
        Bytes damaged = table.section;
        set_length(damaged, at, value);
        expect_survived(table, fitted(table, damaged));
      }
    }
}
