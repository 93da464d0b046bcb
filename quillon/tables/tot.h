#pragma once

#include <quillon/descriptors/dvb_loop.h>
#include <quillon/fields/time.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Time offset table (EN 300 468, 5.2.6). Its CRC is kept, and tested in the standard reading
// alone.
//
//   UTC_time                 40
//   reserved                  4
//   descriptors_loop_length  12
//   descriptors
//   CRC_32                   32
class QUILLON_API Tot : public PsiBase, public DvbLoop {
 public:
  const char* get_table_id_text() const override { return "time_offset_section"; }
  void walk(FieldSink& sink) const;
  const DateTime& get_utc_time() const { return utc_time_; }
  uint32_t get_crc32() const { return crc_; }

 private:
  bool is_syntax_indicator_valid(int indicator) const override { return indicator == 0; }
  void _reset() override;
  void _dump_state(std::ostream& stream) const override;
  // Throws error("failed to get crc32").
  void _parse(void* node) override;
  // Throws error("descriptor start end mismatch"), and error("crc error") in the standard reading.
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x73; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  DateTime utc_time_;
  uint32_t crc_ = 0;
};

}  // namespace quillon
