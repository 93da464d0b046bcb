// Services out of tables: what is known of them, when they come and go, and hostile tables.

#include "tests/stream/collected.h"
#include "tests/support/sample.h"

#include <gtest/gtest.h>
#include <sstream>

#include <quillon/sections/error.h>
#include <quillon/stream/service_directory.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Lines = std::vector<std::string>;

constexpr int kAssociationPid = 0x00;
constexpr int kDescriptionPid = 0x11;

// A directory on top of a collector; writes down the changes of services.
class Watched {
 public:
  Watched& push(const Bytes& section, int pid) {
    tables.push(stream_section(section, pid));
    return *this;
  }
  // The changes since the last call: "appeared 1 One".
  Lines changes() { return std::exchange(changes_, {}); }
  const Service& only() const {
    const auto services = directory.services();
    EXPECT_EQ(services.size(), 1u);
    return *services.front();
  }

  std::function<void(const ServiceEvent&)> then = [](const ServiceEvent&) {};
  ServiceDirectory directory{[this](const ServiceEvent& event) {
    static constexpr const char* names[] = {"appeared", "changed", "gone"};
    changes_.push_back(std::string(names[static_cast<int>(event.kind)]) + " " +
                       std::to_string(event.service.service_id) + " " + event.service.name);
    then(event);
  }};
  TableCollector tables{[this](const TableEvent& event) { directory.push(event); }};

 private:
  Lines changes_;
};

struct DescribedService {
  int id;
  std::string name;
  Bytes more = {};
};

Bytes sdt_of(const std::vector<DescribedService>& services, int version = 0, int table_id = 0x42,
             int stream = 0x451) {
  Bytes body = bits({{16, 0x233A, "original_network_id"}, {8, 0xFF, "reserved_future_use"}});
  for (const DescribedService& service : services) {
    const Bytes descriptors =
        joined({descriptor(0x48, joined({{25}, counted("Feather"), counted(service.name)})), service.more});
    body = joined({body,
                   bits({{16, static_cast<uint64_t>(service.id), "service_id"},
                         {6, 0x3F, "reserved_future_use"},
                         {1, 1, "EIT_schedule_flag"},
                         {1, 0, "EIT_present_following_flag"},
                         {3, 4, "running_status"},
                         {1, 1, "free_CA_mode"},
                         {12, descriptors.size(), "descriptors_loop_length"}}),
                   descriptors});
  }
  return long_section(table_id, body, {.extension = stream, .version = version});
}

struct Channel {
  std::string name;
  int minor;
  int program;
  int source;
  int stream = 0x7DB;
  Bytes descriptors = {};
};

// Of terrestrial or of cable channels: two bits that were reserved are all that differs.
Bytes vct_of(const std::vector<Channel>& channels, int version = 0, int table_id = 0xC8) {
  Bytes body = bits({{8, 0, "protocol_version"}, {8, channels.size(), "num_channels_in_section"}});
  for (const Channel& channel : channels) {
    Bytes name(14);
    for (size_t i = 0; i < channel.name.size(); ++i) name[2 * i + 1] = static_cast<uint8_t>(channel.name[i]);
    body = joined({body, name,
                   bits({{4, 15, "reserved"},
                         {10, 13, "major_channel_number"},
                         {10, static_cast<uint64_t>(channel.minor), "minor_channel_number"},
                         {8, 4, "modulation_mode"},
                         {32, 0, "carrier_frequency"},
                         {16, static_cast<uint64_t>(channel.stream), "channel_TSID"},
                         {16, static_cast<uint64_t>(channel.program), "program_number"},
                         {2, 0, "ETM_location"},
                         {1, 0, "access_controlled"},
                         {1, 1, "hidden"},
                         {2, 3, "reserved"},
                         {1, 0, "hide_guide"},
                         {3, 7, "reserved"},
                         {6, 2, "service_type"},
                         {16, static_cast<uint64_t>(channel.source), "source_id"},
                         {6, 63, "reserved"},
                         {10, channel.descriptors.size(), "descriptors_length"}}),
                   channel.descriptors});
  }
  body = joined({body, bits({{6, 63, "reserved"}, {10, 0, "additional_descriptors_length"}})});
  return long_section(table_id, body, {.extension = 0x7DB, .version = version, .private_bit = 1});
}

