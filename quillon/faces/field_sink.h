#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <quillon/platform/api.h>

namespace quillon {

class DateTime;
class Duration;

// Receives the fields of an object, in their order: `eit.walk(sink)` hands over everything that the object
// holds, with the rows of its lists and their descriptors, whose order is that of the section. A writer of
// JSON, a page, a binding for another language or a search is a class derived from this one, and needs to
// know no other. One section has at most 400,000 fields.
//
// Names are those of the saved documents, or the standard's where a document has none. Texts and bytes are
// valid during the call alone, names and kinds as long as the program runs. A sink passes over what it does
// not override; what it throws ends the walk.
class QUILLON_API FieldSink {
 public:
  // A number of at most 32 bits, signed or not. `meaning` is the text of a coded value in UTF-8, null where
  // there is none.
  virtual void number(const char* /*name*/, int64_t /*value*/, const char* /*meaning*/) {}
  virtual void real(const char* /*name*/, double /*value*/) {}
  virtual void text(const char* /*name*/, std::string_view /*utf8*/) {}
  virtual void bytes(const char* /*name*/, const uint8_t* /*data*/, size_t /*size*/) {}
  // As they were read: one that is not defined comes too (DateTime::is_defined).
  virtual void time(const char* /*name*/, const DateTime& /*utc*/) {}
  virtual void duration(const char* /*name*/, const Duration& /*value*/) {}

  // A record, whose fields follow up to its end: a row, a value with fields of its own, a descriptor. `kind`
  // is the name of its class.
  virtual void begin(const char* /*name*/, const char* /*kind*/) {}
  // A list, whose `size` items follow up to its end: numbers, texts or records. The items of "descriptors"
  // bear the names of their elements, those of another list bear all the same name.
  virtual void begin_list(const char* /*name*/, size_t /*size*/) {}
  // Ends the record or list that was begun last.
  virtual void end() {}

 protected:
  ~FieldSink() = default;
};

}  // namespace quillon
