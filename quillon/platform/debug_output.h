#pragma once

#include <quillon/platform/api.h>

namespace quillon {

#if !defined(_WIN32)
// Where the traces of parsers go, a line a call; nowhere by default, and with null. May be called on any
// thread, and throws nothing; `output` may be called on any thread too. Windows has its own place for the
// traces, which debuggers show.
QUILLON_API void set_debug_output(void (*output)(const char* text));
#endif

namespace platform {

// Null if traces go nowhere.
using DebugOutput = void (*)(const char* text);
DebugOutput debug_output();

}  // namespace platform
}  // namespace quillon
