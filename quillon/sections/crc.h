#pragma once

#include <cstddef>
#include <cstdint>

#include <quillon/platform/api.h>

namespace quillon {

// The MPEG-2 CRC-32 (ISO/IEC 13818-1, annex A) over `size` bytes, inverted at its end: 0xFFFFFFFF over a
// whole section whose CRC_32 is right.
QUILLON_API uint32_t section_crc(const uint8_t* bytes, size_t size);

inline constexpr uint32_t good_section_crc = 0xFFFFFFFF;

}  // namespace quillon
