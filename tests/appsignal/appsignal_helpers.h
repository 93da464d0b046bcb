#pragma once

// What the tests of application signalling and IP/MAC notification share.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <string>
#include <string_view>

namespace quillon::test {

// A document with each `from` written as `to`.
inline std::string changed(std::string xml, const std::string& from, const std::string& to) {
  for (size_t at = xml.find(from); at != std::string::npos; at = xml.find(from, at + to.size()))
    xml.replace(at, from.size(), to);
  return xml;
}

// The saved document of one of the registered cases.
inline const std::string& xml_of(const std::string& name) {
  for (const DescriptorCase& c : Cases::all())
    if (c.name == name) return c.xml;
  static const std::string none;
  ADD_FAILURE() << "no case " << name;
  return none;
}

// The four failures of a list, each step failing in turn.
template <class T>
void expect_list_failures(const std::string& list) {
  const auto failure_of = [](const char* step) {
    FaultyDom dom(step);
    const std::string out = failure([&] {
      T object;
      object.Parse(dom.node());
    });
    EXPECT_EQ(dom.references(), 0);
    return out;
  };
  EXPECT_EQ(failure_of("selectSingleNode"), "-1: failed to get " + list);
  EXPECT_EQ(failure_of("get_childNodes"), "-1: failed to get program_info list " + list);
  EXPECT_EQ(failure_of("get_length"), "-1: failed to get length " + list);
  EXPECT_EQ(failure_of("get_item"), "-1: failed to get program_info node " + list);
}

}  // namespace quillon::test
