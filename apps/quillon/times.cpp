#include "apps/quillon/times.h"

#include <charconv>
#include <cstdio>
#include <ctime>

namespace quillon::app {

namespace {

using std::chrono::sys_days;
using std::chrono::sys_seconds;

// Takes a number of two digits, or four, and the separator after it.
std::optional<int> take(std::string_view& text, size_t digits, std::string_view separators) {
  int value = 0;
  if (text.size() < digits) return std::nullopt;
  const auto [end, result] = std::from_chars(text.data(), text.data() + digits, value);
  if (result != std::errc() || end != text.data() + digits) return std::nullopt;
  text.remove_prefix(digits);
  if (!text.empty() && separators.find(text.front()) != std::string_view::npos) text.remove_prefix(1);
  return value;
}

std::tm parts_of(sys_seconds time, bool is_local) {
  const std::time_t seconds = time.time_since_epoch().count();
  std::tm parts = {};
#if defined(_WIN32)
  is_local ? localtime_s(&parts, &seconds) : gmtime_s(&parts, &seconds);
#else
  is_local ? localtime_r(&seconds, &parts) : gmtime_r(&seconds, &parts);
#endif
  return parts;
}

}  // namespace

std::optional<sys_seconds> time_of(std::string_view text, bool is_local) {
  const std::optional<int> year = take(text, 4, "-");
  const std::optional<int> month = take(text, 2, "-");
  const std::optional<int> day = take(text, 2, "T ");
  if (!year || !month || !day) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  int clock[3] = {0, 0, 0};
  for (int& part : clock) {
    if (text.empty() || text == "Z") break;
    const std::optional<int> value = take(text, 2, ":");
    if (!value) return std::nullopt;
    part = *value;
  }
  const bool is_utc = text == "Z";
  if (!date.ok() || !(text.empty() || is_utc) || clock[0] > 23 || clock[1] > 59 || clock[2] > 59)
    return std::nullopt;
  if (!is_local || is_utc)
    return sys_days(date) + std::chrono::hours(clock[0]) + std::chrono::minutes(clock[1]) +
           std::chrono::seconds(clock[2]);
  std::tm parts = {};
  parts.tm_year = *year - 1900;
  parts.tm_mon = *month - 1;
  parts.tm_mday = *day;
  parts.tm_hour = clock[0];
  parts.tm_min = clock[1];
  parts.tm_sec = clock[2];
  parts.tm_isdst = -1;
  return sys_seconds(std::chrono::seconds(std::mktime(&parts)));
}

std::string day_and_time(sys_seconds time, bool is_local) {
  const std::tm parts = parts_of(time, is_local);
  char text[64];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts);
  return text;
}

std::string iso_8601(std::chrono::system_clock::time_point time) {
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time);
  const auto seconds = std::chrono::floor<std::chrono::seconds>(milliseconds);
  const std::tm parts = parts_of(seconds, false);
  char text[64];
  const size_t size = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text + size, sizeof text - size, ".%03dZ",
                static_cast<int>((milliseconds - seconds).count()));
  return text;
}

std::string length_text(std::chrono::seconds length) {
  char text[40];
  const long long seconds = length.count();
  std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

}  // namespace quillon::app
