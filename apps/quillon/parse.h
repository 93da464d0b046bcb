#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <quillon/stream/any_table.h>

namespace quillon::app {

// A section as a table. Descriptors that are refused are kept as they are.
struct ParsedTable {
  std::unique_ptr<AnyTable> table;  // null where the id has no class, or the section is refused
  std::string refused;              // why
};
ParsedTable parse(std::span<const uint8_t> section, Standard standard, Reading reading);

// "descriptor 0x4D"
std::string name_of(const DescriptorFailure& failure);
// Why it was refused.
std::string text_of(const DescriptorFailure& failure);

}  // namespace quillon::app
