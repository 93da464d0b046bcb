// The entry of one target, QUILLON_TARGET.

#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  quillon::fuzz::QUILLON_TARGET(data, size);
  return 0;
}

#if defined(QUILLON_STRUCTURED)
#include "fuzz/structure.h"

#include <algorithm>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t max_size);

namespace {

size_t give(quillon::fuzz::Bytes section, uint8_t* to, size_t max_size) {
  if (section.size() > max_size) section.resize(max_size);
  quillon::fuzz::repair(section);
  const size_t size = std::min(section.size(), max_size);
  std::memcpy(to, section.data(), size);
  return size;
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t max_size, unsigned seed) {
  quillon::fuzz::Bytes section(data, data + size);
  if (seed % 4) {
    quillon::fuzz::mutate_structure(section, seed);
  } else {
    section.resize(std::max(size, max_size));
    section.resize(LLVMFuzzerMutate(section.data(), size, max_size));
  }
  return give(std::move(section), data, max_size);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data, size_t size, const uint8_t* other,
                                            size_t other_size, uint8_t* out, size_t max_size, unsigned seed) {
  quillon::fuzz::Bytes section(data, data + size);
  quillon::fuzz::splice(section, quillon::fuzz::Bytes(other, other + other_size), seed);
  return give(std::move(section), out, max_size);
}
#endif
