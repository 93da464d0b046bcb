// The pages and schemas that are made of the library are those that are kept in docs.

#include "tests/support/docs/made_pages.h"

#include "tests/support/docs/header_comments.h"
#include "tests/support/docs/observed.h"
#include "tests/xml/kept_documents.h"

using namespace quillon;
using namespace quillon::test;

namespace {

class MadePages : public testing::Test {
 protected:
  void SetUp() override {
    if (const char* const data = std::getenv("QUILLON_DATA"))
      top_ = std::filesystem::path(data).parent_path();
    if (top_.empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }

  void expect_kept(const char* folder, const char* name, const std::string& made) const {
    if (made != content(top_ / "docs" / folder / name)) offer_to_keep(name, made);
  }

  std::filesystem::path top_;
};

}  // namespace

TEST_F(MadePages, TablesAreAsTheyAreNow) {
  expect_kept("", "tables.md", tables_page(top_));
}

TEST_F(MadePages, DescriptorsAreAsTheyAreNow) {
  expect_kept("", "descriptors.md", descriptors_page(top_));
}

TEST_F(MadePages, TheGrammarOfDocumentsIsAsItIsNow) {
  expect_kept("schema", "quillon.rng", relax_ng());
}

TEST_F(MadePages, TheSchemaOfLinesIsAsItIsNow) {
  expect_kept("schema", "quillon.schema.json", json_schema());
}

TEST_F(MadePages, EveryPublicClassSaysWhatItIs) {
  const auto comments = header_comments(top_);
  EXPECT_GE(comments.size(), 200u);
  for (const auto& [name, comment] : comments)
    EXPECT_TRUE(!comment.is_exported || !comment.text.empty()) << name << " in " << comment.header;
}

// What the headers state of a row's wire form is what the bits of a section do.
TEST_F(MadePages, WidthsInTheHeadersAreThoseOfTheWire) {
  const auto comments = header_comments(top_);
  int compared = 0;
  for (const auto& [class_name, facts] : observed())
    for (const auto& [path, field] : facts.fields) {
      std::string owner = class_name;
      const Shape* shape = &facts.standard;
      for (size_t at = 0, end; shape && (end = path.find('/', at)) != std::string::npos; at = end + 1) {
        const Shape::Member* const member = shape->find(path.substr(at, end - at));
        shape = member ? &member->shape : nullptr;
        if (shape && !shape->class_name.empty()) owner = shape->class_name;
      }
      const auto comment = comments.find(owner);
      if (comment == comments.end() || field.width == 0) continue;
      const auto stated = comment->second.widths.find(lower_case(path.substr(path.rfind('/') + 1)));
      if (stated == comment->second.widths.end()) continue;
      ++compared;
      EXPECT_EQ(field.width, stated->second) << class_name << " " << path;
    }
  EXPECT_GE(compared, 40);
}
