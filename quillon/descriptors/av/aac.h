#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// An AAC stream (EN 300 468, annex H). The type is read as if its flag, in byte 3, were always set,
// but for the standard reading.
class QUILLON_API DescriptorAAC final : public DescriptorBase {
 public:
  DescriptorAAC() = default;
  explicit DescriptorAAC(ByteView d);

  int Profile_and_level = 0;
  int AAC_type_flag = 0;
  int SAOC_DE_flag = 0;  // in the standard reading alone
  int AAC_type = 0;
  std::vector<uint8_t> additional_info;

  QUILLON_FACES(additional_info);
};

}  // namespace quillon
