#pragma once

#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>

namespace quillon {

class FieldSink;

// Declares `walk`, which hands the fields of an object to a sink (<quillon/faces/field_sink.h>), in a class
// whose source file states its fields. An object that is walked by itself does not know how it was read: the
// texts of its codes, and the fields that the standard reading alone gives, are those of `reading`. Ends in
// the private part.
#define QUILLON_WALK                                                                                  \
 public:                                                                                              \
  void walk(::quillon::FieldSink& sink, ::quillon::Reading reading = ::quillon::Reading::kept) const; \
                                                                                                      \
 private:                                                                                             \
  template <class Visitor, class Self>                                                                \
  static void describe(Visitor& v, Self& s)

// The same for a table, which knows how it was read.
#define QUILLON_TABLE_WALK                     \
 public:                                       \
  void walk(::quillon::FieldSink& sink) const; \
                                               \
 private:                                      \
  template <class Visitor, class Self>         \
  static void describe(Visitor& v, Self& s)

}  // namespace quillon
