#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// Private information with its format identifier (A/53); the body is not read.
class QUILLON_API DescriptorAtscATSCPrivateInformation final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscATSCPrivateInformation() = default;
  explicit DescriptorAtscATSCPrivateInformation(ByteView d) : DescriptorAtscWireOnly(d) {}

  const char* get_tag_text() const override { return ""; }

  QUILLON_WALK;
};

}  // namespace quillon
