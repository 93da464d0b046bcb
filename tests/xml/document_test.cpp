// XML text, written and read.

#include "tests/support/faces.h"
#include "tests/xml/nodes.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <quillon/platform/internal/log_file.h>
#include <quillon/platform/utf8.h>
#include <quillon/xml/document.h>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;
using quillon::xml::Ref;

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

TEST(Document, EscapesWhatAnAttributeCannotHold) {
  const auto written = [](const std::u16string& text) {
    Document document;
    set_attribute(document, document.create_root("d"), "a", text);
    return document.to_text();
  };
  const auto expect = [&](const std::u16string& text, const std::string& value) {
    EXPECT_EQ(written(text), kDeclaration + "<d a=\"" + value + "\" />\n");
  };
  std::u16string ascii;
  for (char16_t c = 0x20; c <= 0x7F; ++c) ascii += c;
  expect(ascii,
         " !&quot;#$%&amp;'()*+,-./0123456789:;&lt;=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
         "abcdefghijklmnopqrstuvwxyz{|}~\x7F");
  expect(u"\t\n\r", "&#09;&#10;&#13;");
  expect(u"  \u0080\u0085\u00A0\u00E4\u2028\u20AC\uFEFF\uFFFD\U0001F4FA\U0010FFFF ",
         "  \u0080\u0085\u00A0\u00E4\u2028\u20AC\uFEFF\uFFFD\U0001F4FA\U0010FFFF ");
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
  if (kSystemDom) GTEST_SKIP() << "the system has words of its own";
  const struct {
    const char* text;
    const char* place;
  } rows[] = {
      {"", "line 1, column 1: no element found"},
      {" \n ", "line 2, column 2: no element found"},
      {"<!-- alone -->", "line 1, column 15: no element found"},
      {"<a>", "line 1, column 4: no element found"},
      {"<a></b>", "line 1, column 6: mismatched tag"},
      {"<a>\n  <b>\n</a>", "line 3, column 3: mismatched tag"},
      {"<a>\n  <b x=1/>\n</a>", "line 2, column 8: not well-formed"},
      {"<a>\n\n<b x/></a>", "line 3, column 5: not well-formed"},
      {"<a x='1'y='2'/>", "line 1, column 9: not well-formed"},
      {"<a x='1>\n", "line 1, column 1: unclosed token"},
      {"<1a/>", "line 1, column 2: not well-formed"},
      {"<a>\n<![CDATA[x</a>", "line 2, column 15: unclosed CDATA section"},
      {"<?xml version='1.0'", "line 1, column 1: unclosed token"},
      {"<a/>\n<b/>", "line 2, column 1: junk after document element"},
      {"<a/><!-- -->\n\n  <a/>", "line 3, column 3: junk after document element"},
      {"<a>\r\n<b x='1' x='2'/></a>", "line 2, column 10: duplicate attribute"},
      {"<\u00E4 x='\u20AC'>&b;</\u00E4>", "line 1, column 10: undefined entity"},  // characters, not bytes
      {"<a>&b;</a>", "line 1, column 4: undefined entity"},
      {"<!DOCTYPE a [<!ENTITY b 'c'>]><a/>",
       "line 1, column 13: a document type declaration with declarations of its own"},
      {"<!DOCTYPE a SYSTEM 'b'>\n<a x='&c;'/>",
       "line 2, column 1: a reference to an entity that is not known"},
      {"<!DOCTYPE a SYSTEM 'b'>\n<a>&c;</a>", "line 2, column 4: a reference to an entity that is not known"},
      {"<?xml version='1.0' encoding='windows-1252'?>\n<a/>", "line 1, column 31: unknown encoding"},
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
      "<?xml version=\"1.0\"?><!DOCTYPE a SYSTEM 'b'><a x=\"&#x10FFFF;&amp;\"><!-- d "
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

TEST(Document, ReadsCharacterReferences) {
  EXPECT_EQ(attribute(Document::from_text("<a x='&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#x1F4FA;&#9;'/>"), "x"),
            u"<>&\"'AB\U0001F4FA\t");
}

TEST(Document, MakesBlanksOfTheWhiteSpaceOfAnAttribute) {
  EXPECT_EQ(attribute(Document::from_text("<a x=' a\tb\nc\r\nd  e&#9;&#10;&#13;'/>"), "x"),
            u" a b c d  e\t\n\r");
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
  // Control characters and white space are references; nothing is normalized.
  for (char16_t c = 1; c < 0x20; ++c)
    for (const std::u16string& text : {std::u16string(1, c), u"a" + std::u16string(2, c) + u"b"})
      EXPECT_EQ(there_and_back(text), text) << static_cast<int>(c);
  for (const std::u16string text : {u"", u" ", u"  ", u" a  b ", u"\t\n\r", u"\r\n", u"\n\r", u"<&>\"'",
                                    u"]]>", u"&#9;", u"\u007F\u0080\u0085\u009F\u00A0\u2028\uFEFF\uFFFD"})
    EXPECT_EQ(there_and_back(text), text);
  // All of the first plane in one text.
  std::u16string all;
  for (uint32_t c = 1; c < 0x10000; ++c)
    if ((c < 0xD800 || c > 0xDFFF) && c < 0xFFFE) all += static_cast<char16_t>(c);
  EXPECT_EQ(there_and_back(all), all);
  EXPECT_EQ(there_and_back(u"a\uFFFE\uFFFFb"), u"a\uFFFD\uFFFDb");
}

TEST(Document, WritesControlCharactersAsPrivateOnes) {
  Document document;
  set_attribute(document, document.create_root("d"), "a", u"\x01\t\n\r\x1F x");
  EXPECT_EQ(plain(document), "<d a=\"\uE001&#09;&#10;&#13;\uE01F x\" />");
  // The tree has them as they are, before and after.
  EXPECT_EQ(attribute(document, "a"), u"\x01\t\n\r\x1F x");
  EXPECT_EQ(attribute(Document::from_text(document.to_text()), "a"), u"\x01\t\n\r\x1F x");
}

TEST(Document, KeepsANulOfAnAttribute) {
  if (kSystemDom) GTEST_SKIP() << "a NUL is the end of a text there";
  EXPECT_EQ(there_and_back(std::u16string(u"a\0b", 3)), std::u16string(u"a\0b", 3));
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
  if (kSystemDom) return;
  Document document;
  set_attribute(document, document.create_root("d"), "a", {low, high});
  EXPECT_EQ(attribute(document, "a"), (std::u16string{low, high}));
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
  const std::string missing = nowhere.string() + ": " + std::strerror(ENOENT);
  EXPECT_EQ(failure([&] { Document::from_file(nowhere); }), "-1: can't read " + missing);
  EXPECT_EQ(failure([&] { Document().to_file(nowhere); }), "-1: can't write " + missing);
  const std::filesystem::path folder = platform::executable_folder();
  const std::string is_folder = folder.string() + ": " + std::strerror(EISDIR);
  EXPECT_EQ(failure([&] { Document::from_file(folder); }), "-1: can't read " + is_folder);
  EXPECT_EQ(failure([&] { Document().to_file(folder); }), "-1: can't write " + is_folder);
  const TemporaryFile file("document_bad.xml");
  std::ofstream(file.path) << "<a>\n<b></a>";
  const std::string said = failure([&] { Document::from_file(file.path); });
  const std::string malformed = "-1: " + file.path.string() + ": malformed XML";
  EXPECT_EQ(kSystemDom ? said.substr(0, malformed.size()) : said,
            kSystemDom ? malformed : malformed + ", line 2, column 6: mismatched tag");
}

// Size

TEST(Document, StandsAHundredThousandLevels) {
  if (kSystemDom) GTEST_SKIP() << "the system reads as many as it likes";
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
  if (kSystemDom) GTEST_SKIP() << "the system reads as many as it likes";
  Document document;
  void* at = document.create_root("a");
  for (int i = 1; i < 1000; ++i) at = document.append_element(at, "a");
  EXPECT_EQ(Document::from_text(document.to_text()).to_text(), document.to_text());
}

TEST(Document, RefusesWhatIsTooLong) {
  // The first one is refused before any of it is looked at.
  const std::string text = "<a/>";
  EXPECT_EQ(failure([&] { Document::from_text(std::string_view(text.data(), Document::max_text + 1)); }),
            "-1: the text is longer than 2147483647 bytes");
  if (kSystemDom) return;  // which has bounds of its own
  const std::string longest(Document::max_attribute, 'x');
  EXPECT_EQ(attribute(Document::from_text("<a x='" + longest + "'/>"), "x").size(), longest.size());
  const std::string place = "-1: malformed XML, line 1, column 1: ";
  EXPECT_EQ(refusal("<a x='" + longest + "x'/>"), place + "an attribute of more than 16777216 characters");
  EXPECT_EQ(refusal("<a x='" + std::string(Document::max_attribute / 2, 'x') +
                    std::string(Document::max_attribute / 2, '\x7F') + "\u00E4'/>"),
            place + "an attribute of more than 16777216 characters");

  Document document;
  void* const root = document.create_root("d");
  EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "a", longest + "x"), E_FAIL);
  VARIANT value = wide_value(std::u16string(Document::max_attribute + 1, u'\u00E4'));
  EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "a", value), E_FAIL);
  const Ref<IXMLDOMAttribute> made = make_attribute(dom_of(document), "a");
  EXPECT_EQ(made->put_nodeValue(value), E_INVALIDARG);
  VariantClear(&value);
  EXPECT_EQ(plain(document), "<d />");
  EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "a", longest), 0);
}

