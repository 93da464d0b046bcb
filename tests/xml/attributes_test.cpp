// Values to attributes and back.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include <quillon/xml/attributes.h>
#include <quillon/xml/internal/bstr.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr long kFail = -2147467259;

// One element, its attributes written and read.
class Element {
 public:
  Element() : document_(), root_(document_.create_root("d")) {}
  // An element with the attribute a="text".
  explicit Element(const std::string& text)
      : document_(xml::Document::from_text("<d a=\"" + text + "\"/>")), root_(document_.root()) {}

  template <class... Value>
  long add(const XmlName& name, const Value&... value) {
    return AddAttribute(static_cast<IXMLDOMDocument*>(document_.dom()), static_cast<IXMLDOMElement*>(root_),
                        name, value...);
  }
  template <class... Value>
  long get(const XmlName& name, Value&&... value) const {
    IXMLDOMNamedNodeMap* map = nullptr;
    EXPECT_EQ(static_cast<IXMLDOMNode*>(root_)->get_attributes(&map), 0);
    const long result = GetAttributeValue(map, name, std::forward<Value>(value)...);
    map->Release();
    return result;
  }
  std::string text() const { return plain(document_); }

 private:
  xml::Document document_;
  void* root_;
};

// The text of the one attribute that is written for the value.
template <class... Value>
std::string written(const Value&... value) {
  Element element;
  EXPECT_EQ(element.add("a", value...), 0);
  const std::string text = element.text();
  const size_t start = std::string("<d a=\"").size();
  return text.substr(start, text.size() - start - std::string("\" />").size());
}

// What the text reads as.
template <class Value>
Value read(const std::string& text, Value value = {}) {
  EXPECT_EQ(Element(text).get("a", value), 0) << text;
  return value;
}

// What comes back of a value that was written.
template <class Value, class Back = Value>
Back through(const Value& value, Back back = {}) {
  Element element;
  EXPECT_EQ(element.add("a", value), 0);
  EXPECT_EQ(element.get("a", back), 0);
  return back;
}

std::string hex(const Bytes& bytes) {
  std::string out;
  bin2str(bytes, out);
  return out;
}

}  // namespace

// Numbers

TEST(Attributes, WriteNumbersAsSignedDecimals) {
  EXPECT_EQ(written(204), "204");
  EXPECT_EQ(written(-1), "-1");
  EXPECT_EQ(written(INT_MIN), "-2147483648");
  EXPECT_EQ(written(INT_MAX), "2147483647");
  EXPECT_EQ(written(0x80000000u), "-2147483648");
  EXPECT_EQ(written(0xFFFFFFFFu), "-1");
  EXPECT_EQ(written(0xFFFFFFFFul), "-1");
  EXPECT_EQ(written(0x7FFFFFFFul), "2147483647");
  EXPECT_EQ(written(ULONG_MAX), "-1");  // the low 32 bits
  EXPECT_EQ(written(static_cast<unsigned char>(200)), "200");
  EXPECT_EQ(written(true), "1");
  EXPECT_EQ(written(false), "0");
}

TEST(Attributes, GiveNumbersBack) {
  for (const int value : {0, 1, -1, 204, 0x7FFFFFFF, INT_MIN}) EXPECT_EQ(through(value), value);
  for (const unsigned value : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(through(value), value);
    EXPECT_EQ(through<unsigned long>(value), value);  // 32 bits wherever long has 64
    EXPECT_EQ((through<unsigned, int>(value)), static_cast<int>(value));
    EXPECT_EQ((through<int, unsigned>(static_cast<int>(value))), value);
    EXPECT_EQ((through<int, unsigned long>(static_cast<int>(value))), value);
  }
  for (int value = 0; value < 256; ++value) EXPECT_EQ(through(static_cast<unsigned char>(value)), value);
  EXPECT_EQ(through(true), true);
  EXPECT_EQ(through(false, true), false);
}

