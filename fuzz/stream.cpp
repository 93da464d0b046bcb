#include "fuzz/require.h"
#include "fuzz/structure.h"
#include "fuzz/targets.h"

#include <algorithm>

#include <quillon/sections/crc.h>
#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/stream_statistics.h>
#include <quillon/stream/table_collector.h>

namespace quillon::fuzz {

namespace {

constexpr size_t kStrides[] = {188, 192, 204, 208};
constexpr int kPids[] = {0x0000, 0x0020, 0x0021, 0x1FFB, 0x0011, 0x0014, 0x0100, 0x0101};

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

// Packets of sections: of each record a PID, a size, and bytes that are made whole.
Bytes made_packets(const uint8_t* data, size_t size, size_t stride) {
  Bytes out;
  uint8_t counters[std::size(kPids)] = {};
  while (size > 3) {
    const size_t number = data[0] % std::size(kPids);
    Bytes section(data + 2, data + 2 + std::min<size_t>(data[1] + 3u, size - 2));
    data += 2 + section.size();
    size -= 2 + section.size();
    if (section.size() < 3) break;
    repair(section);
    for (size_t at = 0; at < section.size();) {
      const size_t room = at == 0 ? 183 : 184;
      const size_t taken = std::min(room, section.size() - at);
      Bytes packet = {0x47, static_cast<uint8_t>((at == 0 ? 0x40 : 0) | kPids[number] >> 8),
                      static_cast<uint8_t>(kPids[number]),
                      static_cast<uint8_t>(0x10 | (counters[number]++ & 0x0F))};
      if (at == 0) packet.push_back(0);
      packet.insert(packet.end(), section.begin() + static_cast<ptrdiff_t>(at),
                    section.begin() + static_cast<ptrdiff_t>(at + taken));
      packet.resize(stride, 0xFF);
      out.insert(out.end(), packet.begin(), packet.end());
      at += taken;
    }
  }
  return out;
}

}  // namespace

void stream(const uint8_t* data, size_t size) {
  if (size < 2) return;
  const uint8_t choice = data[0];
  const uint8_t pieces = data[1];
  data += 2;
  size -= 2;
  const size_t stride = kStrides[choice >> 6];
  Bytes bytes(data, data + size);
  if (choice & 1) bytes = made_packets(data, size, stride);
  // Sync bytes where they belong, for the most part.
  if (choice & 2)
    for (size_t at = 0; at < bytes.size(); at += stride)
      if (bytes[at] % 16 != 0) bytes[at] = 0x47;

  const Outcome whole = read(bytes, choice, [&] { return bytes.size(); });
  uint32_t state = pieces;
  const Outcome apart = read(bytes, choice, [&] {
    state = state * 1664525 + 1013904223;
    return size_t{1} << (state >> 24) % (2 + pieces % 11);
  });
  require(whole == apart);
}

}  // namespace quillon::fuzz
