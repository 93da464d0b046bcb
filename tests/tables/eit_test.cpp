// The event information table.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/eit.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSection = joined({
    bits({{8, 0x4E, "table_id"},
          {1, 1, "section_syntax_indicator"},
          {1, 0, "reserved_future_use"},
          {2, 3, "reserved"},
          {12, 65, "section_length"},
          {16, 0x1001, "service_id"},
          {2, 3, "reserved"},
          {5, 3, "version_number"},
          {1, 1, "current_next_indicator"},
          {8, 0, "section_number"},
          {8, 0, "last_section_number"},
          {16, 0x0401, "transport_stream_id"},
          {16, 0x0002, "original_network_id"},
          {8, 0x10, "segment_last_section_number"},
          {8, 0x4E, "last_table_id"}}),
    bits({{16, 1000, "event_id"},
          {16, 45218, "start_time, MJD"},
          {24, 0x124500, "start_time, BCD"},
          {24, 0x013000, "duration"},
          {3, 4, "running_status"},
          {1, 0, "free_CA_mode"},
          {12, 26, "descriptors_loop_length"}}),
    descriptor(0x4D, joined({text("fra"), {7}, text("Titanic"), {12}, text("A sad voyage")})),
    bits({{16, 0xFFFF, "event_id"},
          {40, 0xFFFFFFFFFF, "start_time"},
          {24, 0xFFFFFF, "duration"},
          {3, 7, "running_status"},
          {1, 1, "free_CA_mode"},
          {12, 0, "descriptors_loop_length"}}),
    bits({{32, 0x04670931, "CRC_32"}}),
});

// Decimal from each start time up to the next event_id.
const char* const kReport =
    "table name: event_information_section - actual_transport_stream, present/following\n"
    "table_id 4E\n"
    "section_length 0041\n"
    "context_id 1001\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 04670931\n"
    "service_id: 1001\n"
    "transport_stream_id: 401\n"
    "original_network_id: 2\n"
    "segment_last_section_number: 10\n"
    "last_table_id: 4E\n"
    "event_id: 03E8\n"
    "running_status: 4\n"
    "free_CA_mode: 0\n"
    "descriptors_length: 1A\n"
    "start_time: 6/9-1982 12:45:0\n"
    "duration: 1:30:0\n"
    "event_id: FFFF\n"
    "running_status: 7\n"
    "free_CA_mode: 1\n"
    "descriptors_length: 0\n"
    "start_time: 22/4-2038 165:165:165\n"
    "duration: 165:165:165\n";

const char* const kXml =
    R"(<eit table_id="78" syntax_indicator="1" section_length="65" context_id="4097" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="73861425")"
    R"( transport_stream_id="1025" original_network_id="2" segment_last_section_number="16")"
    R"( last_table_id="78"><event_infos>)"
    R"(<event event_id="1000" running_status="4" free_CA_mode="0" descriptors_length="26")"
    R"( start_time="6 9 1982 12 45 0" duration="1 30 0"><descriptors>)"
    R"(<short_event_descriptor descriptor_id="77" descriptor_length="24" language_code="fra")"
    R"( event_name="Titanic" text="A sad voyage" /></descriptors></event>)"
    R"(<event event_id="65535" running_status="7" free_CA_mode="1" descriptors_length="0")"
    R"( start_time="22 4 2038 165 165 165" duration="165 165 165"><descriptors /></event>)"
    R"(</event_infos></eit>)";

const char* const kMismatch = "-1: descriptor start end mismatch";

Bytes event(int event_id, const Bytes& descriptors, int claimed = -1) {
  return joined({bits({{16, static_cast<uint64_t>(event_id), "event_id"},
                       {40, 51544ULL << 24, "start_time"},
                       {24, 0, "duration"}}),
                 loop(descriptors, claimed)});
}
Bytes eit(const Bytes& events) {
  return long_section(0x50, joined({{0, 1, 0, 2, 3, 0x50}, events}));
}

const TableCases kTables = {table_case<Eit>("Eit", "eit", kSection)};

}  // namespace

TEST(Eit, HasItsFaces) {
  expect_faces<Eit>(kSection, kReport, kXml);
}

