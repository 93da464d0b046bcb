#include <array>
#include <atomic>
#include <cstring>
#include <initializer_list>

#include <quillon/platform/code_page.h>

namespace quillon {
namespace {

constexpr uint8_t default_character = '?';

// The bytes from `first` to `last` are as many characters, counted up from `unit`.
struct Run {
  uint8_t first;
  uint8_t last;
  uint16_t unit;
};

// An 8-bit page, made from the runs where it differs from Latin 1.
class Page {
 public:
  consteval Page(unsigned page_number, std::initializer_list<Run> runs) : number(page_number) {
    for (unsigned byte = 0; byte < 256; ++byte) units_[byte] = static_cast<uint16_t>(byte);
    for (const Run& run : runs)
      for (unsigned byte = run.first; byte <= run.last; ++byte)
        units_[byte] = static_cast<uint16_t>(run.unit + byte - run.first);

    for (auto& row : bytes_) row.fill(default_character);
    uint8_t rows = 1;
    for (unsigned byte = 0; byte < 256; ++byte) {
      uint8_t& row = row_of_[units_[byte] >> 8];
      if (row == 0) row = rows++;
      uint8_t& slot = bytes_[row][units_[byte] & 0xFF];
      if (slot != default_character) throw "two bytes of the page are the same character";
      slot = static_cast<uint8_t>(byte);
    }
  }

  constexpr uint16_t unit(uint8_t byte) const { return units_[byte]; }
  constexpr char byte(uint16_t unit) const {
    return static_cast<char>(bytes_[row_of_[unit >> 8]][unit & 0xFF]);
  }

  const unsigned number;

 private:
  std::array<uint16_t, 256> units_{};

