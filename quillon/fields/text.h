#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <quillon/platform/code_page.h>
#include <quillon/platform/wide_string.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

namespace detail {

// A value that is seldom there, on the heap when it is.
template <class T>
class Boxed {
 public:
  Boxed() = default;
  Boxed(const Boxed& other) : value_(other ? std::make_unique<T>(*other) : nullptr) {}
  Boxed(Boxed&&) noexcept = default;
  Boxed& operator=(Boxed other) noexcept {
    value_ = std::move(other.value_);
    return *this;
  }
  ~Boxed() = default;

  explicit operator bool() const { return value_ != nullptr; }
  T& operator*() const { return *value_; }
  template <class... Parts>
  void emplace(Parts&&... parts) {
    value_ = std::make_unique<T>(std::forward<Parts>(parts)...);
  }

 private:
  std::unique_ptr<T> value_;
};

}  // namespace detail

// A DVB character field (EN 300 468, annex A), kept in the ANSI code page and as UTF-16.
//
// The first byte may select a table: 0x01 to 0x05 are ISO 8859-5 to -9, every other selection value decodes
// as code page 1252, no selection as the ANSI code page. 0x10 is taken alone, control codes stay as they are,
// and a NUL ends the text. What the ANSI page cannot show is `?` in the narrow text.
class QUILLON_API Text {
 public:
  Text() = default;
  Text(int length, ByteView bytes) { parse(length, bytes); }
  // The length-prefixed form; `consumed` becomes the length and its byte.
  Text(ByteView bytes, int& consumed) { parse(bytes, consumed); }

  // Adds to what the object holds. A `length` below 1 brings no bytes.
  void parse(int length, ByteView bytes);
  void parse(ByteView bytes, int& consumed);

  const std::string& get_textA() const {
    if (undecoded_) decode();
    return narrow_;
  }
  const wide_string& get_textW() const { return wide(); }
  const char* c_strA() const { return get_textA().c_str(); }
  const uint16_t* c_strW() const { return get_textW().c_str(); }
  // True of what was parsed from ASCII alone: both forms are the same characters then.
  bool is_ascii() const { return ascii_; }
  // The value given to set_textA or set_textW; 0 after a parse.
  uint8_t get_char_set() const { return char_set_; }
  // The bytes of the last parse as they stood on the wire, the selection byte included.
  uint32_t get_text_len() const { return length_; }

  // `char_set` is a selection value, 0 the ANSI code page. The narrow text keeps the bytes it is handed.
  void set_textA(uint8_t char_set, const char* text);
  void set_textW(uint8_t char_set, const uint16_t* text);
  void set_textW(uint8_t char_set, const char16_t* text);

 private:
  static bool is_char_table(uint8_t byte);
  static unsigned char_set_to_codepage(uint8_t char_set);
  // Both leave `out` as it was where the system lacks the page.
  static void ansi_to_wide(uint8_t char_set, unsigned ansi_page, std::string_view in, wide_string& out);
  static void wide_to_ansi(unsigned ansi_page, wide_view in, std::string& out);

  void decode() const;
  void set_units(uint8_t char_set, wide_string units);
  wide_string& wide() const {
    if (undecoded_) decode();
    if (!wide_) wide_.emplace(narrow_.begin(), narrow_.end());
    return *wide_;
  }

  // Most texts of a stream are never asked for, and ASCII is the same on every page: a parse takes the bytes
  // alone, the first question decodes them, and ASCII gets a wide form when that is asked for.
  mutable std::string narrow_;  // the bytes behind the selection while they are undecoded
  mutable detail::Boxed<wide_string> wide_;
  uint32_t length_ = 0;
  uint16_t ansi_page_ = 0;  // the pages for decoding: those of the parse
  uint8_t selection_ = 0;
  uint8_t char_set_ = 0;
  bool ascii_ = true;
  mutable bool undecoded_ = false;
};

}  // namespace quillon
