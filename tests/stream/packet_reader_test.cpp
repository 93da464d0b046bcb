// Packets out of streams that are not clean, in pieces of any size.

#include "tests/stream/damage.h"
#include "tests/support/sample.h"

#include <gtest/gtest.h>

#include <quillon/sections/error.h>
#include <quillon/stream/packet_reader.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr size_t kAllStrides[] = {188, 192, 204, 208};

// Packets numbered in their first payload byte; each has a stray 0x47 in a place of its own.
Bytes numbered_packets(int first, int count, size_t stride = 188) {
  Bytes out;
  for (int i = first; i < first + count; ++i) {
    const auto number = static_cast<uint8_t>(i);
    Bytes payload(184, static_cast<uint8_t>(i * 7 + 1));
    payload[0] = number;
    payload[static_cast<size_t>(1 + i * 37 % 180)] = 0x47;
    if (stride == 192) out.insert(out.end(), {number, i % 2 ? uint8_t{0x47} : uint8_t{0x01}, 0x03, 0x04});
    const Bytes made = packet({.pid = 0x123, .counter = i % 16}, payload);
    out.insert(out.end(), made.begin(), made.end());
    if (stride > 192) out.insert(out.end(), stride - 188, number);  // parity
  }
  return out;
}

struct Found {
  int number;
  uint64_t index;
  uint64_t position;
  bool after_gap;
  Bytes bytes;

  bool operator==(const Found&) const = default;
};

struct PacketsRead {
  std::vector<Found> found;
  uint64_t skipped = 0;
  uint64_t sync_losses = 0;
  size_t stride = 0;

  std::vector<int> packets() const {
    std::vector<int> out;
    for (const Found& f : found) out.push_back(f.number);
    return out;
  }
  bool operator==(const PacketsRead&) const = default;
};

// Each piece is a copy of its own, so that none is read once the next is there.
PacketsRead read_pieces(const Bytes& stream, const std::function<size_t()>& piece_size) {
  PacketReader reader;
  PacketsRead out;
  TsPacket packet;
  const auto take = [&] {
    while (reader.next(packet)) {
      EXPECT_EQ(packet.data[0], 0x47);
      out.found.push_back({packet.data[4], packet.index, packet.position, packet.after_gap,
                           Bytes(packet.data, packet.data + TsPacket::size)});
    }
  };
  for (size_t at = 0; at < stream.size();) {
    const size_t size = std::min(piece_size(), stream.size() - at);
    const auto from = stream.begin() + static_cast<ptrdiff_t>(at);
    const Bytes piece(from, from + static_cast<ptrdiff_t>(size));
    reader.feed(piece.data(), piece.size());
    take();
    at += size;
  }
  reader.finish();
  take();
  EXPECT_FALSE(reader.next(packet));
  EXPECT_EQ(reader.position(), stream.size());
  EXPECT_EQ(reader.packets(), out.found.size());
  out.skipped = reader.skipped();
  out.sync_losses = reader.sync_losses();
  out.stride = reader.stride();
  for (const Found& f : out.found)
    EXPECT_TRUE(
        std::equal(f.bytes.begin(), f.bytes.end(), stream.begin() + static_cast<ptrdiff_t>(f.position)));
  return out;
}

PacketsRead read_pieces(const Bytes& stream) {
  return read_pieces(stream, [&] { return stream.size(); });
}

std::vector<int> counted_from(int first, int count) {
  std::vector<int> out;
  for (int i = 0; i < count; ++i) out.push_back(first + i);
  return out;
}

}  // namespace

// The example of the class.
TEST(PacketReader, IsUsedLikeThis) {
  const Bytes stream = sample_stream();
  const uint8_t* const bytes = stream.data();
  const size_t size = stream.size();
  uint64_t used = 0;
  const auto use = [&](const TsPacket&) { ++used; };

  PacketReader reader;
  TsPacket packet;
  reader.feed(bytes, size);  // as often as there are bytes
  while (reader.next(packet)) use(packet);
  reader.finish();
  while (reader.next(packet)) use(packet);

  EXPECT_EQ(used, stream.size() / kPacketSize);
}

