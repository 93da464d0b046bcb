#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstring>
#include <limits>

#include <quillon/xml/attributes.h>
#include <quillon/xml/internal/com_failure.h>
#include <quillon/xml/internal/element.h>
#include <quillon/xml/internal/hex.h>
#include <quillon/xml/internal/real_text.h>
#include <quillon/xml/internal/ref.h>

namespace quillon {

namespace {

void clear(VARIANT& value) {
  const HRESULT result = VariantClear(&value);
  if (result < 0) throw xml::ComFailure(result, "the value of an attribute can't be released");
}

// The value's text as the DOM's support would convert it.
wide_string converted(const VARIANT& value) {
  char digits[xml::real_room];
  const char* end = digits;
  switch (value.vt) {
    case VT_EMPTY:
      break;
    case VT_I4:
      end = std::to_chars(digits, digits + sizeof digits, value.lVal).ptr;
      break;
    case VT_R8:
      end = xml::write_real(digits, value.dblVal);
      break;
    default:
      throw xml::ComFailure(DISP_E_BADVARTYPE, "the value of an attribute is no text");
  }
  return wide_string(static_cast<const char*>(digits), end);
}

// Calls `take` with the attribute's text, up to its first NUL.
template <class Take>
long read(IXMLDOMNamedNodeMap* map, const XmlName& name, Take take) {
  struct Value : VARIANT {
    Value() { VariantInit(this); }
    ~Value() {
      if (vt == VT_BSTR) VariantClear(this);
    }
  } value;
  xml::Ref<IXMLDOMNode> node;
  HRESULT result = name.is_null() ? E_FAIL : map->getNamedItem(name.get(), node.out());
  if (result == S_OK) result = node ? node->get_nodeValue(&value) : E_FAIL;
  if (result != S_OK) {
    clear(value);
    xml::expect_memory(result, node.get());
    return E_FAIL;
  }
  if (value.vt == VT_BSTR) {
    const auto units = xml::units_of(value.bstrVal);
    const wide_view text(units);
    take(text.substr(0, text.find(uint16_t{0})));
  } else {
    take(wide_view(converted(value)));
  }
  clear(value);
  return 0;
}

// The same with the text in the ANSI code page.
template <class Take>
long read_narrow(IXMLDOMNamedNodeMap* map, const XmlName& name, Take take) {
  return read(map, name, [&](wide_view wide) {
    std::string text;
    platform::encode(0, wide, text);
    take(text);
  });
}

// A number as atoi and strtoul read it: blanks, a sign, then digits as far as they go.
struct Decimal {
  bool negative = false;
  bool too_large = false;  // over 32 bits
  uint64_t magnitude = 0;

