#pragma once

#include <string>
#include <string_view>

namespace quillon::app {

// UTF-8 from the ANSI code page, in which the library keeps its narrow text.
std::string utf8(std::string_view ansi);

// "0x0012"
std::string hex(unsigned value, int digits);

}  // namespace quillon::app