Bytes ca_descriptor(int system, int pid) {
  return descriptor(0x09, bits({{16, static_cast<uint64_t>(system), "CA_system_ID"},
                                {3, 7, "reserved"},
                                {13, static_cast<uint64_t>(pid), "CA_PID"}}));
}

// A line a service: ids, name, PIDs.
Lines listed(const ServiceDirectory& directory) {
  Lines out;
  for (const Service* service : directory.services()) {
    std::ostringstream line;
    line << service->service_id << " " << service->name;
    for (const ServiceStream& stream : service->streams) line << " " << stream.pid;
    out.push_back(line.str());
  }
  return out;
}

Lines listed(const std::string& recording) {
  ServiceDirectory directory;
  TableCollector tables([&](const TableEvent& event) { directory.push(event); });
  read_recorded_sections(recording, [&](const StreamSection& section) { tables.push(section); });
  return listed(directory);
}

}  // namespace

// The example of the class.
TEST(ServiceDirectory, IsUsedLikeThis) {
  const Bytes stream = sample_stream();
  PacketReader packets;
  packets.feed(stream.data(), stream.size());
  packets.finish();
  TsPacket packet;
  std::ostringstream out;

  ServiceDirectory directory;
  TableCollector tables([&](const TableEvent& event) { directory.push(event); });
  SectionReader sections([&](const StreamSection& section) { tables.push(section); }, {.repeats = true});
  while (packets.next(packet)) sections.push(packet);
  for (const Service* service : directory.services())
    out << service->service_id << " " << service->name << "\n";

  EXPECT_EQ(out.str(), "4097 Quill One\n4098 Caf\xC3\x98 Radio\n");
}

TEST(ServiceDirectory, GathersWhatIsKnownOfAService) {
  const Bytes stream = sample_stream();
  ServiceDirectory directory;
  TableCollector tables([&](const TableEvent& event) { directory.push(event); });
  SectionReader sections([&](const StreamSection& section) { tables.push(section); });
  read_packets(stream, [&](const TsPacket& packet) { sections.push(packet); });

  const auto services = directory.services();
  ASSERT_EQ(services.size(), 2u);
  const Service& one = *services[0];
  EXPECT_TRUE(one.is_actual);
  EXPECT_EQ(one.id(), (ServiceId{0x233A, 0x0451, 0x1001}));
  EXPECT_EQ(one.provider, "Feather");
  EXPECT_EQ(one.service_type, 1);
  EXPECT_STREQ(one.service_type_text, "digital television service");
  EXPECT_EQ(one.running_status, 4);
  EXPECT_EQ(one.free_ca_mode, 1);
  EXPECT_EQ(one.eit_schedule_flag, 0);
  EXPECT_EQ(one.eit_present_following_flag, 1);
  EXPECT_EQ(one.map_pid, 0x0100);
  EXPECT_EQ(one.pcr_pid, 0x0101);
  EXPECT_EQ(one.ca, (std::vector<CaStream>{{0x0B00, 0x0510}}));
  ASSERT_EQ(one.streams.size(), 4u);
  EXPECT_EQ(one.streams[1].pid, 0x0102);
  EXPECT_EQ(one.streams[1].stream_type, 4);
  EXPECT_STREQ(one.streams[1].stream_type_text, "ISO/IEC 13818-3 Audio");
  EXPECT_EQ(one.streams[1].component_tag, 2);
  EXPECT_EQ(one.streams[2].component_tag, -1);
  EXPECT_EQ(one.streams[2].languages, (Lines{"deu", "fra"}));
  EXPECT_EQ(one.streams[3].languages, Lines{"deu"});
  EXPECT_STREQ(one.streams[3].stream_type_text, "EBU teletext");
  EXPECT_EQ(directory.emms(), (std::vector<CaStream>{{0x0B00, 0x0500}, {0x0500, 0x0501}}));
}

