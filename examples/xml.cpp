// Saves the tables of a transport stream as XML text, and loads them again; to_file and from_file keep it.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::xml::Document saved;
  const quillon::xml::DomElement root = saved.add_root("tables");
  quillon::SectionReader sections([&](const quillon::StreamSection& section) {
    const auto table = quillon::AnyTable::for_table_id(section.table_id(), sections.standard());
    if (!table) return;
    try {
      table->Parse(section.span());
      table->SaveSection(saved, saved.append_element(root, table->element()));
    } catch (const quillon::error& e) {
      std::cerr << table->element() << ": " << e.what() << "\n";
    }
  });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");

  const auto loaded = quillon::xml::Document::from_text(saved.to_text());
  for (const quillon::xml::DomElement element : loaded.children(loaded.root_element())) {
    const auto table = quillon::AnyTable::for_element(loaded.name(element));
    table->ParseDOM(element);
    std::cout << table->element() << ": " << table->get_table_id_text() << "\n";
  }
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
