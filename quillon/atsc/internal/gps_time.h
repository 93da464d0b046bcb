#pragma once

// For the library's own sources.

#include <string>

namespace quillon::detail {

// The time that many seconds after 00:00:00 UTC, 6 January 1980, without leap seconds: "2026-11-22T05:00:00".
// The count is the unsigned one of the wire.
std::string gps_time_text(int seconds);

// UTC, by the leap seconds between the two: "2026-11-22T04:59:42Z".
std::string utc_text(int gps_seconds, int leap_seconds);

}  // namespace quillon::detail
