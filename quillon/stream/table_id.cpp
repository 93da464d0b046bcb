#include <quillon/stream/internal/table_ids.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/table_id.h>

namespace quillon {

TableId TableId::of(const StreamSection& section) {
  TableId out{section.pid, section.table_id(), section.extension()};
  out.is_current = section.is_current();
  if (!section.is_long() || section.size < detail::smallest_long_section) return out;
  const uint32_t ids = detail::further_ids(section.bytes, section.size);
  if (detail::is_event_information(out.table_id)) {
    out.transport_stream_id = static_cast<int>(ids >> 16);
    out.original_network_id = static_cast<int>(ids & 0xFFFF);
  } else if (out.table_id == 0x42 || out.table_id == 0x46) {
    out.original_network_id = static_cast<int>(ids);
  } else {
    out.further_id = ids;
  }
  return out;
}

}  // namespace quillon
