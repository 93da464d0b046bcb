#include <algorithm>

#include <quillon/fields/dvb_text.h>
#include <quillon/fields/text.h>
#include <quillon/platform/or_empty.h>
#include <quillon/platform/utf8.h>

namespace quillon {

namespace {

bool is_printable_ascii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= 0x20 && c < 0x7F; });
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
  // Quirk: Text tables, marks and control codes
  if (bytes.standard()) return parse_standard(text);
  uint8_t selection = 0;
  const bool has_selection = !text.empty() && is_char_table(static_cast<uint8_t>(text[0]));
  if (has_selection) {
    selection = static_cast<uint8_t>(text[0]);
    text.remove_prefix(1);
  }
  const unsigned ansi_page = get_ansi_code_page();
  if (bytes_.empty() && !late_.get()) {
    bytes_ = text;
    ascii_ = platform::is_ascii(text);
    undecoded_ = !ascii_;
    has_selection_ = has_selection;
    reading_ = Reading::kept;
    selection_ = selection;
    ansi_page_ = static_cast<uint16_t>(ansi_page);
    return;
  }
  wide_string& units = decode().wide;
  ascii_ = false;
  bytes_.append(text);
  ansi_to_wide(selection, ansi_page, bytes_, units);
  wide_to_ansi(ansi_page, units, bytes_);
}

void Text::parse_standard(std::string_view field) {
  const unsigned ansi_page = get_ansi_code_page();
  if (bytes_.empty() && !late_.get()) {
    bytes_ = field;
    ascii_ = is_printable_ascii(field);
    undecoded_ = !ascii_;
    has_selection_ = false;
    reading_ = Reading::standard;
    ansi_page_ = static_cast<uint16_t>(ansi_page);
    return;
  }
  wide_string& units = decode().wide;
  ascii_ = false;
  units += platform::to_utf16(dvb_text_to_utf8(field));
  wide_to_ansi(ansi_page, units, bytes_);
}

std::string Text::utf8() const {
  if (!is_wire()) return platform::to_utf8(get_textW());
  return has_selection_ ? dvb_text_to_utf8(selection_, bytes_) : dvb_text_to_utf8(bytes_);
}

std::string Text::get_bytes() const {
  if (!is_wire()) return {};
  return has_selection_ ? std::string(1, static_cast<char>(selection_)).append(bytes_) : bytes_;
}

Text::Late& Text::make_late() const {
  auto made = std::make_unique<Late>();
  if (undecoded_) {
    if (reading_ == Reading::standard)
      made->wide = platform::to_utf16(utf8());
    else
      ansi_to_wide(selection_, ansi_page_, bytes_, made->wide);
    made->narrow = bytes_;
    wide_to_ansi(ansi_page_, made->wide, made->narrow);
  } else {
    made->wide.assign(bytes_.begin(), bytes_.end());
  }
  return late_.publish(std::move(made));
}

Text::Late& Text::decode() {
  Late* const made = late_.get();
  Late& both = made ? *made : make_late();
  if (undecoded_) bytes_ = std::move(both.narrow);
  undecoded_ = false;
  return both;
}

void Text::set_textA(uint8_t char_set, const char* text) {
  std::string narrow(detail::or_empty(text));  // which may be this one's own
  wide_string& units = decode().wide;
  ascii_ = false;
  bytes_ = std::move(narrow);
  char_set_ = char_set;
  ansi_to_wide(char_set, get_ansi_code_page(), bytes_, units);
}

void Text::set_textW(uint8_t char_set, const uint16_t* text) {
  set_units(char_set, text ? wide_string(text) : wide_string());
}

void Text::set_textW(uint8_t char_set, const char16_t* text) {
  const std::u16string_view units(text ? text : u"");
  set_units(char_set, wide_string(units.begin(), units.end()));
}

void Text::set_units(uint8_t char_set, wide_string units) {
  wide_string& wide = decode().wide;
  ascii_ = false;
  wide = std::move(units);
  char_set_ = char_set;
  wide_to_ansi(get_ansi_code_page(), wide, bytes_);
}

void Text::ansi_to_wide(uint8_t char_set, unsigned ansi_page, std::string_view in, wide_string& out) {
  in = in.substr(0, in.find('\0'));
  const unsigned page = char_set_to_codepage(char_set);
  if (page == 0 || !platform::decode(page, in, out)) platform::decode(ansi_page, in, out);
}

void Text::wide_to_ansi(unsigned ansi_page, wide_view in, std::string& out) {
  platform::encode(ansi_page, in, out);
}

}  // namespace quillon
