#include "fuzz/packets.h"

#include <algorithm>

namespace quillon::fuzz {

namespace {

constexpr size_t kPacket = 188;
constexpr size_t kStrides[] = {188, 192, 204, 208};
constexpr int kPids[] = {0x0000, 0x0020, 0x0021, 0x1FFB, 0x0011, 0x0014, 0x0100, 0x0101};

Bytes widened(const Bytes& packets, size_t stride) {
  Bytes out;
  for (size_t at = 0; at < packets.size(); at += kPacket) {
    out.insert(out.end(), packets.begin() + static_cast<ptrdiff_t>(at),
               packets.begin() + static_cast<ptrdiff_t>(at + kPacket));
    out.resize(out.size() + stride - kPacket, 0xFF);
  }
  return out;
}

// Of each record a PID, a size, and bytes that are made whole.
Bytes packed(const uint8_t* data, size_t size) {
  Bytes out;
  uint8_t counters[std::size(kPids)] = {};
  while (size > 3) {
    const size_t number = data[0] % std::size(kPids);
    Bytes section(data + 2, data + 2 + std::min<size_t>(data[1] + 3u, size - 2));
    data += 2 + section.size();
    size -= 2 + section.size();
    if (section.size() < 3) break;
    repair(section);
    const Bytes packets = packets_of({&section, 1}, kPids[number], counters[number]);
    out.insert(out.end(), packets.begin(), packets.end());
  }
  return out;
}

// Packets are lost, sent twice or cut short, and the stride changes.
Bytes spliced(const Bytes& stream, size_t stride, uint32_t state) {
  Bytes out;
  size_t pad = 0;
  for (size_t at = 0; at < stream.size(); at += stride) {
    state = state * 1664525 + 1013904223;
    const auto begin = stream.begin() + static_cast<ptrdiff_t>(at);
    size_t size = std::min(stride, stream.size() - at);
    switch (state >> 27) {
      case 0:
        continue;
      case 1:
        out.insert(out.end(), begin, begin + static_cast<ptrdiff_t>(size));
        break;
      case 2:
        size = std::min<size_t>(size, state >> 19 & 0xFF);
        break;
      case 3:
        pad = kStrides[state >> 25 & 3] - kPacket;
        break;
      default:
        break;
    }
    out.insert(out.end(), begin, begin + static_cast<ptrdiff_t>(size));
    out.resize(out.size() + pad, 0xFF);
  }
  return out;
}

}  // namespace

Bytes packets_of(std::span<const Bytes> sections, int pid, uint8_t& counter) {
  Bytes left;
  std::vector<size_t> begins;
  for (const Bytes& section : sections) {
    begins.push_back(left.size());
    left.insert(left.end(), section.begin(), section.end());
  }
  Bytes out;
  auto next = begins.begin();
  for (size_t at = 0; at < left.size();) {
    // A packet in which a section begins says where the first of them does.
    const bool starts = next != begins.end() && *next - at < 183;
    const size_t taken = std::min<size_t>(starts ? 183 : 184, left.size() - at);
    out.insert(out.end(), {0x47, static_cast<uint8_t>((starts ? 0x40 : 0) | pid >> 8),
                           static_cast<uint8_t>(pid), static_cast<uint8_t>(0x10 | (counter++ & 0x0F))});
    if (starts) out.push_back(static_cast<uint8_t>(*next - at));
    out.insert(out.end(), left.begin() + static_cast<ptrdiff_t>(at),
               left.begin() + static_cast<ptrdiff_t>(at + taken));
    out.resize((out.size() + kPacket - 1) / kPacket * kPacket, 0xFF);
    at += taken;
    next = std::find_if(next, begins.end(), [at](size_t begin) { return begin >= at; });
  }
  return out;
}

MadeStream make_stream(const uint8_t* data, size_t size) {
  if (size < 2) return {};
  MadeStream out{data[0], data[1], Bytes(data + 2, data + size)};
  const size_t stride = kStrides[out.choice >> 6];
  if (out.choice & 1) out.bytes = widened(packed(data + 2, size - 2), stride);
  // Sync bytes where they belong, for the most part.
  if (out.choice & 2)
    for (size_t at = 0; at < out.bytes.size(); at += stride)
      if (out.bytes[at] % 16 != 0) out.bytes[at] = 0x47;
  if (out.choice & 32) out.bytes = spliced(out.bytes, stride, out.chance);
  return out;
}

}  // namespace quillon::fuzz
