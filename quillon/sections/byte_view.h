#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/platform/api.h>

namespace quillon {

// How fields are read where saved documents, reports and tools rely on what is not in the standards: as they
// have always been, or as the editions in force say. docs/readings.md lists the differences.
enum class Reading : uint8_t { kept, standard };

// Bytes of a section from some place on, with the section's end as the limit, and how they are to be read.
// Reading past the limit gives 0 and never touches memory, so wire parsers need not test the lengths that it
// states. A view made from a bare pointer has no limit: its caller vouches for the bytes. No limit is past
// 4 GiB.
class QUILLON_API ByteView {
 public:
  constexpr ByteView(const uint8_t* bytes, Reading reading = Reading::kept)
      : data_(bytes), left_(kUnlimited), reading_(reading) {}
  constexpr ByteView(const uint8_t* bytes, size_t size, Reading reading = Reading::kept)
      : data_(bytes),
        left_(size < kUnlimited ? static_cast<uint32_t>(size) : kUnlimited),
        reading_(reading) {}

  constexpr const uint8_t* data() const { return data_; }
  constexpr Reading reading() const { return reading_; }
  constexpr bool standard() const { return reading_ == Reading::standard; }

  // True if byte `i` lies before the limit.
  constexpr bool has(ptrdiff_t i) const { return static_cast<size_t>(i) < left_; }
  // True if the place in front of byte `i` lies before the limit or on it.
  constexpr bool reaches(ptrdiff_t i) const { return i <= static_cast<ptrdiff_t>(left_); }

  constexpr uint8_t operator[](ptrdiff_t i) const { return has(i) ? data_[i] : uint8_t{0}; }
  constexpr int u16(ptrdiff_t i) const { return (*this)[i] << 8 | (*this)[i + 1]; }
  constexpr int u24(ptrdiff_t i) const { return u16(i) << 8 | (*this)[i + 2]; }
  constexpr uint32_t u32(ptrdiff_t i) const {
    return static_cast<uint32_t>(u16(i)) << 16 | static_cast<uint32_t>(u16(i + 2));
  }

  // `width` bits, at most 25, of which the first is bit `top` (7 is the highest) of byte `i`; the field goes
  // on into the following bytes.
  constexpr int bits(ptrdiff_t i, int top, int width) const {
    const int below = width - top - 1;  // bits past byte i
    uint32_t value = (*this)[i] & (0xFFu >> (7 - top));
    if (below <= 0) return static_cast<int>(value >> -below);
    const int bytes = (below + 7) / 8;
    for (int k = 1; k <= bytes; ++k) value = value << 8 | (*this)[i + k];
    return static_cast<int>(value >> (bytes * 8 - below));
  }

  // The view from byte `n` on.
  constexpr ByteView from(ptrdiff_t n) const {
    if (left_ == kUnlimited) return ByteView(data_ + n, reading_);
    const ptrdiff_t skip = reaches(n) ? n : static_cast<ptrdiff_t>(left_);
    return ByteView(data_ + skip, static_cast<size_t>(static_cast<ptrdiff_t>(left_) - skip), reading_);
  }
  // The view that ends before byte `n`.
  constexpr ByteView upto(ptrdiff_t n) const {
    return reaches(n) ? ByteView(data_, static_cast<size_t>(n), reading_) : *this;
  }
  constexpr ptrdiff_t offset_from(ByteView base) const { return data_ - base.data_; }

  // `n` bytes from `i` on, zeros for those past the limit; none if `n` is below 1.
  std::vector<uint8_t> bytes(ptrdiff_t i, ptrdiff_t n) const;
  std::string chars(ptrdiff_t i, ptrdiff_t n) const;
  // Those of the `n` bytes from `i` on that lie before the limit.
  std::string_view present(ptrdiff_t i, ptrdiff_t n) const {
    if (n <= 0 || !has(i)) return {};
    const ptrdiff_t left = static_cast<ptrdiff_t>(left_) - i;
    const ptrdiff_t real = n < left ? n : left;
    return {reinterpret_cast<const char*>(data_ + i), static_cast<size_t>(real)};
  }

 private:
  static constexpr uint32_t kUnlimited = UINT32_MAX;

  const uint8_t* data_;
  uint32_t left_;
  Reading reading_;
};

}  // namespace quillon
