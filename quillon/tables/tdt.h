#pragma once

#include <quillon/fields/time.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Time and date table (EN 300 468, 5.2.5).
//
//   UTC_time  40
class QUILLON_API Tdt : public PsiBase {
 public:
  const char* get_table_id_text() const override { return "time_date_section"; }
  void walk(FieldSink& sink) const;
  const DateTime& get_utc_time() const { return utc_time_; }

 private:
  bool is_syntax_indicator_valid(int indicator) const override { return indicator == 0; }
  void _reset() override { utc_time_ = DateTime(); }
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x70; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  DateTime utc_time_;
};

}  // namespace quillon
