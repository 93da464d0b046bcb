#include "apps/quillon/commands.h"

#include "apps/quillon/field_lines.h"
#include "apps/quillon/json_fields.h"
#include "apps/quillon/output.h"
#include "apps/quillon/section_chain.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>

#include <quillon/platform/utf8.h>
#include <quillon/report/registries.h>
#include <quillon/stream/packet_reader.h>
#include <quillon/stream/section_reader.h>
#include <quillon/xml/document.h>

namespace quillon::app {

namespace {

// How far ahead the tables that name PIDs are sought in a file.
constexpr uint64_t kLookahead = uint64_t{64} << 20;

class Failure {
 public:
  explicit Failure(std::string text) : text_(std::move(text)) {}
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

std::string name_of(const std::string& input) {
  return input == "-" ? "standard input" : input;
}

// Arguments are in UTF-8.
std::filesystem::path path_of(const std::string& argument) {
  return std::u8string(argument.begin(), argument.end());
}

std::string text_of(const std::string& what, int code) {
  return what.empty() ? "failure " + std::to_string(code) : what;
}

// People count packets, and the sections of a chain, from 1.
uint64_t number_of(const StreamSection& section) {
  return section.packet + 1;
}

// Rate and time to go on standard error, for long inputs and people alone.
class Progress {
 public:
  explicit Progress(uint64_t total) : total_(total), watched_(isatty(STDERR_FILENO) != 0) {}
  ~Progress() {
    if (shown_) std::cerr << "\r\033[K";
  }

  void at(uint64_t done) {
    if (!watched_ || done - last_ < kStep) return;
    last_ = done;
    const auto now = std::chrono::steady_clock::now();
    const double seconds = std::chrono::duration<double>(now - start_).count();
    if (seconds < 1 || now - printed_ < std::chrono::milliseconds(200)) return;
    printed_ = now;
    shown_ = true;
    const double rate = static_cast<double>(done) / seconds;
    char text[80];
    std::snprintf(text, sizeof text, "\r%.1f MB, %.1f MB/s", static_cast<double>(done) / 1e6, rate / 1e6);
    std::cerr << text;
    if (total_ > done) {
      std::snprintf(text, sizeof text, ", %.0f s to go", static_cast<double>(total_ - done) / rate);
      std::cerr << text;
    }
    std::cerr << "\033[K" << std::flush;
  }

 private:
  static constexpr uint64_t kStep = uint64_t{1} << 20;

  uint64_t total_;
  bool watched_;
  bool shown_ = false;
  uint64_t last_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point printed_ = start_;
};

// Runs an input through: finds its PIDs, then hands each section to be shown to `show`, parsed.
class Run {
 public:
  using Show = std::function<void(const StreamSection&, const AnyTable&)>;

  Run(const Options& options, Show show) : options_(options), show_(std::move(show)) {
    how_.pids = options.pids;
    // A table that is asked for by its id alone is sought on every PID.
    how_.every_pid = options.pids.empty() && !options.tables.empty();
    how_.repeats = options.all;
    how_.standard = options.standard;
  }

  void run() {
    if (options_.input == "-") {
      run_packets(std::cin, 0);
      return;
    }
    const std::filesystem::path file = path_of(options_.input);
    std::ifstream in(file, std::ios::binary);
    std::error_code none;
    if (!in || std::filesystem::is_directory(file, none))
      throw Failure(name_of(options_.input) + ": can't be opened");
    if (run_chain(in)) return;
    rewind(in);
    look_ahead(in);
    rewind(in);
    const auto size = std::filesystem::file_size(file, none);
    run_packets(in, none ? 0 : size);
  }

 private:
  static void rewind(std::istream& in) {
    in.clear();
    in.seekg(0);
  }

  // A file of bare sections; false if it is none.
  bool run_chain(std::istream& in) {
    std::vector<uint8_t> bytes(4096 + 3);
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(in.gcount()));
    if (!is_section_chain(bytes)) return false;
    rewind(in);
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    SectionReader learner([](const StreamSection&) {}, how_);
    walk_section_chain(bytes, [&](const uint8_t* s, size_t n) { learner.push_section(s, n); });
    how_.standard = learner.standard();
    SectionReader reader([this](const StreamSection& section) { take(section, *how_.standard); }, how_);
    const size_t left =
        walk_section_chain(bytes, [&](const uint8_t* s, size_t n) { reader.push_section(s, n); });
    if (left > 0) message("the last " + std::to_string(left) + " bytes are no whole section");
    return true;
  }

  // Sections may come before the tables that name their PID: these are found first, so that none is missed.
  void look_ahead(std::istream& in) {
    PacketReader packets;
    SectionReader reader([](const StreamSection&) {}, how_);
    for_each_packet(in, packets, [&](const TsPacket& packet) {
      reader.push(packet);
      return packet.position < kLookahead;
    });
    for (int pid = 0; pid < TsPacket::pids; ++pid)
      if (reader.reads_pid(pid)) how_.pids.push_back(pid);
    how_.standard = reader.standard();
  }

