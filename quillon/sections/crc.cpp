#include <quillon/sections/crc.h>

#if defined(QUILLON_HAVE_ISAL)
#include <isa-l/crc.h>
#else
#include <boost/crc.hpp>
#endif

namespace quillon {

#if defined(QUILLON_HAVE_ISAL)

uint32_t section_crc(const uint8_t* bytes, size_t size) {
  return crc32_ieee(0, bytes, size);
}

#else

uint32_t section_crc(const uint8_t* bytes, size_t size) {
  boost::crc_optimal<32, 0x04C11DB7, 0xFFFFFFFF, 0xFFFFFFFF, false, false> crc;
  crc.process_bytes(bytes, size);
  return crc.checksum();
}

#endif

}  // namespace quillon
