#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillon/faces/field_sink.h>

namespace quillon::app::html {

// Bytes of a section.
struct Span {
  size_t begin = 0;
  size_t size = 0;
};

// A field as text, or one that has fields.
struct Field {
  enum class Shape { number, text, other, record, list };

  const char* name = "";
  Shape shape = Shape::other;
  std::string value;    // as people write it; of a list, how many items there are
  std::string meaning;  // of a coded number
  std::vector<Field> items;
  Span span;  // where the bytes are; empty where that is not known

  bool is(std::string_view other) const { return other == name; }
  // The field of that name among the items; one without a value if there is none.
  const Field& operator[](std::string_view item) const;
  // Calls `take` with each record of that name, at whatever depth.
  template <class Take>
  void each(std::string_view record, Take take) const {
    for (const Field& item : items) {
      if (item.is(record)) take(item);
      item.each(record, take);
    }
  }
};

// Makes such fields of an object.
class FieldTree final : public FieldSink {
 public:
  template <class Object>
  static Field of(const Object& object) {
    FieldTree tree;
    object.walk(tree);
    return std::move(tree.root_);
  }

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
  Field& add(const char* name, Field::Shape shape, std::string value);

  Field root_;
  std::vector<Field*> open_{&root_};
};

}  // namespace quillon::app::html
