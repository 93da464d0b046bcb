#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The label by which a recorder knows a programme, for Programme Delivery Control (EN 300 468, 6.2.29).
class QUILLON_API DescriptorPDC final : public DescriptorBase {
 public:
  DescriptorPDC() = default;
  explicit DescriptorPDC(ByteView d)
      : DescriptorBase(d),
        // Quirk: DescriptorPDC programme_identification_label
        programme_identification_label_(d.standard() ? d.bits(2, 3, 20) : d.bits(2, 3, 4) << 24 | d.u24(3)) {}

  const char* get_programme_identification_label_text() const { return "to be implemented"; }

  // In the standard reading 20 bits: day, 5 bits; month, 4; hour, 5; minute, 6. Else 28: the label shifted up
  // by 8, with the byte after the descriptor in its low bits.
  QUILLON_FIELD(int, programme_identification_label, get_programme_identification_label);

  QUILLON_FACES();
};

}  // namespace quillon
