#include <quillon/descriptors/event/short_event.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorShortEvent::describe(V& v, S& s) {
  v.field("language_code", s.iso_639_language_code_);
  v.field("event_name", s.event_name_);
  v.field("text", s.text_);
}
QUILLON_FACES_OF(DescriptorShortEvent, "short_event_descriptor")

}  // namespace quillon
