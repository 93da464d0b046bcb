#pragma once

// Elementary streams that have the shape of media and show nothing: PES packets of plausible sizes and times,
// each with the start that its coding has, and the coding's own filler.

#include "data/sample/multiplex.h"

namespace quillon::sample {

// Keys change so often; the scrambling control says which of two it is.
constexpr Ticks kCryptoPeriod = 5 * kSecond;

struct Coding {
  uint8_t stream_id;
  Bytes start;            // of an access unit
  uint8_t filler;         // after it
  int header_length = 5;  // PES_header_data_length
};

extern const Coding mpeg2_video;
extern const Coding mpeg2_hd_video;
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

// Pictures from `begin` on: groups of twelve whose size follows the scene that is shown. `weight` 4 is usual.
// Of each of the damaged ones a packet is lost.
struct Pictures {
  Ticks begin;
  Ticks period;
  int weight;
  int first_scene;
  std::vector<int> damaged = {};
};
void add_pictures(Multiplex& multiplex, const Media& media, const Pictures& pictures);

// Units of one size in even time.
struct Units {
  Ticks begin;
  Ticks period;
  int packets = 1;
};
void add_units(Multiplex& multiplex, const Media& media, const Units& units);

}  // namespace quillon::sample
