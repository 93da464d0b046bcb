// What the system's own DOM brings with it.

#include "tests/support/faces.h"
#include "tests/xml/kept_documents.h"
#include "tests/xml/nodes.h"

#include <quillon/platform/utf8.h>
#include <quillon/platform/windows/windows.h>

using namespace quillon;
using namespace quillon::test;
using quillon::xml::Document;

namespace {

// The text that the system makes of a document.
std::string text_of_system(const Document& document) {
  BSTR text = nullptr;
  EXPECT_EQ(dom_of(document)->get_xml(&text), S_OK);
  const std::string out = platform::to_utf8(wide_string(text, text + SysStringLen(text)));
  SysFreeString(text);
  return out;
}

// The user's decimal mark, for as long as the object lives.
class UserDecimal {
 public:
  explicit UserDecimal(const char* mark) {
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_, sizeof before_);
    SetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark);
  }
  ~UserDecimal() { SetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_); }
  UserDecimal(const UserDecimal&) = delete;
  UserDecimal& operator=(const UserDecimal&) = delete;

 private:
  char before_[16];
};

}  // namespace

TEST(SystemDom, WritesWhatIsKept) {
  const auto file = kept_document("system.xml");
  if (file.empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  const std::string now = text_of_system(all_saved());
  const std::string tree = all_saved().to_text();
  EXPECT_EQ(Document::from_text(now).to_text(), tree);
  if (content(file).empty() || Document::from_file(file).to_text() != tree) offer_to_keep("system.xml", now);
}

TEST(SystemDom, MakesNoTextOfNumbers) {
  const UserDecimal comma(",");
  Document document;
  void* const root = document.create_root("d");
  VARIANT number;
  VariantInit(&number);
  number.vt = VT_R8;
  number.dblVal = 2.5;
  // It would, by the user's settings.
  const auto attribute_of_system = make_attribute(dom_of(document), "a");
  EXPECT_EQ(attribute_of_system->put_nodeValue(number), S_OK);
  EXPECT_EQ(element_of(root)->setAttributeNode(attribute_of_system.get(), nullptr), S_OK);
  EXPECT_EQ(attribute(document, "a"), u"2,5");

  EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "a", 2.5), 0);
  EXPECT_EQ(attribute(document, "a"), u"2.5");
  EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "a", number), 0);
  EXPECT_EQ(attribute(document, "a"), u"2.5");
}

TEST(SystemDom, SavesTheSameUnderAnyDecimalMark) {
  const std::string before = all_saved().to_text();
  const UserDecimal comma(",");
  EXPECT_EQ(all_saved().to_text(), before);
}

TEST(SystemDom, TakesNoNodeInThePlaceOfTheOneBefore) {
  Document document;
  void* const root = document.create_root("d");
  for (int value = 1; value < 4; ++value)
    EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "a", value), 0);
  EXPECT_EQ(plain(document), "<d a=\"3\" />");
}
