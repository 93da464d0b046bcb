#include <gtest/gtest.h>
#include <string>

#include <quillon/version.h>

namespace {

TEST(Version, IsOneFactInAllItsForms) {
  const std::string text = std::to_string(QUILLON_VERSION_MAJOR) + "." +
                           std::to_string(QUILLON_VERSION_MINOR) + "." +
                           std::to_string(QUILLON_VERSION_PATCH);
  EXPECT_EQ(QUILLON_VERSION_STRING, text);
  EXPECT_EQ(quillon::version(), text);
  EXPECT_EQ(QUILLON_VERSION / 1000000, QUILLON_VERSION_MAJOR);
  EXPECT_EQ(QUILLON_VERSION / 1000 % 1000, QUILLON_VERSION_MINOR);
  EXPECT_EQ(QUILLON_VERSION % 1000, QUILLON_VERSION_PATCH);
}

}  // namespace
