// The bouquet association table, and where it differs from that of the network.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/bat.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSection = joined({
    bits({{8, 0x4A, "table_id"},
          {1, 1, "section_syntax_indicator"},
          {1, 0, "reserved_future_use"},
          {2, 3, "reserved"},
          {12, 40, "section_length"},
          {16, 0x7001, "bouquet_id"},
          {2, 3, "reserved"},
          {5, 3, "version_number"},
          {1, 1, "current_next_indicator"},
          {8, 0, "section_number"},
          {8, 0, "last_section_number"},
          {4, 15, "reserved_future_use"},
          {12, 7, "bouquet_descriptors_length"}}),
    descriptor(0x47, text("Basic")),
    bits({{4, 15, "reserved_future_use"}, {12, 20, "transport_stream_loop_length"}}),
    bits({{16, 0x0401, "transport_stream_id"},
          {16, 0x0002, "original_network_id"},
          {4, 15, "reserved_future_use"},
          {12, 8, "transport_descriptors_length"}}),
    descriptor(0x41, {0x10, 0x01, 0x01}),
    descriptor(0x65, {0x41}),
    bits({{16, 0xFFFE, "transport_stream_id"},
          {16, 0x0000, "original_network_id"},
          {4, 15, "reserved_future_use"},
          {12, 0, "transport_descriptors_length"}}),
    bits({{32, 0x73F6EDF8, "CRC_32"}}),
});

// Of the rows' descriptors only those without a class are shown.
const char* const kReport =
    "table name: bouquet_association_section\n"
    "table_id 4A\n"
    "section_length 0028\n"
    "context_id 7001\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 73F6EDF8\n"
    "stream_id 401\n"
    "original_network_id 2\n"
    "descriptor_tag: 65 User Private\n"
    "data:\n"
    "41                                               : A\n"
    "stream_id FFFE\n"
    "original_network_id 0\n";

const char* const kXml =
    R"(<bat table_id="74" syntax_indicator="1" section_length="40" context_id="28673" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="1945562616">)"
    R"(<infos><stream_info stream_id="1025" network_id="2"><descriptors>)"
    R"(<service_list_descriptor descriptor_id="65" descriptor_length="3"><servicelist>)"
    R"(<service service_id="4097" service_type="1" /></servicelist></service_list_descriptor>)"
    R"(<general_descriptor descriptor_id="101" descriptor_length="1" private_data="41" />)"
    R"(</descriptors></stream_info>)"
    R"(<stream_info stream_id="65534" network_id="0"><descriptors /></stream_info></infos>)"
    R"(<descriptors><bouquet_descriptor descriptor_id="71" descriptor_length="5" bouquet_name="Basic" />)"
    R"(</descriptors></bat>)";

const char* const kMismatch = "-1: descriptor start end mismatch";

Bytes bat(const Bytes& descriptors, const Bytes& rows, int claimed = -1) {
  return long_section(0x4A, joined({loop(descriptors), loop(rows, claimed)}));
}

const TableCases kTables = {table_case<Bat>("Bat", "bat", kSection)};

}  // namespace

TEST(Bat, HasItsFaces) {
  expect_faces<Bat>(kSection, kReport, kXml);
}

TEST(Bat, ReadsItsMembers) {
  const auto table = parsed_table<Bat>(kSection);
  EXPECT_EQ(table.get_bouquet_id(), 0x7001);
  EXPECT_EQ(table.get_bouquet_name_descriptors().size(), 1u);
  const auto& rows = table.get_stream_infos();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].get_transport_stream_id(), 0x0401);
  EXPECT_EQ(rows[0].get_original_network_id(), 0x0002);
  EXPECT_EQ(rows[0].get_service_list_descriptors().size(), 1u);
  EXPECT_EQ(rows[0].get_general_descriptors().size(), 1u);
  EXPECT_EQ(rows[1].get_transport_stream_id(), 0xFFFE);
  EXPECT_EQ(rows[1].get_original_network_id(), 0);
}

