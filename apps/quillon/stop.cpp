#include "apps/quillon/stop.h"

#include <optional>

namespace quillon::app {

namespace {

using Clock = std::chrono::steady_clock;

std::optional<Clock::time_point> deadline;

}  // namespace

void stop_after(std::chrono::duration<double> time) {
  deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
}

bool stop_requested() {
  return is_interrupted() || (deadline && Clock::now() >= *deadline);
}

}  // namespace quillon::app
