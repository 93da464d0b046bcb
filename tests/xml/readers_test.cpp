// What tables are saved as, whatever their bytes, is XML for another reader.

#include "tests/support/table_cases.h"
#include "tests/support/xmllint.h"

#include <random>
#include <string>
#include <vector>

#include <quillon/sections/error.h>
#include <quillon/xml/document.h>

using namespace quillon;
using namespace quillon::test;

TEST(SavedTables, AreTakenByAnotherReader) {
  std::vector<std::string> documents;
  for (const TableCase& c : TableCases::all()) documents.push_back(document_of(c));
  EXPECT_GT(documents.size(), 20u);
  expect_taken_by_xmllint(documents);
}

// Damaged sections, refused ones among them: what was read until then is saved.
TEST(SavedTables, AreTakenByAnotherReaderWhateverTheirBytes) {
  std::mt19937 random(1);
  std::vector<std::string> documents;
  size_t failures = 0;
  for (const TableCase& c : TableCases::all())
    for (int i = 0; i < 40; ++i) {
      Bytes section = c.section;
      for (size_t left = 1 + random() % 8; left > 0 && section.size() > 3; --left)
        section[3 + random() % (section.size() - 3)] = static_cast<uint8_t>(random() % (i % 2 ? 32 : 256));
      if (c.has_crc) repair_crc(section);
      const auto table = c.make();
      table->set_tolerant(i % 4 < 2);
      try {
        table->Parse(section.data(), section.size(), true);
      } catch (const error&) {
        ++failures;
      }
      xml::Document document;
      table->SaveSection(document.dom(), document.create_root(c.element));
      documents.push_back(document.to_text());
      EXPECT_EQ(xml::Document::from_text(documents.back()).to_text(), documents.back());
    }
  EXPECT_GT(failures, 10u);
  expect_taken_by_xmllint(documents);
}
