#pragma once

#include <quillon/platform/api.h>

namespace quillon {

enum log_flag {
  log_create_always = 0x02,  // empty a file that exists; otherwise it is kept
  log_thread_id = 0x04,      // a lock around each record, and a "Thread ID" column
  log_process_id = 0x08,     // a "Process ID" column
  log_header = 0x40,         // write the header line, if the file was there before
  log_type = 0x80,           // a "Log type" column
  log_level = 0x100,         // a "Log level" column
};

// Opens the CSV log `file_name` in the folder of the running executable; records up to `max_level` are
// written. Always 0: a log that cannot be opened, as one without a name, stays closed. Throws std::bad_alloc,
// having changed nothing, when memory runs out. Neither this nor log_close may run beside log_write, nor
// beside the parsers and demultiplexers, which call it.
QUILLON_API int log_open(int flags, int max_level, const char* file_name);
QUILLON_API int log_close();

// Writes one record, printf-style; 1 is a failure, 2 a warning, 3 and above tracing. Always 0. A record
// longer than 4095 bytes is cut; a null format writes none.
[[gnu::format(printf, 2, 3)]] QUILLON_API int log_write(int level, const char* format, ...);

namespace detail {
QUILLON_API extern int log_max_level;
}

// True if a record of `level` would be looked at: the one comparison that a silent log costs.
inline bool log_wants(int level) {
  return level <= detail::log_max_level;
}

}  // namespace quillon
