#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The spoken announcements that a service supports, and where they come from (EN 300 468, 6.2.3).
class QUILLON_API DescriptorAnnouncementSupport final : public DescriptorBase {
 public:
  // A kind of announcement, and where it is.
  class QUILLON_API AnnouncementSupportData {
   public:
    AnnouncementSupportData() = default;
    // `available` is not looked at; `consumed` becomes 8 with a reference, 1 without.
    AnnouncementSupportData(ByteView bytes, int /*available*/, int& consumed) { consumed = read(bytes); }

    // Reads an item over this one and returns the bytes it used. The four reference fields are there for
    // reference_type 1 to 3 alone; with any other they stay as they were.
    int read(ByteView bytes);

    QUILLON_FIELD(int, announcement_type, get_announcement_type);
    QUILLON_FIELD(int, reference_type, get_reference_type);
    QUILLON_FIELD(int, original_network_id, get_original_network_id);
    QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
    QUILLON_FIELD(int, service_id, get_service_id);
    QUILLON_FIELD(int, component_tag, get_component_tag);

    QUILLON_RECORD_FACES;
  };

  DescriptorAnnouncementSupport() = default;
  // Throws error(error::bad_value) if the last item does not end with the body.
  explicit DescriptorAnnouncementSupport(ByteView d);

  QUILLON_FIELD(int, announcement_support_indicator, get_announcement_support_indicator);
  QUILLON_FIELD(std::vector<AnnouncementSupportData>, announcement_support_data,
                get_announcement_support_data);

  QUILLON_FACES();
};

}  // namespace quillon
