// Inputs where pipes have names, devices are files and a signal ends a wait.

#include "apps/quillon/stop.h"
#include "tests/app/sources.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <initializer_list>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace quillon::test;
using quillon::app::open_source;

namespace {

// Standard input is another file while this object lives.
class StandardInput {
 public:
  explicit StandardInput(int file) : before_(::dup(STDIN_FILENO)) { ::dup2(file, STDIN_FILENO); }
  ~StandardInput() {
    ::dup2(before_, STDIN_FILENO);
    ::close(before_);
  }
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

 private:
  int before_;
};

void put(int file, const std::string& text) {
  ASSERT_EQ(::write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

}  // namespace

TEST_F(Sources, ReadsANamedPipe) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  const auto source = open_source(path("pipe"), false);  // before there is a writer
  EXPECT_TRUE(source->is_live());
  EXPECT_FALSE(source->rewind());
  const int writer = ::open(path("pipe").c_str(), O_WRONLY);
  put(writer, "first");
  EXPECT_EQ(read(*source), "first");  // and waits for no more
  put(writer, "second");
  EXPECT_EQ(read(*source), "second");
  std::thread late([&] {
    put(writer, "third");
    ::close(writer);
  });
  EXPECT_EQ(read(*source), "third");
  EXPECT_EQ(read(*source), "");
  late.join();
}

TEST_F(Sources, TakesStandardInputForWhatItIs) {
  const int file = ::open(write("a.ts", "0123456789").c_str(), O_RDONLY);
  ASSERT_EQ(::lseek(file, 3, SEEK_SET), 3);  // where the program before left it
  {
    const StandardInput input(file);
    const auto source = open_source("-", false);
    EXPECT_FALSE(source->is_live());
    EXPECT_EQ(source->size(), 7U);
    EXPECT_EQ(read(*source), "3456789");
    EXPECT_TRUE(source->rewind());
    EXPECT_EQ(read(*source, 2), "34");
  }
  ::close(file);
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  {
    const StandardInput input(pipe[0]);
    const auto source = open_source("-", true);
    put(pipe[1], "bytes");
    ::close(pipe[1]);
    EXPECT_TRUE(source->is_live());
    EXPECT_EQ(read(*source), "bytes");
    EXPECT_EQ(read(*source), "");
  }
  ::close(pipe[0]);
}

TEST_F(Sources, SaysWhyTheSystemGivesNoBytes) {
  EXPECT_EQ(failure_of("/proc/self/mem"), "/proc/self/mem: can't be read after 0 bytes: Input/output error");
  EXPECT_EQ(failure_of(write("a.ts", "") + "/b"), path("a.ts/b") + ": can't be opened: Not a directory");
}

TEST_F(Sources, SaysThatAFileMayNotBeRead) {
  write("a.ts", "");
  if (::geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  std::filesystem::permissions(path("a.ts"), std::filesystem::perms::none);
  EXPECT_EQ(failure_of(path("a.ts")), path("a.ts") + ": may not be read: permission denied");
}

TEST_F(Sources, SaysThatAnAddressIsNoneOfThisMachine) {
  const std::string foreign = "udp://192.0.2.1:" + std::to_string(free_port());  // for examples, and nobody's
  EXPECT_EQ(failure_of(foreign), foreign +
                                     ": can't be bound: Cannot assign requested address; name an address of "
                                     "this machine, or none for all");
}

// Each runs in a process of its own, as a request to stop is for good.
class StopDeathTest : public Sources {
 protected:
  StopDeathTest() {
    std::signal(SIGINT, SIG_DFL);  // which a shell ignores for what it runs in the background
  }

  // The signal comes at whatever moment: before the read, in it or between its waits.
  [[noreturn]] static void stop_while_reading(const std::string& input, bool follow) {
    quillon::app::catch_stop_signals();
    ::alarm(10);  // for the case that it is missed
    const auto source = open_source(input, follow);
    std::thread other([] { ::kill(::getpid(), SIGTERM); });
    const bool ended = read(*source).empty();
    other.join();
    std::exit(ended && quillon::app::stop_requested() ? 0 : 1);
  }
  static void raise_all(std::initializer_list<int> signals) {
    quillon::app::catch_stop_signals();
    for (const int signal : signals) std::raise(signal);
  }
};

TEST_F(StopDeathTest, EndsAWait) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  const std::string file = write("a.ts", "");
  for (int i = 0; i < 5; ++i) {
    EXPECT_EXIT(stop_while_reading(path("pipe"), false), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(stop_while_reading(file, true), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(stop_while_reading("udp://127.0.0.1:" + std::to_string(free_port()), false),
                testing::ExitedWithCode(0), "");
  }
}

TEST_F(StopDeathTest, EndsAFile) {
  EXPECT_EXIT(
      {
        const auto source = open_source(write("a.ts", "0123456789"), false);
        if (read(*source, 4) != "0123") std::exit(1);
        raise_all({SIGINT});
        std::exit(read(*source).empty() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(StopDeathTest, TheSecondSignalDoesWhatItAlwaysDid) {
  EXPECT_EXIT(raise_all({SIGINT, SIGTERM}), testing::KilledBySignal(SIGTERM), "");
  EXPECT_EXIT(raise_all({SIGINT, SIGINT}), testing::KilledBySignal(SIGINT), "");
  EXPECT_EXIT(
      {
        std::signal(SIGINT, SIG_IGN);
        raise_all({SIGINT, SIGINT});
        std::exit(quillon::app::stop_requested() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}
