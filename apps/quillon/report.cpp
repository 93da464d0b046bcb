#include "apps/quillon/commands.h"
#include "apps/quillon/report_text.h"
#include "apps/quillon/table_receiver.h"

namespace quillon::app {

namespace {

class Reports final : public TableReceiver {
 public:
  using TableReceiver::TableReceiver;

 private:
  void table(const Input&, const StreamSection& section, const AnyTable& table) override {
    console_.print(report_text(table, reading_, console_.is_terminal()));
    if (options_.hex) console_.print(hex_rows({section.bytes, section.size}));
  }
  void pause(const Input&) override { console_.flush(); }
};

}  // namespace

Exit report(const Options& options, Console& console) {
  return Reports(options, console, Reading::kept).run();
}

}  // namespace quillon::app
