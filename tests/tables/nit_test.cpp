// The network information table.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/nit.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSatellite = descriptor(0x43, bits({{32, 0x01175725, "frequency"},
                                                {16, 0x0192, "orbital_position"},
                                                {1, 1, "west_east_flag"},
                                                {2, 2, "polarization"},
                                                {2, 1, "roll_off"},
                                                {1, 1, "modulation_system"},
                                                {2, 2, "modulation_type"},
                                                {28, 0x0275000, "symbol_rate"},
                                                {4, 15, "FEC_inner"}}));

const Bytes kSection = joined({
    bits({{8, 0x40, "table_id"},
          {1, 1, "section_syntax_indicator"},
          {1, 0, "reserved_future_use"},
          {2, 3, "reserved"},
          {12, 58, "section_length"},
          {16, 0x0085, "network_id"},
          {2, 3, "reserved"},
          {5, 3, "version_number"},
          {1, 1, "current_next_indicator"},
          {8, 0, "section_number"},
          {8, 0, "last_section_number"},
          {4, 15, "reserved_future_use"},
          {12, 8, "network_descriptors_length"}}),
    descriptor(0x40, text("Kan\xE4le")),
    bits({{4, 15, "reserved_future_use"}, {12, 37, "transport_stream_loop_length"}}),
    bits({{16, 0x0401, "transport_stream_id"},
          {16, 0x0002, "original_network_id"},
          {4, 15, "reserved_future_use"},
          {12, 25, "transport_descriptors_length"}}),
    descriptor(0x41, {0x10, 0x01, 0x01}),
    descriptor(0x65, {0x41}),
    kSatellite,
    descriptor(0x83, {0xFC, 0x01}),
    bits({{16, 0xFFFE, "transport_stream_id"},
          {16, 0x0000, "original_network_id"},
          {4, 15, "reserved_future_use"},
          {12, 0, "transport_descriptors_length"}}),
    bits({{32, 0xBB98C126, "CRC_32"}}),
});

const char* const kReport =
    "table name: network_information_section - actual_transport_network\n"
    "table_id 40\n"
    "section_length 003A\n"
    "context_id 0085\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 BB98C126\n"
    "stream_id 401\n"
    "original_network_id 2\n"
    "descriptor_tag: 65 User Private\n"
    "data:\n"
    "41                                               : A\n"
    "descriptor_tag: 43 satellite_delivery_system_descriptor\n"
    "frequency 11.7572\n"
    "orbital_position 19.2\n"
    "west_east_flag 1\n"
    "polarization 2\n"
    "symbol_rate 27.5\n"
    "FEC_inner 15\n"
    "descriptor_tag: 41 service_list_descriptor\n"
    "service_id 1001\n"
    "service_type 1\n"
    "stream_id FFFE\n"
    "original_network_id 0\n";

const char* const kXml =
    R"(<nit table_id="64" syntax_indicator="1" section_length="58" context_id="133" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-1147616986">)"
    R"(<stream_infos><stream stream_id="1025" network_id="2"><descriptors>)"
    R"(<service_list_descriptor descriptor_id="65" descriptor_length="3"><servicelist>)"
    R"(<service service_id="4097" service_type="1" /></servicelist></service_list_descriptor>)"
    R"(<satellite_delivery_system_descriptor descriptor_id="67" descriptor_length="11" frequency="11.7572")"
    R"( orbital_position="19.2" west_east_flag="1" polarization="2" roll_off="1" modulation_system="1")"
    R"( modulation_type="2" symbol_rate="27.5" FEC_inner="15" />)"
    R"(<user_private_descriptor descriptor_id="131" descriptor_length="2" private_data="fc01" />)"
    R"(<general_descriptor descriptor_id="101" descriptor_length="1" private_data="41" />)"
    R"(</descriptors></stream>)"
    R"(<stream stream_id="65534" network_id="0"><descriptors /></stream></stream_infos>)"
    R"(<descriptors><network_name_descriptor descriptor_id="64" descriptor_length="6" network_name="Kan)"
    "\xC3\xA4le\" /></descriptors></nit>";

const char* const kMismatch = "-1: descriptor start end mismatch";

Bytes nit(const Bytes& descriptors, const Bytes& rows, int claimed = -1) {
  return long_section(0x40, joined({loop(descriptors), loop(rows, claimed)}));
}

