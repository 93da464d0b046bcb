#pragma once

// The companion program as its users have it.

#include "tests/support/bytes.h"
#include "tests/support/process.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include <quillon/platform/internal/log_file.h>

namespace quillon::test {

inline std::string whole(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::filesystem::path path_of(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

// Runs the program in a folder of its own.
class Program : public testing::Test {
 protected:
  struct Result {
    int code;
    std::string out;
    std::string messages;
  };

  Program() {
    if (const char* program = std::getenv("QUILLON_PROGRAM"))
      program_ = std::filesystem::absolute(program).make_preferred().string();
    folder_ = std::filesystem::temp_directory_path() /
              ("quillon-" + std::to_string(platform::process_id()) + "-" +
               testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(folder_);
  }
  ~Program() override { std::filesystem::remove_all(folder_); }

  void SetUp() override {
    if (program_.empty()) GTEST_SKIP() << "QUILLON_PROGRAM is not set";
  }

  std::string file(const std::string& name, const Bytes& content) {
    std::ofstream out(folder_ / path_of(name), std::ios::binary);
    out.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
    return name;
  }

  // `first` is done in the same shell before the program.
  Result run(const std::string& arguments, const std::string& first = {}) const {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder_);
    const int code = run_in_shell(first + "\"" + program_ + "\" " + arguments + " >out.txt 2>messages.txt");
    std::filesystem::current_path(before);
    return {code, whole(folder_ / "out.txt"), whole(folder_ / "messages.txt")};
  }

  static int count(const std::string& text, const std::string& part) {
    int n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
  }

  std::string program_;
  std::filesystem::path folder_;
};

}  // namespace quillon::test
