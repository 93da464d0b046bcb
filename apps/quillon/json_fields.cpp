#include "apps/quillon/json_fields.h"

#include "apps/quillon/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

#include <quillon/fields/time.h>
#include <quillon/xml/internal/hex.h>

namespace quillon::app {

namespace {

bool is_escaped(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

// Whether one of eight bytes is escaped: each of them in the highest bit of its place.
bool has_escaped(const char* bytes) {
  constexpr uint64_t ones = 0x0101010101010101;
  constexpr uint64_t highs = 0x8080808080808080;
  uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  const auto has_zero = [](uint64_t w) { return (w - ones) & ~w & highs; };
  const uint64_t controls = (word - ones * 0x20) & ~word & highs;
  return (controls | has_zero(word ^ ones * '"') | has_zero(word ^ ones * '\\')) != 0;
}

constexpr size_t kNumber = 32;  // room for any number and a comma
constexpr size_t kEscape = 6;   // the most that a byte becomes

char* write_hex(char* at, const uint8_t* bytes, size_t size) {
  xml::write_hex(bytes, size, at);
  return at + 2 * size;
}

char* write_escaped(char* at, char c) {
  constexpr std::string_view controls = "\b\f\n\r\t";
  constexpr std::string_view letters = "bfnrt";
  *at++ = '\\';
  if (const size_t named = controls.find(c); named != std::string_view::npos) {
    *at++ = letters[named];
  } else if (static_cast<unsigned char>(c) < 0x20) {
    at = std::copy_n("u00", 3, at);
    const auto byte = static_cast<uint8_t>(c);
    at = write_hex(at, &byte, 1);
  } else {
    *at++ = c;
  }
  return at;
}

}  // namespace

void JsonFields::put(std::string_view text) {
  text.copy(room(text.size()), text.size());
  end_ += text.size();
}

void JsonFields::close(char bracket) {
  if (line_[end_ - 1] == ',') --end_;
  put(bracket);
}

std::string_view JsonFields::take() {
  close('}');
  put('\n');
  return {line_.data(), std::exchange(end_, 1)};
}

void JsonFields::seconds(const char* name, std::optional<double> seconds) {
  real(name, seconds ? std::round(*seconds * 1000) / 1000 : std::nan(""));
}

void JsonFields::key(std::string_view name, std::string_view suffix) {
  if (levels_.back() != Level::record) return;
  char* at = room(name.size() + suffix.size() + 3);
  *at++ = '"';
  at += name.copy(at, name.size());
  at += suffix.copy(at, suffix.size());
  *at++ = '"';
  *at++ = ':';
  ended_at(at);
}

// Copied eight bytes at a time as long as none of them is escaped.
void JsonFields::string(std::string_view text) {
  char* at = room(kEscape * text.size() + 3);
  *at++ = '"';
  const char* from = text.data();
  const char* const end = from + text.size();
  while (from != end) {
    for (; end - from >= 8 && !has_escaped(from); from += 8, at += 8) std::memcpy(at, from, 8);
    for (int i = 0; i < 8 && from != end; ++i) {
      const char c = *from++;
      if (is_escaped(c))
        at = write_escaped(at, c);
      else
        *at++ = c;
    }
  }
  *at++ = '"';
  *at++ = ',';
  ended_at(at);
}

template <class Number>
void JsonFields::member(const char* name, Number value) {
  key(name);
  char* const place = room(kNumber);
  char* const end = std::to_chars(place, place + kNumber - 1, value).ptr;
  *end = ',';
  ended_at(end + 1);
}

void JsonFields::number(const char* name, int64_t value, const char* meaning) {
  member(name, value);
  if (!meaning || levels_.back() != Level::record) return;
  key(name, "_meaning");
  string(meaning);
}

void JsonFields::real(const char* name, double value) {
  if (std::isfinite(value)) return member(name, value);
  key(name);
  put("null,");
}

void JsonFields::text(const char* name, std::string_view utf8) {
  key(name);
  string(utf8);
}

void JsonFields::bytes(const char* name, const uint8_t* data, size_t size) {
  key(name);
  char* at = room(2 * size + 3);
  *at++ = '"';
  at = write_hex(at, data, size);
  *at++ = '"';
  *at++ = ',';
  ended_at(at);
}

void JsonFields::time(const char* name, const DateTime& utc) {
  key(name);
  is_defined(utc) ? string(iso_8601(utc)) : put("null,");
}

void JsonFields::duration(const char* name, const Duration& value) {
  key(name);
  is_defined(value) ? string(clock(value)) : put("null,");
}

void JsonFields::begin_level(Level level, char bracket) {
  put(bracket);
  levels_.push_back(level);
}

void JsonFields::begin(const char* name, const char*) {
  const bool is_descriptor = levels_.back() == Level::descriptors;
  key(name);
  begin_level(Level::record, '{');
  if (is_descriptor) text("descriptor", name);
}

void JsonFields::begin_list(const char* name, size_t) {
  key(name);
  begin_level(std::strcmp(name, "descriptors") == 0 ? Level::descriptors : Level::list, '[');
}

void JsonFields::end() {
  close(levels_.back() == Level::record ? '}' : ']');
  put(',');
  levels_.pop_back();
}

}  // namespace quillon::app
