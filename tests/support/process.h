#pragma once

// What the tests ask of the process that they run in.

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::test {

// Gives a command, in UTF-8, to the system's shell; its exit code, -1 if it had none.
int run_in_shell(const std::string& command);

// Files and whatever else the system counts like them.
size_t open_files();

// What the parsers traced while this object lived.
class Traces {
 public:
  Traces();
  ~Traces();
  Traces(const Traces&) = delete;
  Traces& operator=(const Traces&) = delete;

  static std::vector<std::string>& lines();

 private:
  void* listener_ = nullptr;
};

}  // namespace quillon::test