TEST(Eit, ReadsItsMembers) {
  const auto table = parsed_table<Eit>(kSection);
  EXPECT_EQ(table.get_service_id(), 0x1001);
  EXPECT_EQ(table.get_transport_stream_id(), 0x0401);
  EXPECT_EQ(table.get_original_network_id(), 0x0002);
  EXPECT_EQ(table.get_segment_last_section_number(), 0x10);
  EXPECT_EQ(table.get_last_table_id(), 0x4E);
  const auto& events = table.get_eventinfo();
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].get_event_id(), 1000);
  EXPECT_EQ(events[0].get_start_time().get_date_as_text(), "6 9 1982 12 45 0");
  EXPECT_EQ(events[0].get_duration().get_time_as_text(), "1 30 0");
  EXPECT_EQ(events[0].get_running_status(), 4);
  EXPECT_EQ(events[0].get_free_ca_mode(), 0);
  EXPECT_EQ(events[0].get_descriptors_length(), 26);
  EXPECT_EQ(events[0].get_short_event_descriptors().size(), 1u);
  EXPECT_EQ(events[1].get_event_id(), 0xFFFF);
  EXPECT_EQ(events[1].get_start_time().year, 2038);
  EXPECT_EQ(events[1].get_duration().get_hours(), 165);
  EXPECT_EQ(events[1].get_running_status(), 7);
  EXPECT_EQ(events[1].get_free_ca_mode(), 1);
  EXPECT_EQ(events[1].get_descriptors_length(), 0);
}

TEST(Eit, TakesEachBitOfAnEventForItsField) {
  for (int bit = 12; bit < 96; ++bit) {
    const uint64_t low = bit < 48 ? 1ULL << bit : 0;
    const uint64_t high = bit >= 48 ? 1ULL << (bit - 48) : 0;
    const auto table = parsed_table<Eit>(eit(bits({{48, high, "event"}, {48, low, "event"}})));
    ASSERT_EQ(table.get_eventinfo().size(), 1u);
    const auto& e = table.get_eventinfo()[0];
    const auto bcd = [bit](int from) {
      const int k = bit - from;
      return k < 0 || k > 7 ? 0 : k < 4 ? 1 << k : 10 << (k - 4);
    };
    EXPECT_EQ(e.get_event_id(), bit >= 80 ? 1 << (bit - 80) : 0) << bit;
    EXPECT_EQ(e.get_start_time().hour, bcd(56)) << bit;
    EXPECT_EQ(e.get_start_time().minute, bcd(48)) << bit;
    EXPECT_EQ(e.get_start_time().second, bcd(40)) << bit;
    EXPECT_EQ(e.get_duration().get_hours(), bcd(32)) << bit;
    EXPECT_EQ(e.get_duration().get_minutes(), bcd(24)) << bit;
    EXPECT_EQ(e.get_duration().get_seconds(), bcd(16)) << bit;
    EXPECT_EQ(e.get_running_status(), bit >= 13 && bit < 16 ? 1 << (bit - 13) : 0) << bit;
    EXPECT_EQ(e.get_free_ca_mode(), bit == 12) << bit;
  }
}

TEST(Eit, HasThirtyFourTableIds) {
  const std::vector<int> ids = table_ids<Eit>(kSection);
  ASSERT_EQ(ids.size(), 34u);
  for (int i = 0; i < 34; ++i) EXPECT_EQ(ids[static_cast<size_t>(i)], 0x4E + i);

  Bytes section = kSection;
  for (int id = -1; id <= 256; ++id) {
    const char* const expected =
        id == 0x4E                 ? "event_information_section - actual_transport_stream, present/following"
        : id == 0x4F               ? "event_information_section - other_transport_stream, present/following"
        : id >= 0x50 && id <= 0x5F ? "event_information_section - actual_transport_stream, schedule"
        : id >= 0x60 && id <= 0x6F ? "event_information_section - other_transport_stream, schedule"
                                   : "<unknown>";
    EXPECT_STREQ(Eit::get_table_id_text(id), expected) << id;
    if (id < 0 || id > 255) continue;
    section[0] = static_cast<uint8_t>(id);
    repair_crc(section);
    Eit table;
    failure_of_parse(section, table);
    EXPECT_STREQ(table.get_table_id_text(), expected) << id;
  }
}

TEST(Eit, WantsTheSyntaxIndicatorAndTakesAnyReservedBits) {
  expect_syntax_indicator_and_any_reserved_bits<Eit>(0x4E, Bytes(6));
}

