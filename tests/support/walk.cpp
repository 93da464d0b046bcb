#include "tests/support/walk.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>

#include <quillon/fields/time.h>
#include <quillon/platform/utf8.h>

namespace quillon::test {

namespace {

void expect_utf8(std::string_view text) {
  EXPECT_EQ(platform::to_utf8(platform::to_utf16(text)), text);
}

}  // namespace

std::string WalkText::take() {
  EXPECT_EQ(open_.size(), 1u);
  return std::move(text_);
}

void WalkText::item(const char* name) {
  Level& level = open_.back();
  paths_.insert(level.path + name);
  if (level.is_list) {
    EXPECT_GT(level.left, 0u) << level.path;
    --level.left;
    EXPECT_TRUE(level.of_descriptors || level.names.empty() || level.names.contains(name))
        << level.path << name;
    level.names.insert(name);
  } else {
    EXPECT_TRUE(level.names.insert(name).second) << level.path << name << " comes twice";
  }
}

void WalkText::line(const char* name, const std::string& value) {
  text_.append((open_.size() - 1) * 2, ' ').append(name).append(": ").append(value).append("\n");
}

void WalkText::number(const char* name, int64_t value, const char* meaning) {
  item(name);
  EXPECT_GE(value, INT32_MIN);
  EXPECT_LE(value, UINT32_MAX);
  std::string text = std::to_string(value);
  if (meaning) {
    EXPECT_STRNE(meaning, "");
    expect_utf8(meaning);
    text.append(" (").append(meaning).append(")");
  }
  line(name, text);
}

void WalkText::real(const char* name, double value) {
  item(name);
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << value;
  line(name, text.str());
}

void WalkText::text(const char* name, std::string_view utf8) {
  item(name);
  expect_utf8(utf8);
  line(name, "\"" + std::string(utf8) + "\"");
}

void WalkText::bytes(const char* name, const uint8_t* data, size_t size) {
  item(name);
  std::string text;
  for (size_t i = 0; i < size; ++i) {
    char byte[4];
    std::snprintf(byte, sizeof byte, i ? " %02x" : "%02x", data[i]);
    text += byte;
  }
  line(name, text);
}

void WalkText::time(const char* name, const DateTime& utc) {
  item(name);
  for (const char* part : {"day", "month", "year", "hour", "minute", "second"})
    paths_.insert(open_.back().path + name + "/" + part);
  line(name, "time " + utc.get_date_as_text());
}

void WalkText::duration(const char* name, const Duration& value) {
  item(name);
  line(name, "duration " + value.get_time_as_text());
}

void WalkText::begin(const char* name, const char* kind) {
  item(name);
  EXPECT_STRNE(kind, "");
  line(name, kind);
  open_.push_back({open_.back().path + name + "/", false, false, 0, {}});
}

void WalkText::begin_list(const char* name, size_t size) {
  item(name);
  line(name, "list of " + std::to_string(size));
  open_.push_back({open_.back().path + name + "/", true, std::string_view(name) == "descriptors", size, {}});
}

void WalkText::end() {
  ASSERT_GT(open_.size(), 1u);
  EXPECT_EQ(open_.back().left, 0u) << open_.back().path;
  open_.pop_back();
}

}  // namespace quillon::test
