#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Says that there is related content information for a service (TS 102 323, 10.3). Its body is kept as bytes.
class QUILLON_API DescriptorRelatedContent final : public DescriptorBase {
 public:
  DescriptorRelatedContent() = default;
  explicit DescriptorRelatedContent(ByteView d) : DescriptorBase(d), data_(d.bytes(2, descriptor_length)) {}

  QUILLON_FIELD(std::vector<uint8_t>, data, get_data);

  QUILLON_FACES(data_);
};

}  // namespace quillon
