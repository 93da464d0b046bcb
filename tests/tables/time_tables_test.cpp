// The tables in the short form of a section: time and date, time offset, running status.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <iomanip>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kTdt = bits({{8, 0x70, "table_id"},
                         {1, 0, "section_syntax_indicator"},
                         {1, 1, "reserved_future_use"},
                         {2, 3, "reserved"},
                         {12, 5, "section_length"},
                         {16, 45218, "UTC_time, MJD"},
                         {24, 0x124500, "UTC_time, BCD"}});

const char* const kTdtReport =
    "table_id: 112\n"
    "section_length: 5\n"
    "UTC_time: 6/9-1982 12:45:0\n";

const char* const kTdtXml = R"(<tdt table_id="112" section_length="5" UTC_time="6 9 1982 12 45 0" />)";

const Bytes kTot = joined({
    bits({{8, 0x73, "table_id"},
          {1, 0, "section_syntax_indicator"},
          {1, 1, "reserved_future_use"},
          {2, 3, "reserved"},
          {12, 26, "section_length"},
          {16, 51544, "UTC_time, MJD"},
          {24, 0x235959, "UTC_time, BCD"},
          {4, 15, "reserved"},
          {12, 15, "descriptors_loop_length"}}),
    descriptor(0x58, joined({text("DEU"), bits({{6, 0, "country_region_id"},
                                                {1, 1, "reserved"},
                                                {1, 0, "local_time_offset_polarity"},
                                                {16, 0x0100, "local_time_offset"},
                                                {16, 45218, "time_of_change, MJD"},
                                                {24, 0x010000, "time_of_change, BCD"},
                                                {16, 0x0200, "next_time_offset"}})})),
    bits({{32, 0xDEADBEEF, "CRC_32, wrong"}}),
});

const char* const kTotReport =
    "table_id: 115\n"
    "section_length: 26\n"
    "UTC_time: 1/1-2000 23:59:59\n"
    "crc32: 3735928559\n";

const char* const kTotXml =
    R"(<tot table_id="115" section_length="26" UTC_time="1 1 2000 23 59 59" crc32="-559038737">)"
    R"(<descriptors><local_time_offset_descriptor descriptor_id="88" descriptor_length="13"><localtime>)"
    R"(<time country_region_id="0" local_time_offset_polarity="0" country_code="DEU">)"
    R"(<local_time_offset hour="1" minute="0" />)"
    R"(<time_of_change day="6" month="9" year="1982" hour="1" minute="0" second="0" />)"
    R"(<next_time_offset hour="2" minute="0" /></time></localtime></local_time_offset_descriptor>)"
    R"(</descriptors></tot>)";

const Bytes kRst = bits({{8, 0x71, "table_id"},
                         {1, 0, "section_syntax_indicator"},
                         {1, 1, "reserved_future_use"},
                         {2, 3, "reserved"},
                         {12, 18, "section_length"},
                         {16, 0x0401, "transport_stream_id"},
                         {16, 0x1234, "original_network_id"},
                         {16, 0x1001, "service_id"},
                         {16, 0x03E8, "event_id"},
                         {5, 31, "reserved_future_use"},
                         {3, 4, "running_status"},
                         {16, 0xFFFE, "transport_stream_id"},
                         {16, 0x00FF, "original_network_id"},
                         {16, 0x0002, "service_id"},
                         {16, 0x8000, "event_id"},
                         {5, 0, "reserved_future_use"},
                         {3, 7, "running_status"}});

// The high byte of original_network_id serves as that of both.
const char* const kRstReport =
    "table_id: 113\n"
    "section_length: 18\n"
    "transport_stream_id: 1025\n"
    "original_network_id: 4626\n"
    "service_id: 4097\n"
    "event_id: 1000\n"
    "running_status: 4\n"
    "transport_stream_id: 65534\n"
    "original_network_id: 0\n"
    "service_id: 2\n"
    "event_id: 32768\n"
    "running_status: 7\n";

const char* const kRstXml =
    R"(<rst table_id="113" section_length="18"><status_infos>)"
    R"(<status_info transport_stream_id="1025" original_network_id="4626" service_id="4097" event_id="1000")"
    R"( running_status="4" /><status_info transport_stream_id="65534" original_network_id="0" service_id="2")"
    R"( event_id="32768" running_status="7" /></status_infos></rst>)";

const char* const kMismatch = "-1: descriptor start end mismatch";

