#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

#include <quillon/demux/sources.h>
#include <quillon/stream/any_table.h>

namespace quillon::app {

// One complete section, and where it was met.
struct Section {
  int pid;          // -1 in a chain of bare sections
  uint64_t packet;  // the packet that completed it, from 1; the section's number in a chain
  const uint8_t* bytes;
  size_t size;

  int table_id() const { return bytes[0]; }
};

// What the stream itself says about its PIDs.
struct StreamMap {
  std::set<int> pids;              // known to carry sections worth a look
  std::set<int> map_pids_missing;  // of programs whose map has not been met
  bool programs_known = false;     // a program association section was met
  bool atsc_base = false;          // packets on the base PID of PSIP
  bool atsc_guide = false;         // a master guide section was met
  Standard standard = Standard::dvb;

  bool complete() const { return programs_known && map_pids_missing.empty() && atsc_base == atsc_guide; }
};

// Hands over each complete section of the PIDs of interest, in the order of the stream: the standard PIDs of
// MPEG-2, DVB and ATSC, those that the tables name, and those asked for. On the other PIDs, if they are of
// interest too, a long section with a right CRC counts, and nothing else.
class SectionReader : private DemuxPush {
 public:
  using Sink = std::function<void(const Section&)>;

  // `map` is added to as the tables name PIDs.
  SectionReader(StreamMap& map, Sink sink, bool every_pid = false);

  void push(uint8_t* packet);
  // A section of a chain.
  void push_section(const uint8_t* bytes, size_t size);

 private:
  using DemuxPush::on_psi_section;
  void on_psi_section(unsigned long key, int section_size, uint8_t* section) override;
  void on_ts_packet(const TSHeader& header, const uint8_t* data) override;

  void follow(int pid);
  // A PID that a table names.
  void announce(int pid);
  void learn(const Section& section);
  void learn_programs(const Section& section);
  void learn_streams(const Section& section);
  void learn_guide(const Section& section);

  StreamMap& map_;
  Sink sink_;
  bool every_pid_;
  std::set<int> followed_;
  uint64_t packets_ = 0;
};

// True if the bytes, the first of an input, are those of a chain of whole sections without packets around
// them.
bool is_section_chain(const std::vector<uint8_t>& bytes);
// Calls `each(bytes, size)` for the sections of a chain; the bytes left after the last whole one.
size_t walk_section_chain(const std::vector<uint8_t>& bytes,
                          const std::function<void(const uint8_t*, size_t)>& each);

}  // namespace quillon::app
