#pragma once

#include <ostream>

#include <quillon/platform/or_empty.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

// A language code of ISO 639-2: at most three characters and a NUL, cut at the first NUL among them. Any
// characters are accepted.
class ISO639LanguageCode {
 public:
  void parse(ByteView bytes) {
    int n = 0;
    for (; n < 3 && bytes[n]; ++n) code_[n] = static_cast<char>(bytes[n]);
    code_[n] = '\0';
  }
  // A null text is the empty one.
  void set_textA(const char* text) {
    text = detail::or_empty(text);
    int n = 0;
    for (; n < 3 && text[n]; ++n) code_[n] = text[n];
    code_[n] = '\0';
  }
  const char* c_strA() const { return code_; }

 private:
  char code_[4] = {};
};

inline std::ostream& operator<<(std::ostream& stream, const ISO639LanguageCode& code) {
  return stream << code.c_strA();
}

// The three characters of a language or country code as they are on the wire, and a NUL.
class CodeCharacters {
 public:
  CodeCharacters() = default;
  explicit CodeCharacters(ByteView bytes) {
    for (int i = 0; i < 3; ++i) text_[i] = static_cast<char>(bytes[i]);
  }

  static constexpr int size = 4;
  const char* c_str() const { return text_; }
  char* data() { return text_; }
  operator const char*() const { return text_; }

 private:
  char text_[size] = {};
};

}  // namespace quillon
