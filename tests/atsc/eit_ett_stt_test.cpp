// The event information, extended text and system time tables of ATSC.

#include "tests/atsc/tables.h"
#include "tests/support/table_cases.h"

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/stt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Event = AtscEIT::Event;

// The CRCs are from a calculator of its own.
const Bytes kEit = {
    0xCB,                    // table_id
    0xF0, 0x1B,              // section_length 27
    0x00, 0x05,              // source_id
    0xC7, 0x00, 0x00,        // version 3, current; section 0 of 0
    0x00, 0x01,              // protocol_version, num_events_in_section
    0xD2, 0x34,              // event_id
    0x45, 0xD2, 0xE1, 0xF3,  // start_time, and the place of the text and the top of the duration
    0x0E, 0x10,              // length_in_seconds
    0x02, 'H',  'i',         // title
    0xF0, 0x03,              // descriptors_length
    0x86, 0x01, 0xE0,        //
    0x04, 0xAC, 0x08, 0x03,  // CRC_32
};

const Bytes kEtt = {
    0xCC,                          // table_id
    0xF0, 0x18,                    // section_length 24
    0x00, 0x00,                    // ETT_table_id_extension
    0xC7, 0x00, 0x00,              // version 3, current; section 0 of 0
    0x00,                          // protocol_version
    0x12, 0x34, 0x00, 0x06,        // ETM_id
    0x01, 'e',  'n',  'g',  0x01,  // one string of one segment
    0x00, 0x00, 0x02, 'H',  'i',   //
    0xB4, 0xCC, 0x8C, 0x69,        // CRC_32
};

const Bytes kStt = {
    0xCD,                    // table_id
    0xF0, 0x11,              // section_length 17
    0x00, 0x00,              // table_id_extension
    0xC7, 0x00, 0x00,        // version 3, current; section 0 of 0
    0x00,                    // protocol_version
    0x4B, 0x4A, 0x3F, 0x2E,  // system_time
    0x12,                    // GPS_UTC_offset
    0x6B, 0x02,              // daylight_savings
    0x6B, 0x89, 0x15, 0x60,  // CRC_32
};

const std::string kLoopMismatch = "-1: AtscEIT: event loop start end mismatch";
const std::string kEventMismatch = "-1: AtscTVCT::Channel: descriptor start end mismatch";
const std::string kTextMismatch = "-1: AtscETT: extended_text_message start end mismatch";
const std::string kTimeMismatch = "-1: AtscSTT: descriptor start end mismatch";

const Bytes kGenre = descriptor(0xAB, {0xE0});

Bytes event(const Bytes& descriptors, int length_change = 0, const Bytes& title = {}) {
  const size_t length = descriptors.size() + static_cast<size_t>(length_change);
  return joined({Bytes(8), bits({{8, title.size(), "title_length"}}), title,
                 bits({{4, 15, "reserved"}, {12, length, "descriptors_length"}}), descriptors});
}

Bytes eit(uint8_t events, const Bytes& rest) {
  return long_section(0xCB, joined({Bytes{0, events}, rest}));
}
// `message` is the structure, and what follows it.
Bytes ett(const Bytes& message) {
  return long_section(0xCC, joined({Bytes(5), message}));
}
Bytes stt(const Bytes& descriptors) {
  return long_section(0xCD, joined({Bytes(8), descriptors}));
}

const TableCases kTables = {table_case<AtscEIT>("AtscEIT", "atsc_eit", kEit),
                            table_case<AtscETT>("AtscETT", "atsc_ett", kEtt),
                            table_case<AtscSTT>("AtscSTT", "atsc_stt", kStt)};

}  // namespace

