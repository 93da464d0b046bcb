#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace quillon::platform {

// The folder of the running executable with the separator at its end; empty if it is not known.
std::string executable_folder();

// A file that is only written. `existed` is whether it was there before.
class LogFile {
 public:
  static constexpr intptr_t closed = -1;

  bool open(const std::string& path, bool empty_it, bool& existed);
  void seek_to_end();
  void write(const char* text, size_t size);
  void close();
  bool is_open() const { return handle_ != closed; }

 private:
  intptr_t handle_ = closed;
};

struct LocalTime {
  int year, month, day, hour, minute, second, millisecond;
};
LocalTime local_time();

unsigned process_id();
unsigned thread_id();

}  // namespace quillon::platform
