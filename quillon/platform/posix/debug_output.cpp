#include <atomic>

#include <quillon/platform/debug_output.h>

namespace quillon {

namespace {

std::atomic<platform::DebugOutput> listener{nullptr};

}  // namespace

void set_debug_output(void (*output)(const char* text)) {
  listener = output;
}

platform::DebugOutput platform::debug_output() {
  return listener;
}

}  // namespace quillon
