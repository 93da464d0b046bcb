// Saves and loads by typed handles, whose arguments can't be swapped.

#include "tests/support/cases.h"
#include "tests/support/table_cases.h"

#include <type_traits>

#include <quillon/quillon.h>
#include <quillon/stream/table_kinds.h>

using namespace quillon;
using namespace quillon::test;
using xml::Document;
using xml::DomDocument;
using xml::DomElement;

namespace {

template <class T, class D, class E>
concept Saves = requires(const T& object, D document, E element) {
  object.SaveSection(document, element);
};
template <class T, class E>
concept Loads = requires(T& object, E element) {
  object.ParseDOM(element);
};

// A table is saved in a document and below an element, and loaded from an element; nothing else compiles.
template <class T>
constexpr bool takes_handles_alone =
    Saves<T, Document&, DomElement>&& Saves<T, const Document&, DomElement>&&
        Saves<T, DomDocument, DomElement>&& Saves<T, void*, void*> &&
    !Saves<T, DomElement, Document&> && !Saves<T, DomElement, DomDocument> &&
    !Saves<T, DomElement, DomElement> && !Saves<T, Document&, Document&> && !Saves<T, void*, DomElement> &&
    !Saves<T, DomDocument, void*> && Loads<T, DomElement> && Loads<T, void*> && !Loads<T, Document&> &&
    !Loads<T, DomDocument>;

#define QUILLON_EXPECT(first, last, in, Class, element) static_assert(takes_handles_alone<Class>);
QUILLON_TABLE_KINDS(QUILLON_EXPECT)
#undef QUILLON_EXPECT
static_assert(takes_handles_alone<AnyTable>);

static_assert(Saves<DescriptorShortEvent, Document&, DomElement>);
static_assert(!Saves<DescriptorShortEvent, DomElement, Document&>);
template <class T, class E>
concept LoadsDescriptor = requires(T& object, E element) {
  object.Parse(element);
};
static_assert(LoadsDescriptor<DescriptorShortEvent, DomElement>);
static_assert(!LoadsDescriptor<DescriptorShortEvent, DomDocument>);

// Neither becomes a pointer unseen, nor the other.
static_assert(!std::is_convertible_v<DomElement, void*> && !std::is_convertible_v<void*, DomElement>);
static_assert(!std::is_convertible_v<DomDocument, void*> && !std::is_convertible_v<void*, DomDocument>);
static_assert(!std::is_convertible_v<DomElement, DomDocument> &&
              !std::is_convertible_v<DomDocument, DomElement>);

}  // namespace

TEST(DomHandles, SaveAndLoadEachTable) {
  for (const TableCase& c : TableCases::all()) {
    SCOPED_TRACE(c.name);
    const auto table = c.make();
    table->Parse(c.section.data(), c.section.size(), false);
    Document document;
    EXPECT_EQ(table->SaveSection(document, document.add_root(c.element)), c.back != Back::unsaved);
    EXPECT_EQ(document.to_text(), document_of(c));

    const auto by_handle = c.make();
    by_handle->ParseDOM(document.root_element());
    const auto by_pointer = c.make();
    by_pointer->ParseDOM(document.root());
    EXPECT_TRUE(by_handle->is_parsed());
    EXPECT_EQ(test::report(*by_handle), test::report(*by_pointer));
  }
}

TEST(DomHandles, SaveAndLoadTablesByTheirClass) {
  const auto save_and_load = []<class Table>(const Table&, const char* element) {
    for (const TableCase& c : TableCases::all()) {
      if (c.element != element) continue;
      SCOPED_TRACE(c.name);
      Table table;
      table.Parse(c.section.data(), c.section.size(), false);
      Document document;
      EXPECT_EQ(table.SaveSection(document, document.add_root(element)), c.back != Back::unsaved);
      EXPECT_EQ(document.to_text(), document_of(c));
      Table again;
      again.ParseDOM(document.root_element());
      EXPECT_EQ(again.get_section_length(), table.get_section_length());
    }
  };
#define QUILLON_TRY(first, last, in, Class, element) save_and_load(Class(), element);
  QUILLON_TABLE_KINDS(QUILLON_TRY)
#undef QUILLON_TRY
}

TEST(DomHandles, SaveAndLoadADescriptor) {
  const Bytes bytes = descriptor(0x52, {7});
  Document document;
  const DomElement root = document.add_root("d");
  EXPECT_TRUE(DescriptorStreamIdentifier(view(bytes)).SaveSection(document, root));
  DescriptorStreamIdentifier loaded;
  loaded.Parse(root);
  EXPECT_EQ(saved(loaded), plain(document));
}

TEST(DomHandles, LeadThroughADocument) {
  Document document;
  EXPECT_FALSE(document.root_element());
  const DomElement root = document.add_root("nit");
  EXPECT_TRUE(root);
  EXPECT_EQ(document.name(document.root_element()), "nit");
  const DomElement row = document.append_element(root, "row");
  document.append_element(root, "last");
  document.append_element(row, "inner");
  const std::vector<DomElement> children = document.children(root);
  ASSERT_EQ(children.size(), 2u);
  EXPECT_EQ(document.name(document.children(children[0])[0]), "inner");
  EXPECT_EQ(document.name(children[1]), "last");
  EXPECT_EQ(document.children(children[1]).size(), 0u);
  EXPECT_EQ(plain(document), "<nit><row><inner /></row><last /></nit>");
  EXPECT_EQ(DomDocument(document).get(), document.dom());

  const std::string foreign = "-1: not an element of the document";
  EXPECT_EQ(failure([&] { document.name(DomElement()); }), foreign);
  EXPECT_EQ(failure([&] { document.children(Document().add_root("other")); }), foreign);
  EXPECT_EQ(failure([&] { document.add_root("second"); }), "-1: the document has a root element");
  EXPECT_EQ(failure([&] { document.append_element(root, "<"); }), "-1: not the name of an element");
}

TEST(DomHandles, StayGoodWhenTheDocumentMoves) {
  Document first;
  const DomElement root = first.add_root("d");
  const Document second = std::move(first);
  EXPECT_EQ(second.name(root), "d");
  EXPECT_EQ(second.name(second.root_element()), "d");
}
