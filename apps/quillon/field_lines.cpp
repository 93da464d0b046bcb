#include "apps/quillon/field_lines.h"

#include "apps/quillon/text.h"

#include <charconv>

#include <quillon/fields/time.h>
#include <quillon/xml/attributes.h>

namespace quillon::app {

void FieldLines::head(std::string_view title, std::string_view place) {
  put(Colour::title, title);
  text_ += "  ";
  put(Colour::meaning, place);
  text_ += '\n';
}

void FieldLines::put(Colour colour, std::string_view text) {
  if (!is_coloured_ || text.empty()) {
    text_ += text;
    return;
  }
  switch (colour) {
    case Colour::title:
      text_ += "\033[1m";
      break;
    case Colour::name:
      text_ += "\033[36m";
      break;
    case Colour::value:
      text_ += text;
      return;
    case Colour::meaning:
      text_ += "\033[32m";
      break;
  }
  text_.append(text).append("\033[0m");
}

void FieldLines::line(const char* name, std::string_view value, std::string_view meaning) {
  text_.append(depth_ * 2, ' ');
  put(Colour::name, name);
  if (!value.empty()) text_ += ": ";
  put(Colour::value, value);
  if (!meaning.empty()) {
    text_ += " (";
    put(Colour::meaning, visible(meaning));
    text_ += ")";
  }
  text_ += '\n';
}

void FieldLines::number(const char* name, int64_t value, const char* meaning) {
  line(name, std::to_string(value), meaning ? meaning : "");
}

void FieldLines::real(const char* name, double value) {
  char place[32];
  const auto end = std::to_chars(std::begin(place), std::end(place), value).ptr;
  line(name, {place, static_cast<size_t>(end - place)});
}

void FieldLines::text(const char* name, std::string_view utf8) {
  line(name, '"' + visible(utf8) + '"');
}

void FieldLines::bytes(const char* name, const uint8_t* data, size_t size) {
  std::string text;
  bin2str(data, text, static_cast<int>(size));
  line(name, text.empty() ? "none" : text);
}

void FieldLines::time(const char* name, const DateTime& utc) {
  line(name, is_defined(utc) ? iso_8601(utc) : "undefined");
}

void FieldLines::duration(const char* name, const Duration& value) {
  line(name, is_defined(value) ? clock(value) : "undefined");
}

void FieldLines::begin(const char* name, const char*) {
  line(name, {});
  ++depth_;
}

void FieldLines::begin_list(const char* name, size_t size) {
  line(name, size == 0 ? "none" : grouped(size));
  ++depth_;
}

void FieldLines::end() {
  --depth_;
}

}  // namespace quillon::app
