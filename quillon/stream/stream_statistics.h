#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/table_id.h>

namespace quillon {

// What was counted on a PID.
struct PidStatistics {
  uint64_t packets = 0;
  uint64_t continuity_errors = 0;  // packets that do not follow the last of their PID
  uint64_t duplicates = 0;
  uint64_t transport_errors = 0;  // packets whose error indicator is set
  uint64_t scrambled = 0;
  uint64_t clock_references = 0;  // PCRs
};

// How often a table is sent, by the section of it that was met first.
struct TableRepetition : TableId {
  uint64_t count = 0;      // of that section
  uint64_t intervals = 0;  // measured between them
  double smallest = 0;     // seconds, as the others
  double largest = 0;
  double mean = 0;
};

// What a transport stream consists of, and how well it came through. Time is what the stream's clock states
// (PCR), the one of the first PID that has one, or of another if that one stops. Where it jumps, or says that
// it does, time goes on at the rate before; a wrap is no jump.
//
//   StreamStatistics statistics;
//   SectionReader sections([&](const StreamSection& section) { statistics.on_section(section); },
//                          {.repeats = true});
//   while (packets.next(packet)) {
//     statistics.push(packet);
//     sections.push(packet);
//   }
//   std::cout << statistics.bit_rate(0x100) << " bit/s\n";
//
// It takes 450 KiB, and 128 bytes a table, of which the first 16,384 are recorded: 2.5 MiB in all; nothing a
// packet. For threads the rule of the tables holds (PsiBase1).
class QUILLON_API StreamStatistics {
 public:
  StreamStatistics();

  void push(const TsPacket& packet);
  // To be called after its last packet was pushed, for repeated sections too. Those with a wrong CRC, and of
  // a chain, do not count.
  void on_section(const StreamSection& section);

  uint64_t packets() const { return packets_; }
  uint64_t null_packets() const { return pid(TsPacket::null_pid).packets; }
  // Packets after a gap, but for the first of the input.
  uint64_t sync_losses() const { return sync_losses_; }
  // Of a PID; all zero outside 0 to 0x1FFF.
  const PidStatistics& pid(int pid) const;

  // The time that the clock went through without a jump.
  double seconds() const;
  // Bits of packets a second in that time; 0 before two PCRs. That of a PID is its share in all packets.
  double bit_rate() const;
  double bit_rate(int pid) const;

  // In the order of their ids.
  std::vector<TableRepetition> tables() const;

 private:
  struct Pid {
    PidStatistics counts;
    uint8_t counter = 0;
    bool met = false;       // `counter` is that of a packet
    bool repeated = false;  // the last packet was a duplicate
  };
  struct Table {
    int section_number = 0;
    bool timed = false;  // `last` is known
    double last = 0;
    double sum = 0;
    uint64_t count = 0;
    uint64_t intervals = 0;
    double smallest = 0;
    double largest = 0;
  };

  void check_counter(const TsPacket& packet, Pid& pid);
  void take_clock(int pid, uint64_t ticks, bool jumps);
  // Ticks of the clock at the last packet; not known before two PCRs.
  double now() const;

  std::vector<Pid> pids_;
  std::map<TableId, Table> tables_;
  uint64_t packets_ = 0;
  uint64_t sync_losses_ = 0;

  int clock_pid_ = -1;
  uint64_t others_ = 0;          // PCRs of other PIDs since the last of the clock
  uint64_t clock_ = 0;           // the last PCR
  uint64_t clock_packet_ = 0;    // packets up to it
  double time_ = 0;              // at it, in ticks
  double ticks_a_packet_ = 0;    // between the last two; 0 before there are two
  uint64_t measured_ticks_ = 0;  // without those of jumps
  uint64_t measured_packets_ = 0;
};

}  // namespace quillon
