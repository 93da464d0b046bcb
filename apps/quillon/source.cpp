#include "apps/quillon/source.h"

#include "apps/quillon/datagrams.h"
#include "apps/quillon/failure.h"
#include "apps/quillon/open_file.h"
#include "apps/quillon/stop.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <thread>

namespace quillon::app {

namespace {

OpenFile open_named(const std::string& name) {
  std::error_code failed;
  if (name != "-" &&
      std::filesystem::is_directory(std::filesystem::path(std::u8string(name.begin(), name.end())), failed))
    throw Failure(name + ": is a folder; name the files in it");
  OpenFile file(name, failed);
  if (failed == std::errc::no_such_file_or_directory)
    throw Failure(name_of(name) + (name.find("://") == std::string::npos
                                       ? ": not found"
                                       : ": not found; addresses begin with udp:// or rtp://"));
  if (failed == std::errc::permission_denied)
    throw Failure(name_of(name) + ": may not be read: permission denied");
  if (failed) throw Failure(name_of(name) + ": can't be opened: " + failed.message());
  return file;
}

class FileSource final : public Source {
 public:
  FileSource(const std::string& name, bool follow)
      : name_(name), file_(open_named(name)), regular_(file_.is_regular()), follow_(follow && regular_) {
    if (!regular_) return;
    const std::optional<uint64_t> at = file_.position();
    if (!at) throw Failure(name_of(name_) + ": can't be read: the system does not say at which byte it is");
    first_ = at_ = *at;
  }

  size_t read(uint8_t* place, size_t room) override {
    while (!stop_requested()) {
      if (!file_.wait()) continue;
      std::error_code failed;
      const size_t got = file_.read(place, room, failed);
      at_ += got;
      if (got > 0) return got;
      if (failed == std::errc::interrupted) continue;
      if (failed == std::errc::value_too_large) {  // so a receiver card says that it was not read in time
        ++overruns_;
        continue;
      }
      if (failed)
        throw Failure(name_of(name_) + ": can't be read after " + std::to_string(at_ - first_) +
                      " bytes: " + failed.message());
      if (!follow_) return 0;
      go_on();
    }
    return 0;
  }

  bool rewind() override {
    if (is_live()) return false;
    if (!file_.go_to(first_)) throw Failure(name_of(name_) + ": can't be read from its beginning again");
    at_ = first_;
    return true;
  }

  uint64_t size() const override {
    const uint64_t size = is_live() ? 0 : file_.size().value_or(0);
    return size > first_ ? size - first_ : 0;
  }

  bool is_live() const override { return !regular_ || follow_; }

  std::string trouble() const override {
    return overruns_ == 0 ? std::string() : std::to_string(overruns_) + " overruns of the device's buffer";
  }

 private:
  // At the end of a file that is followed.
  void go_on() {
    if (next_) {
      file_ = std::move(*next_);
      next_.reset();
      first_ = at_ = 0;
    } else if (file_.size().value_or(at_) < at_) {
      if (file_.go_to(0)) first_ = at_ = 0;
    } else if (!find_next()) {
      std::this_thread::sleep_for(longest_wait);
    }
  }

  // Another file of the same name; what was written to the old one until then is read first.
  bool find_next() {
    if (name_ == "-") return false;
    std::error_code failed;
    OpenFile file(name_, failed);
    if (failed || !file.is_regular() || file.identity() == file_.identity()) return false;
    next_ = std::move(file);
    return true;
  }

  std::string name_;
  OpenFile file_;
  bool regular_;
  bool follow_;
  std::optional<OpenFile> next_;
  uint64_t first_ = 0;  // where the input begins in the file
  uint64_t at_ = 0;
  uint64_t overruns_ = 0;
};

}  // namespace

std::unique_ptr<Source> open_source(const std::string& input, bool follow) {
  if (is_address(input)) return open_datagrams(input);
  return std::make_unique<FileSource>(input, follow);
}

std::string name_of(const std::string& input) {
  return input == "-" ? "standard input" : input;
}

}  // namespace quillon::app
