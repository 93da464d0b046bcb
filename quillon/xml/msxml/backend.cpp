#include <quillon/xml/internal/backend.h>
#include <quillon/xml/internal/bstr.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/real_text.h>
#include <quillon/xml/internal/ref.h>

namespace quillon::xml::backend {

// The system's DOM has one way in, the interfaces. Of a real number it would make a text by the user's
// settings, a decimal comma among them: it gets the text instead.
HRESULT make_element(IXMLDOMDocument*, const XmlName&, IXMLDOMElement**) {
  return S_FALSE;
}

HRESULT set_attribute(IXMLDOMDocument*, IXMLDOMElement*, const XmlName&, int32_t) {
  return S_FALSE;
}

HRESULT set_attribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name, double value) {
  char digits[real_room];
  const std::string text(digits, write_real(digits, value));
  return AddAttribute(document, element, name, text) < 0 ? E_FAIL : S_OK;
}

HRESULT set_attribute(IXMLDOMDocument*, IXMLDOMElement*, const XmlName&, wide_view) {
  return S_FALSE;
}

HRESULT set_attribute(IXMLDOMDocument*, IXMLDOMElement*, const XmlName&, std::string_view) {
  return S_FALSE;
}

bool is_own(IXMLDOMNode*) {
  return false;
}

}  // namespace quillon::xml::backend
