// Tables of whatever class: each is found by its table ids and by its element.

#include "tests/support/table_cases.h"

#include <quillon/sections/pat.h>
#include <quillon/tables/eit.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string element_of(int table_id, Standard standard) {
  const auto table = AnyTable::for_table_id(table_id, standard);
  return table ? table->element() : "";
}

}  // namespace

TEST(AnyTable, KnowsEachCaseByTableIdAndElement) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const bool atsc = c.element.starts_with("atsc_");
    EXPECT_EQ(element_of(c.section[0], atsc ? Standard::atsc : Standard::dvb), c.element);

    const auto table = c.make();
    ASSERT_NE(table, nullptr);
    EXPECT_FALSE(table->is_parsed());
    table->Parse(c.section.data(), c.section.size(), false);
    EXPECT_TRUE(table->is_parsed());
    EXPECT_EQ(table->get_table_id(), c.section[0]);
    EXPECT_STRNE(table->get_table_id_text(), "");
    xml::Document document;
    EXPECT_EQ(table->SaveSection(document.dom(), document.create_root(c.element)), c.back != Back::unsaved);
    EXPECT_EQ(document.to_text(), document_of(c));
    EXPECT_EQ(failure([&] { c.make()->ParseDOM(document.root()); }), "nothing");
  }
}

TEST(AnyTable, TellsWhatATableIdMeansInEachStandard) {
  EXPECT_EQ(element_of(0x02, Standard::dvb), "pmt");
  EXPECT_EQ(element_of(0x02, Standard::atsc), "atsc_pmt");
  EXPECT_EQ(element_of(0x00, Standard::atsc), "pat");
  EXPECT_EQ(element_of(0xC8, Standard::dvb), "");
  EXPECT_EQ(element_of(0xC8, Standard::atsc), "atsc_tvct");
  for (const int id : {-1, 0x03, 0x3A, 0x3D, 0x43, 0x45, 0x47, 0x4D, 0x72, 0xC6, 0xCE, 0x100, 0x14E})
    EXPECT_EQ(element_of(id, Standard::dvb) + element_of(id, Standard::atsc), "") << id;
  for (int id = 0x4E; id <= 0x6F; ++id) EXPECT_EQ(element_of(id, Standard::dvb), "eit");
  EXPECT_EQ(AnyTable::for_element(""), nullptr);
  EXPECT_EQ(AnyTable::for_element("transport_stream"), nullptr);
}

TEST(AnyTable, GivesTheTableItself) {
  const auto table = AnyTable::for_element("pat");
  EXPECT_NE(table->as<Pat>(), nullptr);
  EXPECT_EQ(table->as<Eit>(), nullptr);
  const auto copy = table->copy();
  EXPECT_NE(copy->as<Pat>(), nullptr);
  EXPECT_NE(copy->as<Pat>(), table->as<Pat>());
}