TEST(ServiceDirectory, SaysWhatEachStreamCarries) {
  const auto content = [](const MapRow& row) {
    Watched watched;
    watched.push(pmt_of(1, {row}), 0x100);
    return std::string(watched.only().streams.at(0).content);
  };
  // By its type.
  const std::pair<int, const char*> types[] = {
      {0x01, "MPEG-1 video"},
      {0x02, "MPEG-2 video"},
      {0x03, "MPEG audio"},
      {0x04, "MPEG audio"},
      {0x08, "DSM-CC"},
      {0x0A, "DSM-CC"},
      {0x0B, "DSM-CC"},
      {0x0C, "DSM-CC"},
      {0x0D, "DSM-CC"},
      {0x0F, "AAC audio"},
      {0x10, "MPEG-4 video"},
      {0x11, "AAC audio"},
      {0x15, "metadata"},
      {0x16, "metadata"},
      {0x1B, "H.264 video"},
      {0x20, "H.264 video, second view"},
      {0x21, "JPEG 2000 video"},
      {0x24, "HEVC video"},
      {0x25, "HEVC video"},
      {0x33, "VVC video"},
      {0x42, "AVS video"},
      {0x81, "AC-3 audio"},
      {0x86, "splice information"},
      {0x87, "E-AC-3 audio"},
  };
  for (const auto& [type, carried] : types) EXPECT_EQ(content({type, 0x101}), carried) << type;
  // Private data by what describes it; a registration counts most.
  const Bytes subtitles = descriptor(0x59, joined({text("deu"), {0x10, 0x00, 0x01, 0x00, 0x01}}));
  EXPECT_EQ(content({0x06, 0x101, subtitles}), "subtitles");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x56, joined({text("deu"), {0x09, 0x00}}))}), "teletext");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x6A, {0x00})}), "AC-3 audio");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x7A, {0x00})}), "E-AC-3 audio");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x7B, {0x00, 0x00, 0x00, 0x00, 0x00})}), "DTS audio");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x7C, {0x51})}), "AAC audio");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x45, {0x01, 0x01, 0xE7})}), "VBI data");
  EXPECT_EQ(content({0x06, 0x101, descriptor(0x46, joined({text("deu"), {0x09, 0x00}}))}), "VBI data");
  EXPECT_EQ(content({0x06, 0x101, joined({subtitles, descriptor(0x05, text("Opus"))})}), "Opus audio");
  EXPECT_EQ(content({0x99, 0x101, descriptor(0x05, text("HEVC"))}), "HEVC video");
  EXPECT_EQ(content({0xEA, 0x101, descriptor(0x05, text("VC-1"))}), "VC-1 video");
  // Sections too.
  EXPECT_EQ(content({0x05, 0x101}), "sections");
  EXPECT_EQ(content({0x05, 0x101, descriptor(0x6F, {0x00, 0x01, 0xE0})}), "applications");
  EXPECT_EQ(content({0x05, 0x101, descriptor(0x66, {0x00, 0x0B, 0x00})}), "IP/MAC notification");
  // Where nothing says it, the text of its type.
  for (const int type : {0x00, 0x06, 0x99, 0xEA}) {
    Watched watched;
    const ServiceStream stream = watched.push(pmt_of(1, {{type, 0x101}}), 0x100).only().streams.at(0);
    EXPECT_STREQ(stream.content, stream.stream_type_text) << type;
    EXPECT_STRNE(stream.content, "") << type;
  }
}

