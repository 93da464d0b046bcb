#pragma once

#include <quillon/platform/api.h>

namespace quillon {

class FieldSink;

// Declares `void walk(FieldSink&) const`, which hands the fields of an object to a sink
// (<quillon/faces/field_sink.h>), in a class whose source file states its fields. Ends in its private part.
#define QUILLON_WALK                           \
 public:                                       \
  void walk(::quillon::FieldSink& sink) const; \
                                               \
 private:                                      \
  template <class Visitor, class Self>         \
  static void describe(Visitor& v, Self& s)

}  // namespace quillon
