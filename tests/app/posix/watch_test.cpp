// The command `watch` where there are signals, and files may have any name.

#include "tests/app/posix/running.h"
#include "tests/app/program.h"
#include "tests/support/sample.h"

using namespace quillon::test;

TEST_F(Program, WatchesUntilASignal) {
  file("s.ts", sample_stream());
  for (const int signal : {SIGINT, SIGTERM}) {
    std::filesystem::remove(folder_ / "m.prom");
    Running program(program_, folder_, {"watch", "--follow", "--metrics", "m.prom", "s.ts"});
    // What came is told while it waits for more.
    const auto is_told = [&] { return count(program.out(), "CAT (table 0x01)") == 1; };
    const auto is_up = [&](const char* value) {
      return count(whole(folder_ / "m.prom"), std::string("\nquillon_up{input=\"s.ts\"} ") + value + "\n") ==
             1;
    };
    EXPECT_TRUE(program.until([&] { return is_told() && is_up("1"); })) << program.out();
    program.signal(signal);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.messages(), "");
    EXPECT_TRUE(is_told());
    EXPECT_TRUE(is_up("0"));
  }
}

TEST_F(Program, WatchTellsWhenALiveInputArrives) {
  file("s.ts", sample_stream());
  const Result result = run("watch --json -", "cat s.ts | ");
  EXPECT_EQ(count(result.out, ",\"arrival\":\"20"), count(result.out, "\n"));
  EXPECT_EQ(count(result.out, "\"table\":\"cat\""), 1);
  EXPECT_EQ(count(run("watch --json s.ts").out, "arrival"), 0);
}

// Without a clock in the stream tables are gone by the clock on the wall.
TEST_F(Program, WatchGoesByTheWallWithoutAClock) {
  const Bytes stream = sample_stream();
  Fifo fifo(folder_ / "live.ts");
  Running program(program_, folder_, {"watch", "live.ts"});
  ASSERT_TRUE(fifo.write(stream));
  const std::string map = "PID 0x0100  PMT (table 0x02), extension 0x1001";
  ASSERT_TRUE(program.until([&] { return count(program.out(), map) == 1; })) << program.out();
  std::this_thread::sleep_for(std::chrono::milliseconds(1700));
  ASSERT_TRUE(fifo.write(Bytes(stream.end() - 1880, stream.end())));
  fifo.end();
  EXPECT_EQ(program.wait(), 0);
  EXPECT_EQ(count(program.out(), " s  " + map + ": gone, version 3\n"), 1) << program.out();
}

TEST_F(Program, EscapesNamesInMetrics) {
  file("a\"b\\c\n.ts", sample_stream());
  EXPECT_EQ(run("watch --metrics m.prom 'a\"b\\c\n.ts'").code, 0);
  EXPECT_EQ(count(whole(folder_ / "m.prom"), "quillon_up{input=\"a\\\"b\\\\c\\\\n.ts\"} 0\n"), 1);
}
