#include <algorithm>
#include <compare>
#include <limits>
#include <list>
#include <map>
#include <tuple>
#include <utility>

#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/stt.h>
#include <quillon/descriptors/event/extended_event.h>
#include <quillon/descriptors/event/short_event.h>
#include <quillon/sections/byte_view.h>
#include <quillon/stream/internal/gps_time.h>
#include <quillon/stream/internal/standard_parse.h>
#include <quillon/stream/internal/table_ids.h>
#include <quillon/stream/schedule_collector.h>
#include <quillon/tables/eit.h>

namespace quillon {

namespace {

constexpr size_t kMostScheduleBytes = size_t{32} << 20;
constexpr size_t kMostServiceBytes = size_t{2} << 20;
constexpr size_t kMostEvents = 65536;
// What a section and a service take beside the bytes of sections: blocks of the heap, and what refers to
// them.
constexpr size_t kStoredSectionCost = 192;
constexpr size_t kStoredServiceCost = 256;

constexpr int kPresentFollowingOfOthers = 0x4F;
constexpr int kFirstSchedule = 0x50;
constexpr int kAtscEit = 0xCB;
constexpr int kAtscEtt = 0xCC;

// Since 2017.
constexpr int kUsualLeapSeconds = 18;

ScheduledEvent event_of(const Eit::EventInfo& row) {
  ScheduledEvent out;
  out.event_id = row.get_event_id();
  if (row.get_start_time().is_defined()) out.start = row.get_start_time().get_time_point();
  if (row.get_duration().is_defined()) out.duration = row.get_duration().get_length();
  out.running_status = row.get_running_status();
  out.free_ca_mode = row.get_free_ca_mode();
  for (const DescriptorShortEvent& text : row.get_short_event_descriptors())
    out.texts.push_back(
        {text.get_iso_639_language_code().c_str(), text.get_event_name().utf8(), text.get_text().utf8()});
  out.long_texts = extended_texts(row.get_extended_event_descriptors());
  for (const DescriptorContent& content : row.get_content_descriptors())
    out.contents.insert(out.contents.end(), content.get_contents().begin(), content.get_contents().end());
  for (const DescriptorParentalRating& rating : row.get_parental_rating_descriptors())
    out.ratings.insert(out.ratings.end(), rating.get_ratinginfo().begin(), rating.get_ratinginfo().end());
  return out;
}

ScheduledEvent event_of(const AtscEIT::Event& row, int leap_seconds) {
  ScheduledEvent out;
  out.event_id = row.event_id;
  const auto start = static_cast<uint32_t>(row.start_time);
  if (start != std::numeric_limits<uint32_t>::max()) out.start = detail::utc_of_gps(start, leap_seconds);
  out.duration = std::chrono::seconds(row.length_in_seconds);
  for (const auto& title : row.title_text.strings)
    out.texts.push_back({title.iso639languagecode.c_strA(), title.utf8(), {}});
  for (const DescriptorAtscGenre& genre : row.get_atsc_genre_descriptor()) {
    // As many are read as their count says, past the descriptor's end too.
    const ptrdiff_t within = std::max(genre.get_descriptor_length() - 1, 0);
    const auto begin = genre.attributes.begin();
    out.genres.insert(out.genres.end(), begin, begin + std::min(within, std::ssize(genre.attributes)));
  }
  for (const DescriptorAtscContentAdvisory& advisory : row.get_atsc_content_advisory_descriptor())
    out.advisories.insert(out.advisories.end(), advisory.regions.begin(), advisory.regions.end());
  return out;
}

// Gives an event what it lacks and another one of the same id has.
void fill_in(ScheduledEvent& event, ScheduledEvent&& other) {
  const auto fill = [](auto& list, auto& from) {
    if (list.empty()) list = std::move(from);
  };
  fill(event.texts, other.texts);
  fill(event.long_texts, other.long_texts);
  fill(event.contents, other.contents);
  fill(event.ratings, other.ratings);
  fill(event.genres, other.genres);
  fill(event.advisories, other.advisories);
}

}  // namespace

class QUILLON_LOCAL ScheduleCollector::State {
 public:
  bool push(const StreamSection& section);
  std::vector<ServiceId> services() const;
  std::vector<ScheduledEvent> events(const ServiceId& service) const;

 private:
  // Where a section is replaced by another.
  struct Place {
    int table_id;
    int64_t group;  // in ATSC, of an EIT its PID, of an ETT the event; otherwise 0
    int number;     // of the section; of an ETT its PID
    auto operator<=>(const Place&) const = default;
  };
  struct Section {
    uint64_t arrival;
    int pid;
    uint64_t naming;  // of its PID, when it came
    std::vector<uint8_t> bytes;
  };
  using Sections = std::map<Place, Section>;
  struct Stored {
    ServiceId id;
    Sections sections;
    size_t bytes = kStoredServiceCost;
  };
  using Services = std::list<Stored>;

