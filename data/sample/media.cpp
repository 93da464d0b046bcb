#include "data/sample/media.h"

#include <algorithm>
#include <random>

namespace quillon::sample {

using test::bits;
using test::joined;

namespace {

// What is sent is presented so much later.
constexpr Ticks kDelay = ms(400);

Bytes pes_header(const Coding& coding, Ticks time, size_t unit_size) {
  const auto stamp = static_cast<uint64_t>(time / 300);
  // Video has units of any size, and states none.
  const bool is_video = (coding.stream_id & 0xF0) == 0xE0;
  const auto header_length = static_cast<size_t>(coding.header_length);
  const uint64_t length = is_video ? 0 : unit_size - 6;
  Bytes out = bits({{24, 1, "packet_start_code_prefix"},
                    {8, coding.stream_id, "stream_id"},
                    {16, length, "PES_packet_length"},
                    {2, 2, "'10'"},
                    {2, 0, "PES_scrambling_control"},
                    {1, 0, "PES_priority"},
                    {1, 1, "data_alignment_indicator"},
                    {1, 0, "copyright"},
                    {1, 0, "original_or_copy"},
                    {2, 2, "PTS_DTS_flags"},
                    {6, 0, "further flags"},
                    {8, header_length, "PES_header_data_length"},
                    {4, 2, "'0010'"},
                    {3, stamp >> 30, "PTS [32..30]"},
                    {1, 1, "marker_bit"},
                    {15, stamp >> 15, "PTS [29..15]"},
                    {1, 1, "marker_bit"},
                    {15, stamp, "PTS [14..0]"},
                    {1, 1, "marker_bit"}});
  out.resize(9 + header_length, 0xFF);
  return out;
}

// adaptation_field with a PCR that is still to be written.
Bytes clock_field() {
  return joined({bits({{8, 7, "adaptation_field_length"},
                       {1, 0, "discontinuity_indicator"},
                       {1, 0, "random_access_indicator"},
                       {1, 0, "elementary_stream_priority_indicator"},
                       {1, 1, "PCR_flag"},
                       {4, 0, "further flags"}}),
                 clock_reference(0)});
}

// One access unit that takes so many whole packets, spread over `time`.
void add_unit(Multiplex& multiplex, const Media& media, Ticks due, Ticks time, int packets,
              bool lose_second) {
  const Bytes field = media.carries_clock ? clock_field() : Bytes();
  const size_t size = 184 * static_cast<size_t>(packets) - field.size();
  Bytes unit = joined({pes_header(media.coding, due + kDelay, size), media.coding.start});
  unit.resize(size, media.coding.filler);
  const bool odd = due / kCryptoPeriod % 2 == 1;
  if (media.scrambled) {
    std::mt19937 random(static_cast<uint32_t>(due));
    for (uint8_t& byte : unit) byte = static_cast<uint8_t>(random());
  }
  auto from = unit.begin();
  for (int n = 0; n < packets; ++n) {
    const bool clock = n == 0 && media.carries_clock;
    const auto to = from + 184 - (clock ? static_cast<ptrdiff_t>(field.size()) : 0);
    Bytes made = test::packet({.pid = media.pid,
                               .start = n == 0,
                               .control = clock ? 3 : 1,
                               .scrambling = media.scrambled ? (odd ? 3 : 2) : 0},
                              joined({clock ? field : Bytes(), Bytes(from, to)}));
    multiplex.add_media({due + time * n / packets, std::move(made), clock, lose_second && n == 1});
    from = to;
  }
}

}  // namespace

// sequence_header of 720 x 576 and 1920 x 1080, and picture_header; zeros may be in front of any start code.
const Coding mpeg2_video = {
    0xE0,
    {0, 0, 1, 0xB3, 0x2D, 0x02, 0x40, 0x33, 0x09, 0xC4, 0x23, 0x80, 0, 0, 1, 0x00, 0x00, 0x0F, 0xFF, 0xF8},
    0x00};
const Coding mpeg2_hd_video = {
    0xE0,
    {0, 0, 1, 0xB3, 0x78, 0x04, 0x38, 0x34, 0x09, 0xC4, 0x23, 0x80, 0, 0, 1, 0x00, 0x00, 0x0F, 0xFF, 0xF8},
    0x00};
// access_unit_delimiter, and filler_data to the end of the unit.
const Coding h264_video = {0xE0, {0, 0, 0, 1, 0x09, 0xF0, 0, 0, 1, 0x0C}, 0xFF};
const Coding hevc_video = {0xE0, {0, 0, 0, 1, 0x46, 0x01, 0x50, 0, 0, 1, 0x4C, 0x01}, 0xFF};
const Coding mpeg_audio = {0xC0, {0xFF, 0xFD, 0xA4, 0x04}, 0x00};
const Coding aac_audio = {0xC0, {0xFF, 0xF1, 0x4C, 0x80, 0x15, 0x7F, 0xFC}, 0x00};
const Coding ac3_audio = {0xBD, {0x0B, 0x77, 0x00, 0x00, 0x14, 0x40}, 0x00};
// data_identifier, and stuffing; the header has one length in all units.
const Coding teletext = {0xBD, {0x10}, 0xFF, 0x24};
// data_identifier, subtitle_stream_id, end_of_PES_data_field_marker.
const Coding subtitles = {0xBD, {0x20, 0x00, 0xFF}, 0xFF};

void add_pictures(Multiplex& multiplex, const Media& media, const Pictures& pictures) {
  // What each scene asks for, and how much of that, times size and weight, fills a packet.
  constexpr int kScenes[] = {3, 5, 7, 4, 2, 3, 6, 2};
  constexpr int kPacket = 19;
  constexpr Ticks kScene = ms(1300);
  int number = 0;
  for (Ticks due = pictures.begin; due < multiplex.length(); due += pictures.period, ++number) {
    const int in_group = (number + 5 * pictures.first_scene) % 12;
    const int size = in_group == 0 ? 7 : in_group % 3 == 0 ? 3 : 1;
    const auto scene = static_cast<size_t>((due / kScene + 3 * pictures.first_scene) % 8);
    const int packets = std::max(1, size * kScenes[scene] * pictures.weight / kPacket);
    const bool damaged = std::ranges::find(pictures.damaged, number) != pictures.damaged.end();
    add_unit(multiplex, media, due, pictures.period, std::max(packets, damaged ? 2 : 1), damaged);
  }
}

void add_units(Multiplex& multiplex, const Media& media, const Units& units) {
  for (Ticks due = units.begin; due < multiplex.length(); due += units.period)
    add_unit(multiplex, media, due, units.period, units.packets, false);
}

}  // namespace quillon::sample
