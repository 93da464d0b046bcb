#pragma once

#include <cstdint>
#include <pybind11/pybind11.h>
#include <span>
#include <string>
#include <vector>

#include <quillon/sections/error.h>
#include <quillon/sections/walkable.h>
#include <quillon/stream/any_table.h>

namespace quillon::python {

// The bytes of any object with a buffer. Those that another thread could change meanwhile are copied.
class Bytes {
 public:
  // Throws Python's TypeError.
  explicit Bytes(const pybind11::object& data);

  std::span<const uint8_t> get() const { return bytes_; }

 private:
  pybind11::object owner_;
  std::vector<uint8_t> copy_;
  std::span<const uint8_t> bytes_;
};

// "dvb" or "atsc", "standard" or "kept"; other texts are Python's ValueError.
Standard standard_of(const std::string& name);
Reading reading_of(const std::string& name);

// A quillon.Error.
pybind11::object error_object(const error& e);
// One of the package's own types, "Service".
pybind11::object type_named(const char* name);

}  // namespace quillon::python
