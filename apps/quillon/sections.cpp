#include "apps/quillon/commands.h"
#include "apps/quillon/failure.h"
#include "apps/quillon/feed.h"
#include "apps/quillon/target.h"

namespace quillon::app {

namespace {

class Chain final : public Receiver {
 public:
  explicit Chain(Target& target) : target_(target) {}

 private:
  void section(const Input&, const StreamSection& section) override {
    target_.write({reinterpret_cast<const char*>(section.bytes), section.size});
  }
  void pause(const Input&) override { target_.flush(); }

  Target& target_;
};

}  // namespace

Exit sections(const Options& options, Console& console) {
  Target target(options, console);
  if (target.is_terminal()) throw Failure("sections are bytes, no text for a terminal: name a file with -o");
  Chain chain(target);
  const Exit exit = read_inputs(options, console, chain, {});
  // A file stays what it was, if not all could be read.
  if (exit == exit_ok) target.finish();
  return exit;
}

}  // namespace quillon::app
