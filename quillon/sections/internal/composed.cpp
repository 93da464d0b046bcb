#include <quillon/sections/internal/composed.h>

namespace quillon::detail {

Composed::Composed(std::ostream& outer)
    : outer_(outer), inner_(this), is_classic_(outer.getloc() == std::locale::classic()) {
  setp(place_.data(), place_.data() + place_.size());
  inner_.copyfmt(outer);  // which takes tie and exceptions too
  inner_.tie(nullptr);
  inner_.exceptions(std::ios_base::goodbit);
  inner_.unsetf(std::ios_base::unitbuf);
  inner_.pword(index()) = static_cast<std::streambuf*>(this);
}

void Composed::finish() {
  insert();
  outer_.flush();
  inner_.clear();
  inner_.tie(outer_.tie());
  inner_.exceptions(outer_.exceptions());
  inner_.setf(outer_.flags() & std::ios_base::unitbuf);
  inner_.pword(index()) = outer_.pword(index());
  outer_.copyfmt(inner_);
}

int Composed::index() {
  static const int index = std::ios_base::xalloc();
  return index;
}

Composed::int_type Composed::overflow(int_type c) {
  insert();
  return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                         : sputc(traits_type::to_char_type(c));
}

std::streamsize Composed::xsputn(const char* text, std::streamsize size) {
  append({text, static_cast<size_t>(size)});
  return size;
}

void Composed::imbue(const std::locale& locale) {
  is_classic_ = locale == std::locale::classic();
}

void Composed::append_long(std::string_view text) {
  insert();
  if (text.size() <= place_.size()) return append(text);
  outer_.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void Composed::insert() {
  if (pptr() != pbase()) outer_.write(pbase(), pptr() - pbase());
  setp(place_.data(), place_.data() + place_.size());
}

}  // namespace quillon::detail
