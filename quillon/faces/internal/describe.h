#pragma once

// What a class says of its fields in its `describe`: one statement a field, in the order of its attributes,
// serves the report, the save, the load and the walk. For the library's own sources.
//
//   v.field(name, value)        an attribute, and the line "name: value"
//   v.coded(name, value, text)  the same of a coded value, with its text, the function that gives it, or the
//                               registry that it is in
//   v.bytes(name, value)        an attribute that no report shows
//   v.block(name, bytes)        an attribute, and "name:" with a block of the bytes, if there are any
//   v.list(list, item, rows)    a list element with an item a row, and each row's report
//   v.child(name, value)        a child element, and the value's report
//   v.rows(list, item, rows)    a table's list, attached before it is filled; no report
//   v.descriptors(owner)        the owner's descriptor loop; no report
//   v.head(name, value)         an attribute of a section's header; no report
//   v.more(...)                 what neither report nor document holds: a field, a coded one, or a list
//   v.standard(...)             the same of what the standard reading alone gives
//   v.labels(before, after)     changes what is around a name in the report
//
// A walk hands over all of them. Where the faces part, `if constexpr (V::xml)`, `(V::dump)` or `(V::walk)` is
// at the field's own line.

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/faces/internal/dump.h>
#include <quillon/faces/internal/load.h>
#include <quillon/faces/internal/save.h>
#include <quillon/faces/internal/walk_of.h>

// The bodies of the faces, past the class's `describe` in its source file.
#define QUILLON_DUMP_OF(Class, function)             \
  void Class::function(std::ostream& stream) const { \
    ::quillon::faces::Dump v(stream);                \
    describe(v, *this);                              \
  }
#define QUILLON_SAVE_OF(Class, function)                   \
  bool Class::function(void* document, void* node) const { \
    ::quillon::faces::Save v(document, node);              \
    describe(v, *this);                                    \
    return v.ok();                                         \
  }
#define QUILLON_LOAD_OF(Function)   \
  Function(void* node) {            \
    ::quillon::faces::Load v(node); \
    describe(v, *this);             \
  }

// Those of QUILLON_FACES but for the report.
#define QUILLON_XML_FACES_OF(Class, tag_text) \
  const char* Class::get_tag_text() const {   \
    return tag_text;                          \
  }                                           \
  QUILLON_SAVE_OF(Class, _save_section)       \
  QUILLON_LOAD_OF(void Class::_parse)         \
  QUILLON_WALK_OF(Class)
#define QUILLON_FACES_OF(Class, tag_text) \
  QUILLON_XML_FACES_OF(Class, tag_text)   \
  QUILLON_DUMP_OF(Class, _dump_state)
// For a class whose report is the tag line alone.
#define QUILLON_SILENT_FACES_OF(Class, tag_text) \
  QUILLON_XML_FACES_OF(Class, tag_text)          \
  void Class::_dump_state(std::ostream&) const {}

// Those of QUILLON_RECORD_FACES, likewise.
#define QUILLON_XML_RECORD_FACES_OF(Class) \
  QUILLON_SAVE_OF(Class, SaveSection)      \
  QUILLON_LOAD_OF(void Class::Parse)       \
  QUILLON_WALK_OF(Class)
#define QUILLON_RECORD_FACES_OF(Class) \
  QUILLON_XML_RECORD_FACES_OF(Class)   \
  QUILLON_DUMP_OF(Class, dump_state)
#define QUILLON_SILENT_RECORD_FACES_OF(Class) \
  QUILLON_XML_RECORD_FACES_OF(Class)          \
  void Class::dump_state(std::ostream&) const {}

// Those of a table and of a table's row but for their reports. A row is loaded by its constructor.
#define QUILLON_TABLE_FACES_OF(Class)   \
  QUILLON_SAVE_OF(Class, _save_section) \
  QUILLON_LOAD_OF(void Class::_parse)   \
  QUILLON_TABLE_WALK_OF(Class)
#define QUILLON_ROW_FACES_OF(Class, Constructor) \
  QUILLON_SAVE_OF(Class, _save_stream_info)      \
  QUILLON_LOAD_OF(Class::Constructor)            \
  QUILLON_WALK_OF(Class)
