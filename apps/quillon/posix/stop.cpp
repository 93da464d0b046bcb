#include "apps/quillon/stop.h"

#include <atomic>
#include <csignal>

namespace quillon::app {

namespace {

std::atomic<bool> requested = false;
static_assert(std::atomic<bool>::is_always_lock_free);  // as a handler needs it

void on_signal(int signal) {
  if (!requested.exchange(true)) return;
  std::signal(signal, SIG_DFL);
  std::raise(signal);  // comes when the handler has returned
}

}  // namespace

void catch_stop_signals() {
  for (const int signal : {SIGINT, SIGTERM}) {
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = on_signal;
    action.sa_flags = SA_RESTART;  // what is being written is written; a wait is cut short all the same
    sigaction(signal, &action, nullptr);
  }
}

bool is_interrupted() {
  return requested;
}

}  // namespace quillon::app
