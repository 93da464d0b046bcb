#pragma once

#include "apps/quillon/feed.h"
#include "apps/quillon/parse.h"

#include <bitset>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/table_collector.h>

namespace quillon::app {

// A table as it was met, in all its versions.
struct SeenTable {
  uint64_t sections = 0;             // each time that one was sent
  std::bitset<256> section_numbers;  // of the version that came last
  int last_section_number = 0;
  std::vector<int> versions;  // in the order in which they came first

  void push(const StreamSection& section);
};

// What one input is found to hold, of the sections that are wanted.
struct Survey {
  explicit Survey(const Choice& choice);
  Survey(const Survey&) = delete;
  Survey& operator=(const Survey&) = delete;

  ServiceDirectory directory;
  TableCollector collector{[this](const TableEvent& event) { directory.push(event); }};
  ScheduleCollector schedule;
  std::map<TableId, SeenTable> tables;           // 65,536 at most
  uint64_t unlisted = 0;                         // sections of others
  uint64_t sections = 0;                         // each time that one was sent
  std::map<int, uint64_t> crc_errors;            // by PID
  std::map<std::string, uint64_t> refused;       // sections, and descriptors, by table and reason
  std::string network_name;                      // of the network table of the stream itself
  std::optional<std::chrono::sys_seconds> time;  // UTC, that the stream stated last
  double time_at = 0;                            // when it did, in seconds by the stream's clock

  void learn(const Input& input, const StreamSection& section, bool is_wanted);
  // Gives a distinct section whose CRC is right as the table that it is; of others none.
  ParsedTable push(const Input& input, const StreamSection& section);
  // What the stream's time is at its end.
  std::optional<std::chrono::sys_seconds> time_now(const Input& input) const;
  // What services are called and what PIDs carry, also by sections that are not wanted.
  const ServiceDirectory& all_services() const { return all_ ? all_->directory : directory; }

 private:
  struct All {
    ServiceDirectory directory;
    TableCollector collector{[this](const TableEvent& event) { directory.push(event); }};
  };

  void examine(const Input& input, int table_id, const ParsedTable& parsed);

  std::unique_ptr<All> all_;  // where they are more than the wanted ones
};

// Makes a survey of each input.
class Surveyor : public Receiver {
 public:
  Surveyor(const Options& options, Console& console) : options_(options), console_(console) {}

  // `needs` beside what every survey needs.
  Exit run(Needs needs = {});

  void begin(const Input& input) override;
  void learn(const Input& input, const StreamSection& section, bool is_wanted) override {
    survey_->learn(input, section, is_wanted);
  }
  void section(const Input& input, const StreamSection& section) override {
    surveyed(input, section, survey_->push(input, section));
  }
  void end(const Input& input) override;

 protected:
  ~Surveyor() override = default;

  // A section that the survey has taken, and what its push gave.
  virtual void surveyed(const Input&, const StreamSection&, const ParsedTable&) {}
  // Says what a hostile input has beyond a survey's bounds.
  void tell_unlisted(const Input& input) const;
  // The input at its end.
  virtual void print(const Input& input, const Survey& survey) = 0;
  std::vector<const Service*> wanted_services(const Survey& survey) const;
  // Of the input that is read.
  const Survey& survey() const { return *survey_; }

  const Options& options_;
  Console& console_;

 private:
  std::optional<Survey> survey_;
  bool is_first_ = true;
};

}  // namespace quillon::app
