#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Further frequencies of a multiplex (EN 300 468, 6.2.17), as they are on the wire: BCD or units of 10 Hz,
// as the coding_type says.
class QUILLON_API DescriptorFrequencyList final : public DescriptorBase {
 public:
  DescriptorFrequencyList() = default;
  // Throws error(error::bad_loop_unit) unless the length is a multiple of 4 and one more.
  explicit DescriptorFrequencyList(ByteView d);

  const char* get_coding_type_text() const;

  int coding_type = 0;  // 2 bits
  // A load halves the elements: each saved frequency comes back as its high and its low 16 bits.
  std::vector<unsigned long> centre_frequency;

  QUILLON_FACES(centre_frequency);
};

}  // namespace quillon
