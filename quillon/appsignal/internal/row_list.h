#pragma once

// For the library's own sources.

#include <vector>

#include <quillon/sections/byte_view.h>
#include <quillon/sections/error.h>

namespace quillon::detail {

// Reads the rows of a descriptor, of `size` bytes each behind a head of `head` bytes. A body shorter than its
// head passes when the remainder, which has the sign of what is left, is 0.
template <class Row>
void read_rows(std::vector<Row>& rows, ByteView descriptor, int head, int size) {
  const int left = descriptor[1] - head;
  if (left % size != 0) throw error("descriptor size mismatch");
  if (left > 0) rows.reserve(static_cast<size_t>(left / size));
  walk(descriptor, 2 + head, 2 + head + left, [&](ByteView at, int) {
    rows.emplace_back(at);
    return size;
  });
}

}  // namespace quillon::detail
