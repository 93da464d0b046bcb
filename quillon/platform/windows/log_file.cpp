#include <quillon/platform/internal/log_file.h>
#include <quillon/platform/windows/windows.h>

namespace quillon::platform {

namespace {

HANDLE handle_of(intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

std::string executable_folder() {
  char path[MAX_PATH];
  const DWORD size = GetModuleFileNameA(GetModuleHandleA(nullptr), path, sizeof path);
  if (size == 0 || size == sizeof path) return {};
  const std::string whole(path, size);
  return whole.substr(0, whole.rfind('\\') + 1);
}

bool LogFile::open(const std::string& path, bool empty_it, bool& existed) {
  const auto open_as = [&](DWORD how) {
    handle_ = reinterpret_cast<intptr_t>(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                                     how, FILE_ATTRIBUTE_NORMAL, nullptr));
  };
  existed = true;
  open_as(empty_it ? TRUNCATE_EXISTING : OPEN_EXISTING);
  if (handle_ == closed && GetLastError() == ERROR_FILE_NOT_FOUND) {
    existed = false;
    open_as(CREATE_NEW);
  }
  return is_open();
}

void LogFile::seek_to_end() {
  SetFilePointer(handle_of(handle_), 0, nullptr, FILE_END);
}

void LogFile::write(const char* text, size_t size) {
  // A record that the system does not take is lost: the log never reports a failure.
  DWORD written = 0;
  WriteFile(handle_of(handle_), text, static_cast<DWORD>(size), &written, nullptr);
}

void LogFile::close() {
  if (is_open()) CloseHandle(handle_of(handle_));
  handle_ = closed;
}

LocalTime local_time() {
  SYSTEMTIME t;
  GetLocalTime(&t);
  return {t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds};
}

unsigned process_id() {
  return GetCurrentProcessId();
}
unsigned thread_id() {
  return GetCurrentThreadId();
}

}  // namespace quillon::platform
