// Counts, rates and repetition intervals.

#include "tests/stream/streams.h"
#include "tests/support/sample.h"

#include <gtest/gtest.h>
#include <sstream>

#include <quillon/stream/stream_statistics.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr int kClockPid = 0x100;
constexpr uint64_t kSecond = 27'000'000;
constexpr uint64_t kWrap = (uint64_t{1} << 33) * 300;

// A packet without payload that has a clock reference.
Bytes clock_packet(int pid, uint64_t ticks, bool jumps = false) {
  Bytes out = packet({.pid = pid, .field = 183, .control = 2}, {});
  ticks %= kWrap;
  const Bytes field = bits({{1, jumps, "discontinuity_indicator"},
                            {2, 0, "random_access, priority"},
                            {1, 1, "PCR_flag"},
                            {4, 0, "other flags"},
                            {33, ticks / 300, "base"},
                            {6, 63, "reserved"},
                            {9, ticks % 300, "extension"}});
  std::copy(field.begin(), field.end(), out.begin() + 5);
  return out;
}

class CountingReader {
 public:
  CountingReader& push(const Bytes& packets) {
    for (size_t at = 0; at < packets.size(); at += kPacketSize) {
      const TsPacket packet{packets.data() + at, pushed_++, at, false};
      statistics.push(packet);
      sections_.push(packet);
    }
    return *this;
  }
  CountingReader& push_null(size_t count) {
    for (; count > 0; --count) push(packet({.pid = 0x1FFF}, {}));
    return *this;
  }

  StreamStatistics statistics;

 private:
  uint64_t pushed_ = 0;
  SectionReader sections_{[this](const StreamSection& section) { statistics.on_section(section); },
                          {.repeats = true}};
};

}  // namespace

// The example of the class.
TEST(StreamStatistics, IsUsedLikeThis) {
  const Bytes stream = sample_stream();
  PacketReader packets;
  packets.feed(stream.data(), stream.size());
  packets.finish();
  TsPacket packet;
  std::ostringstream out;

  StreamStatistics statistics;
  SectionReader sections([&](const StreamSection& section) { statistics.on_section(section); },
                         {.repeats = true});
  while (packets.next(packet)) {
    statistics.push(packet);
    sections.push(packet);
  }
  out << statistics.bit_rate(0x100) << " bit/s\n";

  EXPECT_EQ(statistics.packets(), stream.size() / kPacketSize);
  EXPECT_FALSE(statistics.tables().empty());
}

TEST(StreamStatistics, CountsPacketsAndTheirStates) {
  CountingReader counting;
  counting.push(packet({.pid = kClockPid}, {}))
      .push(packet({.pid = kClockPid, .counter = 1, .scrambling = 2}, {}))
      .push(packet({.pid = kClockPid, .counter = 2, .error = 1}, {}))
      .push(packet({.pid = 0x200}, {}))
      .push_null(3);
  const StreamStatistics& s = counting.statistics;
  EXPECT_EQ(s.packets(), 7u);
  EXPECT_EQ(s.null_packets(), 3u);
  EXPECT_EQ(s.pid(kClockPid).packets, 3u);
  EXPECT_EQ(s.pid(kClockPid).scrambled, 1u);
  EXPECT_EQ(s.pid(kClockPid).transport_errors, 1u);
  EXPECT_EQ(s.pid(0x200).packets, 1u);
  EXPECT_EQ(s.pid(0x300).packets, 0u);
  EXPECT_EQ(s.pid(-1).packets, 0u);
  EXPECT_EQ(s.pid(0x2000).packets, 0u);
  EXPECT_EQ(s.bit_rate(), 0);
  EXPECT_EQ(s.bit_rate(kClockPid), 0);
}

