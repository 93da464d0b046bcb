#include "apps/quillon/metrics.h"

#include "apps/quillon/failure.h"
#include "apps/quillon/source.h"
#include "apps/quillon/target.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include <quillon/platform/internal/file.h>

namespace quillon::app {

namespace {

constexpr size_t kMostPids = 1000;
constexpr size_t kMostTables = 1000;
constexpr double kLongestSilence = 3600;
// Rates are of so many seconds: the time is known where the clock was sent, and no better.
constexpr double kRateSeconds = 10;
constexpr double kPacketBits = TsPacket::size * 8;

std::string label(const char* name, const std::string& value) {
  std::string out = std::string(name) + "=\"";
  for (const char c : value) {
    if (c == '\\' || c == '"') out += '\\';
    c == '\n' ? out += "\\n" : out += c;
  }
  return out + '"';
}

std::string number_label(const char* name, uint64_t value, int digits) {
  return label(name, hex(static_cast<unsigned>(value), digits));
}

std::string real_text(double value) {
  char text[64];
  return {text, std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed, 3).ptr};
}

bool has_series(int table_id) {
  const bool is_schedule = table_id >= 0x50 && table_id <= 0x6F;
  return !is_schedule && table_id != 0xCC;
}

}  // namespace

class Metrics::Text {
 public:
  explicit Text(std::string input) : input_(std::move(input)) {}

  // The samples that follow are its own.
  void family(const char* name, const char* type, const char* help) {
    name_ = std::string("quillon_") + name;
    text_ += "# HELP " + name_ + " " + help + "\n# TYPE " + name_ + " " + type + "\n";
  }
  void sample(const std::string& value, const std::string& labels = {}) {
    text_ += name_ + "{" + input_ + (labels.empty() ? "" : "," + labels) + "} " + value + "\n";
  }
  void sample(uint64_t value, const std::string& labels = {}) { sample(std::to_string(value), labels); }

  const std::string& take() const { return text_; }

 private:
  const std::string input_;
  std::string name_;
  std::string text_;
};

Metrics::Metrics(const Options& options, Console& console)
    : file_(options.metrics), wanted_pids_(options.choice.pids), console_(console) {
  if (file_ == "-") throw Failure("--metrics: standard output is for events; name a file");
  refuse_inputs(options, file_, "--metrics");
  if (!options.inputs.empty()) begin(visible(name_of(options.inputs.front())));
}

void Metrics::begin(const std::string& input) {
  input_ = label("input", input);
  text_.clear();
  saved_ = {};
  bytes_ = 0;
  arrival_ = {};
  tables_.clear();
  other_sections_ = 0;
  crc_errors_.clear();
  is_measured_ = false;
  mark_ = {};
  bit_rate_ = 0;
  bit_rates_.clear();
}

void Metrics::section(const StreamSection& section, const StreamTime& time) {
  const TableId id = TableId::of(section);
  auto place = tables_.find(id);
  if (place == tables_.end()) {
    if (!has_series(id.table_id) || tables_.size() >= kMostTables) {
      ++other_sections_;
      return;
    }
    place = tables_.try_emplace(id).first;
  }
  place->second = {time.seconds(), section.is_long(), section.version()};
}

bool Metrics::is_due() const {
  return Clock::now() - saved_ >= std::chrono::seconds(1);
}

void Metrics::write(const Input& input, const StreamTime& time, const ServiceDirectory& services) {
  if (std::exchange(bytes_, input.bytes) != input.bytes) arrival_ = std::chrono::system_clock::now();
  find_pids(input);
  measure(input, time);
  std::erase_if(tables_,
                [&time](const auto& table) { return time.seconds() - table.second.heard > kLongestSilence; });
  Text text(input_);
  add_input(text, input, services);
  add_pids(text, input);
  add_tables(text, input, time);
  text_ = text.take();
  save(true);
}

void Metrics::find_pids(const Input& input) {
  pids_.clear();
  other_pids_ = 0;
  const auto is_wanted = [this](int pid) {
    return wanted_pids_.empty() ||
           std::find(wanted_pids_.begin(), wanted_pids_.end(), pid) != wanted_pids_.end();
  };
  for (int pid = 0; pid < TsPacket::pids; ++pid) {
    if (input.statistics.pid(pid).packets == 0 || !is_wanted(pid)) continue;
    pids_.size() < kMostPids ? pids_.push_back(pid) : void(++other_pids_);
  }
}

// The stream's own figures hold from its first clock to its last; later ones are of what was read since.
void Metrics::measure(const Input& input, const StreamTime& time) {
  const StreamStatistics& statistics = input.statistics;
  const double passed = time.seconds() - mark_.seconds;
  const bool is_enough = passed >= kRateSeconds;
  if (!time.is_known() || passed <= 0 || (is_measured_ && !is_enough)) return;
  const bool by_clock = !is_measured_ && statistics.bit_rate() > 0;
  const auto rate = [passed](uint64_t now, uint64_t before) {
    return static_cast<double>(now - before) * kPacketBits / passed;
  };
  bit_rate_ = by_clock ? statistics.bit_rate() : rate(statistics.packets(), mark_.packets);
  Mark now = {time.seconds(), statistics.packets(), {}};
  bit_rates_.clear();
  for (const int pid : pids_) {
    const uint64_t packets = now.of_pids[pid] = statistics.pid(pid).packets;
    bit_rates_[pid] = by_clock ? statistics.bit_rate(pid) : rate(packets, mark_.of_pids[pid]);
  }
  if (!is_enough) return;
  mark_ = std::move(now);
  is_measured_ = true;
}

