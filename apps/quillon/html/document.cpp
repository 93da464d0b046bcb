#include "apps/quillon/html/document.h"

#include "apps/quillon/html/page_files.h"

namespace quillon::app::html {

std::string document_begin(std::string_view input) {
  Markup out;
  const std::string policy =
      "default-src 'none'; base-uri 'none'; form-action 'none'; img-src data:; "
      "style-src 'unsafe-inline'; script-src '" +
      std::string(kPageScriptHash) + "'";
  out.made("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">")
      .empty("meta", {{"http-equiv", "Content-Security-Policy"}, {"content", policy}})
      .empty("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}})
      .empty("meta", {{"name", "color-scheme"}, {"content", "light dark"}})
      .empty("link", {{"rel", "icon"}, {"href", "data:,"}})
      .element("title", input.empty() ? "Streams" : std::string(input) + " — stream report")
      .made("<style>")
      .made(kPageStyle)
      .made("</style></head><body>")
      .element("a", {{"class", "skip"}, {"href", "#overview"}}, "Skip to the overview")
      .made("<main>");
  return out.take();
}

std::string article(Page& page) {
  constexpr void (*kParts[])(Page&) = {
      write_overview,      write_rates,    write_shares,   write_pids,   write_services,
      write_schedule,      write_networks, write_bouquets, write_times,  write_applications,
      write_notifications, write_ratings,  write_tables,   write_damage, write_sections,
  };
  for (const auto& write : kParts) write(page);

  Markup out;
  const std::string name = page.input.name;
  out.begin("article", {{"aria-label", name}})
      .begin("header")
      .begin("h1")
      .name(name)
      .end()
      .end()
      .begin("div", {{"class", "page"}})
      .begin("nav", {{"aria-label", "Parts of " + name}})
      .begin("ol");
  for (const auto& [id, title] : page.parts) out.begin("li").element("a", {{"href", "#" + id}}, title).end();
  out.end().end().begin("div", {{"class", "parts"}}).made(page.out.take()).end().end().end();
  return out.take();
}

std::string document_end() {
  return "</main><script>" + std::string(kPageScript) + "</script></body></html>\n";
}

}  // namespace quillon::app::html
