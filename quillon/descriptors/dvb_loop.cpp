#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

namespace detail {

constinit const Family dvb_family = make_family(
    {
#define QUILLON_KIND(tag, Class, accessor, element, rank) {tag, element, element, &vector_ops<Class>, rank},
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  {tag, saved, loaded, &vector_ops<Class>, rank},
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS
        {-1, "general_descriptor", "general_descriptor", &vector_ops<DescriptorGeneral>, 81},
        {-1, "user_private_descriptor", "user_private_descriptor", &vector_ops<DescriptorGeneral>, 80},
    },
    false);

}  // namespace detail

#define QUILLON_KIND(tag, Class, accessor, element, rank)           \
  const std::vector<Class>& DvbLoop::get_##accessor() const {       \
    return store_.get<Class>(detail::dvb_family.kind_for_tag(tag)); \
  }
#define QUILLON_KIND_LOADED_AS(tag, Class, accessor, saved, loaded, rank) \
  QUILLON_KIND(tag, Class, accessor, saved, rank)
#include <quillon/descriptors/dvb_kinds.inc>
#include <quillon/descriptors/mpeg2_kinds.inc>
#undef QUILLON_KIND
#undef QUILLON_KIND_LOADED_AS

const std::vector<DescriptorGeneral>& DvbLoop::get_general_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::dvb_family.general_kind());
}
const std::vector<DescriptorGeneral>& DvbLoop::get_user_private_descriptors() const {
  return store_.get<DescriptorGeneral>(detail::dvb_family.user_private_kind());
}

}  // namespace quillon
