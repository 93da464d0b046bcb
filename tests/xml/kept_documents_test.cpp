// What one system saves, the others load: by files that were written on each.

#include "tests/xml/kept_documents.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;

namespace {

class KeptDocuments : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (kept_document(GetParam()).empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }
};
INSTANTIATE_TEST_SUITE_P(Files, KeptDocuments, testing::Values("tree.xml", "system.xml"),
                         [](const auto& info) { return info.index == 0 ? "Tree" : "System"; });

}  // namespace

TEST_P(KeptDocuments, HoldTheTreeThatIsSavedHere) {
  EXPECT_EQ(Document::from_file(kept_document(GetParam())).to_text(), all_saved().to_text());
}

TEST_P(KeptDocuments, GiveEveryClassBack) {
  const Document kept = Document::from_file(kept_document(GetParam()));
  const Document fresh = all_saved();
  const std::vector<void*> nodes = kept.children(kept.root());
  const std::vector<void*> expected = fresh.children(fresh.root());
  const std::vector<TableCase> tables = by_name(TableCases::all());
  const std::vector<DescriptorCase> descriptors = by_name(Cases::all());
  ASSERT_EQ(nodes.size(), tables.size() + descriptors.size());
  ASSERT_EQ(expected.size(), nodes.size());
  for (size_t i = 0; i < tables.size(); ++i) {
    const auto loaded = [&](void* node) {
      const auto table = tables[i].make();
      const std::string failed = failure([&] { table->ParseDOM(node); });
      return failed + "\n" + report(*table);
    };
    EXPECT_EQ(loaded(nodes[i]), loaded(expected[i])) << tables[i].name;
  }
  for (size_t i = 0; i < descriptors.size(); ++i) {
    const auto load = [&](void* node) { return failure([&] { descriptors[i].load_from(node); }); };
    EXPECT_EQ(load(nodes[tables.size() + i]), load(expected[tables.size() + i])) << descriptors[i].name;
  }
}

TEST(KeptDocument, IsTheTextThatIsWrittenHere) {
  if (kept_document("tree.xml").empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  const std::string now = all_saved().to_text();
  if (now != content(kept_document("tree.xml"))) offer_to_keep("tree.xml", now);
}
