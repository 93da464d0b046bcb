// What may run on several threads at a time: demultiplexers, tables and documents that belong to one thread
// each, readers of tables that they share, lookups in the registries, the log with its lock. The thread
// sanitizer watches; the counts are looked at too. Needs the library alone.

#include "bench/tables.h"
#include "tests/support/bytes.h"

#include <atomic>
#include <barrier>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
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

// Tables whose texts are decoded when they are first asked for, as one object for all threads.
struct SharedTables {
  Eit events;
  Sdt services;
  PmtDVB map;

  SharedTables() {
    using namespace quillon::test;
    const auto fill = [](PsiTableBase& table, const Bytes& section) {
      table.Parse(section.data(), section.size(), true);
    };
    const Bytes german = text(
        "Gr\xFC\xDF"
        "e aus K\xF6ln");
    const Bytes russian = text("\x01\xDF\xDE\xD3\xDE\xD4\xD0");
    const Bytes plain = text("The weather");
    Bytes rows = bits({{16, 1, "transport_stream_id"}, {16, 1, "original_network_id"}, {16, 0x004E, "last"}});
    for (const Bytes& name : {german, russian, plain}) {
      const Bytes descriptors =
          joined({descriptor(0x4D, joined({text("deu"), sized(name), sized(german)})),
                  descriptor(0x4E, joined({Bytes{0}, text("rus"),
                                           sized(joined({sized(russian), sized(name)})), sized(russian)})),
                  descriptor(0x50, joined({Bytes{1, 2, 3}, text("deu"), german, Bytes{'!', '!'}}))});
      rows = joined({rows,
                     bits({{16, 7, "event_id"},
                           {40, 0xED04123000, "start_time"},
                           {24, 0x010000, "duration"},
                           {4, 8, "running_status, free_CA_mode"},
                           {12, descriptors.size(), "descriptors_loop_length"}}),
                     descriptors});
    }
    fill(events, long_section(0x4E, rows));

    const Bytes service = joined({descriptor(0x48, joined({Bytes{1}, sized(german), sized(russian)})),
                                  descriptor(0x5D, joined({text("rus"), sized(russian), sized(german)}))});
    fill(services, long_section(0x42, joined({bits({{16, 1, "original_network_id"},
                                                    {8, 0xFF, "reserved"},
                                                    {16, 7, "service_id"},
                                                    {8, 0xFF, "flags"},
                                                    {4, 8, "running_status, free_CA_mode"},
                                                    {12, service.size(), "descriptors_loop_length"}}),
                                              service})));

    const Bytes language = descriptor(0x0A, joined({text("deu"), Bytes{1}}));
    fill(map, long_section(0x02, joined({bits({{3, 7, "reserved"},
                                               {13, 0x101, "PCR_PID"},
                                               {4, 15, "reserved"},
                                               {12, 0, "program_info_length"},
                                               {8, 4, "stream_type"},
                                               {3, 7, "reserved"},
                                               {13, 0x102, "elementary_PID"},
                                               {4, 15, "reserved"},
                                               {12, language.size(), "ES_info_length"}}),
                                         language})));
  }

  // All that the tables say; readers do not all begin with the same question.
  std::string read(int reader) const {
    std::string texts[4];
    for (int i = 0; i < 4; ++i) {
      const int question = (i + reader) % 4;
      texts[question] = question == 0   ? reports()
                        : question == 1 ? documents()
                        : question == 2 ? text_by_text()
                                        : SharedTables(*this).reports();
    }
    return texts[0] + texts[1] + texts[2] + texts[3];
  }

 private:
  static test::Bytes sized(const test::Bytes& bytes) {
    return test::joined({test::Bytes{static_cast<uint8_t>(bytes.size())}, bytes});
  }

  std::string reports() const {
    std::ostringstream out;
    events.dump_state(out);
    services.dump_state(out);
    map.dump_state(out);
    return out.str();
  }

  std::string documents() const {
    xml::Document document;
    void* const root = document.create_root("tables");
    events.SaveSection(document.dom(), document.append_element(root, "eit"));
    services.SaveSection(document.dom(), document.append_element(root, "sdt"));
    map.SaveSection(document.dom(), document.append_element(root, "pmt"));
    return document.to_text();
  }

  std::string text_by_text() const {
    std::string out;
    const auto add = [&out](const Text& text) {
      for (const uint16_t unit : text.get_textW()) out += std::to_string(unit) + " ";
      const Text copy = text;
      out += std::string(text.c_strA()) + std::string(copy.get_textA()) + std::to_string(text.c_strW()[0]) +
             std::to_string(copy.get_textW().size()) + std::to_string(text.is_ascii()) +
             std::to_string(text.get_char_set()) + std::to_string(text.get_text_len()) + "\n";
    };
    for (const Eit::EventInfo& event : events.get_eventinfo()) {
      for (const auto& d : event.get_short_event_descriptors()) {
        add(d.get_event_name());
        add(d.get_text());
      }
      for (const auto& d : event.get_extended_event_descriptors()) {
        add(d.get_text());
        for (const auto& item : d.get_items()) {
          add(item.get_item_description());
          add(item.get_item());
        }
      }
      for (const auto& d : event.get_component_descriptors()) add(d.get_text());
    }
    for (const Sdt::Service_info& service : services.get_service_infos()) {
      for (const auto& d : service.get_service_descriptors()) {
        add(d.get_provider_nameA());
        add(d.get_service_nameA());
      }
      for (const auto& d : service.get_multilingual_service_name_descriptors())
        for (const auto& name : d.get_servicenameinfo()) {
          add(name.get_provider_name());
          add(name.get_service_name());
        }
    }
    return out;
  }
};

// The number of right readings by threads that all begin at the same time, of tables that no one has read.
int read_shared(int rounds) {
  const std::string alone = SharedTables().read(0);
  std::optional<SharedTables> tables;
  std::barrier barrier(kThreads, [&tables]() noexcept { tables.emplace(); });
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      for (int round = 0; round < rounds; ++round) {
        barrier.arrive_and_wait();
        if (std::as_const(*tables).read(t + round) == alone) ++right;
      }
    });
  for (std::thread& thread : threads) thread.join();
  return right;
}

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

  const int shared = read_shared(kRounds);
  if (shared != kThreads * kRounds) {
    std::fprintf(stderr, "%d of %d readings of shared tables are right\n", shared, kThreads * kRounds);
    return 1;
  }
  if (alone.first == 0 || names == 0 || right != 2 * kThreads * kRounds) {
    std::fprintf(stderr, "%d of %d rounds are right, %d sections\n", right.load(), 2 * kThreads * kRounds,
                 alone.first);
    return 1;
  }
  return 0;
}
