// Prints every text in the tables of a transport stream, with the name of its field.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

class Texts : public quillon::FieldSink {
 public:
  void text(const char* name, std::string_view utf8) override {
    if (!utf8.empty()) std::cout << name << ": " << utf8 << "\n";
  }
};

void print_texts(const quillon::StreamSection& section, quillon::Standard standard) try {
  const auto table = quillon::AnyTable::for_table_id(section.table_id(), standard);
  if (!table) return;
  table->set_reading(quillon::Reading::standard);
  table->Parse(section.span());
  Texts texts;
  table->walk(texts);
} catch (const quillon::error& e) {
  std::cerr << "PID " << section.pid << ": " << e.what() << "\n";
}

int main(int argc, char** argv) {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::PacketReader packets;
  quillon::SectionReader sections([&](const auto& section) { print_texts(section, sections.standard()); });
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) std::cerr << "no transport stream\n";
  return packets.packets() == 0;
}
