// Many gibibytes of packets through one process, damaged now and then: assembled, parsed, reported and saved;
// and read by the readers of streams, with a schedule that is never the same twice. Nothing may pile up. Exit
// code 1 if the resident set grew by more than a MiB after the first GiB.
// Or hours of a guide, of 50 services each minute by its own time table: exit code 1 if at the end of an hour
// the events of a service are other ones than those broadcast, or if the resident set grew by more than a MiB
// after the third hour.
//
//   soak GIB
//   soak guide HOURS

#include "bench/streams.h"
#include "bench/tables.h"
#include "tests/stream/broadcast.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <unistd.h>

#include <quillon/sections/crc.h>

using namespace quillon;
using namespace quillon::bench;

namespace {

constexpr size_t kChunk = size_t{512} * 188;
constexpr uint64_t kGiB = uint64_t{1} << 30;
constexpr long kMostGrowth = 1024;  // KiB

// In KiB.
long resident_set() {
  std::ifstream statm("/proc/self/statm");
  long all = 0, resident = 0;
  statm >> all >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

class Viewer : public DemuxPush {
 public:
  Viewer() { add_handlers(*this); }

  uint64_t parsed = 0;
  uint64_t refused = 0;
  uint64_t reports = 0;
  uint64_t documents = 0;

 private:
  using DemuxPush::on_psi_section;
  void on_psi_section(int, int table_id, int, const uint8_t* section) override {
    try {
      with_class_of(table_id, [&](auto table) { take<typename decltype(table)::type>(section); });
    } catch (const error&) {
      ++refused;
    }
  }

  template <class Table>
  void take(const uint8_t* section) {
    Table table;
    table.set_tolerant(parsed % 2);
    const bool report = parsed % 61 == 0;
    const bool save = parsed % 127 == 0;
    table.Parse(section, parsed % 3 == 0);
    ++parsed;
    if (report) {
      std::ostringstream text;
      table.dump_state(text);
      ++reports;
    }
    if (save) {
      xml::Document document;
      table.SaveSection(document.dom(), document.create_root("t"));
      Table again;
      ++documents;
      again.ParseDOM(xml::Document::from_text(document.to_text()).root());
    }
  }
};

// The schedule of each service, a table of one section, in packets; each is made anew.
class Schedule {
 public:
  void append_round(std::vector<uint8_t>& out) {
    ++round_;
    for (int service = 0; service < kServices; ++service)
      append(whole(eit_section(service, 0x50, 0, static_cast<int>(round_ % 32), round_)), out);
  }

 private:
  static std::vector<uint8_t> whole(std::vector<uint8_t> section) {
    section[7] = section[12] = 0;  // last_section_number, segment_last_section_number
    const size_t size = section.size() - 4;
    const uint32_t crc = ~section_crc(section.data(), size);
    for (size_t i = 0; i < 4; ++i) section[size + i] = static_cast<uint8_t>(crc >> (24 - 8 * i));
    return section;
  }

  void append(const std::vector<uint8_t>& section, std::vector<uint8_t>& out) {
    constexpr size_t kPayload = 184;
    for (size_t at = 0; at < section.size();) {
      const size_t end = out.size() + 188;
      const bool first = at == 0;
      out.insert(out.end(), {0x47, static_cast<uint8_t>(first ? 0x40 : 0x00), kEitPid,
                             static_cast<uint8_t>(0x10 | (counter_++ & 0x0F))});
      if (first) out.push_back(0);
      const size_t taken = std::min(kPayload - (first ? 1 : 0), section.size() - at);
      const auto from = section.begin() + static_cast<ptrdiff_t>(at);
      out.insert(out.end(), from, from + static_cast<ptrdiff_t>(taken));
      out.resize(end, 0xFF);
      at += taken;
    }
  }

  uint32_t round_ = 0;
  unsigned counter_ = 0;
};

class Reader {
 public:
  void push(const std::vector<uint8_t>& bytes) {
    packets_.feed(bytes.data(), bytes.size());
    TsPacket packet;
    while (packets_.next(packet)) {
      statistics_.push(packet);
      sections_.push(packet);
      tables_.advance(statistics_.seconds());
    }
  }

  uint64_t sections = 0;
  uint64_t tables = 0;

 private:
  PacketReader packets_;
  StreamStatistics statistics_;
  ServiceDirectory directory_;
  ScheduleCollector schedule_;
  TableCollector tables_{[this](const TableEvent& event) {
    ++tables;
    directory_.push(event);
  }};
  SectionReader sections_{[this](const StreamSection& section) {
                            ++sections;
                            statistics_.on_section(section);
                            tables_.push(section);
                            schedule_.push(section);
                          },
                          {.every_pid = true, .repeats = true}};
};

int soak_guide(int hours) {
  test::Broadcast broadcast(50);
  test::BroadcastReceiver receiver;
  uint64_t pushed = 0;
  int wrong = 0;
  long after_third = 0;
  long resident = 0;
  std::printf("hour  MiB read  services with wrong events  resident set, KiB\n");
  for (int hour = 0; hour <= hours; ++hour) {
    const auto begin = test::Broadcast::kBegin + std::chrono::hours(hour);
    for (int minute = 0; minute < 60; ++minute) {
      const auto bytes = broadcast.packets_of(begin + std::chrono::minutes(minute));
      pushed += bytes.size();
      receiver.push(bytes);
    }
    const int now_wrong = receiver.wrong_services(broadcast);
    wrong += now_wrong;
    resident = resident_set();
    if (hour <= 3) after_third = resident;
    std::printf("%4d  %8llu  %26d  %17ld\n", hour, static_cast<unsigned long long>(pushed >> 20), now_wrong,
                resident);
  }
  // A section reader keeps 32 bytes of each time table, as none comes again; of its room a quarter may be in
  // use.
  const long digests = hours * 60L * 32 * 4 / 1024;
  return wrong > 0 || resident - after_third > kMostGrowth + digests ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::string_view(argv[1]) == "guide" && std::atoi(argv[2]) > 0)
    return soak_guide(std::atoi(argv[2]));
  const double gibibytes = argc == 2 ? std::atof(argv[1]) : 0;
  if (gibibytes <= 0) {
    std::cerr << "soak GIB\nsoak guide HOURS\n";
    return 2;
  }
  const auto bytes_to_go = static_cast<uint64_t>(gibibytes * static_cast<double>(kGiB));
  std::vector<uint8_t> stream = mux(size_t{48} << 20).bytes;
  {
    const std::vector<uint8_t> heavy = si(size_t{16} << 20).bytes;
    stream.insert(stream.end(), heavy.begin(), heavy.end());
  }
  stream.resize(stream.size() / kChunk * kChunk);

  Viewer viewer;
  Reader reader;
  Schedule schedule;
  std::vector<uint8_t> chunk(kChunk);
  std::vector<uint8_t> fresh;
  uint32_t random = 1;
  uint64_t pushed = 0;
  uint64_t damaged = 0;
  const long at_start = resident_set();
  long after_first = 0;
  const auto start = std::chrono::steady_clock::now();
  for (size_t at = 0; pushed < bytes_to_go; at = (at + kChunk) % stream.size()) {
    std::copy_n(stream.begin() + static_cast<ptrdiff_t>(at), kChunk, chunk.begin());
    // One chunk in four has a byte that is wrong, be it of a header, a length or a text.
    random = random * 1664525 + 1013904223;
    if (random >> 30 == 0) {
      chunk[(random >> 8) % kChunk] = static_cast<uint8_t>(random >> 4);
      ++damaged;
    }
    viewer.push_data(chunk.data(), static_cast<int>(kChunk));
    pushed += kChunk;
    // Once in the time of eight chunks, as the makers of sections are slower than their readers.
    fresh.assign(chunk.begin(), chunk.end());
    if (pushed / kChunk % 8 == 0) schedule.append_round(fresh);
    reader.push(fresh);
    if (!after_first && pushed >= kGiB) after_first = resident_set();
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  const long at_end = resident_set();
  if (!after_first) after_first = at_end;

  std::printf("%.2f GiB in %.1f s, %llu bytes damaged\n",
              static_cast<double>(pushed) / static_cast<double>(kGiB), took.count(),
              static_cast<unsigned long long>(damaged));
  std::printf("%llu sections parsed, %llu refused, %llu reports, %llu documents\n",
              static_cast<unsigned long long>(viewer.parsed), static_cast<unsigned long long>(viewer.refused),
              static_cast<unsigned long long>(viewer.reports),
              static_cast<unsigned long long>(viewer.documents));
  std::printf("%llu sections and %llu tables met by the readers\n",
              static_cast<unsigned long long>(reader.sections),
              static_cast<unsigned long long>(reader.tables));
  std::printf("resident set: %ld KiB at the start, %ld after the first GiB, %ld at the end\n", at_start,
              after_first, at_end);
  return at_end - after_first > kMostGrowth ? 1 : 0;
}
