#pragma once

#include <quillon/platform/api.h>

namespace quillon::detail {

// Wherever a function takes text, null is the empty one.
inline const char* or_empty(const char* text) {
  return text ? text : "";
}

}  // namespace quillon::detail
