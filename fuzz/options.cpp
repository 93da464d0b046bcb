#include "apps/quillon/choice.h"
#include "apps/quillon/command_line.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <quillon/fields/dvb_text.h>

namespace quillon::fuzz {

namespace {

bool are_within(const std::vector<int>& values, int last) {
  return std::all_of(values.begin(), values.end(), [last](int value) { return value >= 0 && value <= last; });
}

void check(const app::Options& options, bool may_want_names) {
  const app::Choice& choice = options.choice;
  require(are_within(choice.pids, 0x1FFF) && are_within(choice.tables, 0xFF) &&
          are_within(choice.extensions, 0xFFFF) && are_within(choice.versions, 31));
  require(options.seconds >= 0 && options.seconds < 1e9);
  require(options.text_table == get_default_text_table());
  require(options.begin.has_value() == !options.from.empty());
  require(options.end.has_value() == !options.to.empty());
  require(std::count(options.inputs.begin(), options.inputs.end(), "-") <= 1);
  require(!options.inputs.empty() || may_want_names);

  // What is said of a choice is a command line that makes it. Names of services may have blanks.
  if (!choice.services.empty()) return;
  std::istringstream words("json - " + text_of(choice));
  const app::Order again = app::parse_command_line(
      {std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()});
  require(again.run && again.mistake.empty() && again.options.choice == choice);
}

}  // namespace

// An argument a line.
void options(const uint8_t* data, size_t size) {
  std::vector<std::string> arguments = {{}};
  for (size_t i = 0; i < size; ++i)
    if (data[i] == '\n')
      arguments.emplace_back();
    else
      arguments.back() += static_cast<char>(data[i]);
  const app::Order order = app::parse_command_line(arguments);
  if (!order.mistake.empty()) {
    require(order.text.empty());
  } else {
    require(order.text.empty() == (order.run != nullptr));
    const bool may_want_names = std::find(arguments.begin(), arguments.end(), "names") != arguments.end();
    if (order.run) check(order.options, may_want_names);
  }
  set_default_text_table(0);
}

}  // namespace quillon::fuzz
