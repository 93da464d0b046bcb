#pragma once

#include <chrono>
#include <cstdint>

namespace quillon::detail {

// The UTC of a time of A/65: seconds since 6 January 1980, in which leap seconds are not left out.
constexpr std::chrono::sys_seconds utc_of_gps(uint32_t gps_seconds, int leap_seconds) {
  using namespace std::chrono;
  return sys_days(1980y / January / 6) + seconds(gps_seconds) - seconds(leap_seconds);
}

}  // namespace quillon::detail
