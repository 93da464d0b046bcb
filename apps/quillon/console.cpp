#include "apps/quillon/console.h"

#include "apps/quillon/failure.h"
#include "apps/quillon/text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace quillon::app {

namespace {

bool asks_for_colours() {
  const char* const none = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  return (!none || !*none) && !(terminal && std::string_view(terminal) == "dumb");
}

// All of it, however often that is interrupted; false where that can't be. The stream holds nothing back, so
// that it is known what was written.
bool write_whole(std::string_view text, std::FILE* stream) {
  while (!text.empty()) {
    text.remove_prefix(std::fwrite(text.data(), 1, text.size(), stream));
    if (text.empty()) break;
    if (errno != EINTR) return false;
    std::clearerr(stream);
  }
  return true;
}

void write_message(const std::string& line) {
  write_whole(line, stderr);
}

}  // namespace

Console::Console(bool verbose)
    : verbose_(verbose),
      is_terminal_(isatty(STDOUT_FILENO) != 0),
      is_coloured_(is_terminal_ && asks_for_colours()),
      shows_progress_(!is_terminal_ && isatty(STDERR_FILENO) != 0) {
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // as standard error is
}

Console::~Console() {
  clear_progress();
}

void Console::print(std::string_view text) {
  buffer_ += text;
  if (buffer_.size() >= kBuffer) flush();
}

void Console::flush() {
  const bool is_written = write_whole(buffer_, stdout);
  buffer_.clear();
  if (!is_written) throw Failure("standard output: can't be written");
}

void Console::message(std::string_view text) {
  clear_progress();
  if (is_terminal_) flush();
  write_message(visible(text) + '\n');
}

void Console::trouble(const std::string& input, const std::string& place, const std::string& what) {
  const auto say = [&] { message(input + ": " + place + ": " + what); };
  if (verbose_) {
    lines_++ < kMostLines ? say() : void(++others_);
    return;
  }
  const std::string name = input + ": " + what;
  if (const auto known = kinds_.find(name); known != kinds_.end()) {
    ++known->second.unsaid;
    known->second.last_place = place;
  } else if (kinds_.size() < kMostKinds) {
    kinds_[name];
    say();
  } else {
    ++others_;
  }
}

void Console::sum_up_troubles() {
  for (const auto& [name, kind] : kinds_)
    if (kind.unsaid > 0)
      message(name + ": " + grouped(kind.unsaid) + " more, the last in " + kind.last_place);
  if (others_ > 0)
    message(grouped(others_) +
            (verbose_ ? " further messages" : " troubles of other kinds; --verbose tells them"));
  kinds_.clear();
  others_ = 0;
}

void Console::progress(uint64_t done, uint64_t total) {
  constexpr uint64_t step = uint64_t{1} << 20;
  if (!shows_progress_ || (done >= progress_at_ && done - progress_at_ < step)) return;
  progress_at_ = done;
  const Clock::time_point now = Clock::now();
  const double seconds = std::chrono::duration<double>(now - begun_).count();
  if (seconds < 1 || now - progress_time_ < std::chrono::milliseconds(200)) return;
  progress_time_ = now;
  progress_shown_ = true;
  const double rate = static_cast<double>(done) / seconds;
  char text[120];
  int size =
      std::snprintf(text, sizeof text, "\r%.1f MB, %.1f MB/s", static_cast<double>(done) / 1e6, rate / 1e6);
  if (total > done)
    size += std::snprintf(text + size, sizeof text - static_cast<size_t>(size), ", %.0f s to go",
                          static_cast<double>(total - done) / rate);
  write_message(std::string(text, static_cast<size_t>(size)) + "\033[K");
}

void Console::clear_progress() {
  if (progress_shown_) write_message("\r\033[K");
  progress_shown_ = false;
}

}  // namespace quillon::app
