// What the README and the pages of docs show is what comes: their commands on the bundled streams, and their
// programs. What they name is there, and figures that the headers state are theirs.

#include "tests/app/program.h"

#include <algorithm>
#include <cctype>
#include <regex>
#include <set>
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

  // What a page names as code: between backticks in its text, and in its blocks of commands.
  static std::vector<std::string> code_in(const std::string& page) {
    std::vector<std::string> out;
    std::istringstream lines(page);
    bool inside = false;
    bool is_command = false;
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("```")) {
        inside = !inside;
        is_command = line == "```sh" || line == "```text" || line == "```cmake";
      } else if (inside) {
        if (is_command) out.push_back(line.substr(0, line.find(" #")));
      } else {
        for (size_t end, at = 0;
             (at = line.find('`', at)) != line.npos && (end = line.find('`', at + 1)) != line.npos;
             at = end + 1)
          out.push_back(line.substr(at + 1, end - at - 1));
      }
    }
    return out;
  }

  // Identifiers, and options with their dashes.
  static std::set<std::string> words_of(const std::string& code) {
    const auto is_part = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    std::set<std::string> out;
    for (size_t at = 0; at < code.size();) {
      size_t end = at;
      if (code.compare(at, 2, "--") == 0 && at + 2 < code.size() && code[at + 2] >= 'a' &&
          code[at + 2] <= 'z')
        for (end += 2; end < code.size() && (is_part(code[end]) || code[end] == '-');) ++end;
      else
        while (end < code.size() && is_part(code[end])) ++end;
      if (end > at && !std::isdigit(static_cast<unsigned char>(code[at])))
        out.insert(code.substr(at, end - at));
      at = std::max(end, at + 1);
    }
    return out;
  }

  // All that is in the sources, the names of files included.
  std::set<std::string> words_in_sources() const {
    std::set<std::string> out;
    const auto add = [&](const fs::path& file) {
      if (file.extension() == ".md" || file.filename() == "readme_test.cpp") return;
      out.merge(words_of(whole(file)));
      out.merge(words_of(file.lexically_relative(top_).generic_string()));
    };
    for (const auto& entry : fs::directory_iterator(top_))
      if (entry.is_regular_file()) add(entry.path());
    for (const std::string folder : folders)
      for (auto at = fs::recursive_directory_iterator(top_ / folder);
           at != fs::recursive_directory_iterator(); ++at) {
        if (at->path().filename() == "node_modules") at.disable_recursion_pending();
        if (at->is_regular_file() && at->path().extension() != ".ts") add(at->path());
      }
    return out;
  }

  std::vector<std::string> commands() const {
    std::istringstream lines(run("--help").out);
    std::vector<std::string> out;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
      if (inside && line.empty()) break;
      if (inside) out.push_back(line.substr(2, line.find(' ', 2) - 2));
      inside = inside || line == "Commands:";
    }
    return out;
  }

  static constexpr const char* folders[] = {".ci",    ".github", "abi",      "apps", "bench",
                                            "cmake",  "data",    "examples", "fuzz", "packaging",
                                            "python", "quillon", "tests"};

  // A command whose files are named from the top of the project.
  Result result_of(std::string command) const {
    const std::string name = "data/";
    const std::string place = top_.generic_string() + "/";
    for (size_t at = 0; (at = command.find(name, at)) != command.npos; at += place.size() + name.size())
      command.insert(at, place);
    return run(command);
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
      const std::string printed = result_of(command).out;
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

TEST_F(Pages, NameWhatIsThere) {
  const std::set<std::string> there = words_in_sources();
  const std::set<std::string> of_others = {
      "cppstd",         "--overlay-ports",                     // of Conan and vcpkg
      "--partition",    "--time",          "--resume-failed",  // of Slurm and GNU parallel
      "GLIBC_TUNABLES", "glibc",           "tcache_count",       "LD_PRELOAD",   "libjemalloc",
      "_int_malloc",    "_int_free",       "malloc_consolidate", "unlink_chunk",  // of allocators
      "Unreleased",                                                               // of the change log
  };
  int words = 0;
  int paths = 0;
  for (const fs::path& page : pages()) {
    // Those that are made have tests of their own, and the change log names what was.
    const std::string name = page.filename().string();
    if (name == "tables.md" || name == "descriptors.md" || name == "CHANGELOG.md") continue;
    std::string text = whole(page);
    // In its first column are the names of others.
    if (name == "from.md") text = std::regex_replace(text, std::regex("\n\\|[^|\n]*\\|"), "\n|");
    for (const std::string& code : code_in(text)) {
      for (const std::string& word : words_of(code)) {
        ++words;
        EXPECT_TRUE(there.contains(word) || of_others.contains(word))
            << name << " names " << word << ": " << code;
      }
      std::istringstream parts(code);
      for (std::string part; parts >> part;) {
        static const std::regex path(R"(([\w.-]+)(/[\w.-]+)+/?)");
        std::smatch match;
        if (!std::regex_match(part, match, path) ||
            std::ranges::find(folders, match[1].str()) == std::end(folders))
          continue;
        ++paths;
        EXPECT_TRUE(fs::exists(top_ / part)) << name << " names " << part;
      }
    }
  }
  EXPECT_GE(words, 900);
  EXPECT_GE(paths, 30);
}

TEST_F(Pages, NameTheCommandsThatThereAre) {
  const std::vector<std::string> known = commands();
  ASSERT_GE(known.size(), 10u);
  std::string helps = run("--help").out;
  for (const std::string& command : known) helps += run(command + " --help").out;
  const std::set<std::string> options = words_of(helps);

  const std::string page = whole(top_ / "docs/program.md");
  std::string first_column;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with("| `")) first_column += line.substr(0, line.find(" | "));
  const std::set<std::string> listed = words_of(first_column);
  for (const std::string& command : known)
    EXPECT_TRUE(listed.contains(command)) << command << " is not listed";
  for (const std::string& code : code_in(page))
    for (const std::string& word : words_of(code))
      EXPECT_TRUE(!word.starts_with("--") || options.contains(word)) << code;

  const std::string dev = whole(top_ / "dev");
  static const std::regex call(R"((quillon|\./dev) ([a-z]+).*)");
  for (const fs::path& each : pages())
    for (const std::string& code : code_in(whole(each))) {
      std::smatch match;
      if (!std::regex_match(code, match, call)) continue;
      const std::string name = match[2];
      if (match[1] == "quillon")
        EXPECT_NE(std::ranges::find(known, name), known.end()) << each << ": " << code;
      else
        EXPECT_NE(dev.find("\n  " + name + ")\n"), dev.npos) << each << ": " << code;
    }
}

