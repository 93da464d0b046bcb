// DVB character fields in all tables, with the system's converter for a referee.

#include "tests/support/bytes.h"
#include "tests/support/referee.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/fields/dvb_text.h>
#include <quillon/platform/utf8.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::string decoded(std::string_view field) {
  const std::string out = dvb_text_to_utf8(field);
  if (!field.empty()) {
    EXPECT_EQ(dvb_text_to_utf8(static_cast<uint8_t>(field[0]), field.substr(1)), out);
  }
  return out;
}

std::string decoded(const Bytes& field) {
  return decoded(std::string(field.begin(), field.end()));
}

uint8_t byte(int value) {
  return static_cast<uint8_t>(value);
}

Bytes selection_of(int part) {
  return {0x10, 0x00, byte(part)};
}

constexpr int iso_8859_parts[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 15};

// What begins a field of each table that has one byte for a character.
std::vector<Bytes> one_byte_selections() {
  std::vector<Bytes> out = {{}};
  for (const int selection : {1, 2, 3, 4, 5, 6, 7, 9, 10, 11}) out.push_back({byte(selection)});
  for (const int part : iso_8859_parts) out.push_back(selection_of(part));
  return out;
}

// The characters of a UTF-8 text.
std::vector<std::string> characters(std::string_view text) {
  std::vector<std::string> out;
  for (const char c : text) {
    if ((c & 0xC0) != 0x80) out.emplace_back();
    out.back() += c;
  }
  return out;
}

// Every mark of table 00 with all letters that it composes with.
struct Composition {
  uint8_t mark;
  const char* combining;
  const char* spacing;
  std::string_view letters;
  const char* composed;
};

// clang-format off
constexpr Composition compositions[] = {
    {0xC1, "\u0300", "`", "AEINOUWYaeinouwy" "\xE0", "ÀÈÌǸÒÙẀỲàèìǹòùẁỳῺ"},
    {0xC2, "\u0301", "´", "ACEGIKLMNOPRSUWYZacegiklmnoprsuwyz" "\xE0\xE1\xE9\xF1\xF9", "ÁĆÉǴÍḰĹḾŃÓṔŔŚÚẂÝŹáćéǵíḱĺḿńóṕŕśúẃýźΏǼǾǽǿ"},
    {0xC3, "\u0302", "^", "ACEGHIJOSUWYZaceghijosuwyz", "ÂĈÊĜĤÎĴÔŜÛŴŶẐâĉêĝĥîĵôŝûŵŷẑ"},
    {0xC4, "\u0303", "~", "AEINOUVYaeinouvy", "ÃẼĨÑÕŨṼỸãẽĩñõũṽỹ"},
    {0xC5, "\u0304", "¯", "AEGIOUYaegiouy" "\xE1\xF1", "ĀĒḠĪŌŪȲāēḡīōūȳǢǣ"},
    {0xC6, "\u0306", "˘", "AEGIOUaegiou", "ĂĔĞĬŎŬăĕğĭŏŭ"},
    {0xC7, "\u0307", "˙", "ABCDEFGHIMNOPRSTWXYZabcdefghmnoprstwxyz", "ȦḂĊḊĖḞĠḢİṀṄȮṖṘṠṪẆẊẎŻȧḃċḋėḟġḣṁṅȯṗṙṡṫẇẋẏż"},
    {0xC8, "\u0308", "¨", "AEHIOUWXYaehiotuwxy", "ÄËḦÏÖÜẄẌŸäëḧïöẗüẅẍÿ"},
    {0xCA, "\u030A", "˚", "AUauwy", "ÅŮåůẘẙ"},
    {0xCB, "\u0327", "¸", "CDEGHKLNRSTcdeghklnrst", "ÇḐȨĢḨĶĻŅŖŞŢçḑȩģḩķļņŗşţ"},
    {0xCD, "\u030B", "˝", "OUou", "ŐŰőű"},
    {0xCE, "\u0328", "˛", "AEIOUaeiou", "ĄĘĮǪŲąęįǫų"},
    {0xCF, "\u030C", "ˇ", "ACDEGHIKLNORSTUZacdeghijklnorstuz", "ǍČĎĚǦȞǏǨĽŇǑŘŠŤǓŽǎčďěǧȟǐǰǩľňǒřšťǔž"},
};
// clang-format on

