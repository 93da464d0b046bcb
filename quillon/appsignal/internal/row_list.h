#pragma once

// For the library's own sources.

#include <vector>

#include <quillon/sections/byte_view.h>
#include <quillon/sections/error.h>
#include <quillon/sections/internal/rows.h>

namespace quillon::detail {

// Reads the rows of a descriptor, of `size` bytes each after a head of `head` bytes. A body shorter than its
// head passes when the remainder, which has the sign of what is left, is 0. A remainder is an error, or
// ignored.
template <class Row>
void read_whole_rows(std::vector<Row>& rows, ByteView descriptor, int head, int size,
                     bool ignores_rest = false) {
  const int left = descriptor[1] - head;
  const int rest = left % size;
  if (rest != 0 && !ignores_rest) throw error("descriptor size mismatch");
  read_rows(rows, descriptor, 2 + head, left - rest, size);
}

}  // namespace quillon::detail
