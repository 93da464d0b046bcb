// DVB character fields and language codes.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/xml/attributes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

std::u16string wide(const Text& t) {
  return std::u16string(t.get_textW().begin(), t.get_textW().end());
}

Text parsed(const Bytes& bytes) {
  return Text(static_cast<int>(bytes.size()), view(bytes));
}

// The process goes back to the page that it started with.
struct AnsiPage {
  explicit AnsiPage(unsigned page) { EXPECT_TRUE(set_ansi_code_page(page)); }
  ~AnsiPage() { set_ansi_code_page(1252); }
  AnsiPage(const AnsiPage&) = delete;
  AnsiPage& operator=(const AnsiPage&) = delete;
};

// What the byte 0xC1 means after a selection byte: A with acute in the Latin pages.
char16_t letter_behind(int selection) {
  switch (selection) {
    case 0x01:
      return 0x0421;  // Cyrillic ES
    case 0x02:
      return 0x0621;  // Arabic hamza
    case 0x03:
      return 0x0391;  // Greek alpha
    case 0x04:
      return 0xF79F;  // no character in the Hebrew page
    default:
      return 0x00C1;
  }
}

bool selects(int byte) {
  for (const int selection : {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x0F, 0x10, 0x11, 0x12, 0x1F})
    if (byte == selection) return true;
  return false;
}

// Attributes of one element, saved and loaded.
template <class Value>
Value through_xml(const Value& value, Value out = {}) {
  xml::Document document;
  auto* const root = static_cast<IXMLDOMElement*>(document.create_root("d"));
  EXPECT_EQ(AddAttribute(static_cast<IXMLDOMDocument*>(document.dom()), root, "name", value), 0);
  IXMLDOMNamedNodeMap* map = nullptr;
  EXPECT_EQ(static_cast<IXMLDOMNode*>(root)->get_attributes(&map), 0);
  EXPECT_EQ(GetAttributeValue(map, "name", out), 0);
  map->Release();
  return out;
}

}  // namespace

TEST(Text, IsEmptyAtFirst) {
  const Text t;
  EXPECT_EQ(t.get_textA(), "");
  EXPECT_EQ(wide(t), u"");
  EXPECT_STREQ(t.c_strA(), "");
  EXPECT_EQ(t.c_strW()[0], 0);
  EXPECT_EQ(t.get_char_set(), 0);
  EXPECT_EQ(t.get_text_len(), 0u);
}

TEST(Text, HasEachSelectionByteTakenOutAndEveryOtherByteKept) {
  for (int selection = 0; selection < 256; ++selection) {
    SCOPED_TRACE(selection);
    const Text t = parsed({static_cast<uint8_t>(selection), 0xC1});
    EXPECT_EQ(t.get_text_len(), 2u);
    EXPECT_EQ(t.get_char_set(), 0);
    if (selects(selection)) {
      const char16_t letter = letter_behind(selection);
      EXPECT_EQ(wide(t), std::u16string(1, letter));
      EXPECT_EQ(t.get_textA(), letter == 0xC1 ? "\xC1" : "?");
    } else {
      EXPECT_EQ(t.get_textA(), (std::string{static_cast<char>(selection), '\xC1'}));
      EXPECT_EQ(wide(t).size(), 2u);
      EXPECT_EQ(wide(t)[1], 0xC1);
    }
  }
}

TEST(Text, DecodesEachByteInThePageOfItsSelection) {
  struct Row {
    Bytes selection;
    unsigned page;
  };
  for (const Row& row :
       {Row{{}, 1252}, Row{{0x00}, 1252}, Row{{0x01}, 28595}, Row{{0x02}, 28596}, Row{{0x03}, 28597},
        Row{{0x04}, 28598}, Row{{0x05}, 28599}, Row{{0x06}, 1252}, Row{{0x0F}, 1252}, Row{{0x10}, 1252},
        Row{{0x11}, 1252}, Row{{0x12}, 1252}, Row{{0x1F}, 1252}})
    for (int byte = 1; byte < 256; ++byte) {
      if (row.selection.empty() && selects(byte)) continue;
      const Text t = parsed(joined({row.selection, {static_cast<uint8_t>(byte)}}));
      wide_string unit;
      ASSERT_TRUE(platform::decode(row.page, std::string(1, static_cast<char>(byte)), unit));
      std::string narrow;
      ASSERT_TRUE(platform::encode(0, unit, narrow));
      EXPECT_EQ(t.get_textW(), unit) << row.page << " " << byte;
      EXPECT_EQ(t.get_textA(), narrow) << row.page << " " << byte;
    }
}

