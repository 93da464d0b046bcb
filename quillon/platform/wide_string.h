#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <ios>
#include <string>
#include <string_view>

#include <quillon/platform/api.h>

namespace quillon {

// The standard has no character traits for uint16_t, the unit of all wide text here.
struct wide_traits {
  using char_type = uint16_t;
  using int_type = uint32_t;
  using off_type = std::streamoff;
  using pos_type = std::streampos;
  using state_type = std::mbstate_t;
  using comparison_category = std::strong_ordering;

  static constexpr void assign(char_type& to, const char_type& from) noexcept { to = from; }
  static constexpr char_type* assign(char_type* to, size_t n, char_type c) {
    return std::fill_n(to, n, c), to;
  }
  static constexpr bool eq(char_type a, char_type b) noexcept { return a == b; }
  static constexpr bool lt(char_type a, char_type b) noexcept { return a < b; }
  static constexpr int compare(const char_type* a, const char_type* b, size_t n) {
    for (size_t i = 0; i < n; ++i)
      if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    return 0;
  }
  static constexpr size_t length(const char_type* s) {
    size_t n = 0;
    while (s[n]) ++n;
    return n;
  }
  static constexpr const char_type* find(const char_type* s, size_t n, const char_type& c) {
    for (size_t i = 0; i < n; ++i)
      if (s[i] == c) return s + i;
    return nullptr;
  }
  static constexpr char_type* move(char_type* to, const char_type* from, size_t n) {
    if (n) std::memmove(to, from, n * sizeof(char_type));
    return to;
  }
  static constexpr char_type* copy(char_type* to, const char_type* from, size_t n) {
    if (n) std::memcpy(to, from, n * sizeof(char_type));
    return to;
  }
  static constexpr char_type to_char_type(int_type c) noexcept { return static_cast<char_type>(c); }
  static constexpr int_type to_int_type(char_type c) noexcept { return c; }
  static constexpr bool eq_int_type(int_type a, int_type b) noexcept { return a == b; }
  static constexpr int_type eof() noexcept { return 0xFFFFFFFF; }
  static constexpr int_type not_eof(int_type c) noexcept { return c == eof() ? 0 : c; }
};

// UTF-16 text.
using wide_string = std::basic_string<uint16_t, wide_traits>;
using wide_view = std::basic_string_view<uint16_t, wide_traits>;

namespace detail {

template <size_t N>
struct WideLiteral {
  uint16_t units[N]{};
  consteval WideLiteral(const char (&text)[N]) {
    for (size_t i = 0; i < N; ++i) units[i] = static_cast<unsigned char>(text[i]);
  }
};

template <WideLiteral literal>
inline constexpr auto wide_literal = literal;

}  // namespace detail

// "crc32"_w is a static, NUL-terminated array of UTF-16 units.
template <detail::WideLiteral literal>
constexpr const uint16_t* operator""_w() {
  return detail::wide_literal<literal>.units;
}

}  // namespace quillon
