// The tree of a document, through its interfaces.

#include "tests/support/faces.h"
#include "tests/xml/nodes.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <vector>

#include <quillon/xml/internal/literal_name.h>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;
using quillon::xml::LiteralName;
using quillon::xml::Ref;

TEST(Tree, AnswersForItsInterfaces) {
  Document document;
  auto* const root = element_of(document.create_root("d"));
  const Ref<IXMLDOMAttribute> attribute = make_attribute(dom_of(document), "a");
  const struct {
    IUnknown* object;
    std::vector<IID> answers;
  } rows[] = {
      {dom_of(document), {IID_IUnknown, IID_IXMLDOMNode, IID_IXMLDOMDocument, IID_IXMLDOMNodeList}},
      {root,
       {IID_IUnknown, IID_IXMLDOMNode, IID_IXMLDOMElement, IID_IXMLDOMNamedNodeMap, IID_IXMLDOMNodeList}},
      {attribute.get(), {IID_IUnknown, IID_IXMLDOMNode, IID_IXMLDOMAttribute}},
  };
  for (const auto& row : rows)
    for (const IID id :
         {IID_IUnknown, IID_IXMLDOMNode, IID_IXMLDOMDocument, IID_IXMLDOMElement, IID_IXMLDOMAttribute,
          IID_IXMLDOMNodeList, IID_IXMLDOMNamedNodeMap, static_cast<IID>(99)}) {
      const bool there = std::find(row.answers.begin(), row.answers.end(), id) != row.answers.end();
      void* out = &document;
      EXPECT_EQ(row.object->QueryInterface(id, &out), there ? S_OK : E_NOINTERFACE);
      EXPECT_EQ(out != nullptr, there);
      if (there && id != IID_IXMLDOMNodeList && id != IID_IXMLDOMNamedNodeMap) {
        EXPECT_EQ(out, row.object);
      }
      if (there) row.object->Release();
    }
}

TEST(Tree, GivesTheElementThatAppendingReturnsAsANode) {
  Document document;
  auto* const root = element_of(document.create_root("d"));
  const Ref<IXMLDOMElement> made = make_element(dom_of(document), "e");
  Ref<IXMLDOMNode> node;
  ASSERT_EQ(root->appendChild(made.get(), node.out()), S_OK);
  Ref<IXMLDOMElement> element;
  ASSERT_EQ(node->QueryInterface(IID_IXMLDOMElement, reinterpret_cast<void**>(element.out())), S_OK);
  EXPECT_EQ(element.get(), made.get());
}

TEST(Tree, IsHandedNullToFill) {
  const Document document;
  Ref<IXMLDOMElement> out = make_element(dom_of(document), "e");
  EXPECT_EQ(*out.out(), nullptr);
  EXPECT_FALSE(out);
}

TEST(Tree, FindsNothingWithoutAFailure) {
  const Document document = Document::from_text("<d a='1'><e/></d>");
  auto* const root = static_cast<IXMLDOMNode*>(document.root());
  IXMLDOMNode* node = root;
  EXPECT_EQ(root->selectSingleNode(XmlName("f").get(), &node), S_FALSE);
  EXPECT_EQ(node, nullptr);
  EXPECT_EQ(root->selectSingleNode(nullptr, &(node = root)), S_FALSE);
  EXPECT_EQ(node, nullptr);
  Ref<IXMLDOMNamedNodeMap> map;
  ASSERT_EQ(root->get_attributes(map.out()), S_OK);
  EXPECT_EQ(map->getNamedItem(XmlName("A").get(), &(node = root)), S_FALSE);
  EXPECT_EQ(node, nullptr);
  Ref<IXMLDOMNodeList> list;
  ASSERT_EQ(root->get_childNodes(list.out()), S_OK);
  long length = -1;
  EXPECT_EQ(list->get_length(&length), S_OK);
  EXPECT_EQ(length, 1);
  for (const long index : {-1L, 1L, LONG_MAX, LONG_MIN}) {
    EXPECT_EQ(list->get_item(index, &(node = root)), S_FALSE);
    EXPECT_EQ(node, nullptr);
  }
  Ref<IXMLDOMNode> child;
  ASSERT_EQ(list->get_item(0, child.out()), S_OK);
  EXPECT_EQ(document.name(child.get()), "e");
  Ref<IXMLDOMNamedNodeMap> none;
  EXPECT_EQ(dom_of(document)->get_attributes(none.out()), S_FALSE);
  EXPECT_FALSE(none);
}

