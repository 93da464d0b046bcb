// Events out of the sections of schedules: their order, what replaces what, texts, and hostile schedules.

#include "tests/stream/collected.h"
#include "tests/support/sample.h"

#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

#include <quillon/stream/schedule_collector.h>
#include <quillon/tables/eit.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using Lines = std::vector<std::string>;

constexpr int kEventPid = 0x12;
constexpr ServiceId kService = {0x233A, 0x451, 0x1001};
constexpr ServiceId kSource = {-1, -1, 11};
// 60676 as a Modified Julian Date.
constexpr sys_seconds kDay = sys_days(2025y / std::chrono::January / 1);
// The same in GPS seconds, with 18 leap seconds.
constexpr uint32_t kGpsDay = 1419724818;

uint64_t u(int value) {
  return static_cast<uint64_t>(value);
}

Bytes short_event(const std::string& title, const std::string& about = "",
                  const std::string& language = "eng") {
  return descriptor(0x4D, joined({text(language), counted(title), counted(about)}));
}

// An event that begins at a full hour and lasts one.
Bytes event_row(int id, int hour, const Bytes& descriptors, int running_status = 0) {
  return joined({bits({{16, u(id), "event_id"},
                       {16, 60676, "MJD"},
                       {4, u(hour / 10), "hour, tens"},
                       {4, u(hour % 10), "hour"},
                       {16, 0, "minute, second"},
                       {24, 0x010000, "duration"},
                       {3, u(running_status), "running_status"},
                       {1, 1, "free_CA_mode"},
                       {12, descriptors.size(), "descriptors_loop_length"}}),
                 descriptors});
}

struct EventSection {
  int table_id = 0x50;
  int number = 0;
  int last = 0;
  int version = 0;
  int segment_last = -1;   // below 0 for the number
  int last_table_id = -1;  // below 0 for the table id
  int service = kService.service_id;
};

Bytes eit_of(const EventSection& s, const std::vector<Bytes>& rows) {
  Bytes body = bits({{16, u(kService.transport_stream_id), "transport_stream_id"},
                     {16, u(kService.original_network_id), "original_network_id"},
                     {8, u(s.segment_last < 0 ? s.number : s.segment_last), "segment_last_section_number"},
                     {8, u(s.last_table_id < 0 ? s.table_id : s.last_table_id), "last_table_id"}});
  for (const Bytes& row : rows) body = joined({body, row});
  return long_section(s.table_id, body,
                      {.extension = s.service,
                       .version = s.version,
                       .section_number = s.number,
                       .last_section_number = s.last});
}

Bytes multiple_string(const std::string& characters) {
  return joined({bits({{8, 1, "number_strings"},
                       {8, 'e', "language"},
                       {8, 'n', "language"},
                       {8, 'g', "language"},
                       {8, 1, "number_segments"},
                       {8, 0, "compression_type"},
                       {8, 0, "mode"}}),
                 counted(characters)});
}

struct AtscEvent {
  int id;
  uint32_t start;
  std::string title;
  Bytes descriptors = {};
};

Bytes atsc_eit_of(const std::vector<AtscEvent>& events, int version = 0) {
  Bytes body = bits({{8, 0, "protocol_version"}, {8, events.size(), "num_events_in_section"}});
  for (const AtscEvent& event : events) {
    const Bytes title = multiple_string(event.title);
    body = joined({body,
                   bits({{2, 3, "reserved"},
                         {14, u(event.id), "event_id"},
                         {32, event.start, "start_time"},
                         {2, 3, "reserved"},
                         {2, 1, "ETM_location"},
                         {20, 1800, "length_in_seconds"},
                         {8, title.size(), "title_length"}}),
                   title, bits({{4, 15, "reserved"}, {12, event.descriptors.size(), "descriptors_length"}}),
                   event.descriptors});
  }
  return long_section(0xCB, body, {.extension = kSource.service_id, .version = version, .private_bit = 1});
}

