#include "apps/quillon/output.h"

#include <chrono>
#include <cstdio>

#include <quillon/fields/time.h>

namespace quillon::app {

std::string printable(std::string utf8) {
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x20 || byte == 0x7F) utf8[i] = ' ';
    const bool upper_control =
        byte == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
    if (upper_control) utf8.replace(i, 2, " ");
  }
  return utf8;
}

std::string hex(unsigned value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*X", digits, value);
  return text;
}

void append_hex(std::string& text, uint8_t byte) {
  constexpr const char* digits = "0123456789abcdef";
  text += digits[byte >> 4];
  text += digits[byte & 0x0F];
}

bool is_defined(const DateTime& utc) {
  const std::chrono::year_month_day date{std::chrono::year(utc.year),
                                         std::chrono::month(static_cast<unsigned>(utc.month)),
                                         std::chrono::day(static_cast<unsigned>(utc.day))};
  return date.ok() && utc.hour < 24 && utc.minute < 60 && utc.second < 60;
}

bool is_defined(const Duration& value) {
  return value.get_hours() < 100 && value.get_minutes() < 60 && value.get_seconds() < 60;
}

std::string iso_8601(const DateTime& utc) {
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", utc.year, utc.month, utc.day, utc.hour,
                utc.minute, utc.second);
  return text;
}

std::string clock(const Duration& value) {
  char text[40];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", value.get_hours(), value.get_minutes(),
                value.get_seconds());
  return text;
}

}  // namespace quillon::app
