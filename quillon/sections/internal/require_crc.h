#pragma once

// For the library's own sources.

#include <cstddef>
#include <cstdint>

namespace quillon::detail {

// Throws error("crc error") unless the CRC_32 at the end of a whole section is right.
void require_crc(const uint8_t* section, size_t size);

}  // namespace quillon::detail
