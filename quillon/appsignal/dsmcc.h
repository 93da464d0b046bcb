#pragma once

#include <quillon/sections/psi_base.h>

namespace quillon {

// The payload of a DSM-CC section (ISO/IEC 13818-6, 9.2): table id 0x3B, messages, or 0x3C, data. It is held
// as bytes, which neither report nor document show: SaveSection gives false after the header.
class QUILLON_API DsmCC : public PsiTableBase {
 public:
  const char* get_table_id_text() const override { return "DSMCC"; }
  void walk(FieldSink& sink) const;

  int get_table_extension() const { return get_context_id(); }
  // What is between the header and the CRC; none of a section_length below 9.
  const std::vector<uint8_t>& get_data() const { return data_; }

 private:
  void _reset() override {}
  void _dump_state(std::ostream&) const override {}
  void _parse(void*) override {}
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void*, void*) const override { return false; }
  bool is_valid_tablesid() const override { return get_table_id() == 0x3B || get_table_id() == 0x3C; }
  bool is_valid_syntax_indicator(int) const override { return true; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  std::vector<uint8_t> data_;
};

}  // namespace quillon
