#pragma once

// Nodes and attributes of a document, made and looked at through the DOM.

#include <gtest/gtest.h>
#include <string>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/document.h>
#include <quillon/xml/internal/bstr.h>
#include <quillon/xml/internal/ref.h>

namespace quillon::test {

// The DOM of the system itself ends a text at a NUL, has no halves of surrogate pairs, and is its own judge
// of what it reads, and in its own words.
#if defined(_WIN32)
inline constexpr bool kSystemDom = true;
#else
inline constexpr bool kSystemDom = false;
#endif

inline const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

inline IXMLDOMDocument* dom_of(const xml::Document& document) {
  return static_cast<IXMLDOMDocument*>(document.dom());
}
inline IXMLDOMElement* element_of(void* element) {
  return static_cast<IXMLDOMElement*>(element);
}

inline xml::Ref<IXMLDOMElement> make_element(IXMLDOMDocument* dom, const char* name) {
  xml::Ref<IXMLDOMElement> out;
  EXPECT_EQ(dom->createElement(XmlName(name).get(), out.out()), S_OK);
  return out;
}
inline xml::Ref<IXMLDOMAttribute> make_attribute(IXMLDOMDocument* dom, const char* name) {
  xml::Ref<IXMLDOMAttribute> out;
  EXPECT_EQ(dom->createAttribute(XmlName(name).get(), out.out()), S_OK);
  return out;
}

inline VARIANT wide_value(const std::u16string& text) {
  VARIANT out;
  VariantInit(&out);
  out.vt = VT_BSTR;
  out.bstrVal = xml::try_make_text(wide_string(text.begin(), text.end()).c_str(), text.size());
  return out;
}

inline void set_attribute(const xml::Document& document, void* element, const char* name,
                          const std::u16string& text) {
  VARIANT value = wide_value(text);
  EXPECT_EQ(AddAttribute(dom_of(document), element_of(element), name, value), 0);
  VariantClear(&value);
}

inline std::u16string attribute(IXMLDOMNode* node, const char* name) {
  xml::Ref<IXMLDOMNamedNodeMap> map;
  EXPECT_EQ(node->get_attributes(map.out()), S_OK);
  xml::Ref<IXMLDOMNode> found;
  EXPECT_EQ(map->getNamedItem(XmlName(name).get(), found.out()), S_OK);
  if (!found) return u"(none)";
  VARIANT value;
  VariantInit(&value);
  EXPECT_EQ(found->get_nodeValue(&value), S_OK);
  const std::u16string out(value.bstrVal, value.bstrVal + SysStringLen(value.bstrVal));
  VariantClear(&value);
  return out;
}
inline std::u16string attribute(const xml::Document& document, const char* name) {
  return attribute(static_cast<IXMLDOMNode*>(document.root()), name);
}

}  // namespace quillon::test
