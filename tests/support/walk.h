#pragma once

// What a walk hands over, as text for comparison; each walk is checked on its way.

#include <set>
#include <string>
#include <vector>

#include <quillon/faces/field_sink.h>

namespace quillon::test {

// A line a field: `name: 12 (meaning)`, `name: "text"`, `name: 0a 0b`, records and lists with what is in them
// indented by two blanks a level.
//
// Expects that records and lists end as they begin, that a list has as many items as it says, that no record
// has a name twice, that items of a list are called alike, and that texts are UTF-8.
class WalkText final : public FieldSink {
 public:
  WalkText() { open_.push_back({}); }
  // The lines, after the end of the walk.
  std::string take();
  // The names of all fields with those of the records around them: "event_infos/event/descriptors/...".
  const std::set<std::string>& paths() const { return paths_; }

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
  struct Level {
    std::string path;
    bool is_list = false;
    bool of_descriptors = false;
    size_t left = 0;
    std::set<std::string> names;
  };

  void item(const char* name);
  void line(const char* name, const std::string& value);

  std::string text_;
  std::vector<Level> open_;
  std::set<std::string> paths_;
};

// The lines of an object's walk.
template <class T>
std::string walked(const T& object) {
  WalkText text;
  object.walk(text);
  return text.take();
}

// The walk of a loop that belongs to no table.
template <class Loop>
std::string walked_loop(const Loop& loop) {
  WalkText text;
  loop._walk_descriptors(text);
  return text.take();
}

}  // namespace quillon::test
