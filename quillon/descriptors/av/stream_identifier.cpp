#include <quillon/descriptors/av/stream_identifier.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorStreamIdentifier::describe(V& v, S& s) {
  v.field("component_tag", s.component_tag);
}
QUILLON_FACES_OF(DescriptorStreamIdentifier, "stream_identifier_descriptor")

}  // namespace quillon
