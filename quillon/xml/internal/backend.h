#pragma once

// What the XML form asks of the DOM that xml::Document is made of. The folder of that DOM implements it,
// together with Document: quillon/xml/tree is our own, for systems that bring none.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/dom.h>

namespace quillon::xml::backend {

// A document of that DOM, to write to without its interfaces: a value needs no VARIANT, an element no
// reference. The system's own DOM has one way in, the interfaces. Out of memory throws std::bad_alloc.
class Tree {
 public:
  // Null for objects of another DOM, null, and an element that is not of the document.
  static Tree* of(IXMLDOMDocument* document, IXMLDOMElement* element);

  // The attribute takes the place of one of the same name. False, and no change, for what is no name, or a
  // text that is too long. The element, here as below, is of the document.
  virtual bool set_attribute(IXMLDOMElement* element, const XmlName& name, int32_t value) = 0;
  virtual bool set_attribute(IXMLDOMElement* element, const XmlName& name, double value) = 0;
  virtual bool set_attribute(IXMLDOMElement* element, const XmlName& name, wide_view text) = 0;
  virtual bool set_attribute(IXMLDOMElement* element, const XmlName& name, std::string_view ascii) = 0;
  // The same with a text of ASCII to be filled in; null on a failure.
  virtual char* set_ascii(IXMLDOMElement* element, const XmlName& name, size_t units) = 0;
  // An element without a place, null for what is no name. No reference is handed out: it lives as long as
  // the document.
  virtual IXMLDOMElement* make_element(const XmlName& name) = 0;
  // Gives it its place, as the last child.
  virtual void append(IXMLDOMElement* parent, IXMLDOMElement* child) = 0;

 protected:
  ~Tree() = default;
};

// Whether an element or attribute is of that DOM; null is not.
bool is_own(IXMLDOMNode* node);

// The system's DOM would make a text of a real number by the user's settings, a decimal comma among them: it
// gets the text instead.
#if defined(_WIN32)
inline constexpr bool takes_reals = false;
#else
inline constexpr bool takes_reals = true;
#endif

}  // namespace quillon::xml::backend
