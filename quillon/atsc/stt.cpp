#include <quillon/atsc/internal/gps_time.h>
#include <quillon/atsc/stt.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/report/internal/line.h>

namespace quillon {

void AtscSTT::_parse(ByteView body, bool keep_raw) {
  protocol_version = body[0];
  system_time = static_cast<int>(body.u32(1));
  GPS_UTC_offset = body[5];
  daylight_savings = body.u16(6);
  if (!parse_descriptors(body, 8, body_size(), context(body, keep_raw)))
    throw error("AtscSTT: descriptor start end mismatch");
}

void AtscSTT::_dump_state(std::ostream& stream) const {
  report::line(stream, "protocol_version: ", protocol_version);
  report::line(stream, "system_time: ", system_time);
  report::line(stream, "GPS_UTC_offset: ", GPS_UTC_offset);
  report::line(stream, "daylight_savings: ", daylight_savings);
}

template <class V, class S>
void AtscSTT::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  // Quirk: unsigned fields of 32 bits
  v.coded("system_time", static_cast<uint32_t>(s.system_time),
          detail::utc_text(s.system_time, s.GPS_UTC_offset).c_str());
  v.field("GPS_UTC_offset", s.GPS_UTC_offset);
  v.field("daylight_savings", s.daylight_savings);
  v.field("DS_status", s.get_DS_status());
  v.field("DS_day_of_month", s.get_DS_day_of_month());
  v.field("DS_hour", s.get_DS_hour());
  v.descriptors(s);
}
QUILLON_TABLE_WALK_OF(AtscSTT)

}  // namespace quillon
