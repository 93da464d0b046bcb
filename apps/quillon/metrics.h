#pragma once

#include "apps/quillon/console.h"
#include "apps/quillon/feed.h"
#include "apps/quillon/options.h"
#include "apps/quillon/stream_time.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <quillon/stream/service_directory.h>
#include <quillon/stream/table_collector.h>

namespace quillon::app {

// A file of metrics in the text format of Prometheus, of the input that is read: replaced whole, so that a
// reader never sees a part of it. Every sample is labelled with the input.
//
// Series are made of 1,000 PIDs at most, those of the lowest numbers, and of 1,000 tables, those that came
// first; one of which nothing came for an hour is dropped. EIT schedules and ETTs, of which there are
// hundreds, have none. What has no series of its own is counted.
class Metrics {
 public:
  // Throws Failure where the file can't be one of metrics.
  Metrics(const Options& options, Console& console);

  void begin(const std::string& input);
  // One whose CRC is right.
  void section(const StreamSection& section, const StreamTime& time);
  void crc_error(int pid) { ++crc_errors_[pid]; }
  // A second has passed since the file was written.
  bool is_due() const;
  void write(const Input& input, const StreamTime& time, const ServiceDirectory& services);
  // The file says from now on that nothing is watched any more.
  void finish() { save(false); }

 private:
  using Clock = std::chrono::steady_clock;
  struct Table {
    double heard = 0;
    bool is_long = false;
    int version = 0;
  };
  // Since when rates are measured.
  struct Mark {
    double seconds = 0;
    uint64_t packets = 0;
    std::map<int, uint64_t> of_pids;
  };
  class Text;

  void find_pids(const Input& input);
  void measure(const Input& input, const StreamTime& time);
  void add_input(Text& text, const Input& input, const ServiceDirectory& services) const;
  void add_pids(Text& text, const Input& input) const;
  void add_tables(Text& text, const Input& input, const StreamTime& time) const;
  void save(bool is_up);

  const std::string file_;
  const std::vector<int>& wanted_pids_;
  Console& console_;
  bool has_failed_ = false;  // which is said once

  std::string input_;  // its label
  std::string text_;   // all but whether it is up
  Clock::time_point saved_;
  uint64_t bytes_ = 0;  // when they were read last
  std::chrono::system_clock::time_point arrival_;

  std::vector<int> pids_;
  uint64_t other_pids_ = 0;
  std::map<TableId, Table> tables_;
  uint64_t other_sections_ = 0;
  std::map<int, uint64_t> crc_errors_;
  bool is_measured_ = false;  // for so long that rates are those of now
  Mark mark_;
  double bit_rate_ = 0;
  std::map<int, double> bit_rates_;
};

}  // namespace quillon::app
