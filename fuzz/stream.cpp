#include "fuzz/packets.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

#include <algorithm>

#include <quillon/sections/crc.h>
#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/stream_statistics.h>
#include <quillon/stream/table_collector.h>

namespace quillon::fuzz {

namespace {

// All that a stream gives, as bytes, so that two readings can be compared.
struct Outcome {
  Bytes packets;
  Bytes sections;
  std::vector<uint64_t> numbers;

  bool operator==(const Outcome&) const = default;
};

// Reads `stream` in pieces of the sizes that `next_size` gives. Each is a copy of its own.
template <class NextSize>
Outcome read(const Bytes& stream, uint8_t choice, NextSize next_size) {
  Outcome out;
  StreamStatistics statistics;
  ServiceDirectory directory;
  ScheduleCollector schedule;
  TableCollector tables([&](const TableEvent& event) {
    require(!event.sections.empty());
    out.numbers.push_back(static_cast<uint64_t>(event.kind));
    directory.push(event);
  });
  SectionReader sections(
      [&](const StreamSection& section) {
        require(section.size >= 3 &&
                section.size == ((section.bytes[1] & 0x0Fu) << 8 | section.bytes[2]) + 3u);
        require(section.crc_ok ==
                (section.has_crc && section_crc(section.bytes, section.size) == good_section_crc));
        require(!section.repeated || choice & 8);
        out.sections.insert(out.sections.end(), section.bytes, section.bytes + section.size);
        out.numbers.insert(out.numbers.end(), {static_cast<uint64_t>(section.pid), section.packet});
        statistics.on_section(section);
        tables.push(section);
        schedule.push(section);
        if (choice & 16) sections.remove_pid(section.pid);
      },
      {.pids = {0x100, 0x101}, .every_pid = (choice & 4) != 0, .repeats = (choice & 8) != 0});
  PacketReader reader;
  uint64_t position = 0;
  const auto take = [&] {
    TsPacket packet;
    while (reader.next(packet)) {
      require(packet.data[0] == 0x47 && packet.position + TsPacket::size <= stream.size());
      require(std::equal(packet.data, packet.data + TsPacket::size, stream.data() + packet.position));
      require(packet.index == 0 || packet.position > position);
      position = packet.position;
      out.packets.insert(out.packets.end(), packet.data, packet.data + TsPacket::size);
      out.numbers.insert(out.numbers.end(), {packet.index, packet.position, packet.after_gap});
      statistics.push(packet);
      sections.push(packet);
      tables.advance(static_cast<double>(packet.index));
    }
  };
  for (size_t at = 0; at < stream.size();) {
    const size_t size = std::min<size_t>(next_size(), stream.size() - at);
    const Bytes piece(stream.begin() + static_cast<ptrdiff_t>(at),
                      stream.begin() + static_cast<ptrdiff_t>(at + size));
    reader.feed(piece.data(), piece.size());
    take();
    at += size;
  }
  reader.finish();
  take();
  require(reader.position() == stream.size() && reader.skipped() <= stream.size());
  require(reader.sync_losses() == statistics.sync_losses() && reader.packets() == statistics.packets());
  for (const TableRepetition& table : statistics.tables())
    require(table.smallest <= table.mean + 1e-6 && table.mean <= table.largest + 1e-6);
  for (const Service* const service : directory.services()) out.numbers.push_back(service->revision);
  for (const ServiceId& service : schedule.services()) {
    const std::vector<ScheduledEvent> events = schedule.events(service);
    out.numbers.push_back(events.size());
    for (size_t i = 1; i < events.size(); ++i)
      require(!events[i].start || (events[i - 1].start && *events[i - 1].start <= *events[i].start));
  }
  out.numbers.insert(out.numbers.end(), {reader.skipped(), reader.sync_losses(), reader.stride()});
  return out;
}

}  // namespace

void stream(const uint8_t* data, size_t size) {
  const auto [choice, chance, bytes] = make_stream(data, size);
  const Outcome whole = read(bytes, choice, [size = bytes.size()] { return size; });
  uint32_t state = chance;
  const Outcome apart = read(bytes, choice, [&state, most = 2u + chance % 11u] {
    state = state * 1664525 + 1013904223;
    return size_t{1} << (state >> 24) % most;
  });
  require(whole == apart);
}

}  // namespace quillon::fuzz
