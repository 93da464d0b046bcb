#pragma once

#include "tests/support/bytes.h"

#include <filesystem>

namespace quillon::sample {

// The stream that is bundled as data/sample.ts: eleven seconds of a terrestrial multiplex of DVB with eight
// services, around 12:30 UTC on the 22nd of November 2026. It is as the standards want it but for this:
//   the service description comes every 2.4 s, and 2 s are allowed;
//   the second of three bouquet associations has a wrong CRC;
//   three packets of Südwind's video are lost.
test::Bytes dvb_sample();

// The stream that is bundled as data/sample-atsc.ts: five seconds of an ATSC multiplex with four channels and
// their guide of twelve hours, at the same time. `codes` is the folder of the lists that compress its texts.
test::Bytes atsc_sample(const std::filesystem::path& codes);

}  // namespace quillon::sample
