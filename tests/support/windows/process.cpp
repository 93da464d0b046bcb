#include "tests/support/process.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include <quillon/platform/utf8.h>
#include <quillon/platform/windows/windows.h>

namespace quillon::test {

namespace {

// To debuggers a text for them is an exception, with its length and NUL-terminated text. It passes here
// first.
LONG CALLBACK listen(EXCEPTION_POINTERS* what) {
  const EXCEPTION_RECORD& exception = *what->ExceptionRecord;
  if (exception.ExceptionCode != DBG_PRINTEXCEPTION_C) return EXCEPTION_CONTINUE_SEARCH;
  Traces::lines().push_back(reinterpret_cast<const char*>(exception.ExceptionInformation[1]));
  return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

// Quotes around the whole are taken away where the command begins with one.
int run_in_shell(const std::string& command) {
  const wide_string units = platform::to_utf16("\"" + command + "\"");
  const std::wstring line(units.begin(), units.end());
  // A system that is short of something may fail to start the shell once; nothing has run then.
  for (int tries = 3;; --tries) {
    errno = 0;
    const int code = _wsystem(line.c_str());
    if (code != -1 || errno == 0 || tries == 1) return code;
    Sleep(1000);
  }
}

size_t open_files() {
  size_t count = 0;
  DWORD flags = 0;
  for (uintptr_t number = 4; number < 0x4000; number += 4)  // as the system numbers them
    if (GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags)) ++count;
  return count;
}

Traces::Traces() : listener_(AddVectoredExceptionHandler(1, listen)) {
  lines().clear();
}

Traces::~Traces() {
  RemoveVectoredExceptionHandler(listener_);
}

std::vector<std::string>& Traces::lines() {
  static std::vector<std::string> all;
  return all;
}

}  // namespace quillon::test
