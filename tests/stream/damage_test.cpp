// How much of a damaged stream is lost: packets, and sections all of whose packets are intact.

#include "tests/stream/damage.h"

#include "tests/stream/streams.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <tuple>

#include <quillon/sections/crc.h>
#include <quillon/stream/section_reader.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr uint8_t kTimeOffset = 0x73;  // short, with a CRC

// A section of a clean stream, and the packets that carry it.
struct Carried {
  int pid;
  std::vector<size_t> packets;
  Bytes bytes;
};

// Those with a right CRC, in a way of their own: each PID's payload is one run of bytes, cut at its pointers.
std::vector<Carried> carried_sections(const Bytes& stream) {
  struct Open {
    Bytes bytes;
    std::vector<size_t> packets;
  };
  std::map<int, Open> open;
  std::vector<Carried> out;
  const auto take = [&](int pid, Open& section) {
    while (section.bytes.size() >= 3 && section.bytes[0] != 0xFF) {
      const size_t size = (section.bytes[1] & 0x0Fu) << 8 | section.bytes[2];
      if (section.bytes.size() < size + 3) return;
      const auto end = section.bytes.begin() + static_cast<ptrdiff_t>(size) + 3;
      const Bytes bytes(section.bytes.begin(), end);
      if ((bytes[1] & 0x80 || bytes[0] == kTimeOffset) &&
          section_crc(bytes.data(), bytes.size()) == good_section_crc)
        out.push_back({pid, section.packets, bytes});
      section.bytes.erase(section.bytes.begin(), end);
      section.packets = {section.packets.back()};
    }
  };
  for (size_t at = 0; at < stream.size(); at += kPacketSize) {
    const uint8_t* const p = stream.data() + at;
    const int pid = (p[1] & 0x1F) << 8 | p[2];
    const size_t header = p[3] & 0x20 ? 5u + p[4] : 4u;
    if (p[1] & 0x80 || p[3] & 0xC0 || !(p[3] & 0x10) || header >= kPacketSize) continue;
    Open& section = open[pid];
    const uint8_t* from = p + header;
    const uint8_t* const end = p + kPacketSize;
    if (p[1] & 0x40) {
      const uint8_t* const first = std::min(end, from + 1 + *from);
      if (!section.packets.empty()) {
        section.packets.push_back(at / kPacketSize);
        section.bytes.insert(section.bytes.end(), from + 1, first);
        take(pid, section);
      }
      section = {Bytes(first, end), {at / kPacketSize}};
    } else if (!section.packets.empty()) {
      section.packets.push_back(at / kPacketSize);
      section.bytes.insert(section.bytes.end(), from, end);
    }
    take(pid, section);
  }
  return out;
}

struct Losses {
  size_t intact_packets = 0;
  size_t lost_packets = 0;
  size_t false_packets = 0;  // where none begins
  size_t intact_sections = 0;
  size_t lost_sections = 0;
  size_t false_sections = 0;  // with a right CRC, and not in the stream

  Losses& operator+=(const Losses& more) {
    for (const auto member : {&Losses::intact_packets, &Losses::lost_packets, &Losses::false_packets,
                              &Losses::intact_sections, &Losses::lost_sections, &Losses::false_sections})
      this->*member += more.*member;
    return *this;
  }
};

Losses losses(const Bytes& stream, const std::vector<Carried>& carried, const DamageRule& rule) {
  const DamagedStream damaged_stream = with_damage(stream, rule);
  std::set<std::tuple<int, uint64_t, Bytes>> read;  // with the place of the last packet
  std::vector<uint64_t> positions;
  SectionReader reader(
      [&](const StreamSection& section) {
        if (section.crc_ok)
          read.emplace(section.pid, positions.back(), Bytes(section.bytes, section.bytes + section.size));
      },
      {.every_pid = true, .repeats = true});
  read_packets(damaged_stream.bytes, [&](const TsPacket& packet) {
    positions.push_back(packet.position);
    reader.push(packet);
  });

  Losses out;
  const std::set<uint64_t> found(positions.begin(), positions.end());
  for (size_t i = 0; i < damaged_stream.intact.size(); ++i)
    if (damaged_stream.intact[i]) {
      ++out.intact_packets;
      out.lost_packets += !found.contains(damaged_stream.positions[i]);
    }
  const std::set<size_t> begins(damaged_stream.positions.begin(), damaged_stream.positions.end());
  for (const uint64_t position : found) out.false_packets += !begins.contains(position);

  std::set<Bytes> there;  // on whatever PID: that of a packet may have been overwritten
  for (const Carried& section : carried) {
    there.insert(section.bytes);
    const auto intact = [&](size_t packet) { return damaged_stream.intact[packet]; };
    if (!std::all_of(section.packets.begin(), section.packets.end(), intact)) continue;
    ++out.intact_sections;
    out.lost_sections +=
        !read.contains({section.pid, damaged_stream.positions[section.packets.back()], section.bytes});
  }
  for (const auto& [pid, position, bytes] : read) out.false_sections += !there.contains(bytes);
  return out;
}