const TableCases kTables = {table_case<Nit>("Nit", "nit", kSection)};

}  // namespace

TEST(Nit, HasItsFaces) {
  expect_faces<Nit>(kSection, kReport, kXml);
}

TEST(Nit, ReadsItsMembers) {
  const auto table = parsed_table<Nit>(kSection);
  EXPECT_EQ(table.get_network_id(), 0x0085);
  EXPECT_EQ(table.get_network_name_descriptors().size(), 1u);
  const auto& rows = table.get_stream_infos();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].get_transport_stream_id(), 0x0401);
  EXPECT_EQ(rows[0].get_original_network_id(), 0x0002);
  EXPECT_EQ(rows[0].get_satellite_delivery_system_descriptors().size(), 1u);
  EXPECT_EQ(rows[0].get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(rows[1].get_transport_stream_id(), 0xFFFE);
  EXPECT_EQ(rows[1].get_original_network_id(), 0);
  EXPECT_TRUE(Nit().get_stream_infos().empty());
}

TEST(Nit, HasTwoTableIds) {
  EXPECT_EQ(table_ids<Nit>(kSection), (std::vector<int>{0x40, 0x41}));
  Bytes section = kSection;
  for (int id = 0; id < 256; ++id) {
    section[0] = static_cast<uint8_t>(id);
    repair_crc(section);
    Nit table;
    failure_of_parse(section, table);
    EXPECT_STREQ(table.get_table_id_text(),
                 id == 0x40   ? "network_information_section - actual_transport_network"
                 : id == 0x41 ? "network_information_section - other_transport_network"
                              : "ERROR");
  }
}

TEST(Nit, WantsTheSyntaxIndicatorAndTakesAnyReservedBits) {
  expect_syntax_indicator_and_any_reserved_bits<Nit>(0x40, {0xF0, 0, 0xF0, 0});
  for (int reserved = 0; reserved < 16; ++reserved) {  // those of the body too
    const auto high = static_cast<uint8_t>(reserved << 4);
    EXPECT_EQ(failure_of_parse<Nit>(long_section(0x40, {high, 0, high, 0})), "nothing");
  }
}

TEST(Nit, IsEmptyWithBothLengthsZero) {
  const auto table = parsed_table<Nit>(nit({}, {}));
  EXPECT_EQ(table.get_section_length(), 13);
  EXPECT_TRUE(table.get_stream_infos().empty());
  const std::string xml = saved(table);
  EXPECT_EQ(xml.substr(xml.find('>')), "><stream_infos /><descriptors /></d>");
}

TEST(Nit, RefusesALoopThatIsTooShortForAnyRow) {
  for (size_t size = 1; size < 6; ++size) {
    Nit table;
    EXPECT_EQ(failure_of_parse(nit({}, Bytes(size)), table), "-1: too little data") << size;
    EXPECT_TRUE(table.get_stream_infos().empty());
  }
}

TEST(Nit, OffersEachRowTheWholeLoop) {
  // Five bytes after a row: they and the CRC make another row, and that ends past the loop.
  Bytes rows = joined({stream_row(1, 2, {}), Bytes(5)});
  Nit table;
  EXPECT_EQ(failure_of_parse(nit({}, rows), table), kMismatch);
  ASSERT_EQ(table.get_stream_infos().size(), 2u);
  EXPECT_EQ(table.get_stream_infos()[1].get_transport_stream_id(), 0);

  // More bytes after the loop do not save it either.
  rows = stream_row(3, 4, {});
  const Bytes body = joined({loop({}), loop(joined({stream_row(1, 2, {}), rows}), 11)});
  table = {};
  EXPECT_EQ(failure_of_parse(long_section(0x40, body), table), kMismatch);
  ASSERT_EQ(table.get_stream_infos().size(), 2u);
  EXPECT_EQ(table.get_stream_infos()[1].get_transport_stream_id(), 3);
}

TEST(Nit, FindsARowThatOverrunsItsLoop) {
  for (const int claimed : {4, 202, 4095}) {
    Nit table;
    EXPECT_EQ(
        failure_of_parse(nit({}, stream_row(1, 2, descriptor_claiming(0x80, 200, {7}), claimed)), table),
        kMismatch)
        << claimed;
    ASSERT_EQ(table.get_stream_infos().size(), 1u);
    EXPECT_EQ(table.get_stream_infos()[0].get_user_private_descriptors().size(), 1u);
  }
}

