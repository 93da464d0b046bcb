#pragma once

// The case tables of whole sections: at least one of every table class. The loops over all tables read them,
// and so does the fuzzers' first corpus.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"
#include "tests/support/walk.h"

#include <memory>
#include <string>
#include <vector>

#include <quillon/sections/psi_base.h>
#include <quillon/stream/any_table.h>

namespace quillon::test {

// What becomes of a table that is saved and loaded.
enum class Back {
  same,     // it is saved again as it was
  unsaved,  // a save gives false after the header
};

struct TableCase {
  std::string name;     // the class, and what the section shows
  std::string element;  // the root of its document
  Bytes section;
  bool has_crc;  // and is refused with a wrong one
  Back back;
  // The report of a table that was parsed, copied, moved and assigned; empty if `table` is of another class.
  std::string (*report_of_moved)(const AnyTable& table);

  std::unique_ptr<AnyTable> make() const { return AnyTable::for_element(element); }
};

template <class T>
TableCase table_case(std::string name, std::string element, Bytes section, Back back = Back::same) {
  const bool has_crc = std::is_base_of_v<PsiTableBase, T>;
  return {std::move(name), std::move(element), std::move(section), has_crc, back, [](const AnyTable& table) {
            if (!table.as<T>()) return std::string();
            T copy = *table.as<T>();
            T moved = std::move(copy);
            copy = std::move(moved);
            moved = copy;
            return test::report(moved);
          }};
}

// What a section makes of a fresh table, all faces shown.
struct Outcome {
  std::string failure;  // of the parse: "code: text", or "nothing"
  bool parsed;
  std::string report;
  std::string walk;
  bool save_result;
  std::string saved;                 // on an element "d"
  std::vector<std::string> refused;  // of the descriptors that became general ones, as `failure`

  bool good() const { return failure == "nothing"; }
};
Outcome outcome_of(const TableCase& table, const Bytes& section, bool tolerant);

// What a load of `text` says, and what the loaded table is saved as.
struct Reloaded {
  std::string failure;
  bool parsed;
  std::string saved;
};
Reloaded reloaded(const TableCase& table, const std::string& text);

// The case's document, with the element that the program gives it.
std::string document_of(const TableCase& table);

// The tables register themselves: `static const TableCases cases = {table_case<...>(...), ...};`
class TableCases {
 public:
  TableCases(std::initializer_list<TableCase> cases);
  static const std::vector<TableCase>& all();
};

// Sections that only the standard reading takes, or takes for what they are; they register themselves too.
struct StandardSection {
  std::string element;
  Bytes section;
};
class StandardSections {
 public:
  StandardSections(std::initializer_list<StandardSection> sections);
  static const std::vector<StandardSection>& all();
};

}  // namespace quillon::test
