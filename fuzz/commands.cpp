#include "apps/quillon/command_line.h"
#include "apps/quillon/console.h"
#include "apps/quillon/failure.h"
#include "fuzz/input_file.h"
#include "fuzz/packets.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"
#include "fuzz/well_formed.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include <quillon/sections/error.h>
#include <quillon/sections/section_size.h>
#include <quillon/xml/document.h>

namespace quillon::fuzz {

namespace {

constexpr const char* kCommands[] = {
    "summary",
    "services",
    "pids",
    "tables",
    "epg",
    "epg --now",
    "epg --from 2026-11-22T12:00 --to 2026-11-23",
    "show",
    "show --all --hex --reading kept",
    "show --service A --verbose",
    "json",
    "json --all --standard atsc",
    "json --reading kept --standard dvb",
    "watch",
    "watch --json",
    "report",
    "report --all --reading standard",
    "xml",
    "xml --all --reading standard",
    "sections -o -",
    "load",
};

// What is written to a standard stream while this lives.
class Captured {
 public:
  explicit Captured(std::FILE*& stream) : stream_(stream), before_(stream) {
    stream_ = fopencookie(this, "w", {nullptr, append, nullptr, nullptr});
    require(stream_ != nullptr);
  }
  ~Captured() {
    std::fclose(stream_);
    stream_ = before_;
  }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;

  const std::string& text() const {
    std::fflush(stream_);
    return text_;
  }

 private:
  static ssize_t append(void* to, const char* text, size_t size) {
    static_cast<Captured*>(to)->text_.append(text, size);
    return static_cast<ssize_t>(size);
  }

  std::FILE*& stream_;
  std::FILE* const before_;
  std::string text_;
};

struct Said {
  bool failed = false;
  std::string results;
  std::string messages;

  bool operator==(const Said&) const = default;
};

// Each is parsed once, which takes longer than most runs.
const app::Order& order_of(const std::string& line) {
  static std::map<std::string, app::Order> orders;
  const auto [place, is_new] = orders.try_emplace(line);
  app::Order& order = place->second;
  if (is_new) {
    std::istringstream words(line);
    order = app::parse_command_line(
        {std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()});
    require(order.run && order.mistake.empty());
  }
  return order;
}

Said run(const std::string& line) {
  const app::Order& order = order_of(line);
  const Captured results(stdout);
  const Captured messages(stderr);
  app::Console console(order.options.verbose);
  Said said;
  try {
    const app::Exit exit = order.run(order.options, console);
    require(exit == app::exit_ok || exit == app::exit_bad_input);
    said.failed = exit != app::exit_ok;
  } catch (const app::Failure& failure) {
    console.message(failure.what());
    said.failed = true;
  } catch (const error& e) {
    console.message(e.what());
    said.failed = true;
  }
  console.flush();
  console.sum_up_troubles();
  said.results = results.text();
  said.messages = messages.text();
  return said;
}

// Lines of UTF-8, without control characters.
bool are_lines(std::string_view text) {
  return is_utf8(text) && (text.empty() || text.back() == '\n') &&
         std::ranges::all_of(text, [](char c) { return static_cast<uint8_t>(c) >= 0x20 || c == '\n'; });
}

bool are_lines_of_json(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    if (!count_json(line)) return false;
  return true;
}

bool are_sections(std::string_view chain) {
  while (chain.size() >= 3) {
    const size_t size = section_size(reinterpret_cast<const uint8_t*>(chain.data()));
    if (size > chain.size()) return false;
    chain.remove_prefix(size);
  }
  return chain.empty();
}

}  // namespace

void commands(const uint8_t* data, size_t size) {
  static const InputFile file("commands");
  const MadeStream stream = make_stream(data, size);
  const std::string_view command = kCommands[stream.chance % std::size(kCommands)];
  file.write(stream.bytes);
  const std::string line = std::string(command) + " " + file.path().string();
  const Said said = run(line);
  require(run(line) == said);
  require(are_lines(said.messages) && said.failed <= !said.messages.empty());
  if (command.starts_with("sections")) {
    require(are_sections(said.results));
  } else if (command.starts_with("report") || command == "load") {
    // Where no terminal is, a report has its texts as they are.
    require(is_utf8(said.results));
  } else {
    require(are_lines(said.results));
  }
  if (command.starts_with("json") || command == "watch --json") require(are_lines_of_json(said.results));
  if (!command.starts_with("xml") || said.results.empty()) return;
  xml::Document::from_text(said.results);
  file.write({reinterpret_cast<const uint8_t*>(said.results.data()), said.results.size()});
  require(is_utf8(run("load " + file.path().string()).results));
}

}  // namespace quillon::fuzz
