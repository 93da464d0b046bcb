#include "apps/quillon/commands.h"
#include "apps/quillon/failure.h"
#include "apps/quillon/html/document.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/survey.h"
#include "apps/quillon/target.h"

#include <optional>
#include <string>

#include <quillon/report/registries.h>

namespace quillon::app {

namespace {

class Pages final : public Surveyor {
 public:
  Pages(const Options& options, Console& console, Target& target)
      : Surveyor(options, console), target_(target) {}

  Exit write() {
    const Exit exit = run();
    if (count_ == 0) return exit_bad_input;
    target_.write(html::document_end());
    target_.finish();
    return exit;
  }

  void begin(const Input& input) override {
    Surveyor::begin(input);
    input_ = &input;
    record_.emplace();
  }
  void packet(const TsPacket& packet) override { record_->push(*input_, packet); }
  void end(const Input& input) override {
    tell_unlisted(input);
    print(input, survey());
  }

 private:
  void surveyed(const Input& input, const StreamSection& section, const ParsedTable& parsed) override {
    record_->push(input, section, parsed);
  }
  void print(const Input& input, const Survey& survey) override {
    if (count_++ == 0) target_.write(html::document_begin(options_.inputs.size() == 1 ? input.name : ""));
    html::Page page{input, survey, *record_, count_ == 1 ? "" : "i" + std::to_string(count_) + "-"};
    target_.write(html::article(page));
  }

  Target& target_;
  const Input* input_ = nullptr;
  std::optional<html::Record> record_;
  size_t count_ = 0;
};

}  // namespace

Exit html_page(const Options& options, Console& console) {
  if (options.output.empty() && console.is_terminal())
    throw Failure("a page is not for a terminal; name a file with -o report.html");
  init();
  Target target(options, console);
  return Pages(options, console, target).write();
}

}  // namespace quillon::app
