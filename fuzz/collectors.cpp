#include "fuzz/choices.h"
#include "fuzz/packets.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <vector>

#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/table_collector.h>

namespace quillon::fuzz {

namespace {

// The first is standard, the other has to be asked for.
constexpr int kPids[] = {0x11, 0x200};
constexpr uint8_t kTdt = 0x70;
constexpr uint8_t kSdt =
    0x46;  // of other streams: in that of this one a service is known by its number alone
constexpr uint8_t kEit = 0x4E;
constexpr uint8_t kPrivate = 0x80;
constexpr uint8_t kTables[] = {kTdt, kSdt, kEit, kPrivate};
// An EIT may end its first segment at 0 or 1, and have another one.
constexpr uint8_t kNumbers[] = {0, 1, 1, 8};

struct Made {
  Bytes bytes;
  bool crc_ok = true;
  bool operator==(const Made&) const = default;
};

// A section of few tables, versions and contents, so that they meet.
Made made_section(Choices& choices) {
  const uint8_t table_id = choices.of(kTables);
  const uint8_t content = choices.byte() % 4;
  if (table_id == kTdt) return {{kTdt, 0x70, 5, 0xED, 0x04, 0x12, 0x30, content}, true};

  const uint8_t header = choices.byte();
  const uint8_t version = header & 1;
  const bool is_next = (header >> 2 & 7) == 0;
  const uint8_t number = kNumbers[header >> 5 & 3];
  const uint8_t last = std::max(number, choices.of(kNumbers));
  Bytes out = {table_id,
               0,
               0,
               0,
               static_cast<uint8_t>(header >> 7),
               static_cast<uint8_t>(0xC0 | version << 1 | !is_next),
               number,
               last};
  Bytes body;
  if (table_id == kSdt)
    body = {0, static_cast<uint8_t>(content & 1), 0xFF, 0, content, 0xFC, 0x80, 0};
  else if (table_id == kEit)
    body = {0,
            static_cast<uint8_t>(content & 1),
            0,
            1,
            choices.of(kNumbers),
            kEit,
            0,
            content,
            0xED,
            0x04,
            0x12,
            0x30,
            content,
            0,
            0x30,
            0,
            0x80,
            0};
  else
    body.assign(choices.byte() * 2u, content);
  out.insert(out.end(), body.begin(), body.end());
  out.resize(out.size() + 4);
  repair(out);
  const bool crc_ok = choices.below(16) != 0;
  out.back() ^= static_cast<uint8_t>(!crc_ok);
  return {out, crc_ok};
}

// Which sections were given, and which of them as repeated.
class ReaderModel {
 public:
  struct Given {
    int pid;
    Made section;
    bool repeated;
    bool operator==(const Given&) const = default;
  };
  std::vector<Given> given;

  explicit ReaderModel(bool repeats) : repeats_(repeats) {}

  void ask_for(int pid, bool on) {
    if (on)
      asked_.insert(pid);
    else
      asked_.erase(pid);
  }
  bool reads(int pid) const { return pid == kPids[0] || asked_.contains(pid); }
  void complete(int pid, const Made& made) {
    const Bytes& bytes = made.bytes;
    // Of a long section with a right CRC its table and number, and whether it is current, are its place.
    std::tuple<int, Bytes> place(pid, bytes);
    if (bytes[0] != kTdt && made.crc_ok) {
      Bytes& ids = std::get<Bytes>(place);
      const ptrdiff_t more = bytes[0] == kEit ? 4 : bytes[0] == kSdt ? 2 : 0;
      ids = {bytes[0], bytes[3], bytes[4], static_cast<uint8_t>(bytes[5] & 1), bytes[6]};
      ids.insert(ids.end(), bytes.begin() + 8, bytes.begin() + 8 + more);
    }
    Bytes& last = seen_[{made.crc_ok, place}];
    const bool repeated = last == bytes;
    last = bytes;
    if (!repeated || repeats_) given.push_back({pid, made, repeated});
  }

