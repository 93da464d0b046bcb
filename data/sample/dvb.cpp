#include "data/sample/dvb_guide.h"
#include "data/sample/media.h"
#include "data/sample/samples.h"
#include "data/sample/wire.h"

#include <algorithm>
#include <random>

namespace quillon::sample {

using test::bits;
using test::descriptor;
using test::joined;
using test::long_section;
using test::short_section;
using test::text;

namespace {

constexpr Ticks kTicksAPacket = 48'000;  // 846 kbit/s
constexpr Ticks kLength = ms(11'200);
constexpr Ticks kMapChange = 6 * kSecond;

constexpr uint16_t kTransportStream = 0x0451;
constexpr uint16_t kOtherTransportStream = 0x0452;
constexpr uint16_t kNetwork = 0x233A;
constexpr uint16_t kBouquet = 0x4001;
constexpr uint16_t kDay = 61366;  // MJD of 2026-11-22
constexpr int kFirstSecond = (12 * 60 + 29) * 60 + 55;

// Registered numbers of conditional access systems, and where their messages are.
struct CaSystem {
  uint16_t id;
  uint16_t emm_pid;
};
constexpr CaSystem kCaSystems[] = {{0x0B00, 0x0500}, {0x0500, 0x0501}};

struct Component {
  ProgramStream stream;
  const Coding* coding = nullptr;  // none: it carries sections
  int packets = 1;                 // of a unit
  Ticks period = ms(160);
  Ticks begin = 0;
};

struct Service {
  const Guide& guide;
  uint16_t id;
  uint16_t map_pid;
  uint8_t service_type;
  uint16_t channel_number;
  // The first has the clock.
  std::vector<Component> components;
  int picture_weight = 0;               // 0 of radio
  std::vector<int> damaged = {};        // pictures
  std::vector<uint16_t> ecm_pids = {};  // one a system, if it is scrambled

  bool is_scrambled() const { return !ecm_pids.empty(); }
  uint16_t clock_pid() const { return components[0].stream.pid; }
};

struct OtherService {
  const Guide& guide;
  uint16_t id;
  uint8_t service_type;
  Bytes provider;
  Bytes name;
};

// Stream types of ISO/IEC 13818-1.
constexpr uint8_t kMpeg2Video = 0x02;
constexpr uint8_t kMpegAudio = 0x04;
constexpr uint8_t kPrivateSections = 0x05;
constexpr uint8_t kPrivateData = 0x06;
constexpr uint8_t kAac = 0x0F;
constexpr uint8_t kH264 = 0x1B;
constexpr uint8_t kHevc = 0x24;

Bytes tag(uint8_t component_tag) {
  return descriptor(0x52, {component_tag});
}

Component video(uint8_t type, uint16_t pid, const Coding& coding, const Bytes& descriptors = {}) {
  return {{type, pid, joined({tag(0x01), descriptors})}, &coding};
}

Component audio(uint8_t type, uint16_t pid, const Coding& coding, const char* code, const Bytes& more = {}) {
  return {{type, pid, joined({language(code), tag(static_cast<uint8_t>(pid)), more})}, &coding};
}

Bytes ac3() {
  return descriptor(
      0x6A,
      bits({{1, 1, "component_type_flag"}, {7, 0, "other flags, reserved"}, {8, 0x42, "component_type"}}));
}

Bytes aac() {
  return descriptor(0x7C, {0x51});  // profile_and_level: AAC level 2
}

Bytes avc() {
  return descriptor(0x28, bits({{8, 100, "profile_idc"},
                                {8, 0, "constraint flags"},
                                {8, 40, "level_idc"},
                                {1, 0, "AVC_still_present"},
                                {1, 0, "AVC_24_hour_picture_flag"},
                                {1, 1, "Frame_Packing_SEI_not_present_flag"},
                                {5, 0x1F, "reserved"}}));
}

Bytes mpeg2() {
  return descriptor(0x02, bits({{1, 0, "multiple_frame_rate_flag"},
                                {4, 3, "frame_rate_code"},
                                {1, 0, "MPEG_1_only_flag"},
                                {1, 0, "constrained_parameter_flag"},
                                {1, 0, "still_picture_flag"},
                                {8, 0x48, "profile_and_level_indication"},
                                {2, 1, "chroma_format"},
                                {1, 0, "frame_rate_extension_flag"},
                                {5, 0x1F, "reserved"}}));
}

Component subtitled(uint16_t pid, const char* code) {
  const Bytes subtitling = descriptor(0x59, joined({text(code), bits({{8, 0x14, "subtitling_type"},
                                                                      {16, 1, "composition_page_id"},
                                                                      {16, 1, "ancillary_page_id"}})}));
  return {{kPrivateData, pid, joined({subtitling, tag(0x40)})}, &subtitles, 1, ms(900)};
}

Component with_teletext(uint16_t pid, const char* code) {
  const auto page = [&](uint64_t type, uint64_t magazine, uint64_t number) {
    return joined({text(code), bits({{5, type, "teletext_type"},
                                     {3, magazine, "teletext_magazine_number"},
                                     {8, number, "teletext_page_number"}})});
  };
  const Bytes pages = descriptor(0x56, joined({page(1, 1, 0x00), page(2, 1, 0x50)}));
  return {{kPrivateData, pid, joined({pages, tag(0x30)})}, &teletext, 1, ms(240)};
}

Component applications(uint16_t pid) {
  const Bytes signalling = descriptor(0x6F, bits({{1, 1, "reserved"},
                                                  {15, 0x0010, "application_type"},
                                                  {3, 7, "reserved"},
                                                  {5, 3, "AIT_version_number"}}));
  return {{kPrivateSections, pid, signalling}};
}

Component notification(uint16_t pid) {
  const Bytes id = descriptor(0x66, bits({{16, 0x000B, "data_broadcast_id"},
                                          {8, 5, "platform_id_data_length"},
                                          {24, 1, "platform_id"},
                                          {8, 1, "action_type"},
                                          {2, 3, "reserved"},
                                          {1, 1, "INT_versioning_flag"},
                                          {5, 3, "INT_version"}}));
  return {{kPrivateSections, pid, id}};
}

Component radio(uint8_t type, uint16_t pid, const Coding& coding, const char* code, int packets) {
  Component out = audio(type, pid, coding, code, type == kAac ? aac() : Bytes());
  out.packets = packets;
  out.period = ms(60);
  return out;
}

// A second sound that begins in the middle of the recording.
Component described(uint16_t pid, const char* code) {
  constexpr uint8_t kForVisuallyImpaired = 3;
  return {{kMpegAudio, pid, joined({language(code, kForVisuallyImpaired), tag(0x07)})},
          &mpeg_audio,
          1,
          ms(160),
          kMapChange};
}

std::vector<Service> made_services() {
  constexpr uint8_t kTelevision = 0x01;
  constexpr uint8_t kRadio = 0x02;
  constexpr uint8_t kRadioAac = 0x0A;
  constexpr uint8_t kHdTelevision = 0x19;
  constexpr uint8_t kHevcTelevision = 0x1F;
  return {
      {quill_one,
       0x1001,
       0x0100,
       kHdTelevision,
       1,
       {video(kH264, 0x0101, h264_video, avc()), audio(kAac, 0x0102, aac_audio, "eng", aac()),
        audio(kPrivateData, 0x0103, ac3_audio, "eng", ac3()), subtitled(0x0104, "eng"), applications(0x0105)},
       5},
      {cafe_radio, 0x1002, 0x0200, kRadioAac, 701, {radio(kAac, 0x0201, aac_audio, "fra", 1)}},
      {suedwind,
       0x1003,
       0x0300,
       kTelevision,
       3,
       {video(kMpeg2Video, 0x0301, mpeg2_video, mpeg2()), audio(kMpegAudio, 0x0302, mpeg_audio, "deu"),
        with_teletext(0x0303, "deu"), described(0x0304, "deu")},
       4,
       {70, 73, 205}},
      {aegean,
       0x1004,
       0x0400,
       kHdTelevision,
       4,
       {video(kH264, 0x0401, h264_video, avc()), audio(kMpegAudio, 0x0402, mpeg_audio, "ell"),
        audio(kMpegAudio, 0x0403, mpeg_audio, "eng")},
       5,
       {},
       {0x0410, 0x0411}},
      {volna,
       0x1005,
       0x0600,
       kHdTelevision,
       5,
       {video(kH264, 0x0601, h264_video, avc()), audio(kPrivateData, 0x0602, ac3_audio, "rus", ac3()),
        audio(kMpegAudio, 0x0603, mpeg_audio, "bul"), subtitled(0x0604, "bul")},
       4,
       {},
       {0x0610, 0x0611}},
      {oasis,
       0x1006,
       0x0700,
       kTelevision,
       6,
       {video(kMpeg2Video, 0x0701, mpeg2_video, mpeg2()), audio(kMpegAudio, 0x0702, mpeg_audio, "ara"),
        audio(kMpegAudio, 0x0703, mpeg_audio, "fra")},
       3},
      {galilee, 0x1007, 0x0800, kRadio, 702, {radio(kMpegAudio, 0x0801, mpeg_audio, "heb", 2)}},
      {star_river,
       0x1008,
       0x0900,
       kHevcTelevision,
       8,
       {video(kHevc, 0x0901, hevc_video), audio(kAac, 0x0902, aac_audio, "zho", aac()),
        audio(kAac, 0x0903, aac_audio, "yue", aac()), subtitled(0x0904, "zho"), notification(0x0905)},
       6},
  };
}

std::vector<OtherService> made_other_services() {
  // In KS X 1001, by its selection.
  const Bytes provider = joined({{0x12}, text("\xC7\xD1\xBA\xFB\xB9\xCC\xB5\xF0\xBE\xEE")});
  const Bytes name = joined({{0x12}, text("\xC7\xD1\xBA\xFB TV")});
  return {{hanbit, 0x1101, 0x01, provider, name},
          {azores, 0x1102, 0x02, azores.text(azores.provider), azores.text(azores.name)}};
}

// Tables

Bytes ca_descriptor(uint16_t system, uint16_t pid) {
  return descriptor(0x09, bits({{16, system, "CA_system_ID"}, {3, 7, "reserved"}, {13, pid, "CA_PID"}}));
}

Bytes conditional_access() {
  const auto row = [](const CaSystem& s) { return ca_descriptor(s.id, s.emm_pid); };
  return long_section(0x01, each(kCaSystems, row), {.extension = 0xFFFF});
}

Bytes associations(const std::vector<Service>& services) {
  std::vector<std::pair<uint16_t, uint16_t>> maps = {{0, 0x0010}};
  for (const Service& s : services) maps.emplace_back(s.id, s.map_pid);
  return program_association(kTransportStream, maps);
}

// As it is at a time: components that begin later are not in it, and its version counts the change.
Bytes map_of(const Service& service, Ticks now) {
  Bytes ca;
  for (size_t i = 0; i < service.ecm_pids.size(); ++i)
    append(ca, ca_descriptor(kCaSystems[i].id, service.ecm_pids[i]));
  std::vector<ProgramStream> streams;
  int version = 3;
  for (const Component& c : service.components) {
    if (c.begin <= now) streams.push_back(c.stream);
    if (c.begin > 0 && c.begin <= now) ++version;
  }
  return program_map(service.id, version, service.clock_pid(), ca, streams);
}

Bytes service_descriptor(uint8_t type, const Bytes& provider, const Bytes& name) {
  return descriptor(0x48, joined({{type}, counted(provider), counted(name)}));
}

Bytes described_service(uint16_t id, bool has_schedule, bool is_scrambled, const Bytes& descriptors) {
  return joined({bits({{16, id, "service_id"},
                       {6, 0x3F, "reserved_future_use"},
                       {1, has_schedule, "EIT_schedule_flag"},
                       {1, 1, "EIT_present_following_flag"},
                       {3, 4, "running_status"},
                       {1, is_scrambled, "free_CA_mode"},
                       {12, descriptors.size(), "descriptors_loop_length"}}),
                 descriptors});
}

Bytes service_description(int table_id, uint16_t transport_stream, const Bytes& services) {
  return long_section(
      table_id,
      joined({bits({{16, kNetwork, "original_network_id"}, {8, 0xFF, "reserved_future_use"}}), services}),
      {.extension = transport_stream});
}

Bytes actual_services(const std::vector<Service>& services) {
  const auto row = [](const Service& s) {
    Bytes all =
        service_descriptor(s.service_type, s.guide.text(s.guide.provider), s.guide.text(s.guide.name));
    if (s.is_scrambled())
      append(all, descriptor(0x53, each(kCaSystems, [](const CaSystem& ca) {
                               return bits({{16, ca.id, "CA_system_id"}});
                             })));
    return described_service(s.id, true, s.is_scrambled(), all);
  };
  return service_description(0x42, kTransportStream, each(services, row));
}

Bytes services_of_the_other(const std::vector<OtherService>& services) {
  const auto row = [](const OtherService& s) {
    return described_service(s.id, false, false, service_descriptor(s.service_type, s.provider, s.name));
  };
  return service_description(0x46, kOtherTransportStream, each(services, row));
}

template <class Services>
Bytes service_list(const Services& services) {
  return descriptor(0x41, each(services, [](const auto& s) {
                      return bits({{16, s.id, "service_id"}, {8, s.service_type, "service_type"}});
                    }));
}

Bytes row_of_stream(uint16_t transport_stream, const Bytes& descriptors) {
  return joined({bits({{16, transport_stream, "transport_stream_id"}, {16, kNetwork, "original_network_id"}}),
                 loop(descriptors)});
}

Bytes terrestrial(uint64_t megahertz) {
  return descriptor(0x5A, bits({{32, megahertz * 100'000, "centre_frequency"},
                                {3, 0, "bandwidth: 8 MHz"},
                                {1, 1, "priority"},
                                {1, 1, "Time_Slicing_indicator"},
                                {1, 1, "MPE_FEC_indicator"},
                                {2, 3, "reserved_future_use"},
                                {2, 2, "constellation: 64-QAM"},
                                {3, 0, "hierarchy_information"},
                                {3, 1, "code_rate_HP_stream: 2/3"},
                                {3, 0, "code_rate_LP_stream"},
                                {2, 0, "guard_interval: 1/32"},
                                {2, 1, "transmission_mode: 8k"},
                                {1, 0, "other_frequency_flag"},
                                {32, 0xFFFFFFFF, "reserved_future_use"}}));
}

Bytes network(const std::vector<Service>& services, const std::vector<OtherService>& others) {
  // What the tags above 0x7F mean is up to who is named in front of them.
  const Bytes numbers = joined({descriptor(0x5F, bits({{32, 0x00000028, "private_data_specifier"}})),
                                descriptor(0x83, each(services, [](const Service& s) {
                                             return bits({{16, s.id, "service_id"},
                                                          {1, 1, "visible_service_flag"},
                                                          {5, 0x1F, "reserved"},
                                                          {10, s.channel_number, "logical_channel_number"}});
                                           }))});
  const Bytes name = descriptor(0x40, quill_one.text("Feather Network"));
  const Bytes rows =
      joined({row_of_stream(kTransportStream, joined({terrestrial(498), service_list(services), numbers})),
              row_of_stream(kOtherTransportStream, joined({terrestrial(522), service_list(others)}))});
  return long_section(0x40, joined({loop(name), loop(rows)}), {.extension = kNetwork});
}

Bytes bouquet(const std::vector<Service>& services, const std::vector<OtherService>& others) {
  const Bytes about = joined(
      {descriptor(0x47, quill_one.text("Feather Family")),
       descriptor(0x49, joined({bits({{1, 1, "country_availability_flag"}, {7, 0x7F, "reserved_future_use"}}),
                                text("GBRFRADEU")}))});
  const Bytes rows = joined({row_of_stream(kTransportStream, service_list(services)),
                             row_of_stream(kOtherTransportStream, service_list(others))});
  return long_section(0x4A, joined({loop(about), loop(rows)}), {.extension = kBouquet});
}

// Times

uint64_t bcd(int number) {
  return static_cast<uint64_t>(number / 10 * 16 + number % 10);
}

Bytes bcd_time(int seconds) {
  return bits({{8, bcd(seconds / 3600), "hours"},
               {8, bcd(seconds / 60 % 60), "minutes"},
               {8, bcd(seconds % 60), "seconds"}});
}

Bytes utc(int second_of_day) {
  return joined({bits({{16, kDay, "MJD"}}), bcd_time(second_of_day)});
}

Bytes time_and_date(int now) {
  return short_section(0x70, utc(now));
}

Bytes time_offset(int now) {
  struct Country {
    const char* code;
    uint64_t hours;
  };
  constexpr Country kCountries[] = {{"GBR", 0x00}, {"FRA", 0x01}, {"DEU", 0x01}, {"GRC", 0x02}};
  constexpr uint16_t kLastSundayOfMarch = 61492;
  const Bytes offsets = each(kCountries, [](const Country& c) {
    return joined({text(c.code), bits({{6, 0, "country_region_id"},
                                       {1, 1, "reserved"},
                                       {1, 0, "local_time_offset_polarity"},
                                       {16, c.hours << 8, "local_time_offset"},
                                       {16, kLastSundayOfMarch, "time_of_change: MJD"},
                                       {24, 0x010000, "time_of_change: UTC"},
                                       {16, (c.hours + 1) << 8, "next_time_offset"}})});
  });
  Bytes out = short_section(0x73, joined({utc(now), loop(descriptor(0x58, offsets)), Bytes(4)}));
  test::repair_crc(out);
  return out;
}

// Events

struct Event {
  const Guide& guide;
  const Programme& programme;
  uint16_t id;
  int minute;  // of the day
};

std::vector<Event> events_of(const Guide& guide, uint16_t service) {
  std::vector<Event> out;
  int minute = 0;
  for (const Programme& p : guide.day) {
    out.push_back({guide, p, static_cast<uint16_t>((service & 0xFFu) << 8 | out.size()), minute});
    minute += p.minutes;
  }
  return out;
}

// What is on at a second of the day.
size_t present(const std::vector<Event>& events, int second) {
  const auto later = std::ranges::find_if(events, [&](const Event& e) { return e.minute * 60 > second; });
  return static_cast<size_t>(later - events.begin()) - 1;
}

// The descriptors that a long text is spread over; each selects the table of its piece.
Bytes extended_event(const Event& event) {
  constexpr size_t kMost = 180;
  const Guide& guide = event.guide;
  const Programme& p = event.programme;
  const Bytes selection = guide.text("");
  Bytes rest = guide.text(p.long_text);
  rest.erase(rest.begin(), rest.begin() + static_cast<ptrdiff_t>(selection.size()));
  Bytes item = *p.role ? joined({counted(guide.text(p.role)), counted(guide.text(p.person))}) : Bytes();
  const size_t last = (rest.size() - 1) / kMost;
  Bytes out;
  for (size_t number = 0; number <= last; ++number) {
    const auto end = rest.begin() + static_cast<ptrdiff_t>(std::min(kMost, rest.size()));
    const Bytes piece = joined({selection, Bytes(rest.begin(), end)});
    rest.erase(rest.begin(), end);
    append(out,
           descriptor(0x4E,
                      joined({bits({{4, number, "descriptor_number"}, {4, last, "last_descriptor_number"}}),
                              text(guide.language), counted(item), counted(piece)})));
    item.clear();
  }
  return out;
}

enum RunningStatus : uint8_t { undefined = 0, not_running = 1, running = 4 };

Bytes event_row(const Event& event, RunningStatus status, bool is_scrambled, const Bytes& components = {}) {
  const Guide& guide = event.guide;
  const Programme& p = event.programme;
  Bytes all = descriptor(
      0x4D, joined({text(guide.language), counted(guide.text(p.title)), counted(guide.text(p.text))}));
  if (*p.long_text) append(all, extended_event(event));
  append(all, components);
  append(all, descriptor(0x54, {p.genre, 0x00}));
  // Ages count from three years on.
  if (p.from_age)
    append(all, descriptor(0x55, joined({text(guide.country), {static_cast<uint8_t>(p.from_age - 3)}})));
  return joined({bits({{16, event.id, "event_id"}}), utc(event.minute * 60), bcd_time(p.minutes * 60),
                 bits({{3, status, "running_status"},
                       {1, is_scrambled, "free_CA_mode"},
                       {12, all.size(), "descriptors_loop_length"}}),
                 all});
}

struct EventSection {
  int table_id;
  uint16_t transport_stream;
  uint16_t service;
  uint8_t segment_last;
  test::Header header;
};

Bytes event_section(EventSection s, const Bytes& events) {
  s.header.extension = s.service;
  return long_section(s.table_id,
                      joined({bits({{16, s.transport_stream, "transport_stream_id"},
                                    {16, kNetwork, "original_network_id"},
                                    {8, s.segment_last, "segment_last_section_number"},
                                    {8, static_cast<uint64_t>(s.table_id), "last_table_id"}}),
                              events}),
                      s.header);
}

// What the sound and picture of an event are.
Bytes components_of(const Service& service) {
  const auto component = [&](uint64_t content, uint64_t type, uint64_t component_tag) {
    return descriptor(0x50, joined({bits({{4, 0xF, "stream_content_ext"},
                                          {4, content, "stream_content"},
                                          {8, type, "component_type"},
                                          {8, component_tag, "component_tag"}}),
                                    text(service.guide.language)}));
  };
  switch (service.components[0].stream.stream_type) {
    case kMpeg2Video:
      return joined({component(0x1, 0x03, 0x01), component(0x2, 0x03, 0x02)});
    case kH264:
      return joined({component(0x5, 0x0B, 0x01), component(0x2, 0x03, 0x02)});
    default:
      return {};
  }
}

// Present and following, in a version of its own for each event.
std::vector<Bytes> present_following(int table_id, uint16_t transport_stream, uint16_t service,
                                     const std::vector<Event>& events, int second, bool is_scrambled,
                                     const Bytes& components) {
  const size_t now = present(events, second);
  std::vector<Bytes> out;
  for (const uint8_t n : {uint8_t{0}, uint8_t{1}}) {
    const bool is_there = now + n < events.size();
    out.push_back(event_section(
        {table_id,
         transport_stream,
         service,
         1,
         {.version = static_cast<int>(now % 32), .section_number = n, .last_section_number = 1}},
        is_there ? event_row(events[now + n], n == 0 ? running : not_running, is_scrambled, components)
                 : Bytes()));
  }
  return out;
}

// A segment of the schedule: three hours, numbered from midnight on, in a section of its own.
constexpr int kSegments = 8;
Bytes segment_of_schedule(const Service& service, const std::vector<Event>& events, int segment) {
  constexpr int kMinutes = 3 * 60;
  Bytes rows;
  for (const Event& e : events)
    if (e.minute / kMinutes == segment) append(rows, event_row(e, undefined, service.is_scrambled()));
  return event_section({0x50,
                        kTransportStream,
                        service.id,
                        static_cast<uint8_t>(8 * segment),
                        {.section_number = 8 * segment, .last_section_number = 8 * (kSegments - 1)}},
                       rows);
}

Bytes running_status(const Event& event, uint16_t service) {
  return short_section(0x71, bits({{16, kTransportStream, "transport_stream_id"},
                                   {16, kNetwork, "original_network_id"},
                                   {16, service, "service_id"},
                                   {16, event.id, "event_id"},
                                   {5, 0x1F, "reserved_future_use"},
                                   {3, running, "running_status"}}));
}

// Applications and IP/MAC notification

Bytes application_information() {
  const Bytes application = descriptor(0x00, bits({{8, 5, "application_profiles_length"},
                                                   {16, 0x0000, "application_profile"},
                                                   {8, 1, "version.major"},
                                                   {8, 4, "version.minor"},
                                                   {8, 1, "version.micro"},
                                                   {1, 1, "service_bound_flag"},
                                                   {2, 3, "visibility"},
                                                   {5, 0x1F, "reserved_future_use"},
                                                   {8, 1, "application_priority"},
                                                   {8, 1, "transport_protocol_label"}}));
  const Bytes name = descriptor(0x01, joined({text("eng"), counted(text("Quill Red Button"))}));
  const Bytes transport =
      descriptor(0x02, joined({bits({{16, 3, "protocol_id: HTTP"}, {8, 1, "transport_protocol_label"}}),
                               counted(text("https://hbbtv.quill.example/")),
                               {0 /* URL_extension_count */}}));
  const Bytes location = descriptor(0x15, text("start/index.html?lang=en"));
  const Bytes all = joined({application, name, transport, location});
  constexpr uint64_t kAutostart = 1;
  const Bytes row = joined({bits({{32, 0x0000002A, "organisation_id"},
                                  {16, 1, "application_id"},
                                  {8, kAutostart, "application_control_code"}}),
                            loop(all)});
  return long_section(0x74, joined({loop({}), loop(row)}), {.extension = 0x0010});
}

Bytes ip_mac_notification(uint16_t service_of_data) {
  const Bytes platform =
      joined({descriptor(0x0C, text("engFeather Data")), descriptor(0x0D, text("engFeather"))});
  const Bytes target =
      descriptor(0x0F, bits({{32, 0xEF000100, "IPv4_addr: 239.0.1.0"}, {8, 24, "IPv4_slash_mask"}}));
  const Bytes place = descriptor(0x13, bits({{16, kNetwork, "network_id"},
                                             {16, kNetwork, "original_network_id"},
                                             {16, kOtherTransportStream, "transport_stream_id"},
                                             {16, service_of_data, "service_id"},
                                             {8, 0x20, "component_tag"}}));
  return long_section(0x4C,
                      joined({bits({{24, 1, "platform_id"}, {8, 0, "processing_order"}}), loop(platform),
                              loop(target), loop(place)}),
                      {.extension = 0x0101});  // action_type, platform_id_hash
}

// The multiplex

// A message of a conditional access system: its bytes mean something to that alone.
Bytes ca_message(int table_id, uint32_t seed) {
  std::mt19937 random(seed);
  Bytes body(64);
  for (uint8_t& byte : body) byte = static_cast<uint8_t>(random());
  return short_section(table_id, body);
}

int second_of_day(Ticks time) {
  return kFirstSecond + static_cast<int>(time / kSecond);
}

void add_to(std::vector<TimedSection>& sections, const std::vector<TimedSection>& more) {
  sections.insert(sections.end(), more.begin(), more.end());
}

void add_events(Multiplex& multiplex, const std::vector<Service>& services,
                const std::vector<OtherService>& others) {
  std::vector<TimedSection> sections;
  std::vector<TimedSection> changes;
  Ticks begin = ms(120);
  for (const Service& s : services) {
    const std::vector<Event> events = events_of(s.guide, s.id);
    const auto now = [&](Ticks due) {
      return present_following(0x4E, kTransportStream, s.id, events, second_of_day(due), s.is_scrambled(),
                               components_of(s));
    };
    add_to(sections, multiplex.repeated(begin, ms(1700), now));
    const size_t next = present(events, kFirstSecond) + 1;
    const Ticks change = (events[next].minute * 60 - kFirstSecond) * kSecond;
    if (change < multiplex.length()) changes.push_back({change, running_status(events[next], s.id)});
    begin += ms(200);
  }
  for (const OtherService& s : others) {
    const std::vector<Event> events = events_of(s.guide, s.id);
    add_to(sections, multiplex.repeated(begin, ms(8000), [&](Ticks due) {
      return present_following(0x4F, kOtherTransportStream, s.id, events, second_of_day(due), false, {});
    }));
    begin += ms(100);
  }
  // The day once, one segment of all services after the other.
  Ticks due = ms(400);
  for (int segment = 0; segment < kSegments; ++segment)
    for (const Service& s : services) {
      sections.push_back({due, segment_of_schedule(s, events_of(s.guide, s.id), segment)});
      due += ms(160);
    }
  multiplex.add_sections(0x12, sections);
  multiplex.add_sections(0x13, changes);
}

void add_tables(Multiplex& multiplex, const std::vector<Service>& services,
                const std::vector<OtherService>& others) {
  multiplex.repeat(0x00, ms(0), ms(90), [&](Ticks) { return associations(services); });
  multiplex.repeat(0x01, ms(20), ms(450), [&](Ticks) { return conditional_access(); });
  Ticks begin = ms(10);
  for (const Service& s : services) {
    multiplex.repeat(s.map_pid, begin, ms(90), [&](Ticks due) { return map_of(s, due); });
    begin += ms(10);
  }
  multiplex.repeat(0x10, ms(150), ms(5000), [&](Ticks) { return network(services, others); });
  std::vector<TimedSection> descriptions = multiplex.repeated(
      ms(60), ms(2400), [&](Ticks) { return std::vector<Bytes>{actual_services(services)}; });
  add_to(descriptions, multiplex.repeated(ms(700), ms(5000), [&](Ticks) {
    return std::vector<Bytes>{services_of_the_other(others)};
  }));
  add_to(descriptions, multiplex.repeated(ms(1300), ms(4000), [&, count = 0](Ticks) mutable {
    Bytes section = bouquet(services, others);
    if (count++ == 1) section.back() ^= 0x01;
    return std::vector<Bytes>{section};
  }));
  multiplex.add_sections(0x11, descriptions);
  multiplex.add_sections(0x14, multiplex.repeated(ms(0), ms(5000), [](Ticks due) {
    const int now = second_of_day(due);
    return std::vector<Bytes>{time_and_date(now), time_offset(now)};
  }));
  add_events(multiplex, services, others);
}

void add_service(Multiplex& multiplex, const Service& service, int place) {
  const Ticks phase = place * ms(5);
  for (const Component& c : service.components) {
    if (!c.coding) continue;
    const uint16_t pid = c.stream.pid;
    const Media media = {pid, *c.coding, pid == service.clock_pid(), service.is_scrambled()};
    if (service.picture_weight > 0 && media.carries_clock)
      add_pictures(multiplex, media, {phase, kSecond / 25, service.picture_weight, place, service.damaged});
    else
      add_units(multiplex, media, {c.begin + phase + ms(pid % 16 * 11), c.period, c.packets});
  }
  for (const uint16_t pid : service.ecm_pids)
    multiplex.repeat(pid, phase, ms(400), [&](Ticks due) {
      // Their table id alternates with the key that is in use.
      const auto period = static_cast<uint32_t>(due / kCryptoPeriod);
      return ca_message(static_cast<int>(0x80 + period % 2), period << 16 | pid);
    });
}

}  // namespace

Bytes dvb_sample() {
  const std::vector<Service> services = made_services();
  const std::vector<OtherService> others = made_other_services();
  Multiplex multiplex(kTicksAPacket, kLength);
  add_tables(multiplex, services, others);
  int place = 0;
  for (const Service& s : services) add_service(multiplex, s, place++);
  for (const CaSystem& ca : kCaSystems)
    multiplex.repeat(ca.emm_pid, ms(90), ms(700), [&](Ticks due) {
      return ca_message(0x82, static_cast<uint32_t>(due / ms(1)) + ca.emm_pid);
    });
  multiplex.repeat(0x0105, ms(250), ms(900), [](Ticks) { return application_information(); });
  multiplex.repeat(0x0905, ms(350), ms(5000), [&](Ticks) { return ip_mac_notification(others[0].id); });
  return multiplex.stream();
}

}  // namespace quillon::sample
