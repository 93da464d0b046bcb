#pragma once

#include <quillon/atsc/atsc_table.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// Extended text table (A/65, 6.6): the description of a channel or an event. Its report is the header alone.
//
//   protocol_version        8
//   ETM_id                 32
//   extended_text_message      to the CRC
class QUILLON_API AtscETT : public AtscTable {
 public:
  const char* get_table_id_text() const override { return "extended_text_table"; }

  int protocol_version = 0;
  int ETM_id = 0;  // source_id, 16 bits; then, for an event, its event_id, 14 bits, and binary 10
  ATSCMultipleStringStructure extended_text_message;

  QUILLON_TABLE_WALK;

 private:
  // Throws error("AtscETT: extended_text_message start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xCC; }
};

}  // namespace quillon
