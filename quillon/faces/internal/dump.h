#pragma once

// For the library's own sources.

#include <ostream>
#include <string>
#include <vector>

#include <quillon/faces/internal/face.h>
#include <quillon/faces/internal/meaning.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/time.h>
#include <quillon/fields/wire_text.h>
#include <quillon/report/dump.h>
#include <quillon/report/internal/line.h>

namespace quillon::faces {

// Writes a report.
class Dump : public Face {
 public:
  static constexpr bool dump = true;

  explicit Dump(std::ostream& stream) : stream_(stream) {}

  void labels(const char* before, const char* after) {
    before_ = before;
    after_ = after;
  }
  template <class Value>
  void field(const char* name, const Value& value) {
    report::Line line(stream_);
    line.label(before_, name, after_).add(printed(value)).end();
  }
  // Of the standard reading in UTF-8, as no code page has all letters.
  void field(const char* name, const Text& value) {
    report::Line line(stream_);
    line.label(before_, name, after_);
    if (value.get_reading() == Reading::standard)
      line.add(value.utf8()).end();
    else
      line.add(value.c_strA()).end();
  }
  void field(const char* name, const DateTime& value) { time_field(name, value); }
  void field(const char* name, const Duration& value) { time_field(name, value); }
  template <class Value>
  void coded(const char* name, const Value& value, Meaning) {
    field(name, value);
  }
  template <class Value>
  void bytes(const char*, const Value&) {}
  void block(const char* name, const std::vector<uint8_t>& bytes) {
    if (bytes.empty()) return;
    stream_ << name << ":" << std::endl;
    report::block(stream_, bytes);
  }
  template <class Rows>
  void list(const char*, const char*, const Rows& rows) {
    for (const auto& row : rows) dump_of(row);
  }
  template <class Value>
  void child(const char*, const Value& value) {
    dump_of(value);
  }

  template <class Rows>
  void rows(const char*, const char*, const Rows&) {}
  template <class Owner>
  void descriptors(const Owner&) {}

  std::ostream& stream() { return stream_; }

 private:
  template <class Time>
  void time_field(const char* name, const Time& value) {
    report::Line(stream_).label(before_, name, after_).insert();
    stream_ << value;
    report::Line(stream_).end();
  }
  template <class Value>
  void dump_of(const Value& value) {
    if constexpr (requires { value.dump_state(stream_); })
      value.dump_state(stream_);
    else
      value._dump_state(stream_);
  }
  static int printed(int value) { return value; }
  static uint32_t printed(uint32_t value) { return value; }
  static double printed(double value) { return value; }
  static const char* printed(const char* value) { return value; }
  static const char* printed(const CodeCharacters& value) { return value.c_str(); }
  static const char* printed(const ISO639LanguageCode& value) { return value.c_strA(); }
  static const std::string& printed(const std::string& value) { return value; }

  std::ostream& stream_;
  const char* before_ = "";
  const char* after_ = ": ";
};

}  // namespace quillon::faces
