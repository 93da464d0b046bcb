#pragma once

// For the library's own sources.

#include <quillon/faces/internal/meaning.h>

namespace quillon::faces {

// What the faces but for the walk have in common: they pass over what it alone shows.
struct Face {
  static constexpr bool xml = false;
  static constexpr bool dump = false;
  static constexpr bool load = false;
  static constexpr bool walk = false;

  template <class... Value>
  void more(const char*, const Value&...) {}
  template <class Value>
  void more(const char*, const Value&, Meaning) {}
  template <class... Value>
  void standard(const char*, const Value&...) {}
  template <class Value>
  void standard(const char*, const Value&, Meaning) {}
};

}  // namespace quillon::faces