TEST(Nit, DoesNotNoticeADescriptorThatOverrunsItsLoop) {
  // In the table's loop: the rows begin where the length says.
  auto table = parsed_table<Nit>(nit({0x80}, stream_row(0x1122, 3, {})));
  ASSERT_EQ(table.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_user_private_descriptors()[0].get_descriptor_length(), 0xF0);
  ASSERT_EQ(table.get_stream_infos().size(), 1u);
  EXPECT_EQ(table.get_stream_infos()[0].get_transport_stream_id(), 0x1122);
  // In a row's loop: the next row begins where the length says.
  table = parsed_table<Nit>(nit({}, joined({stream_row(1, 2, {0x80}), stream_row(0x0344, 5, {})})));
  ASSERT_EQ(table.get_stream_infos().size(), 2u);
  ASSERT_EQ(table.get_stream_infos()[0].get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_stream_infos()[0].get_user_private_descriptors()[0].get_private_data(),
            (Bytes{0x44, 0, 5}));
  EXPECT_EQ(table.get_stream_infos()[1].get_transport_stream_id(), 0x0344);
}

TEST(Nit, TakesALoopThatEndsBeforeTheSection) {
  // What is between the loop and the CRC is not looked at.
  const auto table =
      parsed_table<Nit>(long_section(0x40, joined({loop({}), loop(stream_row(1, 2, {})), Bytes(7, 0xFF)})));
  EXPECT_EQ(table.get_stream_infos().size(), 1u);
}

TEST(Nit, ReadsNoLoopPastTheSection) {
  // The table's loop reaches up to the end of the CRC and past it: the length of the rows is 0. Where it ends
  // in the CRC, that length is in part of the CRC.
  for (const int claimed : {4, 5, 200, 4095})
    EXPECT_TRUE(parsed_table<Nit>(long_section(0x40, loop({}, claimed))).get_stream_infos().empty());
  EXPECT_EQ(failure_of_parse<Nit>(long_section(0x40, loop({}, 3))), kMismatch);
  // The rows' loop does.
  for (const int claimed : {202, 203, 4095})
    EXPECT_EQ(
        failure_of_parse<Nit>(nit({}, stream_row(1, 2, descriptor_claiming(0x80, 200, {}), 195), claimed)),
        kMismatch)
        << claimed;
}

TEST(Nit, RefusesADescriptorThatItsClassRefuses) {
  // Told by a code alone.
  Nit table;
  EXPECT_EQ(failure_of_parse(nit(joined({descriptor(0x40, {}), descriptor(0x62, Bytes(6))}), {}), table),
            "0: ");
  EXPECT_EQ(table.get_network_name_descriptors().size(), 1u);
  EXPECT_TRUE(table.get_frequency_list_descriptors().empty());
  EXPECT_FALSE(table.is_parsed());

  table = {};
  const Bytes rows = joined({stream_row(1, 2, {}), stream_row(3, 4, descriptor(0x62, Bytes(6)))});
  EXPECT_EQ(failure_of_parse(nit({}, rows), table), "0: ");
  EXPECT_EQ(table.get_stream_infos().size(), 1u);
}

TEST(Nit, HasItsPositionsOnlyIfItKeepsTheSection) {
  const auto table = parsed_table<Nit>(kSection, true);
  EXPECT_EQ(table.get_descriptor_pos(), std::vector<int>{2});
  EXPECT_EQ(table.get_stream_infos()[0].get_descriptor_pos(), (std::vector<int>{18, 23, 26, 39}));
  EXPECT_TRUE(table.get_stream_infos()[1].get_descriptor_pos().empty());
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(2)[0], 0x40);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(26)[0], 0x43);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(39)[0], 0x83);
  const auto other = parsed_table<Nit>(kSection);
  EXPECT_TRUE(other.get_descriptor_pos().empty());
  EXPECT_TRUE(other.get_stream_infos()[0].get_descriptor_pos().empty());
}

TEST(Nit, KeepsItsOwnDescriptorsThroughAReset) {
  auto table = parsed_table<Nit>(kSection, true);
  table.Parse(kSection.data(), true);
  EXPECT_EQ(table.get_stream_infos().size(), 4u);
  EXPECT_EQ(table.get_network_name_descriptors().size(), 2u);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_stream_infos().empty());
  EXPECT_EQ(table.get_network_name_descriptors().size(), 2u);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{2, 2}));
  table.Parse(kSection.data(), false);
  EXPECT_EQ(table.get_network_name_descriptors().size(), 3u);
  EXPECT_EQ(report(table), kReport);
}

