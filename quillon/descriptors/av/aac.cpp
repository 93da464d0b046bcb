#include <quillon/descriptors/av/aac.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

DescriptorAAC::DescriptorAAC(ByteView d) : DescriptorBase(d), Profile_and_level(d[2]) {
  int pos = 4;
  // Quirk: DescriptorAAC type
  if (!d.standard()) {
    AAC_type_flag = 1;
  } else if (descriptor_length > 1) {
    AAC_type_flag = d.bits(3, 7, 1);
    SAOC_DE_flag = d.bits(3, 6, 1);
  }
  if (AAC_type_flag) AAC_type = d[pos++];
  additional_info = d.bytes(pos, 2 + descriptor_length - pos);
}

template <class V, class S>
void DescriptorAAC::describe(V& v, S& s) {
  v.field("Profile_and_level", s.Profile_and_level);
  v.field("AAC_type_flag", s.AAC_type_flag);
  v.standard("SAOC_DE_flag", s.SAOC_DE_flag);
  v.field("AAC_type", s.AAC_type);
  v.bytes("additional_info", s.additional_info);
}
QUILLON_SILENT_FACES_OF(DescriptorAAC, "AAC descriptor")

}  // namespace quillon
