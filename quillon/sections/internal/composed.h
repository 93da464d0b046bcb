#pragma once

// For the library's own sources.

#include <array>
#include <locale>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace quillon::detail {

// A stream with the format of another, into which what it was given goes in large pieces. Every line of a
// report is flushed; here that costs nothing until the end.
class Composed : private std::streambuf {
 public:
  explicit Composed(std::ostream& outer);

  // What a stream writes into, if it is one of these. Another stream may have its format, and the mark with
  // it.
  static Composed* of(std::ostream& stream) {
    std::streambuf* const buffer = stream.rdbuf();
    return buffer && stream.pword(index()) == buffer ? static_cast<Composed*>(buffer) : nullptr;
  }

  std::ostream& stream() { return inner_; }
  bool is_classic() const { return is_classic_; }
  // As the stream's own insertion, which would ask for its state first.
  void append(std::string_view text) {
    if (static_cast<ptrdiff_t>(text.size()) > epptr() - pptr()) return append_long(text);
    text.copy(pptr(), text.size());
    pbump(static_cast<int>(text.size()));
  }
  // Inserts and flushes the rest, and leaves the outer stream the format that this one has.
  void finish();

 private:
  static int index();
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  void imbue(const std::locale& locale) override;
  void append_long(std::string_view text);
  void insert();

  std::ostream& outer_;
  std::ostream inner_;
  bool is_classic_;
  std::array<char, 8192> place_;
};

// Prints by `dump` on such a stream. What was printed until a failure is there.
template <class Dump>
void compose(std::ostream& outer, Dump dump) {
  Composed composed(outer);
  try {
    dump(composed.stream());
  } catch (...) {
    try {
      composed.finish();
    } catch (...) {  // the first failure is told
    }
    throw;
  }
  composed.finish();
}

}  // namespace quillon::detail