TEST(Eit, IsEmptyWithoutEvents) {
  const auto table = parsed_table<Eit>(eit({}));
  EXPECT_EQ(table.get_section_length(), 15);
  EXPECT_TRUE(table.get_eventinfo().empty());
  const std::string xml = saved(table);
  EXPECT_EQ(xml.substr(xml.find(" transport")),
            R"( transport_stream_id="1" original_network_id="2" segment_last_section_number="3")"
            R"( last_table_id="80"><event_infos /></d>)");
}

TEST(Eit, RefusesASectionWithoutItsOwnFields) {
  for (size_t size = 0; size < 6; ++size) {
    Eit table;
    EXPECT_EQ(failure_of_parse(long_section(0x4E, Bytes(size, 0x11)), table), kMismatch) << size;
    EXPECT_TRUE(table.get_eventinfo().empty());
  }
}

TEST(Eit, ReadsStrayBytesAsAnEvent) {
  for (size_t size = 1; size < 12; ++size) {
    Eit table;
    EXPECT_EQ(failure_of_parse(eit(joined({event(1, {}), Bytes(size, 0x10)})), table), kMismatch) << size;
    ASSERT_EQ(table.get_eventinfo().size(), 2u);
    EXPECT_EQ(table.get_eventinfo()[1].get_event_id() >> 8, 0x10);
    EXPECT_FALSE(table.is_parsed());
  }
}

TEST(Eit, FindsAnEventThatOverrunsTheSection) {
  for (const int claimed : {4, 202, 4095}) {
    Eit table;
    EXPECT_EQ(failure_of_parse(eit(event(1, descriptor_claiming(0x80, 200, {7}), claimed)), table), kMismatch)
        << claimed;
    ASSERT_EQ(table.get_eventinfo().size(), 1u);
    EXPECT_EQ(table.get_eventinfo()[0].get_descriptors_length(), claimed);
    EXPECT_EQ(table.get_eventinfo()[0].get_user_private_descriptors().size(), 1u);
  }
}

TEST(Eit, DoesNotNoticeADescriptorThatOverrunsTheLoopOfItsEvent) {
  const auto table = parsed_table<Eit>(eit(joined({event(1, {0x80}), event(0x0344, {})})));
  ASSERT_EQ(table.get_eventinfo().size(), 2u);
  ASSERT_EQ(table.get_eventinfo()[0].get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_eventinfo()[0].get_user_private_descriptors()[0].get_private_data(),
            (Bytes{0x44, 0xC9, 0x58}));
  EXPECT_EQ(table.get_eventinfo()[1].get_event_id(), 0x0344);
}

TEST(Eit, RefusesADescriptorThatItsClassRefuses) {
  Eit table;
  EXPECT_EQ(failure_of_parse(eit(joined({event(1, {}), event(2, descriptor(0x55, Bytes(5)))})), table),
            "3: parental_rating_descriptor");
  EXPECT_EQ(table.get_eventinfo().size(), 1u);
}

TEST(Eit, HoldsAsManyEventsAsASectionCan) {
  Bytes events;
  for (int i = 0; i < 340; ++i) events = joined({events, event(i, {})});
  const auto table = parsed_table<Eit>(eit(events));
  EXPECT_EQ(table.get_section_length(), 4095);
  ASSERT_EQ(table.get_eventinfo().size(), 340u);
  for (int i = 0; i < 340; ++i) EXPECT_EQ(table.get_eventinfo()[static_cast<size_t>(i)].get_event_id(), i);
}

TEST(Eit, HasThePositionsOfItsEventsOnlyIfItKeepsTheSection) {
  const auto table =
      parsed_table<Eit>(eit(joined({event(1, joined({descriptor(0x54, {1, 2}), descriptor(0x80, {})})),
                                    event(2, descriptor(0x4E, Bytes(6)))})),
                        true);
  EXPECT_EQ(table.get_eventinfo()[0].get_descriptor_pos(), (std::vector<int>{18, 22}));
  EXPECT_EQ(table.get_eventinfo()[1].get_descriptor_pos(), std::vector<int>{36});
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(18)[0], 0x54);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(22)[0], 0x80);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(36)[0], 0x4E);
  EXPECT_TRUE(parsed_table<Eit>(kSection).get_eventinfo()[0].get_descriptor_pos().empty());
}

