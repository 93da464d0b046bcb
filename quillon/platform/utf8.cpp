#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>

namespace quillon::platform {

wide_string to_utf16(std::string_view text) {
  wide_string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i++]);
    if (lead < 0x80) {
      out += lead;
      continue;
    }
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    uint32_t code = lead & (0x3Fu >> more);
    int taken = 0;
    for (; taken < more && i < text.size() && (text[i] & 0xC0) == 0x80; ++taken)
      code = code << 6 | (static_cast<unsigned char>(text[i++]) & 0x3Fu);
    constexpr uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    const bool good = lead >= 0xC2 && lead <= 0xF4 && taken == more && code >= kLeast[more] &&
                      code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    if (!good) {
      out += uint16_t{0xFFFD};
    } else if (code < 0x10000) {
      out += static_cast<uint16_t>(code);
    } else {
      out += static_cast<uint16_t>(0xD7C0 + (code >> 10));
      out += static_cast<uint16_t>(0xDC00 + (code & 0x3FF));
    }
  }
  return out;
}

std::string to_utf8(wide_view text) {
  std::string out;
  out.reserve(text.size());
  char piece[256];
  char* at = piece;
  const auto put = [&at](uint32_t bits) { *at++ = static_cast<char>(bits); };
  for (size_t i = 0; i < text.size(); ++i) {
    if (at - piece > 252) {
      out.append(piece, at);
      at = piece;
    }
    uint32_t code = text[i];
    if (code < 0x80) {
      put(code);
      continue;
    }
    const bool high = code >= 0xD800 && code <= 0xDBFF;
    if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF)
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    else if (code >= 0xD800 && code <= 0xDFFF)
      code = 0xFFFD;
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    put((0xF00u >> (more + 1) & 0xFF) | code >> 6 * more);
    for (int k = more - 1; k >= 0; --k) put(0x80 | (code >> 6 * k & 0x3F));
  }
  return out.append(piece, at);
}

std::string to_utf8(unsigned page, std::string_view text) {
  wide_string wide;
  decode(page, text, wide);
  return to_utf8(wide);
}

}  // namespace quillon::platform
