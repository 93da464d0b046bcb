#include <iterator>
#include <optional>
#include <utility>

#include <quillon/fields/internal/atsc_text.h>
#include <quillon/fields/internal/huffman_tables.h>

namespace quillon::detail {

namespace {

constexpr uint8_t kEndOfText = 0;
constexpr uint8_t kPlainFollows = 27;
constexpr uint16_t kReplacement = 0xFFFD;

// The characters of Huffman-coded text as they come.
class HuffmanReader {
 public:
  HuffmanReader(const HuffmanTable& table, std::span<const uint8_t> bytes) : table_(table), bytes_(bytes) {}

  // None if the bits end first.
  std::optional<uint8_t> character_after(uint8_t previous) {
    // The tables have no contexts above 127: what follows such a character is plain.
    if (previous >= huffman_contexts) return plain();
    const std::optional<uint8_t> symbol = coded(table_.nodes + table_.first[previous]);
    return symbol == kPlainFollows ? plain() : symbol;
  }

 private:
  size_t left() const { return bytes_.size() * 8 - at_; }

  unsigned bit() {
    const unsigned value = bytes_[at_ / 8] >> (7 - at_ % 8) & 1u;
    ++at_;
    return value;
  }

  std::optional<uint8_t> coded(const HuffmanNode* nodes) {
    uint8_t next = 0;
    while (next < huffman_leaf) {
      if (left() == 0) return std::nullopt;
      next = nodes[next].next[bit()];
    }
    return static_cast<uint8_t>(next - huffman_leaf);
  }

  std::optional<uint8_t> plain() {
    if (left() < 8) return std::nullopt;
    unsigned value = 0;
    for (int i = 0; i < 8; ++i) value = value << 1 | bit();
    return static_cast<uint8_t>(value);
  }

  const HuffmanTable& table_;
  std::span<const uint8_t> bytes_;
  size_t at_ = 0;  // in bits
};

constexpr uint32_t kStaticOffsets[8] = {0x0000, 0x0080, 0x0100, 0x0300, 0x2000, 0x2080, 0x2100, 0x3000};

// The window offset that a definition's byte means; none if it is reserved.
std::optional<uint32_t> window_offset(unsigned byte) {
  constexpr uint32_t kSpecial[] = {0x00C0, 0x0250, 0x0370, 0x0530, 0x3040, 0x30A0, 0xFF60};
  if (byte >= 0x01 && byte <= 0x67) return byte * 0x80;
  if (byte >= 0x68 && byte <= 0xA7) return byte * 0x80 + 0xAC00;  // past Han, Hangul and surrogates
  if (byte >= 0xF9) return kSpecial[byte - 0xF9];
  return std::nullopt;
}

class ScsuReader {
 public:
  explicit ScsuReader(std::span<const uint8_t> bytes) : left_(bytes) {}

  wide_string text() {
    while (!left_.empty()) {
      const unsigned code = left_.front();
      left_ = left_.subspan(1);
      if (unicode_)
        unicode_mode(code);
      else
        single_byte_mode(code);
    }
    return std::move(text_);
  }

 private:
  void single_byte_mode(unsigned code) {
    if (code >= 0x80)
      put(offsets_[active_] + (code - 0x80));
    else if (code >= 0x20 || code == 0x00 || code == '\t' || code == '\n' || code == '\r')
      put(code);
    else if (code >= 0x18)
      define(code - 0x18);
    else if (code >= 0x10)
      select(code - 0x10);
    else if (code == 0x0F)
      unicode_ = true;
    else if (code == 0x0E)
      quote_unit();
    else if (code == 0x0C)
      put(kReplacement);
    else if (code == 0x0B)
      define_extended();
    else
      quote(code - 0x01);
  }

  void unicode_mode(unsigned code) {
    if (code < 0xE0 || code > 0xF2) {
      if (const auto low = argument(1)) put(code << 8 | *low);
    } else if (code == 0xF2)
      put(kReplacement);
    else if (code == 0xF1)
      define_extended();
    else if (code == 0xF0)
      quote_unit();
    else if (code >= 0xE8)
      define(code - 0xE8);
    else
      select(code - 0xE0);
  }

  void select(unsigned window) {
    active_ = window;
    unicode_ = false;
  }

  void define(unsigned window) {
    const auto byte = argument(1);
    if (!byte) return;
    if (const auto offset = window_offset(*byte))
      offsets_[window] = *offset;
    else
      put(kReplacement);
    select(window);
  }

  void define_extended() {
    const auto value = argument(2);
    if (!value) return;
    offsets_[*value >> 13] = 0x10000 + (*value & 0x1FFF) * 0x80;
    select(*value >> 13);
  }

  void quote(unsigned window) {
    const auto byte = argument(1);
    if (byte) put(*byte < 0x80 ? kStaticOffsets[window] + *byte : offsets_[window] + (*byte - 0x80));
  }

  void quote_unit() {
    if (const auto unit = argument(2)) put(*unit);
  }

  // The big-endian number in the next `size` bytes; none, and the end of the text, if they are cut.
  std::optional<unsigned> argument(size_t size) {
    if (left_.size() < size) {
      left_ = {};
      put(kReplacement);
      return std::nullopt;
    }
    unsigned value = 0;
    for (const uint8_t byte : left_.first(size)) value = value << 8 | byte;
    left_ = left_.subspan(size);
    return value;
  }

  void put(uint32_t character) {
    if (character > 0xFFFF) {
      text_ += static_cast<uint16_t>(0xD800 + ((character - 0x10000) >> 10));
      character = 0xDC00 + (character & 0x3FF);
    }
    text_ += static_cast<uint16_t>(character);
  }

  std::span<const uint8_t> left_;
  wide_string text_;
  bool unicode_ = false;
  unsigned active_ = 0;
  uint32_t offsets_[8] = {0x0080, 0x00C0, 0x0400, 0x0600, 0x0900, 0x3040, 0x30A0, 0xFF00};
};

}  // namespace

std::string huffman_text(int compression_type, std::span<const uint8_t> bytes) {
  if (compression_type < 1 || compression_type > std::ssize(huffman_tables)) return {};
  HuffmanReader reader(huffman_tables[compression_type - 1], bytes);
  std::string text;
  // A text begins in the context of the end mark.
  for (auto character = reader.character_after(kEndOfText); character && *character != kEndOfText;
       character = reader.character_after(*character))
    text += static_cast<char>(*character);
  return text;
}

wide_string scsu_text(std::span<const uint8_t> bytes) {
  return ScsuReader(bytes).text();
}

wide_string utf16be_text(std::span<const uint8_t> bytes) {
  wide_string text;
  text.reserve((bytes.size() + 1) / 2);
  for (; bytes.size() >= 2; bytes = bytes.subspan(2)) text += static_cast<uint16_t>(bytes[0] << 8 | bytes[1]);
  if (!bytes.empty()) text += kReplacement;
  return text;
}

}  // namespace quillon::detail
