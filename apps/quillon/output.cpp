#include "apps/quillon/output.h"

#include <cstdio>

#include <quillon/platform/code_page.h>

namespace quillon::app {

std::string utf8(const uint16_t* text, size_t units) {
  std::string out;
  out.reserve(units);
  const auto put = [&out](uint32_t bits) { out += static_cast<char>(bits); };
  for (size_t i = 0; i < units; ++i) {
    uint32_t code = text[i];
    const bool pair =
        code >= 0xD800 && code <= 0xDBFF && i + 1 < units && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    if (pair)
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    else if (code >= 0xD800 && code <= 0xDFFF)
      code = 0xFFFD;
    if (code < 0x80) {
      put(code);
      continue;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    put((0xF00u >> (more + 1) & 0xFF) | code >> 6 * more);
    for (int k = more - 1; k >= 0; --k) put(0x80 | (code >> 6 * k & 0x3F));
  }
  return out;
}

std::string utf8(std::string_view ansi) {
  wide_string wide;
  platform::decode(0, ansi, wide);
  return utf8(wide.data(), wide.size());
}

std::string hex(unsigned value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*X", digits, value);
  return text;
}

}  // namespace quillon::app
