#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include <quillon/sections/byte_view.h>
#include <quillon/stream/internal/table_ids.h>
#include <quillon/stream/table_collector.h>

namespace quillon {

namespace {

constexpr size_t kLeastMemory = size_t{4} << 20;  // a table being replaced takes at most 2.2 MiB
// What a section and a table take beside the bytes of sections: blocks of the heap, and what refers to them.
constexpr size_t kSectionCost = 96;
constexpr size_t kTableCost = 384;

struct LongestInterval {
  int first;
  int last;
  double seconds;
  int pid = 0;  // on which alone it counts; 0 for any
};

// Where media differ, that of the slower one: event information of other streams is the terrestrial one's.
// Ids of ATSC's base tables are private elsewhere.
constexpr LongestInterval kLongestIntervals[] = {
    {0x00, 0x00, 0.5},                          // PAT
    {0x02, 0x02, 0.5},                          // PMT
    {0x40, 0x41, 10},                           // NIT
    {0x42, 0x42, 2},                            // SDT of the actual stream
    {0x46, 0x46, 10},                           // of others
    {0x4A, 0x4A, 10},                           // BAT
    {0x4C, 0x4C, 30},                           // INT
    {0x4E, 0x4E, 2},                            // EIT present/following of the actual stream
    {0x4F, 0x4F, 20},                           // of others
    {0x50, 0x5F, 30},                           // EIT schedule of the actual stream
    {0x60, 0x6F, 300},                          // of others
    {0x70, 0x70, 30},                           // TDT
    {0x73, 0x73, 30},                           // TOT
    {0x74, 0x74, 10},                           // AIT
    {0xC7, 0xC7, 0.15, detail::psip_base_pid},  // MGT
    {0xC8, 0xC9, 0.4, detail::psip_base_pid},   // TVCT, CVCT
    {0xCA, 0xCA, 60, detail::psip_base_pid},    // RRT
    {0xCB, 0xCC, 60},                           // EIT and ETT of ATSC
    {0xCD, 0xCD, 10, detail::psip_base_pid},    // STT
    {0xD4, 0xD4, 3600, detail::psip_base_pid},  // DCCSCT
};

bool is_long(const std::vector<uint8_t>& section) {
  return section[1] & 0x80;
}
int number_of(const std::vector<uint8_t>& section) {
  return is_long(section) ? section[6] : 0;
}
int last_number_of(const std::vector<uint8_t>& section) {
  return is_long(section) ? section[7] : 0;
}
int version_of(const std::vector<uint8_t>& section) {
  return is_long(section) ? section[5] >> 1 & 0x1F : 0;
}

// The number after a section's own, where one is there: the sections of a segment end with its last one (EN
// 300 468, 5.2.4), and those of the next begin eight after its first.
int next_number(const std::vector<uint8_t>& section) {
  const int number = number_of(section);
  const bool ends_segment =
      detail::is_event_information(section[0]) && ByteView(section.data(), section.size())[12] == number;
  return ends_segment ? (number / 8 + 1) * 8 : number + 1;
}

bool are_complete(const std::vector<std::vector<uint8_t>>& sections) {
  int due = 0;
  for (const std::vector<uint8_t>& section : sections) {
    if (number_of(section) > due) return false;
    due = std::max(due, next_number(section));
  }
  return due > last_number_of(sections.front());
}

// The place of a section number.
auto place_in(std::vector<std::vector<uint8_t>>& sections, int number) {
  return std::lower_bound(sections.begin(), sections.end(), number,
                          [](const std::vector<uint8_t>& s, int n) { return number_of(s) < n; });
}

// The section of the same number; null if there is none.
const std::vector<uint8_t>* find_in(std::vector<std::vector<uint8_t>>& sections,
                                    const StreamSection& section) {
  const auto place = place_in(sections, section.section_number());
  return place != sections.end() && number_of(*place) == section.section_number() ? &*place : nullptr;
}

bool same_bytes(const std::vector<uint8_t>* held, const StreamSection& section) {
  return held && held->size() == section.size && std::memcmp(held->data(), section.bytes, section.size) == 0;
}

// Whether a section is of the version that others are of.
bool belongs_to(const std::vector<std::vector<uint8_t>>& sections, const StreamSection& section) {
  return !sections.empty() && version_of(sections.front()) == section.version() &&
         last_number_of(sections.front()) == section.last_section_number();
}

size_t cost_of(const std::vector<std::vector<uint8_t>>& sections) {
  size_t out = 0;
  for (const std::vector<uint8_t>& section : sections) out += section.size() + kSectionCost;
  return out;
}

}  // namespace

TableCollector::TableCollector(Sink sink, const TableCollectorOptions& options)
    : sink_(std::move(sink)), patience_(options.patience), memory_(std::max(options.memory, kLeastMemory)) {}

void TableCollector::push(const StreamSection& section) {
  if (section.has_crc && !section.crc_ok) return;
  if (section.is_long() && section.size < detail::smallest_long_section) return;
  if (section.section_number() > section.last_section_number()) return;
  if (section.table_id() >= 0x3A && section.table_id() <= 0x3F) return;
  collect(find_or_make(TableId::of(section)), section);
}

TableCollector::Table& TableCollector::find_or_make(const TableId& id) {
  Tables& tables = tables_[interval_of(id)];
  auto place = places_.find(id);
  if (place == places_.end()) {
    Tables made;
    made.emplace_back().id = id;
    place = places_.emplace(id, made.begin()).first;
    tables.splice(tables.end(), made);
    held_ += kTableCost;
  } else {
    tables.splice(tables.end(), tables, place->second);
  }
  Table& table = *place->second;
  table.heard = now_;
  table.order = ++pushed_;
  first_deadline_ = std::min(first_deadline_, deadline(table));
  return table;
}

void TableCollector::collect(Table& table, const StreamSection& section) {
  if (!belongs_to(table.coming, section)) {
    clear(table.coming);
    if (belongs_to(table.complete, section) && same_bytes(find_in(table.complete, section), section)) return;
  }
  if (const auto* const held = find_in(table.coming, section); !same_bytes(held, section)) {
    if (held) clear(table.coming);
    add(table.coming, section);
    make_room();
  }
  if (!are_complete(table.coming)) return;

  if (table.coming == table.complete) {
    clear(table.coming);
    return;
  }
  const bool is_first = table.complete.empty();
  const int version = section.version();
  const int old_version = is_first ? version : version_of(table.complete.front());
  clear(table.complete);
  table.complete.swap(table.coming);
  sink_({is_first ? TableEvent::Kind::complete : TableEvent::Kind::changed, table.id, version, old_version,
         table.complete});
}

void TableCollector::add(Sections& sections, const StreamSection& section) {
  sections.insert(place_in(sections, section.section_number()),
                  std::vector<uint8_t>(section.bytes, section.bytes + section.size));
  held_ += section.size + kSectionCost;
}

void TableCollector::clear(Sections& sections) {
  held_ -= cost_of(sections);
  Sections().swap(sections);
}

void TableCollector::drop(Tables::iterator table, TableEvent::Kind kind) {
  Tables dropped;
  dropped.splice(dropped.end(), tables_[interval_of(table->id)], table);
  places_.erase(table->id);
  held_ -= kTableCost + cost_of(table->complete) + cost_of(table->coming);
  if (table->complete.empty()) return;
  const int version = version_of(table->complete.front());
  sink_({kind, table->id, version, version, table->complete});
}

void TableCollector::drop_silent(double seconds) {
  if (std::exchange(now_, seconds) == kNever)
    for (const auto& [id, table] : places_) table->heard = seconds;
  double first = std::numeric_limits<double>::infinity();
  for (Tables& tables : tables_) {
    while (!tables.empty() && deadline(tables.front()) < now_) drop(tables.begin(), TableEvent::Kind::gone);
    if (!tables.empty()) first = std::min(first, deadline(tables.front()));
  }
  first_deadline_ = first;
}

// The table that a section came of last is never the one to go: no table needs all of the memory.
void TableCollector::make_room() {
  while (held_ > memory_) {
    Tables* oldest = nullptr;
    for (Tables& tables : tables_)
      if (!tables.empty() && (!oldest || tables.front().order < oldest->front().order)) oldest = &tables;
    drop(oldest->begin(), TableEvent::Kind::forgotten);
  }
}

double TableCollector::deadline(const Table& table) const {
  return table.heard + patience_ * longest_interval(table.id);
}

void TableCollector::each(const Sink& sink) const {
  for (const auto& [id, table] : places_) {
    if (table->complete.empty()) continue;
    const int version = version_of(table->complete.front());
    sink({TableEvent::Kind::complete, id, version, version, table->complete});
  }
}

// The place of its row, or the one after all.
size_t TableCollector::interval_of(const TableId& table) {
  static_assert(std::size(kLongestIntervals) < kIntervals);
  const auto has_row = [&](const LongestInterval& row) {
    return table.table_id >= row.first && table.table_id <= row.last &&
           (!row.pid || table.pid < 0 || table.pid == row.pid);
  };
  const auto row = std::find_if(std::begin(kLongestIntervals), std::end(kLongestIntervals), has_row);
  return static_cast<size_t>(row - std::begin(kLongestIntervals));
}

double TableCollector::longest_interval(const TableId& table) {
  const size_t row = interval_of(table);
  return row < std::size(kLongestIntervals) ? kLongestIntervals[row].seconds
                                            : std::numeric_limits<double>::infinity();
}

}  // namespace quillon