TEST(Document, PrintsNoMoreThanCanBeRead) {
  // Each level is indented: the text grows with the square of the depth.
  Document document;
  void* at = document.create_root("a");
  for (int i = 1; i < 50000; ++i) at = document.append_element(at, "a");
  EXPECT_EQ(failure([&] { document.to_text(); }), "-1: the text is longer than 2147483647 bytes");
}

// Misuse

TEST(Document, RefusesWhatIsNoElementOfItsOwn) {
  Document document;
  Document other;
  void* const root = document.create_root("a");
  void* const foreign = other.create_root("b");
  const Ref<IXMLDOMAttribute> attribute_node = make_attribute(dom_of(document), "x");
  Ref<IXMLDOMNamedNodeMap> map;
  ASSERT_EQ(element_of(root)->get_attributes(map.out()), S_OK);
  const std::string text = "-1: not an element of the document";
  for (void* const node :
       {static_cast<void*>(nullptr), foreign, document.dom(), other.dom(),
        static_cast<void*>(static_cast<IXMLDOMNode*>(attribute_node.get())), static_cast<void*>(map.get())}) {
    EXPECT_EQ(failure([&] { document.append_element(node, "c"); }), text);
    EXPECT_EQ(failure([&] { document.children(node); }), text);
    EXPECT_EQ(failure([&] { document.name(node); }), text);
  }
  EXPECT_EQ(plain(document), "<a />");
  EXPECT_EQ(plain(other), "<b />");
}

