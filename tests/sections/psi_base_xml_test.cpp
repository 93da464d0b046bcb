// The headers of long and short sections in documents.

#include "tests/sections/psi_tables.h"
#include "tests/support/faces.h"
#include "tests/support/faulty_dom.h"

#include <iterator>
#include <vector>

using namespace quillon;
using namespace quillon::test;

namespace {

// Documents of a table whose header fields are 1, 2, 3 and on.
constexpr const char* kLongFields[] = {
    "table_id",       "syntax_indicator",    "section_length",         "context_id", "version_number",
    "section_number", "last_section_number", "current_next_indicator", "crc32"};
constexpr const char* kShortFields[] = {"table_id", "section_length"};

template <size_t n>
std::string numbered(const char* const (&fields)[n], int step, size_t left_out = n) {
  std::string out = "<d";
  for (size_t i = 0; i < n; ++i)
    if (i != left_out)
      out += std::string(" ") + fields[i] + "=\"" + std::to_string((static_cast<int>(i) + 1) * step) + "\"";
  return out + " />";
}

template <class Table>
std::string load_into(Table& table, const std::string& xml) {
  const xml::Document document = xml::Document::from_text(xml);
  return failure([&] { table.ParseDOM(document.root()); });
}

}  // namespace

TEST(PsiTableBase, PrintsWidthsThatLongerNumbersOutgrow) {
  LongTable table;
  EXPECT_EQ(report(table),
            "table name: long table\n"
            "table_id 00\n"
            "section_length 0000\n"
            "context_id 0000\n"
            "version_number 00\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 00\n"
            "crc32 00000000\n"
            "AF00A\n");
  EXPECT_EQ(load_into(table, numbered(kLongFields, 0x11111)), "nothing");
  EXPECT_EQ(report(table),
            "table name: long table\n"
            "table_id 11111\n"
            "section_length 33333\n"
            "context_id 44444\n"
            "version_number 55555\n"
            "section_number 66666\n"
            "last_section_number 77777\n"
            "current_next_indicator 88888\n"
            "crc32 00099999\n"
            "AF00A\n");
}

TEST(PsiTableBase, LoadsAndSavesItsHeaderWithoutATest) {
  const std::string xml = numbered(kLongFields, -1000);
  LongTable table;
  table.refuses = {"table id -1000", "syntax indicator -2000", "reserved 0"};
  EXPECT_EQ(load_into(table, xml), "nothing");
  EXPECT_EQ(table.steps, "load\n");
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.get_table_id(), -1000);
  EXPECT_EQ(table.get_section_length(), -3000);
  EXPECT_EQ(table.get_context_id(), -4000);
  EXPECT_EQ(table.get_version_number(), -5000);
  EXPECT_EQ(table.get_section_number(), -6000);
  EXPECT_EQ(table.get_last_section_number(), -7000);
  EXPECT_EQ(table.get_current_next_indicator(), -8000);
  EXPECT_EQ(table.get_crc32(), 0xFFFFFFFFU - 8999);
  EXPECT_EQ(saved(table), xml);
  EXPECT_EQ(table.steps, "load\nsave\n");
}

TEST(PsiTableBase, LoadsNeitherRawBytesNorTheSectionEnd) {
  const Bytes section = sample_section();
  LongTable table;
  table.Parse(section.data(), true);
  EXPECT_EQ(load_into(table, numbered(kLongFields, 1)), "nothing");
  EXPECT_EQ(table.get_section_raw_bytes(), section);
  EXPECT_EQ(table.get_section_end(), section.data() + section.size());
  LongTable fresh;
  EXPECT_EQ(load_into(fresh, numbered(kLongFields, 1)), "nothing");
  EXPECT_TRUE(fresh.get_section_raw_bytes().empty());
  EXPECT_EQ(fresh.get_section_end(), nullptr);
}