TEST(Tree, FindsTheFirstChildOfAName) {
  const Document document = Document::from_text("<d><e/><f i='1'/><f i='2'/></d>");
  Ref<IXMLDOMNode> node;
  ASSERT_EQ(static_cast<IXMLDOMNode*>(document.root())->selectSingleNode(XmlName("f").get(), node.out()),
            S_OK);
  EXPECT_EQ(attribute(node.get(), "i"), u"1");
}

TEST(Tree, TakesTheRootThroughTheDocument) {
  const Document document;
  IXMLDOMDocument* const dom = dom_of(document);
  Ref<IXMLDOMNodeList> list;
  ASSERT_EQ(dom->get_childNodes(list.out()), S_OK);
  long length = -1;
  EXPECT_EQ(list->get_length(&length), S_OK);
  EXPECT_EQ(length, 0);
  const Ref<IXMLDOMElement> root = make_element(dom, "d");
  const Ref<IXMLDOMElement> second = make_element(dom, "e");
  Ref<IXMLDOMNode> appended;
  EXPECT_EQ(dom->appendChild(root.get(), appended.out()), S_OK);
  EXPECT_EQ(appended.get(), root.get());
  EXPECT_EQ(list->get_length(&length), S_OK);
  EXPECT_EQ(length, 1);
  Ref<IXMLDOMNode> item;
  EXPECT_EQ(list->get_item(0, item.out()), S_OK);
  EXPECT_EQ(item.get(), root.get());
  IXMLDOMNode* node = root.get();
  EXPECT_EQ(list->get_item(1, &node), S_FALSE);
  EXPECT_EQ(node, nullptr);
  EXPECT_EQ(dom->appendChild(second.get(), &node), E_FAIL);
  EXPECT_EQ(node, nullptr);
  Ref<IXMLDOMNode> found;
  EXPECT_EQ(dom->selectSingleNode(XmlName("d").get(), found.out()), S_OK);
  EXPECT_EQ(dom->selectSingleNode(XmlName("e").get(), &node), S_FALSE);
  EXPECT_EQ(document.name(document.root()), "d");
}

TEST(Tree, RefusesNodesOfAnotherDocument) {
  Document document;
  Document other;
  auto* const root = element_of(document.create_root("d"));
  const Ref<IXMLDOMElement> element = make_element(dom_of(other), "e");
  const Ref<IXMLDOMAttribute> foreign = make_attribute(dom_of(other), "a");
  IXMLDOMNode* node = root;
  EXPECT_EQ(root->appendChild(element.get(), &node), E_FAIL);
  EXPECT_EQ(node, nullptr);
  IXMLDOMAttribute* replaced = foreign.get();
  EXPECT_EQ(root->setAttributeNode(foreign.get(), &replaced), E_FAIL);
  EXPECT_EQ(replaced, nullptr);
  EXPECT_EQ(root->setAttributeNode(nullptr, nullptr), E_FAIL);
  EXPECT_EQ(root->appendChild(nullptr, nullptr), E_FAIL);
  EXPECT_EQ(root->appendChild(make_attribute(dom_of(document), "a").get(), nullptr), E_FAIL);
  EXPECT_EQ(root->appendChild(dom_of(document), nullptr), E_FAIL);
  EXPECT_EQ(dom_of(other)->appendChild(make_element(dom_of(document), "e").get(), nullptr), E_FAIL);
  EXPECT_EQ(plain(document), "<d />");
}

TEST(Tree, RefusesAValueForAnElementOfAnotherDocument) {
  Document document;
  Document other;
  auto* const foreign = element_of(other.create_root("d"));
  EXPECT_EQ(AddAttribute(dom_of(document), foreign, "a", 1), E_FAIL);
  EXPECT_EQ(plain(other), "<d />");
}

