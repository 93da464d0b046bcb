// Lists the CA systems of a transport stream: where their EMMs are, and the ECMs of each service.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

void print(const char* what, const std::vector<quillon::CaStream>& streams) {
  for (const quillon::CaStream& ca : streams)
    std::cout << "  " << what << " on PID " << ca.pid << ": system " << ca.ca_system_id << ", "
              << quillon::get_ca_system_id(ca.ca_system_id) << "\n";
}

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::init();  // the names
  quillon::ServiceDirectory directory;
  quillon::TableCollector tables([&](const quillon::TableEvent& event) { directory.push(event); });
  quillon::SectionReader sections([&](const quillon::StreamSection& section) { tables.push(section); });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
  std::cout << "transport stream\n";
  print("EMMs", directory.emms());
  for (const quillon::Service* service : directory.services()) {
    if (service->ca.empty()) continue;
    std::cout << "service " << service->service_id << ", " << service->name << "\n";
    print("ECMs", service->ca);
  }
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