Bytes ett_of(int event_id, const std::string& about, int kind = 2) {
  return long_section(0xCC,
                      joined({bits({{8, 0, "protocol_version"},
                                    {16, u(kSource.service_id), "source_id"},
                                    {14, u(event_id), "event_id"},
                                    {2, u(kind), "of an event"}}),
                              multiple_string(about)}),
                      {.extension = 0, .private_bit = 1});
}

Bytes mgt_of(const std::vector<std::pair<int, int>>& tables, int version = 0) {
  Bytes body = bits({{8, 0, "protocol_version"}, {16, tables.size(), "tables_defined"}});
  for (const auto& [type, pid] : tables)
    body = joined({body, bits({{16, u(type), "table_type"},
                               {3, 7, "reserved"},
                               {13, u(pid), "table_type_PID"},
                               {3, 7, "reserved"},
                               {5, 0, "table_type_version_number"},
                               {32, 0, "number_bytes"},
                               {4, 15, "reserved"},
                               {12, 0, "table_type_descriptors_length"}})});
  return long_section(0xC7, joined({body, bits({{4, 15, "reserved"}, {12, 0, "descriptors_length"}})}),
                      {.extension = 0, .version = version, .private_bit = 1});
}

Bytes stt_of(int leap_seconds) {
  return long_section(0xCD,
                      bits({{8, 0, "protocol_version"},
                            {32, kGpsDay, "system_time"},
                            {8, u(leap_seconds), "GPS_UTC_offset"},
                            {16, 0, "daylight_savings"}}),
                      {.extension = 0, .private_bit = 1});
}

bool push(ScheduleCollector& schedule, const Bytes& section, int pid = kEventPid) {
  return schedule.push(stream_section(section, pid));
}

// "12 Noon News": the hour and the title.
Lines listed(const ScheduleCollector& schedule, const ServiceId& service = kService) {
  Lines out;
  for (const ScheduledEvent& event : schedule.events(service)) {
    std::ostringstream line;
    if (event.start)
      line << std::chrono::floor<std::chrono::hours>(*event.start - kDay).count();
    else
      line << "--";
    for (const EventText& text : event.texts) line << " " << text.title;
    out.push_back(line.str());
  }
  return out;
}

}  // namespace

// The example of the class.
TEST(ScheduleCollector, IsUsedLikeThis) {
  const Bytes stream = sample_stream();
  PacketReader packets;
  packets.feed(stream.data(), stream.size());
  packets.finish();
  TsPacket packet;
  std::ostringstream out;

  ScheduleCollector schedule;
  SectionReader sections([&](const StreamSection& section) { schedule.push(section); }, {.repeats = true});
  while (packets.next(packet)) sections.push(packet);
  for (const ServiceId& service : schedule.services())
    for (const ScheduledEvent& event : schedule.events(service))
      if (!event.texts.empty()) out << event.texts[0].title << "\n";

  EXPECT_EQ(out.str(), "Noon News\nInk and Paper\nMorning Concert\n");
}

TEST(ScheduleCollector, ReadsAllThatAnEventSays) {
  const Bytes descriptors =
      joined({short_event("News", "The day.", "eng"), short_event("Nachrichten", "Der Tag.", "deu"),
              descriptor(0x4E, joined({{0x00}, text("eng"), {0}, counted("At length.")})),
              descriptor(0x54, {0x21, 0x00}), descriptor(0x55, joined({text("GBR"), {0x09}}))});
  ScheduleCollector schedule;
  EXPECT_TRUE(push(schedule, eit_of({.table_id = 0x4E}, {event_row(7, 12, descriptors, 4)})));
  ASSERT_EQ(schedule.services(), std::vector<ServiceId>{kService});
  const std::vector<ScheduledEvent> events = schedule.events(kService);
  ASSERT_EQ(events.size(), 1u);
  const ScheduledEvent& event = events[0];
  EXPECT_EQ(event.event_id, 7);
  EXPECT_EQ(event.start, kDay + 12h);
  EXPECT_EQ(event.duration, 1h);
  EXPECT_EQ(event.running_status, 4);
  EXPECT_EQ(event.free_ca_mode, 1);
  ASSERT_EQ(event.texts.size(), 2u);
  EXPECT_EQ(event.texts[1].language, "deu");
  EXPECT_EQ(event.texts[1].title, "Nachrichten");
  EXPECT_EQ(event.texts[1].text, "Der Tag.");
  ASSERT_EQ(event.long_texts.size(), 1u);
  EXPECT_EQ(event.long_texts[0].text, "At length.");
  ASSERT_EQ(event.contents.size(), 1u);
  EXPECT_EQ(event.contents[0].get_content_nibble_level_1(), 2);
  ASSERT_EQ(event.ratings.size(), 1u);
  EXPECT_EQ(event.ratings[0].get_rating(), 9);
  EXPECT_TRUE(schedule.events({1, 2, 3}).empty());
}

