// What may run on several threads at a time: demultiplexers, tables and documents that belong to one thread
// each, lookups in the registries, the log with its lock. The thread sanitizer watches; the counts are looked
// at too. Needs the library alone.

#include "bench/tables.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <quillon/platform/internal/log_file.h>
#include <quillon/quillon.h>

using namespace quillon;

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 20;

// The tables of the bundled stream as text, twice: reported, and saved and reported again.
class Reader : public DemuxPush {
 public:
  Reader() {
    add_psi_handler(0x0000, 0x00);
    add_psi_handler(0x0010, 0x40);
    add_psi_handler(0x0011, 0x42);
    add_psi_handler(0x0012, 0x4E);
    for (const int pid : {0x0100, 0x0200}) add_psi_handler(pid, 0x02);
  }

  std::string text;
  int sections = 0;

 private:
  using DemuxPush::on_psi_section;
  void on_psi_section(int, int table_id, int, const uint8_t* section) override {
    ++sections;
    bench::with_class_of(table_id, [&](auto table) { take<typename decltype(table)::type>(section); });
  }

  template <class Table>
  void take(const uint8_t* section) {
    Table table;
    table.Parse(section, true);
    xml::Document document;
    table.SaveSection(document.dom(), document.create_root("t"));
    Table again;
    again.ParseDOM(xml::Document::from_text(document.to_text()).root());
    std::ostringstream out;
    table.dump_state(out);
    again.dump_state(out);
    text += out.str();
  }
};

size_t look_everything_up() {
  using NameOf = const char* (*)(int);
  static constexpr std::pair<registry_kind, NameOf> kRegistries[] = {
      {registry_kind::network, get_network_id},
      {registry_kind::original_network, get_original_network_id},
      {registry_kind::bouquet, get_bouquet_id},
      {registry_kind::ca_system, get_ca_system_id},
      {registry_kind::data_broadcast, get_data_broadcast_id},
      {registry_kind::mhp_organisation, get_mhp_id},
      {registry_kind::private_data, get_private_data_id},
  };
  size_t length = 0;
  for (const auto& [kind, name_of] : kRegistries)
    for (const registry_row& row : get_registry_rows(kind)) length += std::string(name_of(row.id)).size();
  return length;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream in(argv[1], std::ios::binary);
  const std::vector<char> stream((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());

  init();
  log_open(log_create_always | log_thread_id | log_level, 3, "threads_test.csv");

  const auto read_stream = [&stream] {
    std::vector<uint8_t> bytes(stream.begin(), stream.end());
    Reader reader;
    reader.push_data(bytes.data(), static_cast<int>(bytes.size()));
    return std::pair(reader.sections, reader.text);
  };
  const auto alone = read_stream();
  const size_t names = look_everything_up();

  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        if (read_stream() == alone) ++right;
        if (look_everything_up() == names) ++right;
        log_write(3, "thread %d, round %d of %d", t, round, kRounds);
        log_write(4, "not written");
      }
    });
  for (std::thread& thread : threads) thread.join();
  log_close();
  std::filesystem::remove(platform::executable_folder() + "threads_test.csv");

  if (alone.first == 0 || names == 0 || right != 2 * kThreads * kRounds) {
    std::fprintf(stderr, "%d of %d rounds are right, %d sections\n", right.load(), 2 * kThreads * kRounds,
                 alone.first);
    return 1;
  }
  return 0;
}