TEST(Attributes, KeepTheLowBitsOfAnIntThatIsReadAsAByte) {
  for (const int value : {0x1FF, 0x100, -1, 300, 44})
    EXPECT_EQ((through<int, unsigned char>(value)), static_cast<unsigned char>(value));
}

TEST(Attributes, ReadNumbersAsFarAsTheyGo) {
  const struct {
    const char* text;
    int as_int;
    unsigned as_unsigned;
  } rows[] = {
      {"", 0, 0},
      {"x", 0, 0},
      {"-", 0, 0},
      {"+-5", 0, 0},
      {"12x", 12, 12},
      {"1 2", 1, 1},
      {"\t 7", 7, 7},
      {"+5", 5, 5},
      {"-5", -5, 0xFFFFFFFB},
      {"007", 7, 7},
      {"0x10", 0, 0},
      {"1.9", 1, 1},
      {"-1", -1, 0xFFFFFFFF},
      {"2147483647", INT_MAX, 0x7FFFFFFF},
      {"-2147483648", INT_MIN, 0x80000000},
      {"2147483648", INT_MAX, 0x80000000},
      {"4294967295", INT_MAX, 0xFFFFFFFF},
      {"4294967296", INT_MAX, 0xFFFFFFFF},
      {"-4294967295", INT_MIN, 1},
      {"-99999999999999999999999999", INT_MIN, 0xFFFFFFFF},
      {"99999999999999999999999999", INT_MAX, 0xFFFFFFFF},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(read<int>(row.text, 99), row.as_int) << row.text;
    EXPECT_EQ(read<unsigned>(row.text, 99), row.as_unsigned) << row.text;
    EXPECT_EQ(read<unsigned long>(row.text, 99), row.as_unsigned) << row.text;
    EXPECT_EQ(read<unsigned char>(row.text, 99), static_cast<unsigned char>(row.as_int)) << row.text;
    EXPECT_EQ(read<bool>(row.text), row.as_int == 1) << row.text;
  }
}

TEST(Attributes, ReadABoolAsTrueFromOneAlone) {
  for (const char* text : {"1", "01", " 1", "+1", "1x"}) EXPECT_TRUE(read<bool>(text)) << text;
  for (const char* text : {"0", "2", "-1", "11", "true", ""}) EXPECT_FALSE(read<bool>(text, true)) << text;
}

TEST(Attributes, WriteADoubleWithUpToFifteenDigitsAndAPointInAnyLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  // Where the system has it, a locale with a decimal comma.
  std::setlocale(LC_ALL, "de_DE.UTF-8");
  const bool comma = *std::localeconv()->decimal_point == ',';
  const struct {
    double value;
    const char* text;
  } rows[] = {
      {0, "0"},
      {-0.0, "-0"},
      {1, "1"},
      {0.1, "0.1"},
      {-2.5, "-2.5"},
      {1.0 / 3, "0.333333333333333"},
      {123456.789, "123456.789"},
      {1e15, "1e+15"},
      {123456789012345.0, "123456789012345"},
      {123456789012345678.0, "1.23456789012346e+17"},
      {1e-5, "1e-05"},
      {0.0001, "0.0001"},
      {1e300, "1e+300"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(written(row.value), row.text) << comma;
    char printed[40];
    std::snprintf(printed, sizeof printed, "%.15g", row.value);
    if (!comma) {
      EXPECT_STREQ(printed, row.text);
    }
    EXPECT_NEAR(through(row.value), row.value, std::abs(row.value) * 1e-14);
  }
  EXPECT_EQ(read<double>("2.5"), 2.5);
  EXPECT_EQ(read<double>("2,5"), 2);
  std::setlocale(LC_ALL, before.c_str());
}

TEST(Attributes, ReadADoubleAsFarAsItGoes) {
  EXPECT_EQ(read<double>("", 9), 0);
  EXPECT_EQ(read<double>("x", 9), 0);
  EXPECT_EQ(read<double>(" \t+1.5e2x"), 150);
  EXPECT_EQ(read<double>("-.5"), -0.5);
  EXPECT_EQ(read<double>("+-5", 9), 0);
  EXPECT_EQ(read<double>("-+5", 9), 0);
  EXPECT_EQ(read<double>("7."), 7);
  EXPECT_EQ(read<double>("0x1.8p3"), 12);
  EXPECT_EQ(read<double>("-0X10z"), -16);
  EXPECT_EQ(read<double>("0x"), 0);
  EXPECT_FALSE(std::signbit(read<double>("-x")));
  EXPECT_TRUE(std::isinf(through(std::numeric_limits<double>::infinity())));
  EXPECT_TRUE(std::isnan(through(std::numeric_limits<double>::quiet_NaN())));
}

TEST(Attributes, ReadADoubleThatIsOutOfRangeAsInfinityOrZero) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::string zeros(400, '0');
  for (const std::string text : {"1e309", "1.8e308", "1e+99999999999999999999", "0x1p2000"}) {
    EXPECT_EQ(read<double>(text), infinity) << text;
    EXPECT_EQ(read<double>("-" + text), -infinity) << text;
  }
  EXPECT_EQ(read<double>("7" + zeros), infinity);
  EXPECT_EQ(read<double>("." + zeros + "7e800"), infinity);
  for (const std::string text : {"1e-400", "1e-99999999999999999999", "0x1p-2000"})
    EXPECT_EQ(read<double>(text, 9), 0) << text;
  EXPECT_EQ(read<double>("0." + zeros + "7", 9), 0);
  EXPECT_EQ(read<double>("7" + zeros + "e-800", 9), 0);
  EXPECT_EQ(read<double>("0." + zeros + "7e402"), 70);
  EXPECT_EQ(read<double>("7" + zeros + "e-400"), 7);
}

