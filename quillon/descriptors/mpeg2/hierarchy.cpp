#include <quillon/descriptors/internal/code_text.h>
#include <quillon/descriptors/mpeg2/hierarchy.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

namespace {

const char* hierarchy_type_text(int type) {
  if (type == 15) return "Base Layer";
  return detail::text_of(
      type,
      {"reserved", "ITU-T Rec. H.262|ISO/IEC 13818-2 Spatial Scalability",
       "ITU-T Rec. H.262|ISO/IEC 13818-2 SNR Scalability",
       "ITU-T Rec. H.262|ISO/IEC 13818-2 Temporal Scalability",
       "ITU-T Rec. H.262|ISO/IEC 13818-2 Data partitioning", "ISO/IEC 13818-3 Extension bitstream",
       "ITU-T Rec. H.222.0|ISO/IEC 13818-1 Private Stream"},
      "reserved");
}

}  // namespace

template <class V, class S>
void DescriptorHierarchy::describe(V& v, S& s) {
  v.coded("hierarchy_type", s.hierarchy_type_, {hierarchy_type_text, standard_hierarchy_type_text});
  v.field("hierarchy_layer_index", s.hierarchy_layer_index_);
  v.field("hierarchy_embedded_layer_index", s.hierarchy_embedded_layer_index_);
  v.field("hierarchy_channel", s.hierarchy_channel_);
  v.standard("no_view_scalability_flag", s.no_view_scalability_flag_);
  v.standard("no_temporal_scalability_flag", s.no_temporal_scalability_flag_);
  v.standard("no_spatial_scalability_flag", s.no_spatial_scalability_flag_);
  v.standard("no_quality_scalability_flag", s.no_quality_scalability_flag_);
  v.standard("tref_present_flag", s.tref_present_flag_);
}
QUILLON_SILENT_FACES_OF(DescriptorHierarchy, "hierachy_descriptor")

// Quirk: hierarchy_type texts
const char* DescriptorHierarchy::standard_hierarchy_type_text(int hierarchy_type) {
  if (hierarchy_type == 15) return "base layer or base view";
  return detail::text_of(hierarchy_type,
                         {"reserved", "spatial scalability", "SNR scalability", "temporal scalability",
                          "data partitioning", "extension bitstream", "private stream", "multi-view profile",
                          "combined scalability or MV-HEVC", "MVC or MVCD", "auxiliary picture layer"},
                         "reserved");
}

const char* DescriptorHierarchy::get_hierchy_type_string() const {
  return hierarchy_type_text(hierarchy_type_);
}

}  // namespace quillon
