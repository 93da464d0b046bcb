#pragma once

// A transport stream put together from packets that are due at their times.

#include "tests/support/packets.h"

#include <cstdint>
#include <map>
#include <vector>

namespace quillon::sample {

using test::Bytes;

// Of the system clock, 27 MHz.
using Ticks = int64_t;
constexpr Ticks kSecond = 27'000'000;
constexpr Ticks kMillisecond = kSecond / 1000;

// A section and when it is due.
struct TimedSection {
  Ticks due;
  Bytes section;
};

struct TimedPacket {
  Ticks due;
  Bytes bytes;
  bool has_clock = false;  // its PCR is written when it leaves
  bool lost = false;       // counted, and not sent
};

// A multiplex of a constant bit rate: each packet takes the same time, and null packets fill. What is due
// leaves in order, tables before media, so that they keep their intervals. Packets of a PID leave in the
// order in which they were added.
class Multiplex {
 public:
  explicit Multiplex(Ticks ticks_a_packet) : ticks_a_packet_(ticks_a_packet) {}

  // Sections of one PID; those that are due together share packets.
  void add_sections(int pid, std::vector<TimedSection> sections);
  void add_media(TimedPacket packet) { media_.push_back(std::move(packet)); }

  Bytes stream(Ticks length);

 private:
  const Ticks ticks_a_packet_;
  std::vector<TimedPacket> tables_;
  std::vector<TimedPacket> media_;
};

// Where the PCR of a packet is that has one.
constexpr size_t kClockAt = 6;

// program_clock_reference: base, reserved, extension.
Bytes clock_reference(Ticks time);

}  // namespace quillon::sample
