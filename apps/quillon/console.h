#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace quillon::app {

// Where the results and the messages of a command go. Messages are escaped; what a stream says often is said
// once, with a count at the end.
class Console {
 public:
  explicit Console(bool verbose);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // Results, on standard output.
  void print(std::string_view text);
  // Throws Failure where standard output can't be written.
  void flush();
  // What is printed goes to people, who must not be steered by what it says.
  bool is_terminal() const { return is_terminal_; }
  // The terminal shows colours, and the user has not asked for none (NO_COLOR).
  bool is_coloured() const { return is_coloured_; }

  // A line on standard error.
  void message(std::string_view text);
  // Something wrong in an input: "INPUT: PLACE: WHAT". A kind of trouble is what is said of one input.
  void trouble(const std::string& input, const std::string& place, const std::string& what);
  // The counts of what was not said each time.
  void sum_up_troubles();

  // How far a long input was read, for people who wait: on a terminal that shows nothing else.
  void progress(uint64_t done, uint64_t total);

 private:
  struct Kind {
    uint64_t unsaid = 0;
    std::string last_place;
  };
  static constexpr size_t kBuffer = size_t{1} << 18;
  static constexpr size_t kMostKinds = 50;
  static constexpr uint64_t kMostLines = 10'000;  // of a verbose run

  void clear_progress();

  const bool verbose_;
  const bool is_terminal_;
  const bool is_coloured_;
  const bool shows_progress_;
  std::string buffer_;

  std::map<std::string, Kind> kinds_;
  uint64_t lines_ = 0;
  uint64_t others_ = 0;  // troubles of kinds beyond the most

  using Clock = std::chrono::steady_clock;
  bool progress_shown_ = false;
  uint64_t progress_at_ = 0;
  Clock::time_point begun_ = Clock::now();
  Clock::time_point progress_time_ = begun_;
};

}  // namespace quillon::app
