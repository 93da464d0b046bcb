#pragma once

// What objects of one class have in common, gathered from many of them: their walks or their documents.

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/faces/field_sink.h>

namespace quillon::test {

enum class Kind { number, real, text, bytes, time, duration, record, list };

// A field as a walk hands it over, or an element or attribute of a document.
struct Value {
  std::string name;
  Kind kind = Kind::record;
  std::string text;  // of a leaf; of a record its class
  int64_t number = 0;
  bool is_coded = false;  // a number with a meaning
  std::vector<Value> items;
};

// Makes a tree of a walk; the root has no name.
class ValueSink final : public FieldSink {
 public:
  Value take();

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
  Value& add(const char* name, Kind kind, std::string text = {});

  std::vector<Value> open_ = {Value()};
};

// The root element of a document as it is saved: elements are records, attributes texts.
Value element_of(std::string_view document);

struct Shape {
  struct Member;

  std::set<Kind> kinds;
  std::string class_name;
  bool is_coded = false;
  bool varies = false;          // in its length, of a leaf
  size_t length = 0;            // of a leaf's text
  size_t count = 0;             // objects that were added
  std::vector<Member> members;  // in the order in which they come

  // What a list of descriptors holds is left out: its classes have shapes of their own.
  void add(const Value& value);
  const Member* find(std::string_view name) const;
};

struct Shape::Member {
  std::string name;
  Shape shape = {};
  size_t parents = 0;  // those that have it
};

}  // namespace quillon::test
