#include "apps/quillon/field_lines.h"

#include "apps/quillon/output.h"

#include <charconv>

#include <quillon/fields/time.h>

namespace quillon::app {

void FieldLines::line(const char* name, std::string_view value) {
  text_.append(depth_ * 2, ' ').append(name).append(":");
  if (!value.empty()) text_.append(" ").append(value);
  text_ += '\n';
}

void FieldLines::number(const char* name, int64_t value, const char* meaning) {
  std::string text = std::to_string(value);
  if (meaning) text.append(", ").append(printable(meaning));
  line(name, text);
}

void FieldLines::real(const char* name, double value) {
  char place[32];
  const auto end = std::to_chars(std::begin(place), std::end(place), value).ptr;
  line(name, {place, static_cast<size_t>(end - place)});
}

void FieldLines::text(const char* name, std::string_view utf8) {
  line(name, printable(std::string(utf8)));
}

void FieldLines::bytes(const char* name, const uint8_t* data, size_t size) {
  std::string text;
  for (size_t i = 0; i < size; ++i) append_hex(text, data[i]);
  line(name, text);
}

void FieldLines::time(const char* name, const DateTime& utc) {
  line(name, utc.is_defined() ? iso_8601(utc) : "undefined");
}

void FieldLines::duration(const char* name, const Duration& value) {
  line(name, value.is_defined() ? clock(value) : "undefined");
}

void FieldLines::begin(const char* name, const char*) {
  line(name, {});
  ++depth_;
}

void FieldLines::begin_list(const char* name, size_t size) {
  line(name, std::to_string(size));
  ++depth_;
}

void FieldLines::end() {
  --depth_;
}

}  // namespace quillon::app
