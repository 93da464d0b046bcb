#pragma once

#include "apps/quillon/console.h"
#include "apps/quillon/options.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <quillon/platform/internal/file.h>

namespace quillon::app {

// Arguments are in UTF-8.
std::filesystem::path path_of(const std::string& argument);
// Throws Failure where a file that is to be written by an option is one of the inputs.
void refuse_inputs(const Options& options, const std::string& file, const char* option);

// Where a command that makes one file writes it: to the file of its option, whole or not at all, or to
// standard output. All functions throw Failure.
class Target {
 public:
  // Refuses a file that is one of the inputs.
  Target(const Options& options, Console& console);

  void write(std::string_view text);
  void flush();
  // The file gets its name.
  void finish();
  // Not a file, but people.
  bool is_terminal() const { return !file_ && console_.is_terminal(); }

 private:
  void check(std::error_code failed) const;

  const std::string name_;
  Console& console_;
  std::unique_ptr<platform::WholeFile> file_;
  std::string buffer_;
};

}  // namespace quillon::app
