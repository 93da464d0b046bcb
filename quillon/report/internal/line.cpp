#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <iomanip>
#include <locale>
#include <ostream>
#include <string>

#include <quillon/report/internal/line.h>

namespace quillon::report {

namespace {

constexpr auto kBeyondBase = std::ios_base::showbase | std::ios_base::showpos;

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string escaped(std::string_view text) {
  constexpr std::string_view kNamed = "nrt";
  constexpr std::string_view kControls = "\n\r\t";
  std::string out;
  for (const char c : text) {
    const size_t named = kControls.find(c);
    if (!is_control(c)) {
      out += c;
    } else if (named != std::string_view::npos) {
      out.append("\\").append(1, kNamed[named]);
    } else {
      constexpr const char* kDigits = "0123456789ABCDEF";
      out.append("\\x").append(1, kDigits[c >> 4]).append(1, kDigits[c & 0x0F]);
    }
  }
  return out;
}

using Digits = std::array<char, 16>;

std::string_view printed(uint32_t value, std::ios_base::fmtflags flags, Digits& digits) {
  const auto base = flags & std::ios_base::basefield;
  const int radix = base == std::ios_base::hex ? 16 : base == std::ios_base::oct ? 8 : 10;
  char* const begin = digits.data();
  char* const end = std::to_chars(begin, begin + digits.size(), value, radix).ptr;
  if (base == std::ios_base::hex && (flags & std::ios_base::uppercase))
    std::transform(begin, end, begin, [](char c) { return static_cast<char>(c >= 'a' ? c - 32 : c); });
  return {begin, static_cast<size_t>(end - begin)};
}

}  // namespace

int on_one_line() {
  static const int index = std::ios_base::xalloc();
  return index;
}

Line::Line(std::ostream& stream)
    : stream_(stream),
      composed_(stream.good() ? detail::Composed::of(stream) : nullptr),
      plain_(stream.width() == 0 && (stream.flags() & kBeyondBase) == 0 &&
             (composed_ ? composed_->is_classic() : stream.getloc() == std::locale::classic())) {}

Line& Line::label(std::string_view before, std::string_view name, std::string_view after) {
  if (!plain_) {
    stream_ << std::string(before).append(name).append(after);
    return *this;
  }
  put(before);
  put(name);
  put(after);
  return *this;
}

Line& Line::add(std::string_view text) {
  const bool escapes = std::any_of(text.begin(), text.end(), is_control) && stream_.iword(on_one_line()) != 0;
  return escapes ? add_as_is(escaped(text)) : add_as_is(text);
}

Line& Line::add_as_is(std::string_view text) {
  if (plain_)
    put(text);
  else
    stream_ << text;
  return *this;
}

Line& Line::add(int value) {
  if (!plain_) {
    stream_ << value;
    return *this;
  }
  const auto base = stream_.flags() & std::ios_base::basefield;
  if (value >= 0 || base == std::ios_base::hex || base == std::ios_base::oct)
    return add(static_cast<uint32_t>(value));
  put("-");
  return add(0u - static_cast<uint32_t>(value));
}

Line& Line::add(uint32_t value) {
  Digits digits;
  if (plain_)
    put(printed(value, stream_.flags(), digits));
  else
    stream_ << value;
  return *this;
}

Line& Line::add(int value, int width) {
  const auto flags = stream_.flags();
  if (!plain_ || value < 0 || (flags & (std::ios_base::left | std::ios_base::internal)) != 0) {
    insert();
    stream_ << std::setw(width) << value;
    return *this;
  }
  Digits digits;
  const std::string_view text = printed(static_cast<uint32_t>(value), flags, digits);
  const char fill = stream_.fill();
  for (auto size = static_cast<int>(text.size()); size < width; ++size) put({&fill, 1});
  put(text);
  return *this;
}

Line& Line::add(double value) {
  insert();
  stream_ << value;
  return *this;
}

void Line::insert() {
  if (used_ > 0) stream_.write(place_, static_cast<std::streamsize>(used_));
  used_ = 0;
}

void Line::end() {
  if (!plain_) {
    stream_ << std::endl;
    return;
  }
  put("\n");
  if (composed_) return;
  insert();
  stream_.flush();
}

void Line::put(std::string_view text) {
  if (composed_) return composed_->append(text);
  if (text.size() > sizeof place_ - used_) insert();
  if (text.size() > sizeof place_) {
    stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
    return;
  }
  if (!text.empty()) std::memcpy(place_ + used_, text.data(), text.size());
  used_ += text.size();
}

}  // namespace quillon::report
