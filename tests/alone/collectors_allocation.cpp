// What the collectors of tables, services and events take from the heap. A program of its own, as it counts
// all allocations.

#include "tests/alone/counted_heap.h"
#include "tests/stream/broadcast.h"
#include "tests/stream/collected.h"

#include <gtest/gtest.h>
#include <iostream>

#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr size_t kMiB = size_t{1} << 20;

uint64_t u(size_t value) {
  return static_cast<uint64_t>(value);
}

// What is taken from the heap from here on.
class Taken {
 public:
  Taken() : before_(live) { peak = before_; }
  size_t most() const { return peak - before_; }
  // Says it, and expects less.
  void expect_less_than(size_t bytes, const char* what) const {
    std::cout << what << ": at most " << most() / 1024 << " KiB\n";
    EXPECT_LT(most(), bytes) << what;
  }

 private:
  size_t before_;
};

// A section made of its number alone: another one for each, of another table.
Bytes numbered_section(int table_id, size_t number, size_t body_size, int version = 0) {
  Bytes body(body_size);
  for (size_t i = 0; i < body.size() && i < 4; ++i) body[i] = static_cast<uint8_t>(number >> (16 + 8 * i));
  return long_section(table_id, body, {.extension = static_cast<int>(number & 0xFFFF), .version = version});
}

Bytes eit_of(size_t service, int number, int version, size_t size) {
  Bytes body = bits({{16, u(service >> 16), "transport_stream_id"},
                     {16, 1, "original_network_id"},
                     {8, u(static_cast<size_t>(number | 7)), "segment_last_section_number"},
                     {8, 0x5F, "last_table_id"}});
  body.resize(std::max(size, body.size()), static_cast<uint8_t>(version));
  return long_section(0x50, body,
                      {.extension = static_cast<int>(service & 0xFFFF),
                       .version = version % 32,
                       .section_number = number,
                       .last_section_number = 0xFF});
}

TableEvent event_of(TableEvent::Kind kind, const TableId& table, const std::vector<Bytes>& sections) {
  return {kind, table, 0, 0, sections};
}

}  // namespace

TEST(CollectorsAllocation, IsNoneForARepetition) {
  ServiceDirectory directory;
  ScheduleCollector schedule;
  TableCollector tables([&](const TableEvent& event) { directory.push(event); });
  std::vector<Bytes> sections = {pat_of({{1, 0x100}}), pmt_of(1, {{2, 0x101}})};
  for (size_t service = 0; service < 100; ++service) sections.push_back(eit_of(service, 0, 0, 500));
  const auto push = [&](double seconds) {
    for (const Bytes& section : sections) {
      tables.push(stream_section(section, 0));
      schedule.push(stream_section(section, 0));
      tables.advance(seconds);
    }
  };
  push(0);
  const size_t before = allocations;
  for (int i = 1; i < 10; ++i) push(i * 0.1);
  EXPECT_EQ(allocations, before);
  EXPECT_EQ(directory.services().size(), 1u);
}

TEST(CollectorsAllocation, IsBoundedForTables) {
  for (const size_t size : {size_t{4}, size_t{300}, size_t{4080}}) {
    const Taken taken;
    uint64_t events = 0;
    TableCollector tables([&](const TableEvent&) { ++events; });
    for (size_t number = 0; number < (size > 1000 ? 40000u : 300000u); ++number)
      tables.push(stream_section(numbered_section(0x80, number, size), static_cast<int>(number >> 16)));
    taken.expect_less_than(33 * kMiB, "new tables");
    EXPECT_GT(events, 30000u);
    const size_t held = live;
    for (size_t number = 0; number < 20000; ++number)
      tables.push(stream_section(numbered_section(0x81, number, size), 0x20));
    EXPECT_LT(live, held + kMiB);
  }
}

TEST(CollectorsAllocation, IsBoundedForVersions) {
  const Taken taken;
  uint64_t events = 0;
  TableCollector tables([&](const TableEvent&) { ++events; });
  ScheduleCollector schedule;
  for (int version = 0; version < 300; ++version)
    for (int number = 0; number < 256; ++number) {
      const Bytes section = eit_of(1, number, version, 2000);
      tables.push(stream_section(section, 0x12));
      schedule.push(stream_section(section, 0x12));
    }
  EXPECT_EQ(events, 300u);
  taken.expect_less_than(4 * kMiB, "new versions");
}

