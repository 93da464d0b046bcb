// What reads streams, with its first, second, ... allocation failing: it says so, leaks nothing, and what was
// lost is there once it comes again. A program of its own, as it makes allocations fail.

#include "data/sample/samples.h"
#include "tests/alone/failing_heap.h"
#include "tests/stream/collected.h"

#include <array>
#include <memory>
#include <optional>
#include <sstream>

#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/stream_statistics.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Lines = std::vector<std::string>;

struct Sent {
  int pid;
  Bytes bytes;

  StreamSection section() const { return stream_section(bytes, pid); }
};

// The sections of a stream, each once.
std::vector<Sent> sections_of(const Bytes& stream) {
  std::vector<Sent> out;
  SectionReader reader([&](const StreamSection& section) {
    out.push_back({section.pid, Bytes(section.bytes, section.bytes + section.size)});
  });
  read_packets(stream, [&](const TsPacket& packet) { reader.push(packet); });
  return out;
}

const std::vector<Sent>& dvb_sections() {
  static const std::vector<Sent> out = sections_of(sample::dvb_sample());
  return out;
}

const std::vector<Sent>& atsc_sections() {
  static const std::vector<Sent> out =
      sections_of(sample::atsc_sample(std::string(std::getenv("QUILLON_DATA")) + "/atsc_text"));
  return out;
}

// The first `most` of some tables.
std::vector<Sent> some_of(const std::vector<Sent>& sections, int first_id, int last_id, size_t most) {
  std::vector<Sent> out;
  for (const Sent& sent : sections)
    if (sent.bytes[0] >= first_id && sent.bytes[0] <= last_id && out.size() < most) out.push_back(sent);
  EXPECT_EQ(out.size(), most);
  return out;
}

// The same as its next version.
Sent next_version(Sent sent) {
  sent.bytes[5] = static_cast<uint8_t>(sent.bytes[5] ^ 0x02);
  repair_crc(sent.bytes);
  return sent;
}

// Counts without allocations what a sink is told: by a number of the caller's.
struct Counts {
  std::array<int, 1024> of = {};

  void note(int number) { ++of.at(static_cast<size_t>(number)); }
  bool operator==(const Counts&) const = default;
};

Lines listed(const ServiceDirectory& directory) {
  Lines out;
  for (const Service* service : directory.services()) {
    std::ostringstream line;
    line << service->service_id << " " << service->name << " " << service->provider << " "
         << service->map_pid;
    for (const ServiceStream& stream : service->streams) line << " " << stream.pid << " " << stream.content;
    for (const CaStream& ca : service->ca) line << " " << ca.pid;
    out.push_back(line.str());
  }
  for (const CaStream& ca : directory.emms()) out.push_back(std::to_string(ca.pid));
  return out;
}

Lines listed(const ScheduleCollector& schedule) {
  Lines out;
  for (const ServiceId& service : schedule.services()) {
    out.push_back(std::to_string(service.service_id));
    for (const ScheduledEvent& event : schedule.events(service)) {
      std::ostringstream line;
      line << event.event_id << " "
           << event.start.value_or(std::chrono::sys_seconds()).time_since_epoch().count();
      for (const EventText& text : event.texts) line << " " << text.title << " " << text.text;
      for (const ExtendedText& text : event.long_texts) line << " " << text.text;
      line << " " << event.contents.size() << " " << event.ratings.size() << " " << event.genres.size();
      out.push_back(line.str());
    }
  }
  return out;
}

}  // namespace

TEST(StreamFailures, OfMaking) {
  const auto making = [](auto nothing) {
    using Made = decltype(nothing);
    return fail_each([&] { return Made(); }, [](Made& made) { made.emplace(); },
                     [](Made& made) { EXPECT_EQ(made.has_value(), !has_failed); });
  };
  EXPECT_GE(making(std::optional<PacketReader>()), 1u);
  EXPECT_GE(making(std::optional<StreamStatistics>()), 1u);
  EXPECT_GE(making(std::optional<ScheduleCollector>()), 1u);
  EXPECT_GE(making(std::optional<ServiceDirectory>()), 1u);
  const auto making_for_a_sink = [](auto nothing, auto sink) {
    using Made = decltype(nothing);
    return fail_each([&] { return Made(); }, [&](Made& made) { made.emplace(sink); },
                     [](Made& made) { EXPECT_EQ(made.has_value(), !has_failed); });
  };
  const std::array<char, 100> held = {};  // which a function object needs a block for
  EXPECT_GE(making_for_a_sink(std::optional<SectionReader>(), [held](const StreamSection&) { (void)held; }),
            3u);
  EXPECT_GE(making_for_a_sink(std::optional<TableCollector>(), [held](const TableEvent&) { (void)held; }),
            1u);
}