TEST(Attributes, GiveTheLimitsOfADoubleBack) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {Limits::max(), Limits::lowest(), std::nextafter(Limits::max(), 0.0)})
    EXPECT_EQ(through(value), value);
  EXPECT_EQ(written(Limits::max()), "1.7976931348623157e+308");
  EXPECT_EQ(written(1.7e308), "1.7e+308");
  EXPECT_EQ(through(Limits::denorm_min()), Limits::denorm_min());
}

// The number as the C library reads it, in its own locale.
TEST(Attributes, ReadADoubleAsTheCLibraryDoes) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  std::setlocale(LC_ALL, "C");
  std::mt19937 random(12);
  const std::string_view alphabet = "0123456789..eE+-xXpPaf \t";
  for (int n = 0; n < 20000; ++n) {
    std::string text;
    for (size_t i = random() % 12; i > 0; --i) text += alphabet[random() % alphabet.size()];
    char* end = nullptr;
    double expected = std::strtod(text.c_str(), &end);
    if (end == text.c_str()) expected = 0;  // no number: libraries differ in the sign
    const double value = read<double>(text, 9);
    EXPECT_TRUE(value == expected && std::signbit(value) == std::signbit(expected))
        << '"' << text << "\": " << value << ", not " << expected;
  }
  std::setlocale(LC_ALL, before.c_str());
}

// Text

TEST(Attributes, WriteTextAsItStands) {
  EXPECT_EQ(written(std::string("abc")), "abc");
  EXPECT_EQ(written("abc"), "abc");
  EXPECT_EQ(written(std::string()), "");
  EXPECT_EQ(written(""), "");
  EXPECT_EQ(written(std::string("a\0b", 3)), "a");
  EXPECT_EQ(written("a\xE4\x80"), "aä€");
  EXPECT_EQ(written("<&\">'"), "&lt;&amp;&quot;>'");
}

TEST(Attributes, GiveTextBackThroughTheAnsiPage) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(through(all), all);
  EXPECT_EQ(read<std::string>("aäα", "before"), "a\xE4?");
  EXPECT_EQ(read<std::string>("", "before"), "");
  ASSERT_TRUE(set_ansi_code_page(28597));
  EXPECT_EQ(written("\xC1\xE2"), "Αβ");
  EXPECT_EQ(read<std::string>("Αβä"), "\xC1\xE2?");
  set_ansi_code_page(1252);
}

