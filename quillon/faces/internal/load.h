#pragma once

// For the library's own sources.

#include <string>
#include <utility>
#include <vector>

#include <quillon/faces/internal/face.h>
#include <quillon/faces/internal/meaning.h>
#include <quillon/fields/identifier.h>
#include <quillon/fields/time.h>
#include <quillon/fields/wire_text.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon::faces {

// A table's list, of rows that have a constructor from a node.
template <class Row>
void load_rows(void* node, const char* list_name, std::vector<Row>& rows,
               const xml::ListFailures& failures = xml::table_list_failures()) {
  xml::load_list(node, list_name, failures, [&rows](void* item) { rows.emplace_back(item); });
}

// Reads the XML form.
class Load : public Face {
 public:
  static constexpr bool xml = true;
  static constexpr bool load = true;

  // Throws error(failure) if the element's attributes can't be had.
  explicit Load(void* node, const char* failure = "failed") : node_(node), in_(node, failure) {}

  void labels(const char*, const char*) {}
  template <class Value>
  void field(const char* name, Value& value, const char* failure = "failed") {
    in_.get(name, value, failure);
  }
  void field(const char* name, WireText& value) {
    std::string ansi;
    in_.get(name, ansi);
    value = WireText(std::move(ansi));
  }
  void field(const char* name, DateTime& value) { value.set_date_from_text(text(name).c_str()); }
  void field(const char* name, Duration& value) { value.set_time_from_text(text(name).c_str()); }
  void field(const char* name, ApplicationIdentifier& value) {
    value.set_application_identifier_from_text(text(name).c_str());
  }
  template <class Value>
  void coded(const char* name, Value& value, Meaning) {
    field(name, value);
  }
  template <class Value>
  void head(const char* name, Value& value) {
    int number = 0;
    if (!in_.find(name, number)) throw error(("failed to get " + std::string(name)).c_str());
    value = static_cast<Value>(number);
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
    load_rows(node_, list_name, rows, failures);
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