  // What the master guide says of a PID.
  struct Named {
    int eit = -1;  // 0 to 127 if it carries that one
    int ett = -1;
    uint64_t naming = 0;  // another one each time that the guide begins to name the PID
    bool operator==(const Named&) const = default;
  };
  using Events = std::map<std::pair<int, int64_t>, ScheduledEvent>;  // by id and group

  static constexpr uint64_t kNotNamed = 0;

  bool push_event_information(const StreamSection& section);
  bool push_atsc_events(const StreamSection& section);
  bool push_atsc_text(const StreamSection& section);
  bool read_guide(const StreamSection& section);
  bool read_time(const StreamSection& section);
  // The naming of a PID that carries tables by the guide, or in a chain of bare sections.
  std::optional<uint64_t> naming_of(int pid, int Named::*kind) const;
  bool is_still_named(const Section& section, int Named::*kind) const;

  // The last in line from then on.
  Stored& find_or_make(const ServiceId& id);
  // True if it is not what was there.
  bool store(const ServiceId& id, const Place& place, const StreamSection& section, uint64_t naming);
  static bool holds(const Stored& service, const Place& place, const StreamSection& section, uint64_t naming);
  void drop_past_last(Stored& service, const Place& place, const StreamSection& section);
  void drop_sections(Stored& service, const Place& first, const Place& last);
  void drop_all_sections(Stored& service);
  void drop_service(Services::iterator service);

  void add_events(Events& events, const Place& place, const Section& section) const;
  void add_texts(Events& events, const Stored& service) const;

