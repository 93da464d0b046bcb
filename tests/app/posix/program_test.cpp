// The companion program where devices are files, a shell has limits, and a program is signalled.

#include "tests/app/program.h"

#include "tests/app/posix/running.h"
#include "tests/support/packets.h"
#include "tests/support/sample.h"

#include <algorithm>
#include <sys/stat.h>

using namespace quillon::test;

namespace {

namespace fs = std::filesystem;

constexpr bool is_sanitized =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

// A table of services whose name holds what steers a terminal, and lines of its own.
Bytes steering_services() {
  // In UTF-8: ESC, a line, C1, a bidirectional override.
  const std::string name = std::string("\x15") +
                           "a\x1B[31mb\nquillon: c\xC2\x9B"
                           "d\xE2\x80\xAE"
                           "e";
  const Bytes service = descriptor(0x48, joined({Bytes{0x01}, counted("p"), counted(name)}));
  return long_section(0x42, joined({{0x00, 0x01, 0xFF, 0x00, 0x07, 0xFC, 0x80},
                                    Bytes{static_cast<uint8_t>(service.size())},
                                    service}));
}

bool steers(const std::string& text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte == 0x7F || (byte < 0x20 && byte != '\n')) return true;
  }
  return text.find("\xC2\x9B") != std::string::npos || text.find("\xE2\x80\xAE") != std::string::npos;
}

const std::vector<std::string> stream_commands = {"summary", "services", "pids",   "epg", "tables",
                                                  "show",    "json",     "report", "xml", "sections"};

}  // namespace

TEST_F(Program, WritesToDevices) {
  file("s.ts", sample_stream());
  const Result full = run("xml s.ts -o /dev/full");
  EXPECT_EQ(full.code, 1);
  EXPECT_EQ(full.messages, "can't write /dev/full: No space left on device\n");
  EXPECT_EQ(run("xml s.ts -o /dev/stdout").out, run("xml s.ts").out);
}

TEST_F(Program, SaysThatStandardOutputIsFull) {
  file("s.ts", sample_stream());
  ASSERT_EQ(run("xml s.ts -o s.xml").code, 0);
  std::vector<std::string> lines = {"--help", "--version", "names network", "names --help", "load s.xml"};
  for (const std::string& command : stream_commands)
    if (command != "epg") lines.push_back(command + " s.ts");
  for (const std::string& line : lines) {
    // The last redirection counts.
    const int code = run_in_shell("cd '" + folder_.string() + "' && '" + program_ + "' " + line +
                                  " >/dev/full 2>messages.txt");
    EXPECT_EQ(code, 1) << line;
    EXPECT_EQ(whole(folder_ / "messages.txt"), "standard output: can't be written\n") << line;
  }
}

TEST_F(Program, LoadsWhatBlanksComeBefore) {
  const std::string blanks = "head -c 8388608 /dev/zero | tr '\\0' ' '";
  const Result loaded = run("load -", "( " + blanks + "; echo '<transport_stream/>' ) | ");
  EXPECT_EQ(loaded.code, 0);
  EXPECT_EQ(loaded.messages, "");
  // The writer has no end: what is no XML is not waited for.
  const Result letters = run("load -", "( " + blanks + "; yes ) 2>/dev/null | ");
  EXPECT_EQ(letters.code, 1);
  EXPECT_EQ(letters.messages, "standard input: is no XML: it does not begin with a tag\n");
}

TEST_F(Program, SaysThatAFileMayNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read it";
  file("s.ts", sample_stream());
  fs::permissions(folder_ / "s.ts", fs::perms::none);
  for (const std::string command : {"summary", "json", "load"}) {
    const Result result = run(command + " s.ts");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.messages, "s.ts: may not be read: permission denied\n");
  }
}

