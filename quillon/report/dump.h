#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

#include <quillon/platform/api.h>

namespace quillon {

// Raw bytes, sixteen a row: in hexadecimal, then the letters among them with a point for every other byte.
// Leaves the stream in hexadecimal; fill and case are the stream's. Prints nothing for a size of 0, for which
// `data` may be null.
QUILLON_API void dump_block(std::ostream& stream, const uint8_t* data, int size);

// For a stream whose lines people, or other programs, rely on: from then on control characters in the texts
// of reports, line ends among them, are printed as "\n", "\r", "\t" or "\x1B".
QUILLON_API std::ostream& texts_on_one_line(std::ostream& stream);

namespace report {

inline void block(std::ostream& stream, const std::vector<uint8_t>& bytes) {
  dump_block(stream, bytes.data(), static_cast<int>(bytes.size()));
}

}  // namespace report
}  // namespace quillon
