#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"

#include <cmath>

namespace quillon::app::html {

namespace {

constexpr size_t kMostRows = 300;

std::string ids_of(const TableId& id) {
  std::string out = hex(static_cast<unsigned>(id.extension), 4);
  if (id.transport_stream_id != 0) out += ", stream " + hex(static_cast<unsigned>(id.transport_stream_id), 4);
  if (id.original_network_id != 0)
    out += ", network " + hex(static_cast<unsigned>(id.original_network_id), 4);
  if (id.further_id != 0) out += ", " + hex(id.further_id, 8);
  return out;
}

std::string versions_of(const TableStrip& strip) {
  std::string out;
  for (const TableStrip::Version& version : strip.versions) {
    if (!out.empty()) out += " → ";
    out += std::to_string(version.number);
  }
  if (strip.version_count > strip.versions.size()) out += " → …";
  return out;
}

// Thousandths of the strip.
constexpr double kWidth = 1000;

void write_strip(Markup& out, const TableStrip& strip, double seconds) {
  const auto x = [seconds](double at) { return decimal(at / seconds * kWidth, 1); };
  std::string words = "Sent " + grouped(strip.sent) + " times";
  if (strip.gap_count > 0) {
    words +=
        ", too late " + grouped(strip.gap_count) + " times, first after " + seconds_text(strip.gaps[0].begin);
  }
  if (strip.version_count > 1) words += ", " + grouped(strip.version_count - 1) + " changes of version";
  out.begin("svg", {{"class", "strip"},
                    {"viewBox", "0 0 1000 20"},
                    {"preserveAspectRatio", "none"},
                    {"role", "img"},
                    {"aria-label", words}});
  for (const TableStrip::Gap& gap : strip.gaps)
    out.begin("rect",
              {{"class", "gap"}, {"x", x(gap.begin)}, {"width", x(gap.end - gap.begin)}, {"height", 20}})
        .element("title", seconds_text(gap.end - gap.begin) + " from " + seconds_text(gap.begin) + " on")
        .end();
  std::string marks;
  for (size_t i = 0; i < strip.marks.size(); ++i)
    if (strip.marks[i]) marks += "M" + x(static_cast<double>(i) * strip.mark_seconds) + " 4v12";
  out.element("path", {{"class", "mark"}, {"d", marks}}, "");
  for (size_t i = 1; i < strip.versions.size(); ++i)
    out.begin("path", {{"class", "change"}, {"d", "M" + x(strip.versions[i].seconds) + " 0v20"}})
        .element("title", "version " + std::to_string(strip.versions[i].number) + " from " +
                              seconds_text(strip.versions[i].seconds) + " on")
        .end();
  out.end();
}

}  // namespace

void write_tables(Page& page) {
  const auto& strips = page.record.strips.all();
  if (strips.empty()) return;
  const Part part(page, "tables", "Tables");
  const bool has_clock = page.has_clock();
  page.out.begin("ul", {{"class", "counts"}, {"aria-label", "Distinct sections by table"}});
  for (const auto& [table_id, count] : page.record.parsed)
    page.out.begin("li", {{"data-table", table_id}, {"data-sections", count}})
        .text(table_title(table_id, page.input.standard) + " ")
        .element("b", grouped(count))
        .end();
  page.out.end().begin("p", {{"class", "note"}});
  page.out.text(
      "Times are those between two sendings of the section of a table that was met first. Asked for is the "
      "longest that TS 101 211, A/65 or the standard of the table allows.");
  if (has_clock)
    page.out.text(" The strips run over ")
        .text(seconds_text(page.input.statistics.seconds()))
        .text("; a longer wait is red, a line across is a new version.");
  page.out.end();
  size_t rows = 0;
  {
    Table table(page, "Tables and how often they are sent",
                {"Table", "PID", "Ids", "Versions", "#Sent", "#Mean", "#Longest", "#Asked for", "When"},
                "strips");
    for (const auto& entry : strips) {
      if (rows++ == kMostRows) break;
      const TableId& id = entry.first;
      const TableStrip& strip = entry.second;
      const bool is_timed = has_clock && strip.intervals > 0;
      const double asked = TableCollector::longest_interval(id);
      Table::Row(table)
          .cell(table_title(id.table_id, page.input.standard) + (id.is_current ? "" : ", next"))
          .cell(pid_text(id.pid))
          .cell(ids_of(id))
          .cell(versions_of(strip))
          .cell(grouped(strip.sent))
          .cell(is_timed ? seconds_text(strip.sum / static_cast<double>(strip.intervals)) : "")
          .cell_of([&](Markup& out) {
            if (!is_timed) return;
            strip.gap_count > 0
                ? void(out.element("strong", {{"class", "late"}}, seconds_text(strip.largest)))
                : void(out.text(seconds_text(strip.largest)));
          })
          .cell(std::isfinite(asked) ? decimal(asked, 3) + " s" : "")
          .cell_of([&](Markup& out) {
            if (has_clock) write_strip(out, strip, page.input.statistics.seconds());
          });
    }
  }
  if (strips.size() > kMostRows)
    page.out.element("p", {{"class", "note"}}, "And " + grouped(strips.size() - kMostRows) + " more tables.");
}

}  // namespace quillon::app::html
