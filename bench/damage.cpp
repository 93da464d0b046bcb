// What is still read of captures whose packets are lost, repeated, exchanged, cut or changed: the tables of
// docs/damage.md. The damage is the same each time.
//
//   damage CAPTURE...

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <quillon/stream/table_collector.h>

using namespace quillon;

namespace {

using Bytes = std::vector<uint8_t>;
using Table = std::pair<TableId, std::vector<Bytes>>;

constexpr size_t kSize = TsPacket::size;
constexpr uint32_t kSeeds = 20;
constexpr uint32_t kShares[] = {1000, 100};  // one packet in so many

enum class Damage { lost, flipped, cut, repeated, exchanged };

constexpr const char* kNames[] = {"lost", "one bit changed", "cut short", "sent twice", "after the next"};

struct Read {
  uint64_t packets = 0;
  std::map<std::pair<int, Bytes>, uint64_t> sections;  // with a right CRC: PID and bytes, and how often
  std::set<Table> tables;
};

Read read(const Bytes& stream) {
  Read out;
  TableCollector tables([&](const TableEvent& event) {
    if (event.is_there()) out.tables.emplace(event.table, event.sections);
  });
  SectionReader sections(
      [&](const StreamSection& section) {
        if (section.crc_ok) ++out.sections[{section.pid, Bytes(section.bytes, section.bytes + section.size)}];
        tables.push(section);
      },
      {.repeats = true});
  PacketReader packets;
  TsPacket packet;
  packets.feed(stream);
  packets.finish();
  while (packets.next(packet)) sections.push(packet);
  out.packets = packets.packets();
  return out;
}

Bytes damaged(const Bytes& stream, Damage damage, uint32_t share, uint32_t seed) {
  std::mt19937 random(seed);
  Bytes out;
  out.reserve(stream.size() + stream.size() / 50);
  for (size_t at = 0; at < stream.size(); at += kSize) {
    const auto put = [&](size_t from, size_t size = kSize) {
      const auto begin = stream.begin() + static_cast<ptrdiff_t>(from);
      out.insert(out.end(), begin, begin + static_cast<ptrdiff_t>(size));
    };
    if (random() % share != 0) {
      put(at);
      continue;
    }
    switch (damage) {
      case Damage::lost:
        break;
      case Damage::flipped:
        put(at);
        out[out.size() - 1 - random() % kSize] ^= static_cast<uint8_t>(1u << random() % 8);
        break;
      case Damage::cut:
        put(at, 1 + random() % (kSize - 1));
        break;
      case Damage::repeated:
        put(at);
        put(at);
        break;
      case Damage::exchanged:
        if (at + kSize < stream.size()) put(at + kSize);
        put(at);
        at += kSize;
    }
  }
  return out;
}

// The packets alone, whatever is between them.
Bytes packets_in(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error(file + ": can't be opened");
  Bytes out;
  PacketReader packets;
  for_each_packet(in, packets, [&](const TsPacket& packet) {
    out.insert(out.end(), packet.data, packet.data + TsPacket::size);
  });
  if (out.empty()) throw std::runtime_error(file + ": no transport stream");
  return out;
}

struct Share {
  uint64_t found = 0;
  uint64_t there = 0;

  double percent() const {
    return there ? 100 * static_cast<double>(found) / static_cast<double>(there) : 100;
  }
};

void print_row(const Bytes& stream, const Read& whole, Damage damage, uint32_t share) {
  Share packets, sections, tables;
  uint64_t strange = 0;
  for (uint32_t seed = 1; seed <= kSeeds; ++seed) {
    const Read one = read(damaged(stream, damage, share, seed));
    packets.found += one.packets;
    packets.there += whole.packets;
    for (const auto& [section, times] : whole.sections) {
      const auto found = one.sections.find(section);
      sections.found += found == one.sections.end() ? 0 : std::min(found->second, times);
      sections.there += times;
    }
    for (const auto& [section, times] : one.sections)
      if (!whole.sections.contains(section)) strange += times;
    for (const Table& table : whole.tables) tables.found += one.tables.contains(table);
    tables.there += whole.tables.size();
  }
  std::printf("| %s | %g %% | %.2f %% | %.2f %% | %llu | %.2f %% |\n", kNames[static_cast<int>(damage)],
              100.0 / share, packets.percent(), sections.percent(), static_cast<unsigned long long>(strange),
              tables.percent());
}

void print_capture(const std::string& file) {
  const Bytes stream = packets_in(file);
  const Read whole = read(stream);
  uint64_t sections = 0;
  for (const auto& [section, times] : whole.sections) sections += times;
  std::printf("\n### %s\n\n", std::filesystem::path(file).filename().string().c_str());
  std::printf("%llu packets, %llu sections, %zu tables.\n\n", static_cast<unsigned long long>(whole.packets),
              static_cast<unsigned long long>(sections), whole.tables.size());
  std::printf(
      "| packets | of all | packets found | sections found | false sections | tables found |\n"
      "| --- | --- | --- | --- | --- | --- |\n");
  for (const Damage damage :
       {Damage::lost, Damage::flipped, Damage::cut, Damage::repeated, Damage::exchanged})
    for (const uint32_t share : kShares) print_row(stream, whole, damage, share);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "damage CAPTURE...\n";
    return 2;
  }
  try {
    for (int i = 1; i < argc; ++i) print_capture(argv[i]);
  } catch (const std::exception& e) {
    std::cerr << e.what() << "\n";
    return 1;
  }
}
