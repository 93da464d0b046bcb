#pragma once

// Names of coded values. For the library's own sources.

#include <cstddef>
#include <initializer_list>

namespace quillon::detail {

// The text of `code`, the first text being that of 0; `otherwise` below and above those there are.
inline const char* text_of(int code, std::initializer_list<const char*> texts, const char* otherwise) {
  return code >= 0 && static_cast<size_t>(code) < texts.size() ? texts.begin()[code] : otherwise;
}

}  // namespace quillon::detail
