#include "apps/quillon/output.h"

#include <cstdio>

#include <quillon/platform/code_page.h>
#include <quillon/platform/utf8.h>

namespace quillon::app {

std::string utf8(std::string_view ansi) {
  wide_string wide;
  platform::decode(0, ansi, wide);
  return platform::to_utf8(wide);
}

std::string hex(unsigned value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*X", digits, value);
  return text;
}

}  // namespace quillon::app
