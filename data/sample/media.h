#pragma once

// Elementary streams that have the shape of media and show nothing: PES packets of plausible sizes and times,
// each with the start that its coding has, and the coding's own filler.

#include "data/sample/multiplex.h"

namespace quillon::sample {

struct Coding {
  uint8_t stream_id;
  Bytes start;            // of an access unit
  uint8_t filler;         // after it
  int header_length = 5;  // PES_header_data_length
};

extern const Coding mpeg2_video;
extern const Coding h264_video;
extern const Coding hevc_video;
extern const Coding mpeg_audio;
extern const Coding aac_audio;
extern const Coding ac3_audio;
extern const Coding teletext;
extern const Coding subtitles;

struct Media {
  int pid;
  const Coding& coding;
  bool carries_clock = false;
  bool scrambled = false;
};

// One access unit that takes so many whole packets, spread from `due` over `time`.
void add_unit(Multiplex& multiplex, const Media& media, Ticks due, Ticks time, int packets, bool lose_second);

// Pictures, 25 a second, from one time to another: groups of twelve whose size follows the scene that is
// shown. `weight` 4 is usual. The packets of these pictures lose one each.
struct Pictures {
  Ticks begin;
  Ticks end;
  int weight;
  int scenes_from;
  std::vector<int> damaged = {};
};
void add_pictures(Multiplex& multiplex, const Media& media, const Pictures& pictures);

// Units of one size in even time.
struct Units {
  Ticks begin;
  Ticks end;
  Ticks period;
  int packets = 1;
};
void add_units(Multiplex& multiplex, const Media& media, const Units& units);

}  // namespace quillon::sample
