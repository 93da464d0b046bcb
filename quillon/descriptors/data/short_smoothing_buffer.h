#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The smoothing buffer of a service or event, in brief (EN 300 468, 6.2.38): codes of size and leak rate.
class QUILLON_API DescriptorShortSmoothingBuffer final : public DescriptorBase {
 public:
  DescriptorShortSmoothingBuffer() = default;
  explicit DescriptorShortSmoothingBuffer(ByteView d)
      : DescriptorBase(d),
        sb_size(d.bits(2, 7, 2)),
        sb_leak_rate(d.bits(2, 5, 6)),
        DVB_reserved(d.bytes(3, descriptor_length - 1)) {}

  int sb_size = 0;
  int sb_leak_rate = 0;
  std::vector<uint8_t> DVB_reserved;

  QUILLON_FACES(DVB_reserved);
};

}  // namespace quillon
