#pragma once

#include <cstddef>
#include <cstdint>

#include <quillon/platform/api.h>

namespace quillon {

// The bytes of a section by its first three: what section_length says (ISO/IEC 13818-1, 2.4.4), and these.
// From 3 to 4098.
inline size_t section_size(const uint8_t* section) {
  return size_t{3} + static_cast<size_t>((section[1] & 0x0F) << 8 | section[2]);
}

}  // namespace quillon