TEST(ScheduleCollector, OrdersEventsByTime) {
  ScheduleCollector schedule;
  Bytes undefined = event_row(9, 0, short_event("Reference"));
  std::fill_n(undefined.begin() + 2, 8, uint8_t{0xFF});
  push(schedule, eit_of({.number = 8, .last = 8}, {event_row(4, 20, short_event("Late"))}));
  push(schedule, eit_of({.last = 8}, {undefined, event_row(2, 3, short_event("Early"))}));
  push(schedule, eit_of({.table_id = 0x51}, {event_row(3, 12, short_event("Noon"))}));
  EXPECT_EQ(listed(schedule), (Lines{"3 Early", "12 Noon", "20 Late", "-- Reference"}));
  EXPECT_FALSE(schedule.events(kService)[3].duration);
}

TEST(ScheduleCollector, HasAnEventOnce) {
  ScheduleCollector schedule;
  push(schedule, eit_of({.table_id = 0x4E}, {event_row(7, 13, short_event("News, now"), 4)}));
  const Bytes about = descriptor(0x4E, joined({{0x00}, text("eng"), {0}, counted("At length.")}));
  push(schedule, eit_of({}, {event_row(7, 12, joined({short_event("News"), about})),
                             event_row(8, 14, short_event("Film"))}));
  // Present/following counts, whenever it came; what it lacks is that of the schedule.
  EXPECT_EQ(listed(schedule), (Lines{"13 News, now", "14 Film"}));
  EXPECT_EQ(schedule.events(kService)[0].running_status, 4);
  EXPECT_EQ(schedule.events(kService)[0].long_texts.size(), 1u);
  // Of two sections of a schedule the newer.
  push(schedule, eit_of({.number = 8, .last = 8}, {event_row(8, 15, short_event("Film, later"))}));
  EXPECT_EQ(listed(schedule), (Lines{"13 News, now", "15 Film, later"}));
}

TEST(ScheduleCollector, ReplacesWhatASectionSaid) {
  ScheduleCollector schedule;
  const Bytes first =
      eit_of({.last = 8}, {event_row(1, 1, short_event("One")), event_row(2, 2, short_event("Two"))});
  EXPECT_TRUE(push(schedule, first));
  EXPECT_TRUE(push(schedule, eit_of({.number = 8, .last = 8}, {event_row(3, 3, short_event("Three"))})));
  EXPECT_FALSE(push(schedule, first));
  EXPECT_TRUE(push(schedule, eit_of({.last = 8, .version = 1}, {event_row(2, 2, short_event("Zwei"))})));
  EXPECT_EQ(listed(schedule), (Lines{"2 Zwei", "3 Three"}));
}

TEST(ScheduleCollector, DropsWhatIsPastTheLast) {
  ScheduleCollector schedule;
  const auto fill = [&](int table_id, int number, int hour, int last_table_id) {
    push(schedule, eit_of({.table_id = table_id,
                           .number = number,
                           .last = 16,
                           .segment_last = number | 7,
                           .last_table_id = last_table_id},
                          {event_row(table_id << 8 | number, hour, {})}));
  };
  fill(0x50, 0, 0, 0x51), fill(0x50, 1, 1, 0x51), fill(0x50, 8, 2, 0x51), fill(0x50, 9, 3, 0x51);
  fill(0x50, 16, 4, 0x51), fill(0x51, 0, 5, 0x51), fill(0x60, 0, 6, 0x60);
  EXPECT_EQ(listed(schedule), (Lines{"0", "1", "2", "3", "4", "5", "6"}));
  // The segment ends with its first section, the table with its second segment, the schedule with the table.
  push(schedule, eit_of({.number = 0, .last = 9, .version = 1, .segment_last = 0, .last_table_id = 0x50},
                        {event_row(1, 0, {})}));
  EXPECT_EQ(listed(schedule), (Lines{"0", "2", "3", "6"}));
  // A last one from elsewhere ends nothing.
  push(schedule, eit_of({.number = 8, .last = 9, .version = 1, .segment_last = 3, .last_table_id = 0x4E},
                        {event_row(2, 2, {})}));
  EXPECT_EQ(listed(schedule), (Lines{"0", "2", "3", "6"}));
}

