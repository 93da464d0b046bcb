#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <quillon/platform/api.h>
#include <quillon/stream/any_table.h>
#include <quillon/stream/packet_reader.h>

namespace quillon {

// A section where it was completed.
struct StreamSection {
  int pid;          // -1 in a chain of bare sections
  uint64_t packet;  // the index of the packet that completed it; in a chain that of the section
  const uint8_t* bytes;
  size_t size;    // from 3 to 4098
  bool has_crc;   // a long section, or a time offset table
  bool crc_ok;    // it has one, and it is right
  bool repeated;  // the section that was last in its place of its table had the same bytes

  std::span<const uint8_t> span() const { return {bytes, size}; }
  int table_id() const { return bytes[0]; }
  bool is_long() const { return bytes[1] & 0x80; }
  // Those of a long section of 8 bytes or more; 0 otherwise.
  int extension() const { return has_header() ? bytes[3] << 8 | bytes[4] : 0; }
  int version() const { return has_header() ? bytes[5] >> 1 & 0x1F : 0; }
  bool is_current() const { return !has_header() || bytes[5] & 1; }
  int section_number() const { return has_header() ? bytes[6] : 0; }
  int last_section_number() const { return has_header() ? bytes[7] : 0; }

 private:
  bool has_header() const { return is_long() && size >= 8; }
};

// What is read, and what of it is given.
struct SectionReaderOptions {
  // To be read beside the PIDs that the stream names, whatever they carry.
  std::vector<int> pids = {};
  // On: all other PIDs too. Of what they carry long sections count whose CRC is right, and nothing else.
  bool every_pid = false;
  // On: repeated sections are given too.
  bool repeats = false;
  // None: ATSC's once its base PID carries one of its tables, DVB's until then.
  std::optional<Standard> standard = {};
};

// Puts the sections of a transport stream together and hands them to a sink, in the order in which they are
// complete: those on the standard PIDs of MPEG-2, DVB and ATSC, on those that PAT, PMT and MGT name for
// tables (maps, networks, AIT, INT, DSM-CC sections, the tables of a master guide), and on those that were
// asked for. What only one table named is left when that table names it no more.
//
//   SectionReader sections([](const StreamSection& section) {
//     if (section.crc_ok) std::cout << section.pid << ": " << section.table_id() << "\n";
//   });
//   while (packets.next(packet)) sections.push(packet);
//
// Every section that begins in a packet is read. Duplicate packets, and those with an error indicator,
// scrambled or without payload are passed over; where the continuity counter shows a loss the section in
// progress is dropped. A section with a wrong CRC is given as such, and not learnt from. A section that
// repeats the last one in its place (PID, table, section number; the current or the next version) is not
// given again, nor parsed. A section without such numbers, or with a wrong CRC, repeats any of the same
// bytes.
//
// Memory: 4.3 KiB a PID on which sections began, 8 MiB of digests at most (262,144 sections; while they grow,
// 12 MiB), 2 MiB for the PIDs that tables name, and 210 KiB: 48 MiB in all. Where there are more sections,
// those are forgotten first, and so given again, that were met longest ago among the sixteen that share a
// bucket; where tables name more than 32,768 PIDs, counting each once a table, those beyond are not read. It
// takes nothing a packet, nor a section that names no PIDs.
//
// The sink may add and remove PIDs. One that throws leaves the reader usable; the sections after it in the
// same packet are lost. The constructor, and whatever reads, throw std::bad_alloc where memory runs out; the
// section that was read is given, and learnt from, when it comes again. For threads the rule of the tables
// holds (PsiBase1).
class QUILLON_API SectionReader {
 public:
  // The section is good during the call.
  using Sink = std::function<void(const StreamSection&)>;

  explicit SectionReader(Sink sink, const SectionReaderOptions& options = {});
  ~SectionReader();
  SectionReader(const SectionReader&) = delete;
  SectionReader& operator=(const SectionReader&) = delete;

  void push(const TsPacket& packet) {
    if (packet.upcoming && interest_[static_cast<size_t>(TsPacket::pid_of(packet.upcoming))]) {
      detail::fetch(packet.upcoming + 64);
      detail::fetch(packet.upcoming + 128);
    }
    if (interest_[static_cast<size_t>(packet.pid())]) read(packet);
  }
  // A section of a chain without packets. One whose length is not `size` is passed over.
  void push_section(const uint8_t* bytes, size_t size);
  void push_section(std::span<const uint8_t> section) { push_section(section.data(), section.size()); }

  // Asks for a PID as the options do, and takes that back. One outside 0 to 0x1FFE carries no sections.
  void add_pid(int pid);
  void remove_pid(int pid);
  // Whether sections of a PID are given whatever they are: it is standard, named or asked for.
  bool reads_pid(int pid) const;
  // Whose tables the stream holds, as far as is known.
  Standard standard() const;

 private:
  class State;

  void read(const TsPacket& packet);

  std::array<uint8_t, TsPacket::pids> interest_ = {};  // 0: a packet of that PID is not looked at
  std::unique_ptr<State> state_;
};

}  // namespace quillon
