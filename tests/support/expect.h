#pragma once

// Expectations that the tests of many classes share.

#include "tests/support/faces.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

namespace quillon::test {

// A code-to-text function over its whole range: `texts` from 0 on, `otherwise` from -1 to 256 elsewhere.
inline void expect_texts(const char* (*text)(int), std::initializer_list<const char*> texts,
                         const char* otherwise) {
  for (int code = -1; code <= 256; ++code) {
    const bool named = code >= 0 && code < static_cast<int>(texts.size());
    EXPECT_STREQ(text(code), named ? texts.begin()[code] : otherwise) << code;
  }
}

// A descriptor's document is refused without any one of its attributes, those of its records included.
template <class T>
void expect_each_attribute_needed(const std::string& xml) {
  for (size_t equals = xml.find("=\""); equals != std::string::npos; equals = xml.find("=\"", equals + 2)) {
    const size_t begin = xml.rfind(' ', equals);
    const size_t end = xml.find('"', equals + 2) + 1;
    const std::string name = xml.substr(begin + 1, equals - begin - 1);
    const bool header = name == "descriptor_id" || name == "descriptor_length";
    EXPECT_EQ(failure([&] { loaded<T>(std::string(xml).erase(begin, end - begin)); }),
              header ? "-1: failed to get " + name : "-1: failed")
        << name;
  }
}

}  // namespace quillon::test
