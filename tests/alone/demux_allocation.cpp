// In its steady state a demultiplexer takes no heap. A program of its own, as it counts all allocations.

#include "tests/alone/counted_heap.h"
#include "tests/support/packets.h"

#include <gtest/gtest.h>
#include <iostream>
#include <random>

#include <quillon/demux/sources.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr int kPid = 0x100;
constexpr uint8_t kTable = 0x42;
constexpr uint8_t kMask = 0xFF;

// Counts what it hears.
template <class Source>
class Counting : public Source {
 public:
  using Source::Source;
  int tables = 0;
  int filtered = 0;

  void add_handlers() {
    this->add_psi_handler(kPid, kTable);
    this->add_psi_handler(kPid, 0x43);
    this->add_psi_handler(kPid, &kTable, &kMask, 1, 5);
  }

 protected:
  void on_psi_section(unsigned long, int, uint8_t*) override { ++filtered; }
  void on_psi_section(int, int, int, const uint8_t*) override { ++tables; }
};

// Whatever begins with the sync byte; most packets are for the wanted PIDs, and much of their bytes are
// lengths at the ends of their range.
Bytes hostile_stream(uint32_t seed) {
  constexpr uint8_t extremes[] = {0x00, 0x01, 0x0F, 0xFF, kTable, 0x43, 0xB0, 0xBF};
  std::mt19937 random(seed);
  Bytes out;
  for (int packet = 0; packet < 2000; ++packet) {
    out.push_back(0x47);
    const int pid =
        random() % 8 == 0 ? static_cast<int>(random() % 0x2000) : kPid + static_cast<int>(random() % 4);
    out.push_back(static_cast<uint8_t>((random() & 0xC0) | static_cast<unsigned>(pid >> 8)));
    out.push_back(static_cast<uint8_t>(pid));
    out.push_back(static_cast<uint8_t>(random() % 4 == 0 ? random() : 0x10));
    while (out.size() % kPacketSize != 0)
      out.push_back(random() % 2 == 0 ? extremes[random() % std::size(extremes)]
                                      : static_cast<uint8_t>(random()));
  }
  return out;
}

// Sections over several packets and several in one, wanted tables and others, unwanted PIDs among them.
Bytes stream() {
  const Bytes wanted = packets({section_of(kTable, 4098), section_of(0x43, 20), section_of(0x44, 400),
                                section_of(kTable, 30), section_of(0x43, 700)},
                               {.shared = true, .field = 1});
  Bytes out;
  for (size_t at = 0; at < wanted.size(); at += kPacketSize) {
    const auto from = wanted.begin() + static_cast<ptrdiff_t>(at);
    const Bytes one(from, from + static_cast<ptrdiff_t>(kPacketSize));
    out = joined({out, one, start_packet(0x101, 0, section_of(kTable, 20)), next_packet(0x1FFF, {})});
  }
  return out;
}

}  // namespace

TEST(DemuxAllocation, CountsWhatIsAllocated) {
  const size_t before = allocations;
  ::operator delete(::operator new(1000));
  EXPECT_EQ(allocations, before + 1);
}

TEST(DemuxAllocation, IsAnIndexOfPidsForTheDemultiplexer) {
  const size_t before = live;
  const Counting<DemuxPush> demux;
  EXPECT_GE(live - before, 64u * 1024);
  EXPECT_LT(live - before, 64u * 1024 + 512);
}

TEST(DemuxAllocation, IsTheSameForEachHandler) {
  Counting<DemuxPush> demux;
  demux.add_psi_handler(kPid, kTable);
  const auto heap_of_more = [&](auto add) {
    const size_t before = live;
    for (int i = 0; i < 100; ++i) add(i);
    return (live - before) / 100;
  };
  const size_t table = heap_of_more([&](int i) { demux.add_psi_handler(kPid, 0x80 + i); });
  const size_t filter = heap_of_more([&](int) { demux.add_psi_handler(kPid, &kTable, &kMask, 1, 5); });
  const size_t pid = heap_of_more([&](int i) { demux.add_psi_handler(0x200 + i, kTable); });
  std::cout << "a table: " << table << " bytes, a filter: " << filter << ", a PID with a table: " << pid
            << "\n";
  for (const size_t heap : {table, filter, pid}) {
    EXPECT_GE(heap, 8192u);
    EXPECT_LT(heap, 8192u + 512);
  }
  // All of it comes back.
  const size_t all = live;
  demux.reset();
  EXPECT_LE(live + 100 * (table + filter + pid), all);
}

TEST(DemuxAllocation, IsNoneInPushData) {
  for (const bool every_section : {false, true}) {
    Bytes bytes = stream();
    Counting<DemuxPush> demux;
    demux.serve_every_section(every_section);
    demux.add_handlers();
    const size_t before = allocations;
    for (int i = 0; i < 100; ++i) demux.push_data(bytes.data(), static_cast<int>(bytes.size()));
    EXPECT_EQ(allocations, before);
    EXPECT_GE(demux.tables, 300);
    EXPECT_GE(demux.filtered, 100);
  }
}

TEST(DemuxAllocation, IsNoneInStart) {
  for (const bool every_section : {false, true}) {
    Counting<MemoryDemux> demux(stream());
    demux.serve_every_section(every_section);
    demux.add_handlers();
    const size_t before = allocations;
    EXPECT_EQ(demux.start(), 1);
    EXPECT_EQ(allocations, before);
    EXPECT_GE(demux.tables, 3);
    EXPECT_GE(demux.filtered, 1);
  }
}

TEST(DemuxAllocation, IsNoneOnAHostileStreamWithAnyNumberOfHandlers) {
  for (const bool every_section : {false, true})
    for (const int handlers : {1, 16, 256}) {
      Bytes bytes = hostile_stream(7);
      Counting<DemuxPush> demux;
      demux.serve_every_section(every_section);
      for (int i = 0; i < handlers; ++i) {
        demux.add_psi_handler(kPid + i % 4, i);
        demux.add_psi_handler(kPid + i % 4, nullptr, nullptr, 0, 5);
      }
      demux.add_handlers();
      const size_t before = allocations;
      const size_t held = live;
      for (int i = 0; i < 5; ++i) EXPECT_EQ(demux.push_data(bytes.data(), static_cast<int>(bytes.size())), 0);
      EXPECT_EQ(allocations, before);
      EXPECT_EQ(live, held);
      EXPECT_GT(demux.tables, 20);
      EXPECT_GT(demux.filtered, 20);
    }
}