TEST(ServiceDirectory, KnowsProgramsWithoutNames) {
  Watched watched;
  // A map alone, until there is an association.
  watched.push(pmt_of(1, {{2, 0x101}}), 0x100).push(pmt_of(2, {{2, 0x201}}), 0x200);
  EXPECT_EQ(listed(watched.directory), (Lines{"1  257", "2  513"}));
  EXPECT_EQ(watched.directory.services()[0]->map_pid, 0x100);
  watched.push(pat_of({{0, 0x10}, {1, 0x100}, {3, 0x300}}), kAssociationPid);
  EXPECT_EQ(listed(watched.directory), (Lines{"1  257", "3 "}));
  EXPECT_EQ(watched.directory.services()[0]->transport_stream_id, 0x1234);
  EXPECT_EQ(watched.changes(), (Lines{"appeared 1 ", "appeared 2 ", "changed 1 ", "appeared 3 ", "gone 2 "}));
  // On another PID than the association's it is not the program's map.
  watched.push(pmt_of(3, {{2, 0x333}}), 0x333);
  EXPECT_EQ(listed(watched.directory), (Lines{"1  257", "3 "}));
  watched.push(pat_of({{3, 0x333}}, {.version = 4}), kAssociationPid);
  EXPECT_EQ(listed(watched.directory), Lines{"3  819"});
  // In a chain of bare sections there are no PIDs.
  watched.push(pmt_of(3, {{2, 0x334}}), -1);
  EXPECT_EQ(listed(watched.directory), Lines{"3  820"});
}

TEST(ServiceDirectory, TellsWhatAppearsChangesAndGoes) {
  Watched watched;
  watched.push(sdt_of({{1, "One"}, {2, "Two"}, {3, "Three"}}), kDescriptionPid);
  EXPECT_EQ(watched.changes(), (Lines{"appeared 1 One", "appeared 2 Two", "appeared 3 Three"}));
  watched.push(sdt_of({{1, "One"}, {3, "Drei"}, {4, "Four"}}, 1), kDescriptionPid);
  EXPECT_EQ(watched.changes(), (Lines{"gone 2 Two", "changed 3 Drei", "appeared 4 Four"}));
  EXPECT_EQ(watched.directory.services()[0]->revision, 1u);
  EXPECT_EQ(watched.directory.services()[1]->revision, 2u);
  // A service of which a map is left stays, without a name.
  watched.push(pat_of({{4, 0x400}}), kAssociationPid).changes();
  watched.push(sdt_of({{1, "One"}}, 2), kDescriptionPid);
  EXPECT_EQ(watched.changes(), (Lines{"gone 3 Drei", "changed 4 "}));
  watched.tables.advance(0);
  watched.tables.advance(100);
  EXPECT_EQ(watched.changes(), (Lines{"gone 4 ", "gone 1 One"}));
  EXPECT_TRUE(watched.directory.services().empty());
}

TEST(ServiceDirectory, KeepsServicesOfOtherStreamsApart) {
  Watched watched;
  watched.push(sdt_of({{1, "Other"}}, 0, 0x46, 0x452), kDescriptionPid);
  watched.push(sdt_of({{1, "Third"}}, 0, 0x46, 0x453), kDescriptionPid);
  watched.push(sdt_of({{1, "Actual"}}), kDescriptionPid).push(pmt_of(1, {{2, 0x101}}), 0x100);
  EXPECT_EQ(listed(watched.directory), (Lines{"1 Actual 257", "1 Other", "1 Third"}));
  EXPECT_FALSE(watched.directory.services()[1]->is_actual);
  EXPECT_EQ(watched.directory.services()[1]->id(), (ServiceId{0x233A, 0x452, 1}));
}

