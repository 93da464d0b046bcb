#pragma once

#include <cstdlib>

namespace quillon::fuzz {

// Aborts where something that always holds does not, so that the fuzzer keeps the input.
inline void require(bool held) {
  if (!held) std::abort();
}

}  // namespace quillon::fuzz
