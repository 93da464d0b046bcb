#include <quillon/atsc/virtual_channel.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/report/internal/line.h>

namespace quillon {

namespace {

constexpr int kNameUnits = 7;
// In a cable channel too, where the length of the descriptors ends in this byte: kept.
constexpr int kDescriptors = 32;

}  // namespace

void VirtualChannel::read_short_name(ByteView channel) {
  for (int at = 0; at < 2 * kNameUnits; at += 2) {
    const int unit = channel.u16(at);
    if (unit == 0) break;
    short_name.push_back(static_cast<uint16_t>(unit));
  }
}

int VirtualChannel::read_descriptors(ByteView channel, const RowContext& row) {
  const int end = kDescriptors + descriptors_length;
  if (!parse_descriptors(channel, kDescriptors, end, row))
    throw error("AtscTVCT::Channel: descriptor start end mismatch");
  return end;
}

void VirtualChannelTable::parse_additional_descriptors(int begin, ByteView body, bool keep_raw) {
  additional_descriptors_length = body.bits(begin, 1, 10);
  // Quirk: AtscMGT, AtscTVCT, AtscCVCT length of the last loop
  const int end = standard() ? begin + 2 + additional_descriptors_length : body_size();
  if (!parse_descriptors(body, begin + 2, end, context(body, keep_raw)))
    throw error("AtscTVCT: descriptor start end mismatch");
}

const char* VirtualChannel::get_modulation_mode_text(int modulation_mode) {
  if (modulation_mode >= 6 && modulation_mode <= 127) return "[Reserved for future use by ATSC]";
  if (modulation_mode >= 128 && modulation_mode <= 255) return "[User Private]";
  return detail::text_of(
      modulation_mode,
      {"[Reserved]", "Analog", "SCTE_mode_1", "SCTE_mode_2", "ATSC (8 VSB)", "ATSC (16 VSB)"}, "");
}

const char* VirtualChannel::get_ETM_location_text(int ETM_location) {
  return detail::text_of(
      ETM_location,
      {"No ETM", "ETM located in the PTC carrying this PSIP",
       "ETM located in the PTC specified by the channel_TSID", "[Reserved for future ATSC use]"},
      "");
}

const char* VirtualChannel::get_service_type_text(int service_type) {
  if (service_type >= 5 && service_type <= 63) return "[Reserved for future ATSC use]";
  return detail::text_of(
      service_type,
      {"[Reserved]", "analog_television", "ATSC_digital_television", "ATSC_audio", "ATSC_data_only_service"},
      "");
}

// Quirk: ATSC service_type texts
const char* VirtualChannel::standard_service_type_text(int service_type) {
  if (service_type < 5 || service_type > 9) return get_service_type_text(service_type);
  return detail::text_of(service_type - 5,
                         {"software_download_data_service", "unassociated/small_screen_service",
                          "parameterized_service", "ATSC NRT service", "extended_parameterized_service"},
                         "");
}

void VirtualChannel::dump_state(std::ostream& stream) const {
  report::line(stream, "major_channel_number: ", major_channel_number);
  report::line(stream, "minor_channel_number: ", minor_channel_number);
  report::line(stream, "modulation_mode: ", modulation_mode);
  report::line(stream, "carrier_frequency: ", carrier_frequency);
  report::line(stream, "channel_TSID: ", channel_TSID);
  report::line(stream, "program_number: ", program_number);
  report::line(stream, "ETM_location: ", ETM_location);
  report::line(stream, "access_controlled: ", access_controlled);
  report::line(stream, "hidden: ", hidden);
  report::line(stream, "hide_guide: ", hide_guide);
  report::line(stream, "service_type: ", service_type);
  report::line(stream, "source_id: ", source_id);
  report::line(stream, "descriptors_length: ", descriptors_length);
}

}  // namespace quillon
