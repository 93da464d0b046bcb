#pragma once

// What the tests of the demultiplexer share.

#include "tests/support/packets.h"

#include <string>
#include <vector>

#include <quillon/demux/demux.h>

namespace quillon::test {

constexpr int kPid = 0x100;
constexpr int kTable = 0x42;

using Sections = std::vector<Bytes>;
using Texts = std::vector<std::string>;

inline Bytes first(const Bytes& bytes, size_t size) {
  return Bytes(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(size));
}
inline Bytes behind(const Bytes& bytes, size_t at) {
  return Bytes(bytes.begin() + static_cast<ptrdiff_t>(at), bytes.end());
}

// One with the handler that most tests want.
struct TableDemux : RecordingDemux {
  explicit TableDemux(Bytes stream = {}) : RecordingDemux(std::move(stream)) {
    add_psi_handler(kPid, kTable);
  }
};

inline Demux::TSHeader header_of(const PacketHeader& h) {
  return Demux::TSHeader(packet(h, {}).data());
}

}  // namespace quillon::test
