#pragma once

#include <cstddef>
#include <string_view>

namespace quillon::app {

// Whether a text that comes in pieces begins as XML does: with a tag, after blanks, in UTF-8 or UTF-16.
// Blanks are looked at once, however many there are.
class XmlBeginning {
 public:
  // `text` is what it was when last asked, and more. True while it may be XML yet.
  bool is_in(std::string_view text);

 private:
  size_t at_ = 0;  // blanks, and a mark of UTF-8, are before it
};

}  // namespace quillon::app
