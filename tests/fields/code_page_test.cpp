#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include <quillon/platform/code_page.h>

using quillon::wide_string;
using quillon::wide_view;
using quillon::platform::decode;
using quillon::platform::encode;

namespace {

constexpr unsigned known_pages[] = {1252, 28595, 28596, 28597, 28598, 28599};
#if defined(_WIN32)  // has nearly every page that there is
constexpr unsigned unknown_pages[] = {4, 1249, 28600, 28604, 65002, 0xFFFFFFFF};
#else
constexpr unsigned unknown_pages[] = {1, 437, 1251, 1253, 28591, 28594, 28600, 28605, 65001, 0xFFFFFFFF};
#endif

// Every test leaves the process with the page that it started with, also when it fails half way.
struct AnsiPage {
  explicit AnsiPage(unsigned page) { EXPECT_TRUE(quillon::set_ansi_code_page(page)); }
  ~AnsiPage() { quillon::set_ansi_code_page(1252); }
  AnsiPage(const AnsiPage&) = delete;
  AnsiPage& operator=(const AnsiPage&) = delete;
};

wide_string wide(std::u16string_view text) {
  return wide_string(text.begin(), text.end());
}

std::u16string decoded(unsigned page, std::string_view text) {
  wide_string out = wide(u"what was there before");
  EXPECT_TRUE(decode(page, text, out)) << page;
  return std::u16string(out.begin(), out.end());
}

std::string encoded(unsigned page, std::u16string_view text) {
  std::string out = "what was there before";
  EXPECT_TRUE(encode(page, wide(text), out)) << page;
  return out;
}

std::string bytes(unsigned first, unsigned last) {
  std::string text;
  for (unsigned byte = first; byte <= last; ++byte) text += static_cast<char>(byte);
  return text;
}

std::u16string units(unsigned first, unsigned last) {
  std::u16string text;
  for (unsigned unit = first; unit <= last; ++unit) text += static_cast<char16_t>(unit);
  return text;
}

}  // namespace

TEST(CodePage, AsciiIsTheSameOnAllPages) {
  for (const unsigned page : known_pages) {
    EXPECT_EQ(decoded(page, bytes(0, 0x7F)), units(0, 0x7F)) << page;
    EXPECT_EQ(encoded(page, units(0, 0x7F)), bytes(0, 0x7F)) << page;
  }
}

TEST(CodePage, EveryByteOfEveryPageComesBack) {
  for (const unsigned page : known_pages) {
    const std::u16string text = decoded(page, bytes(0, 0xFF));
    ASSERT_EQ(text.size(), 256u) << page;
    EXPECT_EQ(encoded(page, text), bytes(0, 0xFF)) << page;
  }
}

