#pragma once

// A transport stream put together from packets that are due at their times.

#include "tests/support/packets.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace quillon::sample {

using test::Bytes;

// Of the system clock, 27 MHz.
using Ticks = int64_t;
constexpr Ticks kSecond = 27'000'000;
constexpr Ticks ms(int count) {
  return count * (kSecond / 1000);
}

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
  Multiplex(Ticks ticks_a_packet, Ticks length) : ticks_a_packet_(ticks_a_packet), length_(length) {}

  Ticks length() const { return length_; }
  // What `make` gives for the times from `begin` on, as often as there is time.
  template <class Make>
  std::vector<TimedSection> repeated(Ticks begin, Ticks period, Make make) const {
    std::vector<TimedSection> out;
    for (Ticks due = begin; due < length_; due += period)
      for (const Bytes& section : make(due)) out.push_back({due, section});
    return out;
  }

  // Sections of one PID; those that are due together share packets.
  void add_sections(int pid, std::vector<TimedSection> sections);
  // One section again and again.
  template <class Make>
  void repeat(int pid, Ticks begin, Ticks period, Make make) {
    add_sections(pid, repeated(begin, period, [&](Ticks due) { return std::vector<Bytes>{make(due)}; }));
  }
  void add_media(TimedPacket packet) { media_.push_back(std::move(packet)); }

  Bytes stream();

 private:
  const Ticks ticks_a_packet_;
  const Ticks length_;
  std::vector<TimedPacket> tables_;
  std::vector<TimedPacket> media_;
};

// Where the PCR of a packet is that has one.
constexpr size_t kClockAt = 6;

// program_clock_reference: base, reserved, extension.
Bytes clock_reference(Ticks time);

}  // namespace quillon::sample
