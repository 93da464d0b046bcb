#include "apps/quillon/keyed_digest.h"

#include <cstring>

#include <quillon/platform/windows/windows.h>
#include <quillon/sections/error.h>

namespace quillon::app {

namespace {

// The system's SHA-256 as a message authentication code; open for good.
BCRYPT_ALG_HANDLE open_algorithm() {
  BCRYPT_ALG_HANDLE out = nullptr;
  BCryptOpenAlgorithmProvider(&out, BCRYPT_SHA256_ALGORITHM, nullptr, BCRYPT_ALG_HANDLE_HMAC_FLAG);
  return out;
}
BCRYPT_ALG_HANDLE algorithm() {
  static const BCRYPT_ALG_HANDLE out = open_algorithm();
  return out;
}

void expect(NTSTATUS status, const char* failure) {
  if (status != 0) throw error(failure);
}

}  // namespace

KeyedDigest::KeyedDigest() {
  if (!algorithm()) throw error("the system gives no digests");
  expect(
      BCryptGenRandom(nullptr, key_.data(), static_cast<ULONG>(key_.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG),
      "the system gives no random numbers");
}

std::array<uint64_t, 2> KeyedDigest::of(const uint8_t* bytes, size_t size) const {
  // The system takes neither keys nor input as constants, and changes neither.
  auto key = key_;
  uint8_t whole[32];
  expect(BCryptHash(algorithm(), key.data(), static_cast<ULONG>(key.size()), const_cast<uint8_t*>(bytes),
                    static_cast<ULONG>(size), whole, sizeof whole),
         "the system gives no digests");
  std::array<uint64_t, 2> out;
  std::memcpy(out.data(), whole, sizeof out);
  return out;
}

}  // namespace quillon::app
