#include "apps/quillon/keyed_digest.h"

#include <sodium.h>

#include <quillon/sections/error.h>

namespace quillon::app {

KeyedDigest::KeyedDigest() {
  static_assert(sizeof key_ == crypto_shorthash_siphashx24_KEYBYTES);
  if (sodium_init() < 0) throw error("the system gives no random numbers");
  randombytes_buf(key_.data(), key_.size());
}

std::array<uint64_t, 2> KeyedDigest::of(const uint8_t* bytes, size_t size) const {
  std::array<uint64_t, 2> out;
  static_assert(sizeof out == crypto_shorthash_siphashx24_BYTES);
  crypto_shorthash_siphashx24(reinterpret_cast<uint8_t*>(out.data()), bytes, size, key_.data());
  return out;
}

}  // namespace quillon::app
