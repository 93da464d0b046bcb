#pragma once

// A guide as it is broadcast through the day, minute by minute, and a receiver of it.

#include "tests/stream/streams.h"

#include <algorithm>
#include <chrono>
#include <string>

#include <quillon/stream/schedule_collector.h>
#include <quillon/tables/tdt.h>

namespace quillon::test {

// The events of services one after the other, without an end: four of them in three hours, which begin at
// other times in each service. Announced are those of a day from the one that is on; when it ends, or at
// midnight, the tables change their version, and segments that are past are empty.
class Broadcast {
 public:
  using Time = std::chrono::sys_seconds;

  static constexpr Time kBegin =
      std::chrono::sys_days(std::chrono::year(2026) / std::chrono::November / 22) + std::chrono::hours(20);

  explicit Broadcast(int services) : services_(static_cast<size_t>(services)) {}

  // The time, then all tables.
  std::vector<Bytes> sections(Time now) {
    std::vector<Bytes> out = {short_section(0x70, wire(now))};
    for (size_t i = 0; i < services_.size(); ++i) {
      update(static_cast<int>(i), now);
      out.insert(out.end(), services_[i].sections.begin(), services_[i].sections.end());
    }
    return out;
  }
  // The same in packets, and two packets more, as one is certain by those that follow.
  Bytes packets_of(Time now) {
    const std::vector<Bytes> all = sections(now);
    const Bytes null = packet({.pid = 0x1FFF}, {});
    return joined({packed({all[0]}, 0x14, time_counter_),
                   packed({all.begin() + 1, all.end()}, 0x12, event_counter_), null, null});
  }

  int services() const { return static_cast<int>(services_.size()); }
  static ServiceId id_of(int service) { return {0x233A, 0x451, 0x1000 + service}; }

  // What is known of a service then.
  static std::vector<ScheduledEvent> events(int service, Time now) {
    std::vector<ScheduledEvent> out;
    for (int i = on_air(service, now); out.empty() || start_of(service, i) < *out[0].start + kAnnounced;
         ++i) {
      ScheduledEvent event;
      event.event_id = i & 0xFFFF;
      event.start = start_of(service, i);
      event.duration = start_of(service, i + 1) - start_of(service, i);
      event.running_status = out.empty() ? 4 : out.size() == 1 ? 1 : 0;
      event.texts = {{"eng", "Event " + std::to_string(10000 + i), std::string(120, 'a')}};
      out.push_back(event);
    }
    return out;
  }

 private:
  static constexpr std::chrono::hours kAnnounced{24};
  static constexpr std::chrono::hours kSegment{3};
  static constexpr int kEventsInSegment = 4;
  static constexpr std::chrono::minutes kStarts[kEventsInSegment] = {
      std::chrono::minutes(0), std::chrono::minutes(30), std::chrono::minutes(90), std::chrono::minutes(135)};

  struct Service {
    int event = -1;
    Time day;
    int version = 0;
    std::vector<Bytes> sections;
  };

  static uint64_t u(int64_t value) { return static_cast<uint64_t>(value); }

  static Time start_of(int service, int event) {
    return kBegin - kAnnounced + std::chrono::minutes(service * 5) + event / kEventsInSegment * kSegment +
           kStarts[event % kEventsInSegment];
  }
  static int on_air(int service, Time now) {
    int event = 0;
    while (start_of(service, event + 1) <= now) ++event;
    return event;
  }

  static uint64_t bcd(int64_t value) { return u(value / 10 << 4 | value % 10); }
  static uint64_t bcd(std::chrono::seconds time) {
    const std::chrono::hh_mm_ss parts(time);
    return bcd(parts.hours().count()) << 16 | bcd(parts.minutes().count()) << 8 |
           bcd(parts.seconds().count());
  }
  static Bytes wire(Time time) {
    constexpr int kEpoch = 40587;  // the Modified Julian Date of 1 January 1970
    const auto day = std::chrono::floor<std::chrono::days>(time);
    return bits({{16, u(day.time_since_epoch().count() + kEpoch), "MJD"}, {24, bcd(time - day), "UTC"}});
  }
  static Bytes row(const ScheduledEvent& event, int running_status) {
    const EventText& text_of = event.texts[0];
    const Bytes descriptors =
        descriptor(0x4D, joined({text(text_of.language), counted(text_of.title), counted(text_of.text)}));
    return joined({bits({{16, u(event.event_id), "event_id"}}), wire(*event.start),
                   bits({{24, bcd(*event.duration), "duration"},
                         {3, u(running_status), "running_status"},
                         {1, 0, "free_CA_mode"},
                         {12, descriptors.size(), "descriptors_loop_length"}}),
                   descriptors});
  }

