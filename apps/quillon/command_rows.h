#pragma once

// For the parser of the command line, and what is made of the same rows: help, manual, completions.

#include "apps/quillon/commands.h"
#include "apps/quillon/options.h"

#include <CLI/CLI.hpp>
#include <span>
#include <string_view>

namespace quillon::app {

struct CommandRow {
  const char* name;
  const char* operands;  // "INPUT..."
  const char* brief;
  const char* text;  // paragraphs, with an empty line between them
  Exit (*run)(const Options&, Console&);
  unsigned bit;  // in OptionRow::commands
};
std::span<const CommandRow> command_rows();

struct OptionRow {
  const char* names;  // "-o,--output"
  const char* value;  // "FILE"; null of a flag
  const char* text;
  const char* choices;  // the values that there are, with blanks between them; null if there are others
  unsigned commands;
  CLI::Option* (*add)(CLI::App& command, const OptionRow& row, Options& options);

  // "--output"
  std::string_view long_name() const;
  // "-o", or empty
  std::string_view short_name() const;
};
std::span<const OptionRow> option_rows();

// What is said of the inputs, and of exit codes.
extern const char* const kInputText;
extern const char* const kExitText;

}  // namespace quillon::app
