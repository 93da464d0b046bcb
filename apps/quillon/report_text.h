#pragma once

#include <span>
#include <string>

#include <quillon/stream/any_table.h>

namespace quillon::app {

// A table's report in UTF-8. For a terminal, what its texts hold keeps to its line and steers nothing.
std::string report_text(const AnyTable& table, Reading reading, bool is_for_terminal);
// Sixteen bytes a row, in hexadecimal and as letters.
std::string hex_rows(std::span<const uint8_t> bytes);

}  // namespace quillon::app
