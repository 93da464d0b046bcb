#pragma once

// For the library's own sources.

#include <quillon/faces/internal/walk.h>

namespace quillon::faces {

// What a base class has to say before the class itself.
template <class Object>
void walk_head(const Object& object, FieldSink& sink) {
  if constexpr (requires { object._walk_head(sink); }) object._walk_head(sink);
}

}  // namespace quillon::faces

// The body of a class's walk, past its `describe` in its source file: for a class that has no other face. The
// verbs of a `describe` are those of <quillon/faces/internal/describe.h>.
#define QUILLON_WALK_OF(Class)                               \
  void Class::walk(FieldSink& sink, Reading reading) const { \
    ::quillon::faces::walk_head(*this, sink);                \
    ::quillon::faces::Walk v(sink, reading);                 \
    describe(v, *this);                                      \
  }
// The same for a table.
#define QUILLON_TABLE_WALK_OF(Class)               \
  void Class::walk(FieldSink& sink) const {        \
    _walk_head(sink);                              \
    ::quillon::faces::Walk v(sink, get_reading()); \
    describe(v, *this);                            \
  }
