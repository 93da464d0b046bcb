#pragma once

// The companion program while it runs: fed, watched, signalled, or on a terminal.

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace quillon::test {

// How a program is started.
struct Setting {
  bool out_is_terminal = false;
  bool messages_are_for_terminal = false;
  std::string input = "/dev/null";            // what standard input is
  std::vector<std::string> environment = {};  // "NO_COLOR=1"
};

class Running {
 public:
  Running(const std::string& program, const std::filesystem::path& folder, std::vector<std::string> arguments,
          const Setting& setting = {})
      : folder_(folder) {
    arguments.insert(arguments.begin(), program);
    std::vector<char*> words;
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    std::filesystem::remove(folder / "live.txt");
    std::filesystem::remove(folder / "live-messages.txt");
    const int terminal = setting.out_is_terminal || setting.messages_are_for_terminal ? open_terminal() : -1;
    id_ = fork();
    if (id_ != 0) {
      if (terminal >= 0) close(terminal);
      return;
    }
    std::vector<std::string> environment = setting.environment;
    for (std::string& variable : environment) putenv(variable.data());
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    if (chdir(folder.c_str()) != 0) _exit(126);
    dup2(open(setting.input.c_str(), O_RDONLY), STDIN_FILENO);
    dup2(setting.out_is_terminal ? terminal : open("live.txt", flags, 0600), STDOUT_FILENO);
    dup2(setting.messages_are_for_terminal ? terminal : open("live-messages.txt", flags, 0600),
         STDERR_FILENO);
    // Who runs the tests in the background of a shell has them ignore it.
    std::signal(SIGINT, SIG_DFL);
    execv(program.c_str(), words.data());
    _exit(127);
  }
  ~Running() {
    if (id_ > 0 && !has_ended()) {
      kill(id_, SIGKILL);
      waitpid(id_, nullptr, 0);
    }
    if (master_ >= 0) close(master_);
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  void signal(int number) const { kill(id_, number); }

  // Its exit code once it has ended; -1 if that takes too long, or a signal ended it.
  int wait() {
    const bool ended = until([this] { return has_ended(); });
    drain();
    return ended && WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
  }
  // Gives whether it became so within half a minute.
  bool until(const std::function<bool()>& condition) {
    for (int i = 0; i < 3000; ++i) {
      drain();
      if (condition()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }

  // What it said until now, where that is no terminal.
  std::string out() const { return content("live.txt"); }
  std::string messages() const { return content("live-messages.txt"); }
  const std::string& terminal() const { return terminal_; }

 private:
  // Its end for the program; it changes no line ends.
  int open_terminal() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    grantpt(master_);
    unlockpt(master_);
    const int end = open(ptsname(master_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios mode = {};
    tcgetattr(end, &mode);
    cfmakeraw(&mode);
    tcsetattr(end, TCSANOW, &mode);
    return end;
  }

  bool has_ended() {
    if (!ended_) ended_ = waitpid(id_, &status_, WNOHANG) == id_;
    return ended_;
  }

  void drain() {
    char piece[4096];
    for (ssize_t got; master_ >= 0 && (got = read(master_, piece, sizeof piece)) > 0;)
      terminal_.append(piece, static_cast<size_t>(got));
  }

  std::string content(const char* name) const {
    std::ifstream in(folder_ / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

  std::filesystem::path folder_;
  pid_t id_ = -1;
  int master_ = -1;
  int status_ = 0;
  bool ended_ = false;
  std::string terminal_;
};

// A pipe with a name, open for writing, and for reading so that it can be opened before its reader is there.
class Fifo {
 public:
  explicit Fifo(const std::filesystem::path& path) {
    if (mkfifo(path.c_str(), 0600) == 0) handle_ = open(path.c_str(), O_RDWR | O_CLOEXEC);
  }
  ~Fifo() { end(); }
  Fifo(const Fifo&) = delete;
  Fifo& operator=(const Fifo&) = delete;

  template <class Bytes>
  bool write(const Bytes& bytes) const {
    return ::write(handle_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  }
  // Whether all that was written is read.
  bool is_read() const {
    int left = -1;
    return ioctl(handle_, FIONREAD, &left) == 0 && left == 0;
  }
  void end() {
    if (handle_ >= 0) close(handle_);
    handle_ = -1;
  }

 private:
  int handle_ = -1;
};

}  // namespace quillon::test
