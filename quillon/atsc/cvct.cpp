#include <quillon/atsc/cvct.h>
#include <quillon/atsc/internal/channels.h>

namespace quillon {

void AtscCVCT::_parse(ByteView body, bool keep_raw) {
  // Quirk: AtscCVCT places
  parse_channels(channels, standard() ? 2 : 1, body, keep_raw);
}

AtscCVCT::Channel::Channel(ByteView data, int& length, const RowContext& row) {
  read_short_name(data);
  major_channel_number = data.bits(14, 3, 10);
  // Quirk: AtscCVCT places
  const int at = data.standard() ? 15 : 16;
  minor_channel_number = data.bits(at, 1, 10);
  modulation_mode = data[at + 2];
  carrier_frequency = static_cast<int>(data.u32(at + 3));
  channel_TSID = data.u16(at + 7);
  program_number = data.u16(at + 9);
  ETM_location = data.bits(at + 11, 7, 2);
  access_controlled = data.bits(at + 11, 5, 1);
  hidden = data.bits(at + 11, 4, 1);
  path_select = data.bits(at + 11, 3, 1);
  out_of_band = data.bits(at + 11, 2, 1);
  hide_guide = data.bits(at + 11, 1, 1);
  service_type = data.bits(at + 12, 5, 6);
  source_id = data.u16(at + 13);
  descriptors_length = data.bits(at + 15, 1, 10);
  length = read_descriptors(data, row);
}

void AtscCVCT::Channel::walk(FieldSink& sink, Reading reading) const {
  faces::Walk v(sink, reading);
  describe(v, *this);
  v.field("path_select", path_select);
  v.field("out_of_band", out_of_band);
  v.descriptors(*this);
}

QUILLON_TABLE_WALK_OF(AtscCVCT)

}  // namespace quillon
