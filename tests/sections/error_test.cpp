#include <gtest/gtest.h>
#include <string>
#include <type_traits>

#include <quillon/sections/error.h>

using quillon::error;

namespace {

void expect(const error& e, int code, uint32_t extra, const std::string& text) {
  EXPECT_EQ(e.get_code(), code);
  EXPECT_EQ(e.get_extra(), extra);
  EXPECT_EQ(e.what(), text);
}

}  // namespace

TEST(Error, HasTheMembersThatItsConstructorsGive) {
  expect(error("descriptor length mismatch"), -1, 0xFFFFFFFF, "descriptor length mismatch");
  expect(error(error::bad_value, 0x89ABCDEFu), 2, 0x89ABCDEF, "");
  expect(error(error::bad_value), 2, 0xFFFFFFFF, "");
  expect(error(error::bad_loop_unit), 0, 0xFFFFFFFF, "");
  expect(error(2), 2, 0xFFFFFFFF, "");
  expect(error(0), 0, 0xFFFFFFFF, "");
  expect(error(-1), -1, 0xFFFFFFFF, "");
  expect(error(error::length_mismatch, "Pat parse error"), 3, 0xFFFFFFFF, "Pat parse error");
  expect(error(""), -1, 0xFFFFFFFF, "");
}

TEST(Error, HasTheNumbersThatApplicationsKnow) {
  EXPECT_EQ(error::bad_loop_unit, 0);
  EXPECT_EQ(error::bad_value, 2);
  EXPECT_EQ(error::length_mismatch, 3);
}

TEST(Error, KeepsATextOfItsOwn) {
  std::string text = "gone before it is read";
  const error e(text.c_str());
  text.assign(text.size(), 'x');
  EXPECT_STREQ(e.what(), "gone before it is read");
}

TEST(Error, IsCaughtAsItselfAndAsAnException) {
  try {
    throw error(error::length_mismatch, "Ait parse error");
  } catch (const error& e) {
    expect(e, 3, 0xFFFFFFFF, "Ait parse error");
  }
  try {
    throw error("CRC");
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "CRC");
  }
}

TEST(Error, IsCopied) {
  const error first(error::bad_value, 7u);
  error second = first;
  expect(second, 2, 7, "");
  second = error("text");
  expect(second, -1, 0xFFFFFFFF, "text");
  expect(first, 2, 7, "");
  EXPECT_TRUE(std::has_virtual_destructor_v<error>);
  EXPECT_TRUE((std::is_base_of_v<std::exception, error>));
}
