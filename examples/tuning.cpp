// Prints how to tune to the streams of a network: its NIT, whose descriptors are visited by type.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

void print(const quillon::TableEvent& event) {
  if (event.table.table_id != 0x40 || !event.is_there()) return;
  quillon::Nit network;
  network.set_reading(quillon::Reading::standard);
  for (const auto& section : event.sections) network.Parse(section);
  for (const auto& stream : network.get_stream_infos()) {
    std::cout << "network " << network.get_network_id() << ", transport stream "
              << stream.get_transport_stream_id() << "\n";
    for (const quillon::AnyDescriptor& descriptor : stream.descriptors())
      descriptor.visit(
          [](const quillon::DescriptorTerrestrialDeliverySystem& d) {
            std::cout << "  " << d.centre_frequency / 1e5 << " MHz, " << d.get_bandwidth_text() << "\n";
          },
          [](const quillon::DescriptorCableDeliverySystem& d) {
            std::cout << "  " << d.frequency << " MHz, " << d.symbol_rate << " Msymbol/s\n";
          },
          [](const quillon::DescriptorSatelliteDeliverySystem& d) {
            std::cout << "  " << d.frequency << " GHz, " << d.orbital_position << " degrees\n";
          });
  }
}

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::TableCollector tables(print);
  quillon::SectionReader sections([&](const quillon::StreamSection& section) { tables.push(section); });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
