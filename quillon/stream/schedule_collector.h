#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillon/atsc/content_advisory.h>
#include <quillon/atsc/genre.h>
#include <quillon/descriptors/event/content.h>
#include <quillon/descriptors/event/extended_text.h>
#include <quillon/descriptors/event/parental_rating.h>
#include <quillon/platform/api.h>
#include <quillon/stream/section_reader.h>
#include <quillon/stream/service_id.h>

namespace quillon {

// Title and short description of an event in one language, in UTF-8.
struct EventText {
  std::string language;  // ISO 639-2, as it was sent
  std::string title;
  std::string text;  // empty in ATSC
};

// An event of a service, from all that was said of it.
struct ScheduledEvent {
  int event_id = 0;
  std::optional<std::chrono::sys_seconds> start;  // UTC; none of an event without a time of its own
  std::optional<std::chrono::seconds> duration;
  int running_status = 0;  // 0 undefined, 1 not running, 2 starts in a few seconds, 3 pausing, 4 running
  int free_ca_mode = -1;   // 1: one or more streams are under conditional access; -1 in ATSC
  std::vector<EventText> texts;
  std::vector<ExtendedText> long_texts;  // of extended event descriptors, or of an extended text table
  std::vector<DescriptorContent::Content> contents;  // genres of DVB
  std::vector<DescriptorParentalRating::RatingInfo> ratings;
  std::vector<DescriptorAtscGenre::Attribute> genres;  // of ATSC
  std::vector<DescriptorAtscContentAdvisory::Region> advisories;
};

// The events of services: of EIT present/following and schedule, actual and other, and in ATSC of EIT-0 to
// EIT-127 with the texts of their ETTs.
//
//   ScheduleCollector schedule;
//   SectionReader sections([&](const StreamSection& section) { schedule.push(section); }, {.repeats = true});
//   while (packets.next(packet)) sections.push(packet);
//   for (const ServiceId& service : schedule.services())
//     for (const ScheduledEvent& event : schedule.events(service))
//       if (!event.texts.empty()) std::cout << event.texts[0].title << "\n";
//
// It goes by sections, as few schedules are complete when they are wanted: another version of a section
// replaces what the section said, and the sections past its table's last one go. Of an event that is in
// several sections the newest counts, present/following before schedule, with what it lacks from the others.
// Fields are read in the standard reading, and a section that is refused has no events.
//
// In ATSC the master guide says which PIDs carry tables; their sections go when it names the PID no more, and
// a text belongs to the event of its ETM_id in the EIT of the same number. Times are UTC by the leap seconds
// of the system time table, 18 until it comes.
//
// Memory: 32 MiB at most. Where services need more, those are forgotten first of which nothing came for the
// longest time, which the repeated sections tell; one that needs more than 2 MiB is forgotten at once, and
// begins anew. A list has 65,536 events at most, and while it is made takes up to forty times what its
// sections take. For threads the rule of the tables holds (PsiBase1).
class QUILLON_API ScheduleCollector {
 public:
  ScheduleCollector();
  ~ScheduleCollector();
  ScheduleCollector(const ScheduleCollector&) = delete;
  ScheduleCollector& operator=(const ScheduleCollector&) = delete;

  // True if the section says something new. Sections of other tables, next ones, and those with a wrong CRC
  // are passed over. Where memory runs out, std::bad_alloc comes out, and nothing has changed.
  bool push(const StreamSection& section);

  // In the order of their ids.
  std::vector<ServiceId> services() const;
  // In the order of their start, those without one last; empty for a service that is not there.
  std::vector<ScheduledEvent> events(const ServiceId& service) const;

 private:
  class State;

  std::unique_ptr<State> state_;
};

}  // namespace quillon
