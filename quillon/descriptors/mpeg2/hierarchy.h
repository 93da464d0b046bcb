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
        hierarchy_channel_(d.bits(5, 5, 6)) {
    // Quirk: DescriptorHierarchy scalability flags and tref_present_flag
    if (!d.standard()) return;
    no_view_scalability_flag_ = d.bits(2, 7, 1);
    no_temporal_scalability_flag_ = d.bits(2, 6, 1);
    no_spatial_scalability_flag_ = d.bits(2, 5, 1);
    no_quality_scalability_flag_ = d.bits(2, 4, 1);
    tref_present_flag_ = d.bits(4, 7, 1);
  }

  const char* get_hierchy_type_string() const;
  // In the edition in force.
  static const char* standard_hierarchy_type_text(int hierarchy_type);

  QUILLON_FIELD(int, hierarchy_type, get_hierarchy_type);
  QUILLON_FIELD(int, hierarchy_layer_index, get_hierarchy_layer_index);
  QUILLON_FIELD(int, hierarchy_embedded_layer_index, get_hierarchy_embedded_layer_index);
  QUILLON_FIELD(int, hierarchy_channel, get_hierarchy_channel);
  // Each 0 if the layer enhances that of the layer below it. They and the next are read in the standard
  // reading alone.
  QUILLON_FIELD(int, no_view_scalability_flag, get_no_view_scalability_flag);
  QUILLON_FIELD(int, no_temporal_scalability_flag, get_no_temporal_scalability_flag);
  QUILLON_FIELD(int, no_spatial_scalability_flag, get_no_spatial_scalability_flag);
  QUILLON_FIELD(int, no_quality_scalability_flag, get_no_quality_scalability_flag);
  // 0: TREF may be present in the PES headers.
  QUILLON_FIELD(int, tref_present_flag, get_tref_present_flag);

  QUILLON_FACES();
};

}  // namespace quillon
