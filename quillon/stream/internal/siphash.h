#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace quillon::detail {

using SipKey = std::array<uint64_t, 2>;
using SipDigest = std::array<uint64_t, 2>;

// SipHash-2-4 of 128 bits (Aumasson and Bernstein): who does not have the key finds no two inputs of one
// digest. Words are little-endian, those of the key and of the digest too.
class SipHash {
 public:
  explicit SipHash(const SipKey& key)
      : a_(key[0] ^ 0x736F6D6570736575),
        b_(key[1] ^ 0x646F72616E646F6D ^ 0xEE),
        c_(key[0] ^ 0x6C7967656E657261),
        d_(key[1] ^ 0x7465646279746573) {}

  static uint64_t word_at(const uint8_t* p) {
    return uint64_t{p[0]} | uint64_t{p[1]} << 8 | uint64_t{p[2]} << 16 | uint64_t{p[3]} << 24 |
           uint64_t{p[4]} << 32 | uint64_t{p[5]} << 40 | uint64_t{p[6]} << 48 | uint64_t{p[7]} << 56;
  }
  void take(uint64_t word) {
    d_ ^= word;
    round();
    round();
    a_ ^= word;
  }
  // Takes the input's last bytes, `left` of which are to come, and its size.
  SipDigest finish(const uint8_t* bytes, size_t left, uint64_t size) {
    for (; left >= 8; bytes += 8, left -= 8) take(word_at(bytes));
    uint64_t last = size << 56;
    for (size_t i = 0; i < left; ++i) last |= uint64_t{bytes[i]} << 8 * i;
    take(last);
    c_ ^= 0xEE;
    const uint64_t first = mix();
    b_ ^= 0xDD;
    return {first, mix()};
  }

 private:
  void round() {
    a_ += b_, c_ += d_;
    b_ = std::rotl(b_, 13) ^ a_, d_ = std::rotl(d_, 16) ^ c_;
    a_ = std::rotl(a_, 32) + d_, c_ += b_;
    b_ = std::rotl(b_, 17) ^ c_, d_ = std::rotl(d_, 21) ^ a_;
    c_ = std::rotl(c_, 32);
  }
  uint64_t mix() {
    round(), round(), round(), round();
    return a_ ^ b_ ^ c_ ^ d_;
  }

  uint64_t a_, b_, c_, d_;
};
}  // namespace quillon::detail