TEST(Nit, PrintsTheDescriptorsOfSomeClassesOnly) {
  const Bytes terrestrial = descriptor(0x5A, Bytes(11));
  const auto table = parsed_table<Nit>(
      nit(terrestrial, stream_row(0x2A, 0x3B, joined({terrestrial, descriptor(0x80, {1})}))));
  EXPECT_EQ(table.get_stream_infos()[0].get_terrestrial_delivery_system_descriptors().size(), 1u);
  const std::string text = report(table);
  EXPECT_EQ(text.substr(text.find("stream_id")), "stream_id 2A\noriginal_network_id 3B\n");
}

TEST(Nit, LeavesTheStreamInTheBaseOfItsLastLine) {
  // Behind a satellite delivery system descriptor that is decimal, also for the row that follows.
  const auto table =
      parsed_table<Nit>(nit({}, joined({stream_row(0x1F, 1, kSatellite), stream_row(0x2F, 1, {})})));
  std::ostringstream stream;
  table.dump_state(stream);
  EXPECT_NE(stream.str().find("stream_id 1F\n"), std::string::npos);
  EXPECT_NE(stream.str().find("stream_id 47\n"), std::string::npos);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::dec);
  // The next report begins anew.
  parsed_table<Nit>(nit({}, stream_row(0x3F, 1, {}))).dump_state(stream);
  EXPECT_NE(stream.str().find("stream_id 3F\n"), std::string::npos);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
  // A row by itself takes the base that the stream has.
  EXPECT_EQ(report(table.get_stream_infos()[1]), "stream_id 47\noriginal_network_id 1\n");
}

TEST(Nit, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Nit>(kXml);
  EXPECT_EQ(failure_of_load<Nit>(kXml, R"(<stream stream_id="65534" network_id="0"><descriptors />)",
                                 R"(<stream stream_id="65534" network_id="0">)"),
            "nothing");
  const std::string header = std::string(kXml, std::string(kXml).find('>'));
  const auto load = [&header](const std::string& rest, size_t rows) {
    const auto document = xml::Document::from_text(header + rest);
    Nit table;
    const std::string text = failure([&] { table.ParseDOM(document.root()); });
    EXPECT_EQ(table.get_stream_infos().size(), rows);
    EXPECT_EQ(table.is_parsed(), text == "nothing");
    return text;
  };
  EXPECT_EQ(load("/>", 0), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><descriptors/></nit>", 0), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><stream_infos><a stream_id='1' network_id='2'><descriptors/></a></stream_infos></nit>", 1),
            "nothing");
  EXPECT_EQ(load("><descriptors/><stream_infos/></nit>", 0), "nothing");
}

TEST(Nit, SaysWhichStepOfItsLoadFails) {
  const auto step = [](auto... arguments) { return failure_of_step<Nit>(arguments...); };
  EXPECT_EQ(step("none"), "nothing");
  EXPECT_EQ(step("get_attributes"), "-1: failed to get attribute map");
  EXPECT_EQ(step("getNamedItem", 9, S_FALSE), "-1: failed to get crc32");
  EXPECT_EQ(step("selectSingleNode"), "-1: failed to get program_infos node");
  EXPECT_EQ(step("get_childNodes"), "-1: failed to get program_info list");
  EXPECT_EQ(step("get_length"), "-1: failed to get length");
  EXPECT_EQ(step("get_item"), "-1: failed to get program_info node");
  EXPECT_EQ(step("get_attributes", 3), "-1: failed");
  for (const int nth : {10, 11}) EXPECT_EQ(step("getNamedItem", nth, S_FALSE), "-1: failed");
  for (const int nth : {2, 3}) {  // the loop of the row, then that of the table
    EXPECT_EQ(step("selectSingleNode", nth), "-1: failed to get descriptors node");
    EXPECT_EQ(step("get_childNodes", nth), "-1: failed to get descriptors node list");
    EXPECT_EQ(step("get_length", nth), "-1: failed to get descriptors node list length");
    EXPECT_EQ(step("get_item", nth), "-1: failed to get item");
    EXPECT_EQ(step("get_nodeName", nth - 1), "-1: failed to get node name");
  }
}
