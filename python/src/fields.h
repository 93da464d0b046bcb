#pragma once

#include <chrono>
#include <cstdint>
#include <pybind11/pybind11.h>
#include <string_view>
#include <vector>

#include <quillon/faces/field_sink.h>

namespace quillon::python {

// The fields of an object as a dict, with the names and the order of the program's JSON:
//   a coded number    "name": 4, "name_meaning": "running"
//   bytes             bytes
//   a time            datetime in UTC, None where it is none
//   a duration        timedelta, likewise
//   a descriptor      a dict whose first key, "descriptor", has its name
//
//   DictFields fields;
//   table.walk(fields);
//   return fields.take();
class DictFields final : public FieldSink {
 public:
  pybind11::dict take();

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
  enum class Kind { record, list, descriptors };
  struct Level {
    PyObject* container;  // which the level above owns
    Kind kind;
  };

  // Takes the reference over; null says that Python has an exception.
  void put(const char* name, PyObject* value);
  void begin_level(const char* name, PyObject* container, Kind kind);

  pybind11::dict fields_;
  std::vector<Level> levels_ = {{fields_.ptr(), Kind::record}};
};

// UTF-8 that is none has U+FFFD in the place of what is wrong.
pybind11::str to_str(std::string_view utf8);
// In UTC.
pybind11::object to_datetime(std::chrono::sys_seconds time);
pybind11::object to_timedelta(int64_t seconds);

}  // namespace quillon::python
