#include <chrono>
#include <cstdint>
#include <cstdio>

#include <quillon/atsc/internal/gps_time.h>

namespace quillon::detail {

namespace {

std::string text(int64_t elapsed, const char* zone) {
  using namespace std::chrono;
  const sys_seconds time = sys_days(1980y / January / 6) + seconds(elapsed);
  const auto day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  char out[64];
  std::snprintf(out, sizeof out, "%04d-%02u-%02uT%02d:%02d:%02d%s", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), zone);
  return out;
}

}  // namespace

std::string gps_time_text(int seconds) {
  return text(static_cast<uint32_t>(seconds), "");
}

std::string utc_text(int gps_seconds, int leap_seconds) {
  return text(int64_t{static_cast<uint32_t>(gps_seconds)} - leap_seconds, "Z");
}

}  // namespace quillon::detail
