#pragma once

#include <cstddef>
#include <cstdint>

#include <quillon/sections/byte_view.h>

namespace quillon::detail {

// The PID of ATSC's base tables.
inline constexpr int psip_base_pid = 0x1FFB;

// A long section's header and CRC, in bytes.
inline constexpr size_t smallest_long_section = 12;

// Whether a table id is one of DVB's event information: present/following or schedule.
constexpr bool is_event_information(int table_id) {
  return table_id >= 0x4E && table_id <= 0x6F;
}

// What tells long sections of one table id and extension apart: transport_stream_id and original_network_id
// of event information, original_network_id of a service description, platform_id of an IP/MAC notification,
// ETM_id of an extended text; 0 for others, and where the section ends before.
inline uint32_t further_ids(const uint8_t* section, size_t size) {
  const ByteView body = ByteView(section, size - 4).from(8);
  const int table_id = section[0];
  if (is_event_information(table_id)) return body.u32(0);
  if (table_id == 0x42 || table_id == 0x46) return static_cast<uint32_t>(body.u16(0));
  if (table_id == 0x4C) return static_cast<uint32_t>(body.u24(0));
  if (table_id == 0xCC) return body.u32(1);
  return 0;
}

}  // namespace quillon::detail
