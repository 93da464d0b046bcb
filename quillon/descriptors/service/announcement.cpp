#include <quillon/descriptors/service/announcement.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

// An item without a reference carries that of the item before it. Kept: readers of saved documents rely on
// it.
DescriptorAnnouncementSupport::DescriptorAnnouncementSupport(ByteView d)
    : DescriptorBase(d), announcement_support_indicator_(d.u16(2)) {
  AnnouncementSupportData item;
  const bool complete = each_row(d, 4, 2 + descriptor_length, [&](ByteView at, int) {
    // Quirk: DescriptorAnnouncementSupport items without reference
    if (d.standard()) item = {};
    const int used = item.read(at);
    announcement_support_data_.push_back(item);
    return used;
  });
  if (!complete) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorAnnouncementSupport::describe(V& v, S& s) {
  v.field("announcement_support_indicator", s.announcement_support_indicator_);
  v.list("announcement_support_data", "data", s.announcement_support_data_);
}
QUILLON_SILENT_FACES_OF(DescriptorAnnouncementSupport, "announcement_support_descriptor")

int DescriptorAnnouncementSupport::AnnouncementSupportData::read(ByteView bytes) {
  announcement_type_ = bytes.bits(0, 7, 4);
  reference_type_ = bytes.bits(0, 2, 3);
  if (reference_type_ < 1 || reference_type_ > 3) return 1;
  original_network_id_ = bytes.u16(1);
  transport_stream_id_ = bytes.u16(3);
  service_id_ = bytes.u16(5);
  component_tag_ = bytes[7];
  return 8;
}

template <class V, class S>
void DescriptorAnnouncementSupport::AnnouncementSupportData::describe(V& v, S& s) {
  v.field("announcement_type", s.announcement_type_);
  v.field("reference_type", s.reference_type_);
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("transport_stream_id", s.transport_stream_id_);
  v.field("service_id", s.service_id_);
  v.field("component_tag", s.component_tag_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorAnnouncementSupport::AnnouncementSupportData)

}  // namespace quillon