bool is_mark(int code) {
  return code >= 0xC0 && code <= 0xCF && code != 0xC0 && code != 0xC9 && code != 0xCC;
}

// The letters of table 00: those of ASCII, micro sign and Ohm sign as Unicode has them, and the last two
// rows.
bool is_letter(int code) {
  return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') || code == 0xB5 ||
         (code >= 0xE0 && code <= 0xFE && code != 0xE5);
}

// Good UTF-8, and no control codes but line breaks.
void expect_clean(const std::string& text) {
  EXPECT_EQ(platform::to_utf8(platform::to_utf16(text)), text);
  for (const uint16_t unit : platform::to_utf16(text)) {
    EXPECT_TRUE(unit >= 0x20 || unit == '\n') << unit;
    EXPECT_FALSE(unit >= 0x7F && unit <= 0x9F) << unit;
    EXPECT_FALSE(unit >= 0xE080 && unit <= 0xE09F) << unit;
  }
}

}  // namespace

TEST(DvbText, IsEmptyWithoutBytes) {
  EXPECT_EQ(dvb_text_to_utf8(std::string_view()), "");
  EXPECT_EQ(dvb_text_to_utf8(0x05, {}), "");
  EXPECT_EQ(dvb_text_to_utf8('a', {}), "a");
  for (int selection = 0; selection < 0x20; ++selection) EXPECT_EQ(decoded(Bytes{byte(selection)}), "");
}

TEST(DvbText, CopiesAscii) {
  std::string ascii;
  for (char c = ' '; c < 0x7F; ++c) ascii += c;
  EXPECT_EQ(decoded(ascii), ascii);
  for (const Bytes& selection : one_byte_selections())
    EXPECT_EQ(decoded(joined({selection, text(ascii)})), ascii);
  for (const uint8_t selection : {uint8_t{0x12}, uint8_t{0x13}, uint8_t{0x15}})
    EXPECT_EQ(decoded(joined({{selection}, text(ascii)})), ascii);
}

TEST(DvbText, HasNoTextForAReservedSelection) {
  for (const int selection :
       {0x00, 0x08, 0x0C, 0x0D, 0x0E, 0x0F, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F})
    EXPECT_EQ(decoded(Bytes{byte(selection), 0x41, 'a', 0xE1}), "") << selection;
}

TEST(DvbText, HasNoTextForAReservedPart) {
  for (int part = 0; part < 256; ++part) {
    const bool known = part >= 1 && part <= 15 && part != 12;
    EXPECT_EQ(decoded(joined({selection_of(part), {'a'}})), known ? "a" : "") << part;
  }
  for (int second = 1; second < 256; ++second)
    EXPECT_EQ(decoded(Bytes{0x10, byte(second), 0x05, 'a'}), "") << second;
  EXPECT_EQ(decoded(Bytes{0x10, 0x00}), "");
  EXPECT_EQ(decoded(Bytes{0x10, 0x05}), "");
  EXPECT_EQ(decoded(Bytes{0x10, 0x00, 0x05}), "");
}