TEST(StreamStatistics, ChecksContinuityCounters) {
  struct Case {
    std::vector<Bytes> packets;
    uint64_t errors;
    uint64_t duplicates;
  };
  const auto with = [](int counter) { return packet({.pid = kClockPid, .counter = counter}, {}); };
  const auto without = [](int counter) {
    return packet({.pid = kClockPid, .counter = counter, .field = 183, .control = 2}, {});
  };
  Bytes jump = packet({.pid = kClockPid, .counter = 9, .field = 1}, {});
  jump[5] = 0x80;
  const std::vector<Case> cases = {
      {{with(5)}, 0, 0},
      {{with(14), with(15), with(0), with(1)}, 0, 0},
      {{with(1), with(3)}, 1, 0},
      {{with(1), with(1), with(2)}, 0, 1},
      {{with(1), with(1), with(1)}, 1, 1},
      {{with(1), without(1), without(1), with(2)}, 0, 0},
      {{with(1), without(2)}, 1, 0},
      {{with(1), jump, with(10)}, 0, 0},
      {{with(1), packet({.pid = kClockPid, .counter = 2, .error = 1}, {}), with(3)}, 1, 0},
  };
  for (size_t i = 0; i < cases.size(); ++i) {
    CountingReader counting;
    for (const Bytes& one : cases[i].packets) counting.push(one);
    EXPECT_EQ(counting.statistics.pid(kClockPid).continuity_errors, cases[i].errors) << i;
    EXPECT_EQ(counting.statistics.pid(kClockPid).duplicates, cases[i].duplicates) << i;
  }
  CountingReader nulls;
  nulls.push_null(10);
  EXPECT_EQ(nulls.statistics.pid(0x1FFF).continuity_errors, 0u);
}

TEST(StreamStatistics, CountsGapsButTheFirst) {
  StreamStatistics statistics;
  const Bytes one = packet({.pid = kClockPid}, {});
  for (uint64_t i = 0; i < 10; ++i) statistics.push({one.data(), i, i, i % 4 == 0});
  EXPECT_EQ(statistics.sync_losses(), 2u);
}

// 1000 packets a second, over the end of the clock's range.
TEST(StreamStatistics, MeasuresRatesByTheClock) {
  CountingReader counting;
  for (uint64_t i = 0; i < 50; ++i) {
    counting.push(clock_packet(kClockPid, kWrap - 10 * kSecond / 10 + i * kSecond / 10)).push_null(89);
    for (int more = 0; more < 10; ++more) counting.push(packet({.pid = 0x200}, {}));
  }
  EXPECT_NEAR(counting.statistics.seconds(), 4.9, 1e-9);
  EXPECT_NEAR(counting.statistics.bit_rate(), 1000 * 188 * 8, 1e-6);
  EXPECT_NEAR(counting.statistics.bit_rate(0x200), 100 * 188 * 8, 1e-6);
  EXPECT_EQ(counting.statistics.pid(kClockPid).clock_references, 50u);
}

TEST(StreamStatistics, LeavesJumpsOfTheClockOut) {
  for (const bool stated : {false, true}) {
    CountingReader counting;
    uint64_t ticks = 0;
    for (int i = 0; i < 20; ++i) {
      ticks += kSecond / 10;
      const bool jumps = i == 10;
      if (jumps) ticks += stated ? kSecond / 2 : 100 * kSecond;
      counting.push(clock_packet(kClockPid, ticks, jumps && stated)).push_null(99);
    }
    EXPECT_NEAR(counting.statistics.seconds(), 1.8, 1e-9) << stated;
    EXPECT_NEAR(counting.statistics.bit_rate(), 1000 * 188 * 8, 1e-6) << stated;
  }
}

TEST(StreamStatistics, TakesAnotherClockWhereOneStops) {
  CountingReader counting;
  for (uint64_t i = 0; i < 10; ++i)
    counting.push(clock_packet(kClockPid, i * kSecond / 10))
        .push(clock_packet(0x200, i * kSecond / 5))
        .push_null(98);
  EXPECT_NEAR(counting.statistics.seconds(), 0.9, 1e-9);
  for (uint64_t i = 10; i < 1010; ++i) counting.push(clock_packet(0x200, i * kSecond / 10)).push_null(99);
  EXPECT_NEAR(counting.statistics.seconds(), 0.9 + (1000 - 499) / 10.0, 0.2);
  EXPECT_NEAR(counting.statistics.bit_rate(), 1000 * 188 * 8, 1);
}

