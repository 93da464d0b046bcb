#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The label by which a recorder knows a programme, for Programme Delivery Control (EN 300 468, 6.2.29).
class QUILLON_API DescriptorPDC final : public DescriptorBase {
 public:
  DescriptorPDC() = default;
  explicit DescriptorPDC(ByteView d)
      : DescriptorBase(d), programme_identification_label_(d.bits(2, 3, 4) << 24 | d.u24(3)) {}

  const char* get_programme_identification_label_text() const { return "to be implemented"; }

  // 28 bits: the label shifted up by 8, with the byte after the descriptor in its low bits.
  QUILLON_FIELD(int, programme_identification_label, get_programme_identification_label);

  QUILLON_FACES();
};

}  // namespace quillon