TEST_F(Program, KeepsItsInputBehindALink) {
  file("s.ts", sample_stream());
  const std::string stream = whole(folder_ / "s.ts");
  fs::create_symlink("s.ts", folder_ / "link");
  fs::create_hard_link(folder_ / "s.ts", folder_ / "hard");
  for (const std::string command : {"xml", "sections"})
    for (const std::string line :
         {"s.ts -o link", "link -o s.ts", "s.ts -o hard", "link -o link", "hard s.ts -o link"}) {
      const Result result = run(command + " " + line);
      EXPECT_EQ(result.code, 1) << line;
      EXPECT_EQ(count(result.messages, ": is the input; name another file with -o\n"), 1) << result.messages;
      EXPECT_TRUE(whole(folder_ / "s.ts") == stream);
    }
  // Standard input is no name, but is a file.
  EXPECT_EQ(run("xml - -o s.ts < s.ts").code, 1);
  EXPECT_TRUE(whole(folder_ / "s.ts") == stream);
}

TEST_F(Program, WritesToNoCircleOfLinks) {
  file("s.ts", sample_stream());
  fs::create_symlink("a", folder_ / "b");
  fs::create_symlink("b", folder_ / "a");
  const Result result = run("xml s.ts -o a");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(count(result.messages, ": Too many levels of symbolic links\n"), 1) << result.messages;
}

TEST_F(Program, WritesADocumentInMemoryThatDoesNotGrow) {
  if (is_sanitized) GTEST_SKIP() << "the memory of a sanitizer takes more than the limit";
  Bytes stream;
  for (int i = 0; i < 100; ++i) stream = joined({stream, sample_stream()});
  file("s.ts", stream);
  const std::string expected = run("xml --all s.ts").out;
  EXPECT_GT(expected.size(), 5'000'000u);
  const std::string limit = "ulimit -v 40000 && ";
  const Result limited = run("xml --all s.ts -o s.xml", limit);
  EXPECT_EQ(limited.code, 0);
  EXPECT_EQ(limited.messages, "");
  EXPECT_TRUE(whole(folder_ / "s.xml") == expected);
  EXPECT_TRUE(run("xml --all s.ts", limit).out == expected);
  const Result out = run("xml s.ts -o s.xml", "ulimit -v 10000 && ");
  EXPECT_NE(out.code, 0);
  EXPECT_TRUE(whole(folder_ / "s.xml") == expected);
}

TEST_F(Program, EndsSoonWhereNothingIs) {
  const Result zeros = run("json /dev/zero");
  EXPECT_EQ(zeros.code, 1);
  EXPECT_EQ(zeros.messages,
            "/dev/zero: holds no transport packets, nor sections in its first 67,108,864 bytes\n");
  const Result document = run("load /dev/zero");
  EXPECT_EQ(document.code, 1);
  EXPECT_EQ(document.messages, "/dev/zero: is no XML: it does not begin with a tag\n");
  file("s.bin", long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00}));
  fs::resize_file(folder_ / "s.bin", uintmax_t{1} << 30);
  for (const std::string line : {"report s.bin", "report - < s.bin"}) {
    const Result sparse = run(line, is_sanitized ? "" : "ulimit -v 200000 && ");
    EXPECT_EQ(sparse.code, 0) << line;
    EXPECT_EQ(count(sparse.out, "table name: "), 1) << line;
    EXPECT_EQ(count(sparse.messages, ": no section in the last 67,"), 1) << sparse.messages;
    EXPECT_EQ(count(sparse.messages, " bytes; what follows is not read\n"), 1) << sparse.messages;
  }
  file("hole.xml", {});
  fs::resize_file(folder_ / "hole.xml", uintmax_t{1} << 30);
  EXPECT_EQ(run("load hole.xml").messages, "hole.xml: is no XML: it does not begin with a tag\n");
}

TEST_F(Program, ShowsWhatIsLiveAsItComes) {
  const Bytes first = packets({long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00})}, {.pid = 0});
  Bytes stuffing;
  for (int i = 0; i < 10; ++i) stuffing = joined({stuffing, packet({.pid = 0x1FFF}, {})});
  for (const std::string command : {"show", "json", "report", "xml", "sections"}) {
    fs::remove(folder_ / "live.ts");
    Fifo fifo(folder_ / "live.ts");
    Running program(program_, folder_, {command, "live.ts"});
    ASSERT_TRUE(fifo.write(joined({first, stuffing}))) << command;
    EXPECT_TRUE(program.until([&] { return !program.out().empty(); })) << command;
    fifo.end();
    EXPECT_EQ(program.wait(), 0) << command;
  }
  // On standard input, and a chain too, of which one section tells what it is.
  Fifo fifo(folder_ / "live.bin");
  Running program(program_, folder_, {"json", "-"}, {.input = "live.bin"});
  ASSERT_TRUE(fifo.write(long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00})));
  EXPECT_TRUE(program.until([&] { return program.out().find("\"arrival\":\"20") != std::string::npos; }));
  EXPECT_EQ(program.out().back(), '\n');
  fifo.end();
  EXPECT_EQ(program.wait(), 0);
}

