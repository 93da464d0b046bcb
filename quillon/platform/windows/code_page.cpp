#include <atomic>
#include <climits>
#include <string>

#include <quillon/platform/code_page.h>
#include <quillon/platform/windows/windows.h>

namespace quillon {
namespace {

// 0 for the system's own.
std::atomic<unsigned> ansi_page = 0;

unsigned page_for(unsigned page) {
  return page ? page : get_ansi_code_page();
}

// The calls below count in int.
bool is_countable(size_t size) {
  return size <= INT_MAX;
}

}  // namespace

bool set_ansi_code_page(unsigned page) {
  if (page != 1252 && (page < 28595 || page > 28599)) return false;
  ansi_page.store(page, std::memory_order_relaxed);
  return true;
}

unsigned get_ansi_code_page() {
  const unsigned set = ansi_page.load(std::memory_order_relaxed);
  return set ? set : GetACP();
}

namespace platform {

bool decode(unsigned page, std::string_view text, wide_string& out) {
  const unsigned number = page_for(page);
  if (text.empty()) return IsValidCodePage(number) ? (out.clear(), true) : false;
  if (!is_countable(text.size())) return false;
  const int size = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(number, 0, text.data(), size, nullptr, 0);
  if (needed == 0) return false;
  std::wstring made(static_cast<size_t>(needed), L'\0');
  MultiByteToWideChar(number, 0, text.data(), size, made.data(), needed);
  out.assign(made.begin(), made.end());
  return true;
}

// Without the characters that look alike: what a page can't show is the same everywhere.
bool encode(unsigned page, wide_view text, std::string& out) {
  const unsigned number = page_for(page);
  if (text.empty()) return IsValidCodePage(number) ? (out.clear(), true) : false;
  if (!is_countable(text.size())) return false;
  const std::wstring units(text.begin(), text.end());
  const int size = static_cast<int>(units.size());
  const int needed =
      WideCharToMultiByte(number, WC_NO_BEST_FIT_CHARS, units.data(), size, nullptr, 0, nullptr, nullptr);
  if (needed == 0) return false;
  out.resize(static_cast<size_t>(needed));
  WideCharToMultiByte(number, WC_NO_BEST_FIT_CHARS, units.data(), size, out.data(), needed, nullptr, nullptr);
  return true;
}

}  // namespace platform
}  // namespace quillon
