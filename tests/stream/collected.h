#pragma once

// Sections as a reader of streams gives them, for what is made of them.

#include "tests/stream/streams.h"

#include <quillon/sections/crc.h>
#include <quillon/stream/table_collector.h>

namespace quillon::test {

constexpr int kPsipPid = 0x1FFB;  // that of ATSC's base tables

inline StreamSection stream_section(const Bytes& bytes, int pid) {
  StreamSection out{pid, 0, bytes.data(), bytes.size(), false, false, false};
  out.has_crc = out.is_long() || out.table_id() == 0x73;
  out.crc_ok = out.has_crc && section_crc(bytes.data(), bytes.size()) == good_section_crc;
  return out;
}

// Calls `use` with each section of a recorded stream, repeated ones too.
template <class Use>
void read_recorded_sections(const std::string& name, Use use) {
  const Bytes bytes = recorded_stream(name);
  SectionReader reader(use, {.repeats = true});
  if (!name.ends_with(".bin"))
    return read_packets(bytes, [&](const TsPacket& packet) { reader.push(packet); });
  for (size_t at = 0; at + 3 <= bytes.size();) {
    const size_t size = ((bytes[at + 1] & 0x0Fu) << 8 | bytes[at + 2]) + 3u;
    reader.push_section(bytes.data() + at, size);
    at += size;
  }
}

}  // namespace quillon::test
