#include <ostream>

#include <quillon/atsc/internal/channels.h>
#include <quillon/atsc/tvct.h>
#include <quillon/report/internal/line.h>

namespace quillon {

void AtscTVCT::_parse(ByteView body, bool keep_raw) {
  parse_channels(channels, 2, body, keep_raw);
}

AtscTVCT::Channel::Channel(ByteView data, int& length, const RowContext& row) {
  read_short_name(data);
  major_channel_number = data.bits(14, 3, 10);
  minor_channel_number = data.bits(15, 1, 10);
  modulation_mode = data[17];
  carrier_frequency = static_cast<int>(data.u32(18));
  channel_TSID = data.u16(22);
  program_number = data.u16(24);
  ETM_location = data.bits(26, 7, 2);
  access_controlled = data.bits(26, 5, 1);
  hidden = data.bits(26, 4, 1);
  hide_guide = data.bits(26, 1, 1);
  service_type = data.bits(27, 5, 6);
  source_id = data.u16(28);
  descriptors_length = data.bits(30, 1, 10);
  length = read_descriptors(data, row);
}

void AtscTVCT::_dump_state(std::ostream& stream) const {
  report::line(stream, "protocol_version: ", protocol_version);
  report::line(stream, "num_channels_in_section: ", num_channels_in_section);
  for (const Channel& channel : channels) {
    channel.dump_state(stream);
    stream << std::endl;
  }
}

void AtscTVCT::Channel::walk(FieldSink& sink, Reading reading) const {
  faces::Walk v(sink, reading);
  describe(v, *this);
  v.descriptors(*this);
}

QUILLON_TABLE_WALK_OF(AtscTVCT)

}  // namespace quillon
