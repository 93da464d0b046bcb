#include "apps/quillon/describe.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"

namespace quillon::app::html {

void write_pids(Page& page) {
  if (page.pids.empty()) return;
  const Part part(page, "pids", "PIDs");
  constexpr size_t most = 500;
  const StreamStatistics& statistics = page.input.statistics;
  {
    Table table(page, "Packets by PID",
                {"PID", "Content", "#Packets", "#Share", "#Mean rate", "#Scrambled", "#Continuity errors",
                 "#Transport errors", "#Clock references"});
    for (size_t i = 0; i < page.pids.size() && i < most; ++i) {
      const PidContent& pid = page.pids[i];
      const PidStatistics& counts = statistics.pid(pid.pid);
      const auto number = [](uint64_t count) { return count > 0 ? grouped(count) : std::string(); };
      Table::Row(table)
          .cell(pid_text(pid.pid))
          .cell_of([&](Markup& out) {
            out.element("i", {{"class", std::string("swatch ") + class_of(pid.carries)}}, "")
                .name(pid.text.empty() ? pid.brief : pid.text);
          })
          .cell(grouped(pid.packets))
          .cell(share_text(pid.packets, statistics.packets()))
          .cell(page.has_clock() ? rate_text(statistics.bit_rate(pid.pid)) : "")
          .cell(number(counts.scrambled))
          .cell(number(counts.continuity_errors))
          .cell(number(counts.transport_errors))
          .cell(number(counts.clock_references));
    }
  }
  if (page.pids.size() > most)
    page.out.element("p", {{"class", "note"}},
                     "And " + grouped(page.pids.size() - most) + " PIDs with fewer packets.");
}

}  // namespace quillon::app::html
