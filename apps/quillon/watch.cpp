#include "apps/quillon/commands.h"
#include "apps/quillon/events.h"
#include "apps/quillon/feed.h"
#include "apps/quillon/metrics.h"
#include "apps/quillon/service_watch.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <bitset>
#include <memory>
#include <optional>
#include <vector>

#include <quillon/stream/service_directory.h>
#include <quillon/stream/table_collector.h>

namespace quillon::app {

namespace {

constexpr uint64_t kPacketsATick = 256;

// A table that states the time, and so is another one each time.
bool is_clock(int table_id, Standard standard) {
  return table_id == 0x70 || table_id == 0x73 || (table_id == 0xCD && standard == Standard::atsc);
}

// What tells a table from others of its name.
std::string ids_of(const TableId& table, bool is_long) {
  std::string out;
  const auto add = [&out](const char* name, uint32_t value) { out += name + hex(value, 4); };
  if (is_long) add(", extension ", static_cast<uint32_t>(table.extension));
  if (table.transport_stream_id) add(", transport stream ", static_cast<uint32_t>(table.transport_stream_id));
  if (table.original_network_id) add(", network ", static_cast<uint32_t>(table.original_network_id));
  if (table.further_id) add(", id ", table.further_id);
  return table.is_current ? out : out + ", next";
}

// One input.
class Watched {
 public:
  Watched(const Options& options, Console& console, Metrics* metrics, const Input& input)
      : choice_(options.choice),
        metrics_(metrics),
        input_(input),
        events_(console, options.json, options.inputs.size() > 1, input),
        chosen_(options.choice),
        services_(options.choice, events_) {}

  void packet(const TsPacket& packet) {
    const int pid = packet.pid();
    Pid& state = pids_[static_cast<size_t>(pid)];
    const uint64_t errors = input_.statistics.pid(pid).continuity_errors;
    const bool is_damaged = packet.has_error();
    const bool is_flipped = pid != TsPacket::null_pid && !is_damaged && packet.has_payload() && state.met &&
                            state.scrambled != packet.is_scrambled();
    const bool is_resynchronized = packet.after_gap && packet.index > 0;
    if (errors != state.continuity_errors || is_damaged || is_flipped || is_resynchronized) {
      advance(packet.index);
      if (is_resynchronized) events_.count(Events::sync_loss, -1);
      if (is_wanted_pid(pid)) {
        if (errors != state.continuity_errors) events_.count(Events::continuity_error, pid);
        if (is_damaged) events_.count(Events::transport_error, pid);
        if (is_flipped)
          events_.count(packet.is_scrambled() ? Events::scrambling_begins : Events::scrambling_ends, pid);
      }
      state.continuity_errors = errors;
    } else if (packet.has_adaptation_field() || packet.index % kPacketsATick == 0) {  // where clocks are
      advance(packet.index);
    }
    if (is_damaged || !packet.has_payload()) return;
    state.met = true;
    state.scrambled = packet.is_scrambled();
  }

  void section(const StreamSection& section) {
    advance(section.packet);
    if (section.has_crc && !section.crc_ok) {
      if (metrics_) metrics_->crc_error(section.pid);
      if (is_wanted_pid(section.pid)) events_.count(Events::crc_error, section.pid);
      return;
    }
    if (metrics_) metrics_->section(section, events_.time());
    chosen_.learn(section);
    tables_.push(section);
  }

  void pause() {
    events_.time().pause();
    tick();
    write_metrics(false);
  }

  void end() { write_metrics(true); }

  // Says what is left. The input may be no more.
  void finish() {
    services_.finish();
    events_.finish();
  }

 private:
  struct Pid {
    uint64_t continuity_errors = 0;
    bool met = false;  // `scrambled` is that of a packet
    bool scrambled = false;
  };

  void advance(uint64_t index) {
    events_.time().at(input_, index);
    tick();
  }

  void tick() {
    if (events_.time().is_known()) tables_.advance(events_.time().seconds());
    events_.tick();
    services_.tick();
  }

  void write_metrics(bool at_end) {
    if (metrics_ && (at_end || metrics_->is_due())) metrics_->write(input_, events_.time(), directory_);
  }

  void on_table(const TableEvent& event) {
    tell_table(event);
    directory_.push(event);
    service_pids_.reset();
  }

