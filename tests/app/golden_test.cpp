// What each command prints of the bundled streams, and of recorded ones where they are, is what it printed
// before. QUILLON_GOLDEN=write makes that what it prints now.

#include "apps/quillon/command_rows.h"
#include "tests/app/program.h"

#include <boost/crc.hpp>
#include <map>
#include <sstream>

using namespace quillon;
using namespace quillon::test;

namespace {

namespace fs = std::filesystem;

bool writes() {
  const char* const wish = std::getenv("QUILLON_GOLDEN");
  return wish && std::string(wish) == "write";
}

// The folder of the project, by that of its data; empty if it is not known.
fs::path project() {
  const char* const data = std::getenv("QUILLON_DATA");
  return data ? fs::canonical(data).parent_path() : fs::path();
}

// "line 3: a | b", of the first line that differs; empty if there is none.
std::string difference(const std::string& expected, const std::string& actual) {
  std::istringstream a(expected);
  std::istringstream b(actual);
  for (int number = 1;; ++number) {
    std::string x = "(the end)";
    std::string y = x;
    const bool has_x = static_cast<bool>(std::getline(a, x));
    const bool has_y = static_cast<bool>(std::getline(b, y));
    if (!has_x && !has_y) return expected == actual ? "" : "the line end at the end";
    if (has_x != has_y || x != y)
      return "line " + std::to_string(number) + ":\n" + x.substr(0, 300) + "\n" + y.substr(0, 300);
  }
}

void expect_golden(const std::string& name, const std::string& text) {
  const fs::path file = project() / "tests/app/golden" / name;
  if (writes()) {
    std::ofstream(file, std::ios::binary) << text;
    return;
  }
  EXPECT_EQ(difference(whole(file), text), "") << name;
}

std::string digest(const std::string& text) {
  boost::crc_32_type crc;
  crc.process_bytes(text.data(), text.size());
  char out[80];
  std::snprintf(out, sizeof out, "%7d lines %9zu bytes %08x",
                static_cast<int>(std::count(text.begin(), text.end(), '\n')), text.size(), crc.checksum());
  return out;
}

class Golden : public Program {
 protected:
  void SetUp() override {
    Program::SetUp();
    if (project().empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }

  // In the folder of the test, so that messages have names that are the same everywhere.
  // Windows does not remove what may not be written.
  void bring(const fs::path& stream) {
    fs::copy_file(stream, folder_ / stream.filename());
    fs::permissions(folder_ / stream.filename(), fs::perms::owner_write, fs::perm_options::add);
  }

  // A line a command: its exit code, and what it prints.
  std::string digests(const std::string& stream) {
    std::string out;
    for (const std::string command : {"summary", "services", "pids", "epg", "tables", "show", "json",
                                      "report", "xml", "load", "sections", "watch", "html"}) {
      const Result result = command == "load" ? run("load " + stream + ".xml") : run(command + " " + stream);
      if (command == "xml") std::ofstream(folder_ / (stream + ".xml"), std::ios::binary) << result.out;
      char head[80];
      std::snprintf(head, sizeof head, "%-24s %-8s %d", stream.c_str(), command.c_str(), result.code);
      out += head + ("  " + digest(result.out)) + "  messages " + digest(result.messages) + "\n";
    }
    return out;
  }
};

}  // namespace

TEST_F(Golden, CommandsOnTheBundledStreams) {
  bring(project() / "data/sample.ts");
  bring(project() / "data/sample-atsc.ts");
  ASSERT_EQ(run("xml sample.ts --table 0x42 -o sample.xml").code, 0);
  const std::map<std::string, std::string> commands = {
      {"summary", "summary sample.ts"},
      {"services", "services sample.ts"},
      {"pids", "pids sample.ts"},
      {"epg", "epg --service \"Quill One\" sample.ts"},
      {"epg-now", "epg --now sample.ts"},
      {"tables", "tables sample.ts"},
      {"show", "show --table 0 --table 0x42 --table 0x70 sample.ts"},
      {"json", "json --table 0 --table 0x42 --table 0x70 sample.ts"},
      {"report", "report --table 0 --table 0x42 --hex sample.ts"},
      {"xml", "xml --table 0x42 sample.ts"},
      {"load", "load sample.xml"},
      {"watch", "watch sample.ts"},
      {"watch-json", "watch --json sample.ts"},
      {"names", "names ca-system 0x0B00"},
      {"summary-atsc", "summary sample-atsc.ts"},
      {"services-atsc", "services sample-atsc.ts"},
      {"epg-atsc", "epg --service 12.1 sample-atsc.ts"},
      {"show-atsc", "show --table 0xC8 sample-atsc.ts"},
      {"json-atsc", "json --table 0xCB --extension 0x101 --pid 0x1D00 sample-atsc.ts"},
  };
  for (const auto& [name, arguments] : commands) {
    const Result result = run(arguments);
    EXPECT_EQ(result.code, 0) << arguments;
    expect_golden(name + ".txt", "$ quillon " + arguments + "\n" + result.messages + result.out);
  }
  expect_golden("whole.txt", digests("sample.ts") + digests("sample-atsc.ts"));
}

TEST_F(Golden, Help) {
  expect_golden("help.txt", run("--help").out);
  std::string commands;
  for (const app::CommandRow& row : app::command_rows())
    commands += run(std::string(row.name) + " --help").out + "\n";
  expect_golden("help-of-commands.txt", commands);
}

// Their texts are their makers' own, and stay outside: digests show that they are as before.
TEST_F(Golden, CommandsOnRecordedStreams) {
  const char* const streams = std::getenv("QUILLON_STREAMS");
  if (!streams || !fs::is_directory(streams)) GTEST_SKIP() << "QUILLON_STREAMS is not there";
  std::map<std::string, fs::path> files;
  for (const auto& entry : fs::directory_iterator(streams))
    if (entry.path().extension() == ".ts" || entry.path().extension() == ".bin")
      files[entry.path().filename().string()] = entry.path();
  std::string all;
  for (const auto& [name, path] : files) {
    bring(path);
    all += digests(name);
  }
  expect_golden("recorded.txt", all);
}
