#include "tests/support/referee.h"

#include <iconv.h>

namespace quillon::test {

struct Referee::Converter {
  iconv_t handle;

  explicit Converter(const std::string& table) : handle(iconv_open("UTF-8", table.c_str())) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (is_open()) iconv_close(handle);
  }
  bool is_open() const { return handle != reinterpret_cast<iconv_t>(-1); }
};

Referee::Referee(const std::string& table) : converter_(std::make_unique<Converter>(table)) {
  if (!converter_->is_open()) converter_.reset();
}
Referee::~Referee() = default;

std::optional<std::string> Referee::read(const Bytes& bytes) const {
  std::string in(bytes.begin(), bytes.end());
  std::string out(8 * in.size() + 8, '\0');
  char* from = in.data();
  char* to = out.data();
  size_t from_left = in.size();
  size_t to_left = out.size();
  const iconv_t handle = converter_->handle;
  iconv(handle, nullptr, nullptr, nullptr, nullptr);
  if (iconv(handle, &from, &from_left, &to, &to_left) != 0 ||
      iconv(handle, nullptr, nullptr, &to, &to_left) != 0)
    return std::nullopt;
  out.resize(out.size() - to_left);
  return out;
}

bool Referee::is_older(int, int) {
  return false;
}

}  // namespace quillon::test
