#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <quillon/platform/api.h>
#include <quillon/platform/wide_string.h>

namespace quillon {

// The ANSI code page is the 8-bit page of every narrow text; 1252 unless the application sets another.
// Known pages are 1252 and 28595 to 28599. False, and no change, for a page that is not known.
QUILLON_API bool set_ansi_code_page(unsigned page);
QUILLON_API unsigned get_ansi_code_page();

namespace platform {

// Code page 0 means the ANSI code page in both directions. Both replace `out`, and give false, leaving it as
// it was, where the system does not have the page.
QUILLON_API bool decode(unsigned page, std::string_view text, wide_string& out);
QUILLON_API bool encode(unsigned page, wide_view text, std::string& out);

}  // namespace platform
}  // namespace quillon
