#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Whose the private descriptors and data that follow are (EN 300 468, 6.2.31).
class QUILLON_API DescriptorPrivateDataSpecifier final : public DescriptorBase {
 public:
  DescriptorPrivateDataSpecifier() = default;
  explicit DescriptorPrivateDataSpecifier(ByteView d)
      : DescriptorBase(d), private_data_specifier_(d.u32(2)) {}

  QUILLON_FIELD(uint32_t, private_data_specifier, get_private_data_specifier);

  QUILLON_FACES();
};

}  // namespace quillon
