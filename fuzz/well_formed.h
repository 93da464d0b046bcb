#pragma once

// What results have to be, by the judgement of a library that has no part in making them.

#include <cstddef>
#include <optional>
#include <string_view>

namespace quillon::fuzz {

bool is_utf8(std::string_view text);

struct JsonCount {
  size_t values = 0;      // that hold no others
  size_t containers = 0;  // objects and arrays
};
// None for what is not one value of JSON in UTF-8, or names a member of an object twice.
std::optional<JsonCount> count_json(std::string_view text);

}  // namespace quillon::fuzz
