// A DOM of another maker: nothing is known of its objects but what they answer.

#include "tests/xml/foreign_dom.h"

#include "tests/support/table_cases.h"
#include "tests/xml/nodes.h"

#include <string>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;

// The sanitizer asks each object for its type.
#if defined(__has_feature)
#if __has_feature(undefined_behavior_sanitizer)
#define QUILLON_TYPES_ARE_CHECKED
#endif
#endif
#if defined(QUILLON_TYPES_ARE_CHECKED)
#define QUILLON_NEEDS_UNCHECKED_TYPES GTEST_SKIP() << "types are checked"
#else
#define QUILLON_NEEDS_UNCHECKED_TYPES static_cast<void>(0)
#endif

TEST(ForeignDom, TakesEveryTableAndGivesItBack) {
  QUILLON_NEEDS_UNCHECKED_TYPES;
  int loaded = 0;
  for (const TableCase& c : TableCases::all())
    for (const UnknownInterface unknown : {UnknownInterface::refuse, UnknownInterface::answer_with_itself}) {
      SCOPED_TRACE(c.name);
      const ForeignDom dom(unknown);
      IXMLDOMElement* const root = dom.make_element("d");
      const auto table = c.make();
      table->Parse(c.section.data(), c.section.size(), true);
      EXPECT_EQ(table->SaveSection(dom.document(), root), c.back != Back::unsaved);
      EXPECT_EQ(dom.references(), 0);
      if (c.back != Back::same) continue;
      const auto back = c.make();
      back->ParseDOM(root);
      EXPECT_EQ(dom.references(), 0);
      Document ours;
      Document again;
      EXPECT_TRUE(table->SaveSection(ours.dom(), ours.create_root("d")));
      const auto expected = c.make();
      expected->ParseDOM(ours.root());
      EXPECT_EQ(test::report(*back), test::report(*expected));
      ++loaded;
    }
  EXPECT_GT(loaded, 20);
}

TEST(ForeignDom, HasNoPlaceInATree) {
  if (kSystemDom) GTEST_SKIP() << "the system trusts what says that it is its own";
  QUILLON_NEEDS_UNCHECKED_TYPES;
  Document document;
  auto* const root = element_of(document.create_root("d"));
  for (const UnknownInterface unknown :
       {UnknownInterface::refuse, UnknownInterface::answer_with_itself, UnknownInterface::pass_on}) {
    const ForeignDom dom(unknown, root);
    IXMLDOMNode* node = root;
    EXPECT_LT(root->appendChild(dom.make_element("e"), &node), 0);
    EXPECT_EQ(node, nullptr);
    EXPECT_LT(root->appendChild(dom.document(), nullptr), 0);
    EXPECT_LT(root->setAttributeNode(dom.make_attribute("a"), nullptr), 0);
    EXPECT_LT(dom_of(document)->appendChild(dom.make_element("e"), nullptr), 0);
    for (void* const foreign :
         {static_cast<void*>(dom.make_element("e")), static_cast<void*>(dom.document())}) {
      EXPECT_EQ(failure([&] { document.append_element(foreign, "c"); }),
                "-1: not an element of the document");
      EXPECT_EQ(failure([&] { document.name(foreign); }), "-1: not an element of the document");
    }
    EXPECT_EQ(dom.references(), 0);
    EXPECT_EQ(plain(document), "<d />");
  }
}

// It hands questions that it does not know to our element, which is not the one that is written to.
TEST(ForeignDom, IsNotTakenForTheTreeThatItWraps) {
  QUILLON_NEEDS_UNCHECKED_TYPES;
  Document document;
  auto* const root = element_of(document.create_root("d"));
  const ForeignDom dom(UnknownInterface::pass_on, root);
  IXMLDOMElement* const element = dom.make_element("e");
  EXPECT_EQ(AddAttribute(dom.document(), element, "a", 1), 0);
  EXPECT_EQ(attribute(element, "a"), u"1");
  EXPECT_EQ(dom.references(), 0);
  EXPECT_EQ(plain(document), "<d />");
}
