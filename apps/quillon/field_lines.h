#pragma once

#include <string>

#include <quillon/faces/field_sink.h>

namespace quillon::app {

// The fields of an object as lines of UTF-8, "name: value", indented by two blanks a level.
class FieldLines final : public FieldSink {
 public:
  std::string take() { return std::move(text_); }

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
  void line(const char* name, std::string_view value);

  std::string text_;
  size_t depth_ = 0;
};

}  // namespace quillon::app
