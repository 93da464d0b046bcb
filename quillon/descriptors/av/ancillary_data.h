#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The kinds of ancillary data in an MPEG audio stream, a bit each (EN 300 468, 6.2.2).
class QUILLON_API DescriptorAncillaryData final : public DescriptorBase {
 public:
  DescriptorAncillaryData() = default;
  explicit DescriptorAncillaryData(ByteView d) : DescriptorBase(d), ancillary_data_identifier(d[2]) {}

  int ancillary_data_identifier = 0;

  QUILLON_FACES();
};

}  // namespace quillon
