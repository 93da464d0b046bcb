#pragma once

// What the tests of the event descriptors share.

#include "tests/support/cases.h"
#include "tests/support/expect.h"

#include <string>
#include <string_view>

namespace quillon::test {

template <class T>
std::string saved_of(const Bytes& bytes) {
  return saved(T(view(bytes)));
}

// What a load of the saved object throws when a list, or the first child element of that name, is called
// something else.
template <class T>
std::string failure_without_element(const Bytes& bytes, const std::string& name) {
  std::string xml = saved_of<T>(bytes);
  if (const size_t list = xml.find("<" + name + ">"); list != std::string::npos) {
    xml.insert(xml.rfind("</" + name + ">") + 2, "no_");
    xml.insert(list + 1, "no_");
  } else {
    const size_t child = xml.find("<" + name + " ");
    if (child == std::string::npos) return "no element " + name;
    xml.insert(child + 1, "no_");
  }
  return failure([&] { loaded<T>(xml); });
}

template <class T>
void expect_element_needed(const Bytes& bytes, const std::string& name) {
  EXPECT_EQ(failure_without_element<T>(bytes, name), "-1: failed to get " + name);
}

}  // namespace quillon::test
