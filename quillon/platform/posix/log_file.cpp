#include <cerrno>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <quillon/platform/internal/log_file.h>

namespace quillon::platform {

std::string executable_folder() {
  char path[PATH_MAX];
  const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
  if (size <= 0) return {};
  const std::string whole(path, static_cast<size_t>(size));
  return whole.substr(0, whole.rfind('/') + 1);
}

bool LogFile::open(const std::string& path, bool empty_it, bool& existed) {
  existed = true;
  handle_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | (empty_it ? O_TRUNC : 0));
  if (handle_ == closed && errno == ENOENT) {
    existed = false;
    handle_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_CREAT, 0666);
  }
  return is_open();
}

void LogFile::seek_to_end() {
  lseek(static_cast<int>(handle_), 0, SEEK_END);
}

void LogFile::write(const char* text, size_t size) {
  // A record that the system does not take is lost: the log never reports a failure.
  [[maybe_unused]] const ssize_t written = ::write(static_cast<int>(handle_), text, size);
}

void LogFile::close() {
  if (is_open()) ::close(static_cast<int>(handle_));
  handle_ = closed;
}

LocalTime local_time() {
  timeval now;
  gettimeofday(&now, nullptr);
  tm t;
  localtime_r(&now.tv_sec, &t);
  return {t.tm_year + 1900,
          t.tm_mon + 1,
          t.tm_mday,
          t.tm_hour,
          t.tm_min,
          t.tm_sec,
          static_cast<int>(now.tv_usec / 1000)};
}

unsigned process_id() {
  return static_cast<unsigned>(getpid());
}
unsigned thread_id() {
  return static_cast<unsigned>(gettid());
}

}  // namespace quillon::platform