TEST(AtscEIT, ReadsASection) {
  const auto eit_table = parsed<AtscEIT>(kEit);
  EXPECT_TRUE(eit_table.is_parsed());
  EXPECT_EQ(eit_table.protocol_version, 0);
  EXPECT_EQ(eit_table.num_events_in_section, 1);
  ASSERT_EQ(eit_table.events.size(), 1u);
  const Event& first = eit_table.events[0];
  EXPECT_EQ(first.event_id, 0x1234);
  EXPECT_EQ(first.start_time, 0x45D2E1F3);
  EXPECT_EQ(first.ETM_location, 3);
  EXPECT_EQ(first.length_in_seconds, 0x30E10);
  EXPECT_EQ(first.title_length, 2);
  EXPECT_EQ(first.title_text.number_strings, 0);
  EXPECT_TRUE(first.title_text.strings.empty());
  EXPECT_EQ(first.descriptors_length, 3);
  EXPECT_EQ(first.get_atsc_caption_service_descriptor().size(), 1u);
  EXPECT_STREQ(first.get_ETM_location_text(), "[Reserved for future ATSC use]");
}

TEST(AtscEIT, PrintsItsReport) {
  const auto eit_table = parsed<AtscEIT>(kEit);
  EXPECT_EQ(report(eit_table),
            "table name: event_information_table\n"
            "table_id CB\n"
            "section_length 001B\n"
            "context_id 0005\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 04AC0803\n"
            "protocol_version: 0\n"
            "num_events_in_section: 1\n"
            "event_id: 1234\n"
            "start_time: 45D2E1F3\n"
            "ETM_location: 3\n"
            "length_in_seconds: 30E10\n"
            "title_length: 2\n"
            "number_strings: 0\n"
            "descriptors_length: 3\n"
            "\n");
}

TEST(AtscEIT, PrintsAnEventInTheBaseOfTheStreamAndWithASign) {
  Bytes bytes = event({});
  bytes[2] = 0xFF;
  EXPECT_EQ(report(Read<Event>(bytes).row),
            "event_id: 0\n"
            "start_time: -16777216\n"
            "ETM_location: 0\n"
            "length_in_seconds: 0\n"
            "title_length: 0\n"
            "number_strings: 0\n"
            "descriptors_length: 0\n");
}

TEST(AtscEIT, SavesAndLoadsItsHeaderAlone) {
  const std::string xml =
      R"(<eit table_id="203" syntax_indicator="1" section_length="27" context_id="5" version_number="3")"
      R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="78383107" />)";
  EXPECT_EQ(saved(parsed<AtscEIT>(kEit), "eit"), xml);
  const auto eit_table = loaded_table<AtscEIT>(xml);
  EXPECT_TRUE(eit_table.is_parsed());
  EXPECT_TRUE(eit_table.events.empty());
  EXPECT_EQ(saved(eit_table, "eit"), xml);
}

TEST(AtscEIT, TakesEachBitOfAnEventForItsFields) {
  expect_places<Event>(11,
                       {{&Event::event_id, 2, 14},
                        {&Event::start_time, 2 * 8, 32},
                        {&Event::ETM_location, 5 * 8 + 2, 2},
                        {&Event::length_in_seconds, 5 * 8 + 4, 20},
                        {&Event::title_length, 8 * 8, 8}},
                       {9, 10});
  for (const int length : {2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048}) {
    const Read<Event> read(event(Bytes(static_cast<size_t>(length))));
    EXPECT_EQ(read.row.descriptors_length, length);
    EXPECT_EQ(read.used, length + 11);
  }
}

TEST(AtscEIT, StepsOverTheTitleOfAnEvent) {
  const Read<Event> untitled(event(kGenre));
  EXPECT_EQ(untitled.used, 14);
  EXPECT_EQ(untitled.row.descriptors_length, 3);
  for (const size_t size : {1u, 2u, 10u, 255u}) {
    const Read<Event> titled(event(kGenre, 0, Bytes(size, 0xFF)));
    EXPECT_EQ(titled.used, static_cast<int>(size) + 14);
    EXPECT_EQ(titled.row.title_length, static_cast<int>(size));
    EXPECT_EQ(titled.row.descriptors_length, 3);
    EXPECT_EQ(titled.row.get_atsc_genre_descriptor().size(), 1u);
    EXPECT_TRUE(titled.row.title_text.strings.empty());
  }
}

