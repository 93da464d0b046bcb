#include "data/sample/atsc_guide.h"
#include "data/sample/media.h"
#include "data/sample/samples.h"
#include "data/sample/wire.h"
#include "tests/support/huffman_encoder.h"

#include <chrono>

#include <quillon/platform/utf8.h>

namespace quillon::sample {

using test::bits;
using test::descriptor;
using test::joined;
using test::long_section;
using test::text;

using namespace std::chrono_literals;

namespace {

constexpr Ticks kTicksAPacket = 72'000;  // 564 kbit/s
constexpr Ticks kLength = 5 * kSecond;

constexpr uint16_t kTransportStream = 0x0A41;
constexpr uint16_t kMajor = 12;
constexpr uint16_t kBasePid = 0x1FFB;
constexpr uint16_t kChannelTextPid = 0x1E80;
constexpr uint16_t kFirstEventPid = 0x1D00;  // of EIT-0; EIT-1 is on the next, and so on
constexpr uint16_t kFirstTextPid = 0x1E00;   // of the ETTs of EIT-0
constexpr uint8_t kRatingRegion = 1;

constexpr int kWindows = 4;  // EIT-0 to EIT-3, of three hours each
constexpr int kWindowMinutes = 3 * 60;

constexpr auto kNoon = std::chrono::sys_days(2026y / 11 / 22) + 12h;
constexpr auto kLeapSeconds = 18s;

constexpr uint8_t kMpeg2Video = 0x02;
constexpr uint8_t kAc3 = 0x81;

// Seconds since the 6th of January 1980, leap seconds counted.
uint64_t gps(std::chrono::sys_seconds utc) {
  return static_cast<uint64_t>((utc - std::chrono::sys_days(1980y / 1 / 6) + kLeapSeconds).count());
}

uint16_t program_of(const Channel& c) {
  return c.minor;
}
uint16_t source_of(const Channel& c) {
  return static_cast<uint16_t>(0x0100 + c.minor);
}
uint16_t map_pid(const Channel& c) {
  return static_cast<uint16_t>(0x20 + 0x10 * c.minor);
}
bool has_video(const Channel& c) {
  return c.service_type == 0x02;
}

std::vector<const char*> languages(const Channel& c) {
  std::vector<const char*> out = {c.language};
  if (*c.other_language) out.push_back(c.other_language);
  return out;
}

// The video, if there is one, and a sound for each language.
std::vector<uint16_t> elementary_pids(const Channel& c) {
  std::vector<uint16_t> out;
  if (has_video(c)) out.push_back(static_cast<uint16_t>(map_pid(c) + 1));
  for (size_t i = 0; i < languages(c).size(); ++i) out.push_back(static_cast<uint16_t>(map_pid(c) + 4 + i));
  return out;
}

// Texts

Bytes latin_1(const char* utf8) {
  Bytes out;
  for (const uint16_t character : platform::to_utf16(utf8)) out.push_back(static_cast<uint8_t>(character));
  return out;
}

struct Translation {
  const char* language;
  const char* utf8;
};

// Multiple string structures, of one segment each: English is compressed, other languages are not.
class Texts {
 public:
  explicit Texts(const std::filesystem::path& codes) : title_(codes, 1), description_(codes, 2) {}

  Bytes title(const std::vector<Translation>& in) const { return multiple(in, 1, title_); }
  Bytes description(const std::vector<Translation>& in) const { return multiple(in, 2, description_); }
  static Bytes plain(const char* language, const char* utf8) {
    return joined({{1}, string(language, 0, latin_1(utf8))});
  }

 private:
  static Bytes string(const char* language, uint64_t compression, const Bytes& bytes) {
    return joined({text(language),
                   bits({{8, 1, "number_segments"},
                         {8, compression, "compression_type"},
                         {8, 0, "mode"},
                         {8, bytes.size(), "number_bytes"}}),
                   bytes});
  }
  static Bytes multiple(const std::vector<Translation>& in, uint64_t compression,
                        const test::HuffmanEncoder& codes) {
    const auto one = [&](const Translation& t) {
      return t.language == std::string_view("eng")
                 ? string(t.language, compression, test::packed_bits(codes.ended(t.utf8)))
                 : string(t.language, 0, latin_1(t.utf8));
    };
    return joined({{static_cast<uint8_t>(in.size())}, each(in, one)});
  }