TEST(Attributes, ReadTextUpToItsFirstNul) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  const uint16_t units[] = {'1', '2', 0, '3', '4'};
  value.bstrVal = xml::try_make_text(units, 5);
  Element element;
  EXPECT_EQ(element.add("a", value), 0);
  VariantClear(&value);
  std::string narrow;
  Text text;
  Bytes bytes;
  char buffer[5] = "xxxx";
  EXPECT_EQ(element.get("a", narrow) + element.get("a", text) + element.get("a", bytes), 0);
  EXPECT_EQ(element.get("a", buffer, 5), 0);
  EXPECT_EQ(narrow, "12");
  EXPECT_EQ(text.get_textA(), "12");
  EXPECT_EQ(text.get_textW().size(), 2u);
  EXPECT_EQ(bytes, Bytes{0x12});
  EXPECT_STREQ(buffer, "12");
}

TEST(Attributes, WriteTheWideFormOfAText) {
  Text t;
  t.set_textW(0, u"\u0391 \u20AC \U0001F4FA");
  EXPECT_EQ(written(t), "Α € 📺");
  const Text back = through(t);
  EXPECT_EQ(back.get_textW(), t.get_textW());
  EXPECT_EQ(back.get_textA(), "? \x80 ??");
  EXPECT_EQ(back.get_char_set(), 1);
  EXPECT_EQ(back.get_text_len(), 0u);
}

TEST(Attributes, ReadALanguageCodeOfAtMostThreeCharacters) {
  ISO639LanguageCode code;
  code.set_textA("deu");
  EXPECT_EQ(written(code), "deu");
  EXPECT_STREQ(through(code).c_strA(), "deu");
  EXPECT_STREQ(read<ISO639LanguageCode>("english").c_strA(), "eng");
  EXPECT_STREQ(read<ISO639LanguageCode>("", code).c_strA(), "");
}

TEST(Attributes, ReadTextIntoABufferWithANulAtItsEnd) {
  const struct {
    const char* text;
    std::string buffer;
  } rows[] = {
      {"", std::string(5, '\0')},
      {"ab", std::string("ab\0\0\0", 5)},
      {"abcd", std::string("abcd\0", 5)},
      {"abcde", std::string("abcd\0", 5)},
      {"abcdefgh", std::string("abcd\0", 5)},
      {"ä", std::string("\xE4\0\0\0\0", 5)},
  };
  for (const auto& row : rows) {
    char buffer[] = {'x', 'x', 'x', 'x', 'x', '!'};
    EXPECT_EQ(Element(row.text).get("a", buffer, 5), 0);
    EXPECT_EQ(std::string(buffer, 5), row.buffer) << row.text;
    EXPECT_EQ(buffer[5], '!');
  }
  char buffer[] = {'x', 'y', 'z'};
  EXPECT_EQ(Element("ab").get("missing", buffer, 3), kFail);
  EXPECT_EQ(std::string(buffer, 3), std::string("xy\0", 3));
  char one[] = {'x', '!'};
  EXPECT_EQ(Element("ab").get("a", one, 1), 0);
  EXPECT_EQ(std::string(one, 2), std::string("\0!", 2));
  for (const int size : {0, -1}) EXPECT_EQ(Element("ab").get("a", one, size), kFail);
  EXPECT_EQ(one[1], '!');
}

// Bytes and addresses

TEST(Attributes, WriteBytesAsLowerCaseHexadecimal) {
  const Bytes bytes{0x00, 0xA0, 0xC9, 0x12, 0x34, 0xAB};
  EXPECT_EQ(written(bytes), "00a0c91234ab");
  EXPECT_EQ(written(bytes.data(), 6), "00a0c91234ab");
  EXPECT_EQ(written(bytes.data(), 1), "00");
  EXPECT_EQ(written(bytes.data(), 0), "");
  EXPECT_EQ(written(bytes.data(), -1), "");
  EXPECT_EQ(written(Bytes{}), "");
}