Bytes tot(const Bytes& descriptors, int claimed = -1, const Bytes& crc = {1, 2, 3, 4}) {
  return short_section(0x73, joined({Bytes(5), loop(descriptors, claimed), crc}));
}

// What all three do with their header; `section` is a good one.
template <class T>
void expect_header_tests(const Bytes& section) {
  EXPECT_EQ(table_ids<T>(section), std::vector<int>{section[0]});

  Bytes other = section;
  other[1] |= 0x80;
  T table;
  EXPECT_EQ(failure_of_parse(other, table, true), "2: ");
  EXPECT_EQ(table.get_table_id(), 0);  // refused before anything is stored
  EXPECT_TRUE(table.get_section_raw_bytes().empty());

  for (const uint8_t high : Bytes{0x04, 0x08, 0x0C}) {  // section_length from 1024 on
    other = section;
    other[1] |= high;
    other.resize(3 + (static_cast<size_t>(other[1] & 0x0F) << 8 | other[2]));
    EXPECT_EQ(failure_of_parse(other, table, true), "2: ");
    EXPECT_EQ(table.get_table_id(), 0);
  }

  other = section;
  other[0] ^= 0xFF;
  EXPECT_EQ(failure_of_parse(other, table, true), "-1: invalid table id");
  EXPECT_EQ(table.get_table_id(), other[0]);
  EXPECT_EQ(table.get_section_length(), 0);
  EXPECT_TRUE(table.get_section_raw_bytes().empty());
  EXPECT_FALSE(table.is_parsed());

  for (int reserved = 0; reserved < 8; ++reserved) {
    other = section;
    other[1] = static_cast<uint8_t>((other[1] & 0x0F) | reserved << 4);
    EXPECT_EQ(failure_of_parse<T>(other), "nothing") << reserved;
  }

  EXPECT_EQ(parsed_table<T>(section, true).get_section_raw_bytes(), section);
  EXPECT_TRUE(parsed_table<T>(section, false).get_section_raw_bytes().empty());
}

const TableCases kTables = {table_case<Tdt>("Tdt", "tdt", kTdt), table_case<Tot>("Tot", "tot", kTot),
                            table_case<Rst>("Rst", "rst", kRst)};

}  // namespace

TEST(Tdt, HasItsFaces) {
  expect_faces<Tdt>(kTdt, kTdtReport, kTdtXml);
  EXPECT_STREQ(Tdt().get_table_id_text(), "time_date_section");
}

TEST(Tdt, ReadsItsTime) {
  const auto table = parsed_table<Tdt>(kTdt);
  EXPECT_EQ(table.get_table_id(), 0x70);
  EXPECT_EQ(table.get_section_length(), 5);
  EXPECT_EQ(table.get_utc_time().get_date_as_text(), "6 9 1982 12 45 0");
  EXPECT_EQ(parsed_table<Tdt>(short_section(0x70, Bytes(5, 0xFF))).get_utc_time().get_date_as_text(),
            "22 4 2038 165 165 165");
  EXPECT_EQ(Tdt().get_utc_time().get_date_as_text(), "1 1 1 1 1 1");
}

TEST(Tdt, LooksAtItsHeader) {
  expect_header_tests<Tdt>(kTdt);
  EXPECT_EQ(failure_of_parse<Tdt>(short_section(0x71, Bytes(5))), "-1: invalid table id");
}

TEST(Tdt, ReadsZerosBehindItsSection) {
  EXPECT_EQ(parsed_table<Tdt>(short_section(0x70, {0xB0, 0xA2, 0x12})).get_utc_time().get_date_as_text(),
            "6 9 1982 12 0 0");
  EXPECT_EQ(parsed_table<Tdt>(short_section(0x70, {})).get_utc_time().get_date_as_text(), "19 -1 1859 0 0 0");
  EXPECT_EQ(parsed_table<Tdt>(short_section(0x70, joined({{0xB0, 0xA2}, Bytes(1021)}))).get_utc_time().year,
            1982);
}

TEST(Tdt, IsEmptiedByReset) {
  auto table = parsed_table<Tdt>(kTdt);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_utc_time().get_date_as_text(), "1 1 1 1 1 1");
  EXPECT_EQ(table.get_table_id(), 0x70);
}

TEST(Tdt, PrintsInTheBaseOfTheStreamUpToItsTime) {
  std::ostringstream stream;
  stream << std::hex << std::uppercase;
  parsed_table<Tdt>(kTdt).dump_state(stream);
  EXPECT_EQ(stream.str(), "table_id: 70\nsection_length: 5\nUTC_time: 6/9-1982 12:45:0\n");
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::dec);
}

