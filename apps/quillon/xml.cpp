#include "apps/quillon/commands.h"
#include "apps/quillon/table_receiver.h"
#include "apps/quillon/target.h"

#include <string>
#include <string_view>

#include <quillon/xml/document.h>

namespace quillon::app {

namespace {

constexpr const char* kRoot = "transport_stream";
constexpr std::string_view kEnd = "</transport_stream>";

// A document a section, of which all but the first leave out the head: memory does not grow with the input.
class Writer final : public TableReceiver {
 public:
  Writer(const Options& options, Console& console, Target& target)
      : TableReceiver(options, console, Reading::kept), target_(target) {}

  void finish() { target_.write(tail_.empty() ? text_of(nullptr) : tail_); }

 private:
  void table(const Input&, const StreamSection&, const AnyTable& table) override {
    const std::string text = text_of(&table);
    const size_t begin = head_;
    if (tail_.empty()) {
      head_ = text.find('\n', text.find(std::string("<") + kRoot)) + 1;
      tail_ = text.substr(text.rfind(kEnd));
    }
    target_.write(std::string_view(text).substr(begin, text.size() - tail_.size() - begin));
  }
  void pause(const Input&) override { target_.flush(); }

  static std::string text_of(const AnyTable* table) {
    xml::Document document;
    void* const root = document.create_root(kRoot);
    if (table) table->SaveSection(document.dom(), document.append_element(root, table->element()));
    return document.to_text();
  }

  Target& target_;
  // Of every document, once one was written.
  size_t head_ = 0;
  std::string tail_;
};

}  // namespace

Exit save_xml(const Options& options, Console& console) {
  Target target(options, console);
  Writer writer(options, console, target);
  const Exit exit = writer.run();
  writer.finish();
  // A file stays what it was, if not all could be read.
  if (exit == exit_ok) target.finish();
  return exit;
}

}  // namespace quillon::app