TEST(ServiceDirectory, PassesOverWhatIsNotThereOrElsewhere) {
  Watched watched;
  Bytes next = sdt_of({{1, "Next"}});
  next[5] &= 0xFE;
  repair_crc(next);
  watched.push(next, kDescriptionPid).push(sdt_of({{1, "Elsewhere"}}), 0x12);
  watched.push(pat_of({{1, 0x100}}), 0x01).push(vct_of({{"Private", 1, 1, 1}}), 0x500);
  watched.push(long_section(0x4A, {0xF0, 0x00, 0xF0, 0x00}), kDescriptionPid);
  watched.push(long_section(0x01, ca_descriptor(0x0B00, 0x500)), 0x11);
  EXPECT_TRUE(watched.directory.services().empty());
  EXPECT_TRUE(watched.directory.emms().empty());
}

TEST(ServiceDirectory, HasTheEmmsOfTheTableThatIsThere) {
  Watched watched;
  watched.push(long_section(0x01, joined({ca_descriptor(0x0B00, 0x500), descriptor(0x90, {1})})), 0x01);
  EXPECT_EQ(watched.directory.emms(), (std::vector<CaStream>{{0x0B00, 0x500}}));
  watched.push(long_section(0x01, ca_descriptor(0x0500, 0x501), {.version = 4}), 0x01);
  EXPECT_EQ(watched.directory.emms(), (std::vector<CaStream>{{0x0500, 0x501}}));
  const TableId other{.pid = 0x01, .table_id = 0x01, .extension = 7};
  watched.directory.push({TableEvent::Kind::gone, other, 0, 0, {}});
  EXPECT_EQ(watched.directory.emms().size(), 1u);
  const TableId its{.pid = 0x01, .table_id = 0x01, .extension = 0x1234};
  watched.directory.push({TableEvent::Kind::gone, its, 0, 0, {}});
  EXPECT_TRUE(watched.directory.emms().empty());
}

TEST(ServiceDirectory, ListsVirtualChannels) {
  const Bytes location = descriptor(0xA1, joined({bits({{3, 7, "reserved"},
                                                        {13, 0x31, "PCR_PID"},
                                                        {8, 1, "number_elements"},
                                                        {8, 0x81, "stream_type"},
                                                        {3, 7, "reserved"},
                                                        {13, 0x34, "elementary_PID"}}),
                                                  text("eng")}));
  Watched watched;
  watched.push(pat_of({{3, 0x30}}), kAssociationPid).changes();
  watched.push(vct_of({{"NEWS", 1, 3, 11, 0x7DB, location}, {"NEWS2", 2, 3, 12}, {"AWAY", 3, 1, 13, 0x7DC}}),
               kPsipPid);
  EXPECT_EQ(watched.changes(), (Lines{"changed 3 NEWS", "appeared 3 NEWS2", "appeared 1 AWAY"}));
  const Service& news = *watched.directory.services()[0];
  EXPECT_EQ(news.major_channel_number, 13);
  EXPECT_EQ(news.minor_channel_number, 1);
  EXPECT_EQ(news.hidden, 1);
  EXPECT_EQ(news.id(), (ServiceId{-1, -1, 11}));
  EXPECT_STREQ(news.service_type_text, "ATSC_digital_television");
  EXPECT_EQ(news.pcr_pid, 0x31);
  ASSERT_EQ(news.streams.size(), 1u);
  EXPECT_EQ(news.streams[0].languages, Lines{"eng"});
  EXPECT_STREQ(news.streams[0].content, "AC-3 audio");
  EXPECT_FALSE(watched.directory.services()[2]->is_actual);
  // The map says more than the location; all channels of the program have its streams.
  watched.push(pmt_of(3, {{0x81, 0x34}, {2, 0x31}}), 0x30);
  EXPECT_EQ(listed(watched.directory), (Lines{"3 NEWS 52 49", "3 NEWS2 52 49", "1 AWAY"}));
  EXPECT_STREQ(watched.directory.services()[1]->streams[0].stream_type_text, "AC-3 audio");
  EXPECT_EQ(watched.changes(), (Lines{"changed 3 NEWS", "changed 3 NEWS2"}));
  watched.push(vct_of({{"NEWS", 1, 3, 11}}, 1), kPsipPid);
  EXPECT_EQ(listed(watched.directory), Lines{"3 NEWS 52 49"});
}

