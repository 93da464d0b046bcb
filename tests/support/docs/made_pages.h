#pragma once

// The pages and schemas of docs/ that are made of what the classes do.

#include <filesystem>
#include <string>

namespace quillon::test {

std::string tables_page(const std::filesystem::path& top);
std::string descriptors_page(const std::filesystem::path& top);
// Of saved documents, for a validator.
std::string relax_ng();
// Of a line that `quillon json` prints.
std::string json_schema();

}  // namespace quillon::test
