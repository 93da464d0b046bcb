#include "apps/quillon/html/rate_record.h"

#include <algorithm>

#include <quillon/stream/packet_reader.h>

namespace quillon::app::html {

RateRecord::RateRecord() : counts_(TsPacket::pids) {
  begins_.reserve(kMostSlices);
}

void RateRecord::push(int pid, double seconds) {
  const uint64_t in_slice = begins_.empty() ? 0 : packets_ - begins_.back().packet;
  const bool goes_on = seconds != seconds_;
  if (begins_.empty() || in_slice >= (goes_on ? slice_packets_ : 8 * slice_packets_)) {
    if (begins_.size() == kMostSlices) merge_pairs();
    begins_.push_back({seconds, packets_});
  }
  if (goes_on) ticked_ = packets_;
  ++packets_;
  seconds_ = seconds;
  std::vector<uint32_t>& counts = counts_[static_cast<size_t>(pid)];
  counts.resize(begins_.size());
  ++counts.back();
}

void RateRecord::merge_pairs() {
  for (std::vector<uint32_t>& counts : counts_) {
    for (size_t at = 0; at < counts.size(); ++at) {
      const uint32_t count = counts[at];
      counts[at] = 0;
      counts[at / 2] += count;
    }
    counts.resize((counts.size() + 1) / 2);
    counts.shrink_to_fit();
  }
  for (size_t at = 0; at < kMostSlices / 2; ++at) begins_[at] = begins_[2 * at];
  begins_.resize(kMostSlices / 2);
  slice_packets_ *= 2;
}

std::vector<RateRecord::Slice> RateRecord::slices(const std::vector<int>& pids, size_t most) const {
  std::vector<Slice> out;
  if (begins_.empty()) return out;
  // Those after the last tick took as long as the others.
  const double a_packet =
      ticked_ > 0 ? (seconds_ - begins_.front().seconds) / static_cast<double>(ticked_) : 0.0;
  const double end = seconds_ + a_packet * static_cast<double>(packets_ - ticked_);
  const double step = (end - begins_.front().seconds) / static_cast<double>(most);
  const size_t merged = (begins_.size() + most - 1) / most;
  Slice slice;
  slice.begin = begins_.front().seconds;
  slice.of_pids.resize(pids.size());
  size_t taken = 0;
  for (size_t at = 0; at < begins_.size(); ++at) {
    const bool is_last = at + 1 == begins_.size();
    slice.packets += (is_last ? packets_ : begins_[at + 1].packet) - begins_[at].packet;
    for (size_t i = 0; i < pids.size(); ++i) {
      const std::vector<uint32_t>& counts = counts_[static_cast<size_t>(pids[i])];
      if (at < counts.size()) slice.of_pids[i] += counts[at];
    }
    slice.end = is_last ? end : begins_[at + 1].seconds;
    ++taken;
    const bool is_whole =
        step > 0 ? slice.end - slice.begin >= step && slice.end > slice.begin : taken == merged;
    if (!is_whole && !is_last) continue;
    // What is left at the end is too short for a rate of its own.
    if (!is_whole && !out.empty()) {
      Slice& before = out.back();
      before.end = slice.end;
      before.packets += slice.packets;
      for (size_t i = 0; i < pids.size(); ++i) before.of_pids[i] += slice.of_pids[i];
      break;
    }
    out.push_back(slice);
    slice = {slice.end, slice.end, 0, std::vector<uint64_t>(pids.size())};
    taken = 0;
  }
  return out;
}

}  // namespace quillon::app::html
