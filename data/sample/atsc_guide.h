#pragma once

// What the channels of the ATSC sample are called, and what they show from noon to midnight UTC.

#include <cstdint>
#include <vector>

namespace quillon::sample {

// Of the television ratings of the United States, by the first dimension of their table.
enum TvRating : uint8_t { tv_g = 2, tv_pg = 3, tv_14 = 4, tv_ma = 5 };

// Categories of A/65, table 6.20.
enum Category : uint8_t { education = 0x20, entertainment, movie, newscast, religious, sporting };

// Texts are UTF-8, and of Latin-1; an empty one is not there.
struct Show {
  int minutes;
  TvRating rating;
  Category category;
  const char* title;
  const char* about = "";
  const char* other_title = "";  // in the channel's other language
};

struct Channel {
  uint16_t minor;
  uint8_t service_type;
  const char* short_name;  // seven characters at most
  const char* long_name;
  const char* about;
  const char* language;
  const char* other_language;  // of a second sound
  std::vector<Show> shows;
};

extern const std::vector<Channel> atsc_channels;

}  // namespace quillon::sample