TEST(Document, RefusesWhatIsNoName) {
  for (const std::string name :
       {"",        "<",      "1a",     "-",          ".",      "a b",  " a",   "a ",    "a\n",
        "a=\"b\"", "a/",     "a>",     "a<b",        "&",      "\x7F", "\xE4", "a\xFF", "\xED\xA0\x80",
        "\u00D7",  "\uE005", "\uFFFD", "\u00E4/><b", "a\u2028"}) {
    if (kSystemDom && name == "\uFFFD") continue;  // a letter of the fifth edition
    Document document;
    EXPECT_EQ(failure([&] { document.create_root(name); }), "-1: not the name of an element") << name;
    EXPECT_EQ(document.root(), nullptr);
    void* const root = document.create_root("d");
    EXPECT_EQ(failure([&] { document.append_element(root, name); }), "-1: not the name of an element")
        << name;
    if (kSystemDom) continue;  // which takes more than names
    EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), name.c_str(), 1), E_FAIL) << name;
    IXMLDOMElement* element = element_of(root);
    const wide_string wide = platform::to_utf16(name);
    EXPECT_EQ(dom_of(document)->createElement(XmlName(wide.c_str()).get(), &element), E_INVALIDARG);
    EXPECT_EQ(element, nullptr);
    Ref<IXMLDOMAttribute> kept = make_attribute(dom_of(document), "kept");
    IXMLDOMAttribute* attribute_node = kept.get();
    EXPECT_EQ(dom_of(document)->createAttribute(XmlName(wide.c_str()).get(), &attribute_node), E_INVALIDARG);
    EXPECT_EQ(attribute_node, nullptr);
    EXPECT_EQ(plain(document), "<d />");
  }
  Document document;
  EXPECT_EQ(failure([&] { document.create_root(std::string("a\0b", 3)); }), "-1: not the name of an element");
  for (const char* name : {"a", "_", ":", "a:b", "A-1._", "tr\u00E4ger", "\u03B1\u4E00"}) {
    // To the system a colon is the end of a prefix, which must be declared.
    if (kSystemDom && std::string_view(name).find(':') != std::string_view::npos) continue;
    Document good;
    good.create_root(name);
    const Document back = Document::from_text(good.to_text());
    EXPECT_EQ(back.name(back.root()), name);
  }
}
