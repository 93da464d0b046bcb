#include "apps/quillon/text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <memory>

#include <quillon/fields/time.h>
#include <quillon/xml/attributes.h>

namespace quillon::app {

namespace {

struct Character {
  char32_t code;
  size_t size;  // in bytes; 0 of a byte that begins no character
};

Character first_of(std::string_view text) {
  const auto byte = [text](size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return {0, 0};
  char32_t code = lead & (0x7Fu >> size);
  for (size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {0, 0};
    code = code << 6 | (byte(i) & 0x3F);
  }
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < smallest[size] || code > 0x10FFFF || is_surrogate) return {0, 0};
  return {code, size};
}

bool is_steering(char32_t c) {
  const bool control = c < 0x20 || (c >= 0x7F && c <= 0x9F);
  const bool separator = c == 0x2028 || c == 0x2029;
  const bool bidirectional = c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
                             (c >= 0x2066 && c <= 0x2069);
  return control || separator || bidirectional;
}

void append_escaped(std::string& out, char32_t c) {
  switch (c) {
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      break;
  }
  char escape[16];
  std::snprintf(escape, sizeof escape, c < 0x80 ? "\\x%02X" : "\\u%04X", static_cast<unsigned>(c));
  out += escape;
}

void append_padded(std::string& text, int value, size_t digits) {
  const size_t begin = text.size();
  text.append(digits, '0');
  for (size_t at = text.size(); at-- > begin; value /= 10) text[at] = static_cast<char>('0' + value % 10);
}

std::string escaped(std::string_view text, bool keeps_lines) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Character first = first_of(text);
    if (first.size == 0) {
      const auto byte = static_cast<uint8_t>(text[0]);
      out += "\\x";
      bin2str(&byte, out, 1);
    } else if (is_steering(first.code) && !(keeps_lines && first.code == '\n')) {
      append_escaped(out, first.code);
    } else {
      out += text.substr(0, first.size);
    }
    text.remove_prefix(std::max<size_t>(first.size, 1));
  }
  return out;
}

}  // namespace

std::string visible(std::string_view utf8) {
  return escaped(utf8, false);
}

std::string visible_lines(std::string_view utf8) {
  return escaped(utf8, true);
}

std::string hex(unsigned value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*X", digits, value);
  return text;
}

std::string pid_text(int pid) {
  return pid < 0 ? std::string() : hex(static_cast<unsigned>(pid), 4);
}

std::string grouped(uint64_t number) {
  std::string text = std::to_string(number);
  for (size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, ',');
  return text;
}

std::string seconds_text(double seconds) {
  return fixed(seconds, 3, "s");
}

std::string fixed(double value, int digits, const char* unit) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f %s", digits, value, unit);
  return text;
}

std::optional<int64_t> number_from(std::string_view text) {
  const bool is_hex = text.starts_with("0x") || text.starts_with("0X");
  if (is_hex) text.remove_prefix(2);
  int64_t value = 0;
  const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), value, is_hex ? 16 : 10);
  if (result != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string table_name(int table_id, Standard standard) {
  const std::unique_ptr<AnyTable> table = AnyTable::for_table_id(table_id, standard);
  if (!table) return "table " + hex(static_cast<unsigned>(table_id), 2);
  std::string name = table->element();
  if (name.starts_with("atsc_")) name.erase(0, 5);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
  return name;
}

std::string table_title(int table_id, Standard standard) {
  const std::string id = "table " + hex(static_cast<unsigned>(table_id), 2);
  const std::string name = table_name(table_id, standard);
  return name == id ? id : name + " (" + id + ")";
}

std::string failure_text(const std::string& text, int code) {
  return text.empty() ? "failure " + std::to_string(code) : text;
}

bool is_defined(const DateTime& utc) {
  const std::chrono::year_month_day date{std::chrono::year(utc.year),
                                         std::chrono::month(static_cast<unsigned>(utc.month)),
                                         std::chrono::day(static_cast<unsigned>(utc.day))};
  return date.ok() && utc.hour < 24 && utc.minute < 60 && utc.second < 60;
}

bool is_defined(const Duration& value) {
  return value.get_hours() < 100 && value.get_minutes() < 60 && value.get_seconds() < 60;
}

std::string iso_8601(const DateTime& utc) {
  std::string text;
  append_padded(text, utc.year, 4);
  append_padded(text += '-', utc.month, 2);
  append_padded(text += '-', utc.day, 2);
  append_padded(text += 'T', utc.hour, 2);
  append_padded(text += ':', utc.minute, 2);
  append_padded(text += ':', utc.second, 2);
  return text += 'Z';
}

std::string clock(const Duration& value) {
  std::string text;
  append_padded(text, value.get_hours(), 2);
  append_padded(text += ':', value.get_minutes(), 2);
  append_padded(text += ':', value.get_seconds(), 2);
  return text;
}

}  // namespace quillon::app
