#include "apps/quillon/html/markup.h"

#include "apps/quillon/text.h"

#include <algorithm>
#include <charconv>

namespace quillon::app::html {

namespace {

// Elements that end where the next one begins, or what they are in ends.
bool ends_by_itself(std::string_view element) {
  return element == "li" || element == "td" || element == "th" || element == "tr" || element == "dt" ||
         element == "dd";
}

}  // namespace

std::string Markup::Attribute::decimal_text(double number) {
  return decimal(number, 2);
}

void Markup::open(const char* element, Attributes attributes) {
  out_.append("<").append(element);
  for (const Attribute& attribute : attributes) {
    out_.append(" ").append(attribute.name).append("=\"");
    escape(visible(attribute.value));
    out_ += '"';
  }
  out_ += '>';
}

Markup& Markup::begin(const char* element, Attributes attributes) {
  open(element, attributes);
  open_.push_back(element);
  return *this;
}

Markup& Markup::end() {
  if (!ends_by_itself(open_.back())) out_.append("</").append(open_.back()).append(">");
  open_.pop_back();
  return *this;
}

Markup& Markup::empty(const char* element, Attributes attributes) {
  open(element, attributes);
  return *this;
}

Markup& Markup::text(std::string_view utf8) {
  escape(visible(utf8));
  return *this;
}

Markup& Markup::lines(std::string_view utf8) {
  escape(visible_lines(utf8));
  return *this;
}

Markup& Markup::made(std::string_view markup) {
  out_ += markup;
  return *this;
}

void Markup::escape(std::string_view visible) {
  for (const char c : visible) {
    switch (c) {
      case '&':
        out_ += "&amp;";
        break;
      case '<':
        out_ += "&lt;";
        break;
      case '>':
        out_ += "&gt;";
        break;
      case '"':
        out_ += "&quot;";
        break;
      default:
        out_ += c;
    }
  }
}

std::string decimal(double value, int digits) {
  char place[64];
  const auto [end, result] =
      std::to_chars(std::begin(place), std::end(place), value, std::chars_format::fixed, digits);
  if (result != std::errc()) return "?";
  std::string_view text(place, static_cast<size_t>(end - place));
  if (text.find('.') != std::string_view::npos) {
    text = text.substr(0, text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.remove_suffix(1);
  }
  return std::string(text == "-0" ? "0" : text);
}

std::string shortened(std::string_view utf8, size_t letters) {
  const auto begins_letter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  size_t count = 0;
  for (size_t at = 0; at < utf8.size(); ++at)
    if (begins_letter(utf8[at]) && count++ == letters) return std::string(utf8.substr(0, at)) + "…";
  return std::string(utf8);
}

}  // namespace quillon::app::html
