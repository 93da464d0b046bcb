#pragma once

#include <string>
#include <string_view>

#include <quillon/platform/api.h>
#include <quillon/platform/wide_string.h>

namespace quillon::platform {

// What is not UTF-8 becomes U+FFFD.
QUILLON_API wide_string to_utf16(std::string_view utf8);
// A surrogate without its other half becomes U+FFFD.
QUILLON_API std::string to_utf8(wide_view text);
// From a code page: 0, the ANSI code page, is that of the narrow text which comes from streams and documents;
// the library's own texts and registered names are in 1252.
QUILLON_API std::string to_utf8(unsigned page, std::string_view text);

}  // namespace quillon::platform
