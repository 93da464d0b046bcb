#include "apps/quillon/json_fields.h"

#include "apps/quillon/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include <quillon/fields/time.h>

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

size_t plain_length(std::string_view text) {
  size_t at = 0;
  while (text.size() - at >= 8 && !has_escaped(text.data() + at)) at += 8;
  while (at < text.size() && !is_escaped(text[at])) ++at;
  return at;
}

void append_escaped(std::string& line, char c) {
  constexpr std::string_view controls = "\b\f\n\r\t";
  constexpr std::string_view letters = "bfnrt";
  line += '\\';
  if (const size_t named = controls.find(c); named != std::string_view::npos) {
    line += letters[named];
  } else if (static_cast<unsigned char>(c) < 0x20) {
    line += "u00";
    append_hex(line, static_cast<uint8_t>(c));
  } else {
    line += c;
  }
}

// Puts the end of a level in the place of the last comma.
void close(std::string& line, char bracket) {
  if (line.back() == ',')
    line.back() = bracket;
  else
    line += bracket;
}

template <class Number>
void append(std::string& line, Number value) {
  char place[32];
  char* const end = std::to_chars(std::begin(place), std::end(place) - 1, value).ptr;
  *end = ',';
  line.append(place, static_cast<size_t>(end - place) + 1);
}

}  // namespace

std::string_view JsonFields::take() {
  close(line_, '}');
  line_ += '\n';
  taken_.swap(line_);
  line_.assign(1, '{');
  return taken_;
}

void JsonFields::seconds(const char* name, std::optional<double> seconds) {
  real(name, seconds ? std::round(*seconds * 1000) / 1000 : std::nan(""));
}

void JsonFields::key(std::string_view name, std::string_view suffix) {
  if (levels_.back() != Level::record) return;
  const size_t begin = line_.size();
  line_.resize(begin + name.size() + suffix.size() + 3);
  char* at = line_.data() + begin;
  *at++ = '"';
  std::memcpy(at, name.data(), name.size());
  at += name.size();
  if (!suffix.empty()) std::memcpy(at, suffix.data(), suffix.size());
  at += suffix.size();
  *at++ = '"';
  *at = ':';
}

void JsonFields::string(std::string_view text) {
  line_ += '"';
  for (;;) {
    const size_t plain = plain_length(text);
    line_.append(text, 0, plain);
    if (plain == text.size()) break;
    append_escaped(line_, text[plain]);
    text.remove_prefix(plain + 1);
  }
  line_ += "\",";
}

void JsonFields::number(const char* name, int64_t value, const char* meaning) {
  key(name);
  append(line_, value);
  if (!meaning || levels_.back() != Level::record) return;
  key(name, "_meaning");
  string(meaning);
}

void JsonFields::real(const char* name, double value) {
  key(name);
  std::isfinite(value) ? append(line_, value) : void(line_ += "null,");
}

void JsonFields::text(const char* name, std::string_view utf8) {
  key(name);
  string(utf8);
}

void JsonFields::bytes(const char* name, const uint8_t* data, size_t size) {
  key(name);
  line_ += '"';
  for (size_t i = 0; i < size; ++i) append_hex(line_, data[i]);
  line_ += "\",";
}

void JsonFields::time(const char* name, const DateTime& utc) {
  key(name);
  is_defined(utc) ? string(iso_8601(utc)) : void(line_ += "null,");
}

void JsonFields::duration(const char* name, const Duration& value) {
  key(name);
  is_defined(value) ? string(clock(value)) : void(line_ += "null,");
}

void JsonFields::begin_level(Level level, char bracket) {
  line_ += bracket;
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
  close(line_, levels_.back() == Level::record ? '}' : ']');
  line_ += ',';
  levels_.pop_back();
}

}  // namespace quillon::app
