#pragma once

#include <charconv>
#include <cmath>

namespace quillon::xml {

// Room for any real number as text.
inline constexpr int real_room = 32;

// A real number with up to 15 digits and a point, whatever the locale. Those next to the largest, which 15
// digits would round to infinity, get as many as they need to read back as themselves.
inline char* write_real(char* first, double value) {
  char* const last = first + real_room;
  char* const end = std::to_chars(first, last, value, std::chars_format::general, 15).ptr;
  double again = 0;
  const bool out_of_range = std::isfinite(value) && std::from_chars(first, end, again).ec != std::errc{};
  return out_of_range ? std::to_chars(first, last, value).ptr : end;
}

}  // namespace quillon::xml
