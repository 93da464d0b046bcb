#pragma once

#include <cstddef>
#include <cstdint>

#include <quillon/sections/error.h>
#include <quillon/sections/psi_base.h>

namespace quillon::detail {

// Calls `use` with a section as the standards say, parsed. What one has that is refused is lost, and no more.
template <class Table, class Use>
void with_parsed(const uint8_t* section, size_t size, Use use) {
  try {
    Table table;
    table.set_reading(Reading::standard);
    table.Parse(section, size, false);
    use(table);
  } catch (const error&) {
  }
}

}  // namespace quillon::detail
