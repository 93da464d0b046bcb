#pragma once

// The one place where a value meets an XML attribute. Results are HRESULTs: 0, or E_FAIL for any failure.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/fields/address.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/platform/api.h>
#include <quillon/platform/wide_string.h>
#include <quillon/xml/dom.h>

namespace quillon {

namespace xml {
class LiteralName;
}

// The name of an element or attribute, from UTF-16 or from an ASCII literal that outlives it. The BSTR that a
// DOM wants is put together when it is first asked for, in place: naming takes no heap. A name is made for a
// call, and is one thread's, `const` members included. Null is no name: what is to be done with it fails.
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
  alignas(8) mutable uint16_t place_[4 + kRoom];
};

// Writes one value as one attribute of `element`. Numbers stand as signed decimal text (an unsigned value as
// the same 32 bits), narrow text goes through the ANSI code page, bytes and addresses are lower-case
// hexadecimal; a null text is the empty one. On a failure the element keeps the attributes added before. Out
// of memory throws what is both std::bad_alloc and _com_error.
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

// Reads one attribute into one value, which keeps what it had on a failure; a missing attribute is one. Text
// that is no number, or of the wrong length, is not. Vectors are added to, not cleared. A value of the DOM
// that is not of a known type throws what is both error and _com_error.
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
// At most size - 1 characters; buffer[size - 1] becomes NUL in every case.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, char* buffer, int size);
// At most `size` bytes; a shorter text leaves the rest.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, uint8_t* buffer, int size);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::vector<uint8_t>&);
// Four digits an element, against the eight of a save: each saved element comes back as two. Kept: readers of
// saved documents rely on it.
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::vector<int>&);
QUILLON_API long GetAttributeValue(IXMLDOMNamedNodeMap*, const XmlName&, std::vector<unsigned long>&);

// Appends bytes as two lower-case hexadecimal digits each, integers as eight.
QUILLON_API void bin2str(const uint8_t* bytes, std::string& out, int length);
QUILLON_API void bin2str(const std::vector<uint8_t>& in, std::string& out);
QUILLON_API void bin2str(const std::vector<int>& in, std::string& out);
QUILLON_API void bin2str(const std::vector<unsigned long>& in, std::string& out);

// Reads hexadecimal text, two digits a byte and four an integer, up to `limit` bytes or appending. A text
// whose length is no multiple of the unit changes nothing.
QUILLON_API void str2bin(const std::string& text, uint8_t* out, int limit);
QUILLON_API void str2bin(const std::string& text, std::vector<uint8_t>& out);
QUILLON_API void str2bin(const std::string& text, std::vector<int>& out);
QUILLON_API void str2bin(const std::string& text, std::vector<unsigned long>& out);

}  // namespace quillon
