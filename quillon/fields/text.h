#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include <quillon/platform/code_page.h>
#include <quillon/platform/wide_string.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

namespace detail {

// A value that `const` members make when it is first needed, each thread its own; the first one stays.
template <class T>
class LateMade {
 public:
  LateMade() = default;
  LateMade(const LateMade& other) : value_(other.get() ? new T(*other.get()) : nullptr) {}
  LateMade(LateMade&& other) noexcept : value_(other.get()) { other.set(nullptr); }
  LateMade& operator=(LateMade other) noexcept {
    T* const old = get();
    set(other.get());
    other.set(old);
    return *this;
  }
  ~LateMade() { delete get(); }

  // Null until it is made.
  T* get() const { return value_.load(std::memory_order_acquire); }
  // The one that stays.
  T& publish(std::unique_ptr<T> made) const {
    T* first = nullptr;
    if (!value_.compare_exchange_strong(first, made.get(), std::memory_order_acq_rel,
                                        std::memory_order_acquire))
      return *first;
    return *made.release();
  }

 private:
  void set(T* value) { value_.store(value, std::memory_order_relaxed); }

  mutable std::atomic<T*> value_ = nullptr;
};

}  // namespace detail

// A DVB character field (EN 300 468, annex A), kept in the ANSI code page and as UTF-16.
//
// The first byte may select a table: 0x01 to 0x05 are ISO 8859-5 to -9, every other selection value decodes
// as code page 1252, no selection as the ANSI code page. 0x10 is taken alone, control codes stay as they are,
// and a NUL ends the text. What the ANSI page cannot show is `?` in the narrow text. Any bytes are accepted;
// those past the section's end are not there. The standard reading decodes all tables of the annex, as utf8()
// does in either reading.
//
// The texts are decoded when they are first read. Even so several threads may read one object at once, by
// the rule of the tables (PsiBase1), copies included. Parses, sets and reads of a text throw std::bad_alloc
// when memory runs out.
class QUILLON_API Text {
 public:
  Text() = default;
  Text(int length, ByteView bytes) { parse(length, bytes); }
  // The length-prefixed form; `consumed` becomes the length plus 1, 1 to 256.
  Text(ByteView bytes, int& consumed) { parse(bytes, consumed); }

  // Adds to what the object holds. A `length` below 1 is no bytes.
  void parse(int length, ByteView bytes);
  void parse(ByteView bytes, int& consumed);

  const std::string& get_textA() const { return undecoded_ ? late().narrow : bytes_; }
  const wide_string& get_textW() const { return late().wide; }
  // The text of the whole annex in UTF-8: what the last parse read, by its bytes, and what was set. Of a text
  // that was parsed twice, or set and parsed, it is the wide form.
  std::string utf8() const;
  // How the last parse read it.
  Reading get_reading() const { return reading_; }
  // The bytes of the field, selection included, if there was one parse and nothing else.
  std::string get_bytes() const;
  const char* c_strA() const { return get_textA().c_str(); }
  const uint16_t* c_strW() const { return get_textW().c_str(); }
  // True of an empty text and of one parse of ASCII alone: both forms are then the same characters. In the
  // standard reading ASCII has no control codes.
  bool is_ascii() const { return ascii_; }
  // The value given to set_textA or set_textW; 0 after a parse.
  uint8_t get_char_set() const { return char_set_; }
  // The length given to the last parse, in bytes on the wire, the selection byte included.
  uint32_t get_text_len() const { return length_; }

  // `char_set` is a selection value, 0 the ANSI code page. The narrow text keeps the bytes it is handed.
  // A null text is the empty one.
  void set_textA(uint8_t char_set, const char* text);
  void set_textW(uint8_t char_set, const uint16_t* text);
  void set_textW(uint8_t char_set, const char16_t* text);

 private:
  static bool is_char_table(uint8_t byte);
  static unsigned char_set_to_codepage(uint8_t char_set);
  // Both leave `out` as it was where the system lacks the page.
  static void ansi_to_wide(uint8_t char_set, unsigned ansi_page, std::string_view in, wide_string& out);
  static void wide_to_ansi(unsigned ansi_page, wide_view in, std::string& out);

  // What is made of the bytes when it is first read.
  struct Late {
    wide_string wide;
    std::string narrow;  // of bytes that are undecoded
  };

  const Late& late() const {
    const Late* const made = late_.get();
    return made ? *made : make_late();
  }
  Late& make_late() const;
  // Both forms, to be changed: the bytes are the narrow text then.
  Late& decode();
  void set_units(uint8_t char_set, wide_string units);
  void parse_standard(std::string_view field);
  // True if the bytes are those of one parse.
  bool is_wire() const { return ascii_ || undecoded_; }

  // Most texts of a stream are never read, and ASCII is the same on every page: a parse only takes the bytes,
  // the first read decodes them, and ASCII gets a wide form when that is read. The bytes themselves change in
  // a parse or a set alone.
  // While they are undecoded those of the field, in the kept reading after the selection; else the narrow
  // text.
  std::string bytes_;
  detail::LateMade<Late> late_;
  uint32_t length_ = 0;
  uint16_t ansi_page_ = 0;  // the pages for decoding: those of the parse
  uint8_t selection_ = 0;
  uint8_t char_set_ = 0;
  bool ascii_ = true;
  bool undecoded_ = false;
  bool has_selection_ = false;
  Reading reading_ = Reading::kept;
};

// In UTF-8.
inline std::ostream& operator<<(std::ostream& stream, const Text& text) {
  return stream << text.utf8();
}

}  // namespace quillon
