#include <algorithm>
#include <atomic>
#include <utility>

#include <quillon/fields/dvb_text.h>
#include <quillon/fields/internal/character_tables.h>
#include <quillon/platform/internal/multibyte.h>
#include <quillon/platform/utf8.h>

namespace quillon {
namespace {

constexpr uint16_t line_break = 0x8A;

constexpr bool tables_are_whole() {
  for (const std::u16string_view part : detail::kIso8859)
    if (!part.empty() && part.size() != 96) return false;
  for (const detail::Mark& mark : detail::kMarks)
    if (mark.letters.size() != mark.composed.size()) return false;
  return detail::kTable00.size() == 96;
}
static_assert(tables_are_whole());

uint16_t unit_of(std::u16string_view table, char c) {
  const auto byte = static_cast<uint8_t>(c);
  return byte < 0xA0 ? byte : table[byte - 0xA0u];
}

bool is_dropped(uint16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) || (unit >= 0xE080 && unit <= 0xE09F);
}

// The field's own codes are U+0080 to U+009F, but not in 16-bit tables, and U+E080 to U+E09F where they
// exist.
std::string without_controls(wide_string units, bool c1_breaks_lines = true) {
  size_t size = 0;
  for (const uint16_t unit : units)
    if (unit == 0xE000 + line_break || (c1_breaks_lines && unit == line_break))
      units[size++] = '\n';
    else if (!is_dropped(unit))
      units[size++] = unit;
  units.resize(size);
  return platform::to_utf8(units);
}

// Null for a code that is none.
const detail::Mark* mark_of(char c) {
  const auto byte = static_cast<uint8_t>(c);
  if (byte < 0xC0 || byte > 0xCF) return nullptr;
  const detail::Mark& mark = detail::kMarks[byte - 0xC0u];
  return mark.letters.empty() ? nullptr : &mark;
}

// The letters of table 00.
bool is_letter(char c) {
  const auto byte = static_cast<uint8_t>(c);
  const int small = byte | 0x20;
  return (small >= 'a' && small <= 'z') || byte == 0xB5 || (byte >= 0xE0 && byte != 0xE5 && byte != 0xFF);
}

std::string from_table_00(std::string_view text) {
  const auto is_printable_ascii = [](char c) { return c >= 0x20 && c < 0x7F; };
  if (std::ranges::all_of(text, is_printable_ascii)) return std::string(text);

  wide_string units;
  units.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    const uint16_t unit = unit_of(detail::kTable00, text[i]);
    const detail::Mark* const mark = mark_of(text[i]);
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (mark && next == ' ') {
      units += mark->spacing;
      ++i;
    } else if (mark && is_letter(next)) {
      const uint16_t letter = unit_of(detail::kTable00, next);
      const size_t at = mark->letters.find(static_cast<char16_t>(letter));
      if (at != std::u16string_view::npos) {
        units += mark->composed[at];
      } else {
        units += letter;
        units += unit;
      }
      ++i;
    } else {
      units += unit;
    }
  }
  return without_controls(std::move(units));
}

std::string from_iso_8859(unsigned part, std::string_view text) {
  if (part >= detail::kIso8859.size() || detail::kIso8859[part].empty()) return {};
  wide_string units;
  units.reserve(text.size());
  for (const char c : text) units += unit_of(detail::kIso8859[part], c);
  return without_controls(std::move(units));
}

std::atomic<uint8_t> default_table = 0;

std::string from_default_table(std::string_view text) {
  const unsigned part = default_table.load(std::memory_order_relaxed);
  return part == 0 ? from_table_00(text) : from_iso_8859(part, text);
}

std::string from_utf16(std::string_view text) {
  wide_string units;
  units.reserve(text.size() / 2 + 1);
  for (size_t i = 0; i + 1 < text.size(); i += 2)
    units += static_cast<uint16_t>(static_cast<uint8_t>(text[i]) << 8 | static_cast<uint8_t>(text[i + 1]));
  if (text.size() % 2 != 0) units += uint16_t{0xFFFD};
  // Halves of pairs are replaced first, lest a control that goes makes neighbours of two.
  return without_controls(platform::to_utf16(platform::to_utf8(units)), false);
}

}  // namespace

bool set_default_text_table(int part) {
  const auto i = static_cast<size_t>(part);
  if (part != 0 && (i >= detail::kIso8859.size() || detail::kIso8859[i].empty())) return false;
  default_table.store(static_cast<uint8_t>(part), std::memory_order_relaxed);
  return true;
}

int get_default_text_table() {
  return default_table.load(std::memory_order_relaxed);
}

std::string dvb_text_to_utf8(std::string_view field) {
  if (field.empty()) return {};
  const auto first = static_cast<uint8_t>(field[0]);
  return first < 0x20 ? dvb_text_to_utf8(first, field.substr(1)) : from_default_table(field);
}

std::string dvb_text_to_utf8(uint8_t first, std::string_view rest) {
  if (first >= 0x20) return from_default_table(std::string(1, static_cast<char>(first)).append(rest));
  switch (first) {
    case 0x00:
      return {};
    case 0x10:
      if (rest.size() < 2 || rest[0] != 0) return {};
      return from_iso_8859(static_cast<uint8_t>(rest[1]), rest.substr(2));
    case 0x11:
    case 0x14:  // a subset of ISO/IEC 10646 with the characters of Big5, not the codes of Big5
      return from_utf16(rest);
    case 0x12:
      return without_controls(platform::decode_multibyte(platform::MultibyteTable::ks_x_1001, rest));
    case 0x13:
      return without_controls(platform::decode_multibyte(platform::MultibyteTable::gb_2312, rest));
    case 0x15:
      return without_controls(platform::to_utf16(rest));
    default:  // from part 5 on; there are no parts for the reserved values
      return from_iso_8859(first + 4u, rest);
  }
}

}  // namespace quillon