TEST(ScheduleCollector, PassesOverWhatDoesNotCount) {
  ScheduleCollector schedule;
  const Bytes good = eit_of({}, {event_row(1, 1, short_event("One"))});
  Bytes broken = good;
  broken[20] ^= 1;
  EXPECT_FALSE(push(schedule, broken));
  Bytes next = good;
  next[5] &= 0xFE;
  repair_crc(next);
  EXPECT_FALSE(push(schedule, next));
  EXPECT_FALSE(push(schedule, long_section(0x50, {1, 2, 3, 4, 5})));
  EXPECT_FALSE(push(schedule, short_section(0x50, Bytes(30))));
  EXPECT_FALSE(push(schedule, long_section(0x42, Bytes(30))));
  EXPECT_TRUE(schedule.services().empty());
  // A section that is refused has no events, and the others have theirs.
  Bytes refused = event_row(2, 2, {});
  refused[11] = 9;  // descriptors_loop_length
  EXPECT_TRUE(push(schedule, eit_of({.number = 1, .last = 1}, {refused})));
  push(schedule, eit_of({.last = 1, .segment_last = 1}, {event_row(1, 1, short_event("One"))}));
  EXPECT_EQ(listed(schedule), Lines{"1 One"});
}

TEST(ScheduleCollector, ReadsTheTablesOfAMasterGuide) {
  ScheduleCollector schedule;
  const Bytes now = atsc_eit_of({{1, kGpsDay, "Now"}, {2, kGpsDay + 10000, "Across"}});
  const Bytes later = atsc_eit_of({{2, kGpsDay + 10000, "Across"}, {1, kGpsDay + 14400, "Again"}});
  EXPECT_FALSE(push(schedule, now, 0x1D00));  // nothing says what the PID is
  EXPECT_TRUE(push(
      schedule,
      mgt_of({{0x0000, kPsipPid}, {0x0100, 0x1D00}, {0x0101, 0x1D01}, {0x0200, 0x1E00}, {0x0201, 0x1E01}}),
      kPsipPid));
  EXPECT_TRUE(push(schedule, now, 0x1D00));
  EXPECT_TRUE(push(schedule, later, 0x1D01));
  EXPECT_FALSE(push(schedule, later, 0x1D01));
  EXPECT_FALSE(push(schedule, later, 0x1E01));
  EXPECT_TRUE(push(schedule, ett_of(1, "The first."), 0x1E00));
  EXPECT_TRUE(push(schedule, ett_of(1, "Another one."), 0x1E01));
  EXPECT_FALSE(push(schedule, ett_of(0, "The channel.", 0), 0x1E00));
  EXPECT_FALSE(push(schedule, ett_of(2, "Elsewhere."), 0x1D00));

  EXPECT_EQ(listed(schedule, kSource), (Lines{"0 Now", "2 Across", "4 Again"}));
  const std::vector<ScheduledEvent> events = schedule.events(kSource);
  EXPECT_EQ(events[0].start, kDay);
  EXPECT_EQ(events[0].duration, 30min);
  EXPECT_EQ(events[0].texts[0].language, "eng");
  ASSERT_EQ(events[0].long_texts.size(), 1u);
  EXPECT_EQ(events[0].long_texts[0].text, "The first.");
  EXPECT_TRUE(events[1].long_texts.empty());
  ASSERT_EQ(events[2].long_texts.size(), 1u);
  EXPECT_EQ(events[2].long_texts[0].text, "Another one.");
  // A PID that the guide names no more says nothing, also once it is named anew.
  EXPECT_TRUE(push(schedule, mgt_of({{0x0100, 0x1D01}}, 1), kPsipPid));
  EXPECT_EQ(listed(schedule, kSource), (Lines{"2 Across", "4 Again"}));
  EXPECT_TRUE(push(schedule, mgt_of({{0x0100, 0x1D01}, {0x0101, 0x1D00}}, 2), kPsipPid));
  EXPECT_EQ(listed(schedule, kSource), (Lines{"2 Across", "4 Again"}));
  EXPECT_TRUE(push(schedule, now, 0x1D00));
  EXPECT_EQ(listed(schedule, kSource), (Lines{"0 Now", "2 Across", "4 Again"}));
  EXPECT_FALSE(push(schedule, mgt_of({}, 3), 0x500));
  EXPECT_TRUE(push(schedule, mgt_of({}, 3), kPsipPid));
  EXPECT_TRUE(listed(schedule, kSource).empty());
}