// Ever new streams, networks and services, each of them described and with events, in ever new versions.
TEST(CollectorsAllocation, IsBoundedForSubTables) {
  const Taken taken;
  uint64_t forgotten = 0;
  ServiceDirectory directory;
  ScheduleCollector schedule;
  TableCollector tables([&](const TableEvent& event) {
    forgotten += event.kind == TableEvent::Kind::forgotten;
    directory.push(event);
  });
  const auto push = [&](const Bytes& section, int pid) {
    tables.push(stream_section(section, pid));
    schedule.push(stream_section(section, pid));
  };
  for (size_t number = 0; number < 150'000; ++number) {
    const size_t stream = number / 2;
    const int version = static_cast<int>(number % 2);
    const Bytes ids = bits({{16, u(stream * 40503 & 0xFFFF), "transport_stream_id"},
                            {16, u(stream >> 3), "original_network_id"},
                            {16, 0x004E, "segment_last_section_number, last_table_id"}});
    Bytes event = bits({{16, u(number & 0xFFFF), "event_id"}, {64, u(number), "start_time, duration"}});
    event.resize(12 + 200);
    event[10] = 0;
    event[11] = 200;
    const Bytes service =
        bits({{16, u(stream >> 3), "original_network_id"},
              {8, 0xFF, "reserved_future_use"},
              {16, u(stream & 0xFFFF), "service_id"},
              {8, 0xFF, "flags"},
              {16, u(static_cast<size_t>(version) << 13), "running_status, free_CA_mode, length"}});
    push(long_section(0x4E, joined({ids, event}),
                      {.extension = static_cast<int>(stream & 0xFFFF), .version = version}),
         0x12);
    push(long_section(0x46, service, {.extension = static_cast<int>(stream & 0xFFFF), .version = version}),
         0x11);
  }
  EXPECT_GT(forgotten, 1000u);
  EXPECT_GT(directory.services().size(), 1000u);
  EXPECT_GT(schedule.services().size(), 1000u);
  taken.expect_less_than((32 + 32 + 24) * kMiB, "new streams, networks and services");
}

TEST(CollectorsAllocation, IsBoundedForSchedules) {
  for (const size_t size : {size_t{6}, size_t{300}, size_t{4080}}) {
    const Taken taken;
    ScheduleCollector schedule;
    for (size_t service = 0; service < (size > 1000 ? 20000u : 200000u); ++service)
      schedule.push(stream_section(eit_of(service, 0, 0, size), 0x12));
    for (int table_id = 0; table_id < 17; ++table_id)
      for (int number = 0; number < 256; ++number) {
        Bytes section = eit_of(0, number, 0, size);
        section[0] = static_cast<uint8_t>(0x4F + table_id);
        section[13] = 0x6F;
        repair_crc(section);
        schedule.push(stream_section(section, 0x12));
      }
    taken.expect_less_than(33 * kMiB, "new services with events");
  }
}

// A service whose sections have as many events, items and contents as there can be.
TEST(CollectorsAllocation, IsBoundedForAListOfEvents) {
  const auto event = [](size_t id, const Bytes& descriptors) {
    return joined({bits({{16, u(id & 0xFFFF), "event_id"},
                         {16, 60676, "MJD"},
                         {24, u(id & 0x7FFFFF), "UTC"},
                         {24, 0, "duration"},
                         {4, 0, "running_status, free_CA_mode"},
                         {12, descriptors.size(), "descriptors_loop_length"}}),
                   descriptors});
  };
  Bytes items = joined({{0x00}, text("eng"), {248}, Bytes(248), {0}});
  const Bytes extended = descriptor(0x4E, items);
  const Bytes contents = descriptor(0x54, Bytes(254));
  for (const bool has_descriptors : {false, true}) {
    ScheduleCollector schedule;
    const Taken taken;
    size_t id = 0;
    for (int table_id = 0x50; table_id < 0x52; ++table_id)
      for (int number = 0; number < 256; ++number) {
        Bytes body = bits({{16, 1, "transport_stream_id"},
                           {16, 1, "original_network_id"},
                           {8, u(static_cast<size_t>(number | 7)), "segment_last_section_number"},
                           {8, 0x5F, "last_table_id"}});
        while (body.size() < 3500)
          body =
              joined({body, has_descriptors ? event(++id, joined({extended, contents})) : event(++id, {})});
        schedule.push(stream_section(
            long_section(table_id, body,
                         {.extension = 1, .section_number = number, .last_section_number = 255}),
            0x12));
      }
    const size_t stored = live;
    peak = live.load();
    EXPECT_GT(schedule.events({1, 1, 1}).size(), 3000u);
    std::cout << "a list: " << (peak - stored) / 1024 << " KiB\n";
    EXPECT_LT(peak - stored, 80 * kMiB);
  }
}