TEST(Bat, HasATableIdOfItsOwn) {
  EXPECT_EQ(table_ids<Bat>(kSection), std::vector<int>{0x4A});
  Bytes section = kSection;
  for (int id = 0; id < 256; ++id) {
    section[0] = static_cast<uint8_t>(id);
    repair_crc(section);
    Bat table;
    failure_of_parse(section, table);
    EXPECT_STREQ(table.get_table_id_text(), id == 0x4A ? "bouquet_association_section" : "ERROR");
  }
}

TEST(Bat, WantsTheSyntaxIndicatorAndTakesAnyReservedBits) {
  expect_syntax_indicator_and_any_reserved_bits<Bat>(0x4A, Bytes(4));
}

TEST(Bat, IsEmptyWithBothLengthsZero) {
  const auto table = parsed_table<Bat>(bat({}, {}));
  EXPECT_TRUE(table.get_stream_infos().empty());
  const std::string xml = saved(table);
  EXPECT_EQ(xml.substr(xml.find('>')), "><infos /><descriptors /></d>");
}

TEST(Bat, OffersEachRowWhatIsLeftOfTheLoop) {
  for (size_t size = 1; size < 6; ++size) {
    EXPECT_EQ(failure_of_parse<Bat>(bat({}, Bytes(size))), "-1: too little data") << size;
    Bat table;
    EXPECT_EQ(failure_of_parse(bat({}, joined({stream_row(1, 2, {}), Bytes(size)})), table),
              "-1: too little data")
        << size;
    EXPECT_EQ(table.get_stream_infos().size(), 1u);
  }
}

TEST(Bat, FindsARowThatOverrunsItsLoop) {
  for (const int claimed : {4, 202, 4095}) {
    Bat table;
    EXPECT_EQ(
        failure_of_parse(bat({}, stream_row(1, 2, descriptor_claiming(0x80, 200, {7}), claimed)), table),
        kMismatch)
        << claimed;
    ASSERT_EQ(table.get_stream_infos().size(), 1u);
    EXPECT_EQ(table.get_stream_infos()[0].get_user_private_descriptors().size(), 1u);
  }
}

TEST(Bat, DoesNotNoticeADescriptorThatOverrunsItsLoop) {
  auto table = parsed_table<Bat>(bat({0x80}, stream_row(0x1122, 3, {})));
  EXPECT_EQ(table.get_user_private_descriptors().size(), 1u);
  ASSERT_EQ(table.get_stream_infos().size(), 1u);
  EXPECT_EQ(table.get_stream_infos()[0].get_transport_stream_id(), 0x1122);
  table = parsed_table<Bat>(bat({}, joined({stream_row(1, 2, {0x80}), stream_row(0x0344, 5, {})})));
  ASSERT_EQ(table.get_stream_infos().size(), 2u);
  EXPECT_EQ(table.get_stream_infos()[0].get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_stream_infos()[1].get_transport_stream_id(), 0x0344);
}

TEST(Bat, ReadsNoLoopPastTheSection) {
  // The length of the rows then lies past the section, and is 0, or is in part of the CRC.
  for (const int claimed : {4, 5, 200, 4095})
    EXPECT_TRUE(parsed_table<Bat>(long_section(0x4A, loop({}, claimed))).get_stream_infos().empty());
  EXPECT_EQ(failure_of_parse<Bat>(long_section(0x4A, loop({}, 3))), kMismatch);
  for (const int claimed : {202, 203, 4095})
    EXPECT_EQ(
        failure_of_parse<Bat>(bat({}, stream_row(1, 2, descriptor_claiming(0x80, 200, {}), 195), claimed)),
        kMismatch)
        << claimed;
}

TEST(Bat, RefusesADescriptorThatItsClassRefuses) {
  Bat table;
  const Bytes rows = joined({stream_row(1, 2, {}), stream_row(3, 4, descriptor(0x41, Bytes(4)))});
  EXPECT_EQ(failure_of_parse(bat(descriptor(0x47, {}), rows), table), "-1: descriptor length mismatch");
  EXPECT_EQ(table.get_bouquet_name_descriptors().size(), 1u);
  EXPECT_EQ(table.get_stream_infos().size(), 1u);
  EXPECT_FALSE(table.is_parsed());
}

