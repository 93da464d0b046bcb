#include "apps/quillon/commands.h"
#include "apps/quillon/describe.h"

namespace quillon::app {

namespace {

class Tables final : public Surveyor {
 public:
  using Surveyor::Surveyor;

 private:
  void print(const Input& input, const Survey& survey) override {
    console_.print(table_columns(input, survey).text());
  }
};

}  // namespace

Exit tables(const Options& options, Console& console) {
  return Tables(options, console).run();
}

}  // namespace quillon::app
