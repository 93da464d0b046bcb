#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon::app {

// Digests of 128 bits with a key of this object's own, which nobody else knows.
class KeyedDigest {
 public:
  // Throws error where the system gives no random numbers.
  KeyedDigest();

  std::array<uint64_t, 2> of(const uint8_t* bytes, size_t size) const;

 private:
  std::array<uint8_t, 16> key_;
};

}  // namespace quillon::app