TEST(Tree, KnowsANameByItsTextWhereverThatIs) {
  // Literals stay where they are; other names come into the store, and are of the same tree.
  Document document;
  auto* const root = element_of(document.create_root("d"));
  char name[] = "a";
  static const char twin[] = "b";
  static const char longer[] = "bb";
  for (*name = 'a'; *name <= 'c'; ++*name) EXPECT_EQ(AddAttribute(dom_of(document), root, name, *name), 0);
  EXPECT_EQ(AddAttribute(dom_of(document), root, u"\u00E4", 1), 0);
  for (int i = 0; i < 2; ++i) {
    for (const char* literal : {"b", twin, "d", longer})
      EXPECT_EQ(AddAttribute(dom_of(document), root, LiteralName(literal), i), 0);
    EXPECT_EQ(AddAttribute(dom_of(document), root, u"\u00E4", 2 + i), 0);
    EXPECT_EQ(AddAttribute(dom_of(document), root, u"d", 4 + i), 0);
    EXPECT_EQ(AddAttribute(dom_of(document), root, u"\u00F6", i), 0);
  }
  EXPECT_EQ(plain(document), "<d a=\"97\" b=\"1\" c=\"99\" \u00E4=\"3\" d=\"5\" bb=\"1\" \u00F6=\"1\" />");
  Ref<IXMLDOMNamedNodeMap> map;
  ASSERT_EQ(root->get_attributes(map.out()), S_OK);
  const auto has = [&](const char16_t* asked) {
    Ref<IXMLDOMNode> found;
    return map->getNamedItem(XmlName(asked).get(), found.out()) == S_OK;
  };
  EXPECT_TRUE(has(u"bb") && has(u"\u00E4") && has(u"a"));
  EXPECT_FALSE(has(u"bbb") || has(u"") || has(u"\u00E4b") || has(u"\u00E5") || has(u"\u0001"));
}

TEST(Tree, RefusesToAttachANodeTwice) {
  Document document;
  IXMLDOMDocument* const dom = dom_of(document);
  auto* const root = element_of(document.create_root("d"));
  const Ref<IXMLDOMElement> one = make_element(dom, "e");
  const Ref<IXMLDOMElement> two = make_element(dom, "f");
  EXPECT_EQ(root->appendChild(one.get(), nullptr), S_OK);
  EXPECT_EQ(root->appendChild(two.get(), nullptr), S_OK);
  EXPECT_EQ(root->appendChild(one.get(), nullptr), E_FAIL);
  EXPECT_EQ(two->appendChild(one.get(), nullptr), E_FAIL);
  EXPECT_EQ(two->appendChild(root, nullptr), E_FAIL);
  EXPECT_EQ(dom->appendChild(one.get(), nullptr), E_FAIL);
  const Ref<IXMLDOMElement> loose = make_element(dom, "g");
  EXPECT_EQ(loose->appendChild(root, nullptr), E_FAIL);  // it has a place already
  const Document empty;
  const Ref<IXMLDOMElement> parent = make_element(dom_of(empty), "p");
  const Ref<IXMLDOMElement> child = make_element(dom_of(empty), "c");
  EXPECT_EQ(parent->appendChild(child.get(), nullptr), S_OK);
  EXPECT_EQ(dom_of(empty)->appendChild(child.get(), nullptr), E_FAIL);
  EXPECT_EQ(empty.root(), nullptr);

  const Ref<IXMLDOMAttribute> a = make_attribute(dom, "a");
  EXPECT_EQ(root->setAttributeNode(a.get(), nullptr), S_OK);
  EXPECT_EQ(root->setAttributeNode(a.get(), nullptr), E_FAIL);
  EXPECT_EQ(one->setAttributeNode(a.get(), nullptr), E_FAIL);
  EXPECT_EQ(plain(document), "<d a=\"\"><e /><f /></d>");
}

TEST(Tree, RefusesCircles) {
  const Document document;
  IXMLDOMDocument* const dom = dom_of(document);
  std::vector<Ref<IXMLDOMElement>> line;
  for (int i = 0; i < 5; ++i) line.push_back(make_element(dom, "e"));
  EXPECT_EQ(line[0]->appendChild(line[0].get(), nullptr), E_FAIL);
  for (size_t i = 1; i < 5; ++i) EXPECT_EQ(line[i - 1]->appendChild(line[i].get(), nullptr), S_OK);
  for (size_t i = 0; i < 5; ++i) EXPECT_EQ(line[i]->appendChild(line[0].get(), nullptr), E_FAIL);
  EXPECT_EQ(dom->appendChild(line[0].get(), nullptr), S_OK);
  EXPECT_EQ(plain(document), "<e><e><e><e><e /></e></e></e></e>");
}

