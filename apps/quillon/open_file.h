#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace quillon::app {

// A file, a pipe or a device that is open for reading, so that others may write to it, rename and remove it.
class OpenFile {
 public:
  // Which file it is, whatever its name: the volume, and the number on it.
  using Identity = std::pair<uint64_t, uint64_t>;

  // `name` is in UTF-8, "-" for standard input. Never waits for the other end of a pipe.
  OpenFile(const std::string& name, std::error_code& failed);
  OpenFile(OpenFile&& other) noexcept { *this = std::move(other); }
  OpenFile& operator=(OpenFile&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(owned_, other.owned_);
    std::swap(regular_, other.regular_);
    std::swap(identity_, other.identity_);
    return *this;
  }
  ~OpenFile();

  // Its bytes stay, so that one can go to any of them.
  bool is_regular() const { return regular_; }
  Identity identity() const { return identity_; }
  // None where the system does not say it.
  std::optional<uint64_t> size() const;
  std::optional<uint64_t> position() const;
  bool go_to(uint64_t position);

  // True once `read` would not have to wait; false if that takes longer than longest_wait.
  bool wait() const;
  // What is there now, 0 at the end. Fails with std::errc::interrupted where it is to be tried again.
  size_t read(uint8_t* place, size_t room, std::error_code& failed);

 private:
  static constexpr intptr_t closed = -1;

  intptr_t handle_ = closed;
  bool owned_ = true;
  bool regular_ = false;
  Identity identity_ = {};
};

}  // namespace quillon::app
