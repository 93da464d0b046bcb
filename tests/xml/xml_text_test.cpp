// How control characters are written and read.

#include "tests/support/xmllint.h"
#include "tests/xml/nodes.h"

#include <map>
#include <random>
#include <string>
#include <vector>

#include <quillon/platform/utf8.h>
#include <quillon/xml/internal/attribute_text.h>

using namespace quillon;
using namespace quillon::test;
using namespace quillon::xml;

namespace {

wide_string wide(const std::u16string& text) {
  return wide_string(text.begin(), text.end());
}

std::string written(const wide_string& text) {
  std::string out;
  append_attribute_text(text, out);
  return out;
}

// What is read from UTF-8, as UTF-16.
std::u16string as_read(const std::string& utf8) {
  const wide_string text = attribute_text(utf8);
  return std::u16string(text.begin(), text.end());
}

}  // namespace

TEST(XmlText, WritesEachControlCharacterAsAPrivateOne) {
  const struct {
    std::u16string text;
    const char* written;
  } rows[] = {
      {u"\x05", "\uE005"},
      {u"\x1F", "\uE01F"},
      {std::u16string(1, u'\0'), "\uE000\uE020"},
      {u"\t\n\r", "&#09;&#10;&#13;"},
      {u" \u007F", " \u007F"},
      {u"\uE000", "\uE000\uE000"},
      {u"\uE005", "\uE000\uE005"},
      {u"\uE009", "\uE000\uE009"},
      {u"\uE01F\uE020", "\uE000\uE01F\uE020"},
      {std::u16string(u"\0\uE000\0\x05", 4), "\uE000\uE020\uE000\uE000\uE000\uE020\uE005"},
      {u"\uFFFD\uFFFE\uFFFF", "\uFFFD\uFFFD\uFFFD"},
      {{u'a', 0xD800}, "a\uFFFD"},
  };
  for (const auto& row : rows) EXPECT_EQ(written(wide(row.text)), row.written);
}

TEST(XmlText, ReadsWhatNoWritingGivesAsItIs) {
  for (const std::u16string text :
       {u"\uE000", u"\uE000a", u"a\uE000", u"\uE009", u"\uE00A\uE00D", u"\uE020", u"\uE021"})
    EXPECT_EQ(as_read(platform::to_utf8(wide(text))), text);
  EXPECT_EQ(as_read("\uE000\uE000\uE000\uE020"), std::u16string(u"\uE000\0", 2));
  EXPECT_EQ(as_read("\uE001\uE000\uE001"), u"\x01\uE001");
}

// Any sequence of the characters that matter comes back, and no two are written alike.
TEST(XmlText, IsReadInOneWay) {
  const char16_t units[] = {
      kSystemDom ? u'b' : u'\0', 0x0005, 0x0009, 0xE000, 0xE005, 0xE009, 0xE01F, 0xE020, u'a'};
  constexpr size_t kUnits = std::size(units);
  std::map<std::string, std::u16string> seen;
  const auto look_at = [&](const std::u16string& text) {
    Document document;
    set_attribute(document, document.create_root("d"), "x", text);
    const std::string printed = document.to_text();
    ASSERT_EQ(attribute(Document::from_text(printed), "x"), text);
    const auto [place, is_new] = seen.emplace(printed, text);
    ASSERT_TRUE(is_new || place->second == text);
  };
  // All of up to four, then longer ones.
  for (size_t length = 0, count = 1; length <= 4; ++length, count *= kUnits)
    for (size_t number = 0; number < count; ++number) {
      std::u16string text;
      for (size_t i = 0, rest = number; i < length; ++i, rest /= kUnits) text += units[rest % kUnits];
      look_at(text);
    }
  std::mt19937 random(1);
  for (int i = 0; i < 5000; ++i) {
    std::u16string text;
    for (size_t left = random() % 40; left > 0; --left) text += units[random() % kUnits];
    look_at(text);
  }
  EXPECT_GT(seen.size(), 7000u);
}

TEST(XmlText, IsTakenByAnotherReader) {
  Document document;
  void* const root = document.create_root("d");
  std::u16string all;
  for (uint32_t unit = 0; unit < 0x10000; ++unit) all += static_cast<char16_t>(unit);
  set_attribute(document, root, "all", all);
  for (uint32_t unit = 0; unit < 0x10000; unit += unit < 0x100 || unit > 0xD7F0 ? 1 : 251)
    set_attribute(document, document.append_element(root, "e"), "x",
                  std::u16string(1, static_cast<char16_t>(unit)));
  expect_taken_by_xmllint({document.to_text()});
}
