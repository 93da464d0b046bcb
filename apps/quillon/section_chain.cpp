#include "apps/quillon/section_chain.h"

#include <quillon/sections/crc.h>
#include <quillon/sections/section_size.h>

namespace quillon::app {

size_t walk_section_chain(const std::vector<uint8_t>& bytes,
                          const std::function<void(const uint8_t*, size_t)>& each) {
  size_t at = 0;
  while (bytes.size() - at >= 3) {
    const size_t size = section_size(bytes.data() + at);
    if (size > bytes.size() - at) break;
    each(bytes.data() + at, size);
    at += size;
  }
  return bytes.size() - at;
}

bool is_section_chain(const std::vector<uint8_t>& bytes) {
  // The first long section decides by its CRC: short ones look like anything.
  for (size_t at = 0; bytes.size() - at >= 3;) {
    const uint8_t* const section = bytes.data() + at;
    const size_t size = section_size(section);
    if (size > bytes.size() - at) return false;
    if (section[1] & 0x80) return section_crc(section, size) == good_section_crc;
    at += size;
  }
  return false;
}

}  // namespace quillon::app
