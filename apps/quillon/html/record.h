#pragma once

#include "apps/quillon/feed.h"
#include "apps/quillon/html/damage_list.h"
#include "apps/quillon/html/rate_record.h"
#include "apps/quillon/html/section_sample.h"
#include "apps/quillon/html/table_strips.h"

#include <cstdint>
#include <map>

namespace quillon::app::html {

// What a page shows of an input beside its survey: 20 MiB at most.
struct Record {
  RateRecord rates;
  TableStrips strips;
  SectionSample sample;
  DamageList damage;
  std::map<int, uint64_t> parsed;  // distinct sections that are tables, by table id

  void push(const Input& input, const TsPacket& packet) {
    rates.push(packet.pid(), input.statistics.seconds());
    damage.push(input, packet);
  }
  // `table`: of a distinct section whose CRC is right.
  void push(const Input& input, const StreamSection& section, const ParsedTable& table) {
    if (!section.repeated) {
      sample.push(section, input.statistics.seconds());
      damage.push(input, section, table);
      if (table.table) ++parsed[section.table_id()];
    }
    if (!section.has_crc || section.crc_ok) strips.push(section, input.statistics.seconds());
  }
};

}  // namespace quillon::app::html