  explicit Decimal(wide_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
      magnitude = magnitude * 10 + (text[i] - uint64_t{'0'});
      too_large = too_large || magnitude > UINT32_MAX;
      if (too_large) magnitude = UINT32_MAX;
    }
  }
  int as_int() const {
    const int64_t value = negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
    return static_cast<int>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
  }
  uint32_t as_unsigned() const {
    const auto value = static_cast<uint32_t>(magnitude);
    return negative && !too_large ? 0u - value : value;
  }
};

// The power of ten of the first digit that counts in a decimal number that begins at `digits`.
long long decimal_exponent(const char* digits) {
  long long exponent = -1;
  bool counts = false;
  bool fraction = false;
  for (;; ++digits) {
    if (*digits == '.' && !fraction) {
      fraction = true;
      continue;
    }
    if (*digits < '0' || *digits > '9') break;
    counts = counts || *digits != '0';
    if (counts && !fraction) ++exponent;
    if (!counts && fraction) --exponent;
  }
  if ((*digits | 0x20) != 'e') return exponent;
  const bool negative = *++digits == '-';
  if (*digits == '-' || *digits == '+') ++digits;
  long long stated = 0;
  for (; *digits >= '0' && *digits <= '9' && stated < LLONG_MAX / 100; ++digits)
    stated = stated * 10 + (*digits - '0');
  return exponent + (negative ? -stated : stated);
}

// Whether a number that is out of range is too large rather than too small.
bool is_above_range(const char* number, bool hexadecimal) {
  if (!hexadecimal) return decimal_exponent(number) > 0;
  const char* const exponent = std::strpbrk(number, "pP");
  return !exponent || exponent[1] != '-';
}

// A number as strtod reads it, whatever the locale; one that is out of range is infinity or 0.
double to_double(const std::string& text) {
  const char* begin = text.c_str();
  const char* const end = begin + text.size();
  while (*begin == ' ' || (*begin >= '\t' && *begin <= '\r')) ++begin;
  const bool negative = *begin == '-';
  if (*begin == '-' || *begin == '+') ++begin;
  if (*begin == '-') return 0;
  double value = 0;
  const bool hexadecimal = *begin == '0' && (begin[1] | 0x20) == 'x' && begin[2] != '-';
  const std::errc result = (hexadecimal ? std::from_chars(begin + 2, end, value, std::chars_format::hex)
                                        : std::from_chars(begin, end, value))
                               .ec;
  if (result == std::errc::invalid_argument) return 0;
  if (result == std::errc::result_out_of_range)
    value = is_above_range(begin, hexadecimal) ? std::numeric_limits<double>::infinity() : 0;
  return negative ? -value : value;
}

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Calls `store` with each `digits` characters of the text as a number. Characters that are not digits are not
// detected: the number is then what sscanf reads, or the one before where it reads none.
template <class Store>
void scan_hex(const std::string& text, size_t digits, Store store) {
  unsigned value = 0;
  for (size_t at = 0; at + digits <= text.size(); at += digits) {
    unsigned fast = 0;
    bool plain = true;
    for (size_t i = 0; i < digits; ++i) {
      const int digit = hex_digit(text[at + i]);
      plain = plain && digit >= 0;
      fast = fast << 4 | (static_cast<unsigned>(digit) & 0x0F);
    }
    if (plain)
      value = fast;
    else
      std::sscanf(text.substr(at, digits).c_str(), "%x", &value);
    if (!store(value)) return;
  }
}

template <class Element>
void append_digits(std::string& out, const Element* in, size_t count) {
  const size_t before = out.size();
  out.resize(before + count * xml::hex_digits<Element>);
  xml::write_hex(in, count, out.data() + before);
}

template <class Element>
void integers_of_hex(const std::string& text, std::vector<Element>& out) {
  if (text.size() % 4 != 0) return;
  scan_hex(text, 4, [&](unsigned value) {
    out.push_back(static_cast<Element>(value));
    return true;
  });
}

long result(bool success) {
  return success ? 0 : E_FAIL;
}

}  // namespace

XmlName::XmlName(const char16_t* name) {
  if (name) assign(name, std::char_traits<char16_t>::length(name));
}

BSTR XmlName::make() const {
  if (ascii_)
    assign(ascii_, std::strlen(ascii_));
  else if (units_)
    assign(units_, wide_traits::length(units_));
  return text_;
}

template <class Unit>
void XmlName::assign(const Unit* name, size_t units) const {
  if (units < kRoom) {
    const auto size = static_cast<uint32_t>(units * sizeof *place_);
    text_ = place_ + 4;
    std::memcpy(place_ + 2, &size, sizeof size);
    text_[units] = 0;
  } else {
    text_ = xml::make_text(units);
  }
  std::transform(name, name + units, text_, [](Unit unit) {
    // A byte past ASCII is no character of a name, whether or not char has a sign.
    if constexpr (sizeof unit == 1)
      return static_cast<uint16_t>(static_cast<signed char>(unit));
    else
      return unit;
  });
}

#define QUILLON_ADD(Value)                                                                                  \
  long AddAttribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name, Value value) { \
    return result(xml::Element(document, element).set(name, value));                                        \
  }
QUILLON_ADD(const int&)
QUILLON_ADD(const unsigned long&)
QUILLON_ADD(const unsigned int&)
QUILLON_ADD(const unsigned char&)
QUILLON_ADD(const bool&)
QUILLON_ADD(const double&)
QUILLON_ADD(const std::string&)
QUILLON_ADD(const char*)
QUILLON_ADD(const Text&)
QUILLON_ADD(const ISO639LanguageCode&)
QUILLON_ADD(const MACAddress&)
QUILLON_ADD(const IPv4Address&)
QUILLON_ADD(const IPv6Address&)
QUILLON_ADD(const std::vector<uint8_t>&)
QUILLON_ADD(const std::vector<int>&)
QUILLON_ADD(const std::vector<unsigned long>&)
QUILLON_ADD(VARIANT)
#undef QUILLON_ADD