TEST(StreamFailures, NeverOfPacketsThatAreFound) {
  const Bytes clean = made_stream(60);
  Bytes damaged = clean;
  damaged.erase(damaged.begin() + 20 * kPacketSize + 7, damaged.begin() + 22 * kPacketSize);
  for (const Bytes& stream : {clean, damaged})
    for (const size_t piece : {size_t{1}, size_t{300}, stream.size()}) {
      uint64_t found = 0;
      EXPECT_EQ(fail_each([] { return std::make_unique<PacketReader>(); },
                          [&](auto& reader) {
                            TsPacket packet;
                            for (size_t at = 0; at < stream.size(); at += piece) {
                              reader->feed(stream.data() + at, std::min(piece, stream.size() - at));
                              while (reader->next(packet)) {
                              }
                            }
                            found = reader->packets();
                          },
                          [&](auto&) { EXPECT_GT(found, 40u); }),
                0u);
    }
}

TEST(StreamFailures, OfSectionsThatAreRead) {
  // A program association, a map of it, a PID that the map names, and so many events that what is remembered
  // of them grows; each section has another extension.
  constexpr int kMap = 0x100;
  constexpr int kNamed = 0x1F0;
  constexpr int kEvents = 600;
  const auto section = [](int table_id, int extension) {
    return long_section(table_id, Bytes(20), {.extension = extension});
  };
  const auto round = [&](int counter) {
    std::vector<Bytes> events;
    for (int i = 0; i < kEvents; ++i) events.push_back(section(0x50, 10 + i));
    return joined({packets({pat_of({{2, kMap}}, {.extension = 1})}, {.pid = 0, .counter = counter}),
                   packets({pmt_of(2, {{0x0B, kNamed}})}, {.pid = kMap, .counter = counter}),
                   packets({section(0x3B, 3)}, {.pid = kNamed, .counter = counter}),
                   packets(events, {.pid = 0x12, .shared = true, .counter = counter})});
  };
  const Bytes first = round(0);
  const Bytes second = round(5);
  struct Subject {
    Counts given;
    SectionReader reader{[this](const StreamSection& section) { given.note(section.extension()); }};

    void push(const Bytes& stream) {
      for (size_t at = 0; at < stream.size(); at += kPacketSize)
        reader.push(TsPacket{stream.data() + at, 0, 0, false});
    }
  };
  EXPECT_GE(fail_each([] { return std::make_unique<Subject>(); }, [&](auto& s) { s->push(first); },
                      [&](auto& s) {
                        s->push(second);
                        EXPECT_TRUE(s->reader.reads_pid(kNamed));
                        Counts once;
                        for (const int extension : {1, 2, 3}) once.note(extension);
                        for (int i = 0; i < kEvents; ++i) once.note(10 + i);
                        EXPECT_EQ(s->given.of, once.of);
                      }),
            10u);
}

TEST(StreamFailures, OfATableThatIsCollected) {
  const std::vector<Sent> old = some_of(dvb_sections(), 0x00, 0x4E, 12);
  std::vector<Sent> now;
  for (const Sent& sent : old) now.push_back(next_version(sent));
  struct Subject {
    Counts told;  // 10 times the version, and the kind
    TableCollector tables{
        [this](const TableEvent& event) { told.note(event.version * 10 + static_cast<int>(event.kind)); }};

    void push(const std::vector<Sent>& sections) {
      for (const Sent& sent : sections) tables.push(sent.section());
    }
    // Tables and their versions.
    std::string there() const {
      std::ostringstream out;
      tables.each([&](const TableEvent& event) {
        out << event.table.extension << " " << event.version << " " << event.sections.size() << "\n";
      });
      return out.str();
    }
  };
  for (const bool is_new : {false, true}) {
    Subject whole;
    if (!is_new) whole.push(old);
    const std::string before = whole.there();
    EXPECT_EQ(before.empty(), is_new);
    whole.push(now);
    EXPECT_NE(whole.there(), before);
    EXPECT_GE(fail_each(
                  [&] {
                    auto out = std::make_unique<Subject>();
                    if (!is_new) out->push(old);
                    return out;
                  },
                  [&](auto& s) { s->push(now); },
                  [&](auto& s) {
                    // A table that is not there yet is there as it was.
                    if (const std::string there = s->there(); !is_new) {
                      EXPECT_EQ(std::count(there.begin(), there.end(), '\n'),
                                std::count(before.begin(), before.end(), '\n'));
                    }
                    s->push(now);
                    EXPECT_EQ(s->there(), whole.there());
                    EXPECT_EQ(s->told.of, whole.told.of);
                  }),
              8u);
  }
}

