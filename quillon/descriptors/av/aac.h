#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// An AAC stream (EN 300 468, annex H). The type is read as if its flag, in byte 3, were always set.
class QUILLON_API DescriptorAAC final : public DescriptorBase {
 public:
  DescriptorAAC() = default;
  explicit DescriptorAAC(ByteView d)
      : DescriptorBase(d),
        Profile_and_level(d[2]),
        AAC_type_flag(1),
        AAC_type(d[4]),
        additional_info(d.bytes(5, descriptor_length - 3)) {}

  int Profile_and_level = 0;
  int AAC_type_flag = 0;
  int AAC_type = 0;
  std::vector<uint8_t> additional_info;

  QUILLON_FACES(additional_info);
};

}  // namespace quillon
