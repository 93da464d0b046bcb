#include "apps/quillon/begin_program.h"

namespace quillon::app {

std::vector<std::string> begin_program(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

}  // namespace quillon::app
