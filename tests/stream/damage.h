#pragma once

// Streams damaged by a rule, and which of their packets came through whole.

#include "tests/support/packets.h"

#include <random>

namespace quillon::test {

enum class Damage { drop, insert, overwrite, garbage, all };

inline const char* name_of(Damage damage) {
  constexpr const char* names[] = {"drop", "insert", "overwrite", "garbage", "all"};
  return names[static_cast<int>(damage)];
}

struct DamagedStream {
  Bytes bytes;
  std::vector<bool> intact;       // by the index of the packet in the stream as it was
  std::vector<size_t> positions;  // where each begins now
};

struct DamageRule {
  Damage damage = Damage::all;
  uint32_t rate = 10000;  // one byte in so many begins a damage
  uint32_t longest = 1;   // of 1 to so many bytes
  uint32_t seed = 1;
};

// Bytes are dropped, inserted or overwritten, or are garbage in front of the next packet. A packet that has
// its own 188 bytes and no others is intact, whatever is around it. The first begins at `lead`.
inline DamagedStream with_damage(const Bytes& stream, const DamageRule& rule, size_t stride = kPacketSize,
                                 size_t lead = 0) {
  std::mt19937 random(rule.seed);
  DamagedStream out;
  size_t dropped = 0;  // of the bytes to come
  size_t changed = 0;
  size_t garbage = 0;  // in front of the next packet
  const auto put_garbage = [&](size_t size) {
    for (; size > 0; --size) out.bytes.push_back(static_cast<uint8_t>(random()));
  };
  for (size_t at = 0; at < stream.size(); ++at) {
    const size_t in_packet = (at + stride - lead) % stride;
    const bool begins = at >= lead && in_packet == 0;
    if (random() % rule.rate == 0) {
      const size_t size = 1 + random() % rule.longest;
      switch (rule.damage == Damage::all ? static_cast<Damage>(random() % 4) : rule.damage) {
        case Damage::drop:
          dropped = size;
          break;
        case Damage::overwrite:
          changed = size;
          break;
        case Damage::insert:
          if (!begins && in_packet < kPacketSize && !out.intact.empty()) out.intact.back() = false;
          put_garbage(size);
          break;
        default:
          garbage = size;
      }
    }
    if (begins) {
      put_garbage(garbage);
      garbage = 0;
      out.intact.push_back(true);
      out.positions.push_back(out.bytes.size());
    }
    if ((dropped > 0 || changed > 0) && in_packet < kPacketSize && !out.intact.empty())
      out.intact.back() = false;
    if (dropped > 0) {
      --dropped;
      continue;
    }
    uint8_t byte = stream[at];
    if (changed > 0) {
      byte = static_cast<uint8_t>(byte ^ (1 + random() % 255));
      --changed;
    }
    out.bytes.push_back(byte);
  }
  return out;
}

}  // namespace quillon::test
