#pragma once

#include "tests/support/bytes.h"

namespace quillon::sample {

// The character tables of EN 300 468, annex A, that the texts are sent in.
enum class TextTable { iso_6937, cyrillic, arabic, greek, hebrew, latin_5, latin_1, utf_16, utf_8 };

// A text, given in UTF-8, with the bytes that select its table. Throws std::invalid_argument for a character
// that the table lacks.
test::Bytes dvb_text(TextTable table, std::string_view utf8);

}  // namespace quillon::sample
