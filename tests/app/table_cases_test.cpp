// The cases of all tables in the program: their elements and table ids are those that it knows.

#include "tests/support/table_cases.h"

#include "apps/quillon/table_kinds.h"

using namespace quillon;
using namespace quillon::test;

TEST(TableCases, AreKnownToTheProgram) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const app::TableKind* const kind = app::kind_of_element(c.element);
    ASSERT_NE(kind, nullptr);
    const bool atsc = c.element.rfind("atsc_", 0) == 0;
    EXPECT_EQ(app::kind_of_table_id(c.section[0], atsc ? app::Standard::atsc : app::Standard::dvb)->element,
              c.element);

    const auto table = kind->make();
    table->parse(c.section.data(), c.section.size());
    xml::Document document;
    EXPECT_EQ(table->save(document.dom(), document.create_root(c.element)), c.back != Back::unsaved);
    EXPECT_EQ(document.to_text(), document_of(c));
    EXPECT_EQ(failure([&] { kind->make()->load(document.root()); }), "nothing");
  }
}
