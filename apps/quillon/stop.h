#pragma once

#include <chrono>

namespace quillon::app {

// From then on a first request to stop (SIGINT or SIGTERM; Ctrl-C, Ctrl-Break or a closed window) is noted,
// and a second does what the system does with it. A signal that the program was started to ignore stays
// ignored.
void catch_stop_signals();
bool is_interrupted();

// From then on so much time is left.
void stop_after(std::chrono::duration<double> time);
// A request was noted, or the time is over.
bool stop_requested();

// Who waits looks at stop_requested this often: then no request is missed, whenever it comes.
constexpr std::chrono::milliseconds longest_wait{200};

}  // namespace quillon::app
