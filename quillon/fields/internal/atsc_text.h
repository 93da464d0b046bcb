#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <quillon/platform/wide_string.h>

namespace quillon::detail {

// Text of ATSC segments. Any bytes are accepted.

// Huffman-coded text (A/65, annex C) in ISO 8859-1, up to its end mark or, without one, to the last whole
// character. Empty for a compression type that has no table.
std::string huffman_text(int compression_type, std::span<const uint8_t> bytes);

// Text in the Standard Compression Scheme for Unicode (UTS #6). U+FFFD takes the place of
// - a reserved code: decoding goes on with the next byte;
// - a window definition with a reserved offset: the window is selected with the offset that it had;
// - a sequence that is cut by the end of the bytes.
wide_string scsu_text(std::span<const uint8_t> bytes);

// Big-endian UTF-16; U+FFFD takes the place of an odd last byte.
wide_string utf16be_text(std::span<const uint8_t> bytes);

}  // namespace quillon::detail
