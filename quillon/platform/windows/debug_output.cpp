#include <quillon/platform/debug_output.h>
#include <quillon/platform/windows/windows.h>

namespace quillon {

platform::DebugOutput platform::debug_output() {
  return [](const char* text) { OutputDebugStringA(text); };
}

}  // namespace quillon