TEST(Text, DecodesInTheAnsiPageWhereNothingIsSelected) {
  const AnsiPage page(28597);
  for (const Bytes& bytes : {Bytes{0xC1, 0xE2}, Bytes{0x00, 0xC1, 0xE2}}) {
    const Text t = parsed(bytes);
    EXPECT_EQ(wide(t), u"\u0391\u03B2");
    EXPECT_EQ(t.get_textA(), "\xC1\xE2");
  }
  // Those that select 1252 do not mean the ANSI page.
  EXPECT_EQ(wide(parsed({0x06, 0xC1})), u"\u00C1");
  EXPECT_EQ(parsed({0x06, 0xC1}).get_textA(), "?");
}

TEST(Text, ShowsNarrowWhatTheAnsiPageHas) {
  const Bytes mixed{0x03, 0xC1, 'x', 0xE2};
  EXPECT_EQ(parsed(mixed).get_textA(), "?x?");
  EXPECT_EQ(wide(parsed(mixed)), u"\u0391x\u03B2");
  const AnsiPage page(28597);
  EXPECT_EQ(parsed(mixed).get_textA(), "\xC1x\xE2");
}

TEST(Text, KeepsAllBytesAsTheyAre) {
  Bytes all;
  for (int byte = 255; byte > 0; --byte) all.push_back(static_cast<uint8_t>(byte));
  const Text t = parsed(all);
  EXPECT_EQ(t.get_text_len(), 255u);
  EXPECT_EQ(t.get_textA(), std::string(all.begin(), all.end()));
  EXPECT_EQ(wide(t).size(), 255u);
  // Emphasis and line break among them: 0x86, 0x87 and 0x8A of a title.
  EXPECT_EQ(parsed({'a', 0x86, 'b', 0x87, 0x8A, 'c'}).get_textA(),
            "a\x86"
            "b\x87\x8A"
            "c");
}

TEST(Text, OfLengthZeroStoresTheLengthAlone) {
  Text t(2, Bytes{'a', 'b'}.data());
  t.parse(0, static_cast<const uint8_t*>(nullptr));
  EXPECT_EQ(t.get_text_len(), 0u);
  EXPECT_EQ(t.get_textA(), "ab");
  EXPECT_EQ(wide(t), u"ab");

  Text greek(2, Bytes{0x03, 0xC1}.data());
  greek.parse(0, static_cast<const uint8_t*>(nullptr));
  EXPECT_EQ(wide(greek), u"\u0391");  // no conversion runs
}

TEST(Text, OfNegativeLengthConvertsWhatIsThere) {
  Text t;
  t.parse(-1, static_cast<const uint8_t*>(nullptr));
  EXPECT_EQ(t.get_text_len(), 0xFFFFFFFF);
  EXPECT_EQ(t.get_textA(), "");

  Text greek(2, Bytes{0x03, 0xC1}.data());
  EXPECT_EQ(wide(greek), u"\u0391");
  greek.parse(-5, static_cast<const uint8_t*>(nullptr));
  EXPECT_EQ(greek.get_text_len(), 0xFFFFFFFB);
  EXPECT_EQ(greek.get_textA(), "?");
  EXPECT_EQ(wide(greek), u"?");  // made anew from the narrow text
}

TEST(Text, OfASelectionByteAloneIsEmpty) {
  for (int byte = 0; byte < 0x20; ++byte) {
    const Text t = parsed({static_cast<uint8_t>(byte)});
    EXPECT_EQ(t.get_text_len(), 1u);
    EXPECT_EQ(t.get_textA(), selects(byte) ? "" : std::string(1, static_cast<char>(byte)));
    EXPECT_EQ(wide(t).size(), selects(byte) ? 0u : 1u);
  }
}

