#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/ait_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

using namespace detail;

constinit const Family AitLoop::family = make_family(
    {QUILLON_AIT_KINDS(QUILLON_KIND_ROW) QUILLON_GENERAL_ROW(true), QUILLON_USER_PRIVATE_ROW(true)}, false,
    true);

#define QUILLON_BODY(tag, Class, accessor, element)           \
  const std::vector<Class>& AitLoop::get_##accessor() const { \
    return vector_of<Class>(tag);                             \
  }
QUILLON_AIT_KINDS(QUILLON_BODY)
#undef QUILLON_BODY

}  // namespace quillon
