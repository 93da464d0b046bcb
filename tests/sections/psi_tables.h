#pragma once

// A long and a short table that note what is asked of them.

#include "tests/support/bytes.h"

#include <iomanip>
#include <ostream>
#include <set>
#include <string>

#include <quillon/sections/psi_base.h>

namespace quillon::test {

struct Recorder {
  std::set<std::string> refuses;  // steps that are to fail
  mutable std::string steps;      // those that were asked for, a line each
  const uint8_t* body = nullptr;  // as it was handed to the parser
  ptrdiff_t body_bytes = 0;       // up to the limit of its view

 protected:
  ~Recorder() = default;
  bool step(const std::string& name) const {
    steps += name + "\n";
    return refuses.count(name) == 0;
  }
  void load() {
    if (!step("load")) throw error("load");
  }
  void parse(ByteView view, bool keep_raw) {
    body = view.data();
    for (body_bytes = 0; view.has(body_bytes);) ++body_bytes;
    if (!step(keep_raw ? "parse and keep" : "parse")) throw error(error::bad_loop_unit);
  }
};

class LongTable final : public PsiTableBase, public Recorder {
 public:
  using PsiTableBase::body_size;
  using PsiTableBase::get_context_id;
  using PsiTableBase::get_section_end;
  const char* get_table_id_text() const override { return "long table"; }

 private:
  void _reset() override { step("reset"); }
  void _dump_state(std::ostream& stream) const override { stream << 175 << std::setw(3) << 10 << "\n"; }
  void _parse(void*) override { load(); }
  void _parse(ByteView view, bool keep_raw) override { parse(view, keep_raw); }
  bool _save_section(void*, void*) const override { return step("save"); }
  bool is_valid_tablesid() const override { return step("table id " + std::to_string(get_table_id())); }
  bool is_valid_syntax_indicator(int indicator) const override {
    return step("syntax indicator " + std::to_string(indicator));
  }
  bool is_valid_reserved_header(int reserved) const override {
    return step("reserved " + std::to_string(reserved));
  }
};

// Its report is the one that the base has for a table without one of its own.
class ShortTable final : public PsiBase, public Recorder {
 public:
  const char* get_table_id_text() const override { return "short table"; }

 private:
  bool is_syntax_indicator_valid(int indicator) const override {
    return step("syntax indicator " + std::to_string(indicator));
  }
  void _reset() override { step("reset"); }
  void _parse(void*) override { load(); }
  void _parse(ByteView view, bool keep_raw) override { parse(view, keep_raw); }
  bool _save_section(void*, void*) const override { return step("save"); }
  bool is_valid_tablesid() const override { return step("table id " + std::to_string(get_table_id())); }
};

const Bytes kBody = {0xDE, 0xAD, 0xBE, 0xEF, 0x99};

inline Bytes sample_section(int reserved = 2) {
  Header header;
  header.extension = 0xFEDC;
  header.version = 0x15;
  header.current_next = 0;
  header.section_number = 0x5A;
  header.last_section_number = 0xA5;
  header.reserved = reserved;
  return long_section(0x42, kBody, header);
}

}  // namespace quillon::test
