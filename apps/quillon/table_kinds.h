#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include <quillon/sections/psi_base.h>
#include <quillon/xml/document.h>

namespace quillon::app {

enum class Standard { dvb, atsc };

// A table object of whatever class, as far as the commands need it.
class Table {
 public:
  virtual ~Table() = default;
  virtual void parse(const uint8_t* section, size_t size) = 0;
  virtual void load(void* node) = 0;
  virtual void report(std::ostream& stream) const = 0;
  virtual bool save(void* document, void* element) const = 0;
  virtual const DescriptorFailures& failures() const = 0;
  // What the report leaves out of an ATSC table, its public members, in UTF-8.
  virtual std::string details() const = 0;
};

// The class of a table id, and its element in documents; null for a table id without a class.
struct TableKind {
  const char* element;
  std::unique_ptr<Table> (*make)();
};
const TableKind* kind_of_table_id(int table_id, Standard standard);
const TableKind* kind_of_element(std::string_view name);

}  // namespace quillon::app
