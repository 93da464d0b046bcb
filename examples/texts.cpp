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

class Tables : public quillon::DemuxIstream {
 public:
  explicit Tables(std::istream& stream) : DemuxIstream(stream) {
    for (const int pid : {0x00, 0x01, 0x10, 0x11, 0x12, 0x14}) add_psi_handler(pid, nullptr, nullptr, 0, 0);
  }

 private:
  using DemuxIstream::on_psi_section;
  void on_psi_section(unsigned long, int size, uint8_t* section) override {
    const auto table = quillon::AnyTable::for_table_id(section[0], quillon::Standard::dvb);
    if (!table) return;
    table->set_reading(quillon::Reading::standard);
    try {
      table->Parse(section, static_cast<size_t>(size), false);
      Texts texts;
      table->walk(texts);
    } catch (const quillon::error& e) {
      std::cerr << table->get_table_id_text() << ": " << e.what() << "\n";
    }
  }
};

int main(int argc, char** argv) {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  Tables(file).start();
}