 private:
  const bool repeats_;
  std::set<int> asked_;
  std::map<std::tuple<bool, std::tuple<int, Bytes>>, Bytes> seen_;
};

// Which tables are complete, and at which version.
class TableModel {
 public:
  struct Event {
    TableEvent::Kind kind;
    TableId table;
    int version;
    int old_version;
    std::vector<Bytes> sections;
    auto operator<=>(const Event&) const = default;
  };
  std::vector<Event> events;

  void push(const StreamSection& section) {
    if (section.has_crc && !section.crc_ok) return;
    const TableId id = TableId::of(section);
    auto& [heard, complete, coming] = tables_[id];
    heard = now_;
    const Bytes bytes(section.span().begin(), section.span().end());
    const int number = section.section_number();
    const Version version = {section.version(), section.last_section_number()};
    if (coming.version != version) {
      coming = {version, {}};
      if (complete.version == version && complete.has(number, bytes)) return coming = {}, void();
    }
    if (coming.sections.contains(number) && !coming.has(number, bytes)) coming.sections.clear();
    coming.sections[number] = bytes;
    if (!coming.is_complete()) return;
    const bool is_first = complete.sections.empty();
    const int old_version = is_first ? section.version() : complete.version.number;
    if (coming.sections != complete.sections) {
      complete = coming;
      events.push_back({is_first ? TableEvent::Kind::complete : TableEvent::Kind::changed, id,
                        section.version(), old_version, complete.all()});
    }
    coming = {};
  }
  void advance(double seconds) {
    now_ = std::max(now_, seconds);
    std::erase_if(tables_, [this](const auto& entry) {
      const auto& [id, table] = entry;
      const bool is_gone = table.heard + 3 * TableCollector::longest_interval(id) < now_;
      if (is_gone && !table.complete.sections.empty()) {
        const int version = table.complete.version.number;
        events.push_back({TableEvent::Kind::gone, id, version, version, table.complete.all()});
      }
      return is_gone;
    });
  }
  // As events, like those of TableCollector::each.
  std::vector<Event> complete() const {
    std::vector<Event> out;
    for (const auto& [id, table] : tables_) {
      const int version = table.complete.version.number;
      if (!table.complete.sections.empty())
        out.push_back({TableEvent::Kind::complete, id, version, version, table.complete.all()});
    }
    return out;
  }

 private:
  struct Version {
    int number = 0;
    int last = -1;
    bool operator==(const Version&) const = default;
  };
  struct Sections {
    Version version = {};
    std::map<int, Bytes> sections = {};

    bool has(int number, const Bytes& bytes) const {
      const auto place = sections.find(number);
      return place != sections.end() && place->second == bytes;
    }
    bool is_complete() const {
      for (int number = 0; number <= version.last;) {
        const auto place = sections.find(number);
        if (place == sections.end()) return false;
        const bool ends_segment = place->second[0] == kEit && place->second[12] == number;
        number = ends_segment ? (number / 8 + 1) * 8 : number + 1;
      }
      return true;
    }
    std::vector<Bytes> all() const {
      std::vector<Bytes> out;
      for (const auto& [number, bytes] : sections) out.push_back(bytes);
      return out;
    }
  };
  struct Table {
    double heard = 0;
    Sections complete = {};
    Sections coming = {};
  };

  std::map<TableId, Table> tables_;
  double now_ = 0;
};

// The ids of the events of each service.
class ScheduleModel {
 public:
  void push(const StreamSection& section) {
    if (section.table_id() != kEit || !section.crc_ok || !section.is_current()) return;
    const TableId id = TableId::of(section);
    auto& sections = services_[{id.original_network_id, id.transport_stream_id, id.extension}];
    const Bytes bytes(section.span().begin(), section.span().end());
    Bytes& place = sections[section.section_number()];
    if (place == bytes) return;
    place = bytes;
    std::erase_if(sections, [&](const auto& entry) { return entry.first > section.last_section_number(); });
  }
  void expect(const ScheduleCollector& collector) const {
    std::vector<ServiceId> ids;
    for (const auto& [id, sections] : services_) {
      ids.push_back(id);
      std::set<int> expected;
      for (const auto& [number, bytes] : sections) expected.insert(bytes[14] << 8 | bytes[15]);
      std::set<int> found;
      for (const ScheduledEvent& event : collector.events(id)) require(found.insert(event.event_id).second);
      require(found == expected);
    }
    require(collector.services() == ids);
  }

