#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

#include <quillon/platform/api.h>
#include <quillon/sections/byte_view.h>
#include <quillon/sections/walkable.h>

namespace quillon {

// UTC date and time as 16 bits of Modified Julian Date and three BCD bytes (EN 300 468, annex C). Nothing is
// validated: each BCD byte gives 0 to 165, and an undefined time, all bits set, decodes to 22 April 2038,
// 165:165:165. Bytes past the section's end are 0.
class QUILLON_API DateTime {
 public:
  DateTime() = default;
  explicit DateTime(ByteView bytes);

  // "7/3-2006 9:5:0" and an end of line, in the stream's base.
  void dump_state(std::ostream& stream) const;
  // "7 3 2006 9 5 0".
  std::string get_date_as_text() const;
  // Numbers that the text lacks stay as they were, with a null text all of them. Always true.
  bool set_date_from_text(const char* text);

  // False of a time whose bits are all set.
  bool is_defined() const;
  // The same time, of the MJD from 17 November 1858 on: also where the formula of annex C, which begins on
  // 1 March 1900, gives the fields another date. Of an undefined time it means nothing.
  std::chrono::sys_seconds get_time_point() const;

  // The six numbers as attributes of an element. Parse throws error("failed") if one of them is missing, and
  // keeps those before it; SaveSection gives false at the first that can't be written. No pointer may be
  // null.
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

  int day = 1;
  int month = 1;
  int year = 1;  // the full year
  int hour = 1;
  int minute = 1;
  int second = 1;

  QUILLON_WALK;

  void set_date(int mjd);
};

// Hours, minutes and seconds in BCD (EN 300 468, 5.2.4), each 0 to 165: nothing is validated.
class QUILLON_API Duration {
 public:
  Duration() = default;
  explicit Duration(ByteView bytes);

  int get_hours() const { return hours_; }
  int get_minutes() const { return minutes_; }
  int get_seconds() const { return seconds_; }

  // False of a duration whose bits are all set.
  bool is_defined() const;
  std::chrono::seconds get_length() const;

  // "1:30:0" and an end of line, in the stream's base.
  void dump_state(std::ostream& stream) const;
  // "1 30 0".
  std::string get_time_as_text() const;
  // Numbers that the text lacks stay as they were, with a null text all of them. Always true.
  bool set_time_from_text(const char* text);

  QUILLON_WALK;

  int hours_ = 0;
  int minutes_ = 0;
  int seconds_ = 0;
};

// Hours and minutes in BCD (EN 300 468, 6.2.20), each 0 to 165: nothing is validated.
class QUILLON_API TimeOffset {
 public:
  TimeOffset() = default;
  explicit TimeOffset(ByteView bytes);

  int get_hours() const { return hours_; }
  int get_minutes() const { return minutes_; }
  // Without a sign: east or west of UTC is a field of its own.
  std::chrono::minutes get_length() const;

  // The attributes "hour" and "minute" of an element. Parse throws error("failed") if one of them is missing,
  // and keeps those before it; SaveSection gives false at the first that can't be written. No pointer may be
  // null.
  void Parse(void* node);
  bool SaveSection(void* document, void* node) const;

  QUILLON_WALK;

  int hours_ = 0;
  int minutes_ = 0;
};

// All three switch the stream to decimal, and leave it so.
QUILLON_API std::ostream& operator<<(std::ostream& stream, const DateTime& time);
QUILLON_API std::ostream& operator<<(std::ostream& stream, const Duration& duration);
QUILLON_API std::ostream& operator<<(std::ostream& stream, const TimeOffset& offset);

}  // namespace quillon
