#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

namespace detail {

// The general kinds are loaded and never saved.
constinit const Family atsc_family = make_family(
    {
#define QUILLON_KIND(tag, Class, accessor, element, rank) {tag, element, element, &vector_ops<Class>, rank},
#include <quillon/atsc/atsc_kinds.inc>
#undef QUILLON_KIND
#define QUILLON_KIND(tag, Class, accessor, element, rank) \
  {tag, "atsc_" element, "atsc_" element, &vector_ops<Class>, rank},
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  {tag, "atsc_" saved, "atsc_" loaded, &vector_ops<Class>, rank},
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
        {-1, "general_descriptor", "general_descriptor", &vector_ops<DescriptorGeneral>, 0},
        {-1, "user_private_descriptor", "user_private_descriptor", &vector_ops<DescriptorGeneral>, 0},
    },
    true);

}  // namespace detail

#define QUILLON_KIND(tag, Class, accessor, element, rank)            \
  const std::vector<Class>& AtscLoop::get_##accessor() const {       \
    return store_.get<Class>(detail::atsc_family.kind_for_tag(tag)); \
  }
#include <quillon/atsc/atsc_kinds.inc>
#undef QUILLON_KIND
#define QUILLON_KIND(tag, Class, accessor, element, rank)            \
  const std::vector<Class>& AtscLoop::get_atsc_##accessor() const {  \
    return store_.get<Class>(detail::atsc_family.kind_for_tag(tag)); \
  }
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  QUILLON_KIND(tag, Class, accessor, saved, rank)
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS

const std::vector<DescriptorGeneral>& AtscLoop::get_general_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::atsc_family.general_kind());
}
const std::vector<DescriptorGeneral>& AtscLoop::get_user_private_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::atsc_family.user_private_kind());
}

}  // namespace quillon
