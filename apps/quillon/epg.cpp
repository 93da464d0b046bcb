#include "apps/quillon/commands.h"
#include "apps/quillon/describe.h"
#include "apps/quillon/text.h"
#include "apps/quillon/times.h"

#include <chrono>
#include <map>
#include <optional>

#include <quillon/descriptors/event/content.h>

namespace quillon::app {

namespace {

using std::chrono::sys_seconds;

struct Span {
  std::optional<sys_seconds> from;
  std::optional<sys_seconds> to;
};

bool is_in(const ScheduledEvent& event, const Span& span) {
  if (!event.start) return !span.from && !span.to;
  const sys_seconds end = *event.start + event.duration.value_or(std::chrono::seconds(0));
  return (!span.from || end > *span.from) && (!span.to || *event.start < *span.to);
}

class Guide final : public Surveyor {
 public:
  using Surveyor::Surveyor;

 private:
  void print(const Input& input, const Survey& survey) override {
    std::optional<sys_seconds> now = survey.time_now(input);
    if (!now && input.is_live)
      now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    if (options_.now && !now) return console_.message(input.name + ": says no time, which --now needs");
    const std::map<ServiceId, const Service*> known = by_id(survey.all_services());
    bool has_events = false;
    for (const ServiceId& id : survey.schedule.services()) {
      const auto found = known.find(id);
      const Service* const service = found == known.end() ? nullptr : found->second;
      if (!options_.choice.services.empty() && !(service && is_wanted(options_.choice, *service))) continue;
      std::vector<ScheduledEvent> events = survey.schedule.events(id);
      choose(events, now);
      if (events.empty()) continue;
      has_events = true;
      print(service ? number_of(*service) + "  " + name_of(*service)
                    : "service " + std::to_string(id.service_id) + " of transport stream " +
                          hex(static_cast<unsigned>(id.transport_stream_id), 4),
            events, now);
    }
    if (!has_events)
      console_.message(input.name + ": no events" +
                       (options_.choice.services.empty() ? "" : " of " + text_of(options_.choice)));
  }

  // Leaves those that were asked for.
  void choose(std::vector<ScheduledEvent>& events, std::optional<sys_seconds> now) const {
    Span span{options_.begin, options_.end};
    if (options_.now) {
      // What is on, and what follows it.
      std::erase_if(events, [&](const ScheduledEvent& e) { return !is_in(e, {now, {}}); });
      if (events.size() > 2) events.resize(2);
    }
    std::erase_if(events, [&](const ScheduledEvent& e) { return !is_in(e, span); });
  }

  void print(const std::string& service, const std::vector<ScheduledEvent>& events,
             std::optional<sys_seconds> now) {
    console_.print(visible(service) + '\n');
    for (const ScheduledEvent& event : events) {
      const bool is_on = now && event.start && is_in(event, {now, *now + std::chrono::seconds(1)});
      std::string line = is_on ? "> " : "  ";
      line += event.start ? day_and_time(*event.start, options_.local_time) : "no time         ";
      line += "  " + (event.duration ? length_text(*event.duration) : "       ");
      const std::string indent(line.size() + 2, ' ');
      if (event.texts.empty()) line += "  event " + std::to_string(event.event_id);
      for (size_t i = 0; i < event.texts.size(); ++i) {
        line += (i == 0 ? "  " : "\n" + indent) + visible(event.texts[i].title);
        if (event.texts.size() > 1) line += " [" + visible(event.texts[i].language) + "]";
        if (i == 0) line += remarks(event);
        if (!event.texts[i].text.empty()) line += '\n' + indent + visible(event.texts[i].text);
      }
      for (const ExtendedText& text : event.long_texts)
        if (!text.text.empty()) line += '\n' + indent + visible(text.text);
      console_.print(line + '\n');
    }
  }

  static std::string remarks(const ScheduledEvent& event) {
    std::string out;
    const auto add = [&out](const std::string& part) { out += (out.empty() ? "  (" : ", ") + part; };
    for (const DescriptorContent::Content& content : event.contents)
      add(DescriptorContent::Content::standard_content_nibble_level1_text(
          content.get_content_nibble_level_1()));
    if (event.free_ca_mode == 1) add("scrambled");
    return out.empty() ? out : out + ")";
  }
};

}  // namespace

Exit epg(const Options& options, Console& console) {
  return Guide(options, console).run({.every_service = true});
}

}  // namespace quillon::app
