#include "apps/quillon/stop.h"

#include <atomic>

#include <quillon/platform/windows/windows.h>

namespace quillon::app {

namespace {

std::atomic<bool> requested = false;

// Runs on a thread of its own.
BOOL WINAPI on_event(DWORD event) {
  if (requested.exchange(true)) return FALSE;
  // The system ends the program when this returns, or some seconds later: the time to come to an end.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

void catch_stop_signals() {
  SetConsoleCtrlHandler(on_event, TRUE);
}

bool is_interrupted() {
  return requested;
}

}  // namespace quillon::app
