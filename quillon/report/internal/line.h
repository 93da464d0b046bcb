#pragma once

// For the library's own sources.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>

#include <quillon/sections/internal/composed.h>

namespace quillon::report {

// Where a stream holds whether texts keep to their lines (texts_on_one_line).
int on_one_line();

// A line that is put together first and inserted at once, with the text that the stream's operators would
// print part by part. Where the stream's state holds more than a base, the operators do print it.
class Line {
 public:
  explicit Line(std::ostream& stream);
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  // One insertion, as far as a width of the stream goes.
  Line& label(std::string_view before, std::string_view name, std::string_view after);
  Line& add(std::string_view text);
  Line& add(int value);
  Line& add(uint32_t value);
  Line& add(double value);
  // As after std::setw.
  Line& add(int value, int width);

  // Inserts what was put together, without an end of line.
  void insert();
  // The same with one, and the flush of std::endl.
  void end();

 private:
  Line& add_as_is(std::string_view text);
  void put(std::string_view text);

  std::ostream& stream_;
  detail::Composed* composed_;  // takes the parts at once, if the stream is one
  bool plain_;
  size_t used_ = 0;
  char place_[512];
};

// A whole line: label, value (and its least width), end of line.
template <class Value, std::same_as<int>... Width>
void line(std::ostream& stream, const char* label, const Value& value, Width... width) {
  Line line(stream);
  line.label({}, label, {}).add(value, width...).end();
}

}  // namespace quillon::report
