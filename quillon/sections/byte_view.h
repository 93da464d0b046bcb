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
// states. A view made from a bare pointer has no limit: its caller vouches for the bytes.
class QUILLON_API ByteView {
 public:
  constexpr ByteView(const uint8_t* bytes, Reading reading = Reading::kept)
      : ByteView(bytes, kUnlimited, reading) {}
  constexpr ByteView(const uint8_t* bytes, size_t size, Reading reading = Reading::kept)
      : data_(bytes),
        left_and_reading_(static_cast<ptrdiff_t>(size < kUnlimited ? size : kUnlimited) * 2 +
                          (reading == Reading::standard)) {}

  constexpr const uint8_t* data() const { return data_; }
  constexpr bool standard() const { return left_and_reading_ & 1; }
  constexpr Reading reading() const { return standard() ? Reading::standard : Reading::kept; }

  // True if byte `i` lies before the limit.
  constexpr bool has(ptrdiff_t i) const {
    return static_cast<size_t>(2 * i + 1) < static_cast<size_t>(left_and_reading_);
  }
  // True if the place in front of byte `i` lies before the limit or on it.
  constexpr bool reaches(ptrdiff_t i) const { return 2 * i <= left_and_reading_; }

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
    const ptrdiff_t skip = reaches(n) ? n : left();
    ByteView out = *this;
    out.data_ += skip;
    out.left_and_reading_ -= 2 * skip;
    return out;
  }
  // The view that ends before byte `n`.
  constexpr ByteView upto(ptrdiff_t n) const {
    return reaches(n) ? ByteView(data_, static_cast<size_t>(n < 0 ? 0 : n), reading()) : *this;
  }
  constexpr ptrdiff_t offset_from(ByteView base) const { return data_ - base.data_; }

  // `n` bytes from `i` on, zeros for those past the limit; none if `n` is below 1.
  std::vector<uint8_t> bytes(ptrdiff_t i, ptrdiff_t n) const;
  std::string chars(ptrdiff_t i, ptrdiff_t n) const;
  // Those of the `n` bytes from `i` on that lie before the limit.
  std::string_view present(ptrdiff_t i, ptrdiff_t n) const {
    if (n <= 0 || !has(i)) return {};
    const ptrdiff_t real = n < left() - i ? n : left() - i;
    return {reinterpret_cast<const char*>(data_ + i), static_cast<size_t>(real)};
  }

 private:
  static constexpr size_t kUnlimited = size_t{1} << 61;

  constexpr ptrdiff_t left() const { return left_and_reading_ >> 1; }

  const uint8_t* data_;
  // Twice the bytes that are left, plus 1 in the standard reading: comparisons with the limit take no
  // instruction more, and two registers hold a view.
  ptrdiff_t left_and_reading_;
};

}  // namespace quillon
