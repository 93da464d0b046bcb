#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include <quillon/platform/wide_string.h>

namespace quillon::detail {

// One line of a registry's file, which names all ids from `first` to `last`.
struct RegistryLine {
  int number;  // of the line, from 1
  uint32_t first;
  uint32_t last;
  wide_string name;
};

// The lines in their order; throws error with file and line for the first bad one.
std::vector<RegistryLine> read_registry_file(const std::filesystem::path& file, uint32_t largest_id);

}  // namespace quillon::detail
