#include "apps/quillon/open_file.h"

#include "apps/quillon/stop.h"

#include <algorithm>
#include <filesystem>

#include <quillon/platform/windows/windows.h>

namespace quillon::app {

namespace {

// As much as one call takes.
constexpr size_t kPiece = size_t{1} << 30;

HANDLE system_handle(intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

// In the words of the C library, where it has any: those of the system are in the user's language and page.
std::error_code last_error() {
  const std::error_code failed(static_cast<int>(GetLastError()), std::system_category());
  const std::error_condition known = failed.default_error_condition();
  return known.category() == std::generic_category() ? std::error_code(known.value(), known.category())
                                                     : failed;
}

// An anonymous pipe can't be waited for, only asked.
bool has_bytes_or_ended(HANDLE pipe) {
  DWORD there = 0;
  return !PeekNamedPipe(pipe, nullptr, 0, nullptr, &there, nullptr) || there > 0;
}

}  // namespace

OpenFile::OpenFile(const std::string& name, std::error_code& failed) : owned_(name != "-") {
  failed.clear();
  const HANDLE handle =
      owned_ ? CreateFileW(std::filesystem::path(std::u8string(name.begin(), name.end())).c_str(),
                           GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr)
             : GetStdHandle(STD_INPUT_HANDLE);
  if (handle == INVALID_HANDLE_VALUE || !handle) {
    failed = handle ? last_error() : std::make_error_code(std::errc::bad_file_descriptor);
    return;
  }
  handle_ = reinterpret_cast<intptr_t>(handle);
  regular_ = GetFileType(handle) == FILE_TYPE_DISK;
  BY_HANDLE_FILE_INFORMATION file = {};
  GetFileInformationByHandle(handle, &file);
  identity_ = {file.dwVolumeSerialNumber, uint64_t{file.nFileIndexHigh} << 32 | file.nFileIndexLow};
}

OpenFile::~OpenFile() {
  if (owned_ && handle_ != closed) CloseHandle(system_handle(handle_));
}

std::optional<uint64_t> OpenFile::size() const {
  LARGE_INTEGER size = {};
  if (!GetFileSizeEx(system_handle(handle_), &size)) return std::nullopt;
  return static_cast<uint64_t>(size.QuadPart);
}

std::optional<uint64_t> OpenFile::position() const {
  LARGE_INTEGER at = {};
  if (!SetFilePointerEx(system_handle(handle_), {}, &at, FILE_CURRENT)) return std::nullopt;
  return static_cast<uint64_t>(at.QuadPart);
}

bool OpenFile::go_to(uint64_t position) {
  LARGE_INTEGER to = {};
  to.QuadPart = static_cast<LONGLONG>(position);
  return SetFilePointerEx(system_handle(handle_), to, nullptr, FILE_BEGIN) != 0;
}

bool OpenFile::wait() const {
  const HANDLE handle = system_handle(handle_);
  switch (GetFileType(handle)) {
    case FILE_TYPE_PIPE:
      if (has_bytes_or_ended(handle)) return true;
      Sleep(10);
      return false;
    case FILE_TYPE_CHAR:
      return WaitForSingleObject(handle, static_cast<DWORD>(longest_wait.count())) != WAIT_TIMEOUT;
    default:
      return true;
  }
}

size_t OpenFile::read(uint8_t* place, size_t room, std::error_code& failed) {
  failed.clear();
  DWORD got = 0;
  if (ReadFile(system_handle(handle_), place, static_cast<DWORD>(std::min(room, kPiece)), &got, nullptr))
    return got;
  switch (GetLastError()) {
    case ERROR_BROKEN_PIPE:  // its writer has closed it
    case ERROR_HANDLE_EOF:
      break;
    case ERROR_OPERATION_ABORTED:  // Ctrl-C, at a console
      failed = std::make_error_code(std::errc::interrupted);
      break;
    default:
      failed = last_error();
  }
  return 0;
}

}  // namespace quillon::app
