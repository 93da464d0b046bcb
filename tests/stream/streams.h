#pragma once

// Streams to read: a multiplex made up, and recorded ones.

#include "tests/support/packets.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <quillon/stream/packet_reader.h>

namespace quillon::test {

// The folder QUILLON_STREAMS is there, with the recorded streams.
inline bool has_recorded_streams() {
  const char* const folder = std::getenv("QUILLON_STREAMS");
  return folder && std::filesystem::is_directory(folder);
}

// A recorded stream of that folder; empty if it is not there.
inline Bytes recorded_stream(const std::string& name) {
  if (!has_recorded_streams()) return {};
  const char* const folder = std::getenv("QUILLON_STREAMS");
  std::ifstream in(std::filesystem::path(folder) / name, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

// Calls `use` with each packet of a stream, handed over in one piece.
template <class Use>
void read_packets(const Bytes& stream, Use use) {
  PacketReader reader;
  TsPacket packet;
  reader.feed(stream.data(), stream.size());
  reader.finish();
  while (reader.next(packet)) use(packet);
}

inline Bytes noise(std::mt19937& random, size_t size) {
  Bytes out(size);
  for (uint8_t& byte : out) byte = static_cast<uint8_t>(random());
  return out;
}

inline Bytes pat_of(const std::vector<std::pair<int, int>>& programs, const Header& header = {}) {
  Bytes body;
  for (const auto& [number, pid] : programs)
    body = joined({body, bits({{16, static_cast<uint64_t>(number), "program_number"},
                               {3, 7, "reserved"},
                               {13, static_cast<uint64_t>(pid), "program_map_PID"}})});
  return long_section(0x00, body, header);
}

struct MapRow {
  int stream_type;
  int pid;
  Bytes descriptors = {};
};

inline Bytes pmt_of(int program, const std::vector<MapRow>& rows, int version = 3) {
  Bytes body = {0xE1, 0x00, 0xF0, 0x00};
  for (const MapRow& row : rows)
    body = joined({body,
                   bits({{8, static_cast<uint64_t>(row.stream_type), "stream_type"},
                         {3, 7, "reserved"},
                         {13, static_cast<uint64_t>(row.pid), "elementary_PID"},
                         {4, 15, "reserved"},
                         {12, row.descriptors.size(), "ES_info_length"}}),
                   row.descriptors});
  return long_section(0x02, body, {.extension = program, .version = version});
}

// The packets of several PIDs, one after the other as their shares ask for; `count` of them.
inline Bytes made_stream(size_t count) {
  std::mt19937 random(7);
  struct Part {
    uint32_t share;
    Bytes packets;
    size_t at = 0;
    uint8_t counter = 0;
  };
  std::vector<Part> parts;
  const auto tables = [&](uint32_t share, int pid, const std::vector<Bytes>& sections) {
    parts.push_back({share, packets(sections, {.pid = pid, .shared = true})});
  };
  tables(2, 0x00, {pat_of({{1, 0x100}, {2, 0x200}, {3, 0x300}})});
  for (int program = 1; program <= 3; ++program)
    tables(2, 0x100 * program, {pmt_of(program, {{2, 0x100 * program + 1}, {3, 0x100 * program + 2}})});
  tables(2, 0x11, {long_section(0x42, noise(random, 300)), long_section(0x46, noise(random, 1000))});
  std::vector<Bytes> events;
  for (int i = 0; i < 40; ++i)
    events.push_back(long_section(0x50 + i % 4, noise(random, 20 + random() % 4000), {.extension = i}));
  tables(20, 0x12, events);
  tables(1, 0x14, {short_section(0x70, noise(random, 5))});
  for (const int pid : {0x101, 0x102, 0x201, 0x202, 0x301, 0x302}) {
    Bytes video;
    for (int i = 0; i < 64; ++i) {
      Bytes payload = noise(random, 184);
      if (i % 16 == 0) std::copy_n(Bytes{0x00, 0x00, 0x01, 0xE0}.begin(), 4, payload.begin());
      video = joined({video, packet({.pid = pid, .start = i % 16 == 0}, payload)});
    }
    parts.push_back({12, video});
  }
  parts.push_back({5, packet({.pid = 0x1FFF}, {})});

  uint32_t shares = 0;
  for (const Part& part : parts) shares += part.share;
  Bytes out;
  while (out.size() < count * kPacketSize) {
    uint32_t place = static_cast<uint32_t>(random()) % shares;
    size_t next = 0;
    for (; place >= parts[next].share; ++next) place -= parts[next].share;
    Part& part = parts[next];
    const auto from = part.packets.begin() + static_cast<ptrdiff_t>(part.at);
    out.insert(out.end(), from, from + static_cast<ptrdiff_t>(kPacketSize));
    uint8_t& control = out[out.size() - kPacketSize + 3];
    control = static_cast<uint8_t>((control & 0xF0) | (part.counter++ & 0x0F));
    part.at = (part.at + kPacketSize) % part.packets.size();
  }
  return out;
}

}  // namespace quillon::test
