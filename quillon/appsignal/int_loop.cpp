#include <quillon/appsignal/int_classes.h>
#include <quillon/appsignal/int_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

namespace detail {

// The table's own 14 kinds are saved in place of the 19 of MPEG-2, in front of those of DVB.
constinit const Family int_family = make_family(
    {
#define QUILLON_KIND(tag, Class, accessor, element, rank) {tag, element, element, &vector_ops<Class>, rank},
#include <quillon/appsignal/int_kinds.inc>
#undef QUILLON_KIND
#define QUILLON_KIND(tag, Class, accessor, element, rank) \
  {tag, element, element, &vector_ops<Class>, rank - 19 + 14},
#include <quillon/descriptors/dvb_kinds.inc>
#undef QUILLON_KIND
        {-1, "general_descriptor", "general_descriptor", &vector_ops<DescriptorGeneral>, 75},
        {-1, "user_private_descriptor", "user_private_descriptor", &vector_ops<DescriptorGeneral>, 76},
    },
    false);

}  // namespace detail

#define QUILLON_KIND(tag, Class, accessor, element, rank)           \
  const std::vector<Class>& IntLoop::get_##accessor() const {       \
    return store_.get<Class>(detail::int_family.kind_for_tag(tag)); \
  }
#include <quillon/appsignal/int_kinds.inc>
#include <quillon/descriptors/dvb_kinds.inc>
#undef QUILLON_KIND

const std::vector<DescriptorGeneral>& IntLoop::get_general_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::int_family.general_kind());
}
const std::vector<DescriptorGeneral>& IntLoop::get_user_private_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::int_family.user_private_kind());
}

}  // namespace quillon