  static Bytes packed(const std::vector<Bytes>& sections, int pid, size_t& counter) {
    const Bytes out =
        packets(sections, {.pid = pid, .shared = true, .counter = static_cast<int>(counter % 16)});
    counter += out.size() / kPacketSize;
    return out;
  }

  Bytes section(int service, int table_id, Header header, int segment_last, const std::vector<Bytes>& rows) {
    Bytes body = bits({{16, u(id_of(service).transport_stream_id), "transport_stream_id"},
                       {16, u(id_of(service).original_network_id), "original_network_id"},
                       {8, u(segment_last), "segment_last_section_number"},
                       {8, u(table_id), "last_table_id"}});
    for (const Bytes& row : rows) body = joined({body, row});
    header.extension = id_of(service).service_id;
    header.version = services_[static_cast<size_t>(service)].version;
    return long_section(table_id, body, header);
  }

  void update(int index, Time now) {
    Service& service = services_[static_cast<size_t>(index)];
    const Time day = std::chrono::floor<std::chrono::days>(now);
    const int event = on_air(index, now);
    if (event == service.event && day == service.day) return;
    service.event = event;
    service.day = day;
    service.version = (service.version + 1) % 32;
    service.sections.clear();

    const std::vector<ScheduledEvent> all = events(index, now);
    for (const int number : {0, 1}) {
      const ScheduledEvent& one = all[static_cast<size_t>(number)];
      service.sections.push_back(section(index, 0x4E, {.section_number = number, .last_section_number = 1}, 1,
                                         {row(one, one.running_status)}));
    }
    // One section has so many events, and a segment eight sections.
    constexpr size_t kEvents = 3;
    std::vector<std::vector<Bytes>> segments(static_cast<size_t>((*all.back().start - day) / kSegment + 1));
    for (const ScheduledEvent& one : all)
      if (*one.start >= day)
        segments[static_cast<size_t>((*one.start - day) / kSegment)].push_back(row(one, 0));
    const auto sections_in = [](const std::vector<Bytes>& rows) {
      return std::max<int>(1, static_cast<int>((rows.size() + kEvents - 1) / kEvents));
    };
    const int last = static_cast<int>(segments.size() - 1) * 8 + sections_in(segments.back()) - 1;
    for (size_t i = 0; i < segments.size(); ++i) {
      const int first = static_cast<int>(i) * 8;
      const int segment_last = first + sections_in(segments[i]) - 1;
      auto from = segments[i].begin();
      for (int number = first; number <= segment_last; ++number) {
        const auto to = from + std::min<ptrdiff_t>(kEvents, segments[i].end() - from);
        service.sections.push_back(section(
            index, 0x50, {.section_number = number, .last_section_number = last}, segment_last, {from, to}));
        from = to;
      }
    }
  }

  std::vector<Service> services_;
  size_t time_counter_ = 0;
  size_t event_counter_ = 0;
};

// What is broadcast, as a receiver has it, whose only clock is the time table.
class BroadcastReceiver {
 public:
  void push(const Bytes& bytes) {
    packets_.feed(bytes);
    TsPacket packet;
    while (packets_.next(packet)) sections_.push(packet);
  }

  void push(const StreamSection& section) {
    schedule_.push(section);
    if (section.table_id() != 0x70) return;
    Tdt time;
    time.Parse(section.span());
    now_ = time.get_utc_time().get_time_point();
  }

  Broadcast::Time now() const { return now_; }

  // The services whose schedule is another one than that of the broadcast.
  int wrong_services(const Broadcast& broadcast) const {
    int wrong = static_cast<int>(schedule_.services().size()) != broadcast.services();
    for (int service = 0; service < broadcast.services(); ++service)
      wrong += !std::ranges::equal(schedule_.events(Broadcast::id_of(service)),
                                   Broadcast::events(service, now_), are_equal);
    return wrong;
  }

 private:
  static bool are_equal(const ScheduledEvent& a, const ScheduledEvent& b) {
    const auto texts_are_equal = [](const EventText& one, const EventText& other) {
      return one.language == other.language && one.title == other.title && one.text == other.text;
    };
    return a.event_id == b.event_id && a.start == b.start && a.duration == b.duration &&
           a.running_status == b.running_status && std::ranges::equal(a.texts, b.texts, texts_are_equal);
  }

  Broadcast::Time now_;
  ScheduleCollector schedule_;
  PacketReader packets_;
  SectionReader sections_{[this](const StreamSection& section) { push(section); }, {.repeats = true}};
};

}  // namespace quillon::test