  Services stored_;  // from the one that was silent for the longest time on
  std::map<ServiceId, Services::iterator> places_;
  size_t held_ = 0;  // in bytes
  uint64_t arrivals_ = 0;
  std::map<int, Named> guide_;  // by PID
  uint64_t namings_ = kNotNamed;
  int leap_seconds_ = kUsualLeapSeconds;
};

bool ScheduleCollector::State::push(const StreamSection& section) {
  if (!section.crc_ok || !section.is_long() || !section.is_current() || section.size < 12) return false;
  const bool is_base = section.pid < 0 || section.pid == detail::psip_base_pid;
  switch (section.table_id()) {
    case 0xC7:
      return is_base && read_guide(section);
    case 0xCD:
      return is_base && read_time(section);
    case kAtscEit:
      return push_atsc_events(section);
    case kAtscEtt:
      return push_atsc_text(section);
    default:
      return detail::is_event_information(section.table_id()) && push_event_information(section);
  }
}

bool ScheduleCollector::State::push_event_information(const StreamSection& section) {
  const ByteView body = ByteView(section.bytes, section.size - 4).from(8);
  if (!body.has(5)) return false;
  const ServiceId id{body.u16(2), body.u16(0), section.extension()};
  return store(id, {section.table_id(), 0, section.section_number()}, section, kNotNamed);
}

bool ScheduleCollector::State::push_atsc_events(const StreamSection& section) {
  const auto naming = naming_of(section.pid, &Named::eit);
  if (!naming) return false;
  // Without PIDs the tables of one source differ by the time of which they tell.
  const ByteView body = ByteView(section.bytes, section.size - 4).from(8);
  const bool has_events = body[1] > 0;
  const int64_t first_start = has_events ? int64_t{body.u32(4)} : 0;
  const int64_t group = section.pid >= 0 ? section.pid : first_start;
  return store({-1, -1, section.extension()}, {kAtscEit, group, section.section_number()}, section, *naming);
}

bool ScheduleCollector::State::push_atsc_text(const StreamSection& section) {
  const auto naming = naming_of(section.pid, &Named::ett);
  const ByteView body = ByteView(section.bytes, section.size - 4).from(8);
  const uint32_t etm_id = body.u32(1);
  const bool is_of_event = (etm_id & 3) == 2;
  if (!naming || !is_of_event) return false;
  const int source_id = static_cast<int>(etm_id >> 16);
  const int event_id = static_cast<int>(etm_id >> 2 & 0x3FFF);
  return store({-1, -1, source_id}, {kAtscEtt, event_id, section.pid}, section, *naming);
}

bool ScheduleCollector::State::read_guide(const StreamSection& section) {
  std::map<int, Named> guide;
  bool is_refused = true;
  detail::with_parsed<AtscMGT>(section.bytes, section.size, [&](const AtscMGT& table) {
    is_refused = false;
    for (const AtscMGT::Table& row : table.tables) {
      const int number = row.table_type & 0x7F;
      const int kind = row.table_type - number;
      if (kind == 0x0100) guide[row.table_type_PID].eit = number;
      if (kind == 0x0200) guide[row.table_type_PID].ett = number;
    }
  });
  if (is_refused) return false;
  for (auto& [pid, named] : guide) {
    const auto old = guide_.find(pid);
    named.naming = old != guide_.end() ? old->second.naming : ++namings_;
  }
  guide_.swap(guide);
  return guide_ != guide;
}

bool ScheduleCollector::State::read_time(const StreamSection& section) {
  const int before = leap_seconds_;
  detail::with_parsed<AtscSTT>(section.bytes, section.size,
                               [&](const AtscSTT& table) { leap_seconds_ = table.GPS_UTC_offset; });
  return leap_seconds_ != before;
}

std::optional<uint64_t> ScheduleCollector::State::naming_of(int pid, int Named::*kind) const {
  if (pid < 0) return kNotNamed;
  const auto named = guide_.find(pid);
  if (named == guide_.end() || named->second.*kind < 0) return std::nullopt;
  return named->second.naming;
}

bool ScheduleCollector::State::is_still_named(const Section& section, int Named::*kind) const {
  return naming_of(section.pid, kind) == section.naming;
}

ScheduleCollector::State::Stored& ScheduleCollector::State::find_or_make(const ServiceId& id) {
  const auto place = places_.find(id);
  if (place != places_.end()) {
    stored_.splice(stored_.end(), stored_, place->second);
    return *place->second;
  }
  Services made;
  made.emplace_back().id = id;
  places_.emplace(id, made.begin());
  stored_.splice(stored_.end(), made);
  held_ += kStoredServiceCost;
  return stored_.back();
}

bool ScheduleCollector::State::store(const ServiceId& id, const Place& place, const StreamSection& section,
                                     uint64_t naming) {
  const auto known = places_.find(id);
  if (known != places_.end() && holds(*known->second, place, section, naming)) {
    stored_.splice(stored_.end(), stored_, known->second);
    return false;
  }
  // What takes memory comes before the first change.
  Sections made;
  made.emplace(place,
               Section{++arrivals_, section.pid, naming, {section.bytes, section.bytes + section.size}});
  Stored& service = find_or_make(id);
  drop_sections(service, place, place);
  if (place.table_id != kAtscEtt) drop_past_last(service, place, section);
  const size_t cost = section.size + kStoredSectionCost;
  if (service.bytes + cost > kMostServiceBytes) drop_all_sections(service);
  service.sections.merge(made);
  service.bytes += cost;
  held_ += cost;
  // The service of the section is the last in line, and never takes all.
  while (held_ > kMostScheduleBytes) drop_service(stored_.begin());
  return true;
}

bool ScheduleCollector::State::holds(const Stored& service, const Place& place, const StreamSection& section,
                                     uint64_t naming) {
  const auto held = service.sections.find(place);
  return held != service.sections.end() && held->second.naming == naming &&
         std::equal(held->second.bytes.begin(), held->second.bytes.end(), section.bytes,
                    section.bytes + section.size);
}

// What the section says that there is no more of: sections of its table, of its segment, and tables.
void ScheduleCollector::State::drop_past_last(Stored& service, const Place& place,
                                              const StreamSection& section) {
  constexpr int kLastNumber = 0xFF;
  const auto [table_id, group, number] = place;
  drop_sections(service, {table_id, group, section.last_section_number() + 1},
                {table_id, group, kLastNumber});
  if (table_id < kFirstSchedule || table_id == kAtscEit) return;
  const int segment_end = number | 7;
  const int segment_last = section.bytes[12];
  if (segment_last >= number && segment_last < segment_end)
    drop_sections(service, {table_id, group, segment_last + 1}, {table_id, group, segment_end});
  const int last_table_id = section.bytes[13];
  const int last_of_kind = table_id | 0x0F;
  if (last_table_id >= table_id && last_table_id < last_of_kind)
    drop_sections(service, {last_table_id + 1, 0, 0}, {last_of_kind, 0, kLastNumber});
}

void ScheduleCollector::State::drop_sections(Stored& service, const Place& first, const Place& last) {
  auto section = service.sections.lower_bound(first);
  while (section != service.sections.end() && section->first <= last) {
    const size_t cost = section->second.bytes.size() + kStoredSectionCost;
    service.bytes -= cost;
    held_ -= cost;
    section = service.sections.erase(section);
  }
}

void ScheduleCollector::State::drop_all_sections(Stored& service) {
  held_ -= service.bytes - kStoredServiceCost;
  service.sections.clear();
  service.bytes = kStoredServiceCost;
}

void ScheduleCollector::State::drop_service(Services::iterator service) {
  held_ -= service->bytes;
  places_.erase(service->id);
  stored_.erase(service);
}

std::vector<ServiceId> ScheduleCollector::State::services() const {
  std::vector<ServiceId> out;
  for (const auto& [id, service] : places_) out.push_back(id);
  return out;
}

std::vector<ScheduledEvent> ScheduleCollector::State::events(const ServiceId& id) const {
  const auto service = places_.find(id);
  if (service == places_.end()) return {};

  // What counts more comes later.
  using Ranked = std::tuple<bool, uint64_t, const Place*, const Section*>;
  std::vector<Ranked> ranked;
  for (const auto& [place, section] : service->second->sections)
    if (place.table_id != kAtscEtt)
      ranked.emplace_back(place.table_id <= kPresentFollowingOfOthers, section.arrival, &place, &section);
  std::sort(ranked.begin(), ranked.end());
  Events found;
  for (const auto& [is_present_following, arrival, place, section] : ranked)
    add_events(found, *place, *section);
  add_texts(found, *service->second);

  std::vector<ScheduledEvent> out;
  out.reserve(found.size());
  for (auto& [key, event] : found) out.push_back(std::move(event));
  const auto when = [](const ScheduledEvent& event) {
    return std::tuple(!event.start, event.start.value_or(std::chrono::sys_seconds()), event.event_id);
  };
  std::stable_sort(out.begin(), out.end(),
                   [&](const ScheduledEvent& a, const ScheduledEvent& b) { return when(a) < when(b); });
  // An event of ATSC is in each table whose time it is in.
  size_t last = 0;
  for (size_t i = 1; i < out.size(); ++i) {
    if (when(out[i]) == when(out[last]))
      fill_in(out[last], std::move(out[i]));
    else if (++last != i)
      out[last] = std::move(out[i]);
  }
  if (!out.empty()) out.resize(last + 1);
  return out;
}

void ScheduleCollector::State::add_events(Events& events, const Place& place, const Section& section) const {
  const auto add = [&](ScheduledEvent&& event) {
    const auto key = std::pair(event.event_id, place.group);
    const auto older = events.find(key);
    if (older != events.end()) {
      fill_in(event, std::move(older->second));
      older->second = std::move(event);
    } else if (events.size() < kMostEvents) {
      events.emplace(key, std::move(event));
    }
  };
  if (place.table_id != kAtscEit) {
    detail::with_parsed<Eit>(section.bytes.data(), section.bytes.size(), [&](const Eit& table) {
      for (const Eit::EventInfo& row : table.get_eventinfo()) add(event_of(row));
    });
  } else if (is_still_named(section, &Named::eit)) {
    detail::with_parsed<AtscEIT>(section.bytes.data(), section.bytes.size(), [&](const AtscEIT& table) {
      for (const AtscEIT::Event& row : table.events) add(event_of(row, leap_seconds_));
    });
  }
}

// Each text goes to one event: that of the EIT of the same number. Where no number is known, to any.
void ScheduleCollector::State::add_texts(Events& events, const Stored& service) const {
  constexpr int64_t kFirstGroup = std::numeric_limits<int64_t>::min();
  std::map<int, int> pids;  // of the EITs by number
  for (const auto& [pid, named] : guide_)
    if (named.eit >= 0) pids[named.eit] = pid;
  for (auto stored = service.sections.lower_bound({kAtscEtt, kFirstGroup, 0});
       stored != service.sections.end(); ++stored) {
    const auto& [place, section] = *stored;
    if (!is_still_named(section, &Named::ett)) continue;
    const auto event_id = static_cast<int>(place.group);
    auto event = events.lower_bound({event_id, kFirstGroup});
    if (section.pid >= 0) {
      const auto pid = pids.find(guide_.at(section.pid).ett);
      event = pid != pids.end() ? events.find({event_id, pid->second}) : events.end();
    }
    if (event == events.end() || event->first.first != event_id) continue;
    detail::with_parsed<AtscETT>(section.bytes.data(), section.bytes.size(), [&](const AtscETT& table) {
      event->second.long_texts.clear();
      for (const auto& message : table.extended_text_message.strings)
        event->second.long_texts.push_back({message.iso639languagecode.c_strA(), {}, message.utf8(), true});
    });
  }
}

ScheduleCollector::ScheduleCollector() : state_(std::make_unique<State>()) {}

ScheduleCollector::~ScheduleCollector() = default;

bool ScheduleCollector::push(const StreamSection& section) {
  return state_->push(section);
}

std::vector<ServiceId> ScheduleCollector::services() const {
  return state_->services();
}

std::vector<ScheduledEvent> ScheduleCollector::events(const ServiceId& service) const {
  return state_->events(service);
}

}  // namespace quillon
