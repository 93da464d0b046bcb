#include "apps/quillon/html/document.h"
#include "apps/quillon/html/page_files.h"
#include "apps/quillon/text.h"
#include "fuzz/packets.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"
#include "fuzz/well_formed.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <quillon/stream/section_reader.h>

namespace quillon::fuzz {

namespace {

// The document of a stream, without the folder, the file and the terminal of the program.
std::string page_of(const MadeStream& stream) {
  app::Input input;
  // Its bytes are as good a name as any.
  input.name = app::visible(
      {reinterpret_cast<const char*>(stream.bytes.data()), std::min<size_t>(stream.bytes.size(), 64)});
  app::Survey survey{{}};
  app::html::Record record;
  SectionReader sections(
      [&](const StreamSection& section) {
        input.statistics.on_section(section);
        survey.learn(input, section, true);
        record.push(input, section, survey.push(input, section));
      },
      {.pids = {0x100, 0x101}, .every_pid = (stream.choice & 4) != 0, .repeats = true});
  const auto read = [&] {
    TsPacket packet;
    while (input.packets.next(packet)) {
      input.statistics.push(packet);
      record.push(input, packet);
      sections.push(packet);
      input.standard = sections.standard();
    }
  };
  input.packets.feed(stream.bytes);
  read();
  input.packets.finish();
  read();
  app::html::Page page{input, survey, record, ""};
  return app::html::document_begin(input.name) + app::html::article(page) + app::html::document_end();
}

// Takes the page's own style sheet and script out.
void take_out(std::string& page, std::string_view own) {
  const size_t at = page.find(own);
  require(at != std::string::npos);
  page.erase(at, own.size());
}

// Goes through the tags of a document whose elements and attributes the program alone may name.
class Tags {
 public:
  explicit Tags(std::string_view page) : left_(page) {}

  void check() {
    expect("<!DOCTYPE html>\n");
    while (!left_.empty()) {
      text("<");
      if (left_.empty()) break;
      left_.remove_prefix(1);
      left_.starts_with('/') ? end() : begin();
    }
    require(open_.empty());
  }

 private:
  static constexpr std::string_view kVoid[] = {"meta", "link", "input", "br"};
  static constexpr std::string_view kEndThemselves[] = {"li", "td", "th", "tr", "dt", "dd"};
  // None that loads, runs or sends anything; of the script there is one, without attributes.
  static constexpr std::string_view kForbidden[] = {"iframe", "object", "embed", "base", "form", "img"};

  static bool is_one_of(std::span<const std::string_view> names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  }
  void expect(std::string_view text) {
    require(left_.starts_with(text));
    left_.remove_prefix(text.size());
  }
  // Up to one of the characters.
  void text(std::string_view ends) {
    const std::string_view taken = left_.substr(0, left_.find_first_of(ends));
    require(taken.find_first_of("<>\"") == std::string_view::npos);
    for (size_t at = 0; (at = taken.find('&', at)) != std::string_view::npos; ++at)
      require(std::ranges::any_of(kEntities,
                                  [&](std::string_view e) { return taken.substr(at).starts_with(e); }));
    left_.remove_prefix(taken.size());
  }
  static constexpr std::string_view kEntities[] = {"&amp;", "&lt;", "&gt;", "&quot;"};
  std::string_view name() {
    const auto is_letter = [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
    };
    const auto size = std::find_if_not(left_.begin(), left_.end(), is_letter) - left_.begin();
    const std::string_view out = left_.substr(0, static_cast<size_t>(size));
    require(!out.empty());
    left_.remove_prefix(out.size());
    return out;
  }
  void begin() {
    const std::string_view element = name();
    require(!is_one_of(kForbidden, element));
    while (left_.starts_with(' ')) {
      left_.remove_prefix(1);
      const std::string_view attribute = name();
      require(element != "script" && !attribute.starts_with("on") && attribute != "src");
      expect("=\"");
      if (attribute == "href") require(left_.starts_with('#') || left_.starts_with("data:,\""));
      text("\"");
      expect("\"");
    }
    expect(">");
    if (element == "script") require(!std::exchange(has_script_, true));
    if (!is_one_of(kVoid, element)) open_.push_back(element);
  }
  void end() {
    left_.remove_prefix(1);
    const std::string_view element = name();
    expect(">");
    while (!open_.empty() && open_.back() != element && is_one_of(kEndThemselves, open_.back()))
      open_.pop_back();
    require(!open_.empty() && open_.back() == element);
    open_.pop_back();
  }

  std::string_view left_;
  std::vector<std::string_view> open_;
  bool has_script_ = false;
};

// Nothing steers the direction of the page: U+202A to U+202E, U+2066 to U+2069.
bool steers(std::string_view page) {
  for (size_t at = 0; (at = page.find("\xE2\x80", at)) != std::string_view::npos; ++at)
    if (const auto last = static_cast<uint8_t>(page[at + 2]); last >= 0xAA && last <= 0xAE) return true;
  for (size_t at = 0; (at = page.find("\xE2\x81", at)) != std::string_view::npos; ++at)
    if (const auto last = static_cast<uint8_t>(page[at + 2]); last >= 0xA6 && last <= 0xA9) return true;
  return false;
}

}  // namespace

void html(const uint8_t* data, size_t size) {
  std::string page = page_of(make_stream(data, size));
  require(is_utf8(page) && !steers(page));
  require(std::ranges::all_of(page, [](char c) { return static_cast<uint8_t>(c) >= 0x20 || c == '\n'; }));
  take_out(page, app::html::kPageStyle);
  take_out(page, app::html::kPageScript);
  Tags(page).check();
}

}  // namespace quillon::fuzz