  test::HuffmanEncoder title_;
  test::HuffmanEncoder description_;
};

// Descriptors

Bytes ac3_audio_descriptor(const char* language) {
  return descriptor(0x81, joined({bits({{3, 0, "sample_rate_code"},
                                        {5, 8, "bsid"},
                                        {6, 0x0A, "bit_rate_code: 192 kbit/s"},
                                        {2, 1, "surround_mode"},
                                        {3, 0, "bsmod"},
                                        {4, 2, "num_channels"},
                                        {1, 1, "full_svc"},
                                        {8, 0xFF, "langcod"},
                                        {3, 0, "mainid"},
                                        {2, 1, "priority"},
                                        {3, 7, "reserved"},
                                        {7, 0, "textlen"},
                                        {1, 1, "text_code"},
                                        {1, 1, "language_flag"},
                                        {1, 0, "language_flag_2"},
                                        {6, 0x3F, "reserved"}}),
                                  text(language)}));
}

Bytes registration(const char* format) {
  return descriptor(0x05, text(format));
}

Bytes captions(const char* language) {
  return descriptor(0x86, joined({bits({{3, 7, "reserved"}, {5, 1, "number_of_services"}}), text(language),
                                  bits({{1, 1, "digital_cc"},
                                        {1, 1, "reserved"},
                                        {6, 1, "caption_service_number"},
                                        {1, 0, "easy_reader"},
                                        {1, 1, "wide_aspect_ratio"},
                                        {14, 0x3FFF, "reserved"}})}));
}

const char* name_of(TvRating rating) {
  constexpr const char* kNames[] = {"", "None", "TV-G", "TV-PG", "TV-14", "TV-MA"};
  return kNames[rating];
}

Bytes content_advisory(TvRating rating) {
  const Bytes description = Texts::plain("eng", name_of(rating));
  return descriptor(0x87, joined({bits({{2, 3, "reserved"},
                                        {6, 1, "rating_region_count"},
                                        {8, kRatingRegion, "rating_region"},
                                        {8, 1, "rated_dimensions"},
                                        {8, 0, "rating_dimension_j"},
                                        {4, 0xF, "reserved"},
                                        {4, rating, "rating_value"}}),
                                  counted(description)}));
}

Bytes genre(Category category) {
  return descriptor(0xAB, bits({{3, 7, "reserved"}, {5, 1, "attribute_count"}, {8, category, "attribute"}}));
}

Bytes service_location(const Channel& c) {
  const std::vector<uint16_t> pids = elementary_pids(c);
  const auto element = [](uint64_t type, uint16_t pid, const char* language) {
    return joined({bits({{8, type, "stream_type"}, {3, 7, "reserved"}, {13, pid, "elementary_PID"}}),
                   *language ? text(language) : Bytes(3)});
  };
  Bytes elements;
  auto pid = pids.begin();
  if (has_video(c)) append(elements, element(kMpeg2Video, *pid++, ""));
  for (const char* const language : languages(c)) append(elements, element(kAc3, *pid++, language));
  return descriptor(
      0xA1, joined({bits({{3, 7, "reserved"}, {13, pids[0], "PCR_PID"}, {8, pids.size(), "number_elements"}}),
                    elements}));
}

// Tables. All of PSIP have a protocol_version of 0, and a private_indicator.

Bytes psip_section(int table_id, uint16_t extension, const Bytes& body) {
  return long_section(table_id, joined({bits({{8, 0, "protocol_version"}}), body}),
                      {.extension = extension, .private_bit = 1});
}

// A loop of descriptors behind a length of ten bits.
Bytes short_loop(const Bytes& descriptors) {
  return joined({bits({{6, 0x3F, "reserved"}, {10, descriptors.size(), "descriptors_length"}}), descriptors});
}

Bytes associations() {
  std::vector<std::pair<uint16_t, uint16_t>> maps;
  for (const Channel& c : atsc_channels) maps.emplace_back(program_of(c), map_pid(c));
  return program_association(kTransportStream, maps);
}

Bytes map_of(const Channel& c) {
  const std::vector<uint16_t> pids = elementary_pids(c);
  std::vector<ProgramStream> streams;
  auto pid = pids.begin();
  if (has_video(c)) streams.push_back({kMpeg2Video, *pid++, captions(c.language)});
  for (const char* const code : languages(c))
    streams.push_back(
        {kAc3, *pid++, joined({registration("AC-3"), ac3_audio_descriptor(code), language(code)})});
  return program_map(program_of(c), 3, pids[0], registration("GA94"), streams);
}

Bytes virtual_channels() {
  const auto row = [](const Channel& c) {
    Bytes name;
    for (const char character : std::string(c.short_name)) append(name, {0, static_cast<uint8_t>(character)});
    name.resize(14);
    const Bytes descriptors =
        joined({service_location(c), descriptor(0xA0, Texts::plain(c.language, c.long_name))});
    return joined({name,
                   bits({{4, 0xF, "reserved"},
                         {10, kMajor, "major_channel_number"},
                         {10, c.minor, "minor_channel_number"},
                         {8, 4, "modulation_mode: 8-VSB"},
                         {32, 0, "carrier_frequency"},
                         {16, kTransportStream, "channel_TSID"},
                         {16, program_of(c), "program_number"},
                         {2, 1, "ETM_location"},
                         {1, 0, "access_controlled"},
                         {1, 0, "hidden"},
                         {2, 3, "reserved"},
                         {1, 0, "hide_guide"},
                         {3, 7, "reserved"},
                         {6, c.service_type, "service_type"},
                         {16, source_of(c), "source_id"}}),
                   short_loop(descriptors)});
  };
  return psip_section(0xC8, kTransportStream,
                      joined({bits({{8, atsc_channels.size(), "num_channels_in_section"}}),
                              each(atsc_channels, row), short_loop({})}));
}

Bytes system_time(std::chrono::sys_seconds now) {
  return psip_section(0xCD, 0,
                      bits({{32, gps(now), "system_time"},
                            {8, static_cast<uint64_t>(kLeapSeconds.count()), "GPS_UTC_offset"},
                            {1, 0, "DS_status"},
                            {2, 3, "reserved"},
                            {5, 0, "DS_day_of_month"},
                            {8, 0, "DS_hour"}}));
}

// The ratings of the United States: each value by its abbreviation and its meaning.
Bytes ratings() {
  struct Value {
    const char* abbreviation;
    const char* meaning;
  };
  struct Dimension {
    const char* name;
    uint64_t graduated_scale;
    std::vector<Value> values;
  };
  const std::vector<Dimension> dimensions = {
      {"Entire Audience",
       1,
       {{"", ""},
        {"None", "None"},
        {"TV-G", "TV-G"},
        {"TV-PG", "TV-PG"},
        {"TV-14", "TV-14"},
        {"TV-MA", "TV-MA"}}},
      {"Dialogue", 0, {{"", ""}, {"D", "D"}}},
      {"Language", 0, {{"", ""}, {"L", "L"}}},
      {"Sex", 0, {{"", ""}, {"S", "S"}}},
      {"Violence", 0, {{"", ""}, {"V", "V"}}},
      {"Children", 1, {{"", ""}, {"TV-Y", "TV-Y"}, {"TV-Y7", "TV-Y7"}}},
      {"Fantasy Violence", 0, {{"", ""}, {"FV", "FV"}}},
      {"MPAA",
       0,
       {{"", ""},
        {"N/A", "MPAA Rating Not Applicable"},
        {"G", "Suitable for All Ages"},
        {"PG", "Parental Guidance Suggested"},
        {"PG-13", "Parents Strongly Cautioned"},
        {"R", "Restricted"},
        {"NC-17", "No One 17 and Under Admitted"},
        {"X", "No One 17 and Under Admitted"},
        {"NR", "no Rating by MPAA"}}},
  };
  const auto english = [](const char* ascii) { return counted(Texts::plain("eng", ascii)); };
  const auto value = [&](const Value& v) { return joined({english(v.abbreviation), english(v.meaning)}); };
  const auto dimension = [&](const Dimension& d) {
    return joined({english(d.name),
                   bits({{3, 7, "reserved"},
                         {1, d.graduated_scale, "graduated_scale"},
                         {4, d.values.size(), "values_defined"}}),
                   each(d.values, value)});
  };
  return psip_section(
      0xCA, 0xFF00 | kRatingRegion,
      joined({english("U.S. (50 states + possessions)"), bits({{8, dimensions.size(), "dimensions_defined"}}),
              each(dimensions, dimension), short_loop({})}));
}

// Events

struct Event {
  const Show& show;
  uint16_t id;
  int minute;  // from noon on
};

// Those that begin in a window of three hours.
std::vector<Event> events_of(const Channel& c, int window) {
  std::vector<Event> out;
  uint16_t id = 1;
  int minute = 0;
  for (const Show& show : c.shows) {
    if (minute / kWindowMinutes == window) out.push_back({show, id, minute});
    ++id;
    minute += show.minutes;
  }
  return out;
}

Bytes event_information(const Channel& c, int window, const Texts& texts) {
  const std::vector<Event> events = events_of(c, window);
  const auto row = [&](const Event& e) {
    std::vector<Translation> titles = {{c.language, e.show.title}};
    if (*e.show.other_title) titles.push_back({c.other_language, e.show.other_title});
    const uint64_t has_text = *e.show.about ? 1 : 0;
    Bytes descriptors = joined({content_advisory(e.show.rating), genre(e.show.category)});
    if (has_video(c)) append(descriptors, captions(c.language));
    for (const char* const code : languages(c)) append(descriptors, ac3_audio_descriptor(code));
    return joined({bits({{2, 3, "reserved"},
                         {14, e.id, "event_id"},
                         {32, gps(kNoon + std::chrono::minutes(e.minute)), "start_time"},
                         {2, 3, "reserved"},
                         {2, has_text, "ETM_location"},
                         {20, static_cast<uint64_t>(e.show.minutes) * 60, "length_in_seconds"}}),
                   counted(texts.title(titles)), loop(descriptors)});
  };
  return psip_section(0xCB, source_of(c),
                      joined({bits({{8, events.size(), "num_events_in_section"}}), each(events, row)}));
}

Bytes extended_text(uint16_t extension, uint32_t etm_id, const Bytes& message) {
  return psip_section(0xCC, extension, joined({bits({{32, etm_id, "ETM_id"}}), message}));
}

Bytes text_of_channel(const Channel& c, const Texts& texts) {
  return extended_text(source_of(c), uint32_t{source_of(c)} << 16,
                       texts.description({{c.language, c.about}}));
}

std::vector<Bytes> texts_of_events(const Channel& c, int window, const Texts& texts) {
  std::vector<Bytes> out;
  for (const Event& e : events_of(c, window)) {
    if (!*e.show.about) continue;
    const uint32_t etm_id = uint32_t{source_of(c)} << 16 | static_cast<uint32_t>(e.id << 2) | 2;
    const auto extension = static_cast<uint16_t>(c.minor << 8 | e.id);
    out.push_back(extended_text(extension, etm_id, texts.description({{c.language, e.show.about}})));
  }
  return out;
}

// A table that the master guide names, and its sections.
struct Named {
  uint16_t type;
  uint16_t pid;
  Ticks begin;
  Ticks period;
  std::vector<Bytes> sections;
};

std::vector<Named> named_tables(const Texts& texts) {
  std::vector<Named> out = {{0x0000, kBasePid, ms(10), ms(370), {virtual_channels()}},
                            {0x0300 | kRatingRegion, kBasePid, ms(600), ms(4000), {ratings()}},
                            {0x0004, kChannelTextPid, ms(300), ms(2000), {}}};
  for (const Channel& c : atsc_channels) out.back().sections.push_back(text_of_channel(c, texts));
  for (int window = 0; window < kWindows; ++window) {
    const auto number = static_cast<uint16_t>(window);
    // What is on now is wanted soonest.
    const Ticks period = window == 0 ? ms(490) : ms(2400);
    Named events = {static_cast<uint16_t>(0x0100 + number),
                    static_cast<uint16_t>(kFirstEventPid + number),
                    ms(100 + 300 * window),
                    period,
                    {}};
    Named long_texts = {static_cast<uint16_t>(0x0200 + number),
                        static_cast<uint16_t>(kFirstTextPid + number),
                        ms(200 + 300 * window),
                        period + ms(500),
                        {}};
    for (const Channel& c : atsc_channels) {
      events.sections.push_back(event_information(c, window, texts));
      for (const Bytes& section : texts_of_events(c, window, texts)) long_texts.sections.push_back(section);
    }
    out.push_back(events);
    out.push_back(long_texts);
  }
  return out;
}

Bytes master_guide(const std::vector<Named>& tables) {
  const auto row = [](const Named& table) {
    uint64_t size = 0;
    for (const Bytes& section : table.sections) size += section.size();
    return joined({bits({{16, table.type, "table_type"},
                         {3, 7, "reserved"},
                         {13, table.pid, "table_type_PID"},
                         {3, 7, "reserved"},
                         {5, 3, "table_type_version_number"},
                         {32, size, "number_bytes"}}),
                   loop({})});
  };
  return psip_section(0xC7, 0,
                      joined({bits({{16, tables.size(), "tables_defined"}}), each(tables, row), loop({})}));
}

void add_psip(Multiplex& multiplex, const Texts& texts) {
  const std::vector<Named> tables = named_tables(texts);
  // Those of the base PID are one queue.
  std::vector<TimedSection> base =
      multiplex.repeated(ms(0), ms(130), [&](Ticks) { return std::vector<Bytes>{master_guide(tables)}; });
  const auto add_to_base = [&](const std::vector<TimedSection>& more) {
    base.insert(base.end(), more.begin(), more.end());
  };
  add_to_base(multiplex.repeated(ms(40), ms(950), [](Ticks due) {
    return std::vector<Bytes>{system_time(kNoon + 29min + 55s + std::chrono::seconds(due / kSecond))};
  }));
  for (const Named& table : tables) {
    const auto sections =
        multiplex.repeated(table.begin, table.period, [&](Ticks) { return table.sections; });
    if (table.pid == kBasePid)
      add_to_base(sections);
    else
      multiplex.add_sections(table.pid, sections);
  }
  multiplex.add_sections(kBasePid, base);
}

void add_channel(Multiplex& multiplex, const Channel& c, int place) {
  const Ticks phase = place * ms(8);
  multiplex.repeat(map_pid(c), phase + ms(10), ms(250), [&](Ticks) { return map_of(c); });
  for (const uint16_t pid : elementary_pids(c)) {
    const bool is_first = pid == elementary_pids(c)[0];
    if (is_first && has_video(c))
      add_pictures(multiplex, {pid, mpeg2_hd_video, true},
                   {phase, kSecond * 1001 / 30000, place == 0 ? 8 : 4, place});
    else
      add_units(multiplex, {pid, ac3_audio, is_first}, {phase + ms(pid % 16), is_first ? ms(32) : ms(128)});
  }
}

}  // namespace

Bytes atsc_sample(const std::filesystem::path& codes) {
  Multiplex multiplex(kTicksAPacket, kLength);
  multiplex.repeat(0x0000, ms(0), ms(90), [](Ticks) { return associations(); });
  add_psip(multiplex, Texts(codes));
  int place = 0;
  for (const Channel& c : atsc_channels) add_channel(multiplex, c, place++);
  return multiplex.stream();
}

}  // namespace quillon::sample
