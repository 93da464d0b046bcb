#pragma once

// What the services of the DVB sample are called, and what they show on the day of the recording.

#include "data/sample/dvb_text.h"

#include <vector>

namespace quillon::sample {

// Of EN 300 468, table 29: both nibbles.
enum Genre : uint8_t {
  film = 0x10,
  drama = 0x15,
  news = 0x20,
  documentary = 0x23,
  talk = 0x33,
  sports = 0x40,
  children = 0x50,
  music = 0x60,
  classical = 0x62,
  arts = 0x70,
  society = 0x80,
  nature = 0x91,
  science = 0x92,
  travel = 0xA1,
  cooking = 0xA5,
};

struct Programme {
  int minutes;
  Genre genre;
  const char* title;
  const char* text;
  int from_age = 0;            // 0 for all
  const char* long_text = "";  // of an extended event, as its item is
  const char* role = "";
  const char* person = "";
};

// All that a service sends in one language and character table.
struct Guide {
  TextTable table;
  const char* language;
  const char* country;
  const char* provider;
  const char* name;
  std::vector<Programme> day;  // from midnight UTC to the next

  test::Bytes text(std::string_view utf8) const { return dvb_text(table, utf8); }
};

extern const Guide quill_one;
extern const Guide cafe_radio;
extern const Guide suedwind;
extern const Guide aegean;
extern const Guide volna;
extern const Guide oasis;
extern const Guide galilee;
extern const Guide star_river;

// Of the other transport stream: each with one event now and one after it.
extern const Guide hanbit;
extern const Guide azores;

}  // namespace quillon::sample