TEST(Bat, HasPositionsOnlyIfItKeepsTheSection) {
  const auto table = parsed_table<Bat>(kSection, true);
  EXPECT_EQ(table.get_descriptor_pos(), std::vector<int>{2});
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(2)[0], 0x47);
  EXPECT_TRUE(parsed_table<Bat>(kSection).get_descriptor_pos().empty());
  EXPECT_EQ(table.get_stream_infos()[0].get_descriptor_pos(), (std::vector<int>{17, 22}));
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(22)[0], 0x65);
  EXPECT_TRUE(parsed_table<Bat>(kSection).get_stream_infos()[0].get_descriptor_pos().empty());
}

TEST(Bat, KeepsItsOwnDescriptorsThroughAReset) {
  auto table = parsed_table<Bat>(kSection);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(table.get_stream_infos().size(), 4u);
  EXPECT_EQ(table.get_bouquet_name_descriptors().size(), 2u);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_stream_infos().empty());
  EXPECT_EQ(table.get_bouquet_name_descriptors().size(), 2u);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(table.get_bouquet_name_descriptors().size(), 3u);
}

TEST(Bat, LeavesTheStreamInHexadecimal) {
  // The satellite delivery system descriptor, which turns to decimal, is not shown here.
  const auto table = parsed_table<Bat>(
      bat({}, joined({stream_row(0x1F, 1, descriptor(0x43, Bytes(11))), stream_row(0x2F, 1, {})})));
  std::ostringstream stream;
  table.dump_state(stream);
  const std::string text = stream.str();
  EXPECT_EQ(text.substr(text.find("stream_id")),
            "stream_id 1F\noriginal_network_id 1\nstream_id 2F\noriginal_network_id 1\n");
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
}

TEST(Bat, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Bat>(kXml);
  EXPECT_EQ(failure_of_load<Bat>(kXml, R"(network_id="0"><descriptors />)", R"(network_id="0">)"), "nothing");
  const std::string header = std::string(kXml, std::string(kXml).find('>'));
  const auto load = [&header](const std::string& rest) {
    return failure([&] { loaded_table<Bat>(header + rest); });
  };
  EXPECT_EQ(load("/>"), "-1: failed to get infos node");
  EXPECT_EQ(load("><stream_infos/><descriptors/></bat>"), "-1: failed to get infos node");
  EXPECT_EQ(load("><infos/></bat>"), "nothing");
  EXPECT_EQ(load("><descriptors/><infos/></bat>"), "nothing");
}

TEST(Bat, SaysWhichStepOfItsLoadFails) {
  const auto step = [](auto... arguments) { return failure_of_step<Bat>(arguments...); };
  EXPECT_EQ(step("none"), "nothing");
  EXPECT_EQ(step("get_attributes"), "-1: failed to get attribute map");
  EXPECT_EQ(step("getNamedItem", 9, S_FALSE), "-1: failed to get crc32");
  EXPECT_EQ(step("selectSingleNode"), "-1: failed to get infos node");
  EXPECT_EQ(step("selectSingleNode", 1, S_FALSE), "-1: failed to get infos node");
  EXPECT_EQ(step("get_childNodes"), "-1: failed to get program_info list");
  EXPECT_EQ(step("get_length"), "-1: failed to get length");
  EXPECT_EQ(step("get_item"), "-1: failed to get program_info node");
  EXPECT_EQ(step("get_attributes", 3), "-1: failed");
  for (const int nth : {10, 11}) EXPECT_EQ(step("getNamedItem", nth, S_FALSE), "-1: failed");
  for (const int nth : {2, 3}) {
    EXPECT_EQ(step("selectSingleNode", nth), "-1: failed to get descriptors node");
    EXPECT_EQ(step("get_childNodes", nth), "-1: failed to get descriptors node list");
    EXPECT_EQ(step("get_length", nth), "-1: failed to get descriptors node list length");
    EXPECT_EQ(step("get_item", nth), "-1: failed to get item");
    EXPECT_EQ(step("get_nodeName", nth - 1), "-1: failed to get node name");
  }
}
