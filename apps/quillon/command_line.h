#pragma once

#include "apps/quillon/console.h"
#include "apps/quillon/options.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

// A command with its options, as its line says it.
struct Order {
  Exit (*run)(const Options&, Console&) = nullptr;  // null: `text` is all there is to say
  Options options;
  std::string text;     // help, or the version
  std::string mistake;  // why the line can't be understood; empty if it can
};
Order parse_command_line(std::vector<std::string> arguments);

// Made of the same rows as the parser. Lines of help have 80 columns at most.
std::string help_text(std::string_view command);  // "" is the program
std::string manual_page();
std::string bash_completion();
std::string zsh_completion();
std::string fish_completion();

}  // namespace quillon::app
