#include "tests/support/referee.h"

#include <string_view>

#include <quillon/platform/utf8.h>
#include <quillon/platform/windows/windows.h>

namespace quillon::test {

struct Referee::Converter {
  unsigned page;
};

// Of the tables those of ISO 8859 alone: the library itself asks the system for the tables of pairs.
Referee::Referee(const std::string& table) {
  const std::string iso = "ISO-8859-";
  const unsigned page = table.compare(0, iso.size(), iso) == 0
                            ? 28590 + static_cast<unsigned>(std::stoi(table.substr(iso.size())))
                            : 0;
  if (page && IsValidCodePage(page)) converter_ = std::make_unique<Converter>(page);
}
Referee::~Referee() = default;

std::optional<std::string> Referee::read(const Bytes& bytes) const {
  wchar_t units[8];
  const int count =
      MultiByteToWideChar(converter_->page, MB_ERR_INVALID_CHARS, reinterpret_cast<const char*>(bytes.data()),
                          static_cast<int>(bytes.size()), units, 8);
  if (count == 0) return std::nullopt;
  for (int i = 0; i < count; ++i)
    if (units[i] >= 0xE000 && units[i] < 0xF900) return std::nullopt;  // an empty place
  return platform::to_utf8(wide_string(units, units + count));
}

bool Referee::is_older(int part, int code) {
  const std::string_view greek = "\xA1\xA2\xA4\xA5\xAA";
  const std::string_view hebrew = "\xAF\xFD\xFE";
  const std::string_view codes = part == 7 ? greek : part == 8 ? hebrew : std::string_view();
  return codes.find(static_cast<char>(code)) != codes.npos;
}

}  // namespace quillon::test
