#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// Identifies an item of content (A/57); the body is not read.
class QUILLON_API DescriptorAtscContentIdentifier final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscContentIdentifier() = default;
  explicit DescriptorAtscContentIdentifier(ByteView d) : DescriptorAtscWireOnly(d) {}

  const char* get_tag_text() const override { return ""; }

  QUILLON_WALK;
};

}  // namespace quillon
