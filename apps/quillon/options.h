#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <quillon/stream/any_table.h>

namespace quillon::app {

enum Exit { exit_ok = 0, exit_bad_input = 1, exit_usage = 2 };

// What is asked for: a section is wanted that has one of the values of each list that is not empty.
struct Choice {
  std::vector<int> pids;
  std::vector<int> tables;
  std::vector<std::string> services;  // names, program numbers, channels as "7.1"
  std::vector<int> extensions;
  std::vector<int> versions;
  bool only_current = false;

  bool operator==(const Choice&) const = default;
};

// What the options of a command line say.
struct Options {
  std::vector<std::string> inputs;
  bool follow = false;  // a file goes on when more is written to it
  double seconds = 0;   // how long is read, by the clock on the wall; 0: to the end
  Choice choice;
  bool all = false;                  // repeated sections too
  std::optional<Standard> standard;  // found from the stream, if there is none
  std::optional<Reading> reading;    // the command's own, if there is none
  int text_table = 0;                // set_default_text_table
  bool hex = false;
  bool verbose = false;
  bool json = false;    // watch
  std::string output;   // a file; "-" is standard output
  std::string metrics;  // a file

  bool now = false;  // epg
  std::string from;
  std::string to;
  bool local_time = false;
  std::optional<std::chrono::sys_seconds> begin;  // what `from` and `to` say
  std::optional<std::chrono::sys_seconds> end;

  std::string kind;  // names
  std::optional<std::string> id;
};

}  // namespace quillon::app
