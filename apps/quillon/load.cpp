#include "apps/quillon/commands.h"
#include "apps/quillon/failure.h"
#include "apps/quillon/report_text.h"
#include "apps/quillon/source.h"
#include "apps/quillon/text.h"
#include "apps/quillon/xml_beginning.h"

#include <memory>
#include <string>

#include <quillon/sections/error.h>
#include <quillon/xml/document.h>

namespace quillon::app {

namespace {

constexpr size_t kPiece = size_t{1} << 20;

// A device may have no end: what is no XML is not read on.
std::string whole_text(const std::string& input) {
  const std::unique_ptr<Source> source = open_source(input, false);
  std::string text;
  std::string piece(kPiece, '\0');
  XmlBeginning beginning;
  for (;;) {
    const size_t got = source->read(reinterpret_cast<uint8_t*>(piece.data()), piece.size());
    if (got == 0) return text;
    text.append(piece, 0, got);
    if (!beginning.is_in(text))
      throw Failure(visible(name_of(input)) + ": is no XML: it does not begin with a tag");
    if (text.size() > xml::Document::max_text)
      throw Failure(visible(name_of(input)) + ": too long a document");
  }
}

class Loader {
 public:
  Loader(const Options& options, Console& console) : options_(options), console_(console) {}

  // Gives whether all of it could be loaded.
  bool load(const std::string& input) {
    const std::string name = visible(name_of(input));
    xml::Document document;
    try {
      document = xml::Document::from_text(whole_text(input));
    } catch (const error& e) {
      throw Failure(name + ": " + e.what());
    }
    if (document.name(document.root()) != "transport_stream")
      throw Failure(name + ": the root element is <" + document.name(document.root()) +
                    ">, not <transport_stream>");
    int number = 0;
    bool failed = false;
    for (void* const node : document.children(document.root())) {
      const std::string element = document.name(node);
      const std::string what = load_table(node, element);
      ++number;
      if (what.empty()) continue;
      failed = true;
      console_.trouble(name, "element " + std::to_string(number),
                       std::string(element).append(": ").append(what));
    }
    if (failed) console_.message(name + ": some tables could not be loaded");
    return !failed;
  }

 private:
  // Gives what is wrong.
  std::string load_table(void* node, const std::string& element) {
    const std::unique_ptr<AnyTable> table = AnyTable::for_element(element);
    if (!table) return "not the name of a table";
    try {
      if (options_.reading) table->set_reading(*options_.reading);
      table->ParseDOM(node);
    } catch (const error& e) {
      return failure_text(e.what(), e.get_code());
    }
    console_.print(report_text(*table, options_.reading.value_or(Reading::kept), console_.is_terminal()));
    return {};
  }

  const Options& options_;
  Console& console_;
};

}  // namespace

Exit load_xml(const Options& options, Console& console) {
  Loader loader(options, console);
  bool failed = false;
  for (const std::string& input : options.inputs) try {
      failed |= !loader.load(input);
    } catch (const Failure& failure) {
      console.message(failure.what());
      failed = true;
    }
  return failed ? exit_bad_input : exit_ok;
}

}  // namespace quillon::app
