#pragma once

#include <quillon/platform/api.h>

namespace quillon {

#if !defined(_WIN32)
// Where the traces of parsers go, a line a call; nowhere by default, and with null. Windows has its own
// place for them, which debuggers show.
QUILLON_API void set_debug_output(void (*output)(const char* text));
#endif

namespace platform {

// Null if nobody listens.
using DebugOutput = void (*)(const char* text);
DebugOutput debug_output();

}  // namespace platform
}  // namespace quillon
