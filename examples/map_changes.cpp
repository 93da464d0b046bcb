// Tells of program maps that change, as bytes are pushed that come live: in datagrams, say, of a size like
// any.
#include <array>
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

void print_change(const quillon::TableEvent& event) {
  if (event.table.table_id != 0x02 || event.kind != quillon::TableEvent::Kind::changed) return;
  quillon::PmtDVB map;
  for (const auto& section : event.sections) map.Parse(section);
  std::cout << "program " << map.get_program_number() << ": version " << event.old_version << " is now "
            << event.version << "\n";
  for (const auto& stream : map.get_pmt_stream_info())
    std::cout << "  PID " << stream.get_elementary_pid() << ", " << stream.get_stream_type_cstr() << "\n";
}

int main(int argc, char** argv) try {
  std::ifstream feed(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::TableCollector tables(print_change);
  quillon::SectionReader sections([&](const quillon::StreamSection& section) { tables.push(section); });
  quillon::PacketReader packets;
  const auto push = [&] {
    for (quillon::TsPacket packet; packets.next(packet);) sections.push(packet);
  };
  std::array<char, 1000> datagram;
  while (feed.read(datagram.data(), datagram.size()), feed.gcount() > 0) {
    packets.feed(reinterpret_cast<const uint8_t*>(datagram.data()), static_cast<size_t>(feed.gcount()));
    push();
  }
  packets.finish();
  push();
  if (packets.packets() == 0) throw quillon::error("no transport stream");
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
