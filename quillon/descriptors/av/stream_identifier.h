#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Labels a component of a service, so that descriptors in other tables can speak of it (EN 300 468, 6.2.39).
class QUILLON_API DescriptorStreamIdentifier final : public DescriptorBase {
 public:
  DescriptorStreamIdentifier() = default;
  explicit DescriptorStreamIdentifier(ByteView d) : DescriptorBase(d), component_tag(d[2]) {}

  int component_tag = 0;

  QUILLON_FACES();
};

}  // namespace quillon
