// UTF-16 to UTF-8 and back.

#include <gtest/gtest.h>
#include <iterator>

#include <quillon/platform/utf8.h>

using namespace quillon;
using platform::to_utf16;
using platform::to_utf8;

TEST(Utf8, HasOneToFourBytesACharacter) {
  const uint16_t text[] = {'a', 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF};
  const wide_view wide(text, std::size(text));
  EXPECT_EQ(to_utf8(wide),
            "a\x7F"
            "\u0080\u07FF\u0800\uFFFF\U0001F600\U0010FFFF");
  EXPECT_EQ(to_utf16(to_utf8(wide)), wide);
}

TEST(Utf8, HasAReplacementForHalfAPair) {
  const uint16_t unpaired[] = {0xDE00, 0xD83D, 'a', 0xD83D};
  EXPECT_EQ(to_utf8({unpaired, std::size(unpaired)}), "\uFFFD\uFFFDa\uFFFD");
}

TEST(Utf8, IsReadWithAReplacementForWhatItIsNot) {
  const auto read = [](std::string_view text) { return to_utf8(to_utf16(text)); };
  EXPECT_EQ(read("\x80"
                 "a"),
            "\uFFFDa");               // a byte that begins nothing
  EXPECT_EQ(read("\xC3"), "\uFFFD");  // cut short
  EXPECT_EQ(read("\xE2\x82"
                 "a"),
            "\uFFFDa");
  EXPECT_EQ(read("\xC0\xAF"), "\uFFFD");  // too long for its character
  EXPECT_EQ(read("\xE0\x80\xAF"), "\uFFFD");
  EXPECT_EQ(read("\xED\xA0\x80"), "\uFFFD");      // a surrogate
  EXPECT_EQ(read("\xF4\x90\x80\x80"), "\uFFFD");  // beyond the last character
}
