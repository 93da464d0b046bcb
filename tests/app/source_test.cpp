// What gives the companion program its bytes: files.

#include "tests/app/sources.h"

#include <thread>

using namespace quillon::test;
using quillon::app::open_source;

TEST_F(Sources, ReadsAFileAndGoesBack) {
  const auto source = open_source(write("a.ts", "0123456789"), false);
  EXPECT_FALSE(source->is_live());
  EXPECT_EQ(source->size(), 10U);
  EXPECT_EQ(source->trouble(), "");
  EXPECT_EQ(read(*source, 4), "0123");
  EXPECT_EQ(read(*source), "456789");
  EXPECT_EQ(read(*source), "");
  EXPECT_TRUE(source->rewind());
  EXPECT_EQ(read(*source), "0123456789");
  EXPECT_EQ(read(*open_source(write("empty.ts", ""), false)), "");
}

TEST_F(Sources, SaysWhyAFileCannotBeRead) {
  EXPECT_EQ(failure_of(path("missing.ts")), path("missing.ts") + ": not found");
  EXPECT_EQ(failure_of(path("missing/a.ts")), path("missing/a.ts") + ": not found");
  EXPECT_EQ(failure_of(path("")), path("") + ": is a folder; name the files in it");
  EXPECT_EQ(failure_of("."), ".: is a folder; name the files in it");
}

TEST_F(Sources, FollowsAFileThatGrows) {
  const auto source = open_source(write("a.ts", "first"), true);
  EXPECT_TRUE(source->is_live());
  EXPECT_FALSE(source->rewind());
  EXPECT_EQ(source->size(), 0U);
  EXPECT_EQ(read(*source), "first");
  std::thread writer([&] { write("a.ts", "second", std::ios::app); });
  EXPECT_EQ(read_size(*source, 6), "second");
  writer.join();
}

TEST_F(Sources, FollowsAFileThatIsBegunAnew) {
  const auto source = open_source(write("a.ts", "a long first one"), true);
  EXPECT_EQ(read(*source), "a long first one");
  write("a.ts", "short");
  EXPECT_EQ(read_size(*source, 5), "short");
  write("a.ts", "er", std::ios::app);
  EXPECT_EQ(read_size(*source, 2), "er");
}

TEST_F(Sources, FollowsAFileThatIsReplaced) {
  const auto source = open_source(write("a.ts", "old"), true);
  EXPECT_EQ(read(*source), "old");
  std::filesystem::rename(path("a.ts"), path("a.1"));
  write("a.1", ", its rest", std::ios::app);
  write("a.ts", "new, and longer than the one before");
  EXPECT_EQ(read_size(*source, 45), ", its restnew, and longer than the one before");
}

TEST_F(Sources, KeepsAFileWhileNoneHasItsName) {
  const auto source = open_source(write("a.ts", "old"), true);
  EXPECT_EQ(read(*source), "old");
  std::filesystem::rename(path("a.ts"), path("a.1"));
  write("a.1", ", its rest", std::ios::app);
  EXPECT_EQ(read_size(*source, 10), ", its rest");
}

TEST(NameOf, IsWhatPeopleCallAnInput) {
  EXPECT_EQ(quillon::app::name_of("-"), "standard input");
  EXPECT_EQ(quillon::app::name_of("a.ts"), "a.ts");
}
