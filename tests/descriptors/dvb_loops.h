#pragma once

// The loops of all DVB tables, to be tested alike.

#include "tests/tables/tables.h"

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/dvb_loop.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tot.h>

namespace quillon::test {

// An owner of loops: a section with one loop of these descriptors, and that loop of the table.
struct Owner {
  const char* name;
  std::function<Bytes(const Bytes& descriptors)> section;
  size_t body;  // where the section's body begins
  int place;    // where in the body the loop does
  // The loop of the parsed section; with `failures` the parse is tolerant.
  std::function<DvbLoop(const Bytes& section, DescriptorFailures* failures)> loop;
  std::function<std::vector<int>(const Bytes& section)> positions;  // of a section that is kept
};

template <class T, class Loop, class Positions>
Owner owner(const char* name, int place, std::function<Bytes(const Bytes&)> section, Loop loop_of,
            Positions positions_of) {
  return {name,
          std::move(section),
          std::is_base_of_v<PsiBase, T> ? size_t{3} : size_t{8},
          place,
          [loop_of](const Bytes& bytes, DescriptorFailures* failures) {
            T table;
            table.set_tolerant(failures != nullptr);
            table.Parse(bytes.data(), bytes.size(), false);
            if (failures) *failures = table.get_descriptor_failures();
            return DvbLoop(loop_of(table));
          },
          [positions_of](const Bytes& bytes) { return positions_of(parsed_table<T>(bytes, true)); }};
}

inline const std::vector<Owner>& owners() {
  const auto own_loop = [](const DvbLoop& table) -> const DvbLoop& { return table; };
  const auto own_positions = [](const auto& table) { return table.get_descriptor_pos(); };
  const auto streams = [](const Bytes& descriptors) { return loop(joined({Bytes(4), loop(descriptors)})); };
  static const std::vector<Owner> all = {
      owner<PmtDVB>(
          "PmtDVB", 4,
          [](const Bytes& d) {
            return long_section(0x02, joined({{0xE1, 0}, loop(d)}));
          },
          own_loop, own_positions),
      owner<PmtDVB>(
          "PmtDVB::ElementaryStream", 9,
          [](const Bytes& d) {
            return long_section(0x02, joined({{0xE1, 0}, loop({}), {6, 0xE1, 0}, loop(d)}));
          },
          [](const PmtDVB& t) { return t.get_pmt_stream_info().at(0); },
          [](const PmtDVB& t) { return t.get_pmt_stream_info().at(0).get_descriptor_pos(); }),
      owner<Nit>(
          "Nit", 2,
          [](const Bytes& d) {
            return long_section(0x40, joined({loop(d), loop({})}));
          },
          own_loop, own_positions),
      owner<Nit>(
          "Nit::Stream_info", 10,
          [streams](const Bytes& d) {
            return long_section(0x40, joined({loop({}), streams(d)}));
          },
          [](const Nit& t) { return t.get_stream_infos().at(0); },
          [](const Nit& t) { return t.get_stream_infos().at(0).get_descriptor_pos(); }),
      owner<Bat>(
          "Bat", 2,
          [](const Bytes& d) {
            return long_section(0x4A, joined({loop(d), loop({})}));
          },
          own_loop, [](const Bat&) { return std::vector<int>(); }),
      owner<Bat>(
          "Bat::Stream_info", 10,
          [streams](const Bytes& d) {
            return long_section(0x4A, joined({loop({}), streams(d)}));
          },
          [](const Bat& t) { return t.get_stream_infos().at(0); },
          [](const Bat& t) { return t.get_stream_infos().at(0).get_descriptor_pos(); }),
      owner<Sdt>(
          "Sdt::Service_info", 8,
          [](const Bytes& d) {
            return long_section(0x42, joined({Bytes(6), loop(d)}));
          },
          [](const Sdt& t) { return t.get_service_infos().at(0); },
          [](const Sdt& t) { return t.get_service_infos().at(0).get_descriptor_pos(); }),
      owner<Eit>(
          "Eit::EventInfo", 18,
          [](const Bytes& d) {
            return long_section(0x4E, joined({Bytes(16), loop(d)}));
          },
          [](const Eit& t) { return t.get_eventinfo().at(0); },
          [](const Eit& t) { return t.get_eventinfo().at(0).get_descriptor_pos(); }),
      owner<Tot>(
          "Tot", 7,
          [](const Bytes& d) {
            return short_section(0x73, joined({Bytes(5), loop(d), Bytes(4)}));
          },
          own_loop, own_positions),
  };
  return all;
}

// The loop of a network with these descriptors.
inline DvbLoop loop_of(const Bytes& descriptors) {
  return parsed_table<Nit>(long_section(0x40, joined({loop(descriptors), loop({})})));
}

}  // namespace quillon::test