struct Stream {
  const char* name;
  Bytes bytes;
  std::vector<Carried> carried;
};

// One that is made, and those that are recorded.
std::vector<Stream> streams() {
  std::vector<Stream> out = {{"made", made_stream(6000), {}}};
  for (const char* const name : {"dvb-eit-schedule.ts", "dvb-sat-bat.ts", "dvbt-ait.ts", "atsc-psip.ts"})
    out.push_back({name, recorded_stream(name), {}});
  std::erase_if(out, [](const Stream& stream) { return stream.bytes.empty(); });
  for (Stream& stream : out) stream.carried = carried_sections(stream.bytes);
  return out;
}

// The losses of all ways of damage, of single bytes and of up to 300. QUILLON_DAMAGE_SEEDS asks for more
// seeds than the tests have time for, and for the figures.
Losses all_losses(const Stream& stream, uint32_t rate) {
  const char* const asked = std::getenv("QUILLON_DAMAGE_SEEDS");
  const auto seeds = static_cast<uint32_t>(asked ? std::atoi(asked) : 1);
  Losses sum;
  for (const uint32_t longest : {1u, 300u})
    for (const Damage damage :
         {Damage::drop, Damage::insert, Damage::overwrite, Damage::garbage, Damage::all}) {
      Losses one;
      for (uint32_t seed = 1; seed <= seeds; ++seed)
        one += losses(stream.bytes, stream.carried,
                      {.damage = damage, .rate = rate, .longest = longest, .seed = seed});
      sum += one;
      if (!asked) continue;
      std::printf("%-19s 1/%-5u %-9s 1-%-3u packets: %zu of %zu lost, %zu false; sections: %zu of %zu lost\n",
                  stream.name, rate, name_of(damage), longest, one.lost_packets, one.intact_packets,
                  one.false_packets, one.lost_sections, one.intact_sections);
    }
  return sum;
}

}  // namespace

TEST(DamagedStreams, AreReadWholeWithoutDamage) {
  for (const Stream& stream : streams()) {
    SCOPED_TRACE(stream.name);
    const Losses clean = losses(stream.bytes, stream.carried, {.rate = 0xFFFFFFFF});
    EXPECT_EQ(clean.intact_packets, stream.bytes.size() / kPacketSize);
    EXPECT_EQ(clean.lost_packets, 0u);
    EXPECT_EQ(clean.false_packets, 0u);
    EXPECT_EQ(clean.intact_sections, stream.carried.size());
    EXPECT_EQ(clean.lost_sections, 0u);
    EXPECT_EQ(clean.false_sections, 0u);
  }
}

TEST(DamagedStreams, LoseNoIntactSectionToOneDamageInTenThousandBytes) {
  for (const Stream& stream : streams()) {
    SCOPED_TRACE(stream.name);
    const Losses l = all_losses(stream, 10000);
    EXPECT_GT(l.intact_sections, 100u);
    EXPECT_EQ(l.lost_sections, 0u);
    EXPECT_EQ(l.false_sections, 0u);
  }
}

TEST(DamagedStreams, LoseAtMostOneIntactSectionInAHundredToOneDamageInAThousandBytes) {
  for (const Stream& stream : streams()) {
    SCOPED_TRACE(stream.name);
    const Losses l = all_losses(stream, 1000);
    EXPECT_GT(l.intact_sections, 100u);
    EXPECT_LE(l.lost_sections * 100, l.intact_sections);
    EXPECT_EQ(l.false_sections, 0u);
  }
}
