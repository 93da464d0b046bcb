#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/ait_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

namespace detail {

constinit const Family ait_family = make_family(
    {
#define QUILLON_KIND(tag, Class, accessor, element, rank) {tag, element, element, &vector_ops<Class>, rank},
#include <quillon/appsignal/ait_kinds.inc>
#undef QUILLON_KIND
        {-1, "general_descriptor", "general_descriptor", &vector_ops<DescriptorGeneral>, 16},
        {-1, "user_private_descriptor", "user_private_descriptor", &vector_ops<DescriptorGeneral>, 17},
    },
    false);

}  // namespace detail

#define QUILLON_KIND(tag, Class, accessor, element, rank)           \
  const std::vector<Class>& AitLoop::get_##accessor() const {       \
    return store_.get<Class>(detail::ait_family.kind_for_tag(tag)); \
  }
#include <quillon/appsignal/ait_kinds.inc>
#undef QUILLON_KIND

const std::vector<DescriptorGeneral>& AitLoop::get_general_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::ait_family.general_kind());
}
const std::vector<DescriptorGeneral>& AitLoop::get_user_private_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::ait_family.user_private_kind());
}

void AitLoop::dump_loop(std::ostream& stream) const {
  store_.dump(detail::ait_family, stream, detail::ait_family.kind_for_tag(0x5F));
}

}  // namespace quillon
