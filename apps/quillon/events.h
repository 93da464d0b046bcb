#pragma once

#include "apps/quillon/console.h"
#include "apps/quillon/json_fields.h"
#include "apps/quillon/stream_time.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace quillon::app {

// The events of one input, a line each or a line of JSON.
//
// What is counted is told at once when it happens on a PID, and then at most once a second, with its count.
// Of each kind 500 lines are told in a second; of what there is more only the count is, when the second is
// over. Seconds are StreamTime::pace. It takes 1 MiB at most a kind that is counted.
class Events {
 public:
  enum Kind {
    table_new,
    table_changed,
    table_gone,
    service_new,
    service_changed,
    service_renamed,
    service_gone,
    continuity_error,  // these are counted
    crc_error,
    transport_error,
    sync_loss,
    scrambling_begins,
    scrambling_ends,
  };
  static constexpr size_t kKinds = scrambling_ends + 1;

  // `name` of the input is told if there are several.
  Events(Console& console, bool json, bool tells_name, const Input& input);

  StreamTime& time() { return time_; }
  // To be called when time has gone on: tells what is due.
  void tick();
  // At the end: tells all that was counted.
  void finish();

  // `text` gives the line after its time, `add` puts the fields into a JSON object.
  template <class Text, class Add>
  void tell(Kind kind, Text text, Add add) {
    if (!has_line(kind, 1)) return;
    if (json_) {
      begin_object(name_of(kind));
      add(fields_);
      console_.print(fields_.take());
    } else {
      line(text());
    }
  }
  // -1 is no PID.
  void count(Kind kind, int pid);

  // "PID 0x0012  ", empty of no PID.
  static std::string pid_column(int pid);

 private:
  struct Limit {
    double since = 0;
    int lines = 0;
    uint64_t omitted = 0;
  };
  struct Counted {
    double told_at;
    uint64_t untold = 0;
  };

  static const char* name_of(Kind kind);
  bool is_over(double since) const;
  // Whether a line of `count` events may be told; they are counted if not.
  bool has_line(Kind kind, uint64_t count);
  void tell_count(Kind kind, int pid, uint64_t count);
  void tell_omitted(Kind kind);
  void begin_object(const char* name);
  void line(const std::string& text);

  Console& console_;
  const bool json_;
  const bool is_live_;
  const std::string name_;  // empty if it is not told
  StreamTime time_;
  JsonFields fields_;
  std::array<Limit, kKinds> limits_;
  std::map<std::pair<Kind, int>, Counted> counted_;
  double looked_ = 0;  // for what is due
};

}  // namespace quillon::app
