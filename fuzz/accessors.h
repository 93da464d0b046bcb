#pragma once

// Tables by their classes, and a walk over everything that a parsed object can be asked.

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/sections/psi_base.h>

namespace quillon {
class DvbLoop;
class AtscLoop;
class AitLoop;
class IntLoop;
}  // namespace quillon

namespace quillon::fuzz {

class Table {
 public:
  virtual ~Table() = default;
  virtual void set_tolerant(bool on) = 0;
  virtual void parse(const std::vector<uint8_t>& section, bool keep_raw) = 0;
  virtual void load(void* node) = 0;
  virtual std::string report() const = 0;
  // In a document of its own, whether or not the save came to its end.
  virtual std::string save() const = 0;
  virtual const DescriptorFailures& failures() const = 0;
  virtual void reset() = 0;
  // Calls every accessor of the table, of its rows and of their descriptors, and every text of a code.
  virtual void walk() const = 0;
};

// A table of each class for a table id. Some classes take any table id: they come for their own alone.
using MakeTable = std::unique_ptr<Table> (*)();
std::vector<MakeTable> classes_of(int table_id);
// A table of the class that an element of this name holds; null if there is none.
std::unique_ptr<Table> table_of_element(std::string_view name);

// The same walk over a loop that belongs to no table.
void walk(const DvbLoop& loop);
void walk(const AtscLoop& loop);
void walk(const AitLoop& loop);
void walk(const IntLoop& loop);

}  // namespace quillon::fuzz
