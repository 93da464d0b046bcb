#pragma once

// For the library's own sources.

#include <cstdint>

#include <quillon/report/internal/registered_name.h>
#include <quillon/sections/byte_view.h>

namespace quillon::faces {

// The text of a coded value, or where to find it when a visitor asks for it: a function of the code or the
// registry of an identifier. In a pair the first is what reports rely on, the second what is in force.
class Meaning {
 public:
  using Function = const char* (*)(int);

  Meaning(const char* text) : Meaning(text, text) {}
  Meaning(const char* kept, const char* standard) : texts_{kept, standard} {}
  Meaning(Function function) : Meaning(function, function) {}
  Meaning(Function kept, Function standard) : functions_{kept, standard} {}
  Meaning(registry_kind registry) : registry_(registry), is_registered_(true) {}

  // Null where there is none.
  const char* of(int64_t value, Reading reading) const {
    const int code = static_cast<int>(value);
    const auto i = static_cast<size_t>(reading);
    if (functions_[i]) return functions_[i](code);
    return is_registered_ ? detail::registered_name(registry_, code) : texts_[i];
  }

 private:
  const char* texts_[2] = {};
  Function functions_[2] = {};
  registry_kind registry_ = {};
  bool is_registered_ = false;
};

}  // namespace quillon::faces
