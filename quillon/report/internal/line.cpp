#include <algorithm>
#include <charconv>
#include <cstring>
#include <locale>
#include <ostream>
#include <string>

#include <quillon/report/internal/line.h>

namespace quillon::report {

namespace {

constexpr auto kBeyondBase = std::ios_base::showbase | std::ios_base::showpos;

}  // namespace

Line::Line(std::ostream& stream)
    : stream_(stream),
      plain_(stream.width() == 0 && (stream.flags() & kBeyondBase) == 0 &&
             stream.getloc() == std::locale::classic()) {}

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
  if (!plain_) {
    stream_ << value;
    return *this;
  }
  const auto flags = stream_.flags();
  const auto base = flags & std::ios_base::basefield;
  char digits[16];
  const int radix = base == std::ios_base::hex ? 16 : base == std::ios_base::oct ? 8 : 10;
  char* const end = std::to_chars(digits, digits + sizeof digits, value, radix).ptr;
  if (base == std::ios_base::hex && (flags & std::ios_base::uppercase))
    std::transform(digits, end, digits, [](char c) { return static_cast<char>(c >= 'a' ? c - 32 : c); });
  put({digits, static_cast<size_t>(end - digits)});
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
  insert();
  stream_.flush();
}

void Line::put(std::string_view text) {
  if (text.size() > sizeof place_ - used_) insert();
  if (text.size() > sizeof place_) {
    stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
    return;
  }
  if (!text.empty()) std::memcpy(place_ + used_, text.data(), text.size());
  used_ += text.size();
}

}  // namespace quillon::report