TEST(AtscEIT, FailsWhenTheDescriptorsOfAnEventMissTheirEnd) {
  for (const int change : {-1, 1, 0x800}) {
    EXPECT_EQ(row_refusal<Event>(joined({event(kGenre, change), Bytes(1)})), kEventMismatch) << change;
    EXPECT_EQ(failure_of<AtscEIT>(eit(1, event(kGenre, change))), kEventMismatch) << change;
  }
  EXPECT_EQ(Read<Event>(event(kGenre), -100).used, 14);  // what it is offered is not looked at
}

TEST(AtscEIT, AcceptsFewerEventsThanAnnouncedButNoMore) {
  EXPECT_TRUE(parsed<AtscEIT>(eit(0, {})).events.empty());
  EXPECT_EQ(failure_of<AtscEIT>(eit(0, Bytes(1))), kLoopMismatch);
  EXPECT_EQ(failure_of<AtscEIT>(eit(0, event({}))), kLoopMismatch);
  const Bytes two = joined({event({}), event(kGenre)});
  for (const uint8_t told : Bytes{2, 3, 255}) {
    const auto eit_table = parsed<AtscEIT>(eit(told, two));
    EXPECT_EQ(eit_table.num_events_in_section, told);
    EXPECT_EQ(eit_table.events.size(), 2u);
  }
  EXPECT_EQ(failure_of<AtscEIT>(eit(1, two)), kLoopMismatch);
  EXPECT_EQ(failure_of<AtscEIT>(eit(2, joined({two, Bytes(1)}))), kLoopMismatch);
  EXPECT_TRUE(parsed<AtscEIT>(eit(255, {})).events.empty());
}

TEST(AtscEIT, FailsWhenAnEventEndsInTheCrc) {
  for (const uint8_t told : Bytes{1, 2, 255}) {
    // An event without its last two bytes: a CRC that begins with a length of 0 takes their place.
    Bytes section = eit(told, Bytes(9));
    while ((section[19] & 0x0F) != 0 || section[20] != 0) {
      if (++section[11] == 0) ++section[12];
      repair_crc(section);
    }
    AtscEIT eit_table;
    EXPECT_EQ(failure([&] { eit_table.Parse(section.data(), section.size(), false); }), kLoopMismatch);
    EXPECT_EQ(eit_table.events.size(), 1u);
  }
}

TEST(AtscEIT, StopsAtTheSectionsEndWhateverItsCount) {
  AtscEIT eit_table;
  const Bytes section = with_length(eit(255, {}), 4095);
  EXPECT_EQ(failure([&] { eit_table.Parse(section.data(), section.size(), false); }), kLoopMismatch);
  EXPECT_EQ(eit_table.events.size(), 255u);
  // Events of 17 bytes do not fill the section, with room for 239.
  Bytes body;
  for (int i = 0; i < 240; ++i) body = joined({body, event({}, 0, Bytes(6))});
  body.resize(4084);
  AtscEIT full;
  const Bytes longest = eit(255, body);
  EXPECT_EQ(failure([&] { full.Parse(longest.data(), longest.size(), false); }), kLoopMismatch);
  EXPECT_EQ(full.events.size(), 241u);  // the last begins in the four bytes left, and ends past them
}

TEST(AtscEIT, IsNotEmptiedByReset) {
  auto eit_table = parsed<AtscEIT>(kEit);
  eit_table.reset();
  EXPECT_FALSE(eit_table.is_parsed());
  EXPECT_EQ(eit_table.events.size(), 1u);
  EXPECT_EQ(eit_table.num_events_in_section, 1);
}

TEST(AtscEIT, KeepsNoPositions) {}

TEST(AtscEIT, AcceptsItsHeader) {
  expect_header<AtscEIT>(0xCB, Bytes(2), false);
}

TEST(AtscEIT, NamesEtmLocations) {
  expect_ranges(&Event::get_ETM_location_text, {{0, "No ETM"},
                                                {1, "ETM located in the PTC carrying this PSIP"},
                                                {2, "ETM located in the PTC specified by the channel_TSID"},
                                                {3, "[Reserved for future ATSC use]"}});
}

TEST(AtscEIT, StaysWithinAnySection) {
  expect_bounded<AtscEIT>(kEit, {kLoopMismatch, kEventMismatch});
}

