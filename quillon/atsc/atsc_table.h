#pragma once

#include <quillon/atsc/atsc_loop.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// What the tables of ATSC have in common. Their fields are public members; their documents hold the section
// header alone; reset empties none of them unless its class says so. A descriptor that its class refuses is
// always kept as a general one, so that set_tolerant changes nothing; the standard reading keeps those from
// tag 128 up as user private ones, and holds the failures.
class QUILLON_API AtscTable : public PsiTableBase {
 protected:
  // What rows and loops know of the table, which holds no failures of the kept reading.
  RowContext context(ByteView body, bool keep_raw = false) {
    return {body, keep_raw, standard() ? tolerance() : nullptr};
  }
  // Offset of the section's end from the body.
  int section_end() const { return body_size() + 4; }

 private:
  void _reset() override {}
  void _dump_state(std::ostream&) const override {}
  void _parse(void*) override {}
  void _parse(ByteView body, bool keep_raw) override = 0;
  bool _save_section(void*, void*) const override { return true; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int bits) const override { return bits == 3; }
};

// An ATSC table with descriptors of its own. A load reads them if they are there, and no save writes them:
// kept.
class QUILLON_API AtscLoopTable : public AtscTable, public AtscLoop {
 private:
  void _parse(void* node) override { _parse_descriptors(node); }
  void _parse(ByteView body, bool keep_raw) override = 0;
};

}  // namespace quillon
