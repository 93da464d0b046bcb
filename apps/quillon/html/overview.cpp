#include "apps/quillon/describe.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"
#include "apps/quillon/times.h"

#include <algorithm>

namespace quillon::app::html {

namespace {

void write_facts(Page& page) {
  const Input& input = page.input;
  Markup& out = page.out;
  const auto fact = [&out](const char* title, std::string_view text) {
    out.begin("div").element("dt", title).begin("dd").name(text).end().end();
  };
  out.begin("dl", {{"class", "facts"}});
  fact("Standard", input.standard == Standard::atsc ? "ATSC" : "DVB");
  if (!page.survey.network_name.empty()) fact("Network", page.survey.network_name);
  fact("Size", grouped(input.bytes) + " bytes");
  if (input.is_chain) {
    fact("Content", "sections without packets");
  } else {
    fact("Packets",
         grouped(input.packets.packets()) + " of " + std::to_string(input.packets.stride()) + " bytes");
    fact("Duration", page.has_clock() ? seconds_text(input.statistics.seconds()) : "no clock (PCR)");
    if (page.has_clock()) fact("Rate", rate_text(input.statistics.bit_rate()));
    fact("PIDs", grouped(page.pids.size()));
  }
  const std::vector<const Service*> services = page.survey.directory.services();
  fact(input.standard == Standard::atsc ? "Channels" : "Services",
       grouped(static_cast<uint64_t>(
           std::count_if(services.begin(), services.end(), [](const Service* s) { return s->is_actual; }))));
  uint64_t tables = 0;
  for (const auto& [id, count] : page.record.parsed) tables += count;
  out.begin("div")
      .element("dt", "Distinct sections")
      .element("dd", {{"id", page.id("distinct")}, {"data-sections", tables}}, grouped(tables))
      .end();
  if (const auto time = page.survey.time) fact("Time of the stream", day_and_time(*time, false) + " UTC");
  out.end();
}

void write_health(Page& page) {
  Markup& out = page.out;
  out.element("h3", "Health").begin("ul", {{"class", "health"}});
  const auto tile = [&](const char* title, uint64_t count, const std::string& target,
                        const std::string& value) {
    out.begin("li", {{"class", count > 0 ? "bad" : "good"}});
    if (!target.empty()) out.begin("a", {{"href", "#" + page.id(target)}});
    out.element("strong", value).element("span", title);
    if (!target.empty()) out.end();
    out.end();
  };
  const auto damage = [&](const char* title, DamageList::Kind kind) {
    const uint64_t count = page.record.damage.count(kind);
    tile(title, count, count > 0 ? DamageList::id_of(kind) : "", grouped(count));
  };
  if (!page.input.is_chain) {
    damage("Sync losses", DamageList::sync_loss);
    damage("Continuity errors", DamageList::continuity);
    damage("Transport errors", DamageList::transport_error);
    uint64_t scrambled = 0;
    for (const PidContent& pid : page.pids) scrambled += page.input.statistics.pid(pid.pid).scrambled;
    out.begin("li", {{"class", "good"}})
        .begin("a", {{"href", "#" + page.id("pids")}})
        .element("strong", share_text(scrambled, page.input.statistics.packets()))
        .element("span", "Scrambled packets")
        .end()
        .end();
  }
  damage("Wrong CRCs", DamageList::wrong_crc);
  damage("Refused sections", DamageList::refused_section);
  damage("Refused descriptors", DamageList::refused_descriptor);
  uint64_t gaps = 0;
  for (const auto& [id, strip] : page.record.strips.all()) gaps += strip.gap_count;
  if (page.has_clock()) tile("Tables too late", gaps, "tables", grouped(gaps));
  out.end();
}

}  // namespace

void write_overview(Page& page) {
  const Part part(page, "overview", "Overview");
  write_facts(page);
  write_health(page);
}

}  // namespace quillon::app::html
