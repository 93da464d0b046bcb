#include "apps/quillon/report_text.h"

#include "apps/quillon/text.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include <quillon/platform/utf8.h>
#include <quillon/report/dump.h>

namespace quillon::app {

namespace {

bool is_ascii(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

}  // namespace

std::string report_text(const AnyTable& table, Reading reading, bool is_for_terminal) {
  // A stream of its own, so that a report does not depend on what was shown before.
  std::ostringstream stream;
  if (is_for_terminal) stream << texts_on_one_line;
  table.dump_state(stream);
  std::string text = std::move(stream).str();
  if (!is_ascii(text))
    text = reading == Reading::standard ? platform::to_utf8(platform::to_utf16(text))
                                        : platform::to_utf8(0, text);
  return is_for_terminal ? visible_lines(text) : text;
}

std::string hex_rows(std::span<const uint8_t> bytes) {
  std::ostringstream stream;
  stream.fill('0');
  stream << std::uppercase;
  dump_block(stream, bytes.data(), static_cast<int>(bytes.size()));
  return std::move(stream).str();
}

}  // namespace quillon::app
