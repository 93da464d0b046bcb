// What tells a document from a device that has no end.

#include "apps/quillon/xml_beginning.h"

#include <gtest/gtest.h>
#include <string>

using quillon::app::XmlBeginning;

namespace {

// Of a text that comes byte by byte, how many of them it takes to tell that it is no XML; 0 if it may be.
size_t told_after(const std::string& text) {
  XmlBeginning beginning;
  for (size_t size = 0; size <= text.size(); ++size)
    if (!beginning.is_in(std::string_view(text).substr(0, size))) return size;
  return 0;
}

}  // namespace

TEST(XmlBeginning, IsATagAfterBlanks) {
  for (const std::string text : {"", " \t\r\n", "<", "\n\n<a/>", "<a>x", "\xEF\xBB\xBF",
                                 "\xEF\xBB\xBF \n<a/>", "\xFE\xFF", "\xFF\xFEx"})
    EXPECT_EQ(told_after(text), 0u) << text;
  EXPECT_EQ(told_after("x<a/>"), 1u);
  EXPECT_EQ(told_after("\n x"), 3u);
  EXPECT_EQ(told_after("\xEF\xBB<a/>"), 3u);
  EXPECT_EQ(told_after("\xEF\xBB\xBFx"), 4u);
  EXPECT_EQ(told_after("\xEF\xBB\xBF \xEF\xBB\xBF<a/>"), 5u);
  EXPECT_EQ(told_after("\xFEx"), 2u);
  EXPECT_EQ(told_after("\xFF\xFF"), 2u);
}

TEST(XmlBeginning, LooksAtEachBlankOnce) {
  std::string text(size_t{8} << 20, ' ');
  XmlBeginning beginning;
  ASSERT_TRUE(beginning.is_in(text));
  // Who looked again would see another text.
  text.assign(text.size(), 'x');
  text += ' ';
  EXPECT_TRUE(beginning.is_in(text));
  text += "\n<";
  EXPECT_TRUE(beginning.is_in(text));
  text += "a/>";
  EXPECT_TRUE(beginning.is_in(text));
}
