#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// How to tune to a stream on a satellite (EN 300 468, 6.2.13.2).
class QUILLON_API DescriptorSatelliteDeliverySystem final : public DescriptorBase {
 public:
  DescriptorSatelliteDeliverySystem() = default;
  explicit DescriptorSatelliteDeliverySystem(ByteView d);

  static const char* get_west_east_flag_text(int west_east_flag);
  static const char* get_polarization_text(int polarization);
  static const char* get_modulation_type_text(int modulation_type);
  static const char* get_modulation_system_text(int modulation_system);
  static const char* get_roll_off_text(int roll_off);
  static const char* get_FEC_inner_text(int FEC_inner);

  const char* get_west_east_flag_text() const { return get_west_east_flag_text(west_east_flag); }
  const char* get_polarization_text() const { return get_polarization_text(polarization); }
  const char* get_modulation_type_text() const { return get_modulation_type_text(modulation_type); }
  const char* get_modulation_system_text() const { return get_modulation_system_text(modulation_system); }
  const char* get_roll_off_text() const { return get_roll_off_text(roll_off); }
  const char* get_FEC_inner_text() const { return get_FEC_inner_text(FEC_inner); }

  // In the edition in force.
  static const char* standard_polarization_text(int polarization);
  static const char* standard_FEC_inner_text(int FEC_inner);

  double frequency = 0;         // GHz, without the eighth digit but in the standard reading
  double orbital_position = 0;  // degrees
  int west_east_flag = 0;
  int polarization = 0;       // 2 bits
  int roll_off = 0;           // 2 bits
  int modulation_system = 0;  // 1 bit
  int modulation_type = 0;    // 2 bits
  double symbol_rate = 0;     // Msymbol/s
  int FEC_inner = 0;          // 4 bits

  QUILLON_FACES();
};

// What a DVB-S2 stream needs in addition to the satellite parameters (EN 300 468, 6.2.13.3).
class QUILLON_API DescriptorS2SatelliteDeliverySystem final : public DescriptorBase {
 public:
  DescriptorS2SatelliteDeliverySystem() = default;
  explicit DescriptorS2SatelliteDeliverySystem(ByteView d);

  static const char* standard_TS_GS_mode_text(int TS_GS_mode);

  int scrambling_sequence_selector = 0;
  int multiple_input_stream_flag = 0;
  // That of multiple_input_stream_flag, but in the standard reading.
  int backwards_compatibility_indicator = 0;
  int scrambling_sequence_index = 0;  // 18 bits, for scrambling_sequence_selector 1
  int input_stream_identifier = 0;    // for multiple_input_stream_flag 1
  // In the standard reading alone.
  int not_timeslice_flag = 0;  // 1: the stream is not time sliced
  int TS_GS_mode = 0;          // 2 bits; 2: transport stream
  int timeslice_number = 0;    // for not_timeslice_flag 0

  QUILLON_FACES();
};

}  // namespace quillon
