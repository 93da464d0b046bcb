#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The place of a stream among those of a scalable coding (ISO/IEC 13818-1, 2.6.6).
class QUILLON_API DescriptorHierarchy final : public DescriptorBase {
 public:
  DescriptorHierarchy() = default;
  explicit DescriptorHierarchy(ByteView d)
      : DescriptorBase(d),
        hierarchy_type_(d.bits(2, 3, 4)),
        hierarchy_layer_index_(d.bits(3, 5, 6)),
        hierarchy_embedded_layer_index_(d.bits(4, 5, 6)),
        hierarchy_channel_(d.bits(5, 5, 6)) {}

  const char* get_hierchy_type_string() const;

  QUILLON_FIELD(int, hierarchy_type, get_hierarchy_type);
  QUILLON_FIELD(int, hierarchy_layer_index, get_hierarchy_layer_index);
  QUILLON_FIELD(int, hierarchy_embedded_layer_index, get_hierarchy_embedded_layer_index);
  QUILLON_FIELD(int, hierarchy_channel, get_hierarchy_channel);

  QUILLON_FACES();
};

}  // namespace quillon
