#pragma once

// For the library's own sources.

#include <quillon/report/registry_kind.h>

namespace quillon::detail {

// The name of an id; null if it has none.
const char* registered_name(registry_kind kind, int id);

}  // namespace quillon::detail
