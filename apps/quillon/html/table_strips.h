#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include <quillon/stream/section_reader.h>
#include <quillon/stream/table_collector.h>

namespace quillon::app::html {

// When a table was sent, by the section of it that was met first.
struct TableStrip {
  static constexpr size_t kMarks = 256;

  struct Gap {
    double begin;
    double end;
  };
  struct Version {
    double seconds;
    int number;
  };

  int section_number = 0;
  uint64_t sent = 0;
  uint64_t intervals = 0;
  double smallest = 0;
  double largest = 0;
  double sum = 0;
  double last = 0;
  uint64_t gap_count = 0;         // intervals longer than the standard's longest
  std::vector<Gap> gaps;          // the first of them
  uint64_t version_count = 0;     // times that another version came than the one before
  std::vector<Version> versions;  // the first of them
  double mark_seconds = 0.02;
  std::vector<bool> marks;  // whether it was sent within each `mark_seconds`
};

// The strips of an input: 4,096 at most, of 2.5 KiB each.
class TableStrips {
 public:
  void push(const StreamSection& section, double seconds);

  const std::map<TableId, TableStrip>& all() const { return strips_; }

 private:
  std::map<TableId, TableStrip> strips_;
};

}  // namespace quillon::app::html
