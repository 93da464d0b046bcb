// In its steady state a demultiplexer takes no heap. A program of its own, as it counts all allocations.

#include "tests/support/packets.h"

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

#include <quillon/demux/sources.h>

namespace {

std::atomic<size_t> allocations = 0;

void* counted(size_t size) {
  ++allocations;
  if (void* const memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(size_t size) {
  return counted(size);
}
void* operator new[](size_t size) {
  return counted(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
  std::free(memory);
}

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
