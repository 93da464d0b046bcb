// What the README and the pages of docs show is what comes: their commands on the bundled streams, and their
// programs.

#include "tests/app/program.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

using namespace quillon::test;

namespace {

namespace fs = std::filesystem;

class Pages : public Program {
 protected:
  void SetUp() override {
    Program::SetUp();
    if (const char* const folder = std::getenv("QUILLON_DATA")) top_ = fs::path(folder).parent_path();
    if (top_.empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }

  std::vector<fs::path> pages() const {
    std::vector<fs::path> out;
    for (const fs::path& folder : {top_, top_ / "docs"})
      for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".md") out.push_back(entry.path());
    return out;
  }

  // What is between the lines that begin and end a block of a language.
  static std::vector<std::string> blocks(const std::string& page, const std::string& language) {
    std::vector<std::string> out;
    const std::string begin = "\n```" + language + "\n";
    for (size_t at = 0; (at = page.find(begin, at)) != page.npos;) {
      at += begin.size();
      out.push_back(page.substr(at, page.find("```", at) - at));
    }
    return out;
  }

  // A command whose files are named from the top of the project.
  std::string output_of(std::string command) const {
    const std::string name = "data/";
    const std::string place = top_.generic_string() + "/";
    for (size_t at = 0; (at = command.find(name, at)) != command.npos; at += place.size() + name.size())
      command.insert(at, place);
    return run(command).out;
  }

  fs::path top_;
};

std::string indented(const std::string& text, size_t blanks) {
  std::string out;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    out += (line.empty() ? "" : std::string(blanks, ' ')) + line + "\n";
  return out;
}

}  // namespace

TEST_F(Pages, ShowWhatTheirCommandsPrint) {
  const std::string prompt = "$ quillon ";
  int commands = 0;
  for (const fs::path& page : pages())
    for (const std::string& block : blocks(whole(page), "console")) {
      if (!block.starts_with(prompt)) continue;
      ++commands;
      const size_t end = block.find('\n');
      const std::string command = block.substr(prompt.size(), end - prompt.size());
      std::string shown = block.substr(end + 1);
      const std::string cut = "...\n";
      const bool is_cut = shown.ends_with(cut);
      if (is_cut) shown.erase(shown.size() - cut.size());
      const std::string printed = output_of(command);
      EXPECT_FALSE(shown.empty()) << page << command;
      EXPECT_EQ(is_cut ? printed.substr(0, shown.size()) : printed, shown) << page << command;
    }
  EXPECT_GE(commands, 13);
}

TEST_F(Pages, HoldProgramsThatAreCompiled) {
  std::string examples;
  for (const auto& entry : fs::directory_iterator(top_ / "examples"))
    if (entry.path().extension() == ".cpp") examples += "\n" + whole(entry.path());
  int programs = 0;
  for (const fs::path& page : pages())
    for (const std::string& block : blocks(whole(page), "cpp")) {
      ++programs;
      const bool is_there = examples.find("\n" + block) != examples.npos ||
                            examples.find("\n" + indented(block, 2)) != examples.npos;
      EXPECT_TRUE(is_there) << page << " shows what is in no example:\n" << block;
    }
  EXPECT_GE(programs, 12);
}

// Of the README, the whole of its program.
TEST_F(Pages, HoldTheExampleThatIsCompiled) {
  const std::string example = whole(top_ / "examples/first.cpp");
  EXPECT_FALSE(example.empty());
  EXPECT_NE(whole(top_ / "README.md").find("```cpp\n" + example + "```"), std::string::npos);
}

// Files, and headings in them. The pages of the headers are there once they are built.
TEST_F(Pages, LinkToWhatIsThere) {
  const std::regex link(R"(\]\(([^):#]*)(#[^)]*)?\))");
  int links = 0;
  for (const fs::path& page : pages()) {
    std::string text = whole(page);
    for (const std::string& block : blocks(text, "cpp")) text.erase(text.find(block), block.size());
    for (std::sregex_iterator at(text.begin(), text.end(), link), end; at != end; ++at) {
      const std::string file = (*at)[1];
      if (file.starts_with("api/")) continue;
      ++links;
      const fs::path target = file.empty() ? page : page.parent_path() / file;
      EXPECT_TRUE(fs::exists(target)) << page << " links to " << file;
      if (!(*at)[2].matched) continue;
      std::string headings = whole(target);
      std::transform(headings.begin(), headings.end(), headings.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
      EXPECT_NE(headings.find("# " + (*at)[2].str().substr(1) + "\n"), headings.npos)
          << page << " links to " << (*at)[0];
    }
  }
  EXPECT_GE(links, 150);
}
