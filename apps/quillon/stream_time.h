#pragma once

#include "apps/quillon/feed.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace quillon::app {

// What time it is in an input that is watched. It is the stream's clock that counts (PCR). Where a live input
// has none, or it stands still for more than a second, time goes on by the clock on the wall; where another
// input has none no time is known, but the place.
class StreamTime {
 public:
  explicit StreamTime(const Input& input) : is_chain_(input.is_chain), is_live_(input.is_live) {}

  // At the packet of this index, or the section of a chain.
  void at(const Input& input, uint64_t index);
  // All that has come was handled.
  void pause();

  bool is_known() const { return is_known_; }
  double seconds() const { return seconds_; }
  // Seconds of whatever is known, for what happens too often: where no time is, 10,000 packets take one, and
  // so do 500 sections. Goes back when a time becomes known.
  double pace() const;
  // Packets, or sections of a chain, up to here.
  uint64_t count() const { return count_; }
  // "12.480 s", "packet 12" or "section 12".
  std::string text() const;

 private:
  using Clock = std::chrono::steady_clock;

  bool is_chain_;
  bool is_live_;
  bool is_known_ = false;
  double seconds_ = 0;
  double stream_seconds_ = 0;
  uint64_t count_ = 0;
  bool moved_ = false;                   // by the stream's clock, since the last pause
  Clock::time_point at_ = Clock::now();  // when it last did, or was moved on
};

}  // namespace quillon::app
