#include <quillon/descriptors/service/private_data_specifier.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorPrivateDataSpecifier::describe(V& v, S& s) {
  v.coded("private_data_specifier", s.private_data_specifier_, registry_kind::private_data);
}
QUILLON_FACES_OF(DescriptorPrivateDataSpecifier, "private_data_specifier_descriptor")

}  // namespace quillon
