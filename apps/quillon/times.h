#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::app {

// "2026-11-22T20:15:00", to the minute, or the day alone, with a blank for the T too, or with a Z at the end;
// of this machine's zone if it is local. None if it is no such time.
std::optional<std::chrono::sys_seconds> time_of(std::string_view text, bool is_local);

// "2026-11-22 20:15"; "2026-11-22 21:15" in the zone of this machine.
std::string day_and_time(std::chrono::sys_seconds time, bool is_local);
// "2026-11-22T20:15:00.123Z"
std::string iso_8601(std::chrono::system_clock::time_point time);
// "1:05:00"
std::string length_text(std::chrono::seconds length);

}  // namespace quillon::app
