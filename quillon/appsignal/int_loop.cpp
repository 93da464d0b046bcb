#include <quillon/appsignal/int_classes.h>
#include <quillon/appsignal/int_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

using namespace detail;

constinit const Family IntLoop::family = make_family(
    {QUILLON_INT_KINDS(QUILLON_KIND_ROW) QUILLON_DVB_KINDS(QUILLON_KIND_ROW) QUILLON_GENERAL_ROW(true),
     QUILLON_USER_PRIVATE_ROW(true)},
    false);

#define QUILLON_BODY(tag, Class, accessor, element)           \
  const std::vector<Class>& IntLoop::get_##accessor() const { \
    return vector_of<Class>(tag);                             \
  }
QUILLON_INT_KINDS(QUILLON_BODY)
QUILLON_DVB_KINDS(QUILLON_BODY)
#undef QUILLON_BODY

}  // namespace quillon
