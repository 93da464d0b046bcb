#include <charconv>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include <quillon/platform/internal/file.h>
#include <quillon/report/internal/registry_file.h>
#include <quillon/sections/error.h>

namespace quillon::detail {

namespace {

constexpr std::string_view kHeading = "first_id\tlast_id\tname";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Why a line is refused.
struct Refusal {
  std::string text;
};

std::optional<uint32_t> id_of(std::string_view text) {
  if (!text.starts_with("0x")) return std::nullopt;
  text.remove_prefix(2);
  uint32_t id = 0;
  const auto [end, result] = std::from_chars(text.data(), text.data() + text.size(), id, 16);
  if (result != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return id;
}

// One character off the front of UTF-8 text; none if it is malformed.
std::optional<uint32_t> next_character(std::string_view& text) {
  const auto byte = [&text](size_t i) { return static_cast<uint8_t>(text[i]); };
  const uint8_t lead = byte(0);
  const size_t size = lead < 0x80   ? 1
                      : lead < 0xC2 ? 0
                      : lead < 0xE0 ? 2
                      : lead < 0xF0 ? 3
                      : lead < 0xF5 ? 4
                                    : 0;
  if (size == 0 || size > text.size()) return std::nullopt;
  uint32_t code = size == 1 ? lead : lead & 0x7Fu >> size;
  for (size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return std::nullopt;
    code = code << 6 | (byte(i) & 0x3Fu);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return std::nullopt;
  text.remove_prefix(size);
  return code;
}

wide_string name_of(std::string_view text) {
  wide_string name;
  name.reserve(text.size());
  while (!text.empty()) {
    const std::optional<uint32_t> code = next_character(text);
    if (!code) throw Refusal{"the name is not UTF-8"};
    if (*code == '\t') throw Refusal{"more than three columns"};
    if (*code < 0x20 || *code == 0x7F) throw Refusal{"a control character in the name"};
    // No 8-bit page has a character of two units: one replacement takes the place of both.
    name += static_cast<uint16_t>(*code > 0xFFFF ? 0xFFFD : *code);
  }
  return name;
}

RegistryLine parse(std::string_view text, int number, uint32_t largest_id) {
  const size_t first_end = text.find('\t');
  const size_t last_end =
      first_end == std::string_view::npos ? std::string_view::npos : text.find('\t', first_end + 1);
  if (last_end == std::string_view::npos) throw Refusal{"fewer than three columns"};
  const std::optional<uint32_t> first = id_of(text.substr(0, first_end));
  const std::optional<uint32_t> last = id_of(text.substr(first_end + 1, last_end - first_end - 1));
  if (!first || !last) throw Refusal{"an id is not a number as 0x12AB"};
  if (*first > largest_id || *last > largest_id) throw Refusal{"an id is too large"};
  if (*last < *first) throw Refusal{"last_id is below first_id"};
  return {number, *first, *last, name_of(text.substr(last_end + 1))};
}

}  // namespace

std::vector<RegistryLine> read_registry_file(const std::filesystem::path& file, uint32_t largest_id) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw error((platform::name_of(file) + ": can't be opened").c_str());

  std::vector<RegistryLine> lines;
  bool heading = false;
  int number = 0;
  try {
    for (std::string line; std::getline(in, line);) {
      ++number;
      std::string_view text = line;
      if (number == 1 && text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
      if (text.ends_with('\r')) text.remove_suffix(1);
      if (text.empty() || text.starts_with('#')) continue;
      if (heading)
        lines.push_back(parse(text, number, largest_id));
      else if (text == kHeading)
        heading = true;
      else
        throw Refusal{"the heading of the columns is missing"};
    }
  } catch (const Refusal& refusal) {
    throw error((platform::name_of(file) + ", line " + std::to_string(number) + ": " + refusal.text).c_str());
  }
  if (in.bad()) throw error((platform::name_of(file) + ": can't be read").c_str());
  if (!heading) throw error((platform::name_of(file) + ": the heading of the columns is missing").c_str());
  return lines;
}

}  // namespace quillon::detail