TEST(Text, TakesTenAloneSoThatItsSecondByteEndsTheText) {
  for (const Bytes& bytes : {Bytes{0x10, 0x00, 0x05}, Bytes{0x10, 0x00, 0x05, 'a', 'b'}}) {
    const Text t = parsed(bytes);
    EXPECT_EQ(t.get_text_len(), bytes.size());
    EXPECT_EQ(t.get_textA(), "");
    EXPECT_EQ(wide(t), u"");
  }
  EXPECT_EQ(parsed({0x10, 0x01, 'a'}).get_textA(),
            "\x01"
            "a");
}

TEST(Text, OfTwoByteCharactersEndsAtTheirZeroBytes) {
  for (const uint8_t selection : {uint8_t{0x11}, uint8_t{0x12}}) {
    EXPECT_EQ(parsed({selection, 0x00, 'a', 0x00, 'b'}).get_textA(), "");
    EXPECT_EQ(parsed({selection, 0x04, 0x10, 0x04, 0x11}).get_textA(), "\x04\x10\x04\x11");
  }
}

TEST(Text, EndsAtANul) {
  const Text t = parsed({0x03, 0xC1, 0x00, 0x41});
  EXPECT_EQ(t.get_text_len(), 4u);
  EXPECT_EQ(wide(t), u"\u0391");
  EXPECT_EQ(t.get_textA(), "?");
  EXPECT_EQ(parsed({'a', 'b', 0x00}).get_textA(), "ab");
}

TEST(Text, LooksForASelectionAtTheFirstByteAlone) {
  for (int byte = 1; byte < 0x20; ++byte) {
    const Text t = parsed({'a', static_cast<uint8_t>(byte), 0xC1});
    EXPECT_EQ(t.get_textA(), (std::string{'a', static_cast<char>(byte), '\xC1'}));
  }
  EXPECT_EQ(parsed({0x05, 0x1F, 0x12}).get_textA(), "\x1F\x12");
}

TEST(Text, AddsASecondParse) {
  Text t(2, Bytes{'a', 'b'}.data());
  t.parse(3, Bytes{0x05, 'c', 'd'}.data());
  EXPECT_EQ(t.get_textA(), "abcd");
  EXPECT_EQ(wide(t), u"abcd");
  EXPECT_EQ(t.get_text_len(), 3u);

  // All of it goes through the page of the second parse, from its narrow form.
  Text greek(2, Bytes{0x05, 0xD0}.data());  // G with breve, not in 1252
  greek.parse(2, Bytes{0x03, 0xC1}.data());
  EXPECT_EQ(wide(greek), u"?\u0391");
  EXPECT_EQ(greek.get_textA(), "??");
}

TEST(Text, HasALengthPrefixedForm) {
  const Bytes bytes{4, 0x03, 0xC1, 'x', 'y', 'z'};
  int consumed = -1;
  Text t(view(bytes), consumed);
  EXPECT_EQ(consumed, 5);
  EXPECT_EQ(t.get_text_len(), 4u);
  EXPECT_EQ(wide(t), u"\u0391xy");
  t.parse(view({1, 'z'}), consumed);
  EXPECT_EQ(consumed, 2);
  EXPECT_EQ(t.get_textA(), "?xyz");
  t.parse(view({0}), consumed);
  EXPECT_EQ(consumed, 1);
  EXPECT_EQ(t.get_text_len(), 0u);
  EXPECT_EQ(t.get_textA(), "?xyz");
}

TEST(Text, IsCutByTheViewsEnd) {
  const Bytes bytes{200, 0x03, 0xC1, 'x'};
  int consumed = -1;
  const Text prefixed(view(bytes), consumed);
  EXPECT_EQ(consumed, 201);
  EXPECT_EQ(prefixed.get_text_len(), 200u);
  EXPECT_EQ(wide(prefixed), u"\u0391x");

  const Text counted(255, view(bytes).from(1));
  EXPECT_EQ(counted.get_text_len(), 255u);
  EXPECT_EQ(wide(counted), u"\u0391x");

  const Text none(10, view(bytes).from(4));
  EXPECT_EQ(none.get_text_len(), 10u);
  EXPECT_EQ(none.get_textA(), "");
  const Text nowhere(ByteView(bytes.data(), size_t{0}), consumed);
  EXPECT_EQ(consumed, 1);
  EXPECT_EQ(nowhere.get_text_len(), 0u);
}

