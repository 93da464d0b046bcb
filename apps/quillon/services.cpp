#include "apps/quillon/commands.h"
#include "apps/quillon/describe.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <string>

#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

class Services final : public Surveyor {
 public:
  using Surveyor::Surveyor;

 private:
  void print(const Input&, const Survey& survey) override {
    for (const Service* const service : wanted_services(survey)) print(*service);
  }

  void print(const Service& service) {
    std::string head = number_of(service) + "  " + name_of(service);
    const auto add = [&head](const std::string& part) {
      if (!part.empty()) head += ", " + part;
    };
    if (!service.provider.empty()) head += " (" + service.provider + ")";
    std::string type = service.service_type_text;
    std::replace(type.begin(), type.end(), '_', ' ');
    add(type);
    add(running_remark(service.running_status));
    if (service.free_ca_mode == 1) add("scrambled");
    if (service.hidden == 1) add("hidden");
    if (!service.is_actual)
      add("on transport stream " + hex(static_cast<unsigned>(service.transport_stream_id), 4) +
          " of network " + hex(static_cast<unsigned>(service.original_network_id), 4));
    console_.print(visible(head) + '\n');
    Columns lines;
    if (service.map_pid >= 0) lines.add({pid_text(service.map_pid), "map"});
    for (const ServiceStream& stream : service.streams)
      lines.add({pid_text(stream.pid),
                 text_of(stream) + (stream.pid == service.pcr_pid ? ", with the clock" : "")});
    for (const CaStream& ca : service.ca) lines.add({pid_text(ca.pid), "ECM of " + text_of(std::vector{ca})});
    console_.print(lines.text());
  }
};

}  // namespace

Exit services(const Options& options, Console& console) {
  init();
  return Services(options, console).run({.every_service = true});
}

}  // namespace quillon::app