TEST(PacketReader, ReadsPacketsOfEveryStride) {
  for (const size_t stride : kAllStrides) {
    SCOPED_TRACE(stride);
    for (const int count : {1, 2, 3, 4, 5, 6, 10, 100}) {
      SCOPED_TRACE(count);
      const PacketsRead result = read_pieces(numbered_packets(0, count, stride));
      EXPECT_EQ(result.packets(), counted_from(0, count));
      EXPECT_EQ(result.sync_losses, 0u);
      // A single packet does not show what it is the first of.
      if (count == 1) continue;
      EXPECT_EQ(result.skipped, 0u);
      EXPECT_EQ(result.stride, stride);
      EXPECT_FALSE(result.found[0].after_gap);
    }
  }
}

TEST(PacketReader, TellsWhereAPacketLies) {
  const PacketsRead result =
      read_pieces(joined({Bytes(7, 0), numbered_packets(0, 10), Bytes(3, 0), numbered_packets(10, 10)}));
  ASSERT_EQ(result.found.size(), 20u);
  for (size_t i = 0; i < 20; ++i) {
    EXPECT_EQ(result.found[i].index, i);
    EXPECT_EQ(result.found[i].position, 7 + i * 188 + (i < 10 ? 0 : 3));
    EXPECT_EQ(result.found[i].after_gap, i == 0 || i == 10);
  }
  EXPECT_EQ(result.skipped, 10u);
  EXPECT_EQ(result.sync_losses, 1u);
}

TEST(PacketReader, GivesPacketsWhereTheyLieInThePiece) {
  const Bytes stream = numbered_packets(0, 10);
  PacketReader reader;
  reader.feed(stream.data(), stream.size());
  TsPacket packet;
  ASSERT_TRUE(reader.next(packet));
  EXPECT_EQ(packet.data, stream.data());
  ASSERT_TRUE(reader.next(packet));
  EXPECT_EQ(packet.data, stream.data() + 188);
}

// Clean and not, with every piece of one size, and with sizes at random.
TEST(PacketReader, GivesTheSameInPiecesOfAnySize) {
  for (const size_t stride : kAllStrides) {
    SCOPED_TRACE(stride);
    const Bytes clean = numbered_packets(0, 60, stride);
    for (const Bytes& stream :
         {clean, joined({Bytes(1000, 0x47), clean, Bytes(5000, 0x00), clean}),
          with_damage(clean, {.rate = 300, .longest = 20}, stride, stride == 192 ? 4 : 0).bytes}) {
      const PacketsRead whole = read_pieces(stream);
      for (const size_t piece : {1u, 2u, 47u, 187u, 188u, 189u, 204u, 1000u, 1023u, 1024u, 1025u, 4096u})
        EXPECT_EQ(read_pieces(stream, [&] { return piece; }), whole) << piece;
      std::mt19937 random(1);
      for (int i = 0; i < 20; ++i)
        EXPECT_EQ(read_pieces(stream, [&] { return size_t{1} << (random() % 12); }), whole) << i;
    }
  }
}

TEST(PacketReader, PassesOverGarbageInFrontAndTellsHowMuch) {
  for (const size_t garbage : {1u, 3u, 187u, 188u, 189u, 5000u, 300000u}) {
    SCOPED_TRACE(garbage);
    const PacketsRead result = read_pieces(joined({Bytes(garbage, 0x00), numbered_packets(0, 20)}));
    EXPECT_EQ(result.packets(), counted_from(0, 20));
    EXPECT_EQ(result.skipped, garbage);
    EXPECT_EQ(result.sync_losses, 0u);
  }
}

TEST(PacketReader, GoesOnAfterGarbageBetweenPackets) {
  for (const size_t stride : kAllStrides)
    for (const size_t garbage : {1u, 50u, 188u, 1000u, 300000u}) {
      SCOPED_TRACE(testing::Message() << stride << ", " << garbage);
      const PacketsRead result = read_pieces(
          joined({numbered_packets(0, 10, stride), Bytes(garbage, 0xAA), numbered_packets(10, 10, stride)}));
      EXPECT_EQ(result.packets(), counted_from(0, 20));
      EXPECT_EQ(result.skipped, garbage);
      EXPECT_EQ(result.sync_losses, 1u);
    }
}

TEST(PacketReader, LosesOnePacketToADamagedSyncByte) {
  for (const size_t stride : kAllStrides) {
    Bytes stream = numbered_packets(0, 20, stride);
    stream[5 * stride + (stride == 192 ? 4 : 0)] = 0x46;
    const PacketsRead result = read_pieces(stream);
    std::vector<int> expected = counted_from(0, 20);
    expected.erase(expected.begin() + 5);
    EXPECT_EQ(result.packets(), expected);
    EXPECT_EQ(result.skipped, stride);
    EXPECT_EQ(result.sync_losses, 1u);
  }
}