TEST(Text, IsSetFromNarrowText) {
  Text t(2, Bytes{'a', 'b'}.data());
  t.set_textA(3, "\xC1x");
  EXPECT_EQ(t.get_char_set(), 3);
  EXPECT_EQ(t.get_textA(), "\xC1x");  // as it was handed over
  EXPECT_EQ(wide(t), u"\u0391x");
  EXPECT_EQ(t.get_text_len(), 2u);
  t.parse(1, Bytes{'z'}.data());
  EXPECT_EQ(t.get_char_set(), 3);
  EXPECT_EQ(t.get_textA(), "\xC1xz");
  EXPECT_EQ(wide(t), u"\u00C1xz");  // the parse itself selected nothing
}

TEST(Text, IsSetFromNarrowTextInEveryCharSet) {
  for (int char_set = 0; char_set < 256; ++char_set) {
    Text t;
    t.set_textA(static_cast<uint8_t>(char_set), "\xC1");
    EXPECT_EQ(t.get_char_set(), char_set);
    EXPECT_EQ(t.get_textA(), "\xC1");
    EXPECT_EQ(wide(t), std::u16string(1, letter_behind(char_set))) << char_set;
  }
}

TEST(Text, IsSetFromWideText) {
  Text t(2, Bytes{'a', 'b'}.data());
  t.set_textW(5, u"\u0391x\u00C1");
  EXPECT_EQ(t.get_char_set(), 5);
  EXPECT_EQ(wide(t), u"\u0391x\u00C1");
  EXPECT_EQ(t.get_textA(), "?x\xC1");  // in the ANSI page whatever the char set
  EXPECT_EQ(t.get_text_len(), 2u);
  const uint16_t units[] = {0x0391, 'y', 0};
  t.set_textW(1, units);
  EXPECT_EQ(wide(t), u"\u0391y");
  EXPECT_EQ(t.get_char_set(), 1);
}

TEST(Text, IsSetFromItsOwnTexts) {
  Text t(3, Bytes{'a', 'b', 'c'}.data());
  t.set_textA(0, t.c_strA() + 1);
  EXPECT_EQ(wide(t), u"bc");
  t.set_textW(0, t.c_strW() + 1);
  EXPECT_EQ(t.get_textA(), "c");
}

TEST(Text, DecodesInThePageOfItsParseWheneverItIsAsked) {
  const Text t = parsed({0xC1, 'x'});
  const AnsiPage greek(28597);
  const Text copy = t;
  EXPECT_EQ(t.get_textA(), "\xC1x");
  EXPECT_EQ(wide(t), u"\u00C1x");
  EXPECT_EQ(wide(copy), u"\u00C1x");
  EXPECT_EQ(copy.get_textA(), "\xC1x");
}

TEST(Text, IsChangedBeforeItWasAsked) {
  Text added = parsed({0x01, 0xC1});
  added.parse(1, Bytes{'x'}.data());
  EXPECT_EQ(added.get_textA(), "?x");
  Text narrow = parsed({0x01, 0xC1});
  narrow.set_textA(0, "y");
  EXPECT_EQ(narrow.get_textA(), "y");
  EXPECT_EQ(wide(narrow), u"y");
  Text units = parsed({0x01, 0xC1});
  units.set_textW(0, u"z");
  EXPECT_EQ(units.get_textA(), "z");
  EXPECT_EQ(wide(units), u"z");
  Text moved = parsed({0x01, 0xC1});
  const Text to = std::move(moved);
  EXPECT_EQ(wide(to), u"\u0421");
}

TEST(Text, TellsThatItIsAscii) {
  EXPECT_TRUE(Text().is_ascii());
  EXPECT_TRUE(parsed({'a', 0x7F, 0x01, 'b', 'c', 'd', 'e', 'f', 'g'}).is_ascii());
  EXPECT_TRUE(parsed({0x05, 'a'}).is_ascii());
  for (size_t i = 0; i < 17; ++i)
    for (const uint8_t byte : Bytes{0x80, 0xFF}) {
      Bytes bytes(17, 'a');
      bytes[i] = byte;
      const Text t = parsed(bytes);
      EXPECT_FALSE(t.is_ascii()) << i;
      EXPECT_EQ(wide(t).size(), 17u);
      EXPECT_FALSE(t.is_ascii()) << i;
    }
}

