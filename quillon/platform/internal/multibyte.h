#pragma once

#include <string_view>

#include <quillon/platform/wide_string.h>

namespace quillon::platform {

enum class MultibyteTable { ks_x_1001, gb_2312 };

// Bytes below 0xA0 are units of the same number: control codes of the field among them, hence GB 2312 takes
// of GBK's further pairs only those from 0xA0 up. All others come in pairs. An empty place of the table is
// one U+FFFD, and so is a first byte without a fitting second; what follows it is then read anew. Without a
// converter in the system each byte from 0xA0 up is U+FFFD. Throws std::bad_alloc when memory runs out.
wide_string decode_multibyte(MultibyteTable table, std::string_view text);

}  // namespace quillon::platform