TEST(ServiceDirectory, ListsChannelsOfCable) {
  Watched watched;
  watched.push(vct_of({{"NEWS", 1, 3, 11}}, 0, 0xC9), kPsipPid);
  EXPECT_EQ(watched.changes(), Lines{"appeared 3 NEWS"});
  EXPECT_EQ(watched.only().minor_channel_number, 1);
}

TEST(ServiceDirectory, LosesWhatIsRefusedAlone) {
  Watched watched;
  // The second section ends within a service.
  Bytes first = sdt_of({{1, "One"}});
  Bytes second = long_section(0x42, {0x23, 0x3A, 0xFF, 0x00, 0x02, 0xFF});
  for (Bytes* section : {&first, &second}) {
    (*section)[3] = 0x04, (*section)[4] = 0x51, (*section)[5] = 0xC1;
    (*section)[7] = 1;
  }
  second[6] = 1;
  repair_crc(first);
  repair_crc(second);
  watched.push(second, kDescriptionPid).push(first, kDescriptionPid);
  EXPECT_EQ(listed(watched.directory), Lines{"1 One"});
  // A descriptor that is refused costs no service.
  watched.push(sdt_of({{1, "One", descriptor(0x4B, {1, 2})}}, 1), kDescriptionPid);
  EXPECT_EQ(listed(watched.directory), Lines{"1 One"});
}

TEST(ServiceDirectory, IsAsItIsToBeAfterASinkThatThrows) {
  Watched watched;
  watched.then = [](const ServiceEvent&) { throw error("the sink's own"); };
  EXPECT_THROW(watched.push(sdt_of({{1, "One"}, {2, "Two"}}), kDescriptionPid), error);
  EXPECT_EQ(listed(watched.directory), (Lines{"1 One", "2 Two"}));
  watched.then = [](const ServiceEvent&) {};
  watched.changes();
  watched.push(sdt_of({{1, "One"}}, 1), kDescriptionPid);
  EXPECT_EQ(watched.changes(), Lines{"gone 2 Two"});
}

TEST(ServiceDirectory, TakesInSoManyTablesAndChannels) {
  Watched watched;
  for (int pid = 0x100; pid < 0x140; ++pid) watched.push(pmt_of(1, {{2, pid}}), pid);
  EXPECT_EQ(listed(watched.directory), Lines{"1  271"});  // 0x10F, the sixteenth
  std::vector<Channel> channels;
  for (int i = 0; i < 30; ++i) channels.push_back({"C", i, 1, i});
  watched.push(vct_of(channels), kPsipPid);
  EXPECT_EQ(watched.directory.services().front()->name, "");
  Watched others;
  others.push(vct_of(channels), kPsipPid);
  EXPECT_EQ(others.directory.services().size(), 16u);
}

TEST(ServiceDirectory, ListsTheServicesOfRecordedStreams) {
  if (!has_recorded_streams()) GTEST_SKIP() << "no recorded streams";
  EXPECT_EQ(listed("dvb-eit-schedule.ts"),
            (Lines{"1537 TF1 120 130 131 132 150 151", "1542 TMC 620 630 631 632 650 651",
                   "1544 TFX 520 530 531 532 550 551", "1545 LCP 720 730 750", "1546 LCI 220 230 250"}));
  EXPECT_EQ(listed("dvb-sat-bat.ts").size(), 11u);
  EXPECT_EQ(listed("dvbt-ait.ts").size(), 20u);
  EXPECT_EQ(listed("atsc-psip.ts"), (Lines{"3 WNET-HD 49 52 53 54", "4 KIDS 65 68 69 70", "5 V-Me 81 84"}));
  EXPECT_EQ(listed("atsc-sections.bin"),
            (Lines{"3 S06 SM2 49 52 53", "4 S07 SM2 65 68 69", "5 S08 SM2 81 84 85"}));
}
