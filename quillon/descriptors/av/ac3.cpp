#include <quillon/descriptors/av/ac3.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

namespace {

// Takes the bytes after the flags, in order.
class Cursor {
 public:
  explicit Cursor(ByteView descriptor) : d_(descriptor) {}

  int byte_if(int flag) { return flag ? d_[at_++] : 0; }
  std::vector<uint8_t> rest() const { return d_.bytes(at_, 2 + d_[1] - at_); }

 private:
  ByteView d_;
  int at_ = 3;
};

}  // namespace

DescriptorAC3::DescriptorAC3(ByteView d)
    : DescriptorBase(d),
      component_type_flag(d.bits(2, 7, 1)),
      bsid_flag(d.bits(2, 6, 1)),
      mainid_flag(d.bits(2, 5, 1)),
      asvc_flag(d.bits(2, 4, 1)) {
  Cursor cursor(d);
  AC_3_type = cursor.byte_if(component_type_flag);
  bsid = cursor.byte_if(bsid_flag);
  mainid = cursor.byte_if(mainid_flag);
  asvc = cursor.byte_if(asvc_flag);
  additional_info = cursor.rest();
}

template <class V, class S>
void DescriptorAC3::describe(V& v, S& s) {
  v.field("component_type_flag", s.component_type_flag);
  v.field("bsid_flag", s.bsid_flag);
  v.field("mainid_flag", s.mainid_flag);
  v.field("asvc_flag", s.asvc_flag);
  v.field("AC_3_type", s.AC_3_type);
  v.field("bsid", s.bsid);
  v.field("mainid", s.mainid);
  v.field("asvc", s.asvc);
  v.bytes("additional_info", s.additional_info);
}
// Kept, the bare suffix: readers of reports rely on it.
QUILLON_SILENT_FACES_OF(DescriptorAC3, "_descriptor")

DescriptorEnhancedAC3::DescriptorEnhancedAC3(ByteView d)
    : DescriptorBase(d),
      component_type_flag(d.bits(2, 7, 1)),
      bsid_flag(d.bits(2, 6, 1)),
      mainid_flag(d.bits(2, 5, 1)),
      asvc_flag(d.bits(2, 4, 1)),
      mixinfoexists(d.bits(2, 3, 1)),
      substream1_flag(d.bits(2, 2, 1)),
      substream2_flag(d.bits(2, 1, 1)),
      substream3_flag(d.bits(2, 0, 1)) {
  Cursor cursor(d);
  component_type = cursor.byte_if(component_type_flag);
  bsid = cursor.byte_if(bsid_flag);
  mainid = cursor.byte_if(mainid_flag);
  asvc = cursor.byte_if(asvc_flag);
  substream1 = cursor.byte_if(substream1_flag);
  substream2 = cursor.byte_if(substream2_flag);
  substream3 = cursor.byte_if(substream3_flag);
  additional_info = cursor.rest();
}

template <class V, class S>
void DescriptorEnhancedAC3::describe(V& v, S& s) {
  v.field("component_type_flag", s.component_type_flag);
  v.field("bsid_flag", s.bsid_flag);
  v.field("mainid_flag", s.mainid_flag);
  v.field("asvc_flag", s.asvc_flag);
  v.field("mixinfoexists", s.mixinfoexists);
  v.field("substream1_flag", s.substream1_flag);
  v.field("substream2_flag", s.substream2_flag);
  v.field("substream3_flag", s.substream3_flag);
  v.field("component_type", s.component_type);
  v.field("bsid", s.bsid);
  v.field("mainid", s.mainid);
  v.field("asvc", s.asvc);
  v.field("substream1", s.substream1);
  v.field("substream2", s.substream2);
  v.field("substream3", s.substream3);
  v.bytes("additional_info", s.additional_info);
}
QUILLON_SILENT_FACES_OF(DescriptorEnhancedAC3, "enhanced_AC-3_descriptor")

}  // namespace quillon
