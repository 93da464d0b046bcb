#include <quillon/descriptors/delivery/terrestrial.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

using detail::text_of;

template <class V, class S>
void DescriptorTerrestrialDeliverySystem::describe(V& v, S& s) {
  v.field("centre_frequency", s.centre_frequency);
  v.coded("bandwidth", s.bandwidth, get_bandwidth_text);
  v.coded("priority", s.priority, {get_priority_text, standard_priority_text});
  v.coded("Time_Slicing_indicator", s.Time_Slicing_indicator, get_Time_Slicing_indicator_text);
  v.coded("MPE_FEC_indicator", s.MPE_FEC_indicator, get_MPE_FEC_indicator_text);
  v.coded("constellation", s.constellation, get_constellation_text);
  v.coded("hierarchy_information", s.hierarchy_information, get_hierarchy_information_text);
  v.coded("code_rate_HP_stream", s.code_rate_HP_stream, get_code_rate_stream_text);
  v.coded("code_rate_LP_stream", s.code_rate_LP_stream, get_code_rate_stream_text);
  v.coded("guard_interval", s.guard_interval, get_guard_interval_text);
  v.coded("transmission_mode", s.transmission_mode, get_transmission_mode_text);
  v.coded("other_frequency_flag", s.other_frequency_flag, get_other_frequency_flag_text);
}
QUILLON_SILENT_FACES_OF(DescriptorTerrestrialDeliverySystem, "terrestrial_delivery_system_descriptor")

const char* DescriptorTerrestrialDeliverySystem::get_bandwidth_text(int bandwidth) {
  return text_of(bandwidth, {"8 MHz", "7 MHz", "6 MHz", "5 MHz"}, "reserved for future use");
}

// A set bit is high priority in EN 300 468; these texts have it the other way round. Kept: applications
// compare them.
const char* DescriptorTerrestrialDeliverySystem::get_priority_text(int priority) {
  return text_of(priority, {"HP (high priority)", "LP (low priority)"}, "n/a");
}

// Quirk: terrestrial priority texts
const char* DescriptorTerrestrialDeliverySystem::standard_priority_text(int priority) {
  return text_of(priority, {"LP (low priority)", "HP (high priority)"}, "n/a");
}

const char* DescriptorTerrestrialDeliverySystem::get_Time_Slicing_indicator_text(int Time_Slicing_indicator) {
  return text_of(Time_Slicing_indicator, {"yes", "no"}, "n/a");
}

const char* DescriptorTerrestrialDeliverySystem::get_MPE_FEC_indicator_text(int MPE_FEC_indicator) {
  return text_of(MPE_FEC_indicator, {"yes", "no"}, "n/a");
}

const char* DescriptorTerrestrialDeliverySystem::get_constellation_text(int constellation) {
  return text_of(constellation, {"QPSK", "16-QAM", "64-QAM"}, "reserved for future use");
}

const char* DescriptorTerrestrialDeliverySystem::get_hierarchy_information_text(int hierarchy_information) {
  return text_of(hierarchy_information,
                 {"non-hierarchical, native interleaver", "alpha = 1, native interleaver",
                  "alpha = 2, native interleaver", "alpha = 4, native interleaver",
                  "non-hierarchical, in-depth interleaver", "alpha = 1, in-depth interleaver",
                  "alpha = 2, in-depth interleaver", "alpha = 4, in-depth interleaver"},
                 "n/a");
}

const char* DescriptorTerrestrialDeliverySystem::get_code_rate_stream_text(int code_rate) {
  return text_of(code_rate, {"1/2", "2/3", "3/4", "5/6", "7/8"}, "reserved for future use");
}

const char* DescriptorTerrestrialDeliverySystem::get_guard_interval_text(int guard_interval) {
  return text_of(guard_interval, {"1/32", "1/16", "1/8", "1/4"}, "n/a");
}

const char* DescriptorTerrestrialDeliverySystem::get_transmission_mode_text(int transmission_mode) {
  return text_of(transmission_mode, {"2k mode", "8k mode", "4k mode"}, "reserved for future use");
}

const char* DescriptorTerrestrialDeliverySystem::get_other_frequency_flag_text(int other_frequency_flag) {
  return text_of(other_frequency_flag, {"no", "yes"}, "n/a");
}

}  // namespace quillon
