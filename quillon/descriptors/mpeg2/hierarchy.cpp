#include <quillon/descriptors/internal/describe.h>
#include <quillon/descriptors/mpeg2/hierarchy.h>

namespace quillon {

template <class V, class S>
void DescriptorHierarchy::describe(V& v, S& s) {
  v.field("hierarchy_type", s.hierarchy_type_);
  v.field("hierarchy_layer_index", s.hierarchy_layer_index_);
  v.field("hierarchy_embedded_layer_index", s.hierarchy_embedded_layer_index_);
  v.field("hierarchy_channel", s.hierarchy_channel_);
}
QUILLON_SILENT_FACES_OF(DescriptorHierarchy, "hierachy_descriptor")

const char* DescriptorHierarchy::get_hierchy_type_string() const {
  switch (hierarchy_type_) {
    case 1:
      return "ITU-T Rec. H.262|ISO/IEC 13818-2 Spatial Scalability";
    case 2:
      return "ITU-T Rec. H.262|ISO/IEC 13818-2 SNR Scalability";
    case 3:
      return "ITU-T Rec. H.262|ISO/IEC 13818-2 Temporal Scalability";
    case 4:
      return "ITU-T Rec. H.262|ISO/IEC 13818-2 Data partitioning";
    case 5:
      return "ISO/IEC 13818-3 Extension bitstream";
    case 6:
      return "ITU-T Rec. H.222.0|ISO/IEC 13818-1 Private Stream";
    case 15:
      return "Base Layer";
    default:
      return "reserved";
  }
}

}  // namespace quillon
