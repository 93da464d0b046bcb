#pragma once

// The case tables of whole sections: at least one of every table class. The loops over all tables read them,
// and so does the fuzzers' first corpus.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <memory>
#include <string>
#include <vector>

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/sections/psi_base.h>

namespace quillon::test {

// A table of any class, with all that can be done with it.
class AnyTable {
 public:
  virtual ~AnyTable() = default;
  virtual void set_tolerant(bool on) = 0;
  virtual void parse(const uint8_t* section, size_t size) = 0;
  virtual void load(void* node) = 0;
  virtual bool save(void* document, void* node) const = 0;
  virtual std::string report() const = 0;
  virtual bool is_parsed() const = 0;
  virtual const DescriptorFailures& failures() const = 0;
  virtual void copy_and_move() = 0;
  virtual void reset() = 0;
};

template <class T>
class AnyTableOf final : public AnyTable {
 public:
  void set_tolerant(bool on) override { table_.set_tolerant(on); }
  void parse(const uint8_t* section, size_t size) override { table_.Parse(section, size, true); }
  void load(void* node) override { table_.ParseDOM(node); }
  bool save(void* document, void* node) const override { return table_.SaveSection(document, node); }
  std::string report() const override { return test::report(table_); }
  bool is_parsed() const override { return table_.is_parsed(); }
  const DescriptorFailures& failures() const override { return table_.get_descriptor_failures(); }
  void copy_and_move() override {
    T copy = table_;
    T moved = std::move(table_);
    table_ = std::move(copy);
    table_ = moved;
  }
  void reset() override { table_.reset(); }

 private:
  T table_;
};

// What becomes of a table that is saved and loaded.
enum class Back {
  same,     // it is saved again as it was
  unsaved,  // a save gives false after the header
};

struct TableCase {
  std::string name;     // the class, and what the section shows
  std::string element;  // the root of its document, as the program names it
  Bytes section;
  bool has_crc;  // and is refused with a wrong one
  Back back;
  std::unique_ptr<AnyTable> (*make)();
};

template <class T>
TableCase table_case(std::string name, std::string element, Bytes section, Back back = Back::same) {
  const bool has_crc = std::is_base_of_v<PsiTableBase, T>;
  return {std::move(name),
          std::move(element),
          std::move(section),
          has_crc,
          back,
          []() -> std::unique_ptr<AnyTable> { return std::make_unique<AnyTableOf<T>>(); }};
}

// What a section makes of a fresh table, all faces shown.
struct Outcome {
  std::string failure;  // of the parse: "code: text", or "nothing"
  bool parsed;
  std::string report;
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

}  // namespace quillon::test
