#pragma once

namespace quillon::detail {

// The PID of ATSC's base tables.
inline constexpr int psip_base_pid = 0x1FFB;

// Whether a table id is one of DVB's event information: present/following or schedule.
constexpr bool is_event_information(int table_id) {
  return table_id >= 0x4E && table_id <= 0x6F;
}

}  // namespace quillon::detail
