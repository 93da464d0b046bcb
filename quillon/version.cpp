#include <quillon/version.h>

namespace quillon {

const char* version() {
  return QUILLON_VERSION_STRING;
}

}  // namespace quillon