  void run_packets(std::istream& in, uint64_t size) {
    PacketReader packets;
    const SectionReader* sections = nullptr;
    SectionReader reader([&](const StreamSection& section) { take(section, sections->standard()); }, how_);
    sections = &reader;
    Progress progress(size);
    for_each_packet(in, packets, [&](const TsPacket& packet) {
      reader.push(packet);
      progress.at(packet.position);
    });
    if (packets.packets() == 0) throw Failure(name_of(options_.input) + ": holds no transport packets");
    if (packets.skipped() > 0)
      message("skipped " + std::to_string(packets.skipped()) + " bytes that are no packets of " +
              std::to_string(packets.stride()) + " bytes");
  }

  void take(const StreamSection& section, Standard standard) {
    if (!wanted(options_.pids, section.pid) || !wanted(options_.tables, section.table_id())) return;
    const std::unique_ptr<AnyTable> table = AnyTable::for_table_id(section.table_id(), standard);
    if (!table) return;
    table->set_tolerant(true);
    table->set_reading(options_.reading);
    try {
      table->Parse(section.bytes, section.size, false);
    } catch (const error& e) {
      message(place(section) + text_of(e.what(), e.get_code()));
      return;
    }
    for (const DescriptorFailure& failure : table->get_descriptor_failures())
      message(place(section) + "descriptor " + hex(static_cast<unsigned>(failure.tag), 2) + " at byte " +
              std::to_string(failure.offset) +
              " of the body kept as it is: " + text_of(failure.text, failure.code));
    show_(section, *table);
  }

  static bool wanted(const std::vector<int>& choice, int value) {
    return choice.empty() || value < 0 || std::find(choice.begin(), choice.end(), value) != choice.end();
  }

  static std::string place(const StreamSection& section) {
    const std::string number = std::to_string(number_of(section));
    const std::string table = "table " + hex(static_cast<unsigned>(section.table_id()), 2) + ": ";
    if (section.pid < 0) return "section " + number + ": " + table;
    return "packet " + number + ": PID " + hex(static_cast<unsigned>(section.pid), 4) + ", " + table;
  }

  void message(const std::string& text) const {
    std::cerr << name_of(options_.input) << ": " << text << std::endl;
  }

  const Options& options_;
  Show show_;
  SectionReaderOptions how_;
};

// A table's report on a stream of its own, so that it does not depend on what was shown before.
void print(const AnyTable& table, bool full, Reading reading = Reading::kept) {
  std::ostringstream text;
  table.dump_state(text);
  if (reading == Reading::standard)
    std::cout << platform::to_utf8(platform::to_utf16(text.str()));
  else
    std::cout << platform::to_utf8(0, text.str());
  if (!full) return;
  FieldLines lines;
  table.walk(lines);
  std::cout << lines.take();
}

// Runs an action, whose failures become a message and an exit code.
template <class Action>
int guarded(Action action) {
  try {
    action();
    std::cout.flush();
    if (!std::cout) throw Failure("standard output: can't be written");
    return exit_ok;
  } catch (const Failure& failure) {
    std::cerr << failure.text() << std::endl;
  } catch (const error& e) {
    std::cerr << e.what() << std::endl;
  }
  return exit_bad_input;
}

// The error names the input.
xml::Document read_document(const std::string& input) {
  if (input != "-") return xml::Document::from_file(path_of(input));
  try {
    return xml::Document::from_text(std::string(std::istreambuf_iterator<char>(std::cin), {}));
  } catch (const error& e) {
    throw Failure(name_of(input) + ": " + e.what());
  }
}

}  // namespace

int report(const Options& options) {
  return guarded([&] {
    if (options.full) init();
    Run(options, [&](const StreamSection&, const AnyTable& table) {
      print(table, options.full, options.reading);
    }).run();
  });
}

int json(const Options& options) {
  return guarded([&] {
    init();
    JsonFields fields;
    Run(options, [&](const StreamSection& section, const AnyTable& table) {
      if (section.pid >= 0) fields.number("pid", section.pid, nullptr);
      fields.number("packet", static_cast<int64_t>(number_of(section)), nullptr);
      fields.text("table", table.element());
      table.walk(fields);
      std::cout << fields.take() << '\n';
    }).run();
  });
}

int save_xml(const Options& options, const std::string& output) {
  return guarded([&] {
    xml::Document document;
    void* const root = document.create_root("transport_stream");
    Run(options, [&](const StreamSection&, const AnyTable& table) {
      table.SaveSection(document.dom(), document.append_element(root, table.element()));
    }).run();
    if (output.empty())
      std::cout << document.to_text();
    else
      document.to_file(path_of(output));
  });
}

int load_xml(const std::string& input) {
  return guarded([&] {
    const xml::Document document = read_document(input);
    if (document.name(document.root()) != "transport_stream")
      throw Failure(name_of(input) + ": the root element is not transport_stream");
    int number = 0;
    bool failed = false;
    for (void* const node : document.children(document.root())) {
      ++number;
      const std::string name = document.name(node);
      const std::string place = name_of(input) + ": element " + std::to_string(number) + ", " + name + ": ";
      const std::unique_ptr<AnyTable> table = AnyTable::for_element(name);
      if (!table) {
        std::cerr << place << "not the name of a table" << std::endl;
        failed = true;
        continue;
      }
      try {
        table->ParseDOM(node);
      } catch (const error& e) {
        std::cerr << place << text_of(e.what(), e.get_code()) << std::endl;
        failed = true;
        continue;
      }
      print(*table, false);
    }
    if (failed) throw Failure(name_of(input) + ": some tables could not be loaded");
  });
}

}  // namespace quillon::app
