#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include <quillon/platform/internal/file.h>
#include <quillon/platform/windows/windows.h>

namespace quillon::platform {

namespace {

namespace fs = std::filesystem;

// As many bytes as one call takes.
constexpr size_t kPiece = size_t{1} << 30;

std::error_code last_error() {
  return {errno, std::generic_category()};
}

// In the words of the C library, where it has any: those of the system are in the user's language and page.
std::error_code last_system_error() {
  const std::error_code failed(static_cast<int>(GetLastError()), std::system_category());
  const std::error_condition known = failed.default_error_condition();
  return known.category() == std::generic_category() ? std::error_code(known.value(), known.category())
                                                     : failed;
}

// "NUL" and its kind are in every folder.
bool is_device(const fs::path& file) {
  wchar_t whole[MAX_PATH];
  const DWORD size = GetFullPathNameW(file.c_str(), MAX_PATH, whole, nullptr);
  return size < MAX_PATH && std::wstring_view(whole, size).substr(0, 4) == L"\\\\.\\";
}

}  // namespace

InputFile::~InputFile() {
  if (handle_ >= 0) ::_close(handle_);
}

std::error_code InputFile::open(const fs::path& file) {
  handle_ = ::_wopen(file.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
  if (handle_ >= 0) return {};
  const std::error_code failed = last_error();
  std::error_code none;
  return fs::is_directory(file, none) ? std::make_error_code(std::errc::is_a_directory) : failed;
}

std::error_code InputFile::read(char* to, size_t size, size_t& got) {
  for (got = 0; got < size;) {
    const int more = ::_read(handle_, to + got, static_cast<unsigned>(std::min(size - got, kPiece)));
    if (more == 0) break;
    if (more < 0) return last_error();
    got += static_cast<size_t>(more);
  }
  return {};
}

WholeFile::~WholeFile() {
  if (handle_ >= 0) ::_close(handle_);
  if (!temporary_.empty()) ::_wunlink(temporary_.c_str());
}

std::error_code WholeFile::open(const fs::path& file) {
  std::error_code failed;
  const fs::file_status status = fs::status(file, failed);
  if (status.type() == fs::file_type::directory) return std::make_error_code(std::errc::is_a_directory);
  if (is_device(file) || (fs::exists(status) && !fs::is_regular_file(status))) return open_directly(file);
  target_ = fs::weakly_canonical(file, failed);
  if (failed) target_ = file;
  return create_in(target_.parent_path());
}

std::error_code WholeFile::open_directly(const fs::path& file) {
  handle_ = ::_wopen(file.c_str(), _O_WRONLY | _O_APPEND | _O_BINARY | _O_NOINHERIT);
  return handle_ < 0 ? last_error() : std::error_code();
}

std::error_code WholeFile::create_in(const fs::path& folder) {
  static std::atomic<unsigned> number = 0;
  do {
    fs::path name =
        folder / (".quillon-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number));
    handle_ = ::_wopen(name.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                       _S_IREAD | _S_IWRITE);
    if (handle_ >= 0) temporary_ = std::move(name);
  } while (handle_ < 0 && errno == EEXIST);
  return handle_ < 0 ? last_error() : std::error_code();
}

std::error_code WholeFile::write(std::string_view text) {
  while (!text.empty()) {
    const int written = ::_write(handle_, text.data(), static_cast<unsigned>(std::min(text.size(), kPiece)));
    if (written < 0) return last_error();
    text.remove_prefix(static_cast<size_t>(written));
  }
  return {};
}

// The content is on the disk before the file gets the name, so that a power failure loses neither.
std::error_code WholeFile::finish() {
  if (temporary_.empty()) return close();
  if (::_commit(handle_) != 0) return last_error();
  if (const std::error_code failed = close()) return failed;
  if (!MoveFileExW(temporary_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    return last_system_error();
  temporary_.clear();
  return {};
}

std::error_code WholeFile::close() {
  const int handle = handle_;
  handle_ = -1;
  return ::_close(handle) != 0 ? last_error() : std::error_code();
}

}  // namespace quillon::platform
