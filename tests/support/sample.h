#pragma once

#include "tests/support/bytes.h"

namespace quillon::test {

// A small multiplex with two services, one of them scrambled.
Bytes sample_stream();

}  // namespace quillon::test
