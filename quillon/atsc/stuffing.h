#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// Stuffing (A/65, 6.9).
class QUILLON_API DescriptorAtscStuffing final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscStuffing() = default;
  explicit DescriptorAtscStuffing(ByteView d)
      : DescriptorAtscWireOnly(d), data(d.bytes(2, descriptor_length)) {}

  const char* get_tag_text() const override { return "stuffing_descriptor("; }  // kept, with its bracket

  std::vector<uint8_t> data;

  QUILLON_WALK;
};

}  // namespace quillon