TEST_F(Program, EndsWithItsResultsAtASignal) {
  for (const std::string& command : stream_commands) {
    fs::remove(folder_ / "live.ts");
    Fifo fifo(folder_ / "live.ts");
    std::vector<std::string> arguments = {command, "live.ts"};
    if (command == "xml") arguments.insert(arguments.end(), {"-o", "live.xml"});
    Running program(program_, folder_, arguments);
    ASSERT_TRUE(fifo.write(sample_stream()));
    ASSERT_TRUE(program.until([&] { return fifo.is_read(); })) << command;
    program.signal(command == "json" ? SIGTERM : SIGINT);
    EXPECT_EQ(program.wait(), 0) << command;
    const std::string out = command == "xml" ? whole(folder_ / "live.xml") : program.out();
    EXPECT_FALSE(out.empty()) << command;
    if (command == "xml") {
      EXPECT_NE(out.find("</transport_stream>\n"), std::string::npos);
    }
  }
}

TEST_F(Program, TellsThatAFileWasNotReadToItsEnd) {
  // Its end is far away.
  Bytes stream;
  for (int i = 0; i < 40; ++i) stream = joined({stream, sample_stream()});
  file("s.ts", stream);
  fs::resize_file(folder_ / "s.ts", uintmax_t{1} << 40);
  file("old.xml", text("old"));
  Running json(program_, folder_, {"json", "--all", "s.ts"});
  EXPECT_TRUE(json.until([&] { return !json.out().empty(); }));
  json.signal(SIGINT);
  EXPECT_EQ(json.wait(), 1);
  EXPECT_EQ(count(json.messages(), "s.ts: stopped after "), 1) << json.messages();

  Running xml(program_, folder_, {"xml", "--all", "s.ts", "-o", "old.xml"});
  const auto is_written = [](const fs::directory_entry& entry) {
    return entry.path().filename().string().starts_with(".quillon-") && entry.file_size() > 0;
  };
  EXPECT_TRUE(xml.until([&] { return std::ranges::any_of(fs::directory_iterator(folder_), is_written); }));
  xml.signal(SIGINT);
  EXPECT_EQ(xml.wait(), 1);
  EXPECT_EQ(count(xml.messages(), "s.ts: stopped after "), 1) << xml.messages();
  EXPECT_EQ(whole(folder_ / "old.xml"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 4);
}

TEST_F(Program, TellsThatAFileWasNotRead) {
  file("s.ts", sample_stream());
  file("old.xml", text("old"));
  for (const std::string command : {"xml", "summary"}) {
    fs::remove(folder_ / "live.ts");
    Fifo fifo(folder_ / "live.ts");
    std::vector<std::string> arguments = {command, "live.ts", "s.ts"};
    if (command == "xml") arguments.insert(arguments.end(), {"-o", "old.xml"});
    Running program(program_, folder_, arguments);
    ASSERT_TRUE(fifo.write(sample_stream()));
    ASSERT_TRUE(program.until([&] { return fifo.is_read(); })) << command;
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 1) << command;
    EXPECT_EQ(program.messages(), "s.ts: not read\n");
    EXPECT_EQ(whole(folder_ / "old.xml"), "old");
  }
}

TEST_F(Program, ReadsForSoManySeconds) {
  Fifo fifo(folder_ / "live.ts");
  Running program(program_, folder_, {"services", "--seconds", "0.5", "live.ts"});
  ASSERT_TRUE(fifo.write(sample_stream()));
  EXPECT_EQ(program.wait(), 0);
  EXPECT_NE(program.out().find("Radio"), std::string::npos);
  // Also if nothing comes at all.
  Running silent(program_, folder_, {"services", "--seconds", "0.5", "live.ts"});
  EXPECT_EQ(silent.wait(), 1);
}

