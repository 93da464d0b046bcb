#pragma once

#include <optional>
#include <string>
#include <vector>

#include <quillon/stream/any_table.h>

namespace quillon::app {

enum Exit { exit_ok = 0, exit_bad_input = 1, exit_usage = 2 };

// What `report`, `json` and `xml` are asked for.
struct Options {
  std::string input;                 // "-" is the standard input
  std::vector<int> pids;             // all, if there are none
  std::vector<int> tables;           // all, if there are none
  bool all = false;                  // repeated sections too
  bool full = false;                 // the fields that reports leave out
  std::optional<Standard> standard;  // found from the stream, if there is none
  Reading reading = Reading::kept;
  int text_table = 0;  // set_default_text_table
};

// Each gives an exit code; results go to standard output, messages to standard error.
int report(const Options& options);
int json(const Options& options);
int save_xml(const Options& options, const std::string& output);
int load_xml(const std::string& input);

}  // namespace quillon::app
