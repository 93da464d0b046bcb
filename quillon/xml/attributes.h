#pragma once

// How values become XML attributes and come back. Results are HRESULTs: 0, or E_FAIL for any failure.

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include <quillon/fields/address.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/platform/api.h>
#include <quillon/xml/dom.h>

namespace quillon {

namespace xml {
class LiteralName;
}

// The name of an element or attribute, from UTF-16 or ASCII text that outlives it. A name is made for a call,
// and used by one thread, `const` members included. Null is not a name: what needs one fails.
//
// The BSTR that a DOM wants is made when it is first needed, in place. Only one of 60 units or more takes
// heap, and throws what is both std::bad_alloc and _com_error where there is none.
class QUILLON_API XmlName {
 public:
  XmlName(const uint16_t* name) : units_(name) {}
  XmlName(const char16_t* name);
  XmlName(const char* name) : ascii_(name) {}
  ~XmlName() {
    if (text_ && text_ != place_ + 4) SysFreeString(text_);
  }
  XmlName(const XmlName&) = delete;
  XmlName& operator=(const XmlName&) = delete;

  // Null for a name from null. The name keeps the BSTR.
  BSTR get() const { return text_ ? text_ : make(); }
  bool is_null() const { return !ascii_ && !units_ && !text_; }

 private:
  friend class xml::LiteralName;

  BSTR make() const;
  template <class Unit>
  void assign(const Unit* name, size_t units) const;

  static constexpr unsigned kRoom = 60;

  const char* ascii_ = nullptr;
  const uint16_t* units_ = nullptr;
  bool is_literal_ = false;  // of a LiteralName
  mutable BSTR text_ = nullptr;
  alignas(8) mutable std::remove_pointer_t<BSTR> place_[4 + kRoom];
};

// Writes one value as one attribute of `element`, in the place of one of the same name. Numbers are signed
// decimal text (an unsigned value as the same 32 bits), narrow text goes through the ANSI code page up to its
// first NUL, bytes and addresses are lower-case hexadecimal. A null text is the empty one, and a length below
// 1 no bytes; document and element may not be null.
//
// E_FAIL for what is not a name, a text of more than Document::max_attribute units, an element of another
// document, and whatever another DOM refuses; the element keeps the attributes added before. Out of memory
// throws std::bad_alloc, which is also a _com_error where a BSTR was to be made.
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const int&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&,
                              const unsigned long&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const unsigned int&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&,
                              const unsigned char&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const bool&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const double&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const std::string&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const char*);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const Text&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&,
                              const ISO639LanguageCode&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const MACAddress&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const IPv4Address&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const IPv6Address&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, const uint8_t*,
                              int length);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&,
                              const std::vector<uint8_t>&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&,
                              const std::vector<int>&);
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&,
                              const std::vector<unsigned long>&);
// The caller's VARIANT goes to the DOM as it is; the caller clears it.
QUILLON_API long AddAttribute(IXMLDOMDocument*, IXMLDOMElement* element, const XmlName&, VARIANT);

// Reads one attribute, up to its first NUL, into one value. A missing attribute is E_FAIL, and the value
// keeps what it had. Text that is not a number, or of the wrong length, is not a failure: a number is read as
// far as its digits go, 0 if there are none, and hexadecimal text of a wrong length changes nothing. An int
// stops at its limits, an unsigned value at 0xFFFFFFFF; an unsigned char is the low 8 bits of an int, and
// only 1 is true. A double is read as strtod does in the C locale. Vectors are added to, not cleared. The map
// may not be null.
//
// A value of the DOM that is not of a known type throws what is both error and _com_error, out of memory
// std::bad_alloc.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, int&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, unsigned long&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, unsigned int&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, unsigned char&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, bool&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, double&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::string&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, Text&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, ISO639LanguageCode&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, MACAddress&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, IPv4Address&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, IPv6Address&);
// At most size - 1 characters; buffer[size - 1] becomes NUL even on a failure. E_FAIL, and no change, for a
// size below 1.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, char* buffer, int size);
// At most `size` bytes; a shorter text leaves the rest as it was.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, uint8_t* buffer, int size);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::vector<uint8_t>&);
// Four digits an element, against the eight of a save: each saved element comes back as two. Kept: readers of
// saved documents rely on it.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::vector<int>&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::vector<unsigned long>&);

// Appends bytes as two lower-case hexadecimal digits each, integers as eight. A length below 1 is no bytes.
QUILLON_API void bin2str(const uint8_t* bytes, std::string& out, int length);
QUILLON_API void bin2str(const std::vector<uint8_t>& in, std::string& out);
QUILLON_API void bin2str(const std::vector<int>& in, std::string& out);
QUILLON_API void bin2str(const std::vector<unsigned long>& in, std::string& out);

// Reads hexadecimal text, two digits a byte and four an integer: up to `limit` bytes into `out`, or appended
// to the vector. A text whose length is not a multiple of the unit changes nothing.
QUILLON_API void str2bin(const std::string& text, uint8_t* out, int limit);
QUILLON_API void str2bin(const std::string& text, std::vector<uint8_t>& out);
QUILLON_API void str2bin(const std::string& text, std::vector<int>& out);
QUILLON_API void str2bin(const std::string& text, std::vector<unsigned long>& out);

}  // namespace quillon
