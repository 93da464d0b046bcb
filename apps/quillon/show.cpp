#include "apps/quillon/commands.h"
#include "apps/quillon/field_lines.h"
#include "apps/quillon/report_text.h"
#include "apps/quillon/table_receiver.h"
#include "apps/quillon/text.h"

#include <optional>

#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

class Trees final : public TableReceiver {
 public:
  Trees(const Options& options, Console& console)
      : TableReceiver(options, console, Reading::standard), lines_(console.is_coloured()) {}

 private:
  void table(const Input& input, const StreamSection& section, const AnyTable& table) override {
    std::string place = place_of(section);
    if (options_.inputs.size() > 1) place.insert(0, input.name + ", ");
    if (const std::optional<double> time = input.time()) place += ", " + seconds_text(*time);
    lines_.head(table_name(section.table_id(), input.standard), place);
    table.walk(lines_);
    console_.print(lines_.take());
    if (options_.hex) console_.print(hex_rows({section.bytes, section.size}));
    console_.print("\n");
  }
  void pause(const Input&) override { console_.flush(); }

  FieldLines lines_;
};

}  // namespace

Exit show(const Options& options, Console& console) {
  init();
  return Trees(options, console).run({.statistics = true});
}

}  // namespace quillon::app
