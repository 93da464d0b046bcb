#include <quillon/platform/utf8.h>
#include <quillon/xml/internal/attribute_text.h>

namespace quillon::xml {

namespace {

constexpr uint16_t kShift = 0xE000;
constexpr uint16_t kNulEnd = 0xE020;

bool is_control(uint16_t unit) {
  return unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
}

// Whether a unit is where control characters are moved to.
bool is_moved(uint16_t unit) {
  return unit >= kShift && unit < kShift + 0x20;
}

wide_string moved(wide_view text) {
  wide_string out;
  out.reserve(text.size());
  for (const uint16_t unit : text) {
    if (is_moved(unit)) out += kShift;
    out += is_control(unit) ? static_cast<uint16_t>(kShift + unit) : unit >= 0xFFFE ? uint16_t{0xFFFD} : unit;
    if (unit == 0) out += kNulEnd;
  }
  return out;
}

wide_string moved_back(wide_string text) {
  size_t size = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    uint16_t unit = text[i];
    const uint16_t next = i + 1 < text.size() ? text[i + 1] : uint16_t{0};
    if (unit == kShift && is_moved(next)) {
      unit = next;
      ++i;
    } else if (unit == kShift && next == kNulEnd) {
      unit = 0;
      ++i;
    } else if (unit != kShift && is_moved(unit) && is_control(static_cast<uint16_t>(unit - kShift))) {
      unit = static_cast<uint16_t>(unit - kShift);
    }
    text[size++] = unit;
  }
  text.resize(size);
  return text;
}

// How a character is written between quotes; null for one that is written as it is. White space is written by
// its number, since a parser would make blanks of it.
const char* escaped(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#09;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return nullptr;
  }
}

}  // namespace

void append_attribute_text(wide_view text, std::string& out) {
  for (const char c : platform::to_utf8(moved(text)))
    if (const char* const escape = escaped(c))
      out += escape;
    else
      out += c;
}

wide_string attribute_text(std::string_view utf8) {
  return moved_back(platform::to_utf16(utf8));
}

}  // namespace quillon::xml
