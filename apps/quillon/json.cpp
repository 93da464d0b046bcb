#include "apps/quillon/commands.h"
#include "apps/quillon/json_fields.h"
#include "apps/quillon/table_receiver.h"
#include "apps/quillon/times.h"

#include <chrono>

#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

class Lines final : public TableReceiver {
 public:
  using TableReceiver::TableReceiver;

 private:
  void table(const Input& input, const StreamSection& section, const AnyTable& table) override {
    if (options_.inputs.size() > 1) fields_.text("input", input.name);
    if (section.pid >= 0) fields_.number("pid", section.pid, nullptr);
    fields_.number("packet", static_cast<int64_t>(section.packet + 1), nullptr);
    if (section.pid >= 0) fields_.seconds("time", input.time());
    if (input.is_live) fields_.text("arrival", iso_8601(std::chrono::system_clock::now()));
    fields_.text("table", table.element());
    table.walk(fields_);
    console_.print(fields_.take());
  }
  void pause(const Input&) override { console_.flush(); }

  JsonFields fields_;
};

}  // namespace

Exit json(const Options& options, Console& console) {
  init();
  return Lines(options, console, Reading::standard).run({.statistics = true});
}

}  // namespace quillon::app