TEST(Attributes, WriteAndReadAddresses) {
  MACAddress mac;
  IPv4Address v4;
  IPv6Address v6;
  for (int i = 0; i < 16; ++i) v6.get_addr()[i] = static_cast<uint8_t>(i * 17);
  std::copy_n(v6.get_addr() + 10, 6, mac.get_addr());
  std::copy_n(v6.get_addr() + 1, 4, v4.get_addr());
  EXPECT_EQ(written(mac), "aabbccddeeff");
  EXPECT_EQ(written(v4), "11223344");
  EXPECT_EQ(written(v6), "00112233445566778899aabbccddeeff");
  EXPECT_EQ(through(mac).text(), mac.text());
  EXPECT_EQ(through(v4).text(), v4.text());
  EXPECT_EQ(through(v6).text(), v6.text());
}

TEST(Attributes, FillOnlyTheFirstBytesOfAnAddressFromAShortTextAndCutALongOne) {
  IPv4Address v4;
  v4.parse(Bytes{1, 2, 3, 4}.data());
  EXPECT_EQ(read("a0B0", v4).text(), "160.176.3.4");
  EXPECT_EQ(read("", v4).text(), "1.2.3.4");
  EXPECT_EQ(read("a0b0c", v4).text(), "1.2.3.4");  // odd
  EXPECT_EQ(read("0a0b0c0d0e0f", v4).text(), "10.11.12.13");
  EXPECT_EQ(read<MACAddress>("010203040506070809").text(), "01:02:03:04:05:06");
  EXPECT_EQ(read<IPv6Address>("ff").text(), "ff00:0000:0000:0000:0000:0000:0000:0000");
}

TEST(Attributes, ReadBytesIntoABuffer) {
  uint8_t buffer[] = {1, 2, 3, 0x99};
  EXPECT_EQ(Element("aabb").get("a", static_cast<uint8_t*>(buffer), 3), 0);
  EXPECT_EQ(hex({buffer, buffer + 4}), "aabb0399");
  EXPECT_EQ(Element("0102030405").get("a", static_cast<uint8_t*>(buffer), 3), 0);
  EXPECT_EQ(hex({buffer, buffer + 4}), "01020399");
  EXPECT_EQ(Element("ffffff").get("a", static_cast<uint8_t*>(buffer), 0), 0);
  EXPECT_EQ(Element("fff").get("a", static_cast<uint8_t*>(buffer), 3), 0);
  EXPECT_EQ(hex({buffer, buffer + 4}), "01020399");
}

TEST(Attributes, AddToAVectorOfBytes) {
  Bytes all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<uint8_t>(byte));
  EXPECT_EQ(through(all), all);
  EXPECT_EQ(through(Bytes{}), Bytes{});
  EXPECT_EQ(through(Bytes{5, 6}, Bytes{1}), (Bytes{1, 5, 6}));
  EXPECT_EQ(read<Bytes>("ABcdEF"), (Bytes{0xAB, 0xCD, 0xEF}));
  EXPECT_EQ(read<Bytes>("abc", {1}), Bytes{1});  // odd: nothing, and no failure
}

TEST(Attributes, DoNotGiveVectorsOfIntegersBackAsTheyWere) {
  const std::vector<int> ints{0x0000ABCD, 0x0000EF01};
  EXPECT_EQ(written(ints), "0000abcd0000ef01");
  EXPECT_EQ(through(ints), (std::vector<int>{0x0000, 0xABCD, 0x0000, 0xEF01}));
  const std::vector<unsigned long> longs{0x89ABCDEF, ULONG_MAX};
  EXPECT_EQ(written(longs), "89abcdefffffffff");
  EXPECT_EQ(through(longs), (std::vector<unsigned long>{0x89AB, 0xCDEF, 0xFFFF, 0xFFFF}));
  EXPECT_EQ(written(std::vector<int>{-1, INT_MIN}), "ffffffff80000000");
  EXPECT_EQ(written(std::vector<int>{}), "");
  EXPECT_EQ(through(std::vector<int>{}), std::vector<int>{});
  EXPECT_EQ(read("12345678", std::vector<int>{7}), (std::vector<int>{7, 0x1234, 0x5678}));
  for (const char* text : {"1", "12", "123", "12345", "1234567"}) {
    EXPECT_TRUE(read<std::vector<int>>(text).empty());
    EXPECT_TRUE(read<std::vector<unsigned long>>(text).empty());
  }
}

