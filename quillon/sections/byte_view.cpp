#include <quillon/sections/byte_view.h>

namespace quillon {

std::vector<uint8_t> ByteView::bytes(ptrdiff_t i, ptrdiff_t n) const {
  const std::string_view real = present(i, n);
  std::vector<uint8_t> out;
  if (n > 0) out.reserve(static_cast<size_t>(n));
  out.assign(real.begin(), real.end());
  if (n > 0) out.resize(static_cast<size_t>(n));
  return out;
}

std::string ByteView::chars(ptrdiff_t i, ptrdiff_t n) const {
  std::string out(present(i, n));
  if (n > 0) out.resize(static_cast<size_t>(n));
  return out;
}

}  // namespace quillon