void Metrics::add_input(Text& text, const Input& input, const ServiceDirectory& services) const {
  const auto add = [&text](const char* name, const char* type, const char* help, uint64_t value) {
    text.family(name, type, help);
    text.sample(value);
  };
  const std::chrono::duration<double> arrival = arrival_.time_since_epoch();
  text.family("last_arrival_timestamp_seconds", "gauge", "When something was read last, since 1970.");
  text.sample(real_text(arrival.count()));
  add("read_bytes_total", "counter", "Bytes that were read.", input.bytes);
  add("packets_total", "counter", "Packets that were read.", input.statistics.packets());
  add("skipped_bytes_total", "counter", "Bytes that belong to no packet.", input.packets.skipped());
  add("sync_losses_total", "counter", "Packets that do not follow the one before them.",
      input.statistics.sync_losses());
  if (bit_rate_ > 0) {
    text.family("bit_rate", "gauge", "Bits of packets a second, in ten seconds or since the beginning.");
    text.sample(real_text(bit_rate_));
  }
  uint64_t actual = 0;
  const auto known = services.services();
  for (const Service* const service : known) actual += service->is_actual;
  text.family("services", "gauge", "Services of the transport stream itself, and of others it tells of.");
  text.sample(actual, label("transport_stream", "actual"));
  text.sample(known.size() - actual, label("transport_stream", "other"));
  add("pids_without_series", "gauge", "PIDs beyond the first 1000, of which nothing else is said.",
      other_pids_);
  add("sections_without_series_total", "counter",
      "Sections of EIT schedules and ETTs, and of tables beyond the first 1000, of which nothing else is "
      "said.",
      other_sections_);
}

void Metrics::add_pids(Text& text, const Input& input) const {
  const auto add = [&](const char* name, const char* help, auto value_of) {
    text.family(name, "counter", help);
    for (const int pid : pids_)
      text.sample(value_of(input.statistics.pid(pid), pid),
                  number_label("pid", static_cast<uint64_t>(pid), 4));
  };
  using Counts = PidStatistics;
  add("pid_packets_total", "Packets of a PID.", [](const Counts& c, int) { return c.packets; });
  add("pid_continuity_errors_total", "Packets that do not follow the last of their PID.",
      [](const Counts& c, int) { return c.continuity_errors; });
  add("pid_transport_errors_total", "Packets that are marked as damaged.",
      [](const Counts& c, int) { return c.transport_errors; });
  add("pid_scrambled_packets_total", "Packets whose payload is scrambled.",
      [](const Counts& c, int) { return c.scrambled; });
  add("pid_crc_errors_total", "Sections with a wrong CRC.", [this](const Counts&, int pid) {
    const auto place = crc_errors_.find(pid);
    return place == crc_errors_.end() ? 0 : place->second;
  });
  if (bit_rates_.empty()) return;
  text.family("pid_bit_rate", "gauge", "Bits of a PID's packets a second, in the same time as bit_rate.");
  for (const auto& [pid, rate] : bit_rates_)
    text.sample(real_text(rate), number_label("pid", static_cast<uint64_t>(pid), 4));
}

void Metrics::add_tables(Text& text, const Input& input, const StreamTime& time) const {
  const auto labels_of = [&input](const TableId& id, bool is_long) {
    std::string out = label("table", table_name(id.table_id, input.standard));
    const auto add = [&out](const char* name, uint64_t value, int digits = 4) {
      out.append(",").append(number_label(name, value, digits));
    };
    add("table_id", static_cast<uint64_t>(id.table_id), 2);
    if (id.pid >= 0) add("pid", static_cast<uint64_t>(id.pid));
    if (is_long) add("extension", static_cast<uint64_t>(id.extension));
    if (id.transport_stream_id) add("transport_stream_id", static_cast<uint64_t>(id.transport_stream_id));
    if (id.original_network_id) add("original_network_id", static_cast<uint64_t>(id.original_network_id));
    if (id.further_id) add("further_id", id.further_id);
    return id.is_current ? out : out + "," + label("next", "1");
  };
  if (tables_.empty()) return;
  if (time.is_known()) {
    text.family("table_age_seconds", "gauge", "Since the last section of a table, by the stream's clock.");
    for (const auto& [id, table] : tables_)
      text.sample(real_text(time.seconds() - table.heard), labels_of(id, table.is_long));
  }
  text.family("table_version", "gauge", "Version of a table, by its last section.");
  for (const auto& [id, table] : tables_)
    if (table.is_long) text.sample(static_cast<uint64_t>(table.version), labels_of(id, true));
}

void Metrics::save(bool is_up) {
  saved_ = Clock::now();
  Text up(input_);
  up.family("up", "gauge", "1 while the input is read.");
  up.sample(is_up);
  const std::error_code failed = platform::write_whole(path_of(file_), up.take() + text_);
  if (!failed || std::exchange(has_failed_, true)) return;
  console_.message("can't write " + file_ + ": " + failed.message() + "; watching goes on without it");
}

}  // namespace quillon::app
