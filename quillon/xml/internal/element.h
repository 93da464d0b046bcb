#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/platform/or_empty.h>
#include <quillon/xml/dom.h>
#include <quillon/xml/internal/backend.h>
#include <quillon/xml/internal/ref.h>

namespace quillon::xml {

// An element that is written to. One of Document's own tree is found once and then written directly, with the
// same results; of one of any other DOM a reference is held. For the library's own sources.
class Element {
 public:
  Element() = default;  // none
  Element(void* document, void* element);

  explicit operator bool() const { return element_; }
  IXMLDOMDocument* document() const { return document_; }
  IXMLDOMElement* get() const { return element_; }

  // As AddAttribute, for each of its types; false where that fails.
  template <class Value>
  bool set(const XmlName& name, const Value& value) const {
    if constexpr (std::is_same_v<Value, double> || std::is_same_v<Value, VARIANT>)
      return put(name, value);
    else if constexpr (std::is_arithmetic_v<Value>)
      return put(name, static_cast<int32_t>(value));
    else if constexpr (std::is_convertible_v<Value, const char*>)
      return put_narrow(name, detail::or_empty(value));
    else if constexpr (std::is_same_v<Value, std::string>)
      return put_narrow(name, value.c_str());
    else if constexpr (std::is_same_v<Value, ISO639LanguageCode>)
      return put_narrow(name, value.c_strA());
    else if constexpr (std::is_same_v<Value, Text>)
      return value.is_ascii() ? put(name, std::string_view(value.get_textA()))
                              : put(name, wide_view(value.c_strW()));
    else if constexpr (std::is_same_v<Value, std::vector<uint8_t>>)
      return set_bytes(name, value.data(), value.size());
    else if constexpr (requires { value.get_addr(); })
      return set_bytes(name, value.get_addr(), Value::size);
    else
      return put_integers(name, value);
  }
  bool set_bytes(const XmlName& name, const uint8_t* bytes, size_t size) const;

  // An element of the same document, without a place; none on a failure. The name is a literal. The reference
  // to the document stays here.
  Element make(const char* name) const;
  // Gives such an element its place, as the last child.
  bool append(const Element& child) const;
  // The same; gives what the DOM then has in that place, none on a failure.
  Element attach(Element child) const;

 private:
  bool put(const XmlName& name, int32_t value) const;
  bool put(const XmlName& name, double value) const;
  bool put(const XmlName& name, wide_view text) const;
  bool put(const XmlName& name, std::string_view ascii) const;
  bool put(const XmlName& name, const VARIANT& value) const;
  // Up to the first NUL.
  bool put_narrow(const XmlName& name, const char* text) const;
  bool put_integers(const XmlName& name, const std::vector<int>& values) const;
  bool put_integers(const XmlName& name, const std::vector<unsigned long>& values) const;
  template <class Value>
  bool put_hex(const XmlName& name, const Value* values, size_t count) const;

  backend::Tree* tree_ = nullptr;  // Document's own
  IXMLDOMDocument* document_ = nullptr;
  IXMLDOMElement* element_ = nullptr;
  Ref<IXMLDOMDocument> held_document_;
  Ref<IXMLDOMElement> held_element_;
};

}  // namespace quillon::xml