TEST(Tdt, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Tdt>(kTdtXml);
  EXPECT_EQ(loaded_table<Tdt>(R"(<t table_id="-1" section_length="x" UTC_time="7 8"><y/></t>)")
                .get_utc_time()
                .get_date_as_text(),
            "7 8 1 1 1 1");
}

TEST(Tot, HasItsFaces) {
  expect_faces<Tot>(kTot, kTotReport, kTotXml);
  EXPECT_STREQ(Tot().get_table_id_text(), "time_offset_section");
}

TEST(Tot, ReadsItsMembersAndAWrongCrc) {
  const auto table = parsed_table<Tot>(kTot);
  EXPECT_EQ(table.get_utc_time().get_date_as_text(), "1 1 2000 23 59 59");
  EXPECT_EQ(table.get_crc32(), 0xDEADBEEFu);
  EXPECT_EQ(table.get_local_time_offset_descriptors().size(), 1u);
}

TEST(Tot, LooksAtItsHeader) {
  expect_header_tests<Tot>(kTot);
}

TEST(Tot, TakesAnEmptyLoop) {
  const auto table = parsed_table<Tot>(tot({}));
  EXPECT_EQ(table.get_crc32(), 0x01020304u);
  EXPECT_EQ(saved(table),
            R"(<d table_id="115" section_length="11" UTC_time="19 -1 1859 0 0 0" crc32="16909060">)"
            R"(<descriptors /></d>)");
}

TEST(Tot, RefusesADescriptorThatOverrunsItsLoop) {
  Tot table;
  EXPECT_EQ(failure_of_parse(tot(joined({descriptor(0x42, {9}), descriptor_claiming(0x80, 2, {7})})), table),
            kMismatch);
  EXPECT_EQ(table.get_stuffing_descriptors().size(), 1u);
  EXPECT_EQ(table.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_crc32(), 0u);
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(failure_of_parse<Tot>(tot({0x80})), kMismatch);
}

TEST(Tot, TakesALoopUpToTheSectionsEnd) {
  // Nothing relates the loop to the section: the CRC is after it, or is read as zeros.
  const Bytes last = descriptor(0x80, {1, 2});
  EXPECT_EQ(parsed_table<Tot>(tot(last)).get_crc32(), 0x01020304u);
  EXPECT_EQ(parsed_table<Tot>(tot(last, 4, {1, 2})).get_crc32(), 0x01020000u);
  EXPECT_EQ(parsed_table<Tot>(tot(last, 4, {})).get_crc32(), 0u);
  EXPECT_EQ(parsed_table<Tot>(tot({}, 0, joined({{9, 8, 7, 6}, Bytes(20)}))).get_crc32(), 0x09080706u);
  // A loop that lies past it does not end with its last descriptor.
  for (const int claimed : {5, 6, 4095})
    EXPECT_EQ(failure_of_parse<Tot>(tot(last, claimed, {})), kMismatch) << claimed;
  EXPECT_EQ(failure_of_parse<Tot>(tot(descriptor_claiming(0x80, 3, {1, 2}), 5, {})), kMismatch);
  // Without the length there is no descriptor.
  for (size_t size = 0; size <= 7; ++size)
    EXPECT_EQ(failure_of_parse<Tot>(short_section(0x73, Bytes(size))), "nothing") << size;
}

TEST(Tot, RefusesADescriptorThatItsClassRefuses) {
  Tot table;
  EXPECT_EQ(failure_of_parse(tot(descriptor(0x58, Bytes(12))), table),
            kMismatch);  // the descriptor's own text
  EXPECT_TRUE(table.get_local_time_offset_descriptors().empty());
  EXPECT_EQ(failure_of_parse<Tot>(tot(descriptor(0x6F, Bytes(4)))), "-1: ");
}

TEST(Tot, HasItsPositionsOnlyIfItKeepsTheSection) {
  const Bytes section = tot(joined({descriptor(0x58, {}), descriptor(0x80, {1, 2}), descriptor(0x42, {})}));
  const auto table = parsed_table<Tot>(section, true);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{7, 9, 13}));
  EXPECT_EQ(table.get_section_raw_bytes()[3 + 13], 0x42);
  EXPECT_TRUE(parsed_table<Tot>(section).get_descriptor_pos().empty());
}