TEST(Attributes, PutACallersVariantAsItIs) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = -7;
  EXPECT_EQ(written(value), "-7");
  value.vt = VT_R8;
  value.dblVal = 2.5;
  EXPECT_EQ(written(value), "2.5");
  value.vt = VT_BSTR;
  value.bstrVal = xml::try_make_text("text"_w, 4);
  EXPECT_EQ(written(value), "text");
  EXPECT_EQ(written(value), "text");  // the caller's until the caller clears it
  EXPECT_EQ(VariantClear(&value), 0);
}

TEST(Attributes, LeaveTheValueOfAMissingAttribute) {
  const Element element("1");
  int i = 5;
  unsigned u = 6;
  unsigned long ul = 7;
  unsigned char c = 8;
  bool b = true;
  double d = 9;
  std::string s = "s";
  Text t;
  t.set_textA(4, "t");
  ISO639LanguageCode code;
  code.set_textA("deu");
  MACAddress mac;
  IPv4Address v4;
  IPv6Address v6;
  mac.get_addr()[0] = v4.get_addr()[0] = v6.get_addr()[0] = 1;
  uint8_t buffer[] = {1, 2};
  Bytes bytes{3};
  std::vector<int> ints{4};
  std::vector<unsigned long> longs{5};
  for (const long result :
       {element.get("b", i), element.get("b", u), element.get("b", ul), element.get("b", c),
        element.get("b", b), element.get("b", d), element.get("b", s), element.get("b", t),
        element.get("b", code), element.get("b", mac), element.get("b", v4), element.get("b", v6),
        element.get("b", static_cast<uint8_t*>(buffer), 2), element.get("b", bytes), element.get("b", ints),
        element.get("b", longs), element.get("A", i), element.get("", i)})
    EXPECT_EQ(result, kFail);
  EXPECT_EQ(i, 5);
  EXPECT_EQ(u, 6u);
  EXPECT_EQ(ul, 7u);
  EXPECT_EQ(c, 8);
  EXPECT_EQ(b, true);
  EXPECT_EQ(d, 9);
  EXPECT_EQ(s, "s");
  EXPECT_EQ(t.get_textA(), "t");
  EXPECT_EQ(t.get_char_set(), 4);
  EXPECT_STREQ(code.c_strA(), "deu");
  EXPECT_EQ(mac.text(), "01:00:00:00:00:00");
  EXPECT_EQ(v4.text(), "1.0.0.0");
  EXPECT_EQ(v6.text(), "0100:0000:0000:0000:0000:0000:0000:0000");
  EXPECT_EQ(hex({buffer, buffer + 2}), "0102");
  EXPECT_EQ(bytes, Bytes{3});
  EXPECT_EQ(ints, std::vector<int>{4});
  EXPECT_EQ(longs, std::vector<unsigned long>{5});
}

TEST(Attributes, KeepTheirOrderAndReplaceOneOfTheSameName) {
  Element element;
  element.add("z", 1);
  element.add("a", 2);
  element.add("m", Bytes{});
  element.add("a", std::string("new"));
  EXPECT_EQ(element.text(), R"(<d z="1" a="new" m="" />)");
}

TEST(XmlName, TakesAnyKindOfTextAndLength) {
  for (const size_t size : {1u, 2u, 58u, 59u, 60u, 61u, 500u}) {
    const std::string narrow(size, 'n');
    const std::u16string wide(size, u'n');
    const wide_string units(size, 'n');
    for (const XmlName& name : {XmlName(narrow.c_str()), XmlName(wide.c_str()), XmlName(units.c_str())}) {
      EXPECT_EQ(SysStringLen(name.get()), size);
      EXPECT_EQ(xml::units_of(name.get()), units);
      Element element;
      EXPECT_EQ(element.add(name, 5), 0);
      int value = 0;
      EXPECT_EQ(element.get(narrow.c_str(), value), 0);
      EXPECT_EQ(value, 5);
    }
  }
  EXPECT_EQ(SysStringLen(XmlName("").get()), 0u);
}

