#include "apps/quillon/columns.h"

#include "apps/quillon/text.h"

#include <algorithm>

#include <quillon/platform/utf8.h>

namespace quillon::app {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// The combining marks of the scripts that broadcasts use, and the characters of East Asia that take two
// places (UAX #11).
constexpr Range kNarrow[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x064B, 0x065F},
                             {0x0670, 0x0670}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},
                             {0x200B, 0x200D}, {0xFE00, 0xFE0F}};
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                           {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <size_t N>
bool is_in(const Range (&ranges)[N], char32_t c) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](const Range& r) { return c >= r.first && c <= r.last; });
}

}  // namespace

size_t width_of(std::string_view utf8) {
  size_t width = 0;
  const wide_string units = platform::to_utf16(utf8);
  for (size_t i = 0; i < units.size(); ++i) {
    char32_t c = static_cast<char16_t>(units[i]);
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < units.size())
      c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char16_t>(units[++i]) - 0xDC00u);
    width += is_in(kNarrow, c) ? 0 : is_in(kWide, c) ? 2 : 1;
  }
  return width;
}

Columns::Columns(std::vector<size_t> right, std::vector<std::string> head) : right_(std::move(right)) {
  if (head.empty()) return;
  add(std::move(head));
  heads_ = 1;
}

void Columns::add(std::vector<std::string> row) {
  widths_.resize(std::max(widths_.size(), row.size()));
  for (size_t i = 0; i < row.size(); ++i) {
    row[i] = visible(row[i]);
    widths_[i] = std::max(widths_[i], width_of(row[i]));
  }
  rows_.push_back(std::move(row));
}

std::string Columns::text() const {
  std::string out;
  if (empty()) return out;
  for (const std::vector<std::string>& row : rows_) {
    std::string line = " ";
    for (size_t i = 0; i < row.size(); ++i) {
      if (widths_[i] == 0) continue;
      const std::string blanks(widths_[i] - width_of(row[i]), ' ');
      const bool is_right = std::find(right_.begin(), right_.end(), i) != right_.end();
      line.append(i == 0 ? " " : "  ").append(is_right ? blanks + row[i] : row[i] + blanks);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + '\n';
  }
  return out;
}

}  // namespace quillon::app
