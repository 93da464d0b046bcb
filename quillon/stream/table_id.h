#pragma once

#include <compare>
#include <cstdint>

#include <quillon/platform/api.h>

namespace quillon {

struct StreamSection;

// What tells a table from all others. Its current sections and its next ones are two tables.
struct QUILLON_API TableId {
  int pid = -1;  // -1 in a chain of bare sections
  int table_id = 0;
  int extension = 0;            // 0 of a short section
  int transport_stream_id = 0;  // of event information; that of a service description is its extension
  int original_network_id = 0;  // of event information and service descriptions
  uint32_t further_id = 0;      // ETM_id of an extended text, platform_id of an IP/MAC notification table
  bool is_current = true;

  static TableId of(const StreamSection& section);
  auto operator<=>(const TableId&) const = default;
};

}  // namespace quillon
