#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <quillon/stream/any_table.h>

namespace quillon::app::html {

// A section as a table, in the standard reading.
struct ParsedTable {
  std::unique_ptr<AnyTable> table;               // null where the id has no class, or the section is refused
  std::string refused;                           // why
  std::vector<std::string> refused_descriptors;  // which, and why
};
ParsedTable parse(std::span<const uint8_t> section, Standard standard);

}  // namespace quillon::app::html
