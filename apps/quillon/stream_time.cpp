#include "apps/quillon/stream_time.h"

#include "apps/quillon/text.h"

namespace quillon::app {

void StreamTime::at(const Input& input, uint64_t index) {
  count_ = index + 1;
  const double seconds = input.statistics.seconds();
  if (!(seconds > stream_seconds_)) return;
  seconds_ += seconds - stream_seconds_;
  stream_seconds_ = seconds;
  is_known_ = moved_ = true;
}

void StreamTime::pause() {
  const Clock::time_point now = Clock::now();
  const std::chrono::duration<double> passed = now - at_;
  if (!moved_) {
    const double patience = stream_seconds_ > 0 ? 1 : 0;
    if (!is_live_ || passed.count() <= patience) return;
    seconds_ += passed.count();
    is_known_ = true;
  }
  moved_ = false;
  at_ = now;
}

double StreamTime::pace() const {
  constexpr double packets_a_second = 10'000;
  constexpr double sections_a_second = 500;
  if (is_known_) return seconds_;
  return static_cast<double>(count_) / (is_chain_ ? sections_a_second : packets_a_second);
}

std::string StreamTime::text() const {
  if (is_known_) return seconds_text(seconds_);
  return (is_chain_ ? "section " : "packet ") + grouped(count_);
}

}  // namespace quillon::app