TEST(Tree, ReplacesAnAttributeInItsPlaceAndHandsOutTheOldOne) {
  Document document;
  IXMLDOMDocument* const dom = dom_of(document);
  auto* const root = element_of(document.create_root("d"));
  for (const char* name : {"a", "b", "c"}) EXPECT_EQ(AddAttribute(dom, root, name, 1), 0);
  for (const char* name : {"a", "b", "c"}) {
    const Ref<IXMLDOMAttribute> made = make_attribute(dom, name);
    VARIANT value = wide_value(u"new");
    EXPECT_EQ(made->put_nodeValue(value), S_OK);
    VariantClear(&value);
    Ref<IXMLDOMAttribute> old;
    ASSERT_EQ(root->setAttributeNode(made.get(), old.out()), S_OK);
    ASSERT_TRUE(old);
    VariantInit(&value);
    EXPECT_EQ(old->get_nodeValue(&value), S_OK);
    EXPECT_EQ(wide_view(value.bstrVal), wide_view("1"_w));
    VariantClear(&value);
    // The old one is free to be attached elsewhere, or here again.
    Ref<IXMLDOMAttribute> newer;
    EXPECT_EQ(root->setAttributeNode(old.get(), newer.out()), S_OK);
    EXPECT_EQ(newer.get(), made.get());
    EXPECT_EQ(root->setAttributeNode(newer.get(), nullptr), S_OK);
  }
  EXPECT_EQ(AddAttribute(dom, root, "d", 2), 0);
  EXPECT_EQ(plain(document), "<d a=\"new\" b=\"new\" c=\"new\" d=\"2\" />");
}

TEST(Tree, TellsNamesAndValues) {
  Document document;
  auto* const root = element_of(document.create_root("d"));
  const Ref<IXMLDOMAttribute> a = make_attribute(dom_of(document), "a");
  const auto name = [](IXMLDOMNode* node) {
    BSTR text = nullptr;
    EXPECT_EQ(node->get_nodeName(&text), S_OK);
    const std::u16string out(text, text + SysStringLen(text));
    SysFreeString(text);
    return out;
  };
  EXPECT_EQ(name(dom_of(document)), u"#document");
  EXPECT_EQ(name(root), u"d");
  EXPECT_EQ(name(a.get()), u"a");

  VARIANT value;
  for (IXMLDOMNode* node : {static_cast<IXMLDOMNode*>(root), static_cast<IXMLDOMNode*>(dom_of(document))}) {
    EXPECT_EQ(node->get_nodeValue(&value), S_FALSE);
    EXPECT_EQ(value.vt, VT_NULL);
    VariantInit(&value);
    EXPECT_LT(node->put_nodeValue(value), 0);
  }
  const auto told = [&] {
    EXPECT_EQ(a->get_nodeValue(&value), S_OK);
    EXPECT_EQ(value.vt, VT_BSTR);
    const std::u16string out(value.bstrVal, value.bstrVal + SysStringLen(value.bstrVal));
    VariantClear(&value);
    return out;
  };
  EXPECT_EQ(told(), u"");
  value.vt = VT_I4;
  value.lVal = INT32_MIN;
  EXPECT_EQ(a->put_nodeValue(value), S_OK);
  EXPECT_EQ(told(), u"-2147483648");
  value.vt = VT_R8;
  value.dblVal = 0.1;
  EXPECT_EQ(a->put_nodeValue(value), S_OK);
  EXPECT_EQ(told(), u"0.1");
  for (const VARENUM type : {VT_EMPTY, VT_NULL, static_cast<VARENUM>(77)}) {
    value.vt = type;
    EXPECT_LT(a->put_nodeValue(value), 0);
  }
  EXPECT_EQ(told(), u"0.1");
  value = wide_value(std::u16string(u"a\0b", 3));
  EXPECT_EQ(a->put_nodeValue(value), S_OK);
  VariantClear(&value);
  EXPECT_EQ(told(), std::u16string(u"a\0b", 3));
  value.vt = VT_BSTR;
  value.bstrVal = nullptr;
  EXPECT_EQ(a->put_nodeValue(value), S_OK);
  EXPECT_EQ(told(), u"");
}

TEST(Tree, GivesAnAttributeNoChildren) {
  const Document document;
  const Ref<IXMLDOMAttribute> a = make_attribute(dom_of(document), "a");
  const Ref<IXMLDOMElement> e = make_element(dom_of(document), "e");
  IXMLDOMNamedNodeMap* map = nullptr;
  IXMLDOMNodeList* list = nullptr;
  IXMLDOMNode* node = e.get();
  EXPECT_EQ(a->get_attributes(&map), S_FALSE);
  EXPECT_LT(a->get_childNodes(&list), 0);
  EXPECT_LT(a->appendChild(e.get(), &node), 0);
  EXPECT_EQ(node, nullptr);
  EXPECT_EQ(a->selectSingleNode(XmlName("e").get(), &(node = e.get())), S_FALSE);
  EXPECT_EQ(node, nullptr);
  EXPECT_FALSE(map || list);
}

