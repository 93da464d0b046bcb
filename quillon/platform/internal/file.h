#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace quillon::platform {

// In UTF-8, as all that the library says; where names are bytes, those.
inline std::string name_of(const std::filesystem::path& file) {
  const std::u8string name = file.u8string();
  return std::string(name.begin(), name.end());
}

// A file that is read from its beginning to its end.
class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  std::error_code open(const std::filesystem::path& file);
  // Sets `got` to `size`, but at the end of the file to what is left.
  std::error_code read(char* to, size_t size, size_t& got);

 private:
  int handle_ = -1;
};

// Makes `text` the content of a file, whole or not at all: it is written next to its target, to a file of
// another name, which then takes the target's place and mode. A symbolic link stays and its target is
// replaced. A pipe or a device, which can't be replaced, is written to directly.
std::error_code write_whole(const std::filesystem::path& file, std::string_view text);

}  // namespace quillon::platform