// The packet itself may be given, with bytes of its neighbour; no other is lost.
TEST(PacketReader, LosesOnePacketToBytesThatAreMissing) {
  for (const size_t stride : kAllStrides)
    for (ptrdiff_t missing = 1; missing < 174; ++missing) {
      Bytes stream = numbered_packets(0, 20, stride);
      const auto from = stream.begin() + static_cast<ptrdiff_t>(5 * stride + 10);
      stream.erase(from, from + missing);
      std::vector<int> found = read_pieces(stream).packets();
      std::erase(found, 5);
      std::vector<int> expected = counted_from(0, 20);
      std::erase(expected, 5);
      EXPECT_EQ(found, expected) << stride << ", " << missing;
    }
}

// Bytes are missing from the parity after a packet, from its time stamp, or there are more.
TEST(PacketReader, KeepsPacketsWhoseSurroundingsAreDamaged) {
  for (const size_t stride : {size_t{192}, size_t{204}, size_t{208}}) {
    const size_t at = 5 * stride + (stride == 192 ? 1 : 190);
    Bytes less = numbered_packets(0, 20, stride);
    less.erase(less.begin() + static_cast<ptrdiff_t>(at));
    EXPECT_EQ(read_pieces(less).packets(), counted_from(0, 20)) << stride;
    Bytes more = numbered_packets(0, 20, stride);
    more.insert(more.begin() + static_cast<ptrdiff_t>(at), 5, 0x00);
    EXPECT_EQ(read_pieces(more).packets(), counted_from(0, 20)) << stride;
  }
}

// Between two broken ones, or garbage, a packet has no neighbour to be confirmed by.
TEST(PacketReader, FindsAPacketThatIsAlone) {
  const Bytes random_bytes(100, 0x11);
  const PacketsRead result =
      read_pieces(joined({numbered_packets(0, 20), random_bytes, numbered_packets(20, 1), random_bytes,
                          numbered_packets(21, 1), random_bytes, numbered_packets(22, 20), random_bytes}));
  EXPECT_EQ(result.packets(), counted_from(0, 42));
  EXPECT_EQ(result.skipped, 400u);
  EXPECT_EQ(result.sync_losses, 3u);
}

TEST(PacketReader, FindsPacketsOfAnotherStrideInTheSameInput) {
  const PacketsRead result = read_pieces(
      joined({numbered_packets(0, 20), numbered_packets(20, 20, 204), numbered_packets(40, 20, 192)}));
  EXPECT_EQ(result.packets(), counted_from(0, 60));
  EXPECT_EQ(result.stride, 192u);
}

TEST(PacketReader, LeavesOutAPacketThatIsCutAtTheEnd) {
  for (const size_t stride : kAllStrides)
    for (const size_t cut : {1u, 100u, 187u}) {
      Bytes stream = numbered_packets(0, 10, stride);
      stream.resize(stream.size() - (stride > 192 ? stride - 188 : 0) - cut);
      const PacketsRead result = read_pieces(stream);
      EXPECT_EQ(result.packets(), counted_from(0, 9));
      EXPECT_EQ(result.skipped, 188 - cut);
    }
}

TEST(PacketReader, FindsNothingWhereThereIsNothing) {
  std::mt19937 random(1);
  Bytes random_bytes(1000000);
  for (uint8_t& byte : random_bytes) byte = static_cast<uint8_t>(random());
  for (const Bytes& stream :
       {Bytes(), Bytes(1, 0x47), Bytes(100, 0x47), Bytes(100000, 0x47), Bytes(100000, 0x00), random_bytes,
        text("Go away! This is a letter, and no stream.")}) {
    const PacketsRead result = read_pieces(stream);
    EXPECT_TRUE(result.found.empty());
    EXPECT_EQ(result.skipped, stream.size());
    EXPECT_EQ(result.stride, 0u);
  }
}

TEST(PacketReader, RefusesAPieceTooEarlyAndTooLate) {
  const Bytes stream = numbered_packets(0, 10);
  PacketReader reader;
  reader.feed(stream.data(), stream.size());
  EXPECT_THROW(reader.feed(stream.data(), stream.size()), error);
  TsPacket packet;
  while (reader.next(packet)) {
  }
  reader.feed(nullptr, 0);
  reader.finish();
  EXPECT_THROW(reader.feed(stream.data(), stream.size()), error);
}
