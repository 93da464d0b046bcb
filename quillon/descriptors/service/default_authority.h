#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The authority of content references that name none (TS 102 323, 6.3), kept as raw bytes.
class QUILLON_API DescriptorDefaultAuthority final : public DescriptorBase {
 public:
  DescriptorDefaultAuthority() = default;
  explicit DescriptorDefaultAuthority(ByteView d)
      : DescriptorBase(d), default_authority_(d.bytes(2, descriptor_length)) {}

  QUILLON_FIELD(std::vector<uint8_t>, default_authority, get_default_authority);

  QUILLON_FACES(default_authority_);
};

}  // namespace quillon
