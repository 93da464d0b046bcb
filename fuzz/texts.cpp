#include "fuzz/choices.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"
#include "fuzz/well_formed.h"

#include <string>
#include <vector>

#include <quillon/fields/dvb_text.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/fields/text.h>
#include <quillon/platform/utf8.h>

namespace quillon::fuzz {

namespace {

// What a byte can become in UTF-8. Of DVB a byte is one character of the BMP at most; where two bytes are two
// characters they are still three bytes each. Of ATSC a bit is the shortest code of a Huffman table, and its
// character is Latin: two bytes. SCSU needs half of that at most.
constexpr size_t kMostOfDvb = 3;
constexpr size_t kMostOfAtsc = 8 * 2;

void expect_text(const std::string& utf8, size_t most) {
  require(utf8.size() <= most && is_utf8(utf8));
}

void check_dvb(std::span<const uint8_t> bytes, Reading reading) {
  const ByteView view(bytes.data(), bytes.size(), reading);
  const std::string_view field(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const Text text(static_cast<int>(bytes.size()), view);
  const Text copy = text;
  const std::string utf8 = text.utf8();
  expect_text(utf8, kMostOfDvb * bytes.size());
  require(utf8 == dvb_text_to_utf8(field) && utf8 == copy.utf8() && utf8 == text.utf8());
  require(text.get_bytes() == field && copy.get_bytes() == field);
  require(text.get_textW().size() <= bytes.size() + 1 &&
          text.get_textA().size() <= kMostOfDvb * bytes.size());
  require(text.get_textW() == copy.get_textW() && text.get_textA() == copy.get_textA());
  require(is_utf8(platform::to_utf8(text.get_textW())));
  // The wide form of the kept reading has fewer tables.
  if (reading == Reading::standard) require(platform::to_utf8(text.get_textW()) == utf8);
  // The forms do not depend on which of them was asked for first.
  require(text.utf8() == utf8);

  // One that is set, or that was parsed twice, is its wide form.
  Text set;
  set.set_textW(0, text.get_textW().c_str());
  Text twice = text;
  twice.parse(static_cast<int>(bytes.size()), view);
  for (const Text* const other : {&set, &twice})
    if (!other->is_ascii()) require(other->utf8() == platform::to_utf8(other->get_textW()));
  require(twice.get_textW().size() <= 2 * bytes.size() + 2 && is_utf8(twice.utf8()));
}

void check_atsc(std::span<const uint8_t> bytes, Reading reading) {
  ATSCMultipleStringStructure strings;
  int length = static_cast<int>(bytes.size());
  strings.parse(ByteView(bytes.data(), bytes.size(), reading), length);
  require(length >= 1);
  size_t coded = 0;
  for (const ATSCMultipleStringStructure::String& string : strings.strings) {
    wide_string all;
    size_t of_string = 0;
    for (const ATSCMultipleStringStructure::String::Segment& segment : string.segments) {
      const wide_string text = segment.text();
      require(text == segment.text());
      if (reading == Reading::standard) require(segment.decoded_text == text);
      all += text;
      of_string += segment.compressed_string_bytes.size();
    }
    expect_text(string.utf8(), kMostOfAtsc * of_string);
    require(string.utf8() == platform::to_utf8(all));
    coded += of_string;
  }
  // A segment has all the bytes that it states, in the kept reading zeros for those past the end: one at most
  // reaches beyond it.
  require(coded <= bytes.size() + 255);
}

}  // namespace

void texts(const uint8_t* data, size_t size) {
  Choices choices(data, size);
  const uint8_t choice = choices.byte();
  const auto rest = choices.rest();
  const std::vector<uint8_t> bytes(rest.begin(), rest.end());  // its own end, watched
  const Reading reading = choice & 1 ? Reading::standard : Reading::kept;
  if (choice & 2) return check_atsc(bytes, reading);
  set_default_text_table(choice >> 4);
  check_dvb(bytes, reading);
  set_default_text_table(0);
}

}  // namespace quillon::fuzz
