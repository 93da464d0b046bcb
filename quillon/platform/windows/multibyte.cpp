#include <quillon/platform/internal/multibyte.h>
#include <quillon/platform/windows/windows.h>

namespace quillon::platform {
namespace {

constexpr uint16_t replacement = 0xFFFD;

bool is_in_table(uint8_t byte) {
  return byte > 0xA0 && byte < 0xFF;
}

// 949 has more pairs than KS X 1001: those alone count whose bytes are both of the table.
uint16_t character(MultibyteTable table, uint8_t lead, uint8_t trail) {
  const bool korean = table == MultibyteTable::ks_x_1001;
  if (korean && !(is_in_table(lead) && is_in_table(trail))) return replacement;
  if (korean && lead == 0xA2 && trail == 0xE8) return 0x327E;  // of the edition of 2002; the page lacks it
  const char pair[] = {static_cast<char>(lead), static_cast<char>(trail)};
  wchar_t unit = 0;
  const int units = MultiByteToWideChar(korean ? 949 : 936, MB_ERR_INVALID_CHARS, pair, 2, &unit, 1);
  const bool is_private = unit >= 0xE000 && unit < 0xF900;  // a place that the standard leaves empty
  return units == 1 && !is_private ? static_cast<uint16_t>(unit) : replacement;
}

}  // namespace

wide_string decode_multibyte(MultibyteTable table, std::string_view text) {
  wide_string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<uint8_t>(text[i++]);
    uint16_t unit = lead;
    if (lead >= 0xA0) {
      unit = replacement;
      if (i < text.size()) {
        const auto trail = static_cast<uint8_t>(text[i]);
        unit = character(table, lead, trail);
        if (unit != replacement || (is_in_table(lead) && is_in_table(trail))) ++i;
      }
    }
    out += unit;
  }
  return out;
}

}  // namespace quillon::platform
