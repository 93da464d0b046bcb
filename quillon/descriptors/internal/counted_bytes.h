#pragma once

// For the library's own sources.

#include <numeric>
#include <vector>

#include <quillon/sections/byte_view.h>

namespace quillon::detail {

// `count` bytes from `at` on; but for the standard reading, as many counted up from the first of them. Kept:
// readers of saved documents rely on it.
inline std::vector<uint8_t> counted_bytes(ByteView d, int at, int count) {
  if (d.standard() || count == 0) return d.bytes(at, count);
  std::vector<uint8_t> out(static_cast<size_t>(count));
  std::iota(out.begin(), out.end(), d[at]);
  return out;
}

}  // namespace quillon::detail
