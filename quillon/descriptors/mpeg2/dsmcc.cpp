#include <quillon/descriptors/mpeg2/dsmcc.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

DescriptorCarouselId::DescriptorCarouselId(ByteView d) : DescriptorBase(d), carousel_id_(d.u32(2)) {
  // Quirk: DescriptorCarouselId FormatId
  if (d.standard() && descriptor_length <= 4) return;
  formatid_ = d[6];
  if (formatid_ != 1) {
    private_data_byte_ = d.bytes(7, descriptor_length - 5);
    return;
  }
  moduleversion_ = d[7];
  moduleid_ = d.u16(8);
  blocksize_ = d.u16(10);
  modulesize_ = d.u32(12);
  compressionmethod_ = d[16];
  originalsize_ = d.u32(17);
  timeout_ = d[21];
  objectkeylength_ = d[22];
  objectkeydata_ = d.bytes(23, objectkeylength_);
  private_data_byte_ = d.bytes(23 + objectkeylength_, descriptor_length - objectkeylength_ - 21);
}

template <class V, class S>
void DescriptorCarouselId::describe(V& v, S& s) {
  v.field("carousel_id", s.carousel_id_);
  v.field("formatid", s.formatid_);
  v.field("moduleversion", s.moduleversion_);
  v.field("moduleid", s.moduleid_);
  v.field("blocksize", s.blocksize_);
  v.field("modulesize", s.modulesize_);
  v.field("compressionmethod", s.compressionmethod_);
  v.field("originalsize", s.originalsize_);
  v.field("timeout", s.timeout_);
  v.field("objectkeylength", s.objectkeylength_);
  v.bytes("objectkeydata", s.objectkeydata_);
  v.bytes("private_data_byte", s.private_data_byte_);
}
QUILLON_SILENT_FACES_OF(DescriptorCarouselId, "carousel_id_descriptor")

DescriptorAssociationTag::DescriptorAssociationTag(ByteView d)
    : DescriptorBase(d), association_tag_(d.u16(2)), use_(d.u16(4)), selector_length_(d[6]) {
  if ((use_ == 0 && selector_length_ != 8) || (use_ == 1 && selector_length_ != 0))
    throw error(error::length_mismatch, "association_tag_descriptor:selector_length");
  if (use_ == 0) {
    transaction_id_ = d.u32(7);
    timeout_ = d.u32(11);
  } else if (use_ != 1) {
    selector_byte_ = d.bytes(7, selector_length_);
  }
  private_data_byte_ = d.bytes(7 + selector_length_, descriptor_length - selector_length_ - 5);
}

template <class V, class S>
void DescriptorAssociationTag::describe(V& v, S& s) {
  v.field("association_tag", s.association_tag_);
  v.field("use", s.use_);
  v.field("selector_length", s.selector_length_);
  v.field("transaction_id", s.transaction_id_);
  v.field("timeout", s.timeout_);
  v.bytes("selector_byte", s.selector_byte_);
  v.bytes("private_data_byte", s.private_data_byte_);
}
QUILLON_SILENT_FACES_OF(DescriptorAssociationTag, "association_tag_descriptor")

}  // namespace quillon
