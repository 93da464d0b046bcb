#include <quillon/appsignal/prefetch.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorAitPreFetch::DescriptorAitPreFetch(ByteView d)
    : DescriptorAitBase(d), transport_protocol_label_(d[2]) {
  // Quirk: DescriptorAitPreFetch rows
  if (!read_uneven_rows(prefetch_info_, d, 3, descriptor_length - (d.standard() ? 1 : 0)))
    throw error(error::length_mismatch, "prefetch_descriptor: 1");
}

template <class V, class S>
void DescriptorAitPreFetch::describe(V& v, S& s) {
  v.field("transport_protocol_label", s.transport_protocol_label_);
  v.list("prefetch_info", "info", s.prefetch_info_);
}
QUILLON_FACES_OF(DescriptorAitPreFetch, "prefetch_descriptor")

template <class V, class S>
void DescriptorAitPreFetch::PreFetchInfo::describe(V& v, S& s) {
  v.field("label_length", s.label_length_);
  v.field("label", s.label_);
  v.field("prefetch_priority", s.prefetch_priority_);
}
QUILLON_RECORD_FACES_OF(DescriptorAitPreFetch::PreFetchInfo)

DescriptorAitDIILocation::DescriptorAitDIILocation(ByteView d)
    : DescriptorAitBase(d), transport_protocol_label_(d[2]) {
  // Quirk: DescriptorAitDIILocation rows
  const int label = d.standard() ? 1 : 0;
  if ((descriptor_length - label) % 4 != 0) throw error(error::length_mismatch, "dii_location_descriptor: 1");
  if (d.standard()) {
    read_rows(dii_location_infos_, d, 3, descriptor_length - 1, 4);
    return;
  }
  dii_location_infos_.assign(static_cast<size_t>(descriptor_length) / 4, DIILocationInfo(d));
}

template <class V, class S>
void DescriptorAitDIILocation::describe(V& v, S& s) {
  v.field("transport_protocol_label", s.transport_protocol_label_);
  v.list("dii_location_infos", "info", s.dii_location_infos_);
}
QUILLON_FACES_OF(DescriptorAitDIILocation, "DII_location_descriptor")

template <class V, class S>
void DescriptorAitDIILocation::DIILocationInfo::describe(V& v, S& s) {
  v.field("DII_identification", s.dii_identification_);
  v.field("associatoin_tag", s.association_tag_);  // sic: saved documents have this name
}
QUILLON_RECORD_FACES_OF(DescriptorAitDIILocation::DIILocationInfo)

}  // namespace quillon
