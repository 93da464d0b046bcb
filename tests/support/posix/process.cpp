#include "tests/support/process.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <sys/wait.h>

#include <quillon/platform/debug_output.h>

namespace quillon::test {

int run_in_shell(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

size_t open_files() {
  using Files = std::filesystem::directory_iterator;
  return static_cast<size_t>(std::distance(Files("/proc/self/fd"), Files()));
}

Traces::Traces() {
  lines().clear();
  set_debug_output([](const char* line) { lines().push_back(line); });
}

Traces::~Traces() {
  set_debug_output(nullptr);
}

std::vector<std::string>& Traces::lines() {
  static std::vector<std::string> all;
  return all;
}

}  // namespace quillon::test
