#pragma once

// What the XML form asks of the DOM that xml::Document is made of, so that a value gets there without a
// VARIANT. The folder of that DOM implements it, together with Document: quillon/xml/tree is our own, for
// systems that bring none.

#include <cstdint>
#include <string_view>

#include <quillon/platform/wide_string.h>
#include <quillon/xml/attributes.h>
#include <quillon/xml/dom.h>

namespace quillon::xml::backend {

// Both give S_FALSE, having done nothing, for objects of another DOM, null, and an element that is not of the
// document: the interfaces of dom.h are the way then. E_FAIL, and no change, for what is no name, or a text
// that is too long. Out of memory throws std::bad_alloc.
//
// The new element comes with a reference, the caller's.
HRESULT make_element(IXMLDOMDocument* document, const XmlName& name, IXMLDOMElement** out);
// The attribute takes the place of one of the same name.
HRESULT set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name, int32_t value);
HRESULT set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name, double value);
HRESULT set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                      wide_view text);
HRESULT set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                      std::string_view ascii);

// Whether an element or attribute is of that DOM; null is not.
bool is_own(IXMLDOMNode* node);

}  // namespace quillon::xml::backend