TEST(PsiTableBase, SaysWhichAttributeItsDocumentLacks) {
  for (size_t i = 0; i < std::size(kLongFields); ++i) {
    LongTable table;
    EXPECT_EQ(load_into(table, numbered(kLongFields, 100)), "nothing");
    table.reset();
    table.steps.clear();
    EXPECT_EQ(load_into(table, numbered(kLongFields, 1, i)),
              std::string("-1: failed to get ") + kLongFields[i]);
    EXPECT_FALSE(table.is_parsed());
    EXPECT_EQ(table.steps, "");
    std::string expected = "<d";  // new values up to the missing one
    for (size_t k = 0; k < std::size(kLongFields); ++k)
      expected +=
          std::string(" ") + kLongFields[k] + "=\"" + std::to_string((k + 1) * (k < i ? 1 : 100)) + "\"";
    EXPECT_EQ(saved(table), expected + " />");
  }
}

TEST(PsiTableBase, IsNotParsedByALoadWhoseBodyFails) {
  LongTable table;
  table.refuses = {"load"};
  EXPECT_EQ(load_into(table, numbered(kLongFields, 1)), "-1: load");
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_crc32(), 9U);
}

TEST(PsiTableBase, ReturnsWhatTheSaveOfItsBodyReturns) {
  LongTable table;
  table.refuses = {"save"};
  xml::Document document;
  EXPECT_FALSE(table.SaveSection(document.dom(), document.create_root("d")));
  EXPECT_EQ(plain(document), numbered(kLongFields, 0));
}

TEST(PsiBase, LoadsAndSavesItsHeaderWithoutATest) {
  const std::string xml = numbered(kShortFields, -70000);
  ShortTable table;
  table.refuses = {"table id -70000"};
  EXPECT_EQ(load_into(table, xml), "nothing");
  EXPECT_EQ(table.steps, "load\n");
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.get_table_id(), -70000);
  EXPECT_EQ(table.get_section_length(), -140000);
  EXPECT_EQ(saved(table), xml);

  table.refuses = {"load", "save"};
  table.reset();
  EXPECT_EQ(load_into(table, numbered(kShortFields, 1)), "-1: load");
  EXPECT_FALSE(table.is_parsed());
  xml::Document document;
  EXPECT_FALSE(table.SaveSection(document.dom(), document.create_root("d")));
  EXPECT_EQ(plain(document), numbered(kShortFields, 1));
}

TEST(PsiBase, SaysWhichAttributeItsDocumentLacks) {
  ShortTable table;
  EXPECT_EQ(load_into(table, numbered(kShortFields, 1, 0)), "-1: failed to get table_id");
  EXPECT_EQ(table.get_section_length(), 0);
  EXPECT_EQ(load_into(table, numbered(kShortFields, 1, 1)), "-1: failed to get section_length");
  EXPECT_EQ(table.get_table_id(), 1);
  EXPECT_EQ(table.steps, "");
}

template <class Table>
void expect_header_steps(const std::vector<std::string>& fields) {
  Table table;
  std::string made;
  for (size_t i = 0; i < fields.size(); ++i) {
    const int nth = static_cast<int>(i) + 1;
    made += "createAttribute " + fields[i] + "\n";
    for (const char* const step : {"createAttribute", "put_nodeValue", "setAttributeNode"}) {
      FaultyDom dom(step, nth);
      EXPECT_FALSE(table.SaveSection(dom.document(), dom.node())) << step;
      EXPECT_EQ(dom.steps(), made) << step;
      EXPECT_EQ(dom.references(), 0) << step;
    }
    for (const char* const step : {"getNamedItem", "get_nodeValue"})
      for (const HRESULT result : {E_FAIL, S_FALSE}) {
        FaultyDom dom(step, nth, result);
        EXPECT_EQ(failure([&] { table.ParseDOM(dom.node()); }), "-1: failed to get " + fields[i]) << step;
        EXPECT_EQ(dom.references(), 0) << step;
      }
  }
  FaultyDom dom("get_attributes");
  EXPECT_EQ(failure([&] { table.ParseDOM(dom.node()); }), "-1: failed to get attribute map");
  EXPECT_EQ(table.steps, "");
  EXPECT_FALSE(table.is_parsed());
}

TEST(PsiTableBase, StopsAtTheFirstStepOfItsHeaderThatFails) {
  expect_header_steps<LongTable>({std::begin(kLongFields), std::end(kLongFields)});
}

TEST(PsiBase, StopsAtTheFirstStepOfItsHeaderThatFails) {
  expect_header_steps<ShortTable>({std::begin(kShortFields), std::end(kShortFields)});
}
