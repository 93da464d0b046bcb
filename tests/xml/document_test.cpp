// XML text, written and read.

#include "tests/support/faces.h"
#include "tests/xml/nodes.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include <quillon/platform/internal/log_file.h>
#include <quillon/xml/document.h>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;

namespace {

// Written into an attribute, printed, and read back.
std::u16string there_and_back(const std::u16string& text) {
  Document document;
  set_attribute(document, document.create_root("d"), "a", text);
  return attribute(Document::from_text(document.to_text()), "a");
}

std::string refusal(const std::string& text) {
  return failure([&] { Document::from_text(text); });
}

struct TemporaryFile {
  std::filesystem::path path;
  explicit TemporaryFile(const std::string& name) : path(platform::executable_folder() + name) {}
  ~TemporaryFile() { std::filesystem::remove(path); }
};

}  // namespace

// Text

TEST(Document, IsEmptyAtFirst) {
  const Document document;
  EXPECT_EQ(document.root(), nullptr);
  EXPECT_EQ(document.to_text(), kDeclaration);
}

TEST(Document, WritesAnIndentedTree) {
  Document document;
  void* const root = document.create_root("pat");
  void* const list = document.append_element(root, "program_infos");
  set_attribute(document, document.append_element(list, "program_info"), "sid", u"1");
  document.append_element(list, "program_info");
  document.append_element(root, "last");
  EXPECT_EQ(document.to_text(), kDeclaration +
                                    "<pat>\n"
                                    "  <program_infos>\n"
                                    "    <program_info sid=\"1\" />\n"
                                    "    <program_info />\n"
                                    "  </program_infos>\n"
                                    "  <last />\n"
                                    "</pat>\n");
}

TEST(Document, ReadsWhatItWrote) {
  const std::string text = kDeclaration +
                           "<a z=\"1\" y=\"2\">\n"
                           "  <b>\n"
                           "    <c x=\"\" />\n"
                           "    <c />\n"
                           "  </b>\n"
                           "  <b m=\"n\" />\n"
                           "</a>\n";
  EXPECT_EQ(Document::from_text(text).to_text(), text);
}

TEST(Document, KeepsTheOrderOfAttributes) {
  std::string element = "<d";
  for (const char* name : {"zeta", "Alpha", "alpha", "m", "_1", "a.b", "B-2", "ä"})
    element += " " + std::string(name) + "=\"" + name + "\"";
  element += " />";
  EXPECT_EQ(plain(Document::from_text(element)), element);
}

TEST(Document, DropsWhiteSpaceCommentsAndDeclarations) {
  const Document document = Document::from_text(
      "\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- one -->\n<!DOCTYPE a>\n<a>\n\t<!-- two --> <b/>\r\n<?tool "
      "x?></a>\n"
      "<!-- three -->\n");
  EXPECT_EQ(plain(document), "<a><b /></a>");
}

TEST(Document, TellsChildrenAndNames) {
  const Document document = Document::from_text("<a> <b/> <c><d/></c> <b i='2'/> </a>");
  void* const root = document.root();
  EXPECT_EQ(document.name(root), "a");
  const std::vector<void*> children = document.children(root);
  ASSERT_EQ(children.size(), 3u);
  EXPECT_EQ(document.name(children[0]), "b");
  EXPECT_EQ(document.name(children[1]), "c");
  EXPECT_EQ(attribute(static_cast<IXMLDOMNode*>(children[2]), "i"), u"2");
  EXPECT_TRUE(document.children(children[0]).empty());
  EXPECT_EQ(document.name(document.children(children[1])[0]), "d");
}

TEST(Document, HasOneRoot) {
  Document document;
  document.create_root("a");
  EXPECT_EQ(failure([&] { document.create_root("b"); }), "-1: the document has a root element");
  EXPECT_EQ(plain(document), "<a />");
  Document read = Document::from_text("<a/>");
  EXPECT_EQ(failure([&] { read.create_root("b"); }), "-1: the document has a root element");
}

TEST(Document, Moves) {
  Document one;
  void* const root = one.create_root("a");
  Document two = std::move(one);
  two.append_element(root, "b");
  EXPECT_EQ(plain(two), "<a><b /></a>");
  two = Document::from_text("<c/>");
  EXPECT_EQ(plain(two), "<c />");
}

TEST(Document, RefusesMalformedTextWithLineAndColumn) {
  const struct {
    const char* text;
    const char* place;
  } rows[] = {
      {"", "line 1, column 1: "},
      {" \n ", "line 2, column 2: "},
      {"<!-- alone -->", "line 1, column 15: "},
      {"<a>", "line 1, column "},
      {"<a></b>", "line 1, column 6: "},
      {"<a>\n  <b>\n</a>", "line 3, column "},
      {"<a>\n  <b x=1/>\n</a>", "line 2, column 8: "},
      {"<a>\n\n<b x/></a>", "line 3, column 6: "},
      {"<a x='1'y='2'/>", "line 1, column "},
      {"<a x='1>\n", "line "},
      {"<1a/>", "line 1, column 2: "},
      {"</a>", "line 1, column "},
      {"<a/></a>", "line 1, column "},
      {"<a>\n<![CDATA[x</a>", "line 2, column "},
      {"<?xml version='1.0'", "line 1, column "},
      {"<a/>\n<b/>", "line 2, column 2: a second root element"},
      {"<a/><!-- -->\n\n  <a/>", "line 3, column 4: a second root element"},
  };
  for (const auto& row : rows) {
    const std::string expected = std::string("-1: malformed XML, ") + row.place;
    EXPECT_EQ(refusal(row.text).substr(0, expected.size()), expected) << row.text;
  }
  EXPECT_EQ(refusal(std::string("<a x='1\0'/>", 11)).substr(0, 19), "-1: malformed XML, ");
  EXPECT_EQ(refusal(std::string(1000, '<')).substr(0, 19), "-1: malformed XML, ");
}

