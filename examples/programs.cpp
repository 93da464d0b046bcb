// Prints the programs of a transport stream and the streams of each.
#include <fstream>
#include <iostream>

#include <quillon/quillon.h>

class Programs : public quillon::DemuxIstream {
 public:
  explicit Programs(std::istream& stream) : DemuxIstream(stream) { add_psi_handler(0, 0x00); }

 private:
  void on_psi_section(int pid, int table_id, int, const uint8_t* section) override {
    if (table_id == 0x00) {
      quillon::Pat pat;
      pat.Parse(section, false);
      for (const auto& program : pat.get_program_info()) add_psi_handler(program.get_program_map_pid(), 0x02);
    } else {
      quillon::PmtDVB pmt;
      pmt.Parse(section, false);
      std::cout << "program " << pmt.get_program_number() << ":\n";
      for (const auto& row : pmt.get_pmt_stream_info())
        std::cout << "  PID " << row.get_elementary_pid() << ", " << row.get_stream_type_cstr() << "\n";
    }
    remove_psi_handler(pid, table_id);  // once is enough
  }
};

int main(int argc, char** argv) {
  std::ifstream file(argc > 1 ? argv[1] : "data/sample.ts", std::ios::binary);
  Programs(file).start();
}
