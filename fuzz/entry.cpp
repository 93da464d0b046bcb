// The entry of one target, QUILLON_TARGET.

#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  quillon::fuzz::QUILLON_TARGET(data, size);
  return 0;
}

#if defined(QUILLON_STRUCTURED)
#include <algorithm>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t max_size);

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t max_size, unsigned seed) {
  std::vector<uint8_t> section(data, data + size);
  if (seed % 2) {
    quillon::fuzz::mutate_structure(section, seed / 2 * 2654435761u);
  } else {
    section.resize(max_size);
    section.resize(LLVMFuzzerMutate(section.data(), size, max_size));
  }
  quillon::fuzz::repair(section);
  size = std::min(section.size(), max_size);
  std::memcpy(data, section.data(), size);
  return size;
}
#endif