TEST(Tot, DoublesWhatItHoldsWhenItIsNotReset) {
  auto table = parsed_table<Tot>(kTot, true);
  table.Parse(kTot.data(), true);
  EXPECT_EQ(table.get_local_time_offset_descriptors().size(), 2u);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{7, 7}));
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_local_time_offset_descriptors().empty());
  EXPECT_TRUE(table.get_descriptor_pos().empty());
  EXPECT_EQ(table.get_crc32(), 0u);
  EXPECT_EQ(table.get_utc_time().get_date_as_text(), "1 1 1 1 1 1");
  table.Parse(kTot.data(), false);
  EXPECT_EQ(report(table), kTotReport);
}

TEST(Tot, PrintsInTheBaseOfTheStreamUpToItsTime) {
  std::ostringstream stream;
  stream << std::hex << std::setfill('0');
  parsed_table<Tot>(kTot).dump_state(stream);
  EXPECT_EQ(stream.str(),
            "table_id: 73\nsection_length: 1a\nUTC_time: 1/1-2000 23:59:59\ncrc32: 3735928559\n");
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::dec);
}

TEST(Tot, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Tot>(kTotXml);
  const std::string attributes =
      R"(<tot table_id="115" section_length="7" UTC_time="1 1 2000 0 0 0" crc32="-1")";
  EXPECT_EQ(loaded_table<Tot>(attributes + "/>").get_crc32(), 0xFFFFFFFFu);
  EXPECT_EQ(loaded_table<Tot>(attributes + "><descriptors/></tot>").get_crc32(), 0xFFFFFFFFu);
}

TEST(Rst, HasItsFaces) {
  expect_faces<Rst>(kRst, kRstReport, kRstXml);
  EXPECT_STREQ(Rst().get_table_id_text(), "running_status_section");
}

TEST(Rst, ReadsItsMembers) {
  const auto table = parsed_table<Rst>(kRst);
  ASSERT_EQ(table.get_status().size(), 2u);
  const Rst::Status& first = table.get_status()[0];
  EXPECT_EQ(first.get_transport_stream_id(), 0x0401);
  EXPECT_EQ(first.get_original_network_id(), 0x1212);
  EXPECT_EQ(first.get_service_id(), 0x1001);
  EXPECT_EQ(first.get_event_id(), 0x03E8);
  EXPECT_EQ(first.get_running_status(), 4);
  EXPECT_EQ(table.get_status()[1].get_original_network_id(), 0);
  EXPECT_EQ(table.get_status()[1].get_running_status(), 7);

  int length = 40;
  const Rst::Status alone(kRst.data() + 12, length);
  EXPECT_EQ(length, 9);
  EXPECT_EQ(alone.get_transport_stream_id(), 0xFFFE);
}

TEST(Rst, TakesEachBitOfARowForItsField) {
  for (int bit = 0; bit < 72; ++bit) {
    const uint64_t high = bit >= 64 ? 1ULL << (bit - 64) : 0;
    const uint64_t low = bit < 64 ? 1ULL << bit : 0;
    const auto table = parsed_table<Rst>(short_section(0x71, bits({{8, high, "row"}, {64, low, "row"}})));
    ASSERT_EQ(table.get_status().size(), 1u);
    const Rst::Status& s = table.get_status()[0];
    const auto field = [bit](int from, int width) {
      return bit >= from && bit < from + width ? 1 << (bit - from) : 0;
    };
    EXPECT_EQ(s.get_transport_stream_id(), field(56, 16)) << bit;
    EXPECT_EQ(s.get_original_network_id(), field(48, 8) * 0x101) << bit;
    EXPECT_EQ(s.get_service_id(), field(24, 16)) << bit;
    EXPECT_EQ(s.get_event_id(), field(8, 16)) << bit;
    EXPECT_EQ(s.get_running_status(), field(0, 3)) << bit;
  }
}

TEST(Rst, LooksAtItsHeader) {
  expect_header_tests<Rst>(kRst);
}

TEST(Rst, WantsWholeRows) {
  for (size_t size = 0; size <= 1023; ++size) {
    Rst table;
    EXPECT_EQ(failure_of_parse(short_section(0x71, Bytes(size)), table),
              size % 9 == 0 ? "nothing" : kMismatch)
        << size;
    EXPECT_EQ(table.get_status().size(), size / 9) << size;
    EXPECT_EQ(table.is_parsed(), size % 9 == 0) << size;
  }
}

