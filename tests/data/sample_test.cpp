// The bundled streams: they are what their makers give, and hold what is said of them.

#include "data/sample/samples.h"
#include "tests/stream/collected.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include <quillon/atsc/mgt.h>
#include <quillon/faces/field_sink.h>
#include <quillon/stream/any_table.h>
#include <quillon/stream/schedule_collector.h>
#include <quillon/stream/service_directory.h>
#include <quillon/stream/stream_statistics.h>

using namespace quillon;
using namespace quillon::test;
using namespace std::chrono_literals;

namespace {

// The folder of the data; none if it is not known.
std::filesystem::path data_folder() {
  const char* const folder = std::getenv("QUILLON_DATA");
  return folder ? folder : "";
}

Bytes bundled(const char* name) {
  std::ifstream in(data_folder() / name, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

// Every text of a stream.
struct Texts : FieldSink {
  void text(const char*, std::string_view utf8) override { all.emplace(utf8); }
  std::set<std::string> all;
};

// What the classes of streams make of one.
struct Readers {
  explicit Readers(const Bytes& stream, Standard whose = Standard::dvb) : standard(whose) {
    SectionReader sections([this](const StreamSection& section) { read(section); }, {.repeats = true});
    read_packets(stream, [&](const TsPacket& packet) {
      statistics.push(packet);
      sections.push(packet);
      tables.advance(statistics.seconds());
    });
  }

  void read(const StreamSection& section) {
    statistics.on_section(section);
    schedule.push(section);
    tables.push(section);
    if (section.has_crc && !section.crc_ok) damaged.push_back(section.table_id());
    if (section.repeated || (section.has_crc && !section.crc_ok)) return;
    const auto table = AnyTable::for_table_id(section.table_id(), standard);
    ASSERT_TRUE(table) << section.table_id();
    table->set_reading(Reading::standard);
    ASSERT_NO_THROW(table->Parse(section.bytes, section.size, false)) << "table " << section.table_id();
    EXPECT_TRUE(table->get_descriptor_failures().empty()) << "table " << section.table_id();
    met.insert(section.table_id());
    table->walk(texts);
  }

  const Standard standard;
  StreamStatistics statistics;
  ServiceDirectory directory;
  ScheduleCollector schedule;
  std::vector<int> damaged;  // the table ids of sections whose CRC is wrong
  std::set<int> met;
  Texts texts;
  std::vector<std::pair<int, int>> changed;  // table id and extension
  TableCollector tables{[this](const TableEvent& event) {
    directory.push(event);
    // A short section is a table that changes whenever it says something else.
    if (event.kind == TableEvent::Kind::changed && event.sections[0][1] & 0x80)
      changed.emplace_back(event.table.table_id, event.table.extension);
  }};
};

using Lines = std::vector<std::string>;

constexpr std::chrono::sys_seconds kMidnight = std::chrono::sys_days(2026y / 11 / 22);

const Readers& dvb() {
  static const Readers readers(sample::dvb_sample());
  return readers;
}

// "name / provider: languages of its streams".
Lines described(const Readers& readers) {
  Lines out;
  for (const Service* service : readers.directory.services()) {
    std::string line = service->name + " / " + service->provider + ":";
    for (const ServiceStream& stream : service->streams)
      for (const std::string& language : stream.languages) line += " " + language;
    out.push_back(line);
  }
  return out;
}

// Tables whose sections came later than their standard allows.
std::vector<int> late(const Readers& readers) {
  std::vector<int> out;
  for (const TableRepetition& table : readers.statistics.tables())
    if (table.largest > TableCollector::longest_interval({.pid = table.pid, .table_id = table.table_id}))
      out.push_back(table.table_id);
  return out;
}

}  // namespace

TEST(BundledStreams, AreWhatTheirMakersGive) {
  if (data_folder().empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  const Bytes dvb_stream = bundled("sample.ts");
  EXPECT_LE(dvb_stream.size(), 1'200'000u);
  EXPECT_TRUE(dvb_stream == sample::dvb_sample()) << "make_sample writes it anew";
  const Bytes atsc_stream = bundled("sample-atsc.ts");
  EXPECT_LE(atsc_stream.size(), 400'000u);
  EXPECT_TRUE(atsc_stream == sample::atsc_sample(data_folder() / "atsc_text"))
      << "make_sample writes it anew";
}

TEST(DvbSample, HasServicesInManyScripts) {
  EXPECT_EQ(described(dvb()),
            (Lines{"Quill One / Feather: eng eng eng", "Café Radio / Feather: fra",
                   "Südwind / Südwind Medien: deu deu deu", "Αιγαίο Σινεμά / Κυκλάδες: ell eng",
                   "Волна Кино / Волна Медиа: rus bul bul", "قناة النخيل / شبكة النخيل: ara fra",
                   "קול הגליל / רדיו הצפון: heb", "星河衛視 / 星河傳媒: zho yue zho",
                   "한빛 TV / 한빛미디어:", "Rádio Açores / Ilhas FM:"}));
  for (const Service* service : dvb().directory.services())
    EXPECT_EQ(service->is_actual, service->transport_stream_id == 0x0451) << service->name;
}

TEST(DvbSample, HasAScheduleOfAWholeDay) {
  int services = 0;
  for (const ServiceId& id : dvb().schedule.services()) {
    if (id.transport_stream_id != 0x0451) continue;
    ++services;
    auto end = kMidnight;
    for (const ScheduledEvent& event : dvb().schedule.events(id)) {
      EXPECT_EQ(event.start, end) << id.service_id;
      end += event.duration.value_or(0s);
      ASSERT_EQ(event.texts.size(), 1u);
      EXPECT_FALSE(event.texts[0].title.empty());
      EXPECT_FALSE(event.texts[0].text.empty());
      EXPECT_EQ(event.contents.size(), 1u);
      for (const ExtendedText& text : event.long_texts) EXPECT_TRUE(text.is_complete);
    }
    EXPECT_EQ(end, kMidnight + 24h) << id.service_id;
  }
  EXPECT_EQ(services, 8);
}

TEST(DvbSample, TellsOfAnEventAtLength) {
  const auto events = dvb().schedule.events({0x233A, 0x0451, 0x1001});
  const auto event = std::ranges::find(events, kMidnight + 12h + 30min, &ScheduledEvent::start);
  ASSERT_NE(event, events.end());
  EXPECT_EQ(event->texts[0].title, "Ink and Paper");
  EXPECT_EQ(event->running_status, 4);
  ASSERT_EQ(event->long_texts.size(), 1u);
  EXPECT_TRUE(event->long_texts[0].text.ends_with(
      "the glue is made of wheat, and the press is older than anyone who works it."));
  ASSERT_EQ(event->long_texts[0].items.size(), 1u);
  EXPECT_EQ(event->long_texts[0].items[0].description, "Presented by");
}

TEST(DvbSample, HasTwoScrambledServices) {
  EXPECT_EQ(dvb().directory.emms(), (std::vector<CaStream>{{0x0B00, 0x0500}, {0x0500, 0x0501}}));
  for (const Service* service : dvb().directory.services()) {
    const bool scrambled = service->service_id == 0x1004 || service->service_id == 0x1005;
    EXPECT_EQ(service->free_ca_mode, scrambled) << service->name;
    EXPECT_EQ(service->ca.size(), scrambled ? 2u : 0u) << service->name;
    for (const CaStream& ca : service->ca) EXPECT_GT(dvb().statistics.pid(ca.pid).packets, 0u);
    for (const ServiceStream& stream : service->streams) {
      const PidStatistics& pid = dvb().statistics.pid(stream.pid);
      EXPECT_GT(pid.packets, 0u) << stream.pid;
      EXPECT_EQ(pid.scrambled, scrambled ? pid.packets : 0u) << stream.pid;
    }
  }
}

TEST(DvbSample, HasAClockForEachServiceAndAConstantRate) {
  const StreamStatistics& statistics = dvb().statistics;
  EXPECT_GT(statistics.seconds(), 10);
  EXPECT_LT(statistics.seconds(), 12);
  EXPECT_NEAR(statistics.bit_rate(), 846'000, 1);
  EXPECT_GT(statistics.null_packets(), 0u);
  for (const Service* service : dvb().directory.services()) {
    if (!service->is_actual) continue;
    // One in a tenth of a second at least.
    EXPECT_GT(static_cast<double>(statistics.pid(service->pcr_pid).clock_references),
              statistics.seconds() * 10)
        << service->name;
  }
}

TEST(DvbSample, IsDamagedWhereItIsSaidToBe) {
  EXPECT_EQ(dvb().damaged, std::vector<int>{0x4A});
  EXPECT_EQ(late(dvb()), std::vector<int>{0x42});
  for (int pid = 0; pid < TsPacket::null_pid; ++pid)
    EXPECT_EQ(dvb().statistics.pid(pid).continuity_errors, pid == 0x0301 ? 3u : 0u) << pid;
  EXPECT_EQ(dvb().statistics.sync_losses(), 0u);
}

TEST(DvbSample, ChangesWithItsEvents) {
  EXPECT_EQ(dvb().changed,
            (std::vector<std::pair<int, int>>{{0x4E, 0x1001}, {0x02, 0x1003}, {0x4E, 0x1008}}));
}

TEST(DvbSample, HasAnApplicationAndData) {
  for (const char* const text :
       {"Quill Red Button", "https://hbbtv.quill.example/", "Feather Data", "Feather Family"})
    EXPECT_TRUE(dvb().texts.all.contains(text)) << text;
}

TEST(DvbSample, HasTablesOfAllKinds) {
  EXPECT_EQ(dvb().met, (std::set<int>{0x00, 0x01, 0x02, 0x40, 0x42, 0x46, 0x4A, 0x4C, 0x4E, 0x4F, 0x50, 0x70,
                                      0x71, 0x73, 0x74}));
}

// Its texts are compressed by lists of the data's folder.
class AtscSample : public testing::Test {
 protected:
  void SetUp() override {
    if (data_folder().empty()) GTEST_SKIP() << "QUILLON_DATA is not set";
  }
  static const Readers& atsc() {
    static const Readers readers(sample::atsc_sample(data_folder() / "atsc_text"), Standard::atsc);
    return readers;
  }
};

TEST_F(AtscSample, HasFourChannels) {
  Lines lines;
  for (const Service* service : atsc().directory.services()) {
    std::string line = std::to_string(service->major_channel_number) + "-" +
                       std::to_string(service->minor_channel_number) + " " + service->name + ":";
    for (const ServiceStream& stream : service->streams)
      for (const std::string& language : stream.languages) line += " " + language;
    lines.push_back(line);
    EXPECT_GT(static_cast<double>(atsc().statistics.pid(service->pcr_pid).clock_references),
              atsc().statistics.seconds() * 10);
  }
  EXPECT_EQ(lines,
            (Lines{"12-1 INKWELL: eng spa", "12-2 TINTA: spa eng", "12-3 SKYCAM: eng", "12-4 LUNA FM: spa"}));
}

TEST_F(AtscSample, HasAScheduleOfTwelveHours) {
  const auto services = atsc().schedule.services();
  EXPECT_EQ(services.size(), 4u);
  for (const ServiceId& id : services) {
    auto end = kMidnight + 12h;
    for (const ScheduledEvent& event : atsc().schedule.events(id)) {
      EXPECT_EQ(event.start, end) << id.service_id;
      end += event.duration.value_or(0s);
      ASSERT_FALSE(event.texts.empty());
      EXPECT_FALSE(event.texts[0].title.empty());
      EXPECT_EQ(event.advisories.size(), 1u);
    }
    EXPECT_EQ(end, kMidnight + 24h) << id.service_id;
  }
}

TEST_F(AtscSample, TellsOfEventsInTwoLanguages) {
  const auto valley = atsc().schedule.events({-1, -1, 0x0101});
  ASSERT_FALSE(valley.empty());
  ASSERT_EQ(valley[0].texts.size(), 2u);
  EXPECT_EQ(valley[0].texts[0].title, "Good Morning Valley");
  EXPECT_EQ(valley[0].texts[1].title, "Buenos días, valle");
  ASSERT_EQ(valley[0].genres.size(), 1u);
  EXPECT_EQ(valley[0].genres[0].attribute, 0x23);  // news
  ASSERT_EQ(valley[0].long_texts.size(), 1u);
  EXPECT_EQ(valley[0].long_texts[0].text, "News, weather and traffic, every ten minutes.");
  const auto tinta = atsc().schedule.events({-1, -1, 0x0102});
  ASSERT_GT(tinta.size(), 1u);
  EXPECT_EQ(tinta[1].texts[0].language, "spa");
  EXPECT_EQ(tinta[1].long_texts[0].text, "¿Por qué flota un barco de papel?");
}

TEST_F(AtscSample, IsAsItsStandardWantsIt) {
  const StreamStatistics& statistics = atsc().statistics;
  EXPECT_NEAR(statistics.seconds(), 5, 0.1);
  EXPECT_NEAR(statistics.bit_rate(), 564'000, 1);
  EXPECT_EQ(atsc().damaged, std::vector<int>());
  EXPECT_EQ(late(atsc()), std::vector<int>());
  for (int pid = 0; pid < TsPacket::null_pid; ++pid)
    EXPECT_EQ(statistics.pid(pid).continuity_errors, 0u) << pid;
  EXPECT_EQ(atsc().met, (std::set<int>{0x00, 0x02, 0xC7, 0xC8, 0xCA, 0xCB, 0xCC, 0xCD}));
  for (const char* const text :
       {"TV-PG", "Parental Guidance Suggested", "Tinta Televisión", "Música de ayer y de hoy."})
    EXPECT_TRUE(atsc().texts.all.contains(text)) << text;
}

// A receiver makes room by what the guide says.
TEST_F(AtscSample, TellsTheSizesOfItsTables) {
  AtscMGT guide;
  std::map<int, size_t> sizes;  // by PID, as none but the base PID has two tables
  std::set<Bytes> sections;
  SectionReader reader([&](const StreamSection& section) {
    const Bytes bytes(section.bytes, section.bytes + section.size);
    if (section.table_id() == 0xC7) {
      guide.set_reading(Reading::standard);
      guide.Parse(section.bytes, section.size, false);
    } else if (sections.insert(bytes).second) {
      sizes[section.pid] += section.size;
    }
  });
  read_packets(sample::atsc_sample(data_folder() / "atsc_text"),
               [&](const TsPacket& packet) { reader.push(packet); });
  EXPECT_EQ(guide.tables.size(), 11u);
  for (const AtscMGT::Table& table : guide.tables) {
    EXPECT_GT(table.number_bytes, 0);
    // A section of the base PID is within 1024 bytes.
    if (table.table_type_PID == kPsipPid)
      EXPECT_LE(table.number_bytes, 1024);
    else
      EXPECT_EQ(static_cast<size_t>(table.number_bytes), sizes[table.table_type_PID]) << table.table_type;
  }
}
