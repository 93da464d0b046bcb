// The program's own packet source: whole packets out of streams that are not clean.

#include "apps/quillon/packet_source.h"

#include "tests/support/packets.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace quillon::test;
using quillon::app::PacketSource;

namespace {

// Packets numbered in their first payload byte; each has a stray 0x47 in a place of its own.
Bytes numbered(int first, int count, size_t stride = 188) {
  Bytes out;
  for (int i = first; i < first + count; ++i) {
    const auto number = static_cast<uint8_t>(i);
    Bytes payload(184, static_cast<uint8_t>(i * 7 + 1));
    payload[0] = number;
    payload[static_cast<size_t>(1 + i * 37 % 180)] = 0x47;
    if (stride == 192) out.insert(out.end(), {number, i % 2 ? uint8_t{0x47} : uint8_t{0x01}, 0x03, 0x04});
    const Bytes made = packet({.pid = 0x123}, payload);
    out.insert(out.end(), made.begin(), made.end());
    if (stride == 204) out.insert(out.end(), 16, number);  // parity
  }
  return out;
}

struct Result {
  std::vector<int> packets;
  uint64_t skipped = 0;
  size_t stride = 0;
};

Result read(const Bytes& stream, size_t buffer_size = size_t{1} << 19) {
  std::istringstream in(std::string(stream.begin(), stream.end()));
  PacketSource source(in, buffer_size);
  Result out;
  while (const uint8_t* const packet = source.next()) {
    EXPECT_EQ(packet[0], 0x47);
    out.packets.push_back(packet[4]);
  }
  EXPECT_EQ(source.packets(), out.packets.size());
  EXPECT_EQ(source.position(), stream.size());
  out.skipped = source.skipped();
  out.stride = source.stride();
  return out;
}

std::vector<int> counted(int first, int count) {
  std::vector<int> out;
  for (int i = 0; i < count; ++i) out.push_back(first + i);
  return out;
}

}  // namespace

TEST(PacketSource, ReadsPacketsOf188And192And204Bytes) {
  for (const size_t stride : {size_t{188}, size_t{192}, size_t{204}}) {
    SCOPED_TRACE(stride);
    for (const int count : {1, 2, 3, 10, 100}) {
      const Result result = read(numbered(0, count, stride));
      EXPECT_EQ(result.packets, counted(0, count));
      // A single packet does not show what it is the first of.
      if (count == 1) continue;
      EXPECT_EQ(result.skipped, 0u);
      EXPECT_EQ(result.stride, stride);
    }
  }
}

// Wherever in a packet, or after it, the buffer ends.
TEST(PacketSource, ReadsOnWhereTheBufferEnds) {
  for (const size_t stride : {size_t{188}, size_t{192}, size_t{204}}) {
    const Bytes stream = numbered(1, 40, stride);
    for (size_t buffer = 2048; buffer < 2048 + stride; ++buffer) {
      const Result result = read(stream, buffer);
      EXPECT_EQ(result.packets, counted(1, 40)) << stride << ", " << buffer;
      EXPECT_EQ(result.skipped, 0u) << stride << ", " << buffer;
    }
  }
}

TEST(PacketSource, PassesOverGarbageInFrontAndTellsHowMuch) {
  for (const size_t garbage : {1u, 3u, 187u, 188u, 189u, 5000u}) {
    SCOPED_TRACE(garbage);
    const Result result = read(joined({Bytes(garbage, 0x00), numbered(0, 20)}));
    EXPECT_EQ(result.packets, counted(0, 20));
    EXPECT_EQ(result.skipped, garbage);
  }
}

TEST(PacketSource, LocksAnewBehindGarbageBetweenPackets) {
  for (const size_t garbage : {1u, 50u, 188u, 1000u, 300000u}) {
    SCOPED_TRACE(garbage);
    const Result result = read(joined({numbered(0, 10), Bytes(garbage, 0xAA), numbered(10, 10)}));
    EXPECT_EQ(result.packets, counted(0, 20));
    EXPECT_EQ(result.skipped, garbage);
  }
}

TEST(PacketSource, LosesOnePacketToADamagedSyncByte) {
  Bytes stream = numbered(0, 20);
  stream[5 * 188] = 0x46;
  const Result result = read(stream);
  std::vector<int> expected = counted(0, 20);
  expected.erase(expected.begin() + 5);
  EXPECT_EQ(result.packets, expected);
  EXPECT_EQ(result.skipped, 188u);
}

TEST(PacketSource, LosesLittleToBytesThatAreMissing) {
  Bytes stream = numbered(0, 20);
  stream.erase(stream.begin() + 5 * 188 + 20, stream.begin() + 5 * 188 + 70);
  const Result result = read(stream);
  // The packet that lost bytes is given out with those of its neighbour after it.
  EXPECT_EQ(result.packets.size(), 19u);
  EXPECT_EQ(result.packets.back(), 19);
}

TEST(PacketSource, LeavesOutAPacketThatIsCutAtTheEnd) {
  Bytes stream = numbered(0, 10);
  stream.resize(stream.size() - 1);
  const Result result = read(stream);
  EXPECT_EQ(result.packets, counted(0, 9));
  EXPECT_EQ(result.skipped, 187u);
}

TEST(PacketSource, FindsNothingWhereThereIsNothing) {
  EXPECT_TRUE(read({}).packets.empty());
  EXPECT_TRUE(read(Bytes(100, 0x47)).packets.empty());
  EXPECT_TRUE(read(Bytes(100000, 0x00)).packets.empty());
  EXPECT_TRUE(read(text("Go away! This is a letter, and no stream.")).packets.empty());
}
