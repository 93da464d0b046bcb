#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// How to tune to a stream on a cable network (EN 300 468, 6.2.13.1).
class QUILLON_API DescriptorCableDeliverySystem final : public DescriptorBase {
 public:
  DescriptorCableDeliverySystem() = default;
  explicit DescriptorCableDeliverySystem(ByteView d);

  static const char* get_FEC_outer_text(int FEC_outer);
  static const char* get_modulation_text(int modulation);
  static const char* get_FEC_inner_text(int FEC_inner);

  const char* get_FEC_outer_text() const { return get_FEC_outer_text(FEC_outer); }
  const char* get_modulation_text() const { return get_modulation_text(modulation); }
  const char* get_FEC_inner_text() const { return get_FEC_inner_text(FEC_inner); }

  double frequency = 0;    // MHz, without the eighth digit but in the standard reading
  int FEC_outer = 0;       // 4 bits
  int modulation = 0;      // 8 bits
  double symbol_rate = 0;  // Msymbol/s
  int FEC_inner = 0;       // 4 bits

  QUILLON_FACES();
};

}  // namespace quillon
