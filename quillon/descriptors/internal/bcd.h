#pragma once

// Decimal fractions of tuning parameters. For the library's own sources.

#include <initializer_list>

#include <quillon/sections/byte_view.h>

namespace quillon::detail {

// The sum of BCD digits from the high nibble of byte `at` on, each times its weight, one after the other:
// sums are compared to the last bit, and another order would round differently.
inline double bcd_sum(ByteView d, int at, std::initializer_list<double> weights) {
  double sum = 0;
  int nibble = 0;
  for (const double weight : weights) {
    sum += d.bits(at + nibble / 2, nibble % 2 == 0 ? 7 : 3, 4) * weight;
    ++nibble;
  }
  return sum;
}

// The number that eight BCD digits from byte `at` on make.
inline int bcd_number(ByteView d, int at) {
  int number = 0;
  for (int nibble = 0; nibble < 8; ++nibble)
    number = number * 10 + d.bits(at + nibble / 2, nibble % 2 == 0 ? 7 : 3, 4);
  return number;
}

// A symbol rate in Msymbol/s: three bytes and the high nibble of a fourth.
inline double symbol_rate(ByteView d, int at) {
  return bcd_sum(d, at, {100, 10, 1, 0.1, 0.01, 0.001, 0.0001});
}

}  // namespace quillon::detail
