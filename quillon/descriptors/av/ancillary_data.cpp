#include <quillon/descriptors/av/ancillary_data.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorAncillaryData::describe(V& v, S& s) {
  v.field("ancillary_data_identifier", s.ancillary_data_identifier);
}
// Kept, the bare suffix: readers of reports rely on it.
QUILLON_SILENT_FACES_OF(DescriptorAncillaryData, "_descriptor")

}  // namespace quillon
