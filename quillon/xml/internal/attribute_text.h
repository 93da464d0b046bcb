#pragma once

// How the text of an attribute is written in XML 1.0, which has no place for most control characters. Such a
// character is written as U+E000 plus its code, and a real U+E000 to U+E01F has a U+E000 before it. The one
// exception is U+0000: U+E000 alone could be the beginning of either, so it is followed by U+E020. U+FFFE,
// U+FFFF and halves of surrogate pairs have no form at all and become U+FFFD.
//
// Each of these forms begins in a way of its own, so that reading reverses every one. What is never written,
// such as a U+E000 followed by something else, is read as it is.

#include <string>
#include <string_view>

#include <quillon/platform/wide_string.h>

namespace quillon::xml {

// Appends the text as it is written between quotes, in UTF-8.
void append_attribute_text(wide_view text, std::string& out);
// The text of an attribute from what the parser gives for it, in UTF-8.
wide_string attribute_text(std::string_view utf8);

}  // namespace quillon::xml
