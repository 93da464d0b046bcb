#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon::app::html {

// The packets of each PID over the time of an input, in slices that grow as the input does. A slice begins
// with a packet at which the clock goes on, so that its rate is exact, if one comes in time. It takes 8 MiB
// at most, however many PIDs and packets there are.
class RateRecord {
 public:
  struct Slice {
    double begin = 0;  // by the stream's clock
    double end = 0;
    uint64_t packets = 0;
    std::vector<uint64_t> of_pids;  // in the order of those asked for
  };

  RateRecord();

  void push(int pid, double seconds);
  // At most so many, with the packets of some PIDs. Slices in which the clock stood still are part of the
  // next; where it never went on there is no time, and each has as many packets as its neighbour.
  std::vector<Slice> slices(const std::vector<int>& pids, size_t most) const;

 private:
  static constexpr size_t kMostSlices = 256;

  void merge_pairs();

  std::vector<std::vector<uint32_t>> counts_;  // of a PID, up to the last slice that has it
  struct Begin {
    double seconds;
    uint64_t packet;
  };
  std::vector<Begin> begins_;
  uint64_t slice_packets_ = 8;  // at least
  uint64_t packets_ = 0;
  double seconds_ = 0;
  uint64_t ticked_ = 0;  // packets up to the one at which the clock went on last
};

}  // namespace quillon::app::html
