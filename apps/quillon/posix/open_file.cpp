#include "apps/quillon/open_file.h"

#include "apps/quillon/stop.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon::app {

namespace {

// As much as one call takes.
constexpr size_t kPiece = size_t{1} << 30;

}  // namespace

OpenFile::OpenFile(const std::string& name, std::error_code& failed) : owned_(name != "-") {
  failed.clear();
  // To open a pipe without a writer would otherwise wait for one, and miss a request to stop.
  handle_ = owned_ ? ::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC) : STDIN_FILENO;
  struct stat status;
  if (handle_ == closed || ::fstat(static_cast<int>(handle_), &status) != 0) {
    failed.assign(errno, std::generic_category());
    return;
  }
  regular_ = S_ISREG(status.st_mode);
  identity_ = {status.st_dev, status.st_ino};
}

OpenFile::~OpenFile() {
  if (owned_ && handle_ != closed) ::close(static_cast<int>(handle_));
}

std::optional<uint64_t> OpenFile::size() const {
  struct stat status;
  if (::fstat(static_cast<int>(handle_), &status) != 0) return std::nullopt;
  return static_cast<uint64_t>(status.st_size);
}

std::optional<uint64_t> OpenFile::position() const {
  const off_t at = ::lseek(static_cast<int>(handle_), 0, SEEK_CUR);
  return at < 0 ? std::nullopt : std::optional(static_cast<uint64_t>(at));
}

bool OpenFile::go_to(uint64_t position) {
  return ::lseek(static_cast<int>(handle_), static_cast<off_t>(position), SEEK_SET) >= 0;
}

bool OpenFile::wait() const {
  pollfd file = {static_cast<int>(handle_), POLLIN, 0};
  const int ready = ::poll(&file, 1, static_cast<int>(longest_wait.count()));
  return ready > 0 || (ready < 0 && errno != EINTR);  // a read says why
}

size_t OpenFile::read(uint8_t* place, size_t room, std::error_code& failed) {
  failed.clear();
  const ssize_t got = ::read(static_cast<int>(handle_), place, std::min(room, kPiece));
  if (got >= 0) return static_cast<size_t>(got);
  failed.assign(errno == EAGAIN ? EINTR : errno, std::generic_category());
  return 0;
}

}  // namespace quillon::app
