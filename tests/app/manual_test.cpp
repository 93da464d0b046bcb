// Help, of the rows that the parser has.

#include "apps/quillon/command_line.h"
#include "apps/quillon/command_rows.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace quillon::app;

TEST(Help, FitsATerminalAndNamesEachOption) {
  EXPECT_GE(command_rows().size(), 13u);
  const auto expect_narrow = [](const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
    EXPECT_EQ(text.back(), '\n');
  };
  const std::string all = help_text("");
  expect_narrow(all);
  for (const CommandRow& row : command_rows()) {
    SCOPED_TRACE(row.name);
    EXPECT_NE(all.find(std::string("\n  ") + row.name + " "), std::string::npos);
    const std::string help = help_text(row.name);
    expect_narrow(help);
    for (const OptionRow& option : option_rows()) {
      const std::string name(option.long_name());
      const bool is_named = help.find("  " + name + " ") != std::string::npos ||
                            help.find(", " + name + " ") != std::string::npos;
      EXPECT_EQ(is_named, (option.commands & row.bit) != 0) << name;
    }
  }
}

TEST(Help, IsThatOfTheParser) {
  for (const CommandRow& row : command_rows())
    for (const OptionRow& option : option_rows()) {
      const std::string name(option.long_name());
      const Order order = parse_command_line({row.name, name, "-"});
      const bool is_unknown = order.mistake.find("not expected: " + name) != std::string::npos;
      EXPECT_EQ(is_unknown, (option.commands & row.bit) == 0) << row.name << " " << name << order.mistake;
    }
}

TEST(Help, IsInTheManualAndTheCompletions) {
  const std::string page = manual_page();
  for (const CommandRow& row : command_rows())
    EXPECT_NE(page.find(std::string("\n.TP\n.B ") + row.name + "\n"), std::string::npos) << row.name;
  for (const OptionRow& option : option_rows()) {
    std::string name;
    for (const char c : option.long_name()) name.append(c == '-' ? "\\" : "") += c;
    EXPECT_NE(page.find(name + (option.value ? " \\fI" : "\n")), std::string::npos) << name;
    for (const std::string& completion : {bash_completion(), zsh_completion()})
      EXPECT_NE(completion.find(std::string(option.long_name())), std::string::npos) << name;
    EXPECT_NE(fish_completion().find(" -l " + std::string(option.long_name().substr(2))), std::string::npos);
  }
}
