#pragma once

// Streams made of the bytes of an input, whose first two are choices.

#include "fuzz/structure.h"

#include <span>

namespace quillon::fuzz {

struct MadeStream {
  // Bits: 1 the bytes are sections to be packed, 2 sync bytes are put where they belong, 4 every PID is read,
  // 8 repeated sections are given, 16 PIDs are left when they gave a section, 32 the stream is spliced; the
  // upper two are its stride.
  uint8_t choice = 0;
  uint8_t chance = 0;
  Bytes bytes;
};

MadeStream make_stream(const uint8_t* data, size_t size);

// The packets of sections, of which the first begins a packet and the others follow it at once; `counter` is
// that of the first packet, and then of the next.
Bytes packets_of(std::span<const Bytes> sections, int pid, uint8_t& counter);

}  // namespace quillon::fuzz
