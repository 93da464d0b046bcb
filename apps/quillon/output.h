#pragma once

#include <cstdint>
#include <string>

namespace quillon {

class DateTime;
class Duration;

namespace app {

// UTF-8 with blanks in the place of the characters that would steer a terminal.
std::string printable(std::string utf8);

// "0x0012"
std::string hex(unsigned value, int digits);
// Two digits.
void append_hex(std::string& text, uint8_t byte);

// A time that a calendar and a clock know; all bits set is none.
bool is_defined(const DateTime& utc);
bool is_defined(const Duration& value);
// "2026-11-22T05:00:00Z"
std::string iso_8601(const DateTime& utc);
// "01:30:00"
std::string clock(const Duration& value);

}  // namespace app
}  // namespace quillon
