// What the README shows is what comes: its commands on the bundled streams, and its example.

#include "tests/app/program.h"

#include <sstream>
#include <string>

using namespace quillon::test;

namespace {

class Readme : public Program {
 protected:
  void SetUp() override {
    Program::SetUp();
    if (const char* const folder = std::getenv("QUILLON_DATA"))
      top_ = std::filesystem::path(folder).parent_path();
    if (top_.empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }

  // A command of the README, whose files are named from the top of the project.
  std::string output_of(std::string command) const {
    const std::string name = "data/";
    const std::string top = top_.generic_string() + "/";
    for (size_t at = command.find(name); at != std::string::npos;
         at = command.find(name, at + top.size() + name.size()))
      command.insert(at, top);
    return run(command).out;
  }

  std::filesystem::path top_;
};

}  // namespace

TEST_F(Readme, ShowsWhatItsCommandsPrint) {
  std::istringstream lines(whole(top_ / "README.md"));
  const std::string prompt = "$ quillon ";
  int commands = 0;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(prompt)) continue;
    ++commands;
    const std::string command = line;
    std::string shown;
    bool is_cut = false;
    while (std::getline(lines, line) && line != "```" && !is_cut) {
      is_cut = line == "...";
      if (!is_cut) shown += line + "\n";
    }
    const std::string printed = output_of(command.substr(prompt.size()));
    EXPECT_FALSE(shown.empty()) << command;
    EXPECT_EQ(is_cut ? printed.substr(0, shown.size()) : printed, shown) << command;
  }
  EXPECT_GE(commands, 3);
}

TEST_F(Readme, HoldsTheExampleThatIsCompiled) {
  const std::string example = whole(top_ / "examples/programs.cpp");
  EXPECT_FALSE(example.empty());
  EXPECT_NE(whole(top_ / "README.md").find("```cpp\n" + example + "```"), std::string::npos);
}
