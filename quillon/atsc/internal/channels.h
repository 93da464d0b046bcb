#pragma once

// For the library's own sources.

#include <quillon/atsc/virtual_channel.h>
#include <quillon/faces/internal/walk_of.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

template <class Channel>
void VirtualChannelTable::parse_channels(std::vector<Channel>& channels, int begin, ByteView body,
                                         bool keep_raw) {
  protocol_version = body[0];
  num_channels_in_section = body[1];
  const int end =
      read_counted_rows(channels, body, begin, section_end(), num_channels_in_section, context(body));
  parse_additional_descriptors(end, body, keep_raw);
}

template <class V, class S>
void VirtualChannelTable::describe(V& v, S& s) {
  v.field("protocol_version", s.protocol_version);
  v.field("num_channels_in_section", s.num_channels_in_section);
  v.list("channels", "channel", s.channels);
  v.field("additional_descriptors_length", s.additional_descriptors_length);
  v.descriptors(s);
}

template <class V, class S>
void VirtualChannel::describe(V& v, S& s) {
  v.field("short_name", wide_view(s.short_name));
  v.field("major_channel_number", s.major_channel_number);
  v.field("minor_channel_number", s.minor_channel_number);
  v.coded("modulation_mode", s.modulation_mode, s.get_modulation_mode_text());
  // Quirk: unsigned fields of 32 bits
  v.field("carrier_frequency", static_cast<uint32_t>(s.carrier_frequency));
  v.field("channel_TSID", s.channel_TSID);
  v.field("program_number", s.program_number);
  v.coded("ETM_location", s.ETM_location, s.get_ETM_location_text());
  v.field("access_controlled", s.access_controlled);
  v.field("hidden", s.hidden);
  v.field("hide_guide", s.hide_guide);
  v.coded("service_type", s.service_type, {get_service_type_text, standard_service_type_text});
  v.field("source_id", s.source_id);
  v.field("descriptors_length", s.descriptors_length);
}

}  // namespace quillon
