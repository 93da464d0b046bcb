#pragma once

// A log of the library's own, to be read and removed by a test.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <quillon/platform/internal/log_file.h>
#include <quillon/sections/log.h>

namespace quillon::test {

// The log `name` beside the running executable; closed, silent and removed when the object goes.
class TemporaryLog {
 public:
  explicit TemporaryLog(const std::string& name) : name_(name), path_(platform::executable_folder() + name) {
    std::filesystem::remove(path_);
  }
  TemporaryLog(const std::string& name, int flags, int max_level) : TemporaryLog(name) {
    open(flags, max_level);
  }
  ~TemporaryLog() {
    log_close();
    log_open(0, 0, "no such folder/log.csv");  // can't be opened: level 0, and closed
    std::filesystem::remove(path_);
  }
  TemporaryLog(const TemporaryLog&) = delete;
  TemporaryLog& operator=(const TemporaryLog&) = delete;

  int open(int flags, int max_level) { return log_open(flags, max_level, name_.c_str()); }
  bool exists() const { return std::filesystem::exists(path_); }
  void put(const std::string& text) const { std::ofstream(path_, std::ios::binary) << text; }
  std::string text() const {
    std::ifstream in(path_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

  std::vector<std::string> lines() const {
    std::vector<std::string> out;
    std::string rest = text();
    for (size_t end; (end = rest.find("\r\n")) != std::string::npos; rest.erase(0, end + 2))
      out.push_back(rest.substr(0, end));
    if (!rest.empty()) out.push_back(rest);
    return out;
  }
  // What the records say, of a log without quoted columns.
  std::vector<std::string> messages() const {
    std::vector<std::string> out;
    for (const std::string& line : lines()) {
      const size_t first = line.find('"');
      const size_t last = line.rfind('"');
      if (first != last) out.push_back(line.substr(first + 1, last - first - 1));
    }
    return out;
  }

 private:
  std::string name_;
  std::string path_;
};

}  // namespace quillon::test
