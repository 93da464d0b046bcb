#include <quillon/descriptors/av/aac.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorAAC::describe(V& v, S& s) {
  v.field("Profile_and_level", s.Profile_and_level);
  v.field("AAC_type_flag", s.AAC_type_flag);
  v.field("AAC_type", s.AAC_type);
  v.bytes("additional_info", s.additional_info);
}
QUILLON_SILENT_FACES_OF(DescriptorAAC, "AAC descriptor")

}  // namespace quillon
