#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <quillon/stream/any_table.h>

namespace quillon {

class DateTime;
class Duration;

namespace app {

// UTF-8 in which nothing steers a terminal or begins a line: control characters, those of bidirectional text
// and what is no UTF-8 are escaped, as "\n", "\x1B" and "\u202E".
std::string visible(std::string_view utf8);
// The same, but line ends stay: of a text whose lines are its own.
std::string visible_lines(std::string_view utf8);

// "0x0012"
std::string hex(unsigned value, int digits);
// "0x0012"; empty of none, in a chain of sections.
std::string pid_text(int pid);
// "12,345,678"
std::string grouped(uint64_t number);
// "12.480 s"
std::string seconds_text(double seconds);
// "12.3 %", with so many digits after the point.
std::string fixed(double value, int digits, const char* unit);
// Decimal, or hexadecimal after 0x; a leading zero means nothing. None if the text is anything else, or more.
std::optional<int64_t> number_from(std::string_view text);
// "EIT"; a number where no table is known by the id.
std::string table_name(int table_id, Standard standard);
// "EIT (table 0x4E)"
std::string table_title(int table_id, Standard standard);

// What an error says: its text, or "failure 4" where it has a code alone.
std::string failure_text(const std::string& text, int code);

// A time that a calendar and a clock know; all bits set is none.
bool is_defined(const DateTime& utc);
bool is_defined(const Duration& value);
// "2026-11-22T05:00:00Z"
std::string iso_8601(const DateTime& utc);
// "01:30:00"
std::string clock(const Duration& value);

}  // namespace app
}  // namespace quillon