TEST(Rst, DoublesWhatItHoldsWhenItIsNotReset) {
  auto table = parsed_table<Rst>(kRst);
  table.Parse(kRst.data(), false);
  EXPECT_EQ(table.get_status().size(), 4u);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_status().empty());
  table.Parse(kRst.data(), false);
  EXPECT_EQ(report(table), kRstReport);
}

TEST(Rst, LeavesTheBaseToTheStream) {
  std::ostringstream stream;
  stream << std::hex;
  const auto table = parsed_table<Rst>(kRst);
  table.get_status()[0].dump_state(stream);
  EXPECT_EQ(stream.str(),
            "transport_stream_id: 401\noriginal_network_id: 1212\nservice_id: 1001\nevent_id: 3e8\n"
            "running_status: 4\n");
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
}

TEST(Rst, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Rst>(kRstXml);
  const std::string attributes = R"(<rst table_id="113" section_length="0")";
  EXPECT_EQ(failure([&] { loaded_table<Rst>(attributes + "/>"); }), "-1: failed to get program_infos node");
  EXPECT_EQ(saved(loaded_table<Rst>(attributes + "><status_infos/></rst>"), "rst"),
            attributes + "><status_infos /></rst>");
}

TEST(ShortSections, AreNotReadBehindTheBytesThatThereAre) {
  for (const Bytes& section : {kTdt, kTot, kRst})
    for (size_t size = 0; size < section.size(); ++size) {
      const Bytes cut(section.begin(), section.begin() + static_cast<ptrdiff_t>(size));
      const std::string expected = "-1: section is shorter than its section_length";
      EXPECT_EQ(failure_of_parse<Tdt>(cut), expected);
      EXPECT_EQ(failure_of_parse<Tot>(cut), expected);
      EXPECT_EQ(failure_of_parse<Rst>(cut), expected);
    }
}

TEST(ShortSections, SayWhichStepOfTheirLoadFails) {
  const auto tdt = [](auto... arguments) { return failure_of_step<Tdt>(arguments...); };
  const auto tot = [](auto... arguments) { return failure_of_step<Tot>(arguments...); };
  const auto rst = [](auto... arguments) { return failure_of_step<Rst>(arguments...); };
  EXPECT_EQ(tdt("none") + tot("none") + rst("none"), "nothingnothingnothing");
  const std::string no_map = "-1: failed to get attribute map";
  EXPECT_EQ(tdt("get_attributes"), no_map);
  EXPECT_EQ(tot("get_attributes"), no_map);
  EXPECT_EQ(rst("get_attributes"), no_map);
  const std::string no_length = "-1: failed to get section_length";
  EXPECT_EQ(tdt("getNamedItem", 2, S_FALSE), no_length);
  EXPECT_EQ(tot("getNamedItem", 2, S_FALSE), no_length);
  EXPECT_EQ(rst("getNamedItem", 2, S_FALSE), no_length);

  EXPECT_EQ(tdt("get_attributes", 2), "-1: failed");
  EXPECT_EQ(tdt("getNamedItem", 3, S_FALSE), "-1: failed");

  EXPECT_EQ(tot("get_attributes", 2), "-1: failed");
  EXPECT_EQ(tot("getNamedItem", 3, S_FALSE), "-1: failed");
  EXPECT_EQ(tot("getNamedItem", 4, S_FALSE), "-1: failed to get crc32");
  EXPECT_EQ(tot("selectSingleNode"), "-1: failed to get descriptors node");
  EXPECT_EQ(tot("get_childNodes"), "-1: failed to get descriptors node list");
  EXPECT_EQ(tot("get_length"), "-1: failed to get descriptors node list length");
  EXPECT_EQ(tot("get_item"), "-1: failed to get item");
  EXPECT_EQ(tot("get_nodeName"), "-1: failed to get node name");

  EXPECT_EQ(rst("selectSingleNode"), "-1: failed to get program_infos node");
  EXPECT_EQ(rst("get_childNodes"), "-1: failed to get program_info list");
  EXPECT_EQ(rst("get_length"), "-1: failed to get length");
  EXPECT_EQ(rst("get_item"), "-1: failed to get program_info node");
  EXPECT_EQ(rst("get_attributes", 3), "-1: failed");
  for (int nth = 3; nth <= 7; ++nth) EXPECT_EQ(rst("getNamedItem", nth, S_FALSE), "-1: failed");
}
