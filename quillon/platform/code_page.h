#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <quillon/platform/api.h>
#include <quillon/platform/wide_string.h>

namespace quillon {

// The ANSI code page is the 8-bit page of every narrow text; 1252 unless the application sets another.
// Known pages are 1252 and 28595 to 28599. False, and no change, for a page that is not known. Neither
// throws, and both may be called on any thread at any time.
QUILLON_API bool set_ansi_code_page(unsigned page);
QUILLON_API unsigned get_ansi_code_page();

namespace platform {

// Code page 0 means the ANSI code page in both directions. Both replace `out`, and give false, leaving it as
// it was, where the system does not have the page. encode makes `?` of what the page can't show. Both throw
// std::bad_alloc when memory runs out.
QUILLON_API bool decode(unsigned page, std::string_view text, wide_string& out);
QUILLON_API bool encode(unsigned page, wide_view text, std::string& out);

// ASCII is the same on every page. No NUL, and nothing from 0x80 up: no byte whose top bit is set, or
// becomes so when 1 is taken away.
inline bool is_ascii(std::string_view text) {
  constexpr uint64_t ones = 0x0101010101010101;
  uint64_t seen = 0;
  const auto look = [&seen](const char* at) {
    uint64_t eight;
    std::memcpy(&eight, at, sizeof eight);
    seen |= eight | (eight - ones);
  };
  if (text.size() >= 8) {
    const char* const last = text.data() + text.size() - 8;
    for (const char* at = text.data(); at < last; at += 8) look(at);
    look(last);
  } else {
    for (const char c : text) seen |= static_cast<unsigned char>(c) | (static_cast<unsigned char>(c) - 1u);
  }
  return (seen & ones << 7) == 0;
}

}  // namespace platform
}  // namespace quillon
