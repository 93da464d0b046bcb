#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <pybind11/pybind11.h>
#include <vector>

#include <quillon/sections/error.h>
#include <quillon/stream/any_table.h>
#include <quillon/stream/section_reader.h>

namespace quillon::python {

// A section that owns its bytes. It is made without the interpreter's lock; `fields` is asked for with it.
class Section {
 public:
  Section(const StreamSection& section, std::optional<double> time, Standard standard, Reading reading);

  const std::vector<uint8_t> bytes;
  const StreamSection head;  // of these bytes
  const std::optional<double> time;
  const char* element = nullptr;  // null where no class has its table id
  std::optional<error> refusal;
  DescriptorFailures failures;

  // Throws the refusal.
  pybind11::dict fields();

  // What Python's collector of cycles is to know of.
  pybind11::object& held() { return fields_; }

 private:
  std::shared_ptr<const AnyTable> table_;  // until there are fields
  pybind11::object fields_;
};

void define_section(pybind11::module_& module);

}  // namespace quillon::python
