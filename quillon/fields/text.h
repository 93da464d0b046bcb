#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillon/platform/code_page.h>
#include <quillon/platform/wide_string.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

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

  const std::string& get_textA() const { return narrow_; }
  const wide_string& get_textW() const {
    widen();
    return wide_;
  }
  const char* c_strA() const { return narrow_.c_str(); }
  const uint16_t* c_strW() const { return get_textW().c_str(); }
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
  static void ansi_to_wide(uint8_t char_set, std::string_view in, wide_string& out);
  static void wide_to_ansi(wide_view in, std::string& out);

  // ASCII is the same on every page: it is widened when its wide form is first asked for.
  void widen() const {
    if (!widening_due_) return;
    wide_.assign(narrow_.begin(), narrow_.end());
    widening_due_ = false;
  }

  std::string narrow_;
  mutable wide_string wide_;
  mutable bool widening_due_ = false;
  uint8_t char_set_ = 0;
  uint32_t length_ = 0;
};

}  // namespace quillon