TEST(StreamStatistics, RecordsHowOftenTablesAreSent) {
  CountingReader counting;
  const Bytes first = packets({pat_of({})}, {.pid = 0});
  int sent = 0;
  for (uint64_t i = 0; i < 100; ++i) {
    counting.push(clock_packet(kClockPid, i * kSecond / 10)).push_null(49);
    if (i % 5 == 0 || i == 51) {
      Bytes pat = first;
      pat[3] = static_cast<uint8_t>(0x10 | (sent++ & 0x0F));
      counting.push(pat);
    } else {
      counting.push_null(1);
    }
    counting.push_null(49);
  }
  // A section of another number is not the table's next one, one with a wrong CRC none at all.
  Bytes broken = pat_of({});
  broken.back() ^= 1;
  counting.push(packets({pat_of({}, {.section_number = 1}), broken}, {.pid = 0, .counter = sent}));
  const std::vector<TableRepetition> tables = counting.statistics.tables();
  ASSERT_EQ(tables.size(), 1u);
  EXPECT_EQ(tables[0].pid, 0);
  EXPECT_EQ(tables[0].table_id, 0);
  EXPECT_EQ(tables[0].extension, 0x1234);
  EXPECT_EQ(tables[0].count, 21u);
  // The first interval begins before the clock is known.
  EXPECT_EQ(tables[0].intervals, 19u);
  EXPECT_NEAR(tables[0].smallest, 0.1, 1e-6);
  EXPECT_NEAR(tables[0].largest, 0.5, 1e-6);
  EXPECT_NEAR(tables[0].mean, 9.0 / 19, 1e-6);
}

// By turns every tenth of a second: each is sent every three tenths.
TEST(StreamStatistics, TellsTablesOfOneExtensionApart) {
  const auto event_information = [](int transport_stream_id) {
    return long_section(0x4F,
                        bits({{16, static_cast<uint64_t>(transport_stream_id), "transport_stream_id"},
                              {16, 0x233A, "original_network_id"},
                              {8, 0, "segment_last_section_number"},
                              {8, 0x4F, "last_table_id"}}),
                        {.extension = 7});
  };
  const auto text = [](uint64_t etm_id) {
    return long_section(0xCC, bits({{8, 0, "protocol_version"}, {32, etm_id, "ETM_id"}}), {.extension = 7});
  };
  const std::vector<std::vector<Bytes>> turns = {
      {event_information(1), text(0x00010006)},
      {event_information(2), text(0x0001000A)},
      {long_section(0x4F, Bytes(6), {.extension = 7, .current_next = 0}), text(0x0001000E)},
  };
  CountingReader counting;
  for (uint64_t i = 0; i < 30; ++i) {
    counting.push(clock_packet(kClockPid, i * kSecond / 10)).push_null(98);
    counting.push(packets(turns[i % 3], {.pid = 0x12, .counter = static_cast<int>(i % 16)}));
  }
  const std::vector<TableRepetition> tables = counting.statistics.tables();
  ASSERT_EQ(tables.size(), 6u);
  for (const TableRepetition& table : tables) {
    EXPECT_EQ(table.extension, 7);
    EXPECT_EQ(table.count, 10u);
    EXPECT_NEAR(table.mean, 0.3, 1e-6);
    EXPECT_NEAR(table.largest, 0.3, 1e-6);
  }
  EXPECT_FALSE(tables[0].is_current);
  EXPECT_EQ(tables[1].transport_stream_id, 1);
  EXPECT_EQ(tables[2].transport_stream_id, 2);
  EXPECT_EQ(tables[2].original_network_id, 0x233A);
  EXPECT_EQ(tables[5].further_id, 0x0001000Eu);
}

TEST(StreamStatistics, RecordsABoundedNumberOfTables) {
  StreamStatistics statistics;
  for (int pid = 0; pid < 2; ++pid)
    for (int i = 0; i < 10000; ++i) {
      const Bytes bytes = long_section(0x80, {}, {.extension = i});
      statistics.on_section({pid, 0, bytes.data(), bytes.size(), true, true, false});
    }
  EXPECT_EQ(statistics.tables().size(), 16384u);
}
