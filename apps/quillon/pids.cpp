#include "apps/quillon/commands.h"
#include "apps/quillon/describe.h"

#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

class Pids final : public Surveyor {
 public:
  using Surveyor::Surveyor;

 private:
  void print(const Input& input, const Survey& survey) override {
    if (input.is_chain) return console_.message(input.name + ": a chain of sections has no PIDs");
    if (wanted_services(survey).empty() && !options_.choice.services.empty()) return;
    console_.print(pid_columns(options_, input, survey).text());
  }
};

}  // namespace

Exit pids(const Options& options, Console& console) {
  init();
  return Pids(options, console).run({.every_service = true, .packets = true});
}

}  // namespace quillon::app
