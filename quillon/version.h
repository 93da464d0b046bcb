#pragma once

// The version of these headers, read by the build too, and that of the library which is linked.

#include <quillon/platform/api.h>

#define QUILLON_VERSION_MAJOR 0
#define QUILLON_VERSION_MINOR 2
#define QUILLON_VERSION_PATCH 0

// For comparisons: 1.2.3 is 1002003.
#define QUILLON_VERSION \
  (QUILLON_VERSION_MAJOR * 1000000 + QUILLON_VERSION_MINOR * 1000 + QUILLON_VERSION_PATCH)

#define QUILLON_DETAIL_TEXT(x) #x
#define QUILLON_DETAIL_VERSION(major, minor, patch) \
  QUILLON_DETAIL_TEXT(major) "." QUILLON_DETAIL_TEXT(minor) "." QUILLON_DETAIL_TEXT(patch)
#define QUILLON_VERSION_STRING \
  QUILLON_DETAIL_VERSION(QUILLON_VERSION_MAJOR, QUILLON_VERSION_MINOR, QUILLON_VERSION_PATCH)

namespace quillon {

// QUILLON_VERSION_STRING as it was when the linked library was built.
QUILLON_API const char* version();

}  // namespace quillon
