#include <quillon/descriptors/event/pdc.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorPDC::describe(V& v, S& s) {
  v.field("programme_identification_label", s.programme_identification_label_);
}
QUILLON_SILENT_FACES_OF(DescriptorPDC, "PDC_descriptor")

}  // namespace quillon
