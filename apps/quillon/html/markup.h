#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillon::app::html {

// Writes HTML, and the SVG in it. Whatever is given as text, or as the value of an attribute, is text: it
// ends no element and no attribute, and what would steer the page's direction or break a line is escaped, as
// in the other results of the program.
class Markup {
 public:
  struct Attribute {
    Attribute(const char* attribute, std::string_view text) : name(attribute), value(text) {}
    template <class Number>
    requires std::is_arithmetic_v<Number> Attribute(const char* attribute, Number number)
        : Attribute(attribute, decimal_text(static_cast<double>(number))) {}
    static std::string decimal_text(double number);

    const char* name;
    std::string value;
  };
  using Attributes = std::initializer_list<Attribute>;

  Markup& begin(const char* element, Attributes attributes = {});
  Markup& end();
  Markup& text(std::string_view utf8);
  // Lines of a text stay lines.
  Markup& lines(std::string_view utf8);

  // An element with a text.
  Markup& element(const char* name, std::string_view utf8) { return element(name, {}, utf8); }
  Markup& element(const char* name, Attributes attributes, std::string_view utf8) {
    return begin(name, attributes).text(utf8).end();
  }
  // One of the stream's own texts, in whatever direction its script runs.
  Markup& name(std::string_view utf8) { return element("bdi", utf8); }
  // An element that never holds anything.
  Markup& empty(const char* element, Attributes attributes = {});
  // Markup as it is: the page's own, or what another of these made.
  Markup& made(std::string_view markup);

  size_t size() const { return out_.size(); }
  std::string take() { return std::exchange(out_, {}); }

 private:
  void open(const char* element, Attributes attributes);
  void escape(std::string_view visible);

  std::string out_;
  std::vector<const char*> open_;
};

// "12.3": no more digits than asked for, and no trailing zeros.
std::string decimal(double value, int digits);
// The first letters of a text, with an ellipsis where some are left out.
std::string shortened(std::string_view utf8, size_t letters);

}  // namespace quillon::app::html
