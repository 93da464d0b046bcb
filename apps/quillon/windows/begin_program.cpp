#include "apps/quillon/begin_program.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string_view>

#include <quillon/platform/windows/windows.h>

namespace quillon::app {

namespace {

std::string utf8(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  const auto convert = [&](char* to, int room) {
    return WideCharToMultiByte(CP_UTF8, 0, text.data(), size, to, room, nullptr, nullptr);
  };
  std::string out(static_cast<size_t>(convert(nullptr, 0)), '\0');
  convert(out.data(), static_cast<int>(out.size()));
  return out;
}

void obey_escape_sequences(DWORD stream) {
  const HANDLE handle = GetStdHandle(stream);
  DWORD mode = 0;
  if (GetConsoleMode(handle, &mode)) SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

}  // namespace

// The system's own list of arguments: that of `main` is in its ANSI page.
std::vector<std::string> begin_program(int, char**) {
  for (FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  obey_escape_sequences(STD_OUTPUT_HANDLE);
  obey_escape_sequences(STD_ERROR_HANDLE);
  std::vector<std::string> out;
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) out.push_back(utf8(arguments[i]));
  LocalFree(arguments);
  return out;
}

}  // namespace quillon::app
