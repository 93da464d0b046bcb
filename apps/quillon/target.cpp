#include "apps/quillon/target.h"

#include "apps/quillon/failure.h"
#include "apps/quillon/open_file.h"
#include "apps/quillon/text.h"

#include <filesystem>

namespace quillon::app {

namespace {

namespace fs = std::filesystem;

constexpr size_t kBuffer = size_t{1} << 20;

// What is not there, or may not be read, is no input that could be lost. Any other trouble might hide one.
void refuse_unknown(const std::string& file, std::error_code failed) {
  if (failed && failed != std::errc::no_such_file_or_directory && failed != std::errc::not_a_directory &&
      failed != std::errc::permission_denied)
    throw Failure(visible(file) + ": can't be told from the other files: " + failed.message());
}

bool is_regular(const std::string& file) {
  std::error_code failed;
  const bool out = fs::is_regular_file(path_of(file), failed);
  refuse_unknown(file, failed);
  return out;
}

// Whatever they are called; standard input may be a file, too. A pipe is not opened: its writer would see
// that.
bool is_same_file(const std::string& input, const std::string& output) {
  if ((input != "-" && !is_regular(input)) || !is_regular(output)) return false;
  std::error_code failed;
  const OpenFile in(input, failed);
  refuse_unknown(input, failed);
  if (failed || !in.is_regular()) return false;
  const OpenFile out(output, failed);
  refuse_unknown(output, failed);
  return !failed && in.identity() == out.identity();
}

}  // namespace

fs::path path_of(const std::string& argument) {
  return std::u8string(argument.begin(), argument.end());
}

void refuse_inputs(const Options& options, const std::string& file, const char* option) {
  for (const std::string& input : options.inputs)
    if (is_same_file(input, file))
      throw Failure(visible(file) + ": is the input; name another file with " + option);
}

Target::Target(const Options& options, Console& console) : name_(options.output), console_(console) {
  if (name_.empty() || name_ == "-") return;
  refuse_inputs(options, name_, "-o");
  file_ = std::make_unique<platform::WholeFile>();
  check(file_->open(path_of(name_)));
}

void Target::write(std::string_view text) {
  if (!file_) return console_.print(text);
  buffer_ += text;
  if (buffer_.size() >= kBuffer) flush();
}

void Target::flush() {
  if (!file_) return console_.flush();
  check(file_->write(buffer_));
  buffer_.clear();
}

void Target::finish() {
  flush();
  if (file_) check(file_->finish());
}

void Target::check(std::error_code failed) const {
  if (failed) throw Failure("can't write " + visible(name_) + ": " + failed.message());
}

}  // namespace quillon::app
