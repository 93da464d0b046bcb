#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include <quillon/platform/internal/file.h>

namespace quillon::platform {

namespace {

namespace fs = std::filesystem;

std::error_code last_error() {
  return {errno, std::generic_category()};
}

std::error_code take_after(int file, const struct stat& old) {
  // Only a superuser may give a file away, and only then can the owner be another.
  if (::fchown(file, old.st_uid, old.st_gid) != 0 && errno != EPERM) return last_error();
  return ::fchmod(file, old.st_mode & 0777) != 0 ? last_error() : std::error_code();
}

// Under /proc a link is an open file of some process, whatever it seems to lead to.
bool is_open_file(const fs::path& resolved) {
  return resolved.native().starts_with("/proc/");
}

// Where a file really is, through all symbolic links; the last of them may lead to nothing.
std::error_code follow(fs::path& file) {
  std::error_code failed;
  for (int links = 0; links < 40; ++links) {
    const fs::path parent = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const fs::path folder = fs::canonical(parent, failed);
    if (failed) return failed;
    file = folder / file.filename();
    if (is_open_file(file) || !fs::is_symlink(fs::symlink_status(file, failed))) return {};
    const fs::path target = fs::read_symlink(file, failed);
    if (failed) return failed;
    file = folder / target;
  }
  return std::make_error_code(std::errc::too_many_symbolic_link_levels);
}

}  // namespace

InputFile::~InputFile() {
  if (handle_ >= 0) ::close(handle_);
}

std::error_code InputFile::open(const fs::path& file) {
  handle_ = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  return handle_ < 0 ? last_error() : std::error_code();
}

std::error_code InputFile::read(char* to, size_t size, size_t& got) {
  for (got = 0; got < size;) {
    const ssize_t more = ::read(handle_, to + got, size - got);
    if (more == 0) break;
    if (more > 0)
      got += static_cast<size_t>(more);
    else if (errno != EINTR)
      return last_error();
  }
  return {};
}

WholeFile::~WholeFile() {
  if (handle_ >= 0) ::close(handle_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

std::error_code WholeFile::open(const fs::path& file) {
  struct stat old;
  const bool exists = ::stat(file.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return last_error();
  if (exists && !S_ISREG(old.st_mode)) return open_directly(file);
  target_ = file;
  if (const std::error_code failed = follow(target_)) return failed;
  if (is_open_file(target_)) return open_directly(file);
  if (const std::error_code failed = create_in(target_.parent_path())) return failed;
  return exists ? take_after(handle_, old) : std::error_code();
}

std::error_code WholeFile::open_directly(const fs::path& file) {
  // Appending: standard output may be a file that others write to, at an offset of its own.
  handle_ = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  return handle_ < 0 ? last_error() : std::error_code();
}

std::error_code WholeFile::create_in(const fs::path& folder) {
  static std::atomic<unsigned> number = 0;
  do {
    fs::path name = folder / (".quillon-" + std::to_string(getpid()) + "-" + std::to_string(++number));
    handle_ = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (handle_ >= 0) temporary_ = std::move(name);
  } while (handle_ < 0 && errno == EEXIST);
  return handle_ < 0 ? last_error() : std::error_code();
}

std::error_code WholeFile::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(handle_, text.data(), text.size());
    if (written >= 0)
      text.remove_prefix(static_cast<size_t>(written));
    else if (errno != EINTR)
      return last_error();
  }
  return {};
}

// The content is on the disk before the file gets the name, so that a power failure loses neither.
std::error_code WholeFile::finish() {
  if (temporary_.empty()) return close();
  if (::fsync(handle_) != 0) return last_error();
  if (const std::error_code failed = close()) return failed;
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) return last_error();
  temporary_.clear();
  return {};
}

std::error_code WholeFile::close() {
  const int handle = handle_;
  handle_ = -1;
  return ::close(handle) != 0 ? last_error() : std::error_code();
}

}  // namespace quillon::platform
