#pragma once

// For the library's own sources.

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <quillon/faces/field_sink.h>
#include <quillon/faces/internal/class_name.h>
#include <quillon/faces/internal/meaning.h>
#include <quillon/fields/address.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/fields/time.h>
#include <quillon/fields/wire_text.h>

namespace quillon::faces {

// Hands every field to a sink.
class Walk {
 public:
  static constexpr bool xml = false;
  static constexpr bool dump = false;
  static constexpr bool load = false;
  static constexpr bool walk = true;

  // With the texts of that reading, and the fields that it alone gives.
  Walk(FieldSink& sink, Reading reading) : sink_(sink), reading_(reading) {}

  Reading reading() const { return reading_; }
  void labels(const char*, const char*) {}

  template <class Number>
  requires std::is_integral_v<Number>
  void field(const char* name, Number value) { sink_.number(name, static_cast<int64_t>(value), nullptr); }
  void field(const char* name, double value) { sink_.real(name, value); }
  void field(const char* name, const char* value) { text(name, value); }
  void field(const char* name, const std::string& value) { text(name, value); }
  void field(const char* name, wide_view value);
  void field(const char* name, const Text& value);
  void field(const char* name, const WireText& value) {
    value.is_utf8() ? sink_.text(name, value) : text(name, value);
  }
  void field(const char* name, const CodeCharacters& value) { text(name, value.c_str()); }
  void field(const char* name, const ISO639LanguageCode& value) { text(name, value.c_strA()); }
  void field(const char* name, const std::vector<uint8_t>& value) {
    sink_.bytes(name, value.data(), value.size());
  }
  void field(const char* name, const DateTime& value) { sink_.time(name, value); }
  void field(const char* name, const Duration& value) { sink_.duration(name, value); }
  void field(const char* name, const MACAddress& value) { text(name, value.text()); }
  void field(const char* name, const IPv4Address& value) { text(name, value.text()); }
  void field(const char* name, const IPv6Address& value) { text(name, value.text()); }
  // Numbers.
  template <class Number>
  requires std::is_integral_v<Number>
  void field(const char* name, const std::vector<Number>& values) {
    sink_.begin_list(name, values.size());
    for (const Number value : values) field(name, value);
    sink_.end();
  }
  // A record, for what has a walk of its own.
  template <class Value>
  requires requires(const Value& value, FieldSink& sink) { value.walk(sink, Reading::kept); }
  void field(const char* name, const Value& value) {
    sink_.begin(name, class_name<Value>);
    value.walk(sink_, reading_);
    sink_.end();
  }

  void coded(const char* name, int64_t value, Meaning meaning);
  template <class Value>
  void head(const char* name, const Value& value) {
    field(name, value);
  }
  template <class Value>
  void bytes(const char* name, const Value& value) {
    field(name, value);
  }
  void block(const char* name, const std::vector<uint8_t>& value) { field(name, value); }
  template <class Value>
  void child(const char* name, const Value& value) {
    field(name, value);
  }
  template <class Rows>
  void list(const char* list_name, const char* item_name, const Rows& rows) {
    sink_.begin_list(list_name, rows.size());
    for (const auto& row : rows) field(item_name, row);
    sink_.end();
  }
  template <class Rows>
  void rows(const char* list_name, const char* item_name, const Rows& rows) {
    list(list_name, item_name, rows);
  }
  template <class Owner>
  void descriptors(const Owner& owner) {
    owner._walk_descriptors(sink_, reading_);
  }

  template <class Value>
  void more(const char* name, const Value& value) {
    field(name, value);
  }
  void more(const char* name, int64_t value, Meaning meaning) { coded(name, value, meaning); }
  template <class Rows>
  void more(const char* list_name, const char* item_name, const Rows& rows) {
    list(list_name, item_name, rows);
  }

  template <class... Value>
  void standard(const char* name, const Value&... value) {
    if (reading_ == Reading::standard) more(name, value...);
  }
  void standard(const char* name, int64_t value, Meaning meaning) {
    if (reading_ == Reading::standard) coded(name, value, meaning);
  }

 private:
  // From the ANSI code page.
  void text(const char* name, std::string_view ansi);

  FieldSink& sink_;
  Reading reading_;
};

}  // namespace quillon::faces
