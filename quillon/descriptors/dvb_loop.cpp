#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/descriptors/internal/family.h>

namespace quillon {

using namespace detail;

constinit const Family DvbLoop::family = make_family(
    {QUILLON_MPEG2_KINDS(QUILLON_KIND_ROW) QUILLON_DVB_KINDS(QUILLON_KIND_ROW) QUILLON_USER_PRIVATE_ROW(true),
     QUILLON_GENERAL_ROW(true)},
    false);

#define QUILLON_BODY(tag, Class, accessor, element)           \
  const std::vector<Class>& DvbLoop::get_##accessor() const { \
    return vector_of<Class>(tag);                             \
  }
QUILLON_MPEG2_KINDS(QUILLON_BODY)
QUILLON_DVB_KINDS(QUILLON_BODY)
#undef QUILLON_BODY

}  // namespace quillon
