#pragma once

#include <quillon/atsc/atsc_table.h>

namespace quillon {

// System time table (A/65, 6.1).
//
//   protocol_version   8
//   system_time       32
//   GPS_UTC_offset     8
//   daylight_savings  16
//   descriptors           to the CRC
class QUILLON_API AtscSTT : public AtscLoopTable {
 public:
  const char* get_table_id_text() const override { return "system_time_table"; }

  int protocol_version = 0;
  int system_time = 0;       // GPS seconds since 00:00:00 UTC, 6 January 1980
  int GPS_UTC_offset = 0;    // leap seconds
  int daylight_savings = 0;  // DS_status, 1 bit; reserved, 2; DS_day_of_month, 5; DS_hour, 8

  // Quirk: AtscSTT daylight_savings
  // 1: daylight saving time is in force.
  int get_DS_status() const { return daylight_savings >> 15; }
  // The day and the hour, 0 to 18, of the next change; 0 outside its month.
  int get_DS_day_of_month() const { return daylight_savings >> 8 & 0x1F; }
  int get_DS_hour() const { return daylight_savings & 0xFF; }

  QUILLON_TABLE_WALK;

 private:
  void _dump_state(std::ostream& stream) const override;
  // Throws error("AtscSTT: descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xCD; }
  bool is_valid_reserved_header(int) const override { return true; }
};

}  // namespace quillon
