#include <quillon/descriptors/dvb_classes.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/report/internal/line.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/tables/eit.h>

namespace quillon {

namespace {

constexpr int kEventHeader = 12;

int event_size(ByteView event) {
  return event.bits(10, 3, 12) + kEventHeader;
}

}  // namespace

void Eit::_parse(ByteView body, bool keep_raw) {
  transport_stream_id_ = body.u16(0);
  original_network_id_ = body.u16(2);
  segment_last_section_number_ = body[4];
  last_table_id_ = body[5];

  const RowContext context{body, keep_raw, tolerance()};
  if (!read_sized_rows(events_, body, 6, body_size() - 6, event_size, context))
    throw error("descriptor start end mismatch");
}

Eit::EventInfo::EventInfo(ByteView data, int& length, const RowContext& row)
    : event_id_(data.u16(0)),
      running_status_(data.bits(10, 7, 3)),
      free_ca_mode_(data.bits(10, 4, 1)),
      descriptors_length_(data.bits(10, 3, 12)),
      start_time_(data.from(2)),
      duration_(data.from(7)) {
  // An overrun of this loop is found by the table alone.
  parse_descriptors(data, kEventHeader, event_size(data), row);
  length = event_size(data);
}

const char* Eit::get_table_id_text(int table_id) {
  if (table_id == 0x4E) return "event_information_section - actual_transport_stream, present/following";
  if (table_id == 0x4F) return "event_information_section - other_transport_stream, present/following";
  if (table_id >= 0x50 && table_id <= 0x5F)
    return "event_information_section - actual_transport_stream, schedule";
  if (table_id >= 0x60 && table_id <= 0x6F)
    return "event_information_section - other_transport_stream, schedule";
  return "<unknown>";
}

template <class V, class S>
void Eit::describe(V& v, S& s) {
  if constexpr (!V::xml) v.field("service_id", s.get_service_id());
  v.field("transport_stream_id", s.transport_stream_id_);
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("segment_last_section_number", s.segment_last_section_number_);
  v.field("last_table_id", s.last_table_id_);
  v.rows("event_infos", "event", s.events_);
}
QUILLON_TABLE_FACES_OF(Eit)

void Eit::_dump_state(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
  for (const EventInfo& event : events_) event.dump_state(stream);
}

template <class V, class S>
void Eit::EventInfo::describe(V& v, S& s) {
  if constexpr (V::dump)
    report::line(v.stream() << std::hex, "event_id: ", s.event_id_, 4);
  else
    v.field("event_id", s.event_id_);
  v.field("running_status", s.running_status_);
  v.field("free_CA_mode", s.free_ca_mode_);
  v.field("descriptors_length", s.descriptors_length_);
  v.field("start_time", s.start_time_);
  v.field("duration", s.duration_);
  v.descriptors(s);
}
QUILLON_ROW_FACES_OF(Eit::EventInfo, EventInfo)

void Eit::EventInfo::dump_state(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
}

}  // namespace quillon
