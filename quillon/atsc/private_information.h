#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// Private information with its format identifier (A/53). The body is read in the standard reading, and walked
// then.
class QUILLON_API DescriptorAtscATSCPrivateInformation final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscATSCPrivateInformation() = default;
  explicit DescriptorAtscATSCPrivateInformation(ByteView d) : DescriptorAtscWireOnly(d) {
    // Quirk: DescriptorAtscATSCPrivateInformation body
    if (!d.standard()) return;
    format_identifier = d.u32(2);
    private_data = d.bytes(6, descriptor_length - 4);
  }

  const char* get_tag_text() const override { return ""; }

  uint32_t format_identifier = 0;
  std::vector<uint8_t> private_data;

  QUILLON_WALK;
};

}  // namespace quillon