TEST_F(Program, FollowsAFile) {
  file("s.ts", sample_stream());
  const int had = count(run("json s.ts").out, "\n");
  Running program(program_, folder_, {"json", "--follow", "s.ts"});
  EXPECT_TRUE(program.until([&] { return count(program.out(), "\n") == had; })) << program.out();
  // A packet is known by those that follow it.
  Bytes more = packets({long_section(0x46, Bytes{0x00, 0x01, 0xFF})}, {.pid = 0x11});
  for (int i = 0; i < 10; ++i) more = joined({more, packet({.pid = 0x1FFF}, {})});
  std::ofstream(folder_ / "s.ts", std::ios::binary | std::ios::app)
      .write(reinterpret_cast<const char*>(more.data()), static_cast<std::streamsize>(more.size()));
  EXPECT_TRUE(program.until([&] { return count(program.out(), "\n") == had + 1; })) << program.out();
  program.signal(SIGINT);
  EXPECT_EQ(program.wait(), 0);
  EXPECT_EQ(program.messages(), "");
}

TEST_F(Program, IsSteeredByNoStream) {
  file("s.bin", joined({steering_services(),
                        long_section(0x02, joined({Bytes{0xE1, 0x01, 0xF0, 0x00}}), {.extension = 7})}));
  for (const std::string reading : {"kept", "standard"}) {
    const Result show = run("show --reading " + reading + " s.bin");
    EXPECT_EQ(show.code, 0);
    EXPECT_EQ(count(show.out, reading == "kept" ? "\"\\x15a\\x1B[31mb\\nquillon: c" : "d\\u202Ee\"\n"), 1)
        << show.out;
    EXPECT_FALSE(steers(show.out));
    EXPECT_EQ(count(show.out, "\nquillon"), 0) << show.out;
  }
  for (const std::string command : {"summary", "services", "epg", "tables"})
    EXPECT_FALSE(steers(run(command + " s.bin").out)) << command;
  EXPECT_FALSE(steers(run("json s.bin").messages));
  ASSERT_EQ(run("xml s.bin -o s.xml").code, 0);
  // Reports are as ever where nobody is steered, and keep to their lines where people look.
  for (const std::string line : {"report s.bin", "load s.xml", "report --reading standard s.bin"}) {
    const std::string plain = run(line).out;
    EXPECT_TRUE(steers(plain)) << line;
    std::vector<std::string> arguments;
    std::istringstream words(line);
    for (std::string word; words >> word;) arguments.push_back(word);
    Running program(program_, folder_, arguments, {.out_is_terminal = true});
    EXPECT_EQ(program.wait(), 0) << line;
    EXPECT_FALSE(steers(program.terminal())) << line << program.terminal();
    EXPECT_EQ(program.terminal().find("\nquillon: c"), std::string::npos) << line << program.terminal();
    EXPECT_NE(program.terminal().find("table name: service_description_section"), std::string::npos);
  }
}

TEST_F(Program, IsSteeredByNoName) {
  const std::string name = "a\x1B[31m\nb\xE2\x80\xAE.ts";
  const std::string shown = "a\\x1B[31m\\nb\\u202E.ts";
  for (const std::string command : {"json", "load", "summary"}) {
    const Result missing = run(command + " '" + name + "'");
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.messages, shown + ": not found\n");
  }
  EXPECT_EQ(run("'" + name + "'").messages.find('\x1B'), std::string::npos);
  EXPECT_EQ(run("json --table '" + name + "'").messages.find('\x1B'), std::string::npos);
  EXPECT_EQ(run("names '" + name + "'").messages.find('\x1B'), std::string::npos);
  file(name, sample_stream());
  file("s.ts", sample_stream());
  for (const std::string command : {"show", "summary", "json"}) {
    const Result both = run(command + " s.ts '" + name + "'");
    EXPECT_EQ(both.code, 0);
    EXPECT_FALSE(steers(both.out)) << command;
    EXPECT_NE(both.out.find("a\\"), std::string::npos) << command;
  }
  EXPECT_EQ(run("xml s.ts -o 'none\x1B/x'").messages.find('\x1B'), std::string::npos);
}

