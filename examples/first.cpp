// Lists the services of a transport stream.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

int main(int argc, char** argv) {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::ServiceDirectory directory;
  quillon::TableCollector tables([&](const quillon::TableEvent& event) { directory.push(event); });
  quillon::SectionReader sections([&](const quillon::StreamSection& section) { tables.push(section); });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  for (const quillon::Service* service : directory.services())
    std::cout << service->service_id << "  " << service->name << "\n";
}