TEST(ScheduleCollector, TakesLeapSecondsFromTheSystemTime) {
  ScheduleCollector schedule;
  push(schedule, atsc_eit_of({{1, kGpsDay, "Now"}, {2, 0xFFFFFFFF, "Never"}}), -1);
  EXPECT_EQ(schedule.events(kSource)[0].start, kDay);
  EXPECT_FALSE(schedule.events(kSource)[1].start);
  EXPECT_FALSE(push(schedule, stt_of(18), kPsipPid));
  EXPECT_TRUE(push(schedule, stt_of(20), kPsipPid));
  EXPECT_EQ(schedule.events(kSource)[0].start, kDay - 2s);
}

TEST(ScheduleCollector, ReadsBareSectionsOfAtsc) {
  ScheduleCollector schedule;
  push(schedule, atsc_eit_of({{1, kGpsDay, "Now"}}), -1);
  push(schedule, atsc_eit_of({{2, kGpsDay + 10800, "Later"}}), -1);
  push(schedule, atsc_eit_of({}), -1);
  push(schedule, ett_of(2, "About later."), -1);
  EXPECT_EQ(listed(schedule, kSource), (Lines{"0 Now", "3 Later"}));
  EXPECT_EQ(schedule.events(kSource)[1].long_texts.size(), 1u);
  push(schedule, atsc_eit_of({{3, kGpsDay, "Changed"}}, 1), -1);
  EXPECT_EQ(listed(schedule, kSource), (Lines{"0 Changed", "3 Later"}));
}

TEST(ScheduleCollector, GivesTheGenresOfAtsc) {
  const auto genres = [](const Bytes& descriptors) {
    ScheduleCollector schedule;
    push(schedule, atsc_eit_of({{1, kGpsDay, "Now", descriptors}}), -1);
    const ScheduledEvent event = schedule.events(kSource).at(0);
    std::vector<int> out;
    for (const DescriptorAtscGenre::Attribute& genre : event.genres) out.push_back(genre.attribute);
    return out;
  };
  using Codes = std::vector<int>;
  EXPECT_EQ(genres({}), Codes());
  EXPECT_EQ(genres(descriptor(0xAB, {0xE2, 0x25, 0x45})), (Codes{0x25, 0x45}));
  EXPECT_EQ(genres(joined({descriptor(0xAB, {0xE1, 0x25}), descriptor(0xAB, {0xE1, 0x22})})),
            (Codes{0x25, 0x22}));
  // A count is not trusted with what follows.
  EXPECT_EQ(genres(joined({descriptor(0xAB, {0xFF, 0x25}), descriptor(0xAB, {0xE1, 0x22})})),
            (Codes{0x25, 0x22}));
  EXPECT_EQ(genres(descriptor(0xAB, {0xFF})), Codes());
  EXPECT_EQ(genres(descriptor(0xAB, {})), Codes());
}