// The commands that need the program alone.
TEST_F(Pages, HaveCommandsThatSucceed) {
  int run_of_them = 0;
  for (const fs::path& page : pages())
    for (const std::string& block : blocks(whole(page), "sh")) {
      std::istringstream lines(block);
      for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("quillon ")) continue;
        ++run_of_them;
        EXPECT_EQ(result_of(line.substr(8)).code, 0) << page << ": " << line;
      }
    }
  EXPECT_GE(run_of_them, 2);
}

TEST_F(Pages, ShowLinesOfProjectsThatAreBuilt) {
  const std::string built =
      "\n" + whole(top_ / "examples/CMakeLists.txt") + whole(top_ / "tests/install/package/CMakeLists.txt");
  int lines_shown = 0;
  for (const fs::path& page : pages())
    for (const std::string& block : blocks(whole(page), "cmake")) {
      std::istringstream lines(block);
      for (std::string line; std::getline(lines, line); ++lines_shown)
        EXPECT_NE(built.find("\n" + line + "\n"), built.npos) << page << ": " << line;
    }
  EXPECT_GE(lines_shown, 4);
}

// What a class takes at most is stated in its header, where tests hold it.
TEST_F(Pages, StateTheMemoryThatTheHeadersState) {
  const std::string page = whole(top_ / "docs/robustness.md");
  static const std::regex row(R"(\n\| `(\w+)`([^\n]*))");
  static const std::regex amount(R"((\d+(?:\.\d+)?) (?:KiB|MiB))");
  int stated = 0;
  for (std::sregex_iterator at(page.begin(), page.end(), row), end; at != end; ++at) {
    std::string header;
    for (const char c : (*at)[1].str())
      header += std::isupper(c)
                    ? (header.empty() ? "" : "_") + std::string(1, static_cast<char>(std::tolower(c)))
                    : std::string(1, c);
    const std::string comment = whole(top_ / ("quillon/stream/" + header + ".h"));
    const std::string cells = (*at)[2];
    const std::string facts = cells.substr(cells.rfind(" | ", cells.size() - 3));
    for (std::sregex_iterator one(facts.begin(), facts.end(), amount); one != end; ++one) {
      ++stated;
      EXPECT_NE(comment.find(one->str()), comment.npos) << header << ".h does not state " << one->str();
    }
  }
  EXPECT_GE(stated, 7);
}
