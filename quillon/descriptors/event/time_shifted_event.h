#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Points from an event that starts later to the event that it repeats (EN 300 468, 6.2.44).
class QUILLON_API DescriptorTimeShiftedEvent final : public DescriptorBase {
 public:
  DescriptorTimeShiftedEvent() = default;
  explicit DescriptorTimeShiftedEvent(ByteView d)
      : DescriptorBase(d), reference_service_id_(d.u16(2)), reference_event_id_(d.u16(4)) {}

  QUILLON_FIELD(int, reference_service_id, get_reference_service_id);
  QUILLON_FIELD(int, reference_event_id, get_reference_event_id);

  QUILLON_FACES();
};

}  // namespace quillon
