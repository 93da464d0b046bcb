// Text on a system that lacks code pages. A program of its own: here the pages are poor stand-ins, and the
// library is not linked.

#include <gtest/gtest.h>
#include <set>
#include <vector>

#include <quillon/fields/text.h>

namespace {

// The pages that there are; in page 0 a byte means itself, elsewhere itself plus the page's number.
std::set<unsigned> pages_there;
bool encodes = true;
std::vector<unsigned> pages_asked;

}  // namespace

namespace quillon {

unsigned get_ansi_code_page() {
  return 0;
}

namespace platform {

bool decode(unsigned page, std::string_view text, wide_string& out) {
  pages_asked.push_back(page);
  if (!pages_there.contains(page)) return false;
  out.clear();
  for (const char c : text) out += static_cast<uint16_t>(static_cast<unsigned char>(c) + page);
  return true;
}

bool encode(unsigned, wide_view text, std::string& out) {
  if (!encodes) return false;
  out.clear();
  for (const uint16_t unit : text) out += unit < 256 ? static_cast<char>(unit) : '?';
  return true;
}

}  // namespace platform
}  // namespace quillon

using quillon::Text;

namespace {

class TextWithoutPages : public testing::Test {
 protected:
  TextWithoutPages() {
    pages_there = {0, 1252, 28595, 28596, 28597, 28598, 28599};
    encodes = true;
    pages_asked.clear();
  }
  static Text parsed(const std::vector<uint8_t>& bytes) {
    return Text(static_cast<int>(bytes.size()), bytes.data());
  }
  static std::u16string wide(const Text& t) { return {t.get_textW().begin(), t.get_textW().end()}; }
};

}  // namespace

TEST_F(TextWithoutPages, AsksForThePageOfTheSelection) {
  EXPECT_EQ(wide(parsed({0x03, 0xC1})), std::u16string(1, static_cast<char16_t>(0xC1 + 28597)));
  EXPECT_EQ(pages_asked, std::vector<unsigned>{28597});
}

TEST_F(TextWithoutPages, DecodesInTheAnsiPageWhereThePageIsMissing) {
  for (const uint8_t selection : std::vector<uint8_t>{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x1F}) {
    const unsigned page = selection < 6 ? 28594u + selection : 1252u;
    pages_there.erase(page);
    pages_asked.clear();
    const Text t = parsed({selection, 0xC1, 'x'});
    EXPECT_EQ(wide(t), u"\u00C1x");
    EXPECT_EQ(t.get_textA(), "\xC1x");
    EXPECT_EQ(pages_asked, (std::vector<unsigned>{page, 0}));
  }
}

TEST_F(TextWithoutPages, DecodesASetTextInTheAnsiPageToo) {
  pages_there.erase(28597);
  Text t;
  t.set_textA(3, "\xC1");
  EXPECT_EQ(wide(t), u"\u00C1");
  EXPECT_EQ(t.get_char_set(), 3);
}

TEST_F(TextWithoutPages, KeepsTheWideTextWhereNothingDecodes) {
  Text t = parsed({'a', 'b'});
  pages_there.clear();
  pages_asked.clear();
  t.set_textA(3, "\xC1");
  EXPECT_EQ(pages_asked, (std::vector<unsigned>{28597, 0}));
  EXPECT_EQ(t.get_textA(), "\xC1");
  EXPECT_EQ(wide(t), u"ab");

  // The narrow text is made from the wide one that stayed.
  t.parse(1, std::vector<uint8_t>{'c'}.data());
  EXPECT_EQ(wide(t), u"ab");
  EXPECT_EQ(t.get_textA(), "ab");
}

TEST_F(TextWithoutPages, KeepsTheBytesOfTheWireWhereNothingConverts) {
  pages_there.clear();
  encodes = false;
  Text t = parsed({0x03, 0xC1, 0x00, 'x'});
  EXPECT_EQ(t.get_textA(), std::string("\xC1\0x", 3));
  EXPECT_EQ(wide(t), u"");
  EXPECT_EQ(t.get_text_len(), 4u);
  t.parse(2, std::vector<uint8_t>{'y', 'z'}.data());
  EXPECT_EQ(t.get_textA(), std::string("\xC1\0xyz", 5));
}

TEST_F(TextWithoutPages, KeepsTheNarrowTextWhereTheWideOneDoesNotEncode) {
  Text t = parsed({'a'});
  encodes = false;
  t.set_textW(1, u"\u0391");
  EXPECT_EQ(wide(t), u"\u0391");
  EXPECT_EQ(t.get_textA(), "a");
}
