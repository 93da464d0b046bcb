// The program with each of its calls that concern files failing in turn, interrupted, or done by half. Its
// calls are stopped at the system's door, whoever makes them: the program, or a library. A program of its
// own, as it traces another.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr unsigned kPatience = 10;  // seconds

struct Fault {
  size_t nth = 0;      // of the calls that can fail so; 0 for none
  int error = 0;       // 0: a read or write is done by half
  bool often = false;  // every second of each kind instead
};

struct Ended {
  int code = -1;  // -1 if it was ended by a signal
  int signal = 0;
  bool took_too_long = false;
  bool fell = false;      // the call came
  std::string call = "";  // which
};

std::string content(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

const char* name_of(unsigned long long call) {
  static const std::map<unsigned long long, const char*> names = {
      {SYS_read, "read"},          {SYS_write, "write"},   {SYS_open, "open"},         {SYS_openat, "openat"},
      {SYS_close, "close"},        {SYS_stat, "stat"},     {SYS_fstat, "fstat"},       {SYS_lstat, "lstat"},
      {SYS_newfstatat, "fstatat"}, {SYS_statx, "statx"},   {SYS_lseek, "lseek"},       {SYS_poll, "poll"},
      {SYS_rename, "rename"},      {SYS_fsync, "fsync"},   {SYS_readlink, "readlink"}, {SYS_fchmod, "fchmod"},
      {SYS_fchown, "fchown"},      {SYS_writev, "writev"}, {SYS_readv, "readv"},       {SYS_pread64, "pread"},
      {SYS_getdents64, "getdents"}};
  const auto name = names.find(call);
  return name != names.end() ? name->second : nullptr;
}

bool takes_path(unsigned long long call) {
  return call == SYS_openat || call == SYS_newfstatat || call == SYS_statx;
}

class Traced {
 public:
  Traced(const std::vector<std::string>& arguments, const std::string& input, const fs::path& folder) {
    std::vector<char*> words;
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    id_ = fork();
    if (id_ != 0) return;
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    if (chdir(folder.c_str()) != 0) _exit(126);
    dup2(open(input.c_str(), O_RDONLY), STDIN_FILENO);
    dup2(open("out.txt", flags, 0600), STDOUT_FILENO);
    dup2(open("messages.txt", flags, 0600), STDERR_FILENO);
    for (int file = STDERR_FILENO + 1; file < 32; ++file) close(file);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(125);
    execv(words[0], words.data());
    _exit(127);
  }
  ~Traced() {
    alarm(0);
    if (is_there_) {
      kill(id_, SIGKILL);
      waitpid(id_, nullptr, 0);
    }
  }
  Traced(const Traced&) = delete;
  Traced& operator=(const Traced&) = delete;

  Ended run(const Fault& fault) {
    alarm(kPatience);
    if (!next()) return out_;
    ptrace(PTRACE_SETOPTIONS, id_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    bool enters = true;
    bool has_begun = false;
    for (int pending = 0;;) {
      ptrace(PTRACE_SYSCALL, id_, nullptr, pending);
      if (!next()) return out_;
      const bool is_call = WSTOPSIG(status_) == (SIGTRAP | 0x80);
      pending = is_call ? 0 : WSTOPSIG(status_);
      if (!is_call) continue;
      user_regs_struct registers = {};
      ptrace(PTRACE_GETREGS, id_, nullptr, &registers);
      if (enters) {
        // What comes before is the loader's: signals are caught once the command line was read.
        has_begun |= registers.orig_rax == SYS_rt_sigaction && registers.rdi == SIGINT;
        if (has_begun && can_fail(registers, fault) && is_due(fault, registers.orig_rax))
          fail(registers, fault);
        entered_ = registers;
      } else {
        if (refused_) {
          registers.rax = static_cast<unsigned long long>(-static_cast<long long>(fault.error));
          ptrace(PTRACE_SETREGS, id_, nullptr, &registers);
        }
        refused_ = false;
        if (entered_.orig_rax == SYS_openat && is_of_system(entered_.rsi)) foreign_.insert(registers.rax);
        if (entered_.orig_rax == SYS_close) foreign_.erase(entered_.rdi);
      }
      enters = !enters;
    }
  }

 private:
  // The C library reads its tables of characters where it first needs one; a system may as well lack them.
  bool is_of_system(unsigned long long path) const {
    const long begin = ptrace(PTRACE_PEEKDATA, id_, path, nullptr);
    const std::string_view text(reinterpret_cast<const char*>(&begin), sizeof begin);
    return text.starts_with("/usr/") || text.starts_with("/lib") || text.starts_with("/etc/");
  }

  bool is_due(const Fault& fault, unsigned long long call) {
    if (fault.often) return ++counts_[call] % 2 == 1;
    return ++count_ == fault.nth;
  }

  bool can_fail(const user_regs_struct& registers, const Fault& fault) const {
    const auto call = registers.orig_rax;
    if (!name_of(call) || foreign_.contains(registers.rdi)) return false;
    if (takes_path(call) && is_of_system(registers.rsi)) return false;
    // What is said on standard error is no result.
    if (call == SYS_write && registers.rdi == STDERR_FILENO) return false;
    const bool moves_bytes = call == SYS_read || call == SYS_write;
    if (fault.error == 0) return moves_bytes && registers.rdx > 1;
    // What the system interrupts.
    if (fault.error == EINTR) return moves_bytes || call == SYS_poll;
    const bool may_create = call == SYS_openat && (registers.rdx & O_CREAT);
    if (fault.error == ENOSPC) return call == SYS_write || call == SYS_fsync || may_create;
    return true;
  }

  void fail(user_regs_struct& registers, const Fault& fault) {
    out_.fell = true;
    out_.call = name_of(registers.orig_rax);
    if (fault.error == 0) {
      registers.rdx /= 2;
    } else {
      refused_ = true;
      // Closed all the same, as the system does.
      if (registers.orig_rax != SYS_close) registers.orig_rax = ~0ull;
    }
    ptrace(PTRACE_SETREGS, id_, nullptr, &registers);
  }

  // Waits until it stops; false once it has ended.
  bool next() {
    const bool waited = waitpid(id_, &status_, __WALL) == id_;
    out_.took_too_long = !waited;
    if (waited && WIFSTOPPED(status_)) return true;
    is_there_ = !waited;
    if (waited && WIFEXITED(status_)) out_.code = WEXITSTATUS(status_);
    if (waited && WIFSIGNALED(status_)) out_.signal = WTERMSIG(status_);
    return false;
  }

  pid_t id_ = -1;
  bool is_there_ = true;
  int status_ = 0;
  user_regs_struct entered_ = {};
  std::set<unsigned long long> foreign_;  // files that are the system's own
  size_t count_ = 0;
  std::map<unsigned long long, size_t> counts_;
  bool refused_ = false;
  Ended out_;
};

constexpr const char* metrics = "m.prom";

struct Order {
  std::string line = "";        // after the program's name
  std::string output = "none";  // the file that it writes
  bool replaces = false;        // another file
  std::string input = "s.ts";   // standard input
};

class FailingCalls : public testing::Test {
 protected:
  void SetUp() override {
    const char* const program = std::getenv("QUILLON_PROGRAM");
    const char* const data = std::getenv("QUILLON_DATA");
    if (!program || !data) GTEST_SKIP() << "QUILLON_PROGRAM or QUILLON_DATA is not set";
    program_ = program;
    fs::create_directories(folder_);
    // Cut in a packet, so that something is skipped, too.
    std::ofstream(folder_ / "s.ts", std::ios::binary)
        << content(fs::path(data) / "sample.ts").substr(0, 188 * 300 + 50);
    struct sigaction action = {};
    action.sa_handler = [](int) {};  // and waits are cut short
    sigaction(SIGALRM, &action, nullptr);
    if (run({"--version"}, {}).code != 0) GTEST_SKIP() << "no program may be traced here";
    ASSERT_EQ(run({"xml s.ts -o s.xml"}, {}).code, 0);
  }
  void TearDown() override { fs::remove_all(folder_); }

  Ended run(const Order& order, const Fault& fault) {
    std::vector<std::string> words = {program_};
    std::string word;
    for (const char c : order.line + " ") {
      if (c != ' ')
        word += c;
      else if (!word.empty())
        words.push_back(std::exchange(word, {}));
    }
    return Traced(words, order.input, folder_).run(fault);
  }
  std::string out() const { return content(folder_ / "out.txt"); }
  std::string messages() const { return content(folder_ / "messages.txt"); }
  struct Result {
    std::string out;
    std::string messages;
    std::string file;
    std::vector<std::string> files;
    bool operator==(const Result&) const = default;
  };
  // What metrics tell of the clock on the wall is another each time.
  Result result(const Order& order) const {
    return {out(), messages(), order.output == metrics ? "" : content(folder_ / order.output), files()};
  }
  bool names_what_failed(const Order& order) const {
    const std::string said = messages();
    for (const std::string& name :
         {std::string("standard "), std::string("s.ts"), std::string("s.xml"), order.output})
      if (said.find(name) != std::string::npos) return true;
    return false;
  }
  void expect_whole_metrics() const {
    for (const std::string& file : files()) EXPECT_FALSE(file.starts_with(".quillon-")) << file;
    const std::string text = content(folder_ / metrics);
    if (text.empty()) return;
    EXPECT_TRUE(text.starts_with("# HELP quillon_up"));
    EXPECT_TRUE(text.ends_with("\n"));
  }
  std::vector<std::string> files() const {
    std::vector<std::string> out;
    for (const auto& entry : fs::directory_iterator(folder_)) out.push_back(entry.path().filename().string());
    std::sort(out.begin(), out.end());
    return out;
  }

  std::string program_;
  const fs::path folder_ = fs::temp_directory_path() / ("quillon-calls-" + std::to_string(getpid()));
};

const std::vector<Order>& orders() {
  static const std::vector<Order> all = {
      {"summary s.ts"},
      {"services s.ts"},
      {"pids s.ts"},
      {"epg s.ts"},
      {"tables s.ts"},
      {"show s.ts"},
      {"json s.ts"},
      {"report s.ts"},
      {"xml s.ts"},
      {"sections s.ts"},
      {"load s.xml"},
      {"names network 1"},
      {"--help"},
      {"summary -"},
      {"xml s.ts -o o.xml", "o.xml"},
      {"xml s.ts -o o.xml", "o.xml", true},
      {"sections s.ts -o o.bin", "o.bin"},
      {"html s.ts -o o.html", "o.html"},
      {"watch s.ts"},
      {"watch s.ts --metrics m.prom", metrics},
  };
  return all;
}

}  // namespace

TEST_F(FailingCalls, ChangeNothingWhereTheyAreInterruptedOrDoneByHalf) {
  for (const Order& order : orders()) {
    ASSERT_EQ(run(order, {}).code, 0) << order.line << "\n" << messages();
    const Result untroubled = result(order);
    for (const int error : {EINTR, 0}) {
      SCOPED_TRACE(order.line + (error ? ", interrupted" : ", by half"));
      fs::remove(folder_ / order.output);
      const Ended ended = run(order, {.error = error, .often = true});
      EXPECT_TRUE(ended.fell);
      EXPECT_FALSE(ended.took_too_long);
      EXPECT_EQ(ended.code, 0);
      EXPECT_TRUE(result(order) == untroubled);
    }
    fs::remove(folder_ / order.output);
  }
}

TEST_F(FailingCalls, LoseNothingAndAreTold) {
  for (const Order& order : orders()) {
    const auto begin = [&] {
      fs::remove(folder_ / order.output);
      if (order.replaces) std::ofstream(folder_ / order.output) << "old";
    };
    begin();
    const auto before = files();
    const std::string old = content(folder_ / order.output);
    ASSERT_EQ(run(order, {}).code, 0) << order.line << "\n" << messages();
    const Result untroubled = result(order);
    for (const int error : {EIO, ENOSPC})
      for (Fault fault{1, error};; ++fault.nth) {
        begin();
        const Ended ended = run(order, fault);
        SCOPED_TRACE(order.line + ": call " + std::to_string(fault.nth) + ", " + ended.call + ", " +
                     strerror(error) + ", code " + std::to_string(ended.code) + "\n" + messages());
        EXPECT_FALSE(ended.took_too_long);
        ASSERT_EQ(ended.signal, 0);
        if (ended.code == 0) {
          EXPECT_TRUE(out() == untroubled.out);
          // Metrics are beside the matter: watching goes on without them.
          if (messages().find("can't write m.prom") == std::string::npos) {
            EXPECT_TRUE(result(order) == untroubled);
          }
        } else {
          EXPECT_EQ(ended.code, 1);
          EXPECT_TRUE(names_what_failed(order));
          if (order.output != metrics) {
            EXPECT_TRUE(content(folder_ / order.output) == old);
            EXPECT_EQ(files(), before);
          }
        }
        if (order.output == metrics) expect_whole_metrics();
        if (!ended.fell) break;
      }
    fs::remove(folder_ / order.output);
  }
}
