#include <quillon/atsc/stt.h>
#include <quillon/report/internal/line.h>

namespace quillon {

void AtscSTT::_parse(ByteView body, bool keep_raw) {
  protocol_version = body[0];
  system_time = static_cast<int>(body.u32(1));
  GPS_UTC_offset = body[5];
  daylight_savings = body.u16(6);
  if (!walk_descriptors(body, 8, body_size(), {body, positions_if(keep_raw)}))
    throw error("AtscSTT: descriptor start end mismatch");
}

void AtscSTT::_dump_state(std::ostream& stream) const {
  report::line(stream, "protocol_version: ", protocol_version);
  report::line(stream, "system_time: ", system_time);
  report::line(stream, "GPS_UTC_offset: ", GPS_UTC_offset);
  report::line(stream, "daylight_savings: ", daylight_savings);
}

}  // namespace quillon
