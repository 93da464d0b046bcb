#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace quillon::test {

// What the public headers say of a class and of the members that have an accessor.
struct HeaderComment {
  std::string header;  // "quillon/tables/eit.h"
  bool is_exported = false;
  std::string text;                           // the first paragraph
  std::map<std::string, std::string> fields;  // by the accessor's name without "get_", in lower case
  std::map<std::string, int> widths;          // of the fields of a layout, by their names in lower case
};

// By the names of the classes: "Eit::EventInfo".
std::map<std::string, HeaderComment> header_comments(const std::filesystem::path& top);

std::string lower_case(std::string text);

}  // namespace quillon::test
