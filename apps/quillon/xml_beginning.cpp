#include "apps/quillon/xml_beginning.h"

#include <algorithm>

namespace quillon::app {

bool XmlBeginning::is_in(std::string_view text) {
  constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
  for (const std::string_view mark :
       {utf8_mark, std::string_view("\xFE\xFF"), std::string_view("\xFF\xFE")}) {
    if (mark.starts_with(text)) return true;
    if (!text.starts_with(mark)) continue;
    if (mark != utf8_mark) return true;
    at_ = std::max(at_, mark.size());
  }
  at_ = std::min(text.find_first_not_of(" \t\r\n", at_), text.size());
  return at_ == text.size() || text[at_] == '<';
}

}  // namespace quillon::app
