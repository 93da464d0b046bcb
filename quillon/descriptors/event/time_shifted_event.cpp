#include <quillon/descriptors/event/time_shifted_event.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorTimeShiftedEvent::describe(V& v, S& s) {
  v.field("reference_service_id", s.reference_service_id_);
  v.field("reference_event_id", s.reference_event_id_);
}
QUILLON_FACES_OF(DescriptorTimeShiftedEvent, "time_shifted_event_descriptor")

}  // namespace quillon
