#include <bit>
#include <cerrno>
#include <cstdint>
#include <iconv.h>
#include <new>

#include <quillon/platform/internal/multibyte.h>

namespace quillon::platform {
namespace {

constexpr uint16_t replacement = 0xFFFD;

class Converter {
 public:
  explicit Converter(const char* table) : handle_(iconv_open("UTF-16BE", table)) {
    if (!is_open() && errno == ENOMEM) throw std::bad_alloc();
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (is_open()) iconv_close(handle_);
  }

  bool is_open() const { return handle_ != std::bit_cast<iconv_t>(intptr_t{-1}); }

  uint16_t character(uint8_t lead, uint8_t trail) const {
    char pair[] = {static_cast<char>(lead), static_cast<char>(trail)};
    char unit[2];
    char* from = pair;
    char* to = unit;
    size_t from_left = sizeof pair;
    size_t to_left = sizeof unit;
    const bool good = iconv(handle_, &from, &from_left, &to, &to_left) != static_cast<size_t>(-1);
    if (good && from_left == 0 && to_left == 0)
      return static_cast<uint16_t>(static_cast<uint8_t>(unit[0]) << 8 | static_cast<uint8_t>(unit[1]));
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);  // forgets what it began
    return replacement;
  }

 private:
  const iconv_t handle_;
};

bool is_in_table(uint8_t byte) {
  return byte > 0xA0 && byte < 0xFF;
}

}  // namespace

wide_string decode_multibyte(MultibyteTable table, std::string_view text) {
  const Converter converter(table == MultibyteTable::ks_x_1001 ? "EUC-KR" : "GBK");
  wide_string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<uint8_t>(text[i++]);
    uint16_t unit = lead;
    if (lead >= 0xA0) {
      unit = replacement;
      if (i < text.size() && converter.is_open()) {
        const auto trail = static_cast<uint8_t>(text[i]);
        unit = converter.character(lead, trail);
        if (unit != replacement || (is_in_table(lead) && is_in_table(trail))) ++i;
      }
    }
    out += unit;
  }
  return out;
}

}  // namespace quillon::platform
