#include "apps/quillon/seen_sections.h"

#include <algorithm>
#include <cstring>
#include <sodium.h>

#include <quillon/sections/error.h>

namespace quillon::app {

SeenSections::SeenSections() {
  static_assert(sizeof(Digest) == crypto_shorthash_siphashx24_BYTES);
  static_assert(sizeof key_ == crypto_shorthash_siphashx24_KEYBYTES);
  if (sodium_init() < 0) throw error("the system gives no random numbers");
  randombytes_buf(key_.data(), key_.size());
}

bool SeenSections::add(const Section& section) {
  input_.resize(sizeof section.pid + section.size);
  std::memcpy(input_.data(), &section.pid, sizeof section.pid);
  std::copy_n(section.bytes, section.size, input_.data() + sizeof section.pid);
  Digest digest;
  crypto_shorthash_siphashx24(reinterpret_cast<uint8_t*>(digest.data()), input_.data(), input_.size(),
                              key_.data());
  return digests_.insert(digest).second;
}

size_t SeenSections::longest_search() const {
  size_t out = 0;
  for (size_t i = 0; i < digests_.bucket_count(); ++i) out = std::max(out, digests_.bucket_size(i));
  return out;
}

}  // namespace quillon::app
