// The companion program where devices are files and a shell has limits.

#include "tests/app/program.h"

#include "tests/support/sample.h"

using namespace quillon::test;

TEST_F(Program, WritesToDevices) {
  file("s.ts", sample_stream());
  const Result full = run("xml s.ts -o /dev/full");
  EXPECT_EQ(full.code, 1);
  EXPECT_EQ(full.messages, "can't write /dev/full: No space left on device\n");
  EXPECT_EQ(run("xml s.ts -o /dev/stdout").out, run("xml s.ts").out);
}

TEST_F(Program, WritesNoPartOfADocumentWhenMemoryRunsOut) {
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
  GTEST_SKIP() << "the memory of a sanitizer takes more than the limit";
#endif
#endif
  Bytes stream;
  for (int i = 0; i < 100; ++i) stream = joined({stream, sample_stream()});
  file("s.ts", stream);
  file("s.xml", text("old"));
  const Result result = run("xml --all s.ts -o s.xml", "ulimit -v 40000 && ");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.messages, "quillon: out of memory\n");
  EXPECT_EQ(whole(folder_ / "s.xml"), "old");
  EXPECT_EQ(run("xml --all s.ts", "ulimit -v 40000 && ").code, 1);
  EXPECT_EQ(whole(folder_ / "out.txt"), "");
}
