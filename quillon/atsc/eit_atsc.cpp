#include <ostream>

#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/internal/gps_time.h>
#include <quillon/atsc/virtual_channel.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/report/internal/line.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

void AtscEIT::_parse(ByteView body, bool) {
  protocol_version = body[0];
  num_events_in_section = body[1];
  const int end = read_counted_rows(events, body, 2, body_size(), num_events_in_section, context(body));
  if (end != body_size()) throw error("AtscEIT: event loop start end mismatch");
}

AtscEIT::Event::Event(ByteView data, int& length, const RowContext& row)
    : event_id(data.bits(0, 5, 14)), start_time(static_cast<int>(data.u32(2))) {
  // Quirk: AtscEIT::Event fields from ETM_location on, title
  const int at = data.standard() ? 6 : 5;
  ETM_location = data.bits(at, 5, 2);
  length_in_seconds = data.bits(at, 3, 20);
  title_length = data[at + 3];
  const int title_end = at + 4 + title_length;
  if (data.standard()) title_text.parse_field(data, at + 4, title_length);
  descriptors_length = data.bits(title_end, 3, 12);
  const int end = title_end + 2 + descriptors_length;
  if (!parse_descriptors(data, title_end + 2, end, row))
    throw error("AtscTVCT::Channel: descriptor start end mismatch");
  length = end;
}

const char* AtscEIT::Event::get_ETM_location_text(int ETM_location) {
  return VirtualChannel::get_ETM_location_text(ETM_location);
}

void AtscEIT::_dump_state(std::ostream& stream) const {
  report::line(stream, "protocol_version: ", protocol_version);
  report::line(stream, "num_events_in_section: ", num_events_in_section);
  for (const Event& event : events) {
    event.dump_state(stream);
    stream << std::endl;
  }
}

void AtscEIT::Event::dump_state(std::ostream& stream) const {
  report::line(stream, "event_id: ", event_id);
  report::line(stream, "start_time: ", start_time);
  report::line(stream, "ETM_location: ", ETM_location);
  report::line(stream, "length_in_seconds: ", length_in_seconds);
  report::line(stream, "title_length: ", title_length);
  title_text.dump_state(stream);
  report::line(stream, "descriptors_length: ", descriptors_length);
}

template <class V, class S>
void AtscEIT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  v.field("num_events_in_section", s.num_events_in_section);
  v.list("events", "event", s.events);
}
QUILLON_TABLE_WALK_OF(AtscEIT)

template <class V, class S>
void AtscEIT::Event::describe(V& v, S& s) {
  v.field("event_id", s.event_id);
  // Quirk: unsigned fields of 32 bits
  v.coded("start_time", static_cast<uint32_t>(s.start_time), detail::gps_time_text(s.start_time).c_str());
  v.coded("ETM_location", s.ETM_location, s.get_ETM_location_text());
  v.field("length_in_seconds", s.length_in_seconds);
  v.field("title_length", s.title_length);
  v.field("title_text", s.title_text);
  v.field("descriptors_length", s.descriptors_length);
  v.descriptors(s);
}
QUILLON_WALK_OF(AtscEIT::Event)

}  // namespace quillon