TEST(ScheduleCollector, ForgetsTheServicesThatWereSilentForTheLongestTime) {
  ScheduleCollector schedule;
  const Bytes kept = eit_of({}, {event_row(1, 1, short_event("Kept"))});
  const Bytes filling(4000);
  push(schedule, kept);
  for (int service = 0; service < 0x1000; ++service)
    for (int number = 0; number < 24; number += 8) {
      push(schedule, eit_of({.table_id = 0x60, .number = number, .last = 16, .service = service}, {filling}));
      push(schedule, kept);
    }
  EXPECT_EQ(listed(schedule), Lines{"1 Kept"});
  const size_t count = schedule.services().size();
  EXPECT_GT(count, 2000u);
  EXPECT_LT(count, 3000u);
  EXPECT_TRUE(schedule.events({kService.original_network_id, kService.transport_stream_id, 0}).empty());
}

TEST(ScheduleCollector, BeginsAServiceAnewThatIsTooLong) {
  ScheduleCollector schedule;
  const Bytes filling = descriptor(0x80, Bytes(250));
  Bytes descriptors;
  for (int i = 0; i < 15; ++i) descriptors = joined({descriptors, filling});
  size_t most = 0;
  for (int table_id = 0x50; table_id <= 0x53; ++table_id)
    for (int number = 0; number < 256; ++number) {
      push(schedule, eit_of({.table_id = table_id,
                             .number = number,
                             .last = 255,
                             .segment_last = number | 7,
                             .last_table_id = 0x53},
                            {event_row(table_id << 8 | number, 1, descriptors)}));
      if (number % 32 == 31) most = std::max(most, schedule.events(kService).size());
    }
  EXPECT_GT(most, 500u);
  EXPECT_LT(most, 560u);
  EXPECT_LT(schedule.events(kService).size(), most);
}

// Each event of a section that was read is there, and no other.
TEST(ScheduleCollector, CollectsRecordedSchedules) {
  if (!has_recorded_streams()) GTEST_SKIP() << "no recorded streams";
  const std::map<std::string, size_t> counts = {{"dvb-eit-schedule.ts", 976}, {"dvb-sat-bat.ts", 12}};
  for (const auto& [name, count] : counts) {
    std::set<std::pair<ServiceId, int>> expected;
    ScheduleCollector schedule;
    read_recorded_sections(name, [&](const StreamSection& section) {
      schedule.push(section);
      if (!section.crc_ok || section.table_id() < 0x4E || section.table_id() > 0x6F) return;
      Eit table;
      table.set_reading(Reading::standard);
      table.Parse(section.bytes, section.size, false);
      const ServiceId id{table.get_original_network_id(), table.get_transport_stream_id(),
                         table.get_service_id()};
      for (const auto& row : table.get_eventinfo()) expected.insert({id, row.get_event_id()});
    });
    std::set<std::pair<ServiceId, int>> found;
    size_t events = 0;
    for (const ServiceId& service : schedule.services()) {
      std::optional<sys_seconds> last;
      for (const ScheduledEvent& event : schedule.events(service)) {
        found.insert({service, event.event_id});
        ++events;
        EXPECT_FALSE(event.texts.empty());
        EXPECT_LE(last.value_or(*event.start), *event.start);
        last = event.start;
      }
    }
    EXPECT_EQ(found, expected) << name;
    EXPECT_EQ(events, expected.size()) << name;
    EXPECT_EQ(events, count) << name;
  }
}

TEST(ScheduleCollector, CollectsRecordedAtscSchedules) {
  if (!has_recorded_streams()) GTEST_SKIP() << "no recorded streams";
  // Events, and those of them with a long text.
  const std::map<std::string, std::pair<size_t, size_t>> counts = {{"atsc-psip.ts", {71, 0}},
                                                                   {"atsc-sections.bin", {21, 11}}};
  for (const auto& [name, count] : counts) {
    ScheduleCollector schedule;
    read_recorded_sections(name, [&](const StreamSection& section) { schedule.push(section); });
    std::pair<size_t, size_t> found;
    for (const ServiceId& service : schedule.services())
      for (const ScheduledEvent& event : schedule.events(service)) {
        ++found.first;
        found.second += !event.long_texts.empty();
        EXPECT_EQ(event.start->time_since_epoch() % 5min, 0s);
      }
    EXPECT_EQ(found, count) << name;
  }
}
