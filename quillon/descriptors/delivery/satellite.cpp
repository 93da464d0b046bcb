#include <quillon/descriptors/delivery/satellite.h>
#include <quillon/descriptors/internal/bcd.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

using detail::text_of;

DescriptorSatelliteDeliverySystem::DescriptorSatelliteDeliverySystem(ByteView d)
    : DescriptorBase(d),
      // The last of the eight digits has no weight: kept, tools compare the printed value.
      // Quirk: DescriptorSatelliteDeliverySystem, DescriptorCableDeliverySystem frequency
      frequency(d.standard() ? detail::bcd_number(d, 2) / 1e5
                             : detail::bcd_sum(d, 2, {100, 10, 1, 0.1, 0.01, 0.001, 0.0001})),
      orbital_position(detail::bcd_sum(d, 6, {100, 10, 1, 0.1})),
      west_east_flag(d.bits(8, 7, 1)),
      polarization(d.bits(8, 6, 2)),
      roll_off(d.bits(8, 4, 2)),
      modulation_system(d.bits(8, 2, 1)),
      modulation_type(d.bits(8, 1, 2)),
      symbol_rate(detail::symbol_rate(d, 9)),
      FEC_inner(d.bits(12, 3, 4)) {}

template <class V, class S>
void DescriptorSatelliteDeliverySystem::describe(V& v, S& s) {
  v.labels("", " ");
  if constexpr (V::dump) v.stream() << std::dec;
  v.field("frequency", s.frequency);
  v.field("orbital_position", s.orbital_position);
  v.coded("west_east_flag", s.west_east_flag, get_west_east_flag_text);
  v.coded("polarization", s.polarization, {get_polarization_text, standard_polarization_text});
  if constexpr (!V::dump) {
    v.coded("roll_off", s.roll_off, get_roll_off_text);
    v.coded("modulation_system", s.modulation_system, get_modulation_system_text);
    v.coded("modulation_type", s.modulation_type, get_modulation_type_text);
  }
  v.field("symbol_rate", s.symbol_rate);
  v.coded("FEC_inner", s.FEC_inner, {get_FEC_inner_text, standard_FEC_inner_text});
}
QUILLON_FACES_OF(DescriptorSatelliteDeliverySystem, "satellite_delivery_system_descriptor")

const char* DescriptorSatelliteDeliverySystem::get_west_east_flag_text(int west_east_flag) {
  return west_east_flag == 0 ? "west" : "east";
}

const char* DescriptorSatelliteDeliverySystem::get_polarization_text(int polarization) {
  return text_of(polarization,
                 {"linear - horizontal", "linear - vertical", "circular - horizontal", "circular - vertical"},
                 "<unknown>");
}

const char* DescriptorSatelliteDeliverySystem::get_modulation_type_text(int modulation_type) {
  return text_of(modulation_type, {"Auto", "QPSK", "8PSK", "16-QAM (n/a for DVB-S2)"}, "reserved");
}

const char* DescriptorSatelliteDeliverySystem::get_modulation_system_text(int modulation_system) {
  return text_of(modulation_system, {"DVB-S", "DVB-S2"}, "reserved");
}

const char* DescriptorSatelliteDeliverySystem::get_roll_off_text(int roll_off) {
  return text_of(roll_off, {"0,35", "0,25", "0,20"}, "reserved");
}

const char* DescriptorSatelliteDeliverySystem::get_FEC_inner_text(int FEC_inner) {
  return text_of(FEC_inner, {"not defined", "1/2", "2/3", "3/4", "5/6", "7/8", "reserved", "no conv. coding"},
                 "reserved");
}

// Quirk: satellite polarization and FEC_inner texts
const char* DescriptorSatelliteDeliverySystem::standard_polarization_text(int polarization) {
  return text_of(polarization,
                 {"linear - horizontal", "linear - vertical", "circular - left", "circular - right"},
                 "<unknown>");
}

const char* DescriptorSatelliteDeliverySystem::standard_FEC_inner_text(int FEC_inner) {
  if (FEC_inner == 15) return "no conv. coding";
  return text_of(FEC_inner, {"not defined", "1/2", "2/3", "3/4", "5/6", "7/8", "8/9", "3/5", "4/5", "9/10"},
                 "reserved");
}

// Flag and indicator share a bit. Kept: readers of saved documents rely on it.
DescriptorS2SatelliteDeliverySystem::DescriptorS2SatelliteDeliverySystem(ByteView d)
    : DescriptorBase(d),
      scrambling_sequence_selector(d.bits(2, 7, 1)),
      multiple_input_stream_flag(d.bits(2, 6, 1)),
      // Quirk: DescriptorS2SatelliteDeliverySystem backwards_compatibility_indicator
      backwards_compatibility_indicator(d.bits(2, d.standard() ? 5 : 6, 1)) {
  int next = 3;
  if (scrambling_sequence_selector == 1) {
    scrambling_sequence_index = d.bits(3, 1, 18);
    next = 6;
  }
  if (multiple_input_stream_flag == 1) input_stream_identifier = d[next++];
  // Quirk: DescriptorS2SatelliteDeliverySystem not_timeslice_flag, TS_GS_mode, timeslice_number
  if (!d.standard()) return;
  not_timeslice_flag = d.bits(2, 4, 1);
  TS_GS_mode = d.bits(2, 1, 2);
  if (not_timeslice_flag == 0 && next < 2 + descriptor_length) timeslice_number = d[next];
}

template <class V, class S>
void DescriptorS2SatelliteDeliverySystem::describe(V& v, S& s) {
  v.field("scrambling_sequence_selector", s.scrambling_sequence_selector);
  v.field("multiple_input_stream_flag", s.multiple_input_stream_flag);
  v.field("backwards_compatibility_indicator", s.backwards_compatibility_indicator);
  v.field("scrambling_sequence_index", s.scrambling_sequence_index);
  v.field("input_stream_identifier", s.input_stream_identifier);
  v.standard("not_timeslice_flag", s.not_timeslice_flag);
  v.standard("TS_GS_mode", s.TS_GS_mode, standard_TS_GS_mode_text);
  v.standard("timeslice_number", s.timeslice_number);
}
QUILLON_SILENT_FACES_OF(DescriptorS2SatelliteDeliverySystem, "S2_satellite_delivery_system_descriptor")

const char* DescriptorS2SatelliteDeliverySystem::standard_TS_GS_mode_text(int TS_GS_mode) {
  return text_of(TS_GS_mode, {"generic packetized", "GSE", "transport stream"}, "reserved");
}

}  // namespace quillon
