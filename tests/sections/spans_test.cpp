// Sections, pieces and packets given as spans.

#include "tests/support/table_cases.h"

#include <array>
#include <span>

#include <quillon/quillon.h>
#include <quillon/stream/table_kinds.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// What a table's class makes of a section by span is what it makes of pointer and size.
template <class Table>
void expect_same(const char* element) {
  for (const TableCase& c : TableCases::all()) {
    if (c.element != element) continue;
    SCOPED_TRACE(c.name);
    Table by_pointer;
    by_pointer.Parse(c.section.data(), c.section.size(), true);
    Table by_span;
    by_span.Parse(std::span<const uint8_t>(c.section), true);
    EXPECT_EQ(test::report(by_span), test::report(by_pointer));
    EXPECT_EQ(by_span.get_section_raw_bytes(), c.section);

    Table by_vector;
    by_vector.Parse(c.section);
    EXPECT_EQ(test::report(by_vector), test::report(by_pointer));
    EXPECT_TRUE(by_vector.get_section_raw_bytes().empty());
    Table by_place;
    by_place.Parse({c.section.data(), c.section.size()});
    EXPECT_EQ(test::report(by_place), test::report(by_pointer));

    const std::span<const uint8_t> cut(c.section.data(), c.section.size() - 1);
    EXPECT_EQ(failure([&] { Table().Parse(cut); }), "-1: section is shorter than its section_length");
  }
}

}  // namespace

TEST(Spans, AreParsedByEachTable) {
#define QUILLON_TRY(first, last, in, Class, element) expect_same<Class>(element);
  QUILLON_TABLE_KINDS(QUILLON_TRY)
#undef QUILLON_TRY
}

TEST(Spans, AreParsedByTablesOfAnyClass) {
  for (const TableCase& c : TableCases::all()) {
    const auto by_pointer = c.make();
    by_pointer->Parse(c.section.data(), c.section.size(), false);
    const auto by_span = c.make();
    by_span->Parse(c.section);
    EXPECT_EQ(test::report(*by_span), test::report(*by_pointer)) << c.name;
  }
}

TEST(Spans, OfLessThanAHeaderAreRefused) {
  const std::string text = "-1: section is shorter than its section_length";
  EXPECT_EQ(failure([] { Pat().Parse(std::span<const uint8_t>()); }), text);
  EXPECT_EQ(failure([] { Tdt().Parse(std::array<uint8_t, 2>{0x70, 0x70}); }), text);
}

TEST(Spans, LeaveThePointerFormWithoutSizeWhatItIs) {
  const Bytes section = long_section(0x00, {0, 1, 0xE1, 0});
  Pat pat;
  pat.Parse(section.data(), true);
  EXPECT_EQ(pat.get_section_raw_bytes(), section);
  std::array<uint8_t, 16> array{};
  std::copy(section.begin(), section.end(), array.begin());
  Pat of_array;
  of_array.Parse(array);  // the section ends before its array
  EXPECT_EQ(test::report(of_array), test::report(pat));
}
