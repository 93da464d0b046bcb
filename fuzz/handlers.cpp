#include "fuzz/choices.h"
#include "fuzz/packets.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

#include <algorithm>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include <quillon/demux/sources.h>

namespace quillon::fuzz {

namespace {

constexpr int kPids[] = {0x00, 0x11, 0x100, 0x1FFF};
constexpr uint8_t kTables[] = {0x00, 0x02, 0x42, 0x4E};
struct Filter {
  uint8_t data[3];
  uint8_t mask[3];
  int length;
};
constexpr Filter kFilters[] = {
    {{}, {}, 0}, {{0x42}, {0xFF}, 1}, {{0x02}, {0x02}, 1}, {{0x4E, 0xF0, 0}, {0xFE, 0xF0, 1}, 3}};

// What a demultiplexer promises, in plain steps: each handler hears where sections begin on its PID and what
// goes on, and puts its own sections together.
class Model {
 public:
  Model() = default;
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  void add_psi_handler(int pid, int table_id) {
    Pid& to = at(pid);
    const bool is_there =
        std::ranges::any_of(to.tables, [=](const auto& handler) { return handler->table_id == table_id; });
    if (!is_there) to.tables.push_back(std::make_shared<Assembly>(Assembly{.table_id = table_id}));
  }
  void add_psi_handler(int pid, const uint8_t* data, const uint8_t* mask, int length, unsigned long key) {
    at(pid).filters.push_back(
        std::make_shared<Assembly>(Assembly{.data = data, .mask = mask, .length = length, .key = key}));
  }
  void remove_psi_handler(int pid, int table_id) {
    const auto place = pids_.find(pid);
    if (place == pids_.end()) return;
    std::erase_if(place->second->tables, [=](const auto& handler) { return handler->table_id == table_id; });
    if (!place->second->tables.empty()) return;
    place->second->removed = true;
    pids_.erase(place);
  }
  void reset() {
    for (const auto& [pid, handlers] : pids_) handlers->removed = true;
    pids_.clear();
  }
  void serve_every_section(bool on) { every_section_ = on; }

  void push(std::span<const uint8_t> packet) {
    const Demux::TSHeader header(packet.data());
    on_ts_packet(header, packet.data() + 4);
    const size_t begin = header.get_adaption_field_control() >= 2 ? 5u + packet[4] : 4u;
    const auto place = pids_.find(header.get_pid());
    if (place == pids_.end()) return;
    const auto pid = place->second;  // which may be removed meanwhile
    const auto payload = packet.subspan(std::min(begin, packet.size()));
    if (!header.get_payload_unit_start_indicator()) return go_on(*pid, header.get_pid(), payload);
    if (payload.empty()) return;
    const auto sections = payload.subspan(1);
    const size_t pointer = payload[0];
    if (pointer == 0 && sections.size() >= 3 && sections[0] == 0 && sections[1] == 0 && sections[2] == 1)
      return;
    if (pointer > 0) go_on(*pid, header.get_pid(), sections.first(std::min(pointer, sections.size())));
    if (pid->removed) return;
    if (pointer >= sections.size())
      for (const auto& handler : pid->tables) handler->in_progress = false;
    for (auto left = sections.subspan(std::min(pointer, sections.size())); !left.empty() && !pid->removed;) {
      const size_t whole = left.size() < 3 ? left.size() : std::min<size_t>(left.size(), size_of(left));
      begin_section(*pid, header.get_pid(), every_section_ ? left.first(whole) : left);
      left = left.subspan(every_section_ ? whole : left.size());
      if (!left.empty() && left[0] == 0xFF) break;
    }
  }

 protected:
  ~Model() = default;
  virtual void on_ts_packet(const Demux::TSHeader&, const uint8_t*) {}
  virtual void on_psi_section(unsigned long, int, uint8_t*) {}
  virtual void on_psi_section(int, int, int, const uint8_t*) {}

 private:
  struct Assembly {
    int table_id = -1;
    const uint8_t* data = nullptr;
    const uint8_t* mask = nullptr;
    int length = 0;
    unsigned long key = 0;
    Bytes section = {};
    bool in_progress = false;
  };
  using Assemblies = std::vector<std::shared_ptr<Assembly>>;
  struct Pid {
    Assemblies tables;
    Assemblies filters;
    bool removed = false;
  };

  Pid& at(int pid) {
    auto& place = pids_[pid];
    if (!place) place = std::make_shared<Pid>();
    return *place;
  }
  static size_t size_of(std::span<const uint8_t> section) {
    return ((section[1] & 0x0Fu) << 8 | section[2]) + 3u;
  }

  void begin_section(Pid& handlers, int pid, std::span<const uint8_t> bytes) {
    const auto begin = [bytes](Assembly& handler) {
      handler.section.clear();
      handler.in_progress = handler.table_id < 0 || handler.table_id == bytes[0];
    };
    for (const auto& handler : handlers.tables) begin(*handler);
    give(handlers, pid, bytes, begin);
  }
  void go_on(Pid& handlers, int pid, std::span<const uint8_t> bytes) {
    give(handlers, pid, bytes, [](Assembly&) {});
  }
  // Filters that a hook adds wait for the next bytes.
  template <class Begin>
  void give(Pid& handlers, int pid, std::span<const uint8_t> bytes, Begin begin) {
    for (const auto& handler : Assemblies(handlers.tables)) append(*handler, pid, bytes);
    for (const auto& handler : Assemblies(handlers.filters)) {
      if (handlers.removed) return;
      begin(*handler);
      append(*handler, pid, bytes);
    }
  }
  void append(Assembly& handler, int pid, std::span<const uint8_t> bytes) {
    if (!handler.in_progress) return;
    Bytes& section = handler.section;
    section.insert(section.end(), bytes.begin(), bytes.end());
    if (section.size() < 3 || section.size() < size_of(section)) return;
    handler.in_progress = false;
    section.resize(std::max<size_t>(section.size(), 7));
    if (handler.table_id >= 0) return on_psi_section(pid, handler.table_id, section[6], section.data());
    for (int i = 0; i < handler.length; ++i)
      if ((section[static_cast<size_t>(i)] & handler.mask[i]) != handler.data[i]) return;
    on_psi_section(handler.key, static_cast<int>(size_of(section)), section.data());
  }

