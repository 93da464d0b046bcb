#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>

#include <quillon/platform/internal/log_file.h>
#include <quillon/sections/log.h>

namespace quillon {

namespace detail {
int log_max_level = 0;
}

namespace {

int log_flags = 0;
platform::LogFile log_file;
std::mutex log_lock;
bool log_lock_ready = false;

// A record under construction; what does not fit is cut, and a record takes no heap.
class Record {
 public:
  [[gnu::format(printf, 2, 3)]] void add(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    add_list(format, arguments);
    va_end(arguments);
  }
  [[gnu::format(printf, 2, 0)]] void add_list(const char* format, va_list arguments) {
    const int added = std::vsnprintf(text_ + size_, kRoom - size_, format, arguments);
    if (added > 0) size_ = std::min(size_ + static_cast<size_t>(added), kRoom - 1);
  }
  void end_line() {
    size_ = std::min(size_, kRoom - 4);
    add("\"\r\n");
  }
  void write() const { log_file.write(text_, size_); }

 private:
  static constexpr size_t kRoom = 4096;
  char text_[kRoom];
  size_t size_ = 0;
};

void write_header() {
  Record header;
  header.add("Date,Time,Milliseconds");
  if (log_flags & log_process_id) header.add(",Process ID");
  if (log_flags & log_thread_id) header.add(",Thread ID");
  if (log_flags & log_level) header.add(",Log level");
  if (log_flags & log_type) header.add(",Log type");
  header.add(",Description\r\n\r\n");
  header.write();
}

const char* level_word(int level) {
  return level == 1 ? "error" : level == 2 ? "warning" : "info";
}

}  // namespace

int log_open(int flags, int max_level, const char* file_name) {
  const std::string folder = platform::executable_folder();
  const std::string path = folder + (file_name ? file_name : "");  // the folder alone can't be opened
  log_flags = flags;
  detail::log_max_level = max_level;
  if (folder.empty()) return 0;
  log_file.close();
  bool existed = false;
  if (!log_file.open(path, flags & log_create_always, existed)) return 0;
  if (flags & log_thread_id) log_lock_ready = true;
  // A new file gets no header and an old one does, written over its start: readers of these logs rely on it.
  if (flags & log_header && existed)
    write_header();
  else
    log_file.seek_to_end();
  return 0;
}

int log_close() {
  log_lock_ready = false;
  log_file.close();
  return 0;
}

int log_write(int level, const char* format, ...) {
  if (level < 1 || !log_wants(level) || !format) return 0;
  std::unique_lock<std::mutex> guard(log_lock, std::defer_lock);
  if (log_lock_ready) guard.lock();
  if (!log_file.is_open()) return 0;
  Record record;
  const platform::LocalTime t = platform::local_time();
  record.add("%04d.%02d.%02d,%02d:%02d:%02d,%03d,", t.year, t.month, t.day, t.hour, t.minute, t.second,
             t.millisecond);
  if (log_flags & log_process_id) record.add("\"0x%08x\",", platform::process_id());
  if (log_flags & log_thread_id) record.add("\"0x%08x\",", platform::thread_id());
  if (log_flags & log_level) record.add("%d,", level);
  if (log_flags & log_type) record.add("\"%-7s\",", level_word(level));
  record.add("\"");
  va_list arguments;
  va_start(arguments, format);
  record.add_list(format, arguments);
  va_end(arguments);
  record.end_line();
  record.write();
  return 0;
}

}  // namespace quillon
