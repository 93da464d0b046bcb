#include <quillon/descriptors/internal/describe.h>
#include <quillon/descriptors/service/private_data_specifier.h>

namespace quillon {

template <class V, class S>
void DescriptorPrivateDataSpecifier::describe(V& v, S& s) {
  v.field("private_data_specifier", s.private_data_specifier_);
}
QUILLON_FACES_OF(DescriptorPrivateDataSpecifier, "private_data_specifier_descriptor")

}  // namespace quillon
