// Decodes a private descriptor from its bytes, found by its position: the logical channel numbers of EACEM.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

// The numbers of a row of the NIT, if its private data is EACEM's: 16 bits of service_id, 1 of
// visible_service, 5 reserved, 10 of number.
void print_numbers(const quillon::Nit& network, const quillon::Nit::Stream_info& stream) {
  uint32_t specifier = 0;
  for (const int position : stream.get_descriptor_pos()) {
    const uint8_t* const bytes = network.get_section_ptr_by_desc_pos(position);
    const quillon::ByteView descriptor(bytes, bytes[1] + size_t{2});
    if (descriptor[0] == 0x5F) specifier = descriptor.u32(2);
    if (descriptor[0] != 0x83 || specifier != 0x28) continue;
    for (int at = 2; descriptor.reaches(at + 4); at += 4)
      std::cout << "service " << descriptor.u16(at) << ": channel " << descriptor.bits(at + 2, 1, 10)
                << (descriptor.bits(at + 2, 7, 1) ? "\n" : ", hidden\n");
  }
}

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::SectionReader sections([](const quillon::StreamSection& section) {
    if (section.table_id() != 0x40 || !section.crc_ok) return;
    quillon::Nit network;
    network.Parse(section.span(), true);  // positions need the bytes kept
    for (const auto& stream : network.get_stream_infos()) print_numbers(network, stream);
  });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
