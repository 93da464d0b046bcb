#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// How to tune to a stream of a terrestrial network (EN 300 468, 6.2.13.4).
class QUILLON_API DescriptorTerrestrialDeliverySystem final : public DescriptorBase {
 public:
  DescriptorTerrestrialDeliverySystem() = default;
  explicit DescriptorTerrestrialDeliverySystem(ByteView d)
      : DescriptorBase(d),
        centre_frequency(d.u32(2)),
        bandwidth(d.bits(6, 7, 3)),
        priority(d.bits(6, 4, 1)),
        Time_Slicing_indicator(d.bits(6, 3, 1)),
        MPE_FEC_indicator(d.bits(6, 2, 1)),
        constellation(d.bits(7, 7, 2)),
        hierarchy_information(d.bits(7, 5, 3)),
        code_rate_HP_stream(d.bits(7, 2, 3)),
        code_rate_LP_stream(d.bits(8, 7, 3)),
        guard_interval(d.bits(8, 4, 2)),
        transmission_mode(d.bits(8, 2, 2)),
        other_frequency_flag(d.bits(8, 0, 1)) {}

  static const char* get_bandwidth_text(int bandwidth);
  static const char* get_priority_text(int priority);
  static const char* get_Time_Slicing_indicator_text(int Time_Slicing_indicator);
  static const char* get_MPE_FEC_indicator_text(int MPE_FEC_indicator);
  static const char* get_constellation_text(int constellation);
  static const char* get_hierarchy_information_text(int hierarchy_information);
  static const char* get_code_rate_stream_text(int code_rate);
  static const char* get_guard_interval_text(int guard_interval);
  static const char* get_transmission_mode_text(int transmission_mode);
  static const char* get_other_frequency_flag_text(int other_frequency_flag);

  // In the edition in force: 1 is high priority.
  static const char* standard_priority_text(int priority);

  const char* get_bandwidth_text() const { return get_bandwidth_text(bandwidth); }
  const char* get_priority_text() const { return get_priority_text(priority); }
  const char* get_Time_Slicing_indicator_text() const {
    return get_Time_Slicing_indicator_text(Time_Slicing_indicator);
  }
  const char* get_MPE_FEC_indicator_text() const { return get_MPE_FEC_indicator_text(MPE_FEC_indicator); }
  const char* get_constellation_text() const { return get_constellation_text(constellation); }
  const char* get_hierarchy_information_text() const {
    return get_hierarchy_information_text(hierarchy_information);
  }
  const char* get_code_rate_HP_stream_text() const { return get_code_rate_stream_text(code_rate_HP_stream); }
  const char* get_code_rate_LP_stream_text() const { return get_code_rate_stream_text(code_rate_LP_stream); }
  const char* get_guard_interval_text() const { return get_guard_interval_text(guard_interval); }
  const char* get_transmission_mode_text() const { return get_transmission_mode_text(transmission_mode); }
  const char* get_other_frequency_flag_text() const {
    return get_other_frequency_flag_text(other_frequency_flag);
  }

  uint32_t centre_frequency = 0;  // units of 10 Hz
  int bandwidth = 0;              // 3 bits
  int priority = 0;
  int Time_Slicing_indicator = 0;
  int MPE_FEC_indicator = 0;
  int constellation = 0;          // 2 bits
  int hierarchy_information = 0;  // 3 bits
  int code_rate_HP_stream = 0;    // 3 bits
  int code_rate_LP_stream = 0;    // 3 bits
  int guard_interval = 0;         // 2 bits
  int transmission_mode = 0;      // 2 bits
  int other_frequency_flag = 0;

  QUILLON_FACES();
};

}  // namespace quillon
