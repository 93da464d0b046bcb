#pragma once

// For the library's own sources.

#include <cstdint>

#include <quillon/report/internal/registered_name.h>

namespace quillon::faces {

// The text of a coded value, or where to find it when a visitor asks for it: a function of the code or the
// registry of an identifier.
class Meaning {
 public:
  Meaning(const char* text) : text_(text) {}
  Meaning(const char* (*function)(int)) : function_(function) {}
  Meaning(registry_kind registry) : registry_(registry), is_registered_(true) {}

  // Null where there is none.
  const char* of(int64_t value) const {
    const int code = static_cast<int>(value);
    if (function_) return function_(code);
    return is_registered_ ? detail::registered_name(registry_, code) : text_;
  }

 private:
  const char* text_ = nullptr;
  const char* (*function_)(int) = nullptr;
  registry_kind registry_ = {};
  bool is_registered_ = false;
};

}  // namespace quillon::faces
