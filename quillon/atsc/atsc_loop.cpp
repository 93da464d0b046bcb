#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

using namespace detail;

#define QUILLON_MPEG2_ROW(tag, Class, accessor, element) \
  QUILLON_KIND_ROW(tag, Class, accessor, "atsc_" element)
// The general kinds are loaded and never saved: kept.
constinit const Family AtscLoop::family = make_family(
    {QUILLON_MPEG2_KINDS(QUILLON_MPEG2_ROW) QUILLON_ATSC_KINDS(QUILLON_KIND_ROW) QUILLON_GENERAL_ROW(false),
     QUILLON_USER_PRIVATE_ROW(false)},
    true);

#define QUILLON_BODY(tag, Class, accessor, element)            \
  const std::vector<Class>& AtscLoop::get_##accessor() const { \
    return vector_of<Class>(tag);                              \
  }
QUILLON_ATSC_KINDS(QUILLON_BODY)
#define QUILLON_MPEG2_BODY(tag, Class, accessor, element)           \
  const std::vector<Class>& AtscLoop::get_atsc_##accessor() const { \
    return vector_of<Class>(tag);                                   \
  }
QUILLON_MPEG2_KINDS(QUILLON_MPEG2_BODY)
#undef QUILLON_BODY
#undef QUILLON_MPEG2_BODY
#undef QUILLON_MPEG2_ROW

}  // namespace quillon