TEST(StreamFailures, OfServices) {
  // What a table collector tells of the sample, and then of another version, and of a table that is gone.
  struct Told {
    TableEvent::Kind kind;
    TableId table;
    std::vector<Bytes> sections;
  };
  const auto events_of = [](const std::vector<std::vector<Sent>>& rounds) {
    std::vector<Told> out;
    TableCollector tables([&](const TableEvent& event) {
      out.push_back({event.kind, event.table, event.sections});
    });
    for (const std::vector<Sent>& round : rounds)
      for (const Sent& sent : round) tables.push(sent.section());
    out.push_back({TableEvent::Kind::gone, out.front().table, out.front().sections});
    return out;
  };
  struct Subject {
    size_t at = 0;
    Counts told;  // 10 times the number of the service among those that a byte can tell, and the kind
    ServiceDirectory directory{[this](const ServiceEvent& event) {
      told.note((event.service.service_id & 0x3F) * 10 + static_cast<int>(event.kind));
    }};

    void push(const std::vector<Told>& events) {
      for (; at < events.size(); ++at)
        directory.push({events[at].kind, events[at].table, 0, 0, events[at].sections});
    }
  };
  for (const bool is_atsc : {false, true}) {
    std::vector<Sent> first;
    for (const Sent& sent : is_atsc ? atsc_sections() : dvb_sections())
      if (sent.bytes[0] < 0x4A || sent.bytes[0] == 0xC8) first.push_back(sent);
    // Descriptions before the association, which then touches all services.
    std::stable_sort(first.begin(), first.end(),
                     [](const Sent& a, const Sent& b) { return a.bytes[0] > b.bytes[0]; });
    std::vector<Sent> second;
    for (Sent sent : first) {
      if (sent.bytes[0] == 0x02) sent.bytes[9] ^= 1;  // PCR_PID
      second.push_back(next_version(sent));
    }
    const std::vector<Told> events = events_of({first, second});
    Subject whole;
    whole.push(events);
    EXPECT_GE(whole.directory.services().size(), 3u);
    EXPECT_GE(fail_each([] { return std::make_unique<Subject>(); }, [&](auto& s) { s->push(events); },
                        [&](auto& s) {
                          s->push(events);  // from the one that failed on
                          EXPECT_EQ(listed(s->directory), listed(whole.directory));
                          EXPECT_EQ(s->told.of, whole.told.of);
                        }),
              100u);
  }
}

TEST(StreamFailures, OfStatistics) {
  const std::vector<Sent> sections = some_of(dvb_sections(), 0x00, 0xFF, 30);
  const auto push = [&](StreamStatistics& statistics) {
    for (const Sent& sent : sections) statistics.on_section(sent.section());
  };
  StreamStatistics whole;
  push(whole);
  EXPECT_GE(fail_each([] { return std::make_unique<StreamStatistics>(); }, [&](auto& s) { push(*s); },
                      [&](auto& s) {
                        push(*s);
                        EXPECT_EQ(s->tables().size(), whole.tables().size());
                      }),
            5u);
  EXPECT_GE(fail_each([] { return 0; }, [&](int) { whole.tables(); }, [](int) {}), 1u);
}