  void tell_table(const TableEvent& event) {
    using Kind = TableEvent::Kind;
    const TableId& table = event.table;
    const std::vector<uint8_t>& first = event.sections.front();
    const StreamSection section{table.pid, events_.time().count() - 1, first.data(), first.size(), true, true,
                                false};
    if (event.kind == Kind::forgotten || !chosen_.is_wanted(section)) return;
    if (event.kind == Kind::changed && is_clock(table.table_id, input_.standard)) return;
    const auto text = [&] {
      std::string out = Events::pid_column(table.pid) + table_title(table.table_id, input_.standard) +
                        ids_of(table, section.is_long());
      const std::string version = section.is_long() ? "version " + std::to_string(event.version) : "";
      if (event.kind != Kind::changed) {
        out += event.kind == Kind::complete ? ": new" : ": gone";
        return version.empty() ? out : out + ", " + version;
      }
      if (event.version == event.old_version)
        return out + ": changed" + (version.empty() ? "" : " within " + version);
      return out + ": version " + std::to_string(event.old_version) + " -> " + std::to_string(event.version);
    };
    events_.tell(kind_of(event.kind), text, [&](JsonFields& fields) {
      if (table.pid >= 0) fields.number("pid", table.pid, nullptr);
      if (const auto known = AnyTable::for_table_id(table.table_id, input_.standard))
        fields.text("table", known->element());
      fields.number("table_id", table.table_id, nullptr);
      if (table.transport_stream_id) fields.number("transport_stream_id", table.transport_stream_id, nullptr);
      if (table.original_network_id) fields.number("original_network_id", table.original_network_id, nullptr);
      if (table.further_id) fields.number("further_id", table.further_id, nullptr);
      fields.number("current_next_indicator", table.is_current, nullptr);
      fields.number("sections", static_cast<int64_t>(event.sections.size()), nullptr);
      if (!section.is_long()) return;
      fields.number("extension", table.extension, nullptr);
      fields.number("version", event.version, nullptr);
      if (event.kind == Kind::changed) fields.number("old_version", event.old_version, nullptr);
    });
  }

  static Events::Kind kind_of(TableEvent::Kind kind) {
    if (kind == TableEvent::Kind::complete) return Events::table_new;
    return kind == TableEvent::Kind::changed ? Events::table_changed : Events::table_gone;
  }

  bool is_wanted_pid(int pid) {
    if (pid < 0) return true;
    if (!choice_.pids.empty())
      return std::find(choice_.pids.begin(), choice_.pids.end(), pid) != choice_.pids.end();
    if (choice_.services.empty()) return true;
    if (!service_pids_) find_service_pids();
    return service_pids_->test(static_cast<size_t>(pid));
  }

  void find_service_pids() {
    service_pids_.emplace();
    const auto add = [this](int pid) {
      if (pid >= 0) service_pids_->set(static_cast<size_t>(pid));
    };
    for (const Service* const service : directory_.services()) {
      if (!service->is_actual || !is_wanted(choice_, *service)) continue;
      add(service->map_pid);
      add(service->pcr_pid);
      for (const ServiceStream& stream : service->streams) add(stream.pid);
    }
  }

  const Choice& choice_;
  Metrics* const metrics_;
  const Input& input_;
  Events events_;
  ServiceSections chosen_;
  ServiceWatch services_;
  ServiceDirectory directory_{[this](const ServiceEvent& event) { services_.on_event(event); }};
  TableCollector tables_{[this](const TableEvent& event) { on_table(event); }};
  // Of the services that are wanted; none if they are to be looked up.
  std::optional<std::bitset<TsPacket::pids>> service_pids_;
  std::vector<Pid> pids_ = std::vector<Pid>(TsPacket::pids);
};

class Watch final : public Receiver {
 public:
  Watch(const Options& options, Console& console) : options_(options), console_(console) {
    if (!options.metrics.empty()) metrics_ = std::make_unique<Metrics>(options, console);
  }

  Exit run() {
    const Exit exit =
        read_inputs(options_, console_, *this, {.repeats = true, .statistics = true, .every_service = true});
    finish();
    if (metrics_) metrics_->finish();
    return exit;
  }

 private:
  void begin(const Input& input) override {
    finish();
    if (metrics_) metrics_->begin(input.name);
    watched_.emplace(options_, console_, metrics_.get(), input);
  }
  void packet(const TsPacket& packet) override { watched_->packet(packet); }
  void section(const Input&, const StreamSection& section) override { watched_->section(section); }
  void pause(const Input&) override {
    watched_->pause();
    console_.flush();
  }
  void end(const Input&) override {
    watched_->end();
    finish();
  }

  // Also of an input that could not be read to its end.
  void finish() {
    if (!watched_) return;
    watched_->finish();
    watched_.reset();
    console_.flush();
  }

  const Options& options_;
  Console& console_;
  std::unique_ptr<Metrics> metrics_;
  std::optional<Watched> watched_;
};

}  // namespace

Exit watch(const Options& options, Console& console) {
  return Watch(options, console).run();
}

}  // namespace quillon::app