  std::map<int, std::shared_ptr<Pid>> pids_;
  bool every_section_ = false;
};

class Pushed : public DemuxPush {
 public:
  ~Pushed() = default;
  void push(std::span<const uint8_t> packet) { require(push_data(packet) == 0); }
};

class Pulled : public Demux {
 public:
  ~Pulled() = default;
  void push(std::span<const uint8_t> packet) {
    packet_ = packet;
    require(start() == 1);
  }

 private:
  bool read_buf(uint8_t* buffer, int size, int& bytes_read) override {
    if (packet_.empty()) return false;
    bytes_read = size;
    std::copy(packet_.begin(), packet_.end(), buffer);
    packet_ = {};
    return true;
  }

  std::span<const uint8_t> packet_;
};

// Writes down what its hooks are given, and changes the handlers as its script says.
template <class Source>
class Actor final : public Source {
 public:
  explicit Actor(std::span<const uint8_t> script) : script_(script) {}
  ~Actor() = default;

  // By receiver: which of two filters hears a section first is not laid down. So what a filter's hook does
  // only adds.
  std::map<long, std::vector<Bytes>> heard;

  void act(uint8_t what, bool may_remove) {
    const int pid = kPids[what & 3];
    const size_t which = what >> 2 & 3;
    switch (what >> 4) {
      case 0:
      case 1:
      case 2:
        return this->add_psi_handler(pid, kTables[which]);
      case 3:
      case 4: {
        const Filter& filter = kFilters[which];
        return this->add_psi_handler(pid, filter.data, filter.mask, filter.length, what & 0x1Fu);
      }
      case 5:
      case 6:
        if (may_remove) this->remove_psi_handler(pid, kTables[which]);
        return;
      case 7:
        if (may_remove && which == 0) this->reset();
        return;
      default:
        return;
    }
  }

 private:
  static constexpr size_t kMostActs = 8;  // of a receiver, so that there is an end to them

  void on_ts_packet(const Demux::TSHeader&, const uint8_t*) override {
    act(script_[packets_++ % script_.size()], true);
  }
  void on_psi_section(unsigned long key, int size, uint8_t* section) override {
    take(static_cast<long>(key), false, section, size);
  }
  void on_psi_section(int pid, int table_id, int, const uint8_t* section) override {
    take(-1 - (pid << 8 | table_id), true, section, ((section[1] & 0x0F) << 8 | section[2]) + 3);
  }
  void take(long receiver, bool may_remove, const uint8_t* section, int size) {
    auto& to = heard[receiver];
    to.emplace_back(section, section + size);
    const size_t count = to.size();
    if (count <= kMostActs)
      act(script_[(static_cast<size_t>(receiver) + count) % script_.size()], may_remove);
  }

  const std::span<const uint8_t> script_;
  size_t packets_ = 0;
};

// A few sections on one PID, one after the other; now and then a byte of a packet is another, or the last
// packet is lost.
Bytes next_packets(Choices& choices, std::span<uint8_t> counters) {
  const size_t pid = choices.below(std::size(kPids));
  std::vector<Bytes> sections(1 + choices.below(3));
  for (Bytes& section : sections) {
    section = {choices.of(kTables)};
    section.resize(3 + choices.byte() * (choices.below(4) == 0 ? 16 : 1), choices.byte());
    section[1] = static_cast<uint8_t>(0xF0 | (section.size() - 3) >> 8);
    section[2] = static_cast<uint8_t>(section.size() - 3);
  }
  Bytes packets = packets_of(sections, kPids[pid], counters[pid]);
  const size_t at = choices.byte() * packets.size() / 256;
  const size_t fate = choices.below(4);
  if (fate == 0 && at % Demux::packet_size != 0) packets[at] = choices.byte();
  if (fate == 1) packets.resize(packets.size() - Demux::packet_size);
  return packets;
}

template <class Source>
void compare(Choices choices, bool every_section) {
  const auto script = choices.bytes(1 + choices.below(32));
  if (script.empty()) return;
  Actor<Source> demux(script);
  Actor<Model> model(script);
  demux.serve_every_section(every_section);
  model.serve_every_section(every_section);
  uint8_t counters[std::size(kPids)] = {};
  while (!choices.empty()) {
    if (const uint8_t what = choices.byte(); what < 128) {
      demux.act(what, true);
      model.act(what, true);
      continue;
    }
    const Bytes packets = next_packets(choices, counters);
    for (size_t at = 0; at < packets.size(); at += Demux::packet_size) {
      const std::span packet(packets.data() + at, Demux::packet_size);
      demux.push(packet);
      model.push(packet);
    }
    require(demux.heard == model.heard);
    demux.heard.clear();
    model.heard.clear();
  }
}

}  // namespace

void handlers(const uint8_t* data, size_t size) {
  Choices choices(data, size);
  const uint8_t choice = choices.byte();
  if (choice & 1)
    compare<Pushed>(choices, choice & 2);
  else
    compare<Pulled>(choices, choice & 2);
}

}  // namespace quillon::fuzz
