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

struct stat status_of(intptr_t handle) {
  struct stat status = {};
  ::fstat(static_cast<int>(handle), &status);
  return status;
}

}  // namespace

OpenFile::OpenFile(const std::string& name, std::error_code& failed) : owned_(name != "-") {
  failed.clear();
  // To open a pipe without a writer would otherwise wait for one, and miss a request to stop.
  handle_ = owned_ ? ::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC) : STDIN_FILENO;
  struct stat status;
  if (handle_ == closed || ::fstat(static_cast<int>(handle_), &status) != 0)
    failed.assign(errno, std::generic_category());
}

OpenFile::~OpenFile() {
  if (owned_ && handle_ != closed) ::close(static_cast<int>(handle_));
}

bool OpenFile::is_regular() const {
  return S_ISREG(status_of(handle_).st_mode);
}

OpenFile::Identity OpenFile::identity() const {
  const struct stat status = status_of(handle_);
  return {status.st_dev, status.st_ino};
}

uint64_t OpenFile::size() const {
  return static_cast<uint64_t>(std::max<off_t>(0, status_of(handle_).st_size));
}

uint64_t OpenFile::position() const {
  return static_cast<uint64_t>(std::max<off_t>(0, ::lseek(static_cast<int>(handle_), 0, SEEK_CUR)));
}

bool OpenFile::go_to(uint64_t position) {
  return ::lseek(static_cast<int>(handle_), static_cast<off_t>(position), SEEK_SET) >= 0;
}

bool OpenFile::wait() const {
  pollfd file = {static_cast<int>(handle_), POLLIN, 0};
  return ::poll(&file, 1, static_cast<int>(longest_wait.count())) > 0;
}

size_t OpenFile::read(uint8_t* place, size_t room, std::error_code& failed) {
  failed.clear();
  const ssize_t got = ::read(static_cast<int>(handle_), place, std::min(room, kPiece));
  if (got >= 0) return static_cast<size_t>(got);
  failed.assign(errno == EAGAIN ? EINTR : errno, std::generic_category());
  return 0;
}

}  // namespace quillon::app
