// Lists the services of a transport stream, with the streams of each.
#include <fstream>
#include <iomanip>
#include <iostream>

#include <quillon/quillon.h>

void print(const quillon::Service& service) {
  std::cout << service.service_id << "  " << service.name;
  if (!service.provider.empty()) std::cout << " (" << service.provider << ")";
  std::cout << (service.is_actual ? "" : ", in another stream") << "\n";
  for (const auto& stream : service.streams) {
    std::cout << "  PID " << std::setw(4) << stream.pid << "  " << stream.content;
    for (const auto& language : stream.languages) std::cout << " " << language;
    std::cout << (stream.ca.empty() ? "" : ", scrambled") << "\n";
  }
}

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::ServiceDirectory directory;
  quillon::TableCollector tables([&](const quillon::TableEvent& event) { directory.push(event); });
  quillon::SectionReader sections([&](const quillon::StreamSection& section) { tables.push(section); });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
  for (const quillon::Service* service : directory.services()) print(*service);
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
