#pragma once

// The visitors that read a class's `describe`: one statement a field, in the order of its attributes, serves
// the report, the save and the load. For the library's own sources.
//
//   v.field(name, value)        an attribute, and the line "name: value"
//   v.bytes(name, value)        an attribute that no report shows
//   v.block(name, bytes)        an attribute, and "name:" with a block of the bytes, if there are any
//   v.list(list, item, rows)    a list element with an item a row, and each row's report
//   v.child(name, value)        a child element, and the value's report
//   v.labels(before, after)     changes what stands around a name in the report
//   v.rows(list, item, rows)    a table's list, attached before it is filled; no report
//   v.descriptors(owner)        the owner's descriptor loop; no report
//
// Where the faces part, `if constexpr (V::xml)` or `(V::dump)` stands at the field's own line.

#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/time.h>
#include <quillon/report/dump.h>
#include <quillon/report/internal/line.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon::faces {

class Dump {
 public:
  static constexpr bool xml = false;
  static constexpr bool dump = true;
  static constexpr bool load = false;

  explicit Dump(std::ostream& stream) : stream_(stream) {}

  void labels(const char* before, const char* after) {
    before_ = before;
    after_ = after;
  }
  template <class Value>
  void field(const char* name, const Value& value) {
    report::Line line(stream_);
    line.label(before_, name, after_).add(printed(value)).end();
  }
  void field(const char* name, const DateTime& value) { time_field(name, value); }
  void field(const char* name, const Duration& value) { time_field(name, value); }
  template <class Value>
  void bytes(const char*, const Value&) {}
  void block(const char* name, const std::vector<uint8_t>& bytes) {
    if (bytes.empty()) return;
    stream_ << name << ":" << std::endl;
    report::block(stream_, bytes);
  }
  template <class Rows>
  void list(const char*, const char*, const Rows& rows) {
    for (const auto& row : rows) dump_of(row);
  }
  template <class Value>
  void child(const char*, const Value& value) {
    dump_of(value);
  }

  template <class Rows>
  void rows(const char*, const char*, const Rows&) {}
  template <class Owner>
  void descriptors(const Owner&) {}

  std::ostream& stream() { return stream_; }

 private:
  template <class Time>
  void time_field(const char* name, const Time& value) {
    stream_ << std::string(before_).append(name).append(after_) << value << std::endl;
  }
  template <class Value>
  void dump_of(const Value& value) {
    if constexpr (requires { value.dump_state(stream_); })
      value.dump_state(stream_);
    else
      value._dump_state(stream_);
  }
  static int printed(int value) { return value; }
  static uint32_t printed(uint32_t value) { return value; }
  static double printed(double value) { return value; }
  static const char* printed(const char* value) { return value; }
  static const char* printed(const CodeCharacters& value) { return value.c_str(); }
  static const char* printed(const ISO639LanguageCode& value) { return value.c_strA(); }
  static const char* printed(const Text& value) { return value.c_strA(); }
  static const std::string& printed(const std::string& value) { return value; }

  std::ostream& stream_;
  const char* before_ = "";
  const char* after_ = ": ";
};

class Save {
 public:
  static constexpr bool xml = true;
  static constexpr bool dump = false;
  static constexpr bool load = false;

  Save(void* document, void* node) : out_(document, node) {}

  void labels(const char*, const char*) {}
  template <class Value>
  void field(const char* name, const Value& value) {
    out_.add(name, value);
  }
  void field(const char* name, const CodeCharacters& value) { out_.add(name, value.c_str()); }
  // A time or an identifier that stands in one attribute, as text.
  void field(const char* name, const DateTime& value) { out_.add(name, value.get_date_as_text()); }
  void field(const char* name, const Duration& value) { out_.add(name, value.get_time_as_text()); }
  void field(const char* name, const ApplicationIdentifier& value) {
    out_.add(name, value.application_identifier_as_text());
  }
  template <class Value>
  void bytes(const char* name, const Value& value) {
    field(name, value);
  }
  void block(const char* name, const std::vector<uint8_t>& bytes) { field(name, bytes); }
  template <class Rows>
  void list(const char* list_name, const char* item_name, const Rows& rows) {
    if (out_.ok() && !xml::save_list(out_.document(), out_.element(), list_name, item_name, rows))
      out_.fail();
  }
  template <class Value>
  void child(const char* name, const Value& value) {
    if (!out_.ok()) return;
    const auto element = xml::create_element(out_.document(), name);
    if (!element || !value.SaveSection(out_.document(), element.get()) ||
        out_.element()->appendChild(element.get(), nullptr) < 0)
      out_.fail();
  }

  template <class Rows>
  void rows(const char* list_name, const char* item_name, const Rows& rows) {
    const auto save = [](const auto& row, void* document, void* element) {
      return row._save_stream_info(document, element);
    };
    if (out_.ok() && !xml::save_table_list(out_.document(), out_.element(), list_name, item_name, rows, save))
      out_.fail();
  }
  template <class Owner>
  void descriptors(const Owner& owner) {
    if (out_.ok() && !owner._save_descriptors(out_.document(), out_.element())) out_.fail();
  }