TEST(StreamFailures, OfSchedules) {
  std::vector<Sent> dvb = some_of(dvb_sections(), 0x4E, 0x6F, 12);
  for (size_t i = 0; i < 6; ++i) dvb.push_back(next_version(dvb[i]));
  std::vector<Sent> atsc = some_of(atsc_sections(), 0xC7, 0xC7, 1);
  for (const int table_id : {0xCD, 0xCB, 0xCC})
    for (const Sent& sent : some_of(atsc_sections(), table_id, table_id, table_id == 0xCD ? 1 : 8))
      atsc.push_back(sent);
  struct Subject {
    size_t at = 0;
    std::unique_ptr<ScheduleCollector> schedule = std::make_unique<ScheduleCollector>();

    void push(const std::vector<Sent>& sections, size_t end) {
      for (; at < end; ++at) schedule->push(sections[at].section());
    }
  };
  for (const std::vector<Sent>& sections : {dvb, atsc}) {
    std::vector<Lines> after(1);  // so many sections
    Subject whole;
    while (whole.at < sections.size()) {
      whole.push(sections, whole.at + 1);
      after.push_back(listed(*whole.schedule));
    }
    EXPECT_NE(after.front(), after.back());
    EXPECT_GE(fail_each([] { return Subject(); }, [&](Subject& s) { s.push(sections, sections.size()); },
                        [&](Subject& s) {
                          EXPECT_EQ(listed(*s.schedule), after[s.at]);  // as before the one that failed
                          s.push(sections, sections.size());
                          EXPECT_EQ(listed(*s.schedule), after.back());
                        }),
              20u);
    for (const ServiceId& service : whole.schedule->services()) {
      EXPECT_GE(fail_each([] { return size_t{1000}; },
                          [&](size_t& count) { count = whole.schedule->events(service).size(); },
                          [&](size_t& count) {
                            EXPECT_EQ(count, has_failed ? 1000 : whole.schedule->events(service).size());
                          }),
                1u);
    }
    EXPECT_EQ(listed(*whole.schedule), after.back());
  }
}

TEST(StreamFailures, OfAServiceThatIsBegunAnew) {
  // More than a service may have: sections of one table id each with all that a section holds.
  const auto section = [](int number) {
    Bytes body = bits({{16, 1, "transport_stream_id"},
                       {16, 1, "original_network_id"},
                       {8, 0xFF, "segment_last_section_number"},
                       {8, 0x6F, "last_table_id"}});
    body.resize(4080);
    return Sent{0x12,
                long_section(0x50 + number / 256, body,
                             {.extension = 1, .section_number = number % 256, .last_section_number = 0xFF})};
  };
  constexpr size_t most = size_t{2} << 20;
  const size_t before = live;
  ScheduleCollector schedule;
  bool is_begun_anew = false;
  for (int number = 0; number < 520; ++number) {
    const Sent sent = section(number);
    const size_t held = live;
    size_t refused = 0;
    for (until_failure = 1; !said_by([&] { schedule.push(sent.section()); }).empty();) {
      EXPECT_EQ(live, held);
      until_failure = ++refused + 1;
    }
    until_failure = 0;
    EXPECT_GE(refused, 2u);
    is_begun_anew |= live < held;
    EXPECT_LT(live, before + most);
  }
  EXPECT_TRUE(is_begun_anew);
  EXPECT_EQ(schedule.services().size(), 1u);
}

// All of them, one on the other, as an application has them.
TEST(StreamFailures, OfAWholeChain) {
  const auto round = [](int counter) {
    Bytes out;
    for (const Sent& sent : some_of(dvb_sections(), 0x00, 0xFF, 60))
      out = joined({out, packets({sent.bytes}, {.pid = sent.pid, .counter = counter})});
    return out;
  };
  const Bytes first = round(0);
  const Bytes second = round(5);
  struct Subject {
    ServiceDirectory directory;
    ScheduleCollector schedule;
    StreamStatistics statistics;
    TableCollector tables{[this](const TableEvent& event) { directory.push(event); }};
    SectionReader sections{[this](const StreamSection& section) {
                             statistics.on_section(section);
                             tables.push(section);
                             schedule.push(section);
                           },
                           {.repeats = true}};

    void push(const Bytes& stream) {
      for (size_t at = 0; at < stream.size(); at += kPacketSize) {
        const TsPacket packet{stream.data() + at, 0, 0, false};
        statistics.push(packet);
        sections.push(packet);
      }
    }
  };
  Subject whole;
  whole.push(first);
  whole.push(second);
  const Lines services = listed(whole.directory);
  const Lines events = listed(whole.schedule);
  EXPECT_GE(services.size(), 3u);
  EXPECT_GE(events.size(), 5u);
  EXPECT_GE(fail_each([] { return std::make_unique<Subject>(); }, [&](auto& s) { s->push(first); },
                      [&](auto& s) {
                        s->push(second);
                        s->push(first);
                        // What the collector told in vain.
                        s->tables.each([&](const TableEvent& event) { s->directory.push(event); });
                        EXPECT_EQ(listed(s->directory), services);
                        EXPECT_EQ(listed(s->schedule), events);
                      }),
            200u);
}
