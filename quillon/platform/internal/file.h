#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <quillon/platform/api.h>

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

// A file that is written whole or not at all: next to its target, under another name, until it takes the
// target's place and mode. A symbolic link stays and its target is replaced. A pipe or a device, which can't
// be replaced, is written to directly.
class QUILLON_API WholeFile {
 public:
  WholeFile() = default;
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  // Removes what was not finished.
  ~WholeFile();

  std::error_code open(const std::filesystem::path& file);
  std::error_code write(std::string_view text);
  std::error_code finish();

 private:
  std::error_code open_directly(const std::filesystem::path& file);
  std::error_code create_in(const std::filesystem::path& folder);
  std::error_code close();

  int handle_ = -1;
  std::filesystem::path temporary_;  // its name until it is finished; none of what is written to directly
  std::filesystem::path target_;
};

// Makes `text` the content of a file.
inline std::error_code write_whole(const std::filesystem::path& file, std::string_view text) {
  WholeFile out;
  if (const std::error_code failed = out.open(file)) return failed;
  if (const std::error_code failed = out.write(text)) return failed;
  return out.finish();
}

}  // namespace quillon::platform