TEST_F(Program, IsColouredOnATerminalAlone) {
  file("s.ts", sample_stream());
  const auto shown = [this](const std::vector<std::string>& environment) {
    Running program(program_, folder_, {"show", "--table", "0", "s.ts"},
                    {.out_is_terminal = true, .environment = environment});
    EXPECT_EQ(program.wait(), 0);
    return program.terminal();
  };
  const std::string plain = run("show --table 0 s.ts").out;
  EXPECT_EQ(plain.find('\x1B'), std::string::npos);
  EXPECT_NE(shown({"TERM=xterm", "NO_COLOR="}).find("\x1B[1mPAT\x1B[0m"), std::string::npos);
  EXPECT_EQ(shown({"TERM=xterm", "NO_COLOR=1"}), plain);
  EXPECT_EQ(shown({"TERM=dumb", "NO_COLOR="}), plain);
}

TEST_F(Program, WritesNoSectionsToATerminal) {
  file("s.ts", sample_stream());
  Running program(program_, folder_, {"sections", "s.ts"}, {.out_is_terminal = true});
  EXPECT_EQ(program.wait(), 1);
  EXPECT_EQ(program.messages(), "sections are bytes, no text for a terminal: name a file with -o\n");
  EXPECT_EQ(program.terminal(), "");
}

TEST_F(Program, ShowsProgressApartFromAllElse) {
  // Long enough to be shown: the sections of a slow pipe.
  const Bytes stream = sample_stream();
  Bytes much;
  while (much.size() < (size_t{1} << 20) + 1000) much = joined({much, stream});
  Bytes broken = long_section(0x00, Bytes{0x00, 0x07, 0xE3, 0x00});
  broken[8] ^= 1;
  for (const bool out_is_terminal : {false, true}) {
    fs::remove(folder_ / "live.ts");
    Fifo fifo(folder_ / "live.ts");
    Running program(program_, folder_, {"json", "live.ts"},
                    {.out_is_terminal = out_is_terminal, .messages_are_for_terminal = true});
    std::thread writer([&] {
      for (int i = 0; i < 8; ++i) {
        for (size_t at = 0; at < much.size(); at += 60'000)
          fifo.write(Bytes(much.begin() + static_cast<ptrdiff_t>(at),
                           much.begin() + static_cast<ptrdiff_t>(std::min(at + 60'000, much.size()))));
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
      }
      fifo.write(packets({broken}, {.pid = 0}));
      fifo.end();
    });
    EXPECT_EQ(program.wait(), 0);
    writer.join();
    const std::string shown = program.terminal();
    const std::string message = "live.ts: packet ";
    EXPECT_EQ(count(shown, message), 1);
    if (out_is_terminal) {
      EXPECT_EQ(count(shown, " MB/s"), 0) << shown;
      EXPECT_EQ(shown.find('\r'), std::string::npos);
    } else {
      EXPECT_GT(count(shown, " MB/s"), 0);
      EXPECT_NE(shown.find("\r\x1B[K" + message), std::string::npos);
      EXPECT_EQ(program.out().find(" MB/s"), std::string::npos);
    }
  }
}

TEST_F(Program, TellsTimesOfThisMachineIfAsked) {
  const char* const data = std::getenv("QUILLON_DATA");
  if (!data) GTEST_SKIP() << "QUILLON_DATA is not set";
  fs::copy_file(fs::path(data) / "sample.ts", folder_ / "s.ts");
  const auto epg = [this](const std::string& options) {
    return run("epg --service 4097 " + options + " s.ts", "TZ=Asia/Kolkata ").out;
  };
  EXPECT_EQ(count(epg(""), "> 2026-11-22 12:30  1:00:00  Ink and Paper"), 1);
  EXPECT_EQ(count(epg("--local"), "> 2026-11-22 18:00  1:00:00  Ink and Paper"), 1);
  const std::string one = epg("--local --from 2026-11-22T18:00 --to 2026-11-22T18:01");
  EXPECT_EQ(count(one, "2026-11-22 18:00"), 1) << one;
  EXPECT_EQ(count(one, "2026-11-22"), 1) << one;
  EXPECT_EQ(epg("--local --from 2026-11-22T12:30Z --to 2026-11-22T12:31Z"), one);
}
