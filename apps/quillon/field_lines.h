#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <quillon/faces/field_sink.h>

namespace quillon::app {

// The fields of an object as lines of UTF-8 for people, indented by two blanks a level:
//
//   NIT  packet 12, PID 0x0010, 1.204 s
//     network_id: 8442 (Sample network)
//     descriptors: 2
//       network_name_descriptor
//         name: "Sample"
class FieldLines final : public FieldSink {
 public:
  explicit FieldLines(bool is_coloured) : is_coloured_(is_coloured) {}

  // Begins an object.
  void head(std::string_view title, std::string_view place);
  // What the calls until now made.
  std::string take() { return std::exchange(text_, {}); }

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
  enum class Colour { title, name, value, meaning };

  void put(Colour colour, std::string_view text);
  void line(const char* name, std::string_view value, std::string_view meaning = {});

  const bool is_coloured_;
  std::string text_;
  size_t depth_ = 1;
};

}  // namespace quillon::app