long AddAttribute(IXMLDOMDocument* document, IXMLDOMElement* element, const XmlName& name,
                  const uint8_t* bytes, int length) {
  return result(
      xml::Element(document, element).set_bytes(name, bytes, length < 1 ? 0 : static_cast<size_t>(length)));
}

long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, int& value) {
  return read(map, name, [&](wide_view text) { value = Decimal(text).as_int(); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, unsigned long& value) {
  return read(map, name, [&](wide_view text) { value = Decimal(text).as_unsigned(); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, unsigned int& value) {
  return read(map, name, [&](wide_view text) { value = Decimal(text).as_unsigned(); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, unsigned char& value) {
  return read(map, name, [&](wide_view text) { value = static_cast<unsigned char>(Decimal(text).as_int()); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, bool& value) {
  return read(map, name, [&](wide_view text) { value = Decimal(text).as_int() == 1; });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, double& value) {
  return read_narrow(map, name, [&](const std::string& text) { value = to_double(text); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, std::string& value) {
  return read(map, name, [&](wide_view text) { platform::encode(0, text, value); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, Text& value) {
  return read(map, name, [&](wide_view text) { value.set_textW(1, wide_string(text).c_str()); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, ISO639LanguageCode& value) {
  return read_narrow(map, name, [&](const std::string& text) { value.set_textA(text.c_str()); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, MACAddress& value) {
  return GetAttributeValue(map, name, value.get_addr(), MACAddress::size);
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, IPv4Address& value) {
  return GetAttributeValue(map, name, value.get_addr(), IPv4Address::size);
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, IPv6Address& value) {
  return GetAttributeValue(map, name, value.get_addr(), IPv6Address::size);
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, char* buffer, int size) {
  if (size < 1) return E_FAIL;
  buffer[size - 1] = '\0';
  return read_narrow(map, name, [&](const std::string& text) {
    std::memset(buffer, 0, static_cast<size_t>(size));
    text.copy(buffer, static_cast<size_t>(size) - 1);
  });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, uint8_t* buffer, int size) {
  return read_narrow(map, name, [&](const std::string& text) { str2bin(text, buffer, size); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, std::vector<uint8_t>& value) {
  return read_narrow(map, name, [&](const std::string& text) { str2bin(text, value); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, std::vector<int>& value) {
  return read_narrow(map, name, [&](const std::string& text) { str2bin(text, value); });
}
long GetAttributeValue(IXMLDOMNamedNodeMap* map, const XmlName& name, std::vector<unsigned long>& value) {
  return read_narrow(map, name, [&](const std::string& text) { str2bin(text, value); });
}

void bin2str(const uint8_t* bytes, std::string& out, int length) {
  if (length > 0) append_digits(out, bytes, static_cast<size_t>(length));
}

void bin2str(const std::vector<uint8_t>& in, std::string& out) {
  append_digits(out, in.data(), in.size());
}

void bin2str(const std::vector<int>& in, std::string& out) {
  append_digits(out, in.data(), in.size());
}
void bin2str(const std::vector<unsigned long>& in, std::string& out) {
  append_digits(out, in.data(), in.size());
}

void str2bin(const std::string& text, uint8_t* out, int limit) {
  if (text.size() % 2 != 0) return;
  int filled = 0;
  scan_hex(text, 2, [&](unsigned value) {
    if (filled >= limit) return false;
    out[filled++] = static_cast<uint8_t>(value);
    return true;
  });
}

void str2bin(const std::string& text, std::vector<uint8_t>& out) {
  if (text.size() % 2 != 0) return;
  scan_hex(text, 2, [&](unsigned value) {
    out.push_back(static_cast<uint8_t>(value));
    return true;
  });
}

void str2bin(const std::string& text, std::vector<int>& out) {
  integers_of_hex(text, out);
}
void str2bin(const std::string& text, std::vector<unsigned long>& out) {
  integers_of_hex(text, out);
}

}  // namespace quillon