TEST(Tree, LivesAsLongAsAnyOfItsNodesIsHeld) {
  Ref<IXMLDOMElement> element;
  Ref<IXMLDOMAttribute> loose;
  Ref<IXMLDOMNodeList> list;
  Ref<IXMLDOMDocument> dom;
  {
    Document document;
    dom = Ref<IXMLDOMDocument>(dom_of(document));
    auto* const root = element_of(document.create_root("d"));
    element = make_element(dom.get(), "e");
    EXPECT_EQ(root->appendChild(element.get(), nullptr), S_OK);
    loose = make_attribute(dom.get(), "a");
    EXPECT_EQ(static_cast<IXMLDOMNode*>(root)->get_childNodes(list.out()), S_OK);
  }
  dom = {};
  // The document object is gone, its tree is not.
  VARIANT value = wide_value(u"late");
  EXPECT_EQ(loose->put_nodeValue(value), S_OK);
  VariantClear(&value);
  EXPECT_EQ(element->setAttributeNode(loose.get(), nullptr), S_OK);
  EXPECT_EQ(attribute(element.get(), "a"), u"late");
  element = {};
  loose = {};
  Ref<IXMLDOMNode> node;
  EXPECT_EQ(list->get_item(0, node.out()), S_OK);
  list = {};
  EXPECT_EQ(attribute(node.get(), "a"), u"late");
}

TEST(Tree, ReleasesNodesThatWereNeverAttached) {
  const Document document;
  for (int i = 0; i < 1000; ++i) {
    make_element(dom_of(document), ("e" + std::to_string(i)).c_str());
    make_attribute(dom_of(document), ("a" + std::to_string(i)).c_str());
  }
  EXPECT_EQ(document.to_text(), kDeclaration);
}

TEST(Tree, KeepsLongNamesAndTextsAndManyOfThem) {
  Document document;
  void* const root = document.create_root(std::string(70000, 'r'));
  for (int i = 0; i < 1000; ++i)
    set_attribute(document, root, ("n" + std::to_string(i)).c_str(),
                  std::u16string(static_cast<size_t>(i), u'x'));
  set_attribute(document, root, "long", std::u16string(200000, u'y'));
  const Document back = Document::from_text(document.to_text());
  EXPECT_EQ(back.name(back.root()), std::string(70000, 'r'));
  EXPECT_EQ(attribute(back, "n999"), std::u16string(999, u'x'));
  EXPECT_EQ(attribute(back, "n0"), u"");
  EXPECT_EQ(attribute(back, "long"), std::u16string(200000, u'y'));
}

// The COM support

TEST(Com, KeepsTheLengthOfAText) {
  BSTR text = SysAllocStringLen("abc"_w, 2);
  EXPECT_EQ(SysStringLen(text), 2u);
  EXPECT_EQ(wide_view(text), wide_view("ab"_w));
  uint32_t size = 0;
  std::memcpy(&size, reinterpret_cast<const char*>(text) - 4, 4);
  EXPECT_EQ(size, 4u);  // in bytes, in front of the text
  SysFreeString(text);
  text = SysAllocString("a"_w);
  EXPECT_EQ(SysStringLen(text), 1u);
  SysFreeString(text);
  text = SysAllocStringLen(nullptr, 0);
  EXPECT_EQ(SysStringLen(text), 0u);
  EXPECT_EQ(text[0], 0);
  SysFreeString(text);
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  SysFreeString(nullptr);
}

TEST(Com, MakesNoTextWhoseLengthItCannotState) {
  for (const unsigned units : {0x80000000u, 0x80000001u, 0xFFFFFFFFu})
    EXPECT_EQ(SysAllocStringLen(nullptr, units), nullptr) << units;
}

TEST(Com, ClearsTheVariantsThatItKnows) {
  VARIANT value;
  VariantInit(&value);
  EXPECT_EQ(value.vt, VT_EMPTY);
  for (const VARENUM type : {VT_EMPTY, VT_NULL, VT_I4, VT_R8}) {
    value.vt = type;
    EXPECT_EQ(VariantClear(&value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
  }
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString("text"_w);
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(value.vt, VT_EMPTY);
  value.vt = 77;
  EXPECT_EQ(VariantClear(&value), DISP_E_BADVARTYPE);
  EXPECT_EQ(value.vt, 77);
}
