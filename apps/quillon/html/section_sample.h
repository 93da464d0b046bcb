#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include <quillon/stream/section_reader.h>

namespace quillon::app::html {

// A section that is kept.
struct KeptSection {
  int pid;
  uint64_t packet;
  double seconds;
  bool crc_ok;  // or it needs none
  std::vector<uint8_t> bytes;

  // As it was met.
  StreamSection view() const { return {pid, packet, bytes.data(), bytes.size(), true, crc_ok, false}; }
};

// Distinct sections of an input, up to 1 MiB. Where there are more, every second of those goes that take the
// most room, of one PID and table id; as often as needed, so that what is left is spread evenly. Of PIDs and
// table ids beyond 4,096 pairs, sections are counted alone.
class SectionSample {
 public:
  using Key = std::pair<int, int>;  // PID and table id
  struct Group {
    uint64_t met = 0;
    uint64_t stride = 1;  // each so many-eth is kept
    size_t bytes = 0;
    std::vector<KeptSection> kept;
  };

  void push(const StreamSection& section, double seconds);

  const std::map<Key, Group>& groups() const { return groups_; }
  uint64_t met() const { return met_; }
  // The sections of a table id, on whatever PID, in the order of the stream.
  std::vector<const KeptSection*> of_table(int table_id) const;

  // Drops every second of a group.
  static void thin(Group& group);

 private:
  static constexpr size_t kMostBytes = size_t{1} << 20;
  static constexpr size_t kMostGroups = 4096;

  std::map<Key, Group> groups_;
  uint64_t met_ = 0;
  size_t bytes_ = 0;
};

}  // namespace quillon::app::html
