#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// Tells that the provider asserts rights in the content (A/65, 6.9).
class QUILLON_API DescriptorAtscRedistributionControl final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscRedistributionControl() = default;
  explicit DescriptorAtscRedistributionControl(ByteView d)
      : DescriptorAtscWireOnly(d), data(d.bytes(2, descriptor_length)) {}

  const char* get_tag_text() const override { return "rc_descriptor"; }

  std::vector<uint8_t> data;

  QUILLON_WALK;
};

}  // namespace quillon
