#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// Identifies an item of content (A/57). Its bytes are read in the standard reading, and walked then.
class QUILLON_API DescriptorAtscContentIdentifier final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscContentIdentifier() = default;
  explicit DescriptorAtscContentIdentifier(ByteView d) : DescriptorAtscWireOnly(d) {
    // Quirk: DescriptorAtscContentIdentifier body
    if (d.standard()) data = d.bytes(2, descriptor_length);
  }

  const char* get_tag_text() const override { return ""; }

  std::vector<uint8_t> data;

  QUILLON_WALK;
};

}  // namespace quillon
