#include <quillon/atsc/cvct.h>
#include <quillon/atsc/internal/channels.h>

namespace quillon {

void AtscCVCT::_parse(ByteView body, bool keep_raw) {
  parse_channels(channels, 1, body, keep_raw);
}

AtscCVCT::Channel::Channel(ByteView data, int& length, bool, ByteView) {
  read_short_name(data);
  major_channel_number = data.bits(14, 3, 10);
  minor_channel_number = data.bits(16, 1, 10);
  modulation_mode = data[18];
  carrier_frequency = static_cast<int>(data.u32(19));
  channel_TSID = data.u16(23);
  program_number = data.u16(25);
  ETM_location = data.bits(27, 7, 2);
  access_controlled = data.bits(27, 5, 1);
  hidden = data.bits(27, 4, 1);
  path_select = data.bits(27, 3, 1);
  out_of_band = data.bits(27, 2, 1);
  hide_guide = data.bits(27, 1, 1);
  service_type = data.bits(28, 5, 6);
  source_id = data.u16(29);
  descriptors_length = data.bits(31, 1, 10);
  length = read_descriptors(data);
}

void AtscCVCT::Channel::walk(FieldSink& sink) const {
  faces::Walk v(sink);
  describe(v, *this);
  v.field("path_select", path_select);
  v.field("out_of_band", out_of_band);
  v.descriptors(*this);
}

QUILLON_WALK_OF(AtscCVCT)

}  // namespace quillon
