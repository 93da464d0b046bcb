#include <quillon/descriptors/event/related_content.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorRelatedContent::describe(V& v, S& s) {
  v.bytes("data", s.data_);
}
QUILLON_SILENT_FACES_OF(DescriptorRelatedContent, "related_content_descriptor")

}  // namespace quillon
