#pragma once

// For the library's own sources.

#include <vector>

#include <quillon/faces/internal/face.h>
#include <quillon/faces/internal/meaning.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/time.h>
#include <quillon/fields/wire_text.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon::faces {

// Writes the XML form.
class Save : public Face {
 public:
  static constexpr bool xml = true;

  Save(void* document, void* node) : out_(document, node) {}

  void labels(const char*, const char*) {}
  template <class Value>
  void field(const char* name, const Value& value) {
    out_.add(name, value);
  }
  void field(const char* name, const CodeCharacters& value) { out_.add(name, value.c_str()); }
  void field(const char* name, const WireText& value) {
    if (!value.is_utf8()) return field(name, static_cast<const std::string&>(value));
    Text text;
    text.set_textW(0, value.wide().c_str());
    field(name, text);
  }
  // A time or an identifier in one attribute, as text.
  void field(const char* name, const DateTime& value) { out_.add(name, value.get_date_as_text()); }
  void field(const char* name, const Duration& value) { out_.add(name, value.get_time_as_text()); }
  void field(const char* name, const ApplicationIdentifier& value) {
    out_.add(name, value.application_identifier_as_text());
  }
  template <class Value>
  void coded(const char* name, const Value& value, Meaning) {
    field(name, value);
  }
  // A number of a section's header.
  template <class Value>
  void head(const char* name, const Value& value) {
    field(name, static_cast<int>(value));
  }
  template <class Value>
  void bytes(const char* name, const Value& value) {
    field(name, value);
  }
  void block(const char* name, const std::vector<uint8_t>& bytes) { field(name, bytes); }
  template <class Rows>
  void list(const char* list_name, const char* item_name, const Rows& rows) {
    if (out_.ok() && !xml::save_list(out_.element(), list_name, item_name, rows)) out_.fail();
  }
  template <class Value>
  void child(const char* name, const Value& value) {
    if (!out_.ok()) return;
    const xml::Element child = out_.element().make(name);
    if (!child || !value.SaveSection(child.document(), child.get()) || !out_.element().append(child))
      out_.fail();
  }

  template <class Rows>
  void rows(const char* list_name, const char* item_name, const Rows& rows) {
    if (out_.ok() && !xml::save_table_list(out_.element(), list_name, item_name, rows)) out_.fail();
  }
  template <class Owner>
  void descriptors(const Owner& owner) {
    const xml::Element& to = out_.element();
    if (out_.ok() && !owner._save_descriptors(to.document(), to.get())) out_.fail();
  }

  bool ok() const { return out_.ok(); }

 private:
  xml::Writer out_;
};

}  // namespace quillon::faces