  bool ok() const { return out_.ok(); }

 private:
  xml::Writer out_;
};

class Load {
 public:
  static constexpr bool xml = true;
  static constexpr bool dump = false;
  static constexpr bool load = true;

  explicit Load(void* node) : node_(node), in_(node) {}

  void labels(const char*, const char*) {}
  template <class Value>
  void field(const char* name, Value& value, const char* failure = "failed") {
    in_.get(name, value, failure);
  }
  void field(const char* name, DateTime& value) { value.set_date_from_text(text(name).c_str()); }
  void field(const char* name, Duration& value) { value.set_time_from_text(text(name).c_str()); }
  void field(const char* name, ApplicationIdentifier& value) {
    value.set_application_identifier_from_text(text(name).c_str());
  }
  template <class Value>
  void bytes(const char* name, Value& value) {
    in_.get(name, value);
  }
  void block(const char* name, std::vector<uint8_t>& bytes) { in_.get(name, bytes); }
  template <class Row>
  void list(const char* list_name, const char*, std::vector<Row>& rows) {
    xml::load_list(node_, list_name, xml::list_failures(list_name), [&rows](void* item) {
      Row row;
      row.Parse(item);
      rows.push_back(std::move(row));
    });
  }
  template <class Value>
  void child(const char* name, Value& value) {
    const auto element = xml::child_of(node_, name, std::string("failed to get ") + name);
    value.Parse(element.get());
  }
  template <class Row>
  void rows(const char* list_name, const char*, std::vector<Row>& rows,
            const xml::ListFailures& failures = xml::table_list_failures()) {
    xml::load_list(node_, list_name, failures, [&rows](void* item) { rows.emplace_back(item); });
  }
  template <class Owner>
  void descriptors(Owner& owner) {
    owner._parse_descriptors(node_);
  }

 private:
  std::string text(const char* name) {
    std::string out;
    in_.get(name, out);
    return out;
  }

  void* node_;
  xml::Reader in_;
};

}  // namespace quillon::faces

// The bodies of QUILLON_FACES in a class's source file, behind its `describe`.
#define QUILLON_XML_FACES_OF(Class, tag_text)                   \
  const char* Class::get_tag_text() const {                     \
    return tag_text;                                            \
  }                                                             \
  bool Class::_save_section(void* document, void* node) const { \
    ::quillon::faces::Save v(document, node);                   \
    describe(v, *this);                                         \
    return v.ok();                                              \
  }                                                             \
  void Class::_parse(void* node) {                              \
    ::quillon::faces::Load v(node);                             \
    describe(v, *this);                                         \
  }

#define QUILLON_FACES_OF(Class, tag_text)               \
  QUILLON_XML_FACES_OF(Class, tag_text)                 \
  void Class::_dump_state(std::ostream& stream) const { \
    ::quillon::faces::Dump v(stream);                   \
    describe(v, *this);                                 \
  }

// For a class whose report is the tag line alone.
#define QUILLON_SILENT_FACES_OF(Class, tag_text) \
  QUILLON_XML_FACES_OF(Class, tag_text)          \
  void Class::_dump_state(std::ostream&) const {}

// The bodies of QUILLON_RECORD_FACES, likewise.
#define QUILLON_XML_RECORD_FACES_OF(Class)                    \
  bool Class::SaveSection(void* document, void* node) const { \
    ::quillon::faces::Save v(document, node);                 \
    describe(v, *this);                                       \
    return v.ok();                                            \
  }                                                           \
  void Class::Parse(void* node) {                             \
    ::quillon::faces::Load v(node);                           \
    describe(v, *this);                                       \
  }

#define QUILLON_RECORD_FACES_OF(Class)                 \
  QUILLON_XML_RECORD_FACES_OF(Class)                   \
  void Class::dump_state(std::ostream& stream) const { \
    ::quillon::faces::Dump v(stream);                  \
    describe(v, *this);                                \
  }

#define QUILLON_SILENT_RECORD_FACES_OF(Class) \
  QUILLON_XML_RECORD_FACES_OF(Class)          \
  void Class::dump_state(std::ostream&) const {}

// The XML bodies of a table from its `describe`.
#define QUILLON_TABLE_XML_OF(Class)                             \
  bool Class::_save_section(void* document, void* node) const { \
    ::quillon::faces::Save v(document, node);                   \
    describe(v, *this);                                         \
    return v.ok();                                              \
  }                                                             \
  void Class::_parse(void* node) {                              \
    ::quillon::faces::Load v(node);                             \
    describe(v, *this);                                         \
  }

// Those of a table's row, its constructor from a node among them.
#define QUILLON_ROW_XML_OF(Class, Constructor)                         \
  bool Class::_save_stream_info(void* document, void* element) const { \
    ::quillon::faces::Save v(document, element);                       \
    describe(v, *this);                                                \
    return v.ok();                                                     \
  }                                                                    \
  Class::Constructor(void* node) {                                     \
    ::quillon::faces::Load v(node);                                    \
    describe(v, *this);                                                \
  }
