#pragma once

// One document with every class in it, and the files in which each system keeps what it makes of it.

#include "tests/support/cases.h"
#include "tests/support/table_cases.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include <quillon/platform/internal/log_file.h>

namespace quillon::test {

// Cases register themselves in an order that is the linker's.
template <class Case>
std::vector<Case> by_name(std::vector<Case> cases) {
  std::sort(cases.begin(), cases.end(), [](const Case& a, const Case& b) { return a.name < b.name; });
  return cases;
}

// An element a case: first the tables, then the descriptors.
inline xml::Document all_saved() {
  xml::Document out;
  void* const root = out.create_root("documents");
  for (const TableCase& c : by_name(TableCases::all())) {
    const auto table = c.make();
    table->Parse(c.section.data(), c.section.size(), true);
    table->SaveSection(out.dom(), out.append_element(root, c.element));
  }
  for (const DescriptorCase& c : by_name(Cases::all()))
    c.save_to(view(c.bytes), out.dom(), out.append_element(root, "d"));
  return out;
}

inline std::string content(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// "tree.xml" is the text of Document, "system.xml" that of the system's own DOM. Empty without a place.
inline std::filesystem::path kept_document(const char* name) {
  const char* const data = std::getenv("QUILLON_DATA");
  return data ? std::filesystem::path(data).parent_path() / "tests" / "xml" / "kept" / name
              : std::filesystem::path();
}

// Puts `now` beside the tests' program, to be kept in the place of what is there.
inline void offer_to_keep(const char* name, const std::string& now) {
  std::ofstream(platform::executable_folder() + name, std::ios::binary) << now;
  ADD_FAILURE() << name << " is not what is written now; see the one beside the program";
}

}  // namespace quillon::test
