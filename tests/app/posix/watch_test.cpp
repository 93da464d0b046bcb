// The command `watch` where there are signals, and files may have any name.

#include "tests/app/program.h"
#include "tests/support/sample.h"

using namespace quillon::test;

TEST_F(Program, WatchesUntilASignal) {
  file("s.ts", sample_stream());
  for (const std::string signal : {"INT", "TERM"}) {
    const Result result =
        run("watch --follow --metrics m.prom s.ts", "timeout --preserve-status -s " + signal + " 0.5 ");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.messages, "");
    EXPECT_EQ(count(result.out, "CAT (table 0x01)"), 1);
    EXPECT_EQ(count(whole(folder_ / "m.prom"), "\nquillon_up{input=\"s.ts\"} 0\n"), 1);
  }
}

TEST_F(Program, WatchTellsWhatCameWhileItWaitsForMore) {
  file("s.ts", sample_stream());
  const Result result =
      run("watch --follow --metrics m.prom s.ts >live.txt & sleep 0.5; cat live.txt >seen.txt; "
          "cat m.prom >seen.prom; kill $!; wait $! #");
  EXPECT_EQ(count(whole(folder_ / "seen.txt"), "CAT (table 0x01)"), 1);
  EXPECT_EQ(count(whole(folder_ / "seen.prom"), "\nquillon_up{input=\"s.ts\"} 1\n"), 1);
  EXPECT_EQ(count(whole(folder_ / "m.prom"), "\nquillon_up{input=\"s.ts\"} 0\n"), 1);
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
  file("s.ts", sample_stream());
  const Result result = run("watch -", "(cat s.ts; sleep 1.7; tail -c 1880 s.ts) | ");
  EXPECT_EQ(count(result.out, " s  PID 0x0100  PMT (table 0x02), extension 0x1001: gone, version 3\n"), 1)
      << result.out;
}

TEST_F(Program, EscapesNamesInMetrics) {
  file("a\"b\\c\n.ts", sample_stream());
  EXPECT_EQ(run("watch --metrics m.prom 'a\"b\\c\n.ts'").code, 0);
  EXPECT_EQ(count(whole(folder_ / "m.prom"), "quillon_up{input=\"a\\\"b\\\\c\\\\n.ts\"} 0\n"), 1);
}