TEST(AtscETT, ReadsASection) {
  const auto table = parsed<AtscETT>(kEtt);
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.protocol_version, 0);
  EXPECT_EQ(table.ETM_id, 0x12340006);
  EXPECT_EQ(table.extended_text_message.number_strings, 1);
  ASSERT_EQ(table.extended_text_message.strings.size(), 1u);
  EXPECT_STREQ(table.extended_text_message.strings[0].iso639languagecode.c_strA(), "eng");
  ASSERT_EQ(table.extended_text_message.strings[0].segments.size(), 1u);
  EXPECT_EQ(table.extended_text_message.strings[0].segments[0].decoded_text, (wide_string{'H', 'i'}));
}

TEST(AtscETT, PrintsItsHeaderAlone) {
  EXPECT_EQ(report(parsed<AtscETT>(kEtt)),
            "table name: extended_text_table\n"
            "table_id CC\n"
            "section_length 0018\n"
            "context_id 0000\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 B4CC8C69\n");
}

TEST(AtscETT, SavesAndLoadsItsHeaderAlone) {
  const std::string xml =
      R"(<ett table_id="204" syntax_indicator="1" section_length="24" context_id="0" version_number="3")"
      R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-1261663127" />)";
  EXPECT_EQ(saved(parsed<AtscETT>(kEtt), "ett"), xml);
  const auto table = loaded_table<AtscETT>(xml);
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.ETM_id, 0);
  EXPECT_TRUE(table.extended_text_message.strings.empty());
  EXPECT_EQ(saved(table, "ett"), xml);
}

TEST(AtscETT, TakesEachByteOfItsHeadForItsField) {
  const auto table = parsed<AtscETT>(long_section(0xCC, {0xA5, 0x81, 0x02, 0x03, 0x04, 0x00}));
  EXPECT_EQ(table.protocol_version, 0xA5);
  EXPECT_EQ(table.ETM_id, -0x7EFDFCFC);
}

TEST(AtscETT, NeedsATextThatEndsAtTheCrc) {
  EXPECT_EQ(failure_of<AtscETT>(ett({0})), "nothing");
  EXPECT_EQ(failure_of<AtscETT>(ett({})), kTextMismatch);
  EXPECT_EQ(failure_of<AtscETT>(ett({0, 0})), kTextMismatch);
  EXPECT_EQ(failure_of<AtscETT>(ett(Bytes(100))), kTextMismatch);
  // More strings and segments announced than there are.
  EXPECT_EQ(failure_of<AtscETT>(ett({5})), "nothing");
  EXPECT_EQ(failure_of<AtscETT>(ett({5, 'e', 'n', 'g', 7, 0, 0, 1, 'x'})), "nothing");
  // A segment that overruns the text by one byte, one that falls short by one, a string cut short.
  EXPECT_EQ(failure_of<AtscETT>(ett({1, 'e', 'n', 'g', 1, 0, 0, 2, 'x'})), kTextMismatch);
  EXPECT_EQ(failure_of<AtscETT>(ett({1, 'e', 'n', 'g', 1, 0, 0, 0, 'x'})), kTextMismatch);
  EXPECT_EQ(failure_of<AtscETT>(ett({1, 'e', 'n'})), kTextMismatch);
  EXPECT_EQ(failure_of<AtscETT>(ett({1, 'e', 'n', 'g', 1, 0, 0, 255, 'x'})), kTextMismatch);
}

TEST(AtscETT, AddsTheStringsOfASecondSection) {
  auto table = parsed<AtscETT>(kEtt);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  table.Parse(kEtt.data(), kEtt.size(), false);
  EXPECT_EQ(table.extended_text_message.strings.size(), 2u);
  EXPECT_EQ(table.extended_text_message.number_strings, 1);
}

TEST(AtscETT, StopsAtTheSectionsEndWhateverItsCounts) {
  AtscETT table;
  const Bytes section = with_length(ett({255, 'e', 'n', 'g', 255}), 4095);
  EXPECT_EQ(failure([&] { table.Parse(section.data(), section.size(), false); }), kTextMismatch);
  ASSERT_EQ(table.extended_text_message.strings.size(), 255u);
  EXPECT_EQ(table.extended_text_message.strings[0].segments.size(), 255u);
}

