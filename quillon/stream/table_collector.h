#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/table_id.h>

namespace quillon {

// What became of a table.
struct TableEvent {
  enum class Kind {
    complete,   // all sections are there, for the first time
    changed,    // all sections of another version are there
    gone,       // nothing of it came for too long
    forgotten,  // there is no room for it; it is complete again once all its sections came again
  };
  Kind kind;
  const TableId& table;
  int version;      // 0 of a short section
  int old_version;  // the one before, of a table that changed; else the same
  // In the order of their numbers; of a table that is gone or forgotten, the last that it had.
  const std::vector<std::vector<uint8_t>>& sections;

  // Whether the table is there now.
  bool is_there() const { return kind == Kind::complete || kind == Kind::changed; }
};

// How long a table is waited for, and what all may take.
struct TableCollectorOptions {
  // A table is gone after so many of its longest intervals.
  double patience = 3;
  // What the tables may take, in bytes; 4 MiB at least.
  size_t memory = size_t{32} << 20;
};

// Puts tables together from their sections and says when one is complete, changed or gone.
//
//   TableCollector tables([](const TableEvent& event) {
//     if (event.table.table_id != 0x40 || !event.is_there()) return;
//     Nit network;
//     for (const auto& section : event.sections) network.Parse(section.data(), section.size(), false);
//     std::cout << network.get_stream_infos().size() << " transport streams\n";
//   });
//   SectionReader sections([&](const StreamSection& section) { tables.push(section); }, {.repeats = true});
//   while (packets.next(packet)) {
//     statistics.push(packet);
//     sections.push(packet);
//     tables.advance(statistics.seconds());
//   }
//
// A section with a wrong CRC does not count. A table is complete with all sections from 0 to
// last_section_number, where those of an event information table end with each segment's last one. A section
// of another version begins it anew, and so does one of the same version with other bytes than the one of its
// number, as tables come from multiplexers that do not count; what was complete stays so until the new one
// is. A short section is a table by itself. DSM-CC sections (table ids 0x3A to 0x3F) carry data, and are
// passed over.
//
// A table whose longest interval is stated (TS 101 211, 4.4; A/65, 7; for maps and associations TR 101 290,
// for application information TS 102 809, for IP/MAC notification EN 301 192) is gone when none of its
// sections came for three times as long. So it needs the repeated sections, too; they cost a comparison.
//
// Memory: what the options say, 32 MiB by default, the memory of the heap's blocks counted in. Where tables
// need more, those are forgotten first of which nothing came for the longest time.
//
// The sink may not use the collector. One that throws leaves it usable, and does not get the event again.
// Where memory runs out, std::bad_alloc comes out of push; the tables that were complete are as before, and
// the section counts when it comes again. For threads the rule of the tables holds (PsiBase1).
class QUILLON_API TableCollector {
 public:
  // What an event refers to is good during the call.
  using Sink = std::function<void(const TableEvent&)>;

  explicit TableCollector(Sink sink, const TableCollectorOptions& options = {});
  TableCollector(const TableCollector&) = delete;
  TableCollector& operator=(const TableCollector&) = delete;

  void push(const StreamSection& section);
  // The time from here on, in seconds of any clock that does not go back: that of the stream
  // (StreamStatistics), or one on the wall. Without it no table is gone. An earlier time is passed over.
  void advance(double seconds) {
    if (!(seconds > now_)) return;
    if (seconds > first_deadline_) drop_silent(seconds);
    now_ = seconds;
  }

  // Hands each table that is complete to a sink as such, in the order of their ids.
  void each(const Sink& sink) const;

  // Seconds within which every section of a table is to come again; infinite where no standard says it.
  static double longest_interval(const TableId& table);

 private:
  using Sections = std::vector<std::vector<uint8_t>>;
  struct Table {
    TableId id;
    double heard = 0;
    uint64_t order = 0;  // of the last section, among all
    Sections complete;
    Sections coming;
  };
  // Those of one interval, from the one that was silent for the longest time on.
  using Tables = std::list<Table>;
  static constexpr size_t kIntervals = 32;
  static constexpr double kNever = -std::numeric_limits<double>::infinity();

  static size_t interval_of(const TableId& table);
  Table& find_or_make(const TableId& id);
  void collect(Table& table, const StreamSection& section);
  void add(Sections& sections, const StreamSection& section);
  void clear(Sections& sections);
  void drop(Tables::iterator table, TableEvent::Kind kind);
  void drop_silent(double seconds);
  void make_room();
  double deadline(const Table& table) const;

  const Sink sink_;
  const double patience_;
  const size_t memory_;
  std::array<Tables, kIntervals> tables_;
  std::map<TableId, Tables::iterator> places_;
  size_t held_ = 0;  // what the tables take, in bytes
  uint64_t pushed_ = 0;
  double now_ = kNever;
  double first_deadline_ = std::numeric_limits<double>::infinity();  // that of no table is earlier
};

}  // namespace quillon
