// Null where a function takes text: the empty text, and no name.

#include "tests/support/log_file.h"
#include "tests/xml/nodes.h"

#include <gtest/gtest.h>

#include <quillon/fields/identifier.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>
#include <quillon/fields/time.h>
#include <quillon/sections/error.h>
#include <quillon/sections/log.h>
#include <quillon/xml/internal/literal_name.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// Compilers would see a null that is written down.
const char* const volatile no_text = nullptr;

}  // namespace

TEST(NullText, OfAnErrorIsEmpty) {
  EXPECT_STREQ(error(no_text).what(), "");
  EXPECT_EQ(error(no_text).get_code(), -1);
  EXPECT_STREQ(error(error::length_mismatch, no_text).what(), "");
  EXPECT_EQ(error(error::length_mismatch, no_text).get_code(), 3);
}

TEST(NullText, OpensNoLogAndWritesNoRecord) {
  TemporaryLog log("null_text_test.csv", log_create_always, 3);
  log_write(1, no_text);
  EXPECT_EQ(log.text(), "");
  EXPECT_EQ(log_write(1, "a record"), 0);
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"a record"}));
  EXPECT_EQ(log_open(log_create_always, 3, no_text), 0);
  EXPECT_EQ(log_write(1, "another"), 0);
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"a record"}));
}

TEST(NullText, OfATextIsEmpty) {
  const uint16_t* const no_units = nullptr;
  const char16_t* const no_characters = nullptr;
  const auto expect_empty = [](const Text& t) {
    EXPECT_EQ(t.get_textA(), "");
    EXPECT_EQ(t.get_textW(), wide_string());
    EXPECT_EQ(t.get_char_set(), 5);
    EXPECT_EQ(t.get_text_len(), 2u);
  };
  const uint8_t bytes[] = {0x03, 0xC1};
  Text t(2, bytes);
  t.set_textA(5, no_text);
  expect_empty(t);
  t = Text(2, bytes);
  t.set_textW(5, no_units);
  expect_empty(t);
  t = Text(2, bytes);
  t.set_textW(5, no_characters);
  expect_empty(t);

  ISO639LanguageCode code;
  code.set_textA("deu");
  code.set_textA(no_text);
  EXPECT_STREQ(code.c_strA(), "");
}

TEST(NullText, LeavesNumbersAsTheyAre) {
  DateTime date;
  date.set_date_from_text("7 3 2006 9 5 0");
  EXPECT_TRUE(date.set_date_from_text(no_text));
  EXPECT_EQ(date.get_date_as_text(), "7 3 2006 9 5 0");
  Duration duration;
  duration.set_time_from_text("1 30 0");
  EXPECT_TRUE(duration.set_time_from_text(no_text));
  EXPECT_EQ(duration.get_time_as_text(), "1 30 0");
  ApplicationIdentifier id;
  id.set_application_identifier_from_text("2A 1");
  EXPECT_TRUE(id.set_application_identifier_from_text(no_text));
  EXPECT_EQ(id.application_identifier_as_text(), "0000002A 0001");
}

TEST(NullText, OfAnAttributeIsEmpty) {
  xml::Document document;
  void* const root = document.create_root("d");
  EXPECT_EQ(AddAttribute(dom_of(document), element_of(root), "name", static_cast<const char*>(no_text)), 0);
  EXPECT_EQ(document.to_text(), kDeclaration + "<d name=\"\" />\n");
}

TEST(NullText, IsNoName) {
  const uint16_t* const no_units = nullptr;
  const char16_t* const no_characters = nullptr;
  const XmlName from_text(no_text);
  const XmlName from_units(no_units);
  const XmlName from_characters(no_characters);
  const xml::LiteralName from_literal(no_text);
  const XmlName* const names[] = {&from_text, &from_units, &from_characters, &from_literal};
  xml::Document document;
  void* const root = document.create_root("d");
  xml::Document other;
  VARIANT number;
  VariantInit(&number);
  number.vt = VT_I4;
  number.lVal = 5;
  for (const XmlName* const each : names) {
    const XmlName& name = *each;
    EXPECT_TRUE(name.is_null());
    // In our own DOM, and as a stranger would.
    for (xml::Document* const creator : {&document, &other}) {
      EXPECT_EQ(AddAttribute(dom_of(*creator), element_of(root), name, 5), E_FAIL);
      EXPECT_EQ(AddAttribute(dom_of(*creator), element_of(root), name, "text"), E_FAIL);
      EXPECT_EQ(AddAttribute(dom_of(*creator), element_of(root), name, number), E_FAIL);
    }
    xml::Ref<IXMLDOMNamedNodeMap> map;
    ASSERT_EQ(static_cast<IXMLDOMNode*>(document.root())->get_attributes(map.out()), S_OK);
    int value = 7;
    EXPECT_EQ(GetAttributeValue(map.get(), name, value), E_FAIL);
    EXPECT_EQ(value, 7);
  }
  EXPECT_EQ(document.to_text(), kDeclaration + "<d />\n");
  EXPECT_FALSE(XmlName("").is_null());
  EXPECT_FALSE(XmlName(u"").is_null());
}
