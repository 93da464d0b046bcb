#include "apps/quillon/describe.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/text.h"
#include "apps/quillon/times.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <optional>

namespace quillon::app::html {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_seconds;

// Of those there are the ones nearest to now are shown.
constexpr size_t kMostEvents = 2000;
// What the texts of events may take.
constexpr size_t kMostMarkup = size_t{1} << 20;

struct Row {
  std::string number;
  std::string name;
  std::vector<ScheduledEvent> events;
};

std::string clock_text(sys_seconds time) {
  return day_and_time(time, false).substr(11);
}

std::string title_of(const ScheduledEvent& event) {
  for (const EventText& text : event.texts)
    if (!text.title.empty()) return text.title;
  return "Event " + std::to_string(event.event_id);
}

seconds length_of(const ScheduledEvent& event) {
  return event.duration.value_or(seconds(0));
}

// What a time line can show: nine days around now, and the events nearest to it. Gives how many are left out.
size_t cut(std::vector<Row>& rows, sys_seconds now) {
  std::vector<seconds> distances;
  const auto distance_of = [now](const ScheduledEvent& event) {
    if (!event.start) return seconds::max();
    const sys_seconds start = *event.start;
    if (start < now - hours(24) || start > now + hours(24 * 9)) return seconds::max();
    return start > now ? start - now : now - start;
  };
  size_t all = 0;
  for (const Row& row : rows)
    for (const ScheduledEvent& event : row.events) {
      ++all;
      if (distance_of(event) != seconds::max()) distances.push_back(distance_of(event));
    }
  seconds farthest = seconds::max() - seconds(1);
  if (distances.size() > kMostEvents) {
    std::nth_element(distances.begin(), distances.begin() + kMostEvents, distances.end());
    farthest = distances[kMostEvents] - seconds(1);
  }
  size_t left = 0;
  for (Row& row : rows) {
    std::erase_if(row.events, [&](const ScheduledEvent& event) { return distance_of(event) > farthest; });
    left += row.events.size();
  }
  std::erase_if(rows, [](const Row& row) { return row.events.empty(); });
  return all - left;
}

struct Rows {
  std::vector<Row> rows;
  size_t left_out = 0;
};

Rows rows_of(const Survey& survey, sys_seconds now) {
  const std::map<ServiceId, const Service*> known = by_id(survey.directory);
  Rows out;
  size_t held = 0;
  for (const ServiceId& service : survey.schedule.services()) {
    std::vector<ScheduledEvent> events = survey.schedule.events(service);
    const auto found = known.find(service);
    held += events.size();
    if (found != known.end())
      out.rows.push_back({number_of(*found->second), name_of(*found->second), std::move(events)});
    else
      out.rows.push_back({std::to_string(service.service_id), "", std::move(events)});
    // Cut now and then, so that no more are held than a page needs.
    if (held > 2 * kMostEvents) {
      out.left_out += cut(out.rows, now);
      held = kMostEvents;
    }
  }
  out.left_out += cut(out.rows, now);
  return out;
}

// Of all events, the time of the one in the middle.
std::optional<sys_seconds> middle_of(const ScheduleCollector& schedule) {
  std::vector<sys_seconds> starts;
  for (const ServiceId& service : schedule.services())
    for (const ScheduledEvent& event : schedule.events(service))
      if (event.start) starts.push_back(*event.start);
  if (starts.empty()) return std::nullopt;
  const auto middle = starts.begin() + static_cast<std::ptrdiff_t>(starts.size() / 2);
  std::nth_element(starts.begin(), middle, starts.end());
  return *middle;
}

void write_texts(Markup& out, const ScheduledEvent& event) {
  for (const EventText& text : event.texts) {
    if (event.texts.size() > 1) {
      out.begin("h4").name(text.title).text(" ").element("small", text.language).end();
    }
    if (!text.text.empty()) out.begin("p", {{"dir", "auto"}}).lines(text.text).end();
  }
  for (const ExtendedText& text : event.long_texts) {
    if (!text.text.empty()) out.begin("p", {{"dir", "auto"}, {"class", "long"}}).lines(text.text).end();
    if (!text.is_complete) out.element("p", {{"class", "note"}}, "Not all of this text was met.");
    if (text.items.empty()) continue;
    out.begin("dl");
    for (const ExtendedText::Item& item : text.items) {
      out.begin("dt").name(item.description).end();
      out.begin("dd").name(item.item).end();
    }
    out.end();
  }
}

void write_card(Markup& out, const Row& row, const ScheduledEvent& event, const std::string& id) {
  out.begin(
         "div",
         {{"id", id}, {"popover", ""}, {"class", "card"}, {"role", "dialog"}, {"aria-labelledby", id + "t"}})
      .begin("h3", {{"id", id + "t"}})
      .name(title_of(event))
      .end()
      .begin("p", {{"class", "when"}})
      .text(row.number + " ")
      .name(row.name)
      .text(", " + day_and_time(*event.start, false) + " to " + clock_text(*event.start + length_of(event)) +
            " UTC, " + length_text(length_of(event)));
  if (const char* const running = running_remark(event.running_status); *running)
    out.text(std::string(", ") + running);
  if (event.free_ca_mode > 0) out.text(", scrambled");
  out.text(", event " + std::to_string(event.event_id)).end();
  if (!event.contents.empty() || !event.ratings.empty() || !event.advisories.empty()) {
    out.begin("ul", {{"class", "tags"}});
    for (const DescriptorContent::Content& content : event.contents) {
      const int level = content.get_content_nibble_level_1();
      out.element("li", {{"class", "g" + std::to_string(level)}},
                  DescriptorContent::Content::standard_content_nibble_level2_text(
                      level, content.get_content_nibble_level_2()));
    }
    // The ages from 4 on are coded less 3.
    for (const auto& rating : event.ratings)
      out.element("li", std::string(rating.get_country_code()) + ": " +
                            (rating.get_rating() > 0 && rating.get_rating() < 16
                                 ? "from " + std::to_string(rating.get_rating() + 3)
                                 : "rating " + std::to_string(rating.get_rating())));
    for (const auto& advisory : event.advisories)
      for (const auto& text : advisory.rating_description_text.strings)
        out.begin("li").name(text.utf8()).end();
    out.end();
  }
  if (out.size() < kMostMarkup)
    write_texts(out, event);
  else
    out.element("p", {{"class", "note"}}, "The texts of this event are left out, as the page has many.");
  out.element("button", {{"type", "button"}, {"popovertarget", id}, {"popovertargetaction", "hide"}}, "Close")
      .end();
}

}  // namespace

