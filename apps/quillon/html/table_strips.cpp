#include "apps/quillon/html/table_strips.h"

#include <algorithm>

namespace quillon::app::html {

namespace {

constexpr size_t kMostStrips = 4096;
constexpr size_t kMostGaps = 32;
constexpr size_t kMostVersions = 32;
// The clock is that of the last reference, which is up to 100 ms old.
constexpr double kTolerance = 0.1;

void mark(TableStrip& strip, double seconds) {
  auto at = static_cast<size_t>(seconds / strip.mark_seconds);
  while (at >= TableStrip::kMarks) {
    for (size_t i = 0; i < strip.marks.size(); i += 2)
      strip.marks[i / 2] = strip.marks[i] || (i + 1 < strip.marks.size() && strip.marks[i + 1]);
    strip.marks.resize((strip.marks.size() + 1) / 2);
    strip.mark_seconds *= 2;
    at /= 2;
  }
  strip.marks.resize(std::max(strip.marks.size(), at + 1));
  strip.marks[at] = true;
}

}  // namespace

void TableStrips::push(const StreamSection& section, double seconds) {
  const TableId id = TableId::of(section);
  if (strips_.size() == kMostStrips && !strips_.contains(id)) return;
  TableStrip& strip = strips_[id];
  if (strip.versions.empty() || strip.versions.back().number != section.version()) {
    ++strip.version_count;
    if (strip.versions.size() < kMostVersions) strip.versions.push_back({seconds, section.version()});
  }
  if (strip.sent == 0) strip.section_number = section.section_number();
  if (section.section_number() != strip.section_number) return;
  if (strip.sent++ > 0) {
    const double interval = seconds - strip.last;
    strip.smallest = strip.intervals == 0 ? interval : std::min(strip.smallest, interval);
    strip.largest = std::max(strip.largest, interval);
    strip.sum += interval;
    ++strip.intervals;
    if (interval > TableCollector::longest_interval(id) + kTolerance) {
      ++strip.gap_count;
      if (strip.gaps.size() < kMostGaps) strip.gaps.push_back({strip.last, seconds});
    }
  }
  strip.last = seconds;
  mark(strip, seconds);
}

}  // namespace quillon::app::html
