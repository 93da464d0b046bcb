// Prints the programs of a transport stream and the streams of each.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

void print_program(const quillon::StreamSection& section) try {
  if (section.table_id() != 0x02) return;
  quillon::PmtDVB map;
  map.Parse(section.span());
  std::cout << "program " << map.get_program_number() << ":\n";
  for (const auto& row : map.get_pmt_stream_info())
    std::cout << "  PID " << row.get_elementary_pid() << ", " << row.get_stream_type_cstr() << "\n";
} catch (const quillon::error& e) {
  std::cerr << "PID " << section.pid << ": " << e.what() << "\n";
}

int main(int argc, char** argv) {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::PacketReader packets;
  quillon::SectionReader sections(print_program);
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) std::cerr << "no transport stream\n";
  return packets.packets() == 0;
}
