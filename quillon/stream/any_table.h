#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <span>
#include <string_view>
#include <typeinfo>

#include <quillon/platform/api.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Whose tables a stream holds: table id 2 is another class in each, and those from 0xC7 on are ATSC's alone.
enum class Standard { dvb, atsc };

// A table of whatever class, for those who take sections as they come. For threads the rule of the tables
// holds (PsiBase1).
class QUILLON_API AnyTable {
 public:
  // An empty table of the class that a table id means; null for an id without a class.
  static std::unique_ptr<AnyTable> for_table_id(int table_id, Standard standard);
  // One of the class whose documents have a root of this name; null if there is none.
  static std::unique_ptr<AnyTable> for_element(std::string_view name);

  AnyTable& operator=(const AnyTable&) = delete;
  virtual ~AnyTable();
  virtual std::unique_ptr<AnyTable> copy() const = 0;

  // The root element of its documents, "eit".
  virtual const char* element() const = 0;

  // The table itself, if it is of that class: `if (const Eit* eit = table->as<Eit>())`.
  template <class Table>
  const Table* as() const {
    return static_cast<const Table*>(object_of(typeid(Table)));
  }

  // What the table's own functions of these names do. Parse and ParseDOM throw error.
  virtual void set_tolerant(bool on) = 0;
  virtual void set_reading(Reading reading) = 0;
  virtual void Parse(const uint8_t* section, size_t size, bool keep_raw) = 0;
  virtual void ParseDOM(void* node) = 0;
  virtual bool SaveSection(void* document, void* node) const = 0;
  virtual void dump_state(std::ostream& stream) const = 0;
  virtual void walk(FieldSink& sink) const = 0;
  virtual void reset() = 0;
  virtual int get_table_id() const = 0;
  virtual const char* get_table_id_text() const = 0;
  virtual bool is_parsed() const = 0;
  virtual const DescriptorFailures& get_descriptor_failures() const = 0;

  void Parse(std::span<const uint8_t> section, bool keep_raw = false) {
    Parse(section.data(), section.size(), keep_raw);
  }
  void ParseDOM(xml::DomElement element) { ParseDOM(element.get()); }
  bool SaveSection(xml::DomDocument document, xml::DomElement element) const {
    return SaveSection(document.get(), element.get());
  }

 protected:
  AnyTable() = default;
  AnyTable(const AnyTable&) = default;

 private:
  virtual const void* object_of(const std::type_info& type) const = 0;
};

}  // namespace quillon