TEST(Eit, DoublesWhatItHoldsWhenItIsNotReset) {
  auto table = parsed_table<Eit>(kSection);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(table.get_eventinfo().size(), 4u);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_eventinfo().empty());
  EXPECT_EQ(table.get_last_table_id(), 0x4E);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(report(table), kReport);
}

TEST(Eit, LeavesTheStreamInDecimalBehindAnEvent) {
  const auto table = parsed_table<Eit>(kSection);
  std::ostringstream stream;
  table.dump_state(stream);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::dec);
  stream.str("");
  parsed_table<Eit>(eit({})).dump_state(stream);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
  EXPECT_NE(stream.str().find("last_table_id: 50\n"), std::string::npos);
}

TEST(Eit, PrintsAnEventInTheFillOfTheStream) {
  const auto table = parsed_table<Eit>(eit(event(0x2A, descriptor(0x80, Bytes(20)))));
  EXPECT_EQ(report(table.get_eventinfo()[0]),
            "event_id:   2a\nrunning_status: 7\nfree_CA_mode: 1\ndescriptors_length: 16\n"
            "start_time: 1/1-2000 0:0:0\nduration: 0:0:0\n");
}

TEST(Eit, LoadsAsMuchOfATimeAsItsTextHas) {
  const std::string xml(kXml);
  const std::string start = R"(start_time="6 9 1982 12 45 0" duration="1 30 0")";
  const auto load = [&](const std::string& text) {
    return loaded_table<Eit>(std::string(xml).replace(xml.find(start), start.size(), text))
        .get_eventinfo()[0];
  };
  const auto partly = load(R"(start_time="24 12" duration="")");
  EXPECT_EQ(partly.get_start_time().get_date_as_text(), "24 12 1 1 1 1");
  EXPECT_EQ(partly.get_duration().get_time_as_text(), "0 0 0");
  EXPECT_EQ(load(R"(start_time="x" duration="2 x 3")").get_duration().get_time_as_text(), "2 0 0");
}

TEST(Eit, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Eit>(kXml);
  EXPECT_EQ(
      failure_of_load<Eit>(kXml, R"(duration="165 165 165"><descriptors />)", R"(duration="165 165 165">)"),
      "nothing");
  const std::string header = std::string(kXml, std::string(kXml).find('>'));
  const auto load = [&header](const std::string& rest) {
    return failure([&] { loaded_table<Eit>(header + rest); });
  };
  EXPECT_EQ(load("/>"), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><program_infos/></eit>"), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><event_infos/></eit>"), "nothing");
}

TEST(Eit, SaysWhichStepOfItsLoadFails) {
  const auto step = [](auto... arguments) { return failure_of_step<Eit>(arguments...); };
  EXPECT_EQ(step("none"), "nothing");
  EXPECT_EQ(step("get_attributes"), "-1: failed to get attribute map");
  EXPECT_EQ(step("getNamedItem", 9, S_FALSE), "-1: failed to get crc32");
  EXPECT_EQ(step("get_attributes", 2), "-1: failed");
  for (int nth = 10; nth <= 13; ++nth) EXPECT_EQ(step("getNamedItem", nth, S_FALSE), "-1: failed");
  EXPECT_EQ(step("selectSingleNode"), "-1: failed to get program_infos node");
  EXPECT_EQ(step("get_childNodes"), "-1: failed to get program_info list");
  EXPECT_EQ(step("get_length"), "-1: failed to get length");
  EXPECT_EQ(step("get_item"), "-1: failed to get program_info node");
  EXPECT_EQ(step("get_attributes", 3), "-1: failed");
  for (int nth = 14; nth <= 19; ++nth) EXPECT_EQ(step("getNamedItem", nth, S_FALSE), "-1: failed");
  EXPECT_EQ(step("selectSingleNode", 2), "-1: failed to get descriptors node");
  EXPECT_EQ(step("get_childNodes", 2), "-1: failed to get descriptors node list");
  EXPECT_EQ(step("get_length", 2), "-1: failed to get descriptors node list length");
  EXPECT_EQ(step("get_item", 2), "-1: failed to get item");
  EXPECT_EQ(step("get_nodeName"), "-1: failed to get node name");
}