// Hexadecimal text

TEST(Bin2str, AddsToItsText) {
  std::string text = "before";
  const uint8_t bytes[] = {0x0F, 0xF0};
  bin2str(bytes, text, 2);
  EXPECT_EQ(text, "before0ff0");
  for (const int length : {0, -1, INT_MIN}) bin2str(nullptr, text, length);
  bin2str(Bytes{}, text);
  bin2str(std::vector<int>{}, text);
  bin2str(std::vector<unsigned long>{}, text);
  EXPECT_EQ(text, "before0ff0");
  bin2str(Bytes{0xA5}, text);
  bin2str(std::vector<int>{1}, text);
  bin2str(std::vector<unsigned long>{0xFEDCBA98}, text);
  EXPECT_EQ(text, "before0ff0a500000001fedcba98");
}

TEST(Str2bin, ReadsUnitsOfTwoAndFourDigits) {
  Bytes bytes{9};
  str2bin("00fF1a", bytes);
  EXPECT_EQ(bytes, (Bytes{9, 0x00, 0xFF, 0x1A}));
  std::vector<int> ints;
  str2bin("00fF1a2b", ints);
  EXPECT_EQ(ints, (std::vector<int>{0x00FF, 0x1A2B}));
  std::vector<unsigned long> longs;
  str2bin("ffff", longs);
  EXPECT_EQ(longs, std::vector<unsigned long>{0xFFFF});
}

TEST(Str2bin, RefusesTextThatIsNoWholeNumberOfUnits) {
  Bytes bytes;
  uint8_t buffer[] = {7, 7};
  std::vector<int> ints;
  std::vector<unsigned long> longs;
  for (const char* text : {"", "1", "123", "12345"}) {
    str2bin(text, bytes);
    str2bin(text, static_cast<uint8_t*>(buffer), 2);
  }
  for (const char* text : {"", "1", "12", "123", "12345", "123456"}) {
    str2bin(text, ints);
    str2bin(text, longs);
  }
  EXPECT_TRUE(bytes.empty() && ints.empty() && longs.empty());
  EXPECT_EQ(buffer[0], 7);
}

TEST(Str2bin, StopsAtItsLimit) {
  uint8_t buffer[] = {1, 2, 3};
  for (const int limit : {0, -1}) str2bin("aabb", buffer, limit);
  EXPECT_EQ(hex({buffer, buffer + 3}), "010203");
  str2bin("aabbccdd", buffer, 2);
  EXPECT_EQ(hex({buffer, buffer + 3}), "aabb03");
  str2bin("ee", buffer, 3);
  EXPECT_EQ(hex({buffer, buffer + 3}), "eebb03");
}

TEST(Str2bin, DoesNotDetectWhatIsNoDigit) {
  const struct {
    std::string text;
    Bytes bytes;
  } rows[] = {
      {"zz", {0}},                     // nothing scanned: what was there stays
      {"12zz34", {0x12, 0x12, 0x34}},  // the unit before it
      {"1g2-", {0x01, 0x02}},          // as far as the scan goes
      {" 1-1+1", {0x01, 0xFF, 0x01}},  // blanks and signs are the scan's business
      {std::string("12\0\0", 4), {0x12, 0x12}},
      {"\xE4\xE4", {0}},
  };
  for (const auto& row : rows) {
    Bytes bytes;
    str2bin(row.text, bytes);
    EXPECT_EQ(bytes, row.bytes) << row.text;
  }
  std::vector<int> ints;
  str2bin("12g4zzzz-001", ints);
  EXPECT_EQ(ints, (std::vector<int>{0x12, 0x12, -1}));
}