  // The way back: a row for each high byte that occurs, after row 0 for all the others.
  std::array<uint8_t, 256> row_of_{};
  std::array<std::array<uint8_t, 256>, 6> bytes_{};
};

// The pages are those of Windows: a byte that has no character is the control character or the private-use
// character that Windows gives it, so that every text survives the way there and back.
// clang-format off

constexpr Page western(1252, {
    {0x80, 0x80, 0x20AC}, {0x82, 0x82, 0x201A}, {0x83, 0x83, 0x0192}, {0x84, 0x84, 0x201E},
    {0x85, 0x85, 0x2026}, {0x86, 0x87, 0x2020}, {0x88, 0x88, 0x02C6}, {0x89, 0x89, 0x2030},
    {0x8A, 0x8A, 0x0160}, {0x8B, 0x8B, 0x2039}, {0x8C, 0x8C, 0x0152}, {0x8E, 0x8E, 0x017D},
    {0x91, 0x92, 0x2018}, {0x93, 0x94, 0x201C}, {0x95, 0x95, 0x2022}, {0x96, 0x97, 0x2013},
    {0x98, 0x98, 0x02DC}, {0x99, 0x99, 0x2122}, {0x9A, 0x9A, 0x0161}, {0x9B, 0x9B, 0x203A},
    {0x9C, 0x9C, 0x0153}, {0x9E, 0x9E, 0x017E}, {0x9F, 0x9F, 0x0178},
});

constexpr Page cyrillic(28595, {
    {0xA1, 0xAC, 0x0401}, {0xAE, 0xEF, 0x040E}, {0xF0, 0xF0, 0x2116}, {0xF1, 0xFC, 0x0451},
    {0xFD, 0xFD, 0x00A7}, {0xFE, 0xFF, 0x045E},
});

constexpr Page arabic(28596, {
    {0xA1, 0xA3, 0xF7C8}, {0xA5, 0xAB, 0xF7CB}, {0xAC, 0xAC, 0x060C}, {0xAE, 0xBA, 0xF7D2},
    {0xBB, 0xBB, 0x061B}, {0xBC, 0xBE, 0xF7DF}, {0xBF, 0xBF, 0x061F}, {0xC0, 0xC0, 0xF7E2},
    {0xC1, 0xDA, 0x0621}, {0xDB, 0xDF, 0xF7E3}, {0xE0, 0xF2, 0x0640}, {0xF3, 0xFF, 0xF7E8},
});

// The edition of 1987, without euro, drachma and ypogegrammeni; its quotation marks are modifier letters here.
constexpr Page greek(28597, {
    {0xA1, 0xA1, 0x02BD}, {0xA2, 0xA2, 0x02BC}, {0xA4, 0xA5, 0xF7C2}, {0xAA, 0xAA, 0xF7C4},
    {0xAE, 0xAE, 0xF7C5}, {0xAF, 0xAF, 0x2015}, {0xB4, 0xB6, 0x0384}, {0xB8, 0xBA, 0x0388},
    {0xBC, 0xBC, 0x038C}, {0xBE, 0xD1, 0x038E}, {0xD2, 0xD2, 0xF7C6}, {0xD3, 0xFE, 0x03A3},
    {0xFF, 0xFF, 0xF7C7},
});

// The edition of 1988, without the marks of direction and with an overline where the later one has a macron.
constexpr Page hebrew(28598, {
    {0xA1, 0xA1, 0xF79C}, {0xAA, 0xAA, 0x00D7}, {0xAF, 0xAF, 0x203E}, {0xBA, 0xBA, 0x00F7},
    {0xBF, 0xDE, 0xF79D}, {0xDF, 0xDF, 0x2017}, {0xE0, 0xFA, 0x05D0}, {0xFB, 0xFF, 0xF7BD},
});

constexpr Page turkish(28599, {
    {0xD0, 0xD0, 0x011E}, {0xDD, 0xDD, 0x0130}, {0xDE, 0xDE, 0x015E}, {0xF0, 0xF0, 0x011F},
    {0xFD, 0xFD, 0x0131}, {0xFE, 0xFE, 0x015F},
});

// clang-format on

constexpr const Page* known_page(unsigned number) {
  switch (number) {
    case western.number:
      return &western;
    case cyrillic.number:
      return &cyrillic;
    case arabic.number:
      return &arabic;
    case greek.number:
      return &greek;
    case hebrew.number:
      return &hebrew;
    case turkish.number:
      return &turkish;
    default:
      return nullptr;
  }
}

constinit std::atomic<const Page*> ansi_page{&western};

const Page* find_page(unsigned number) {
  return number == 0 ? ansi_page.load(std::memory_order_relaxed) : known_page(number);
}

// Eight characters at a step: where all are ASCII, as they mostly are, they need no table.
template <class From, class To, class Map>
void convert(const From* from, size_t size, To* to, Map map) {
  constexpr From beyond_ascii = static_cast<From>(~0x7F);
  constexpr uint64_t beyond_ascii_in_word = ~uint64_t{0} / static_cast<From>(~0) * beyond_ascii;

  size_t i = 0;
  for (; size - i >= 8; i += 8) {
    std::array<From, 8> step;
    std::array<uint64_t, sizeof step / sizeof(uint64_t)> words;
    std::memcpy(&step, from + i, sizeof step);
    std::memcpy(&words, from + i, sizeof step);
    uint64_t all = 0;
    for (const uint64_t word : words) all |= word;
    if ((all & beyond_ascii_in_word) == 0)
      for (size_t k = 0; k < 8; ++k) to[i + k] = static_cast<To>(step[k]);
    else
      for (size_t k = 0; k < 8; ++k) to[i + k] = map(from[i + k]);
  }
  for (; i < size; ++i) to[i] = map(from[i]);
}

}  // namespace

bool set_ansi_code_page(unsigned page) {
  const Page* const known = known_page(page);
  if (!known) return false;
  ansi_page.store(known, std::memory_order_relaxed);
  return true;
}

unsigned get_ansi_code_page() {
  return find_page(0)->number;
}

namespace platform {

bool decode(unsigned page, std::string_view text, wide_string& out) {
  const Page* const known = find_page(page);
  if (!known) return false;
  out.resize(text.size());
  convert(reinterpret_cast<const uint8_t*>(text.data()), text.size(), out.data(),
          [known](uint8_t byte) { return known->unit(byte); });
  return true;
}

bool encode(unsigned page, wide_view text, std::string& out) {
  const Page* const known = find_page(page);
  if (!known) return false;
  out.resize(text.size());
  convert(text.data(), text.size(), out.data(), [known](uint16_t unit) { return known->byte(unit); });
  return true;
}

}  // namespace platform
}  // namespace quillon
