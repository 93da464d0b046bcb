#include "apps/quillon/describe.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"

#include <algorithm>

namespace quillon::app::html {

namespace {

void write_streams(Markup& out, const Service& service) {
  if (service.streams.empty()) return;
  out.begin("ul", {{"class", "streams"}});
  for (const ServiceStream& stream : service.streams) {
    out.begin("li").element("code", pid_text(stream.pid)).text(" ").name(text_of(stream));
    if (!stream.ca.empty()) out.element("em", {{"title", text_of(stream.ca)}}, "scrambled");
    out.end();
  }
  out.end();
}

void write_list(Page& page, const std::vector<const Service*>& services, const char* caption) {
  constexpr size_t most = 1000;
  const bool is_atsc = page.input.standard == Standard::atsc;
  {
    Table table(page, caption,
                {is_atsc ? "Channel" : "Number", is_atsc ? "Name" : "Service and provider", "Type",
                 "Streams by PID", "Conditional access", "#Map", "#Clock"},
                "services");
    for (size_t i = 0; i < services.size() && i < most; ++i) {
      const Service& service = *services[i];
      std::string state = running_remark(service.running_status);
      if (service.hidden > 0) state += state.empty() ? "hidden" : ", hidden";
      if (service.free_ca_mode > 0) state += state.empty() ? "access controlled" : ", access controlled";
      Table::Row(table)
          .cell(number_of(service))
          .cell_of([&](Markup& out) {
            out.begin("strong").name(name_of(service)).end();
            if (!service.provider.empty()) out.begin("small").name(service.provider).end();
          })
          .cell_of([&](Markup& out) {
            out.text(service.service_type_text);
            if (!state.empty()) out.element("small", state);
          })
          .cell_of([&](Markup& out) { write_streams(out, service); })
          .cell(text_of(service.ca))
          .cell(pid_text(service.map_pid))
          .cell(pid_text(service.pcr_pid));
    }
  }
  if (services.size() > most)
    page.out.element("p", {{"class", "note"}}, "And " + grouped(services.size() - most) + " more.");
}

void write_others(Page& page, const std::vector<const Service*>& services) {
  constexpr size_t most = 1000;
  page.out.begin("details").element("summary",
                                    grouped(services.size()) + " services of other transport streams");
  {
    Table table(page, "Services of other transport streams",
                {"#Transport stream", "#Number", "Service", "Provider", "Type"});
    for (size_t i = 0; i < services.size() && i < most; ++i)
      Table::Row(table)
          .cell(std::to_string(services[i]->transport_stream_id))
          .cell(number_of(*services[i]))
          .name(name_of(*services[i]))
          .name(services[i]->provider)
          .cell(services[i]->service_type_text);
  }
  if (services.size() > most)
    page.out.element("p", {{"class", "note"}}, "And " + grouped(services.size() - most) + " more.");
  page.out.end();
}

}  // namespace

void write_services(Page& page) {
  const std::vector<const Service*> all = page.survey.directory.services();
  const bool is_atsc = page.input.standard == Standard::atsc;
  const std::vector<CaStream>& emms = page.survey.directory.emms();
  if (all.empty() && emms.empty()) return;
  const Part part(page, "services", is_atsc ? "Channels" : "Services");
  const auto others =
      std::find_if(all.begin(), all.end(), [](const Service* service) { return !service->is_actual; });
  if (others != all.begin())
    write_list(page, {all.begin(), others}, is_atsc ? "Channels of the stream" : "Services of the stream");
  if (others != all.end()) write_others(page, {others, all.end()});
  if (emms.empty()) return;
  page.out.element("h3", "Entitlements");
  Table table(page, "Entitlement messages by PID", {"PID", "Conditional access system"});
  for (const CaStream& emm : emms) Table::Row(table).cell(pid_text(emm.pid)).cell(text_of(std::vector{emm}));
}

}  // namespace quillon::app::html
