#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Time slicing and MPE-FEC of an elementary stream (EN 301 192, 9.5).
class QUILLON_API DescriptorTimeSliceFecIdentifier final : public DescriptorBase {
 public:
  DescriptorTimeSliceFecIdentifier() = default;
  // Throws error("descriptor length to small") if the length is below 3.
  explicit DescriptorTimeSliceFecIdentifier(ByteView d);

  const char* get_frame_size_cstr() const;
  const char* get_max_average_rate_cstr() const;

  int time_slicing = 0;
  int mpe_fec = 0;     // 2 bits
  int frame_size = 0;  // 3 bits
  int max_burst_duration = 0;
  int max_average_rate = 0;   // 4 bits
  int time_slice_fec_id = 0;  // 4 bits
  // But for the standard reading, the first selector byte, counted up by one an element.
  std::vector<uint8_t> id_selector_byte;

  QUILLON_FACES(id_selector_byte);
};

}  // namespace quillon