TEST(Text, IsCopiedWhole) {
  Text t(3, Bytes{0x03, 0xC1, 'x'}.data());
  t.set_textA(3, "\xC1y");
  const Text copy = t;
  t = Text();
  EXPECT_EQ(copy.get_textA(), "\xC1y");
  EXPECT_EQ(wide(copy), u"\u0391y");
  EXPECT_EQ(copy.get_char_set(), 3);
  EXPECT_EQ(copy.get_text_len(), 3u);
  EXPECT_EQ(t.get_char_set(), 0);
  EXPECT_EQ(t.get_text_len(), 0u);
}

TEST(Text, ComesBackFromXmlWithCharSetOneAndNoLength) {
  Text t(4, Bytes{0x03, 0xC1, 'x', 0xFE}.data());
  const Text back = through_xml(t);
  EXPECT_EQ(back.get_textW(), t.get_textW());
  EXPECT_EQ(back.get_textA(), t.get_textA());
  EXPECT_EQ(back.get_char_set(), 1);
  EXPECT_EQ(back.get_text_len(), 0u);
  // The length of the one that is loaded stays.
  EXPECT_EQ(through_xml(t, Text(2, Bytes{'a', 'b'}.data())).get_text_len(), 2u);
  EXPECT_EQ(through_xml(t, Text(2, Bytes{'a', 'b'}.data())).get_textW(), t.get_textW());
}

// Language codes

TEST(ISO639LanguageCode, HoldsAtMostThreeCharactersUpToANul) {
  const struct {
    Bytes bytes;
    const char* code;
  } rows[] = {
      {{'d', 'e', 0}, "de"}, {{'e', 'n', 'g', 'l'}, "eng"},        {{0, 'n', 'g'}, ""},
      {{'e', 0, 'g'}, "e"},  {{0xFF, 0x80, 0x01}, "\xFF\x80\x01"},
  };
  for (const auto& row : rows) {
    ISO639LanguageCode code;
    EXPECT_STREQ(code.c_strA(), "");
    code.set_textA("xyz");
    code.parse(row.bytes.data());
    EXPECT_STREQ(code.c_strA(), row.code);
    code.set_textA("xyz");
    code.set_textA(std::string(row.bytes.begin(), row.bytes.end()).c_str());
    EXPECT_STREQ(code.c_strA(), row.code);
  }
}

TEST(ISO639LanguageCode, ReadsNoCharacterBehindTheView) {
  const Bytes bytes{'e', 'n'};
  ISO639LanguageCode code;
  code.parse(view(bytes));
  EXPECT_STREQ(code.c_strA(), "en");
}

TEST(ISO639LanguageCode, ComesBackFromXml) {
  for (const char* text : {"", "d", "de", "deu", "\xE4\xF6\xFC"}) {
    ISO639LanguageCode code;
    code.set_textA(text);
    EXPECT_STREQ(through_xml(code).c_strA(), text);
  }
  const xml::Document document = xml::Document::from_text(R"(<d name="english"/>)");
  IXMLDOMNamedNodeMap* map = nullptr;
  ASSERT_EQ(static_cast<IXMLDOMNode*>(document.root())->get_attributes(&map), 0);
  ISO639LanguageCode code;
  EXPECT_EQ(GetAttributeValue(map, "name", code), 0);
  map->Release();
  EXPECT_STREQ(code.c_strA(), "eng");
}

TEST(CodeCharacters, AreThreeAsTheyStand) {
  EXPECT_STREQ(CodeCharacters().c_str(), "");
  const Bytes bytes{'e', 0, 'g', 'l'};
  const CodeCharacters code(bytes.data());
  EXPECT_EQ(std::string(code.c_str()), "e");
  EXPECT_EQ(code.c_str()[2], 'g');
  EXPECT_EQ(code.c_str()[3], '\0');
  const CodeCharacters cut(ByteView(bytes.data(), 1));
  EXPECT_EQ(std::string(cut.c_str(), 4), std::string("e\0\0\0", 4));
}