 private:
  std::map<ServiceId, std::map<int, Bytes>> services_;
};

// The services are those of the complete service descriptions.
void expect_services(const TableModel& tables, const ServiceDirectory& directory) {
  std::set<ServiceId> expected;
  for (const TableModel::Event& table : tables.complete())
    if (table.table.table_id == kSdt && table.table.pid == kPids[0] && table.table.is_current)
      for (const Bytes& bytes : table.sections)
        expected.insert({table.table.original_network_id, table.table.extension, bytes[11] << 8 | bytes[12]});
  std::set<ServiceId> found;
  for (const Service* const service : directory.services()) require(found.insert(service->id()).second);
  require(found == expected);
}

}  // namespace

void collectors(const uint8_t* data, size_t size) {
  Choices choices(data, size);
  const bool repeats = choices.byte() & 1;
  ReaderModel reader_model(repeats);
  TableModel table_model;
  ScheduleModel schedule_model;
  ScheduleCollector schedule;
  ServiceDirectory directory;
  std::vector<ReaderModel::Given> given;
  std::vector<TableModel::Event> events;
  TableCollector tables([&](const TableEvent& event) {
    events.push_back({event.kind, event.table, event.version, event.old_version, event.sections});
    directory.push(event);
  });
  SectionReader reader(
      [&](const StreamSection& section) {
        const Bytes bytes(section.span().begin(), section.span().end());
        given.push_back({section.pid, {bytes, !section.has_crc || section.crc_ok}, section.repeated});
        tables.push(section);
        table_model.push(section);
        schedule.push(section);
        schedule_model.push(section);
      },
      {.repeats = repeats});
  tables.advance(0);

  const auto ask = [&](uint8_t choice) {
    const int pid = kPids[choice % std::size(kPids)];
    const bool on = choice & 4;
    on ? reader.add_pid(pid) : reader.remove_pid(pid);
    reader_model.ask_for(pid, on);
    require(reader.reads_pid(pid) == reader_model.reads(pid));
  };
  double now = 0;
  uint64_t index = 0;
  uint8_t counters[std::size(kPids)] = {};
  while (!choices.empty()) {
    const uint8_t what = choices.byte();
    if (what < 32) {
      ask(what);
      continue;
    }
    if (what < 64) {
      now += what % 8 * what % 8 * 0.75;
      tables.advance(now);
      table_model.advance(now);
    } else {
      const size_t place = what % std::size(kPids);
      const int pid = kPids[place];
      const Made made = made_section(choices);
      const Bytes packets = packets_of({&made.bytes, 1}, pid, counters[place]);
      const uint8_t fate = choices.byte();
      bool arrives = true;
      for (size_t at = 0; at < packets.size(); at += TsPacket::size) {
        const bool is_chosen = (fate >> 2 & 3) == static_cast<int>(at / TsPacket::size);
        // A PID is left between packets, or one packet of several is lost.
        if (is_chosen && (fate & 3) == 1) ask(choices.byte());
        arrives = arrives && reader_model.reads(pid);
        if (is_chosen && (fate & 3) == 2 && packets.size() > TsPacket::size) {
          arrives = false;
          continue;
        }
        const TsPacket packet{packets.data() + at, index++, 0, false};
        reader.push(packet);
        if (is_chosen && (fate & 3) == 3) reader.push(packet);
      }
      if (arrives) reader_model.complete(pid, made);
    }
    require(given == reader_model.given);
    // Tables that go at once do so in no order.
    std::sort(events.begin(), events.end());
    std::sort(table_model.events.begin(), table_model.events.end());
    require(events == table_model.events);
    for (auto* const list : {&events, &table_model.events}) list->clear();
    for (auto* const list : {&given, &reader_model.given}) list->clear();
    std::vector<TableModel::Event> complete;
    tables.each([&](const TableEvent& event) {
      complete.push_back({event.kind, event.table, event.version, event.old_version, event.sections});
    });
    require(complete == table_model.complete());
    schedule_model.expect(schedule);
    expect_services(table_model, directory);
  }
}

}  // namespace quillon::fuzz
