#include <quillon/descriptors/event/content_identifier.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

int size_of_entry(ByteView p) {
  const int location = p.bits(0, 1, 2);
  if (location == 0) return 2 + p[1];
  return location == 1 ? 3 : 1;
}

}  // namespace

DescriptorContentIdentifier::ContentIdentifierInfo::ContentIdentifierInfo(ByteView p, int& consumed)
    : crid_type_(p.bits(0, 7, 6)), crid_location_(p.bits(0, 1, 2)) {
  if (crid_location_ == 0) {
    crid_length_ = p[1];
    crid_byte_ = p.bytes(2, crid_length_);
  } else if (crid_location_ == 1) {
    crid_ref_ = p.u16(1);
  }
  consumed = size_of_entry(p);
}

template <class V, class S>
void DescriptorContentIdentifier::ContentIdentifierInfo::describe(V& v, S& s) {
  v.field("crid_type", s.crid_type_);
  v.field("crid_location", s.crid_location_);
  v.field("crid_length", s.crid_length_);
  v.bytes("crid_byte", s.crid_byte_);
  v.field("crid_ref", s.crid_ref_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorContentIdentifier::ContentIdentifierInfo)

DescriptorContentIdentifier::DescriptorContentIdentifier(ByteView d) : DescriptorBase(d) {
  if (!read_sized_rows(contentidentifierinfo_, d, 2, descriptor_length, size_of_entry))
    throw error("descriptor start end mismatch");
}

template <class V, class S>
void DescriptorContentIdentifier::describe(V& v, S& s) {
  v.list("contentidentifierinfo", "contentidentifierinfo", s.contentidentifierinfo_);
}
QUILLON_SILENT_FACES_OF(DescriptorContentIdentifier, "content_identifier_descriptor")

}  // namespace quillon
