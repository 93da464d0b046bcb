#include "apps/quillon/commands.h"
#include "apps/quillon/describe.h"
#include "apps/quillon/text.h"
#include "apps/quillon/times.h"

#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

class Summary final : public Surveyor {
 public:
  using Surveyor::Surveyor;

 private:
  void print(const Input& input, const Survey& survey) override {
    print_head(input, survey);
    print_services(survey);
    if (!input.is_chain) print_part("PIDs", pid_columns(options_, input, survey));
    print_part("Tables", table_kind_columns(input, survey));
    Columns troubles;
    for (const std::string& trouble : troubles_of(options_, input, survey)) troubles.add({trouble});
    if (troubles.empty()) troubles.add({"none"});
    print_part("Trouble", troubles);
  }

  void print_head(const Input& input, const Survey& survey) {
    Columns head;
    head.add({"standard", input.standard == Standard::atsc ? "ATSC" : "DVB"});
    if (!survey.network_name.empty()) head.add({"network", survey.network_name});
    for (const auto& [id, table] : survey.tables)
      if (id.table_id == 0x00 && id.is_current)
        head.add({"transport stream", hex(static_cast<unsigned>(id.extension), 4)});
    if (input.is_chain) {
      head.add({"sections", grouped(survey.sections) + ", without packets"});
    } else {
      const StreamStatistics& statistics = input.statistics;
      head.add({"packets",
                grouped(statistics.packets()) + " of " + std::to_string(input.packets.stride()) + " bytes"});
      if (statistics.seconds() > 0) {
        head.add({"duration", seconds_text(statistics.seconds())});
        head.add({"rate", rate_text(statistics.bit_rate())});
      } else {
        head.add({"duration", "not known: no clock"});
      }
    }
    if (const auto now = survey.time_now(input))
      head.add({"time at the end", day_and_time(*now, false) + " UTC"});
    console_.print(head.text());
  }

  void print_services(const Survey& survey) {
    Columns lines;
    size_t others = 0;
    for (const Service* const service : wanted_services(survey)) {
      if (!service->is_actual) {
        ++others;
        continue;
      }
      lines.add({number_of(*service), name_of(*service), service->provider, text_of(service->streams),
                 text_of(service->ca)});
    }
    if (others > 0) lines.add({"", grouped(others) + " of other transport streams"});
    print_part("Services", lines);
  }

  void print_part(const char* title, const Columns& lines) {
    if (!lines.empty()) console_.print(std::string("\n") + title + '\n' + lines.text());
  }
};

}  // namespace

Exit summary(const Options& options, Console& console) {
  init();
  return Summary(options, console).run({.packets = true});
}

}  // namespace quillon::app
