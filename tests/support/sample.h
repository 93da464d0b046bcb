#pragma once

#include "tests/support/bytes.h"

namespace quillon::test {

// The stream that is bundled as data/sample.ts: a small multiplex with two services, one of them scrambled.
Bytes sample_stream();

}  // namespace quillon::test
