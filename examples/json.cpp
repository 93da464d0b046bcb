// Prints each section as a line of JSON: its numbers and texts, as its table hands them to a sink.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

struct Json : quillon::FieldSink {
  explicit Json(const quillon::AnyTable& table) { std::cout << '{', table.walk(*this), std::cout << "}\n"; }
  std::ostream& next(const std::string& name) {
    return std::cout << std::exchange(comma_, ",") << (ends_.back() == '}' ? '"' + name + "\":" : "");
  }
  void number(const char* name, int64_t value, const char*) override { next(name) << value; }
  void text(const char* name, std::string_view utf8) override {
    next(name) << '"';
    for (char c : utf8) std::cout << (c == '"' || c == '\\' ? "\\" : "") << (c >= 0 && c < ' ' ? ' ' : c);
    std::cout << '"';
  }
  void begin(const char* name, const char*) override { next(name) << '{', comma_ = "", ends_ += '}'; }
  void begin_list(const char* name, size_t) override { next(name) << '[', comma_ = "", ends_ += ']'; }
  void end() override { std::cout << ends_.back(), comma_ = ",", ends_.pop_back(); }
  const char* comma_ = "";
  std::string ends_ = "}";  // of what is open
};

int main(int argc, char** argv) try {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  quillon::SectionReader sections([&](const quillon::StreamSection& section) {
    const auto table = quillon::AnyTable::for_table_id(section.table_id(), sections.standard());
    if (!table || section.has_crc != section.crc_ok) return;
    table->set_reading(quillon::Reading::standard);
    table->Parse(section.span());
    Json json(*table);
  });
  quillon::PacketReader packets;
  quillon::for_each_packet(file, packets, [&](const quillon::TsPacket& packet) { sections.push(packet); });
  if (packets.packets() == 0) throw quillon::error("no transport stream");
} catch (const std::exception& e) {
  std::cerr << e.what() << "\n";
  return 1;
}
