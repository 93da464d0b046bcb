#include "tests/support/sample.h"

#include "tests/support/packets.h"

namespace quillon::test {

namespace {

constexpr int kTransportStream = 0x0451;
constexpr int kNetwork = 0x233A;
constexpr int kFirst = 0x1001;   // a television service, scrambled
constexpr int kSecond = 0x1002;  // a radio service
constexpr int kFirstMap = 0x0100;
constexpr int kSecondMap = 0x0200;

uint64_t u(int value) {
  return static_cast<uint64_t>(value);
}

Bytes prefixed(const Bytes& bytes) {
  return joined({bits({{8, bytes.size(), "length"}}), bytes});
}

// A loop of descriptors with its 12-bit length in front.
Bytes loop(std::initializer_list<Bytes> descriptors, int upper_bits = 0xF) {
  const Bytes all = joined(descriptors);
  return joined({bits({{4, u(upper_bits), "reserved"}, {12, all.size(), "loop_length"}}), all});
}

Bytes ca(int system, int pid) {
  return descriptor(0x09,
                    bits({{16, u(system), "CA_system_ID"}, {3, 7, "reserved"}, {13, u(pid), "CA_PID"}}));
}

Bytes language(const char* code, int audio_type) {
  return descriptor(0x0A, joined({text(code), bits({{8, u(audio_type), "audio_type"}})}));
}

Bytes stream(int type, int pid, std::initializer_list<Bytes> descriptors) {
  return joined({bits({{8, u(type), "stream_type"}, {3, 7, "reserved"}, {13, u(pid), "elementary_PID"}}),
                 loop(descriptors)});
}

Bytes program(int number, int pid) {
  return bits({{16, u(number), "program_number"}, {3, 7, "reserved"}, {13, u(pid), "program_map_PID"}});
}

Bytes pat() {
  return long_section(0x00,
                      joined({program(0, 0x0010), program(kFirst, kFirstMap), program(kSecond, kSecondMap)}),
                      {.extension = kTransportStream});
}

Bytes cat() {
  return long_section(0x01, joined({ca(0x0B00, 0x0500), ca(0x0500, 0x0501)}), {.extension = 0xFFFF});
}

Bytes first_map() {
  const Bytes video =
      descriptor(0x02, bits({{8, 0x1A, "flags"}, {8, 0x48, "profile_and_level"}, {8, 0x5F, "chroma"}}));
  return long_section(0x02,
                      joined({bits({{3, 7, "reserved"}, {13, 0x0101, "PCR_PID"}}), loop({ca(0x0B00, 0x0510)}),
                              stream(0x02, 0x0101, {video, descriptor(0x52, {0x01})}),
                              stream(0x04, 0x0102, {language("eng", 0), descriptor(0x52, {0x02})}),
                              stream(0x04, 0x0103, {language("deu", 0), language("fra", 3)}),
                              stream(0x06, 0x0104,
                                     {descriptor(0x56, joined({text("deu"), bits({{5, 1, "teletext_type"},
                                                                                  {3, 1, "magazine"},
                                                                                  {8, 0x00, "page"}})}))})}),
                      {.extension = kFirst});
}

Bytes second_map() {
  return long_section(0x02,
                      joined({bits({{3, 7, "reserved"}, {13, 0x0201, "PCR_PID"}}), loop({}),
                              stream(0x03, 0x0201, {language("eng", 0)})}),
                      {.extension = kSecond});
}

Bytes service(int id, int type, int scrambled, const char* provider, const char* name) {
  const Bytes all = descriptor(
      0x48, joined({bits({{8, u(type), "service_type"}}), prefixed(text(provider)), prefixed(text(name))}));
  return joined({bits({{16, u(id), "service_id"},
                       {6, 0x3F, "reserved_future_use"},
                       {1, 0, "EIT_schedule_flag"},
                       {1, 1, "EIT_present_following_flag"},
                       {3, 4, "running_status"},
                       {1, u(scrambled), "free_CA_mode"},
                       {12, all.size(), "descriptors_loop_length"}}),
                 all});
}

Bytes sdt() {
  return long_section(
      0x42,
      joined({bits({{16, u(kNetwork), "original_network_id"}, {8, 0xFF, "reserved_future_use"}}),
              service(kFirst, 1, 1, "Feather", "Quill One"),
              service(kSecond, 2, 0, "Feather", "Caf\xE9 Radio")}),
      {.extension = kTransportStream});
}

Bytes nit() {
  const Bytes terrestrial = descriptor(0x5A, bits({{32, 49800000, "centre_frequency"},
                                                   {3, 0, "bandwidth"},
                                                   {1, 1, "priority"},
                                                   {1, 1, "Time_Slicing_indicator"},
                                                   {1, 1, "MPE_FEC_indicator"},
                                                   {2, 3, "reserved"},
                                                   {2, 2, "constellation"},
                                                   {3, 0, "hierarchy_information"},
                                                   {3, 1, "code_rate_HP_stream"},
                                                   {3, 0, "code_rate_LP_stream"},
                                                   {2, 0, "guard_interval"},
                                                   {2, 1, "transmission_mode"},
                                                   {1, 0, "other_frequency_flag"},
                                                   {32, 0xFFFFFFFF, "reserved"}}));
  const Bytes services = descriptor(0x41, bits({{16, u(kFirst), "service_id"},
                                                {8, 1, "service_type"},
                                                {16, u(kSecond), "service_id"},
                                                {8, 2, "service_type"}}));
  const Bytes row = joined(
      {bits({{16, u(kTransportStream), "transport_stream_id"}, {16, u(kNetwork), "original_network_id"}}),
       loop({terrestrial, services})});
  return long_section(0x40, joined({loop({descriptor(0x40, text("Feather Network"))}), loop({row})}),
                      {.extension = kNetwork});
}

Bytes event(int id, int hour, const char* name, const char* about) {
  const Bytes all = joined(
      {descriptor(0x4D, joined({text("eng"), prefixed(text(name)), prefixed(text(about))})),
       descriptor(
           0x54,
           bits({{4, 2, "content_nibble_level_1"}, {4, 3, "content_nibble_level_2"}, {8, 0, "user_byte"}}))});
  return joined({bits({{16, u(id), "event_id"},
                       {16, 60676, "MJD of 2025-01-01"},
                       {8, u(hour), "hour"},
                       {16, 0, "minute, second"},
                       {24, 0x010000, "duration"},
                       {3, 4, "running_status"},
                       {1, 0, "free_CA_mode"},
                       {12, all.size(), "descriptors_loop_length"}}),
                 all});
}

Bytes eit(int service, int section, const Bytes& what) {
  return long_section(0x4E,
                      joined({bits({{16, u(kTransportStream), "transport_stream_id"},
                                    {16, u(kNetwork), "original_network_id"},
                                    {8, 1, "segment_last_section_number"},
                                    {8, 0x4E, "last_table_id"}}),
                              what}),
                      {.extension = service, .section_number = section, .last_section_number = 1});
}

Bytes tot() {
  const Bytes offset =
      descriptor(0x58, joined({text("GBR"), bits({{6, 0, "country_region_id"},
                                                  {1, 1, "reserved"},
                                                  {1, 0, "local_time_offset_polarity"},
                                                  {16, 0, "local_time_offset"},
                                                  {40, uint64_t{60764} << 24 | 0x010000, "time_of_change"},
                                                  {16, 0x0100, "next_time_offset"}})}));
  Bytes out =
      short_section(0x73, joined({bits({{16, 60676, "MJD of 2025-01-01"}, {24, 0x123000, "UTC_time"}}),
                                  loop({offset}), Bytes(4)}));
  repair_crc(out);
  return out;
}

Bytes tdt() {
  return short_section(0x70, bits({{16, 60676, "MJD of 2025-01-01"}, {24, 0x123000, "UTC_time"}}));
}

}  // namespace

Bytes sample_stream() {
  struct Carried {
    Packing packing;
    std::vector<Bytes> sections;
  };
  std::vector<Carried> carried = {
      {{.pid = 0x0000}, {pat()}},
      {{.pid = 0x0001}, {cat()}},
      {{.pid = kFirstMap}, {first_map()}},
      {{.pid = kSecondMap}, {second_map()}},
      {{.pid = 0x0010}, {nit()}},
      {{.pid = 0x0011}, {sdt()}},
      {{.pid = 0x0012, .shared = true},
       {eit(kFirst, 0, event(1, 0x12, "Noon News", "The day so far.")),
        eit(kFirst, 1, event(2, 0x13, "Ink and Paper", "How a book is bound.")),
        eit(kSecond, 0, event(7, 0x12, "Morning Concert", ""))}},
      {{.pid = 0x0014, .shared = true}, {tdt(), tot()}},
  };
  const Bytes filling(184, 0x00);
  Bytes out;
  for (int round = 0; round < 8; ++round)
    for (Carried& c : carried) {
      const Bytes made = packets(c.sections, c.packing);
      c.packing.counter = (c.packing.counter + static_cast<int>(made.size() / kPacketSize)) % 16;
      out.insert(out.end(), made.begin(), made.end());
      for (const int pid : {0x0101, 0x0102, 0x0201, 0x1FFF}) {
        const Bytes other = packet({.pid = pid, .counter = round}, filling);
        out.insert(out.end(), other.begin(), other.end());
      }
    }
  return out;
}

}  // namespace quillon::test
