#pragma once

#include <quillon/descriptors/dvb_loop.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Conditional access table (ISO/IEC 13818-1, 2.4.4.6): one loop of CA descriptors, and of
// any in the standard reading, which no report shows.
class QUILLON_API Cat : public PsiTableBase, public DvbLoop {
 public:
  const char* get_table_id_text() const override { return "conditional_access_section"; }
  void walk(FieldSink& sink) const;

 private:
  void _reset() override;
  void _dump_state(std::ostream&) const override {}
  void _parse(void* node) override;
  // Throws error("invalid descriptor size") and error("invalid descriptor tag").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x01; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);
};

}  // namespace quillon
