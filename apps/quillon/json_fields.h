#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/faces/field_sink.h>

namespace quillon::app {

// The fields of an object as members of a JSON object, in one line of UTF-8:
//   a coded number    "name": 4, "name_meaning": "running"
//   bytes             "0a1b2c"
//   a time            "2026-11-22T05:00:00Z", null where it is none
//   a duration        "01:30:00", likewise
//   a descriptor      an object whose first member, "descriptor", is its name
class JsonFields final : public FieldSink {
 public:
  // A time by a stream's clock, to the millisecond: between two stamps of the clock it is an estimate.
  void seconds(const char* name, std::optional<double> seconds);

  // The object and a line end, after which the writer is as new. Good until the next call.
  std::string_view take();

  void number(const char* name, int64_t value, const char* meaning) override;
  void real(const char* name, double value) override;
  void text(const char* name, std::string_view utf8) override;
  void bytes(const char* name, const uint8_t* data, size_t size) override;
  void time(const char* name, const DateTime& utc) override;
  void duration(const char* name, const Duration& value) override;
  void begin(const char* name, const char* kind) override;
  void begin_list(const char* name, size_t size) override;
  void end() override;

 private:
  enum class Level { record, list, descriptors };

  // Room for `size` more bytes of the line; `end_` follows as they are written.
  char* room(size_t size) {
    if (line_.size() - end_ < size) line_.resize(2 * line_.size() + size);
    return line_.data() + end_;
  }
  void ended_at(const char* at) { end_ = static_cast<size_t>(at - line_.data()); }
  void put(char c) { *room(1) = c, ++end_; }
  void put(std::string_view text);
  // The items of a list have no keys.
  void key(std::string_view name, std::string_view suffix = {});
  template <class Number>
  void member(const char* name, Number value);
  void string(std::string_view text);
  void begin_level(Level level, char bracket);
  // Puts the end of a level in the place of the last comma.
  void close(char bracket);

  // Each value has a comma after it, in whose place the end of its level goes.
  std::vector<char> line_ = {'{'};
  size_t end_ = 1;
  std::vector<Level> levels_ = {Level::record};
};

}  // namespace quillon::app
