#pragma once

// Wire forms that tables of both standards have.

#include "tests/support/bytes.h"

namespace quillon::sample {

using test::Bytes;

inline void append(Bytes& out, const Bytes& more) {
  out.insert(out.end(), more.begin(), more.end());
}

// The parts that `part` makes of the items of a list, one after the other.
template <class List, class Part>
Bytes each(const List& list, Part part) {
  Bytes out;
  for (const auto& item : list) append(out, part(item));
  return out;
}

// A length byte and what it counts.
inline Bytes counted(const Bytes& bytes) {
  return test::joined({test::bits({{8, bytes.size(), "length"}}), bytes});
}

// A length of 12 bits, reserved ones in front, and what it counts.
inline Bytes loop(const Bytes& bytes) {
  return test::joined({test::bits({{4, 0xF, "reserved"}, {12, bytes.size(), "length"}}), bytes});
}

inline Bytes language(const char* code, uint8_t audio_type = 0) {
  return test::descriptor(0x0A, test::joined({test::text(code), {audio_type}}));
}

struct ProgramStream {
  uint8_t stream_type;
  uint16_t pid;
  Bytes descriptors;
};

inline Bytes program_association(uint16_t transport_stream,
                                 const std::vector<std::pair<uint16_t, uint16_t>>& maps) {
  return test::long_section(0x00,
                            each(maps,
                                 [](const auto& map) {
                                   return test::bits({{16, map.first, "program_number"},
                                                      {3, 7, "reserved"},
                                                      {13, map.second, "program_map_PID"}});
                                 }),
                            {.extension = transport_stream});
}

inline Bytes program_map(uint16_t program, int version, uint16_t clock_pid, const Bytes& descriptors,
                         const std::vector<ProgramStream>& streams) {
  const auto row = [](const ProgramStream& s) {
    return test::joined(
        {test::bits({{8, s.stream_type, "stream_type"}, {3, 7, "reserved"}, {13, s.pid, "elementary_PID"}}),
         loop(s.descriptors)});
  };
  return test::long_section(0x02,
                            test::joined({test::bits({{3, 7, "reserved"}, {13, clock_pid, "PCR_PID"}}),
                                          loop(descriptors), each(streams, row)}),
                            {.extension = program, .version = version});
}

}  // namespace quillon::sample