TEST(AtscETT, AcceptsItsHeader) {
  expect_header<AtscETT>(0xCC, Bytes(6), false);
}

TEST(AtscETT, StaysWithinAnySection) {
  expect_bounded<AtscETT>(kEtt, {kTextMismatch});
}

TEST(AtscSTT, ReadsASection) {
  const auto table = parsed<AtscSTT>(kStt);
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.protocol_version, 0);
  EXPECT_EQ(table.system_time, 0x4B4A3F2E);
  EXPECT_EQ(table.GPS_UTC_offset, 18);
  EXPECT_EQ(table.daylight_savings, 0x6B02);
}

TEST(AtscSTT, PrintsItsReport) {
  EXPECT_EQ(report(parsed<AtscSTT>(kStt)),
            "table name: system_time_table\n"
            "table_id CD\n"
            "section_length 0011\n"
            "context_id 0000\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 6B891560\n"
            "protocol_version: 0\n"
            "system_time: 4B4A3F2E\n"
            "GPS_UTC_offset: 12\n"
            "daylight_savings: 6B02\n");
}

TEST(AtscSTT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(
      saved(parsed<AtscSTT>(kStt), "stt"),
      R"(<stt table_id="205" syntax_indicator="1" section_length="17" context_id="0" version_number="3")"
      R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="1804146016" />)");
  expect_descriptors_loaded<AtscSTT>(0xCD);
}

TEST(AtscSTT, TakesEachBitOfItsBodyForItsField) {
  for (int bit = 0; bit < 64; ++bit) {
    const auto table = parsed<AtscSTT>(long_section(0xCD, bits({{64, 1ULL << bit, "body"}})));
    EXPECT_EQ(table.protocol_version, bit >= 56 ? 1 << (bit - 56) : 0) << bit;
    EXPECT_EQ(table.system_time, bit >= 24 && bit < 56 ? static_cast<int>(1u << (bit - 24)) : 0) << bit;
    EXPECT_EQ(table.GPS_UTC_offset, bit >= 16 && bit < 24 ? 1 << (bit - 16) : 0) << bit;
    EXPECT_EQ(table.daylight_savings, bit < 16 ? 1 << bit : 0) << bit;
  }
}

TEST(AtscSTT, ReadsDescriptorsUpToTheCrc) {
  const Bytes section = stt(joined({kGenre, descriptor(0xA4, {}), kGenre}));
  const auto table = parsed<AtscSTT>(section, true);
  EXPECT_EQ(table.get_atsc_genre_descriptor().size(), 2u);
  EXPECT_EQ(table.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{8, 11, 13}));
  EXPECT_TRUE(parsed<AtscSTT>(section).get_descriptor_pos().empty());
  EXPECT_EQ(failure_of<AtscSTT>(stt({0xAB})), kTimeMismatch);
  EXPECT_EQ(failure_of<AtscSTT>(stt({0xAB, 1})), kTimeMismatch);
  EXPECT_EQ(failure_of<AtscSTT>(stt({0xAB, 0, 0})), kTimeMismatch);
  EXPECT_EQ(failure_of<AtscSTT>(stt({0xAB, 255})), kTimeMismatch);
  EXPECT_EQ(failure_of<AtscSTT>(long_section(0xCD, Bytes(7))), kTimeMismatch);
}

TEST(AtscSTT, IsNotEmptiedByReset) {
  auto table = parsed<AtscSTT>(stt(kGenre));
  table.system_time = 5;
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.system_time, 5);
  EXPECT_EQ(table.get_atsc_genre_descriptor().size(), 1u);
}

TEST(AtscSTT, AcceptsItsHeaderWithAnyReservedBits) {
  expect_header<AtscSTT>(0xCD, Bytes(8), true);
}

TEST(AtscSTT, StaysWithinAnySection) {
  expect_bounded<AtscSTT>(kStt, {kTimeMismatch});
  expect_bounded<AtscSTT>(stt(joined({kGenre, kGenre})), {kTimeMismatch});
}