TEST(DvbText, HasASelectionOfOneByteForTenParts) {
  const struct {
    int selection;
    int part;
    const char* of_e1;
  } rows[] = {
      {0x01, 5, "с"},  {0x02, 6, "ف"},  {0x03, 7, "α"},  {0x04, 8, "ב"},  {0x05, 9, "á"},
      {0x06, 10, "á"}, {0x07, 11, "แ"}, {0x09, 13, "į"}, {0x0A, 14, "á"}, {0x0B, 15, "á"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(decoded(Bytes{byte(row.selection), 0xE1}), row.of_e1);
    for (int code = 0; code < 256; ++code)
      EXPECT_EQ(decoded(Bytes{byte(row.selection), byte(code)}),
                decoded(joined({selection_of(row.part), {byte(code)}})))
          << row.part << " " << code;
  }
}

TEST(DvbText, HasTheGreekPartOfTheLaterEdition) {
  EXPECT_EQ(decoded("\x03\xA1\xA2\xA4\xA5\xAA"), "\u2018\u2019\u20AC\u20AF\u037A");
}

TEST(DvbText, HasAReplacementForACodeWithoutCharacter) {
  const struct {
    int part;
    const char* empty;
  } rows[] = {
      {3, "\xA5\xAE\xBE\xC3\xD0\xE3\xF0"},
      {6, "\xA1\xA3\xA5\xAB\xAE\xBA\xBC\xBE\xC0\xDB\xDF\xF3\xFF"},
      {7, "\xAE\xD2\xFF"},
      {8, "\xA1\xBF\xC0\xDE\xFB\xFC\xFF"},
      {11, "\xDB\xDC\xDD\xDE\xFC\xFD\xFE\xFF"},
  };
  for (const auto& row : rows)
    for (const char code : std::string_view(row.empty))
      EXPECT_EQ(decoded(joined({selection_of(row.part), {'a', static_cast<uint8_t>(code), 'b'}})), "a\uFFFDb")
          << row.part;
}

// Table 00

TEST(DvbText, HasEachCodeOfTableZero) {
  constexpr std::string_view rows =
      "\u00A0¡¢£€¥\uFFFD§¤‘“«←↑→↓"
      "°±²³×µ¶·÷’”»¼½¾¿"
      "\uFFFD\u0300\u0301\u0302\u0303\u0304\u0306\u0307\u0308\uFFFD\u030A\u0327\uFFFD\u030B\u0328\u030C"
      "―¹®©™♪¬¦\uFFFD\uFFFD\uFFFD\uFFFD⅛⅜⅝⅞"
      "\u2126ÆĐªĦ\uFFFDĲĿŁØŒºÞŦŊŉ"
      "ĸæđðħıĳŀłøœßþŧŋ\u00AD";
  const std::vector<std::string> expected = characters(rows);
  ASSERT_EQ(expected.size(), 96u);
  for (int code = 0xA0; code < 256; ++code) {
    EXPECT_EQ(decoded(Bytes{byte(code)}), expected[static_cast<size_t>(code - 0xA0)]) << code;
    EXPECT_EQ(decoded(Bytes{'a', byte(code)}), "a" + expected[static_cast<size_t>(code - 0xA0)]) << code;
  }
}

TEST(DvbText, ComposesALetterWithTheMarkBeforeIt) {
  for (const Composition& row : compositions) {
    const std::vector<std::string> composed = characters(row.composed);
    ASSERT_EQ(composed.size(), row.letters.size());
    for (int code = 0x20; code < 256; ++code) {
      if (!is_letter(code)) continue;
      const size_t at = row.letters.find(static_cast<char>(code));
      const std::string expected =
          at != std::string_view::npos ? composed[at] : decoded(Bytes{byte(code)}) + row.combining;
      EXPECT_EQ(decoded(Bytes{row.mark, byte(code)}), expected) << int{row.mark} << " " << code;
      EXPECT_EQ(decoded(Bytes{'x', row.mark, byte(code), 'y'}), "x" + expected + "y");
    }
  }
}

TEST(DvbText, HasASpacingFormForAMarkWithASpace) {
  for (const Composition& row : compositions) {
    EXPECT_EQ(decoded(Bytes{row.mark, ' '}), row.spacing);
    EXPECT_EQ(decoded(Bytes{'a', row.mark, ' ', ' ', 'b'}), std::string("a") + row.spacing + " b");
  }
}

TEST(DvbText, HasAMarkAloneBeforeAnythingElse) {
  for (const Composition& row : compositions) {
    const std::string mark = row.combining;
    EXPECT_EQ(decoded(Bytes{'a', row.mark}), "a" + mark);
    for (int code = 0; code < 256; ++code) {
      if (is_letter(code) || code == ' ') continue;
      EXPECT_EQ(decoded(Bytes{row.mark, byte(code), 'e'}),
                mark + decoded(Bytes{' ', byte(code), 'e'}).substr(1))
          << code;
    }
  }
  EXPECT_EQ(decoded("\xC2\x31"),
            "\u0301"
            "1");
  EXPECT_EQ(decoded("\xC2\xC8\x61"), "\u0301ä");
  EXPECT_EQ(decoded("\xC2\x86\x65"), "\u0301e");
  EXPECT_EQ(decoded("\xC2\x8A\x65"), "\u0301\ne");
  EXPECT_EQ(decoded("\xC2\xC0\x65"), "\u0301\uFFFDe");
}

TEST(DvbText, HasNoMarkInThePartsOfIso8859) {
  EXPECT_EQ(decoded("\x05\xC8\x61"), "Èa");
  EXPECT_EQ(decoded("\x01\xC2 "), "Т ");
}

// Control codes

TEST(DvbText, DropsControlCodesOfOneByteButTheLineBreak) {
  for (const Bytes& selection : one_byte_selections())
    for (int code = 0; code < 0xA0; ++code) {
      if (code >= 0x20 && code < 0x7F) continue;
      EXPECT_EQ(decoded(joined({selection, {'a', byte(code), 'b'}})), code == 0x8A ? "a\nb" : "ab") << code;
    }
  EXPECT_EQ(decoded("\x86"
                    "Tatort\x87\x8A\x8A"
                    "Krimi"),
            "Tatort\n\nKrimi");
}

TEST(DvbText, DropsControlCodesAmongPairsButTheLineBreak) {
  for (const uint8_t selection : {uint8_t{0x12}, uint8_t{0x13}})
    for (int code = 0; code < 0xA0; ++code) {
      if (code >= 0x20 && code < 0x7F) continue;
      EXPECT_EQ(decoded(Bytes{selection, 'a', byte(code), 'b', byte(code)}), code == 0x8A ? "a\nb\n" : "ab")
          << code;
    }
}

TEST(DvbText, DropsControlCodesOf16BitsButTheLineBreak) {
  for (const uint8_t selection : {uint8_t{0x11}, uint8_t{0x14}}) {
    for (int code = 0; code < 0xA0; ++code) {
      if (code >= 0x20 && code < 0x7F) continue;
      EXPECT_EQ(decoded(Bytes{selection, 0, 'a', 0, byte(code), 0, 'b'}), "ab") << code;
    }
    for (int code = 0x80; code < 0xA0; ++code)
      EXPECT_EQ(decoded(Bytes{selection, 0, 'a', 0xE0, byte(code), 0, 'b'}), code == 0x8A ? "a\nb" : "ab")
          << code;
    EXPECT_EQ(decoded(Bytes{selection, 0xE0, 0x7F, 0xE0, 0xA0}), "\uE07F\uE0A0");
  }
}

TEST(DvbText, DropsControlCodesOfUtf8ButTheLineBreak) {
  for (int code = 0; code < 0x80; ++code) {
    if (code >= 0x20 && code < 0x7F) continue;
    EXPECT_EQ(decoded(Bytes{0x15, 'a', byte(code), 'b'}), "ab") << code;
  }
  for (int code = 0x80; code < 0xA0; ++code) {
    const std::string expected = code == 0x8A ? "a\nb" : "ab";
    EXPECT_EQ(decoded(Bytes{0x15, 'a', 0xC2, byte(code), 'b'}), expected) << code;
    EXPECT_EQ(decoded(Bytes{0x15, 'a', 0xEE, 0x82, byte(code), 'b'}), expected) << code;
  }
  EXPECT_EQ(decoded("\x15\u00A0\uE07F\uE0A0"), "\u00A0\uE07F\uE0A0");
}

// Tables of several bytes

TEST(DvbText, ReadsUtf16WithPairsAndHalves) {
  for (const uint8_t selection : {uint8_t{0x11}, uint8_t{0x14}}) {
    const auto units = [selection](const Bytes& bytes) { return decoded(joined({{selection}, bytes})); };
    EXPECT_EQ(units({0x04, 0x16, 0x4E, 0x2D, 0x00, 0x20, 0xAC, 0x00}), "Ж中 가");
    EXPECT_EQ(units({0xD8, 0x3D, 0xDE, 0x00}), "\U0001F600");
    EXPECT_EQ(units({0xD8, 0x3D}), "\uFFFD");
    EXPECT_EQ(units({0xD8, 0x3D, 0x00, 'a'}), "\uFFFDa");
    EXPECT_EQ(units({0xDE, 0x00, 0x00, 'a'}), "\uFFFDa");
    EXPECT_EQ(units({0xD8, 0x3D, 0xD8, 0x3D, 0xDE, 0x00}), "\uFFFD\U0001F600");
    // A control code between them doesn't make a pair of two halves.
    EXPECT_EQ(units({0xD8, 0x3D, 0xE0, 0x86, 0xDE, 0x00}), "\uFFFD\uFFFD");
    EXPECT_EQ(units({0xD8, 0x3D, 0x00, 0x8A, 0xDE, 0x00}), "\uFFFD\uFFFD");
  }
}

TEST(DvbText, HasAReplacementForAnOddByteOfUtf16) {
  EXPECT_EQ(decoded(Bytes{0x11, 0x00}), "\uFFFD");
  EXPECT_EQ(decoded(Bytes{0x11, 0x00, 'a', 0x00}), "a\uFFFD");
  EXPECT_EQ(decoded(Bytes{0x14, 0xD8, 0x3D, 0xDE}), "\uFFFD\uFFFD");
}

TEST(DvbText, ReadsUtf8) {
  constexpr const char* text = "Größe, Жизнь, 中文, 한국어, \U0001F600, e\u0301, \uFFFD, \uFFFF, \U0010FFFF";
  EXPECT_EQ(decoded(std::string("\x15") + text), text);
}

TEST(DvbText, HasAReplacementForWhatIsNotUtf8) {
  const auto read = [](std::string_view rest) { return decoded("\x15" + std::string(rest)); };
  EXPECT_EQ(read("\xE4"
                 "a"),
            "\uFFFDa");  // Latin 1
  EXPECT_EQ(read("a\xC3"), "a\uFFFD");
  EXPECT_EQ(read("\xE2\x82"
                 "a"),
            "\uFFFDa");
  EXPECT_EQ(read("\xF0\x9F\x98\xC3\xA4"), "\uFFFDä");
  EXPECT_EQ(read("\xC0\x8A"
                 "a"),
            "\uFFFDa");  // longer than its character needs: no line break
  EXPECT_EQ(read("\xE0\x82\x8A"
                 "a"),
            "\uFFFDa");
  EXPECT_EQ(read("\xED\xA0\x80"
                 "a"),
            "\uFFFDa");
  EXPECT_EQ(read("\xF4\x90\x80\x80"
                 "a"),
            "\uFFFDa");
  EXPECT_EQ(read("\x8A"
                 "a"),
            "\uFFFDa");  // a byte alone is no control code here
  EXPECT_EQ(read("\xFF\xFE"
                 "a"),
            "\uFFFD\uFFFDa");
}

class Iso8859 : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(DvbText, Iso8859, testing::ValuesIn(iso_8859_parts));

TEST_P(Iso8859, IsWhatTheSystemHas) {
  const Referee referee("ISO-8859-" + std::to_string(GetParam()));
  if (!referee.is_there()) GTEST_SKIP() << "no converter";
  for (int code = 0xA0; code < 256; ++code) {
    const std::string ours = decoded(joined({selection_of(GetParam()), {byte(code)}}));
    const std::string theirs = referee.read({byte(code)}).value_or("\uFFFD");
    EXPECT_EQ(ours != theirs, Referee::is_older(GetParam(), code)) << code << ": " << ours << ", " << theirs;
  }
}

// The referee lacks the Euro sign, has an em dash for the bar and eth for d with stroke, and reads no mark
// that is not before a letter of its repertoire.
TEST(DvbText, HasTheCodesOfIso6937ButThree) {
  const Referee referee("ISO_6937");
  if (!referee.is_there()) GTEST_SKIP() << "no converter";
  for (int code = 0x20; code < 256; ++code) {
    if ((code >= 0x7F && code < 0xA0) || is_mark(code)) continue;
    const std::string ours = decoded(Bytes{byte(code)});
    const std::optional<std::string> theirs = referee.read({byte(code)});
    if (code == 0xA4) {
      EXPECT_EQ(ours, "€");
      EXPECT_EQ(theirs, std::nullopt);
    } else if (code == 0xD0) {
      EXPECT_EQ(ours, "\u2015");
      EXPECT_EQ(theirs, "\u2014");
    } else if (code == 0xE2) {
      EXPECT_EQ(ours, "\u0110");
      EXPECT_EQ(theirs, "\u00D0");
    } else {
      EXPECT_EQ(ours, theirs.value_or("\uFFFD")) << code;
    }
  }
}

TEST(DvbText, HasAllCompositionsOfIso6937AndMore) {
  const Referee referee("ISO_6937");
  if (!referee.is_there()) GTEST_SKIP() << "no converter";
  // What the referee refuses: letters that Unicode composes beyond the repertoire of ISO 6937, and three of
  // the spacing forms, those of ASCII.
  const struct {
    uint8_t mark;
    std::string_view second;
  } rows[] = {
      {0xC1, " NWYnwy\xE0"},
      {0xC2, "GKMPWgkmpw\xE0\xE1\xE9\xF1\xF9"},
      {0xC3, " Zz"},
      {0xC4, " EVYevy"},
      {0xC5, "GYgy\xE1\xF1"},
      {0xC6, "EIOeio"},
      {0xC7, "ABDFHMNOPRSTWXYabdfhmnoprstwxy"},
      {0xC8, "HWXhtwx"},
      {0xCA, "wy"},
      {0xCB, "DEHdeh"},
      {0xCD, ""},
      {0xCE, "Oo"},
      {0xCF, "AGHIKOUaghijkou"},
  };
  for (const auto& row : rows)
    for (int second = 0x20; second < 256; ++second) {
      if (second >= 0x7F && second < 0xA0) continue;
      const std::string ours = decoded(Bytes{row.mark, byte(second)});
      const bool is_one = characters(ours).size() == 1;
      const bool is_more = row.second.find(static_cast<char>(second)) != std::string_view::npos;
      EXPECT_EQ(referee.read({row.mark, byte(second)}),
                is_one && !is_more ? std::optional(ours) : std::nullopt)
          << int{row.mark} << " " << second;
      EXPECT_TRUE(is_one || !is_more) << int{row.mark} << " " << second;
    }
}

struct PairTable {
  uint8_t selection;
  const char* name;
  uint64_t sum;  // of all that it reads
  friend void PrintTo(const PairTable& table, std::ostream* out) { *out << table.name; }
};

class Pairs : public testing::TestWithParam<PairTable> {
 protected:
  void SetUp() override {
    if (read({0xB0, 0xA1}) == "\uFFFD\uFFFD") GTEST_SKIP() << "no converter";
  }
  std::string read(const Bytes& rest) const { return decoded(joined({{GetParam().selection}, rest})); }
};
INSTANTIATE_TEST_SUITE_P(DvbText, Pairs,
                         testing::Values(PairTable{0x12, "EUC-KR", 16483902764950748512u},
                                         PairTable{0x13, "GBK", 6841346879756975694u}),
                         [](const auto& info) {
                           return info.param.selection == 0x12 ? "Korean" : "Chinese";
                         });

TEST_P(Pairs, AreWhatTheSystemHas) {
  const Referee referee(GetParam().name);
  if (!referee.is_there()) GTEST_SKIP() << "no other converter";
  // A whole row at a time, with a bar after each place.
  for (int lead = 0xA1; lead < 0xFF; ++lead) {
    Bytes row;
    std::string expected;
    for (int trail = 0xA1; trail < 0xFF; ++trail) {
      row.insert(row.end(), {byte(lead), byte(trail), '|'});
      expected += referee.read({byte(lead), byte(trail)}).value_or("\uFFFD") + "|";
    }
    EXPECT_EQ(read(row), expected) << lead;
  }
}

TEST_P(Pairs, AreTheSameOnEverySystem) {
  uint64_t sum = 14695981039346656037u;  // FNV-1a
  for (int lead = 0xA1; lead < 0xFF; ++lead)
    for (int trail = 0xA0; trail < 0x100; ++trail)
      for (const char c : read({byte(lead), byte(trail)}) + "|")
        sum = (sum ^ static_cast<uint8_t>(c)) * 1099511628211u;
  EXPECT_EQ(sum, GetParam().sum);
}

TEST_P(Pairs, HaveAReplacementForWhatIsMalformed) {
  const std::string first = read({0xB0, 0xA1});
  EXPECT_EQ(characters(first).size(), 1u);
  EXPECT_EQ(read({0xB0}), "\uFFFD");  // cut short
  EXPECT_EQ(read({0xB0, 0xA1, 0xB0}), first + "\uFFFD");
  EXPECT_EQ(read({0xB0, ' ', 'a'}), "\uFFFD a");  // the second byte stays
  EXPECT_EQ(read({0xB0, 0x0A, 'a'}), "\uFFFDa");
  EXPECT_EQ(read({0xFE, 0xFE, 0xB0, 0xA1}), "\uFFFD" + first);  // an empty place
  EXPECT_EQ(read({0xFF, 0xB0, 0xA1}), "\uFFFD" + first);
  EXPECT_EQ(read({0xB0, 0xFF, 'a'}), "\uFFFD\uFFFDa");
}

TEST_P(Pairs, HaveControlCodesBetweenThem) {
  const std::string first = read({0xB0, 0xA1});
  for (int code = 0x80; code < 0xA0; ++code)
    EXPECT_EQ(read({byte(code), 0xB0, 0xA1, byte(code), 0xB0, 0xA1}),
              code == 0x8A ? "\n" + first + "\n" + first : first + first)
        << code;
}

TEST(DvbText, ReadsKorean) {
  if (decoded("\x12\xB0\xA1") == "\uFFFD\uFFFD") GTEST_SKIP() << "no converter";
  EXPECT_EQ(decoded("\x12\xC7\xD1\xB1\xB9\xBE\xEE \xB4\xBA\xBD\xBA 9\x8A\xB0\xA1"), "한국어 뉴스 9\n가");
  EXPECT_EQ(decoded("\x12\xB0\x41"), "\uFFFDA");  // both bytes have their top bits
}

TEST(DvbText, ReadsChinese) {
  if (decoded("\x13\xB0\xA1") == "\uFFFD\uFFFD") GTEST_SKIP() << "no converter";
  EXPECT_EQ(decoded("\x13\xD6\xD0\xD1\xEB\xB5\xE7\xCA\xD3\xCC\xA8 1"), "中央电视台 1");
  EXPECT_EQ(decoded("\x13\xE9\x46"
                    "1"),
            "镕1");  // beyond GB 2312
}

// Fields as they are broadcast

TEST(DvbText, ReadsTheLanguagesOfTableZero) {
  EXPECT_EQ(decoded("Gr\xC8"
                    "o\xFB"
                    "e f\xC8"
                    "ur M\xC8"
                    "adchen"),
            "Größe für Mädchen");
  EXPECT_EQ(decoded("P\xCF"
                    "r\xC2"
                    "ili\xCF"
                    "s \xCF"
                    "zlu\xCF"
                    "tou\xCF"
                    "ck\xC2"
                    "y k\xCA"
                    "u\xCF"
                    "n"),
            "Příliš žluťoučký kůň");
  EXPECT_EQ(decoded("\xC7"
                    "Z\xC2"
                    "o\xF8"
                    "ta \xF8\xC2"
                    "od\xC2"
                    "z"),
            "Żółta łódź");
  EXPECT_EQ(decoded("\xCB"
                    "S\xC8"
                    "ohret Yolu: \xC7"
                    "I\xC6"
                    "gne \xF5s\xF5s\xF5"),
            "Şöhret Yolu: İğne ısısı");
  EXPECT_EQ(decoded("\xF1nima p\xCA"
                    "a norsk"),
            "ænima på norsk");
  EXPECT_EQ(decoded("T\xCD"
                    "uzolt\xC2"
                    "o"),
            "Tűzoltó");
  EXPECT_EQ(decoded("Gar\xCB"
                    "con, \xCB"
                    "ca co\xC3"
                    "ute 5 \xA4"),
            "Garçon, ça coûte 5 €");
  EXPECT_EQ(decoded("\xBFMa\xC4"
                    "nana?"),
            "¿Mañana?");
  EXPECT_EQ(decoded("\xCB"
                    "gimene"),
            "ģimene");
}

TEST(DvbText, ReadsTheLanguagesOfIso8859) {
  EXPECT_EQ(decoded("\x01\xB2\xD5\xE1\xE2\xD8 \xDD\xD5\xD4\xD5\xDB\xD8"), "Вести недели");
  EXPECT_EQ(decoded("\x02\xC7\xE4\xC3\xCE\xC8\xC7\xD1"), "الأخبار");
  EXPECT_EQ(decoded("\x03\xC5\xE9\xE4\xDE\xF3\xE5\xE9\xF2 \xA4"), "Ειδήσεις €");
  EXPECT_EQ(decoded("\x04\xE7\xE3\xF9\xE5\xFA"), "חדשות");
  EXPECT_EQ(decoded("\x05\xDE\xF6hret Yolu: \xDD\xF0ne"), "Şöhret Yolu: İğne");
  EXPECT_EQ(decoded("\x06\xA2valds"), "Ēvalds");
  EXPECT_EQ(decoded("\x07\xA2\xE8\xD2\xC7\xC0\xD2\xA4\xA4\xE8\xD3"), "ข่าวภาคค่ำ");
  EXPECT_EQ(decoded("\x09Zi\xF2"
                    "as"),
            "Ziņas");
  EXPECT_EQ(decoded("\x0A\xD0yn"), "Ŵyn");
  EXPECT_EQ(decoded("\x0B\xBCuvre \xE0 5 \xA4"), "Œuvre à 5 €");
  using namespace std::string_view_literals;
  EXPECT_EQ(decoded("\x10\x00\x02\xAF\xF3\xB3ta \xB3\xF3"
                    "d\xBC"sv),
            "Żółta łódź");
  EXPECT_EQ(decoded("\x10\x00\x02P\xF8\xED"
                    "b\xEChy"sv),
            "Příběhy");
}

TEST(DvbText, IsGoodUtf8WhateverTheBytes) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    Bytes bytes(random() % 40);
    for (uint8_t& b : bytes) b = byte(static_cast<int>(random() & 0xFF));
    if (!bytes.empty() && round % 4 != 0) bytes[0] = byte(static_cast<int>(random() & 0x1F));
    if (bytes.size() > 2 && bytes[0] == 0x10 && round % 2 != 0) bytes[1] = 0, bytes[2] &= 0x0F;
    expect_clean(decoded(bytes));
  }
}