TEST(CodePage, WindowsLatin1) {
  EXPECT_EQ(decoded(1252, bytes(0x80, 0x8F)), u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F");
  EXPECT_EQ(decoded(1252, bytes(0x90, 0x9F)), u"\u0090‘’“”•–—˜™š›œ\u009DžŸ");
  EXPECT_EQ(decoded(1252, bytes(0xA0, 0xFF)), units(0xA0, 0xFF));
  EXPECT_EQ(encoded(1252, u"€\u0081Žÿ"), "\x80\x81\x8E\xFF");
  EXPECT_EQ(encoded(1252, u"\u0080\u008E\u009F"), "???");
}

TEST(CodePage, Cyrillic) {
  EXPECT_EQ(decoded(28595, bytes(0x80, 0xA0)), units(0x80, 0xA0));
  EXPECT_EQ(decoded(28595, bytes(0xA1, 0xAF)), u"ЁЂЃЄЅІЇЈЉЊЋЌ\u00ADЎЏ");
  EXPECT_EQ(decoded(28595, bytes(0xB0, 0xCF)), u"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ");
  EXPECT_EQ(decoded(28595, bytes(0xD0, 0xEF)), u"абвгдежзийклмнопрстуфхцчшщъыьэюя");
  EXPECT_EQ(decoded(28595, bytes(0xF0, 0xFF)), u"№ёђѓєѕіїјљњћќ§ўџ");
}

TEST(CodePage, Arabic) {
  EXPECT_EQ(decoded(28596, bytes(0x80, 0xA0)), units(0x80, 0xA0));
  EXPECT_EQ(decoded(28596, "\xA4\xAC\xAD\xBB\xBF"), u"¤\u060C\u00AD\u061B\u061F");
  EXPECT_EQ(decoded(28596, bytes(0xC1, 0xDA)), units(0x0621, 0x063A));
  EXPECT_EQ(decoded(28596, bytes(0xE0, 0xF2)), units(0x0640, 0x0652));
  EXPECT_EQ(decoded(28596, bytes(0xA1, 0xA3) + bytes(0xA5, 0xAB) + bytes(0xAE, 0xBA) + bytes(0xBC, 0xBE) +
                               "\xC0" + bytes(0xDB, 0xDF) + bytes(0xF3, 0xFF)),
            units(0xF7C8, 0xF7F4));
}

TEST(CodePage, Greek) {
  EXPECT_EQ(decoded(28597, bytes(0x80, 0xA0)), units(0x80, 0xA0));
  EXPECT_EQ(decoded(28597, bytes(0xA1, 0xAF)), u"\u02BD\u02BC£\uF7C2\uF7C3¦§¨©\uF7C4«¬\u00AD\uF7C5―");
  EXPECT_EQ(decoded(28597, bytes(0xB0, 0xBF)), u"°±²³\u0384\u0385Ά·ΈΉΊ»Ό½ΎΏ");
  EXPECT_EQ(decoded(28597, bytes(0xC0, 0xDF)), u"ΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ\uF7C6ΣΤΥΦΧΨΩΪΫάέήί");
  EXPECT_EQ(decoded(28597, bytes(0xE0, 0xFF)), u"ΰαβγδεζηθικλμνξοπρςστυφχψωϊϋόύώ\uF7C7");
  EXPECT_EQ(encoded(28597, u"\u20AC\u20AF"), "??");
}

TEST(CodePage, Hebrew) {
  EXPECT_EQ(decoded(28598, bytes(0x80, 0xA0)), units(0x80, 0xA0));
  EXPECT_EQ(decoded(28598, bytes(0xA1, 0xAF)), u"\uF79C¢£¤¥¦§¨©×«¬\u00AD®\u203E");
  EXPECT_EQ(decoded(28598, bytes(0xB0, 0xBE)), u"°±²³´µ¶·¸¹÷»¼½¾");
  EXPECT_EQ(decoded(28598, bytes(0xBF, 0xDE)), units(0xF79D, 0xF7BC));
  EXPECT_EQ(decoded(28598, "\xDF"), u"\u2017");
  EXPECT_EQ(decoded(28598, bytes(0xE0, 0xFA)), units(0x05D0, 0x05EA));
  EXPECT_EQ(decoded(28598, bytes(0xFB, 0xFF)), units(0xF7BD, 0xF7C1));
}

TEST(CodePage, Turkish) {
  EXPECT_EQ(decoded(28599, bytes(0x80, 0xCF)), units(0x80, 0xCF));
  EXPECT_EQ(decoded(28599, bytes(0xD0, 0xDF)), u"ĞÑÒÓÔÕÖ×ØÙÚÛÜİŞß");
  EXPECT_EQ(decoded(28599, bytes(0xE0, 0xEF)), units(0xE0, 0xEF));
  EXPECT_EQ(decoded(28599, bytes(0xF0, 0xFF)), u"ğñòóôõö÷øùúûüışÿ");
}

TEST(CodePage, ALackingCharacterBecomesAQuestionMark) {
  for (const unsigned page : known_pages) {
    EXPECT_EQ(encoded(page, u"a\u4E00b?c\uFFFFd"), "a?b?c?d") << page;
    EXPECT_EQ(encoded(page, u"\U0001F600"), "??") << page;
    EXPECT_EQ(encoded(page, u"\xD83D!"), "?!") << page;
  }
  EXPECT_EQ(encoded(1252, u"Жé"), "?\xE9");
  EXPECT_EQ(encoded(28595, u"Жא"), "\xB6?");
}

// Nor does it become one that looks like it.
TEST(CodePage, HasNoByteForAnyOtherCharacter) {
  for (const unsigned page : known_pages) {
    const std::u16string known = decoded(page, bytes(0, 0xFF));
    const std::u16string all = units(0, 0xD7FF) + units(0xE000, 0xFFFF);
    std::string expected;
    for (const char16_t unit : all) {
      const size_t byte = known.find(unit);
      expected += byte == known.npos ? '?' : static_cast<char>(byte);
    }
    EXPECT_EQ(encoded(page, all), expected) << page;
  }
}

TEST(CodePage, EmptyTextEmptiesTheOutput) {
  wide_string wide_text = wide(u"before");
  EXPECT_TRUE(decode(1252, std::string_view(), wide_text));
  EXPECT_TRUE(wide_text.empty());
  std::string text = "before";
  EXPECT_TRUE(encode(1252, wide_view(), text));
  EXPECT_TRUE(text.empty());
}

TEST(CodePage, NulIsACharacterLikeAnother) {
  using namespace std::string_literals;
  EXPECT_EQ(decoded(1252, "a\0\x80"s), u"a\0€"s);
  EXPECT_EQ(encoded(1252, u"a\0€"s), "a\0\x80"s);
}

TEST(CodePage, ACharacterBeyondAsciiAtEveryPlaceOfALongText) {
  for (size_t size = 1; size <= 41; ++size)
    for (size_t place = 0; place < size; ++place) {
      std::string text;
      for (size_t i = 0; i < size; ++i) text += static_cast<char>('0' + i);
      std::u16string expected(text.begin(), text.end());
      text[place] = '\xC4';
      expected[place] = u'Δ';
      EXPECT_EQ(decoded(28597, text), expected) << size << ", " << place;
      EXPECT_EQ(encoded(28597, expected), text) << size << ", " << place;

      // 0x0141 has the low byte of an ASCII letter.
      expected[place] = u'\u0141';
      text[place] = '?';
      EXPECT_EQ(encoded(28597, expected), text) << size << ", " << place;
    }
}

TEST(CodePage, AnUnknownPageIsRefusedAndChangesNothing) {
  const AnsiPage ansi(28597);
  for (const unsigned page : unknown_pages) {
    EXPECT_FALSE(quillon::set_ansi_code_page(page)) << page;
    EXPECT_EQ(quillon::get_ansi_code_page(), 28597u) << page;

    wide_string wide_text = wide(u"before");
    EXPECT_FALSE(decode(page, "text", wide_text)) << page;
    EXPECT_EQ(wide_text, wide(u"before")) << page;

    std::string text = "before";
    EXPECT_FALSE(encode(page, wide(u"text"), text)) << page;
    EXPECT_EQ(text, "before") << page;
  }
  EXPECT_FALSE(quillon::set_ansi_code_page(0));
  EXPECT_FALSE(quillon::set_ansi_code_page(65001));  // which a system may know
  EXPECT_EQ(quillon::get_ansi_code_page(), 28597u);
}

TEST(CodePage, Page0IsTheAnsiPage) {
  EXPECT_EQ(quillon::get_ansi_code_page(), 1252u);
  EXPECT_EQ(decoded(0, "\x80\xE9"), u"€é");
  EXPECT_EQ(encoded(0, u"€é"), "\x80\xE9");

  for (const unsigned page : known_pages) {
    const AnsiPage ansi(page);
    EXPECT_EQ(quillon::get_ansi_code_page(), page);
    EXPECT_EQ(decoded(0, bytes(0, 0xFF)), decoded(page, bytes(0, 0xFF))) << page;
    EXPECT_EQ(encoded(0, decoded(page, bytes(0, 0xFF))), bytes(0, 0xFF)) << page;
    EXPECT_EQ(decoded(1252, "\x80\xE9"), u"€é") << page;
  }
  EXPECT_EQ(quillon::get_ansi_code_page(), 1252u);
}
