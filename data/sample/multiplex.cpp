#include "data/sample/multiplex.h"

#include <algorithm>
#include <array>
#include <utility>

#include <quillon/stream/packet_reader.h>

namespace quillon::sample {

namespace {

// Between the packets of one PID's sections, so that other tables find room.
constexpr Ticks kTableSpacing = ms(6);

class Queue {
 public:
  explicit Queue(std::vector<TimedPacket>& packets) : packets_(packets) {
    std::ranges::stable_sort(packets_, {}, &TimedPacket::due);
  }
  bool has_due(Ticks now) const { return at_ < packets_.size() && packets_[at_].due <= now; }
  TimedPacket& take() { return packets_[at_++]; }

 private:
  std::vector<TimedPacket>& packets_;
  size_t at_ = 0;
};

}  // namespace

Bytes clock_reference(Ticks time) {
  const auto ticks = static_cast<uint64_t>(time);
  return test::bits({{33, ticks / 300, "program_clock_reference_base"},
                     {6, 0x3F, "reserved"},
                     {9, ticks % 300, "program_clock_reference_extension"}});
}

void Multiplex::add_sections(int pid, std::vector<TimedSection> sections) {
  std::ranges::stable_sort(sections, {}, &TimedSection::due);
  Ticks free = 0;
  for (auto at = sections.begin(); at != sections.end();) {
    free = std::max(free, at->due);
    std::vector<Bytes> together;
    for (const Ticks due = at->due; at != sections.end() && at->due == due; ++at)
      together.push_back(std::move(at->section));
    const Bytes made = test::packets(together, {.pid = pid, .shared = true});
    for (auto packet = made.begin(); packet != made.end(); packet += test::kPacketSize, free += kTableSpacing)
      tables_.push_back({free, Bytes(packet, packet + test::kPacketSize)});
  }
}

Bytes Multiplex::stream() {
  Queue tables(tables_);
  Queue media(media_);
  const Bytes null = test::packet({.pid = TsPacket::null_pid}, {});
  std::array<uint8_t, TsPacket::pids> counters = {};
  Bytes out;
  for (Ticks now = 0; now < length_; now += ticks_a_packet_) {
    Bytes sent = null;
    Queue& queue = tables.has_due(now) ? tables : media;
    if (queue.has_due(now)) {
      TimedPacket& packet = queue.take();
      uint8_t& counter = counters[static_cast<size_t>(TsPacket::pid_of(packet.bytes.data()))];
      packet.bytes[3] = static_cast<uint8_t>((packet.bytes[3] & 0xF0) | counter);
      counter = (counter + 1) & 0x0F;
      if (packet.has_clock) std::ranges::copy(clock_reference(now), packet.bytes.begin() + kClockAt);
      if (!packet.lost) sent = std::move(packet.bytes);
    }
    out.insert(out.end(), sent.begin(), sent.end());
  }
  return out;
}

}  // namespace quillon::sample