void write_schedule(Page& page) {
  const std::optional<sys_seconds> now = page.survey.time;
  const std::optional<sys_seconds> middle = now ? now : middle_of(page.survey.schedule);
  if (!middle) return;
  const auto [rows, left_out] = rows_of(page.survey, *middle);
  if (rows.empty()) return;

  sys_seconds begin = sys_seconds::max();
  sys_seconds end = sys_seconds::min();
  for (const Row& row : rows)
    for (const ScheduledEvent& event : row.events) {
      begin = std::min(begin, *event.start);
      end = std::max(end, *event.start + std::min<seconds>(length_of(event), hours(24)));
    }
  begin = std::chrono::floor<hours>(begin);
  end = std::max<sys_seconds>(std::chrono::ceil<hours>(end), begin + hours(1));
  const auto place = [begin](sys_seconds time) {
    return decimal(std::chrono::duration<double, std::ratio<3600>>(time - begin).count(), 4);
  };
  const auto in_hours = [](seconds length) { return decimal(static_cast<double>(length.count()) / 3600, 4); };

  const Part part(page, "schedule", "Schedule");
  Markup& out = page.out;
  const std::string id = page.id("schedule");
  std::string note = "Times are UTC.";
  if (now) note += " The stream says that it is " + day_and_time(*now, false) + ".";
  if (left_out > 0)
    note += " " + grouped(left_out) + " events without a time, or farther from now, are left out.";
  out.element("p", {{"class", "note"}}, note);
  out.begin("div", {{"class", "zoom"}, {"data-for", id + "-line"}, {"hidden", ""}}).end();
  out.begin("div", {{"class", "scroll timeline"},
                    {"id", id + "-line"},
                    {"role", "region"},
                    {"aria-label", "Schedule as a time line"},
                    {"tabindex", 0},
                    {"style", "--hours:" + place(end)}})
      .begin("div", {{"class", "hours"}, {"aria-hidden", "true"}});
  for (sys_seconds hour = begin; hour < end; hour += hours(1)) {
    const std::string text = day_and_time(hour, false);
    constexpr hours day_shown_every(3);
    out.begin("span", {{"style", "--at:" + place(hour)}});
    if (hour.time_since_epoch() % day_shown_every == hours(0)) out.element("b", text.substr(0, 10));
    out.text(text.substr(11)).end();
  }
  out.end();
  if (now && *now >= begin && *now <= end)
    out.element("div", {{"class", "now"}, {"style", "--at:" + place(*now)}, {"title", "now"}}, "");
  Markup cards;
  size_t count = 0;
  out.begin("ul", {{"class", "lines"}});
  for (const Row& row : rows) {
    out.begin("li").begin("div", {{"class", "who"}}).element("small", row.number).name(row.name).end();
    out.begin("ol");
    for (const ScheduledEvent& event : row.events) {
      const std::string card = id + "-" + std::to_string(++count);
      const bool is_on = now && *event.start <= *now && *now < *event.start + length_of(event);
      const std::string genre = event.contents.empty()
                                    ? "g0"
                                    : "g" + std::to_string(event.contents[0].get_content_nibble_level_1());
      out.begin("li")
          .begin("button",
                 {{"type", "button"},
                  {"class", genre + (is_on ? " on" : "")},
                  {"popovertarget", card},
                  {"style", "--at:" + place(*event.start) + ";--for:" + in_hours(length_of(event))}})
          .begin("b")
          .name(shortened(title_of(event), 120))
          .end()
          .element("small",
                   clock_text(*event.start) + (event.running_status > 1
                                                   ? std::string(" ") + running_remark(event.running_status)
                                                   : std::string()))
          .end()
          .end();
      write_card(cards, row, event, card);
    }
    out.end().end();
  }
  out.end().end().made(cards.take());
}

}  // namespace quillon::app::html
