#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillon/platform/api.h>

namespace quillon {

// The table of fields that select none: 0, the default, is table 00 of the annex, n is ISO 8859-n. Some
// broadcasters send another than they should; there is no telling by the bytes. It counts for what is decoded
// from then on. False, and no change, for a part that there is not. Neither throws, and both may be called on
// any thread at any time.
QUILLON_API bool set_default_text_table(int part);
QUILLON_API int get_default_text_table();

// A DVB character field (EN 300 468, annex A), selection included, in UTF-8. It is empty where the selection
// is reserved or names an encoding of another registry (0x1F): its bytes then have no known meaning.
//
// The line break 0x8A is "\n"; all other control codes, emphasis among them, give nothing. Table 00 has its
// marks before their letters: the result is the composed letter where there is one, otherwise the letter and
// then the mark. A code without a character, and what is malformed in a table of several bytes, is U+FFFD.
// Any bytes are accepted. std::bad_alloc when memory runs out.
QUILLON_API std::string dvb_text_to_utf8(std::string_view field);
// The same field after its first byte was taken off.
QUILLON_API std::string dvb_text_to_utf8(uint8_t first, std::string_view rest);

}  // namespace quillon