TEST(Document, SurvivesEachCutOfAText) {
  const std::string text =
      "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY b 'c'>]><a x=\"&#x10FFFF;&amp;&b;\"><!-- d "
      "--><b><![CDATA[e]]>"
      "</b><\xC3\xA4/></a>";
  EXPECT_EQ(refusal(text), "nothing");
  for (size_t size = 0; size < text.size(); ++size)
    EXPECT_NE(refusal(text.substr(0, size)), "nothing") << size;
  for (size_t i = 0; i < text.size(); ++i)
    for (const char c : {'\0', '<', '>', '&', '"', '\xFF'}) {
      std::string damaged = text;
      damaged[i] = c;
      failure([&] { Document::from_text(damaged).to_text(); });
    }
}

TEST(Document, ExpandsNoEntities) {
  const Document document = Document::from_text(
      "<!DOCTYPE a [<!ENTITY b 'c'><!ENTITY d SYSTEM 'file:///etc/passwd'>]><a x='&b;' y='&d;'/>");
  EXPECT_EQ(attribute(document, "x"), u"&b;");
  EXPECT_EQ(attribute(document, "y"), u"&d;");
}

TEST(Document, ReadsCharacterReferences) {
  EXPECT_EQ(attribute(Document::from_text("<a x='&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#x1F4FA;&#9;'/>"), "x"),
            u"<>&\"'AB\U0001F4FA\t");
}

TEST(Document, LeavesTheWhiteSpaceOfAnAttributeAsItStands) {
  EXPECT_EQ(attribute(Document::from_text("<a x=' a\tb\nc\r\nd  e '/>"), "x"), u" a\tb\nc\nd  e ");
}

TEST(Document, ReadsOtherEncodings) {
  EXPECT_EQ(attribute(Document::from_text("<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE4'/>"), "x"),
            u"ä");
  const std::u16string wide = u"\uFEFF<a x='\u0391\U0001F4FA'/>";
  std::string little;
  std::string big;
  for (const char16_t unit : wide) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    little += {low, high};
    big += {high, low};
  }
  EXPECT_EQ(attribute(Document::from_text(little), "x"), u"\u0391\U0001F4FA");
  EXPECT_EQ(attribute(Document::from_text(big), "x"), u"\u0391\U0001F4FA");
}

TEST(Document, GivesEveryCharacterOfAnAttributeBack) {
  // Control characters and white space stand as references; nothing is normalized.
  for (char16_t c = 1; c < 0x20; ++c)
    for (const std::u16string& text : {std::u16string(1, c), u"a" + std::u16string(2, c) + u"b"})
      EXPECT_EQ(there_and_back(text), text) << static_cast<int>(c);
  for (const std::u16string text : {u"", u" ", u"  ", u" a  b ", u"\t\n\r", u"\r\n", u"\n\r", u"<&>\"'",
                                    u"]]>", u"&#9;", u"\u007F\u0080\u0085\u009F\u00A0\u2028\uFEFF\uFFFD"})
    EXPECT_EQ(there_and_back(text), text);
  // All of the first plane in one text.
  std::u16string all;
  for (uint32_t c = 1; c < 0x10000; ++c)
    if (c < 0xD800 || c > 0xDFFF) all += static_cast<char16_t>(c);
  EXPECT_EQ(there_and_back(all), all);
}

TEST(Document, WritesControlCharactersAsReferences) {
  Document document;
  set_attribute(document, document.create_root("d"), "a", u"\x01\t\n\r\x1F x");
  EXPECT_EQ(plain(document), "<d a=\"&#01;&#09;&#10;&#13;&#31; x\" />");
}

TEST(Document, EndsAnAttributeAtANul) {
  EXPECT_EQ(there_and_back(std::u16string(u"a\0b", 3)), u"a");
}

