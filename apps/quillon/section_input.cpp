#include "apps/quillon/section_input.h"

#include <quillon/atsc/mgt.h>
#include <quillon/descriptors/data/application_signalling.h>
#include <quillon/descriptors/data/data_broadcast.h>
#include <quillon/sections/crc.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/pmt.h>

namespace quillon::app {

namespace {

constexpr int kPatPid = 0x0000;
constexpr int kPsipBasePid = 0x1FFB;
// CAT, NIT, SDT and BAT, EIT, RST, TDT and TOT.
constexpr int kStandardPids[] = {kPatPid, 0x0001, 0x0010, 0x0011, 0x0012, 0x0013, 0x0014, kPsipBasePid};

constexpr int kNotificationBroadcast = 0x000B;
constexpr int kPrivateSections = 0x05;

size_t section_size(const uint8_t* bytes) {
  return ((bytes[1] & 0x0Fu) << 8 | bytes[2]) + 3u;
}

}  // namespace

SectionReader::SectionReader(StreamMap& map, Sink sink, bool every_pid)
    : map_(map), sink_(std::move(sink)), every_pid_(every_pid) {
  serve_every_section(true);
  map_.pids.insert(std::begin(kStandardPids), std::end(kStandardPids));
  for (const int pid : map_.pids) follow(pid);
}

void SectionReader::push(uint8_t* packet) {
  ++packets_;
  push_data(packet, packet_size);
}

void SectionReader::push_section(const uint8_t* bytes, size_t size) {
  ++packets_;
  const Section section{-1, packets_, bytes, size};
  learn(section);
  sink_(section);
}

void SectionReader::follow(int pid) {
  // A filter of no bytes takes every section of its PID.
  if (followed_.insert(pid).second)
    add_psi_handler(pid, nullptr, nullptr, 0, static_cast<unsigned long>(pid));
}

void SectionReader::on_ts_packet(const TSHeader& header, const uint8_t*) {
  if (header.get_pid() == kPsipBasePid) map_.atsc_base = true;
  if (every_pid_) follow(header.get_pid());
}

void SectionReader::on_psi_section(unsigned long key, int size, uint8_t* bytes) {
  const Section section{static_cast<int>(key), packets_, bytes, static_cast<size_t>(size)};
  const bool known = map_.pids.contains(section.pid);
  if (!known && (!(bytes[1] & 0x80) || section_crc(bytes, section.size) != good_section_crc)) return;
  learn(section);
  sink_(section);
}

// What a broken section would say is not learnt; its failure is reported where it is shown.
void SectionReader::learn(const Section& section) {
  try {
    if (section.table_id() == 0x00 && section.pid <= 0) learn_programs(section);
    if (section.table_id() == 0x02) learn_streams(section);
    if (section.table_id() >= 0xC7 && section.table_id() <= 0xCD) learn_guide(section);
  } catch (const error&) {
  }
}

void SectionReader::learn_programs(const Section& section) {
  Pat pat;
  pat.Parse(section.bytes, section.size, false);
  map_.programs_known = true;
  for (const Pat::program_info& program : pat.get_program_info()) {
    const int pid = program.get_program_map_pid();
    if (map_.pids.insert(pid).second && program.get_program_number() != 0) map_.map_pids_missing.insert(pid);
    follow(pid);
  }
}

void SectionReader::learn_streams(const Section& section) {
  PmtDVB pmt;
  pmt.set_tolerant(true);
  pmt.Parse(section.bytes, section.size, false);
  map_.map_pids_missing.erase(section.pid);
  for (const PmtDVB::ElementaryStream& stream : pmt.get_pmt_stream_info()) {
    bool announced = stream.get_stream_type() == kPrivateSections &&
                     !stream.get_application_signalling_descriptors().empty();
    for (const DescriptorDataBroadcastId& id : stream.get_data_broadcast_id_descriptors())
      announced = announced || id.data_broadcast_id == kNotificationBroadcast;
    if (announced) announce(stream.get_elementary_pid());
  }
}

void SectionReader::announce(int pid) {
  map_.pids.insert(pid);
  follow(pid);
}

void SectionReader::learn_guide(const Section& section) {
  if (section.pid >= 0 && section.pid != kPsipBasePid) return;
  if (section_crc(section.bytes, section.size) != good_section_crc) return;
  map_.standard = Standard::atsc;
  if (section.table_id() != 0xC7) return;
  AtscMGT guide;
  guide.Parse(section.bytes, section.size, false);
  map_.atsc_guide = true;
  for (const AtscMGT::Table& table : guide.tables) announce(table.table_type_PID);
}

size_t walk_section_chain(const std::vector<uint8_t>& bytes,
                          const std::function<void(const uint8_t*, size_t)>& each) {
  size_t at = 0;
  while (bytes.size() - at >= 3) {
    const size_t size = section_size(bytes.data() + at);
    if (size > bytes.size() - at) break;
    each(bytes.data() + at, size);
    at += size;
  }
  return bytes.size() - at;
}

bool is_section_chain(const std::vector<uint8_t>& bytes) {
  // The first long section decides by its CRC: short ones look like anything.
  for (size_t at = 0; bytes.size() - at >= 3;) {
    const uint8_t* const section = bytes.data() + at;
    const size_t size = section_size(section);
    if (size > bytes.size() - at) return false;
    if (section[1] & 0x80) return section_crc(section, size) == good_section_crc;
    at += size;
  }
  return false;
}

}  // namespace quillon::app
