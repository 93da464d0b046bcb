// What the readers of streams take from the heap. A program of its own, as it counts all allocations.

#include "tests/alone/counted_heap.h"
#include "tests/stream/streams.h"

#include <gtest/gtest.h>
#include <iostream>

#include <quillon/stream/stream_statistics.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr size_t kMiB = size_t{1} << 20;

// All readers, fed with packets that need not be found.
struct Readers {
  explicit Readers(const SectionReaderOptions& options = {})
      : sections(
            [this](const StreamSection& section) {
              ++given;
              statistics.on_section(section);
            },
            options) {}

  void push(const uint8_t* packet) {
    const TsPacket one{packet, pushed++, 0, false};
    statistics.push(one);
    sections.push(one);
  }
  void push(const Bytes& packets) {
    for (size_t at = 0; at < packets.size(); at += kPacketSize) push(packets.data() + at);
  }

  uint64_t pushed = 0;
  uint64_t given = 0;
  StreamStatistics statistics;
  SectionReader sections;
};

// One packet with a whole section, which `number` makes another each time.
Bytes numbered_packet(int pid, uint32_t number) {
  const Bytes section = long_section(0x80, bits({{32, number, "body"}}),
                                     {.extension = static_cast<int>(number >> 8 & 0xFFFF),
                                      .section_number = static_cast<int>(number & 0xFF)});
  return start_packet(pid, 0, section);
}

}  // namespace

TEST(StreamAllocation, IsNoneAPacketOrASectionOnceAStreamWasMet) {
  const Bytes stream = made_stream(6000);
  for (const bool repeats : {false, true}) {
    Readers readers({.every_pid = true, .repeats = repeats});
    PacketReader packets;
    TsPacket packet;
    const auto read = [&](size_t piece) {
      for (size_t at = 0; at < stream.size(); at += piece) {
        packets.feed(stream.data() + at, std::min(piece, stream.size() - at));
        while (packets.next(packet)) {
          readers.statistics.push(packet);
          readers.sections.push(packet);
        }
      }
    };
    read(stream.size());
    read(1000);
    const size_t before = allocations;
    const uint64_t given = readers.given;
    for (const size_t piece : {size_t{100}, size_t{1000}, size_t{65536}, stream.size()}) read(piece);
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(readers.given > given + 1000, repeats);
  }
}

TEST(StreamAllocation, OfStatisticsIsBounded) {
  const size_t before = live;
  StreamStatistics statistics;
  EXPECT_LE(live - before, 450 * 1024);
  for (uint32_t i = 0; i < 20000; ++i) {
    const Bytes section = long_section(0xCC, bits({{8, 0, "protocol_version"}, {32, i, "ETM_id"}}));
    statistics.on_section({0x100, i, section.data(), section.size(), true, true, false});
  }
  EXPECT_EQ(statistics.tables().size(), 16384u);
  std::cout << "statistics: " << (live - before) / 1024 << " KiB\n";
  EXPECT_LE(live - before, 5 * kMiB / 2);
}

// Every PID is in use, each with a section in progress, and no section is ever repeated.
TEST(StreamAllocation, IsBoundedWhateverComes) {
  const size_t before = live;
  peak = live.load();
  Readers readers({.every_pid = true});
  // Maps that name more than is ever read.
  std::vector<Bytes> programs;
  for (int section = 0; section < 256; ++section) {
    std::vector<std::pair<int, int>> rows;
    for (int i = 0; i < 250; ++i) rows.emplace_back(i + 1, (section * 250 + i) % 0x1FFF);
    programs.push_back(pat_of(rows, {.section_number = section, .last_section_number = 255}));
  }
  readers.push(packets(programs, {.pid = 0}));
  std::vector<MapRow> rows;
  for (int i = 0; i < 200; ++i) rows.push_back({0x0B, 0x20 + i * 37});
  for (int program = 0; program < 2000; ++program) {
    const Bytes map = pmt_of(program, rows);
    readers.push(packets({map}, {.pid = 0x20 + program}));
  }
  for (int pid = 0; pid < 0x1FFF; ++pid) readers.push(start_packet(pid, 0, section_of(0x80, 4098)));
  for (uint32_t i = 0; i < 600000; ++i) readers.push(numbered_packet(static_cast<int>(i % 0x1FFF), i));
  const size_t most = peak - before;
  std::cout << "at most " << most / 1024 << " KiB, " << (live - before) / 1024 << " KiB at the end, "
            << readers.given << " sections\n";
  EXPECT_LT(most, 60 * kMiB);
  EXPECT_GT(readers.given, 600000u);
  // What is new from here on replaces what was.
  const size_t held = live;
  for (uint32_t i = 0; i < 200000; ++i) readers.push(numbered_packet(static_cast<int>(i % 0x1FFF), ~i));
  EXPECT_LE(live, held);
}