TEST(Document, KeepsSurrogatePairsAndReplacesHalves) {
  for (const std::u16string text : {u"\U00010000", u"\U0010FFFF", u"\U0001F4FA\U0001F4FB", u"a\U0001F4FAb"})
    EXPECT_EQ(there_and_back(text), text);
  const char16_t high = 0xD83D;
  const char16_t low = 0xDCFA;
  EXPECT_EQ(there_and_back({high}), u"\uFFFD");
  EXPECT_EQ(there_and_back({low}), u"\uFFFD");
  EXPECT_EQ(there_and_back({high, u'a'}), u"\uFFFDa");
  EXPECT_EQ(there_and_back({low, high}), u"\uFFFD\uFFFD");
  EXPECT_EQ(there_and_back({high, high, low}), u"\uFFFD\U0001F4FA");
  EXPECT_EQ(there_and_back({high, low, low}), u"\U0001F4FA\uFFFD");
  // The tree itself keeps what it is given.
  Document document;
  set_attribute(document, document.create_root("d"), "a", {low, high});
  EXPECT_EQ(attribute(document, "a"), (std::u16string{low, high}));
}

TEST(Document, ReplacesWhatIsNotUtf8) {
  const struct {
    std::string bytes;
    std::u16string text;
  } rows[] = {
      {"\xE4", u"\uFFFD"},              // Latin 1
      {"\x80", u"\uFFFD"},              // a continuation alone
      {"\xC3", u"\uFFFD"},              // cut
      {"\xE2\x82", u"\uFFFD"},          //
      {"\xC0\x80", u"\uFFFD"},          // longer than need be
      {"\xE0\x80\x80", u"\uFFFD"},      //
      {"\xED\xA0\x80", u"\uFFFD"},      // half of a surrogate pair
      {"\xF4\x90\x80\x80", u"\uFFFD"},  // behind the last character
      {"\xC3\xA4\xE2\x82\xAC", u"\u00E4\u20AC"},
      {"\xF0\x9F\x93\xBA", u"\U0001F4FA"},
      {"a\xFFz", u"a\uFFFDz"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(attribute(Document::from_text("<a x='" + row.bytes + "'/>"), "x"), row.text) << row.bytes;
}

TEST(Document, TakesNamesBeyondAscii) {
  Document document;
  void* const root = document.create_root("träger");
  document.append_element(root, "α");
  EXPECT_EQ(document.name(document.root()), "träger");
  EXPECT_EQ(plain(Document::from_text(document.to_text())), "<träger><α /></träger>");
}

TEST(Document, GoesThroughAFile) {
  const TemporaryFile file("document_test.xml");
  Document document;
  set_attribute(document, document.create_root("d"), "a", u"\t\u0391\n");
  document.to_file(file.path);
  const Document back = Document::from_file(file.path);
  EXPECT_EQ(back.to_text(), document.to_text());
  EXPECT_EQ(attribute(back, "a"), u"\t\u0391\n");
  std::ifstream in(file.path, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), document.to_text());
}

TEST(Document, NamesTheFileThatItCannotReadOrWrite) {
  const std::filesystem::path nowhere =
      std::filesystem::path(platform::executable_folder()) / "no such folder" / "d.xml";
  EXPECT_EQ(failure([&] { Document::from_file(nowhere); }), "-1: can't read " + nowhere.string());
  EXPECT_EQ(failure([&] { Document().to_file(nowhere); }), "-1: can't write " + nowhere.string());
  const std::filesystem::path folder = platform::executable_folder();
  EXPECT_EQ(failure([&] { Document::from_file(folder); }), "-1: can't read " + folder.string());
  EXPECT_EQ(failure([&] { Document().to_file(folder); }), "-1: can't write " + folder.string());
  const TemporaryFile file("document_bad.xml");
  std::ofstream(file.path) << "<a>\n<b></a>";
  EXPECT_EQ(failure([&] { Document::from_file(file.path); }).substr(0, 27), "-1: malformed XML, line 2, ");
}

// Size

TEST(Document, StandsAHundredThousandLevels) {
  constexpr int kLevels = 100000;
  std::string text;
  for (int i = 0; i < kLevels; ++i) text += "<a>";
  for (int i = 0; i < kLevels; ++i) text += "</a>";
  const Document read = Document::from_text(text);
  int depth = 0;
  for (std::vector<void*> at{read.root()}; !at.empty(); at = read.children(at[0])) ++depth;
  EXPECT_EQ(depth, kLevels);
  EXPECT_EQ(refusal(text.substr(0, text.size() - 4)).substr(0, 19), "-1: malformed XML, ");

  Document made;
  void* at = made.create_root("a");
  for (int i = 1; i < kLevels; ++i) at = made.append_element(at, "a");
}

TEST(Document, WritesAThousandLevels) {
  Document document;
  void* at = document.create_root("a");
  for (int i = 1; i < 1000; ++i) at = document.append_element(at, "a");
  EXPECT_EQ(Document::from_text(document.to_text()).to_text(), document.to_text());
}

TEST(Document, TakesChildrenInLinearTime) {
  // A square would make the longer run a hundred times as long.
  const auto seconds = [](int count) {
    const std::clock_t start = std::clock();
    Document document;
    void* const root = document.create_root("a");
    for (int i = 0; i < count; ++i) document.append_element(root, "item");
    const Document back = Document::from_text(document.to_text());
    EXPECT_EQ(back.children(back.root()).size(), static_cast<size_t>(count));
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  };
  seconds(1000);
  const double few = seconds(20000);
  EXPECT_LT(seconds(200000), few * 40 + 0.05);
}
