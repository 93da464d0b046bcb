#include <charconv>
#include <cstdio>
#include <initializer_list>
#include <ostream>
#include <tuple>

#include <quillon/fields/time.h>
#include <quillon/platform/or_empty.h>
#include <quillon/report/internal/line.h>

namespace quillon {

namespace {

constexpr int bcd(uint8_t byte) {
  return (byte >> 4) * 10 + (byte & 0x0F);
}
constexpr int kAllSet = bcd(0xFF);

// Numbers in decimal with a blank between them.
std::string spaced(std::initializer_list<int> numbers) {
  char text[80];
  char* end = text;
  for (const int number : numbers) {
    if (end != text) *end++ = ' ';
    end = std::to_chars(end, text + sizeof text, number).ptr;
  }
  return std::string(text, end);
}

void put_date(std::ostream& stream, const DateTime& t) {
  report::Line line(stream);
  line.add(t.day).add("/").add(t.month).add("-").add(t.year).add(" ");
  line.add(t.hour).add(":").add(t.minute).add(":").add(t.second).insert();
}

void put_duration(std::ostream& stream, const Duration& d) {
  report::Line line(stream);
  line.add(d.get_hours()).add(":").add(d.get_minutes()).add(":").add(d.get_seconds()).insert();
}

}  // namespace

DateTime::DateTime(ByteView bytes) : hour(bcd(bytes[2])), minute(bcd(bytes[3])), second(bcd(bytes[4])) {
  set_date(bytes.u16(0));
}

void DateTime::set_date(int mjd) {
  // Reciprocals in place of the divisions by 365.25 and 30.6001: with these very constants the results agree
  // with documents already saved, also outside the formula's range (before 1 March 1900).
  const int y = static_cast<int>((mjd - 15078.2) * 0.0027378507871321013);
  const int days_of_years = static_cast<int>(y * 365.25);
  const int m = static_cast<int>((mjd - 14956.1 - days_of_years) * 0.03267963176590926);
  const int days_of_months = static_cast<int>(m * 30.6001);
  const int k = m == 14 || m == 15 ? 1 : 0;
  day = mjd - 14956 + static_cast<int>(y * -365.25) - days_of_months;
  month = m - 1 - 12 * k;
  year = y + k + 1900;
}

// Quirk: DateTime, Duration all bits set
bool DateTime::is_defined() const {
  static const uint8_t all_set[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  static const DateTime undefined{ByteView(all_set)};
  const auto fields = [](const DateTime& t) {
    return std::tie(t.day, t.month, t.year, t.hour, t.minute, t.second);
  };
  return fields(*this) != fields(undefined);
}

std::chrono::sys_seconds DateTime::get_time_point() const {
  using namespace std::chrono;
  constexpr sys_days mjd_0 = 1858y / November / 17;
  const auto clock = hours(hour) + minutes(minute) + seconds(second);
  // A month outside the year, which the formula gives before its range, is carried.
  const year_month first = std::chrono::year(year) / January + months(int64_t{month} - 1);
  const sys_days date = sys_days(first / 1) + days(int64_t{day} - 1);
  // Such a date comes out up to three days late: it is the one of those that has these fields.
  for (int late = 0; late <= 3; ++late) {
    const auto mjd = static_cast<int>((date - mjd_0).count()) - late;
    DateTime read;
    read.set_date(mjd);
    if (read.day == day && read.month == month && read.year == year) return date - days(late) + clock;
  }
  return date + clock;
}

void DateTime::dump_state(std::ostream& stream) const {
  put_date(stream, *this);
  stream << std::endl;
}

std::string DateTime::get_date_as_text() const {
  return spaced({day, month, year, hour, minute, second});
}

bool DateTime::set_date_from_text(const char* text) {
  std::sscanf(detail::or_empty(text), "%d %d %d %d %d %d", &day, &month, &year, &hour, &minute, &second);
  return true;
}

Duration::Duration(ByteView bytes)
    : hours_(bcd(bytes[0])), minutes_(bcd(bytes[1])), seconds_(bcd(bytes[2])) {}

// Quirk: DateTime, Duration all bits set
bool Duration::is_defined() const {
  return hours_ != kAllSet || minutes_ != kAllSet || seconds_ != kAllSet;
}

std::chrono::seconds Duration::get_length() const {
  return std::chrono::hours(hours_) + std::chrono::minutes(minutes_) + std::chrono::seconds(seconds_);
}

void Duration::dump_state(std::ostream& stream) const {
  put_duration(stream, *this);
  stream << std::endl;
}

std::string Duration::get_time_as_text() const {
  return spaced({hours_, minutes_, seconds_});
}

bool Duration::set_time_from_text(const char* text) {
  std::sscanf(detail::or_empty(text), "%d %d %d", &hours_, &minutes_, &seconds_);
  return true;
}

TimeOffset::TimeOffset(ByteView bytes) : hours_(bcd(bytes[0])), minutes_(bcd(bytes[1])) {}

std::chrono::minutes TimeOffset::get_length() const {
  return std::chrono::hours(hours_) + std::chrono::minutes(minutes_);
}

std::ostream& operator<<(std::ostream& stream, const DateTime& time) {
  stream << std::dec;
  put_date(stream, time);
  return stream;
}

std::ostream& operator<<(std::ostream& stream, const Duration& duration) {
  stream << std::dec;
  put_duration(stream, duration);
  return stream;
}

std::ostream& operator<<(std::ostream& stream, const TimeOffset& offset) {
  return stream << std::dec << offset.get_hours() << ":" << offset.get_minutes();
}

}  // namespace quillon
