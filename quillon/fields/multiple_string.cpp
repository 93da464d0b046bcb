#include <ostream>
#include <span>

#include <quillon/fields/internal/atsc_text.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/platform/utf8.h>
#include <quillon/report/internal/line.h>

namespace quillon {

namespace {

// The text of all values up to `last`, from the row before on.
struct Range {
  int last;
  const char* text;
};

template <size_t N>
const char* text_of(const Range (&ranges)[N], int value) {
  if (value < 0) return "";
  for (const Range& range : ranges)
    if (value <= range.last) return range.text;
  return "";
}

constexpr Range kCompressionTypes[] = {
    {0, "No compression"},
    {1, "Huffman coding using standard encode/decode tables defined in Table C.4 and C.5 in Annex C."},
    {2, "Huffman coding using standard encode/decode tables defined in Table C.6 and C.7 in Annex C."},
    {175, "reserved"},
    {255, "Used in other systems"},
};

// 0x96 is the en dash of code page 1252.
#define QUILLON_PAGE(high) "Select Unicode Code Range 0x" high "00 \x96 0x" high "FF"
constexpr Range kModes[] = {
    {0x00, QUILLON_PAGE("00")},
    {0x01, QUILLON_PAGE("01")},
    {0x02, QUILLON_PAGE("02")},
    {0x03, QUILLON_PAGE("03")},
    {0x04, QUILLON_PAGE("04")},
    {0x05, QUILLON_PAGE("05")},
    {0x06, QUILLON_PAGE("06")},
    {0x08, "Reserved"},
    {0x09, QUILLON_PAGE("09")},
    {0x0A, QUILLON_PAGE("0A")},
    {0x0B, QUILLON_PAGE("0B")},
    {0x0C, QUILLON_PAGE("0C")},
    {0x0D, QUILLON_PAGE("0D")},
    {0x0E, QUILLON_PAGE("0E")},
    {0x0F, QUILLON_PAGE("0F")},
    {0x1F, QUILLON_PAGE("10")},  // the modes after 0x10 share its text: kept, callers show it
    {0x20, QUILLON_PAGE("20")},
    {0x21, QUILLON_PAGE("21")},
    {0x22, QUILLON_PAGE("22")},
    {0x23, QUILLON_PAGE("23")},
    {0x24, QUILLON_PAGE("24")},
    {0x25, QUILLON_PAGE("25")},
    {0x26, QUILLON_PAGE("26")},
    {0x27, QUILLON_PAGE("27")},
    {0x2F, "Reserved"},
    {0x30, QUILLON_PAGE("30")},
    {0x31, QUILLON_PAGE("31")},
    {0x32, QUILLON_PAGE("32")},
    {0x33, QUILLON_PAGE("33")},
    {0x3D, "Reserved"},
    {0x3E, "Select Standard Compression Scheme for Unicode (SCSU)"},
    {0x3F, "Select Unicode, UTF-16 Form"},
    {0x41, "Assigned to ATSC standard for Taiwan"},
    {0x47, "Reserved for future ATSC use"},
    {0x48, "Assigned to ATSC standard for South Korea"},
    {0xDF, "Reserved for future ATSC use"},
    {0xFE, "Used in other systems"},
    {0xFF, "Not applicable"},
};
#undef QUILLON_PAGE

// True if a mode is the high byte of its code units.
bool is_page(int mode) {
  return mode <= 0x06 || (mode >= 0x09 && mode <= 0x10) || (mode >= 0x20 && mode <= 0x27) ||
         (mode >= 0x30 && mode <= 0x33);
}

wide_string page_text(int mode, std::span<const uint8_t> bytes) {
  wide_string out;
  if (!is_page(mode)) return out;
  out.reserve(bytes.size());
  for (const uint8_t byte : bytes) out.push_back(static_cast<uint16_t>(mode << 8 | byte));
  return out;
}

}  // namespace

void ATSCMultipleStringStructure::parse(ByteView data, int& length) {
  number_strings = data[0];
  int pos = 1;
  for (int n = 0; n < number_strings && pos < length && data.has(pos); ++n) {
    int size = length - pos;
    strings.emplace_back(data.from(pos), size);
    pos += size;
  }
  length = pos;
}

void ATSCMultipleStringStructure::parse_field(ByteView data, int at, int length) {
  if (length > 0) parse(data.from(at).upto(length), length);
}

ATSCMultipleStringStructure::String::String(ByteView data, int& length) : number_segments(data[3]) {
  iso639languagecode.parse(data);
  int pos = 4;
  for (int n = 0; n < number_segments && pos < length && data.has(pos); ++n) {
    int size = length - pos;
    segments.emplace_back(data.from(pos), size);
    pos += size;
  }
  length = pos;
}

ATSCMultipleStringStructure::String::Segment::Segment(ByteView data, int& length)
    : compression_type(data[0]),
      mode(data[1]),
      number_bytes(data[2]),
      compressed_string_bytes(data.bytes(3, number_bytes)) {
  length = number_bytes + 3;
  // Quirk: MultipleStringSegment compression and mode
  if (data.standard()) {
    compressed_string_bytes.resize(data.present(3, number_bytes).size());
    decoded_text = text();
    return;
  }
  std::vector<uint8_t> plain;
  decompress(plain);
  decode(plain);
}

wide_string ATSCMultipleStringStructure::String::Segment::text() const {
  const std::span<const uint8_t> bytes(compressed_string_bytes);
  if (compression_type == 1 || compression_type == 2) {
    if (mode != 0) return {};
    const std::string latin = detail::huffman_text(compression_type, bytes);
    wide_string out;
    for (const char c : latin) out.push_back(static_cast<unsigned char>(c));
    return out;
  }
  if (compression_type != 0) return {};
  if (mode == 0x3E) return detail::scsu_text(bytes);
  if (mode == 0x3F) return detail::utf16be_text(bytes);
  return page_text(mode, bytes);
}

std::string ATSCMultipleStringStructure::String::utf8() const {
  wide_string all;
  for (const Segment& segment : segments) all += segment.text();
  return platform::to_utf8(all);
}

// Coded text stays coded.
void ATSCMultipleStringStructure::String::Segment::decompress(std::vector<uint8_t>& out) const {
  if (compression_type == 0) out = compressed_string_bytes;
}

void ATSCMultipleStringStructure::String::Segment::decode(const std::vector<uint8_t>& in) {
  decoded_text += page_text(mode, in);
}

const char* ATSCMultipleStringStructure::String::Segment::get_compression_type_text(int compression_type) {
  return text_of(kCompressionTypes, compression_type);
}

const char* ATSCMultipleStringStructure::String::Segment::get_mode_text(int mode) {
  return text_of(kModes, mode);
}

// Quirk: MultipleStringSegment mode texts
const char* ATSCMultipleStringStructure::String::Segment::standard_mode_text(int mode) {
  return get_mode_text(mode >= 0x11 && mode <= 0x1F ? 0x08 : mode);
}

void ATSCMultipleStringStructure::dump_state(std::ostream& stream) const {
  stream << "number_strings: " << number_strings << std::endl;
  for (const String& string : strings) string.dump_state(stream);
}

void ATSCMultipleStringStructure::String::dump_state(std::ostream& stream) const {
  report::line(stream, "iso639languagecode: ", iso639languagecode.c_strA());
  stream << "number_segments: " << number_segments << std::endl;
  for (const Segment& segment : segments) segment.dump_state(stream);
}

void ATSCMultipleStringStructure::String::Segment::dump_state(std::ostream& stream) const {
  stream << "compression_type: " << compression_type << std::endl;
  stream << "mode: " << mode << std::endl;
  stream << "number_bytes: " << number_bytes << std::endl;
}

}  // namespace quillon