TEST(CollectorsAllocation, IsBoundedForServices) {
  using Kind = TableEvent::Kind;
  const auto service = [](size_t id, const std::string& name) {
    const Bytes descriptors =
        name.empty() ? Bytes() : descriptor(0x48, joined({{1}, counted("P"), counted(name)}));
    return joined({bits({{16, u(id), "service_id"},
                         {8, 0xFF, "flags"},
                         {4, 0, "running_status, free_CA_mode"},
                         {12, descriptors.size(), "descriptors_loop_length"}}),
                   descriptors});
  };
  for (const std::string& name : {std::string(), std::string(240, '\xE1')}) {
    const Taken taken;
    ServiceDirectory directory;
    for (size_t stream = 0; stream < 4; ++stream) {
      std::vector<Bytes> sections;
      size_t id = 0;
      for (int number = 0; number < 256; ++number) {
        Bytes body = {0x00, 0x01, 0xFF};
        while (body.size() < (name.empty() ? 1200 : 3500)) body = joined({body, service(id++, name)});
        sections.push_back(long_section(
            stream == 0 ? 0x42 : 0x46, body,
            {.extension = static_cast<int>(stream), .section_number = number, .last_section_number = 255}));
      }
      directory.push(event_of(
          Kind::complete,
          {.pid = 0x11, .table_id = stream == 0 ? 0x42 : 0x46, .extension = static_cast<int>(stream)},
          sections));
    }
    EXPECT_GT(directory.services().size(), 2000u);
    taken.expect_less_than(24 * kMiB + 2 * kMiB, "services");  // and the sections themselves
  }

  const Taken taken;
  ServiceDirectory directory;
  const Bytes languages = [] {
    Bytes out;
    for (int i = 0; i < 63; ++i)
      out = joined({out, bits({{24, u(0x616161) + u(static_cast<size_t>(i)), "code"}, {8, 0, "type"}})});
    return descriptor(0x0A, out);
  }();
  for (int program = 1; program < 5000; ++program) {
    std::vector<MapRow> rows;
    if (program % 2)
      for (int i = 0; i < 12; ++i) rows.push_back({2, i, languages});
    else
      for (int i = 0; i < 200; ++i) rows.push_back({2, i});
    directory.push(event_of(Kind::complete, {.pid = 0x20 + program, .table_id = 0x02, .extension = program},
                            {pmt_of(program, rows)}));
  }
  EXPECT_GT(directory.services().size(), 100u);
  taken.expect_less_than(24 * kMiB, "programs");
  // All that is gone makes room.
  for (int program = 1; program < 5000; ++program)
    directory.push(event_of(Kind::gone, {.pid = 0x20 + program, .table_id = 0x02, .extension = program}, {}));
  EXPECT_TRUE(directory.services().empty());
  directory.push(
      event_of(Kind::complete, {.pid = 0x20, .table_id = 0x02, .extension = 1}, {pmt_of(1, {{2, 3}})}));
  EXPECT_EQ(directory.services().size(), 1u);
}

// bench/soak.cpp has more services each minute, in packets.
TEST(CollectorsAllocation, IsTheSameOnEachDayOfABroadcast) {
  constexpr size_t kHours = 24;
  Broadcast broadcast(6);
  BroadcastReceiver receiver;
  std::vector<size_t> held;
  held.reserve(3 * kHours);
  for (Broadcast::Time now = Broadcast::kBegin; held.size() < held.capacity();
       now += std::chrono::minutes(5)) {
    for (const Bytes& section : broadcast.sections(now)) receiver.push(stream_section(section, 0x12));
    if (now != std::chrono::floor<std::chrono::hours>(now)) continue;
    EXPECT_EQ(receiver.now(), now);
    EXPECT_EQ(receiver.wrong_services(broadcast), 0) << "after " << held.size() << " hours";
    held.push_back(live);
  }
  for (size_t hour = 0; hour < kHours; ++hour)
    EXPECT_EQ(held[hour + 2 * kHours], held[hour + kHours]) << "hour " << hour;
}
