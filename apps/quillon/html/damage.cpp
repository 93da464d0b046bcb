#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"

namespace quillon::app::html {

void write_damage(Page& page) {
  const DamageList& damage = page.record.damage;
  if (damage.items().empty()) return;
  const Part part(page, "damage", "What is damaged");
  for (int i = 0; i < DamageList::kinds; ++i) {
    const auto kind = static_cast<DamageList::Kind>(i);
    if (damage.count(kind) == 0) continue;
    page.out.element("h3", {{"id", page.id(DamageList::id_of(kind))}}, DamageList::title_of(kind));
    uint64_t shown = 0;
    {
      Table table(page, DamageList::title_of(kind),
                  {page.input.is_chain ? "#Section" : "#Packet", "PID", "#Time", "What"});
      for (const DamageList::Item& item : damage.items()) {
        if (item.kind != kind) continue;
        ++shown;
        Table::Row(table)
            .cell(grouped(item.packet + 1))
            .cell(pid_text(item.pid))
            .cell(page.has_clock() ? seconds_text(item.seconds) : "")
            .name(item.what);
      }
    }
    if (damage.count(kind) > shown)
      page.out.element("p", {{"class", "note"}},
                       "And " + grouped(damage.count(kind) - shown) + " more, which are not listed.");
  }
}

}  // namespace quillon::app::html
