#include <quillon/descriptors/service/default_authority.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorDefaultAuthority::describe(V& v, S& s) {
  v.bytes("default_authority_byte", s.default_authority_);
}
QUILLON_SILENT_FACES_OF(DescriptorDefaultAuthority, "default_authority_descriptor")

}  // namespace quillon
