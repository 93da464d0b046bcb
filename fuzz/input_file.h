#pragma once

#include "fuzz/require.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <system_error>
#include <unistd.h>

namespace quillon::fuzz {

// A file for one input after another, in memory where the system has such a folder. It goes at the end.
class InputFile {
 public:
  explicit InputFile(const std::string& target) {
    const std::filesystem::path shared = "/dev/shm";
    std::string name = (exists(shared) ? shared : std::filesystem::temp_directory_path()) /
                       ("quillon-" + target + "-XXXXXX");
    const int descriptor = mkstemp(name.data());
    require(descriptor >= 0);
    close(descriptor);
    path_ = name;
  }
  ~InputFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  void write(std::span<const uint8_t> bytes) const {
    std::ofstream out(path_, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    require(out.good());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace quillon::fuzz
