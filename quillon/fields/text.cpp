#include <quillon/fields/text.h>

namespace quillon {

namespace {

// No NUL, and nothing from 0x80 up.
bool is_ascii(std::string_view text) {
  unsigned seen = 0;
  for (const char c : text) seen |= static_cast<unsigned char>(c) | (static_cast<unsigned char>(c) - 1u);
  return (seen & 0x80) == 0;
}

}  // namespace

bool Text::is_char_table(uint8_t byte) {
  return byte <= 0x06 || byte == 0x0F || byte == 0x10 || byte == 0x11 || byte == 0x12 || byte == 0x1F;
}

unsigned Text::char_set_to_codepage(uint8_t char_set) {
  if (char_set == 0) return 0;
  return char_set <= 5 ? 28594u + char_set : 1252u;
}

void Text::parse(ByteView bytes, int& consumed) {
  const int length = bytes[0];
  parse(length, bytes.from(1));
  consumed = length + 1;
}

void Text::parse(int length, ByteView bytes) {
  length_ = static_cast<uint32_t>(length);
  if (length == 0) return;
  std::string_view text = bytes.present(0, length);
  uint8_t selection = 0;
  if (!text.empty() && is_char_table(static_cast<uint8_t>(text[0]))) {
    selection = static_cast<uint8_t>(text[0]);
    text.remove_prefix(1);
  }
  widen();
  if (narrow_.empty() && wide_.empty() && is_ascii(text)) {
    narrow_ = text;
    widening_due_ = true;
    return;
  }
  narrow_.append(text);
  ansi_to_wide(selection, narrow_, wide_);
  wide_to_ansi(wide_, narrow_);
}

void Text::set_textA(uint8_t char_set, const char* text) {
  widen();
  narrow_ = text;
  char_set_ = char_set;
  ansi_to_wide(char_set, narrow_, wide_);
}

void Text::set_textW(uint8_t char_set, const uint16_t* text) {
  wide_ = text;
  widening_due_ = false;
  char_set_ = char_set;
  wide_to_ansi(wide_, narrow_);
}

void Text::set_textW(uint8_t char_set, const char16_t* text) {
  const std::u16string_view units(text);
  wide_.assign(units.begin(), units.end());
  widening_due_ = false;
  char_set_ = char_set;
  wide_to_ansi(wide_, narrow_);
}

void Text::ansi_to_wide(uint8_t char_set, std::string_view in, wide_string& out) {
  in = in.substr(0, in.find('\0'));
  const unsigned page = char_set_to_codepage(char_set);
  if (!platform::decode(page, in, out) && page != 0) platform::decode(0, in, out);
}

void Text::wide_to_ansi(wide_view in, std::string& out) {
  platform::encode(0, in, out);
}

}  // namespace quillon
