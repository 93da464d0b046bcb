// The IP/MAC notification table: dispatch by tag, and sections by their three faces.

#include "tests/appsignal/appsignal_helpers.h"
#include "tests/support/table_cases.h"

#include <iterator>

#include <quillon/appsignal/int.h>
#include <quillon/appsignal/int_classes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kName = descriptor(0x0C, text("engAb"));
const Bytes kReservedTag = descriptor(0x65, {1});
const Bytes kClassless = descriptor(0x0B, {});
const Bytes kUserPrivate = descriptor(0x80, {'A'});
const Bytes kSlash = descriptor(0x0F, bits({{32, 0xC0A80000, "IPv4_addr"}, {8, 16, "IPv4_slash_mask"}}));
const Bytes kLocation = descriptor(0x13, bits({{16, 1, "network_id"},
                                               {16, 2, "original_network_id"},
                                               {16, 3, "transport_stream_id"},
                                               {16, 4, "service_id"},
                                               {8, 5, "component_tag"}}));
const Bytes kSpecifier = descriptor(0x5F, {0, 0, 0, 0x28});
const Bytes kRefused = descriptor(0x0F, Bytes(4));

const char* const kPlatformMismatch = "-1: Int platform_descriptor_loop() descriptor start end mismatch";
const char* const kTargetMismatch = "-1: Int target_descriptor_loop() descriptor start end mismatch";
const char* const kOperationalMismatch =
    "-1: Int operational_descriptor_loop() descriptor start end mismatch";
const char* const kMismatch = "-1: descriptor start end mismatch";

// A reserved nibble and a length of 12 bits; -1 for the length of the bytes.
Bytes with_length(const Bytes& bytes, int length = -1) {
  const uint64_t told = length < 0 ? bytes.size() : static_cast<uint64_t>(length);
  return joined({bits({{4, 0xF, "reserved"}, {12, told, "length"}}), bytes});
}

// platform_id and processing_order.
Bytes head() {
  return bits({{24, 0x00A00B, "platform_id"}, {8, 7, "processing_order"}});
}

const Bytes kPlatform = joined({kName, kReservedTag, kClassless, kUserPrivate});
const Bytes kOperational = joined({kLocation, kSpecifier});

// The lengths of the table, -1 where they are right.
struct Lengths {
  int platform = -1;
  int target = -1;       // of the first pair
  int operational = -1;  // of the first pair
};

Bytes body(const Lengths& lengths = {}) {
  return joined({head(), with_length(kPlatform, lengths.platform), with_length(kSlash, lengths.target),
                 with_length(kOperational, lengths.operational), with_length({}), with_length({})});
}

Bytes section(const Bytes& table_body) {
  return long_section(0x4C, table_body, {.extension = 0x01A5});
}

const Bytes kSection = section(body());

const std::string kReport =
    "table name: int\n"
    "table_id 4C\n"
    "section_length 003E\n"
    "context_id 01A5\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 DD547267\n";

const std::string kXml =
    R"(<int table_id="76" syntax_indicator="1" section_length="62" context_id="421" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-581668249")"
    R"( action_type="1" platform_id_hash="165" platform_id="40971" processing_order="7")"
    R"( platform_descriptor_loop_length="15"><targetoperationaldescriptors>)"
    R"(<targetoperationaldescriptors><targetdescriptorloop target_descriptor_loop_length="7"><descriptors>)"
    R"(<target_IP_slash_descriptor descriptor_id="15" descriptor_length="5"><slash>)"
    R"(<slash IPv4_addr="c0a80000" IPv4_slash_mask="16" /></slash></target_IP_slash_descriptor>)"
    R"(</descriptors></targetdescriptorloop>)"
    R"(<operationaldescriptorloop operational_descriptor_loop_length="17"><descriptors>)"
    R"(<IP_MAC_stream_location_descriptor descriptor_id="19" descriptor_length="9" network_id="1")"
    R"( original_network_id="2" transport_stream_id="3" service_id="4" component_tag="5" />)"
    R"(<private_data_specifier_descriptor descriptor_id="95" descriptor_length="4")"
    R"( private_data_specifier="40" /></descriptors></operationaldescriptorloop>)"
    R"(</targetoperationaldescriptors>)"
    R"(<targetoperationaldescriptors><targetdescriptorloop target_descriptor_loop_length="0"><descriptors />)"
    R"(</targetdescriptorloop><operationaldescriptorloop operational_descriptor_loop_length="0">)"
    R"(<descriptors /></operationaldescriptorloop></targetoperationaldescriptors>)"
    R"(</targetoperationaldescriptors><descriptors>)"
    R"(<IP_MAC_platform_name_descriptor descriptor_id="12" descriptor_length="5")"
    R"( ISO_639_language_code="eng" text_char="Ab" />)"
    R"(<general_descriptor descriptor_id="101" descriptor_length="1" private_data="01" />)"
    R"(<general_descriptor descriptor_id="11" descriptor_length="0" private_data="" />)"
    R"(<user_private_descriptor descriptor_id="128" descriptor_length="1" private_data="41" />)"
    R"(</descriptors></int>)";

Int parsed(const Bytes& bytes, bool keep_raw = false) {
  Int table;
  table.Parse(bytes.data(), bytes.size(), keep_raw);
  return table;
}

std::string refusal(const Bytes& table_body) {
  return failure([&] { parsed(section(table_body)); });
}

// The 76 names in saving order.
constexpr const char* kNames[] = {
    "target_smartcard_descriptor",
    "target_MAC_address_descriptor",
    "target_serial_number_descriptor",
    "target_IP_address_descriptor",
    "target_IPv6_address_descriptor",
    "IP_MAC_platform_name_descriptor",
    "IP_MAC_platform_provider_name_descriptor",
    "target_MAC_address_range_descriptor",
    "target_IP_slash_descriptor",
    "target_IP_source_slash_descriptor",
    "target_IPv6_slash_descriptor",
    "target_IPv6_source_slash_descriptor",
    "IP_MAC_stream_location_descriptor",
    "ISP_access_mode_descriptor",
    "network_name_descriptor",
    "service_list_descriptor",
    "bouquet_descriptor",
    "service_descriptor",
    "stuffing_descriptor",
    "satellite_delivery_system_descriptor",
    "cable_delivery_system_descriptor",
    "country_availability_descriptor",
    "linkage_descriptor",
    "NVOD_reference_descriptor",
    "time_shifted_service_descriptor",
    "mosiac_descriptor",
    "stream_identifier_descriptor",
    "parental_rating_descriptor",
    "telephone_descriptor",
    "subtitling_descriptor",
    "terrestrial_delivery_system_descriptor",
    "multilingual_network_name_descriptor",
    "multilingual_bouquet_name_descriptor",
    "multilingual_service_name_descriptor",
    "multilingual_component_descriptor",
    "private_data_specifier_descriptor",
    "service_move_descriptor",
    "short_smoothing_buffer_descriptor",
    "VBI_data_descriptor",
    "VBI_teletext_descriptor",
    "frequency_list_descriptor",
    "partial_transport_stream_descriptor",
    "data_broadcast_descriptor",
    "data_broadcast_id_descriptor",
    "transport_stream_descriptor",
    "DSNG_descriptor",
    "PDC_descriptor",
    "AC3_descriptor",
    "ancillary_data_descriptor",
    "cell_list_descriptor",
    "cell_frequency_link_descriptor",
    "announcement_support_descriptor",
    "application_signalling_descriptor",
    "adaptation_field_data_descriptor",
    "service_identifier_descriptor",
    "service_availability_descriptor",
    "CA_identifier_descriptor",
    "content_descriptor",
    "short_event_descriptor",
    "extended_event_descriptor",
    "time_shifted_event_descriptor",
    "component_descriptor",
    "local_time_offset_descriptor",
    "teletext_descriptor",
    "default_authority_descriptor",
    "related_content_descriptor",
    "TVA_id_descriptor",
    "content_identifier_descriptor",
    "time_slice_fec_identifier_descriptor",
    "ECM_repetition_rate_descriptor",
    "S2_satellite_delivery_system_descriptor",
    "enhanced_AC_3_descriptor",
    "DTS_descriptor",
    "AAC_descriptor",
    "general_descriptor",
    "user_private_descriptor",
};

struct Row {
  int tag;
  const char* element;
};

constexpr Row kRows[] = {
    {0x06, "target_smartcard_descriptor"},
    {0x07, "target_MAC_address_descriptor"},
    {0x08, "target_serial_number_descriptor"},
    {0x09, "target_IP_address_descriptor"},
    {0x0A, "target_IPv6_address_descriptor"},
    {0x0C, "IP_MAC_platform_name_descriptor"},
    {0x0D, "IP_MAC_platform_provider_name_descriptor"},
    {0x0E, "target_MAC_address_range_descriptor"},
    {0x0F, "target_IP_slash_descriptor"},
    {0x10, "target_IP_source_slash_descriptor"},
    {0x11, "target_IPv6_slash_descriptor"},
    {0x12, "target_IPv6_source_slash_descriptor"},
    {0x13, "IP_MAC_stream_location_descriptor"},
    {0x14, "ISP_access_mode_descriptor"},
    {0x40, "network_name_descriptor"},
    {0x41, "service_list_descriptor"},
    {0x42, "stuffing_descriptor"},
    {0x43, "satellite_delivery_system_descriptor"},
    {0x44, "cable_delivery_system_descriptor"},
    {0x45, "VBI_data_descriptor"},
    {0x46, "VBI_teletext_descriptor"},
    {0x47, "bouquet_descriptor"},
    {0x48, "service_descriptor"},
    {0x49, "country_availability_descriptor"},
    {0x4A, "linkage_descriptor"},
    {0x4B, "NVOD_reference_descriptor"},
    {0x4C, "time_shifted_service_descriptor"},
    {0x4D, "short_event_descriptor"},
    {0x4E, "extended_event_descriptor"},
    {0x4F, "time_shifted_event_descriptor"},
    {0x50, "component_descriptor"},
    {0x51, "mosiac_descriptor"},
    {0x52, "stream_identifier_descriptor"},
    {0x53, "CA_identifier_descriptor"},
    {0x54, "content_descriptor"},
    {0x55, "parental_rating_descriptor"},
    {0x56, "teletext_descriptor"},
    {0x57, "telephone_descriptor"},
    {0x58, "local_time_offset_descriptor"},
    {0x59, "subtitling_descriptor"},
    {0x5A, "terrestrial_delivery_system_descriptor"},
    {0x5B, "multilingual_network_name_descriptor"},
    {0x5C, "multilingual_bouquet_name_descriptor"},
    {0x5D, "multilingual_service_name_descriptor"},
    {0x5E, "multilingual_component_descriptor"},
    {0x5F, "private_data_specifier_descriptor"},
    {0x60, "service_move_descriptor"},
    {0x61, "short_smoothing_buffer_descriptor"},
    {0x62, "frequency_list_descriptor"},
    {0x63, "partial_transport_stream_descriptor"},
    {0x64, "data_broadcast_descriptor"},
    {0x66, "data_broadcast_id_descriptor"},
    {0x67, "transport_stream_descriptor"},
    {0x68, "DSNG_descriptor"},
    {0x69, "PDC_descriptor"},
    {0x6A, "AC3_descriptor"},
    {0x6B, "ancillary_data_descriptor"},
    {0x6C, "cell_list_descriptor"},
    {0x6D, "cell_frequency_link_descriptor"},
    {0x6E, "announcement_support_descriptor"},
    {0x6F, "application_signalling_descriptor"},
    {0x70, "adaptation_field_data_descriptor"},
    {0x71, "service_identifier_descriptor"},
    {0x72, "service_availability_descriptor"},
    {0x73, "default_authority_descriptor"},
    {0x74, "related_content_descriptor"},
    {0x75, "TVA_id_descriptor"},
    {0x76, "content_identifier_descriptor"},
    {0x77, "time_slice_fec_identifier_descriptor"},
    {0x78, "ECM_repetition_rate_descriptor"},
    {0x79, "S2_satellite_delivery_system_descriptor"},
    {0x7A, "enhanced_AC_3_descriptor"},
    {0x7B, "DTS_descriptor"},
    {0x7C, "AAC_descriptor"},
};

const char* element_of(int tag) {
  for (const Row& row : kRows)
    if (row.tag == tag) return row.element;
  return tag < 128 ? "general_descriptor" : "user_private_descriptor";
}

// A descriptor without a body, in front of zeros; the table's own classes and many others accept it.
Bytes bare(int tag) {
  return descriptor_claiming(tag, 0, Bytes(24));
}

const TableCases kTables = {table_case<Int>("Int", "int", kSection)};

}  // namespace

TEST(IntLoop, KeepsEachTagUnderItsName) {
  for (int tag = 0; tag < 256; ++tag) {
    IntLoop loop;
    if (failure([&] { loop.ParseDescriptorInt(view(bare(tag))); }) != "nothing") {
      EXPECT_TRUE(saved_names(loop).empty());  // the class is that of DVB, and refuses
      EXPECT_STRNE(element_of(tag), "general_descriptor");
    } else {
      EXPECT_EQ(saved_names(loop), std::vector<std::string>{element_of(tag)}) << tag;
    }
  }
}

TEST(IntLoop, SavesInTheOrderOfTheKindsAndLoadsTheSameNames) {
  ASSERT_EQ(std::size(kNames), 76u);
  xml::Document document;
  void* const list = document.append_element(document.create_root("d"), "descriptors");
  const auto add = [&](const auto& descriptor, const char* element) {
    EXPECT_TRUE(descriptor.SaveSection(document.dom(), document.append_element(list, element)));
  };
  add(DescriptorGeneral(), "user_private_descriptor");
  add(DescriptorGeneral(), "general_descriptor");
#define QUILLON_ADD(tag, Class, accessor, element) add(Class(), element);
  QUILLON_DVB_KINDS(QUILLON_ADD)
  QUILLON_INT_KINDS(QUILLON_ADD)
#undef QUILLON_ADD
  IntLoop loop;
  loop._parse_descriptors(document.root());
  EXPECT_EQ(saved_names(loop), std::vector<std::string>(std::begin(kNames), std::end(kNames)));
}

TEST(IntLoop, HasAnAccessorAKind) {
  IntLoop loop;
  for (int tag = 0; tag < 0x20; ++tag) loop.ParseDescriptorInt(bare(tag).data());
  loop.ParseDescriptorInt(view(descriptor(0x51, {0})));
  for (const int tag : {0x40, 0x53, 0x5F, 0x65, 0x7A, 0x7C, 0x7F, 0x80})
    loop.ParseDescriptorInt(bare(tag).data());
  EXPECT_EQ(tags(loop.get_target_smartcard_descriptors()), std::vector{0x06});
  EXPECT_EQ(tags(loop.get_target_MAC_address_descriptors()), std::vector{0x07});
  EXPECT_EQ(tags(loop.get_target_serial_number_descriptors()), std::vector{0x08});
  EXPECT_EQ(tags(loop.get_target_IP_address_descriptors()), std::vector{0x09});
  EXPECT_EQ(tags(loop.get_target_IPv6_address_descriptors()), std::vector{0x0A});
  EXPECT_EQ(tags(loop.get_IP_MAC_platform_name_descriptors()), std::vector{0x0C});
  EXPECT_EQ(tags(loop.get_IP_MAC_platform_provider_name_descriptors()), std::vector{0x0D});
  EXPECT_EQ(tags(loop.get_target_MAC_address_range_descriptors()), std::vector{0x0E});
  EXPECT_EQ(tags(loop.get_target_IP_slash_descriptors()), std::vector{0x0F});
  EXPECT_EQ(tags(loop.get_target_IP_source_slash_descriptors()), std::vector{0x10});
  EXPECT_EQ(tags(loop.get_target_IPv6_slash_descriptors()), std::vector{0x11});
  EXPECT_EQ(tags(loop.get_target_IPv6_source_slash_descriptors()), std::vector{0x12});
  EXPECT_EQ(tags(loop.get_IP_MAC_stream_location_descriptors()), std::vector{0x13});
  EXPECT_EQ(tags(loop.get_ISP_access_mode_descriptors()), std::vector{0x14});
  EXPECT_EQ(tags(loop.get_network_name_descriptors()), std::vector{0x40});
  EXPECT_EQ(tags(loop.get_mosiac_descriptors()), std::vector{0x51});
  EXPECT_EQ(tags(loop.get_CA_identifiers_descriptors()), std::vector{0x53});
  EXPECT_EQ(tags(loop.get_private_data_specifier_descriptors()), std::vector{0x5F});
  EXPECT_EQ(tags(loop.get_enhanced_AC_3_descriptors()), std::vector{0x7A});
  EXPECT_EQ(tags(loop.get_AAC_descriptors()), std::vector{0x7C});
  EXPECT_EQ(loop.get_general_descriptors().size(), 32u - 14u + 2u);
  EXPECT_EQ(tags(loop.get_user_private_descriptors()), std::vector{0x80});
}

TEST(IntLoop, ThrowsAsTheClassDoes) {
  IntLoop loop;
  EXPECT_EQ(failure([&] { loop.ParseDescriptorInt(view(kRefused)); }), "-1: descriptor size mismatch");
  EXPECT_TRUE(loop.get_target_IP_slash_descriptors().empty());
  EXPECT_TRUE(loop.get_general_descriptors().empty());
}

TEST(Int, HasItsFaces) {
  const Int table = parsed(kSection);
  EXPECT_EQ(report(table), kReport);
  EXPECT_EQ(saved(table, "int"), kXml);
  const Int again = loaded_table<Int>(kXml);
  EXPECT_TRUE(again.is_parsed());
  EXPECT_EQ(saved(again, "int"), kXml);
  EXPECT_EQ(report(again), kReport);
}

TEST(Int, ReadsItsMembers) {
  const Int table = parsed(kSection);
  EXPECT_STREQ(table.get_table_id_text(), "int");
  EXPECT_EQ(table.get_action_type(), 0x01);
  EXPECT_EQ(table.get_platform_id_hash(), 0xA5);
  EXPECT_EQ(table.get_platform_id(), 0x00A00B);
  EXPECT_EQ(table.get_processing_order(), 7);
  EXPECT_EQ(table.get_platform_descriptor_loop_length(), 15);
  EXPECT_EQ(table.get_IP_MAC_platform_name_descriptors().size(), 1u);
  EXPECT_EQ(tags(table.get_general_descriptors()), (std::vector{0x65, 0x0B}));
  EXPECT_EQ(tags(table.get_user_private_descriptors()), std::vector{0x80});
  ASSERT_EQ(table.get_targetoperationaldescriptors().size(), 2u);
  const Int::TargetOperationalDescriptors& first = table.get_targetoperationaldescriptors()[0];
  EXPECT_EQ(first.get_target_descriptor_loop().get_target_descriptor_loop_length(), 7);
  EXPECT_EQ(first.get_target_descriptor_loop().get_target_IP_slash_descriptors().size(), 1u);
  EXPECT_EQ(first.get_operational_descriptor_loop().get_operational_descriptor_loop_length(), 17);
  EXPECT_EQ(first.get_operational_descriptor_loop().get_IP_MAC_stream_location_descriptors().size(), 1u);
  EXPECT_EQ(first.get_operational_descriptor_loop().get_private_data_specifier_descriptors().size(), 1u);
  const Int::TargetOperationalDescriptors& second = table.get_targetoperationaldescriptors()[1];
  EXPECT_EQ(second.get_target_descriptor_loop().get_target_descriptor_loop_length(), 0);
  std::ostringstream nothing;
  first.dump_state(nothing);
  EXPECT_EQ(nothing.str(), "");
}

TEST(Int, TakesAnyTableIdAndReservedBits) {
  for (int id = 0; id <= 255; ++id)
    EXPECT_EQ(failure([&] { parsed(long_section(id, body(), {.private_bit = id & 1, .reserved = id & 3})); }),
              "nothing");
  EXPECT_EQ(failure([&] { parsed(long_section(0x4C, body(), {.syntax_indicator = 0})); }), "2: ");
}

TEST(Int, KeepsPositionsWithTheSection) {
  const Int table = parsed(kSection, true);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{6, 13, 16, 18}));
  EXPECT_EQ(*table.get_section_ptr_by_desc_pos(18), 0x80);
  ASSERT_EQ(table.get_targetoperationaldescriptors().size(), 2u);
  const Int::TargetOperationalDescriptors& first = table.get_targetoperationaldescriptors()[0];
  EXPECT_EQ(first.get_target_descriptor_loop().get_descriptor_pos(), std::vector{2});
  EXPECT_EQ(first.get_operational_descriptor_loop().get_descriptor_pos(), (std::vector{2, 13}));

  const Int without = parsed(kSection, false);
  EXPECT_TRUE(without.get_descriptor_pos().empty());
  const Int::TargetOperationalDescriptors& bare_pair = without.get_targetoperationaldescriptors()[0];
  EXPECT_TRUE(bare_pair.get_target_descriptor_loop().get_descriptor_pos().empty());
  EXPECT_TRUE(bare_pair.get_operational_descriptor_loop().get_descriptor_pos().empty());
}

TEST(Int, MayBeEmpty) {
  const Int table = parsed(section(joined({head(), with_length({})})));
  EXPECT_TRUE(table.get_targetoperationaldescriptors().empty());
  const Int fresh;
  EXPECT_FALSE(fresh.is_parsed());
  EXPECT_EQ(fresh.get_action_type(), 0);
  EXPECT_EQ(fresh.get_platform_id(), 0);
  EXPECT_EQ(fresh.get_platform_descriptor_loop_length(), 0);
  const Int::TargetOperationalDescriptors pair;
  EXPECT_EQ(pair.get_target_descriptor_loop().get_target_descriptor_loop_length(), 0);
  EXPECT_EQ(pair.get_operational_descriptor_loop().get_operational_descriptor_loop_length(), 0);
}

TEST(Int, ParsesItsLoopsAndPairsAlone) {
  const Bytes bytes = joined({with_length(kSlash), with_length(kOperational), Bytes(3)});
  int size = 999;
  const Int::TargetOperationalDescriptors pair(view(bytes), size, true);
  EXPECT_EQ(size, 2 + 7 + 2 + 17);
  EXPECT_EQ(pair.get_operational_descriptor_loop().get_descriptor_pos(), (std::vector{2, 13}));

  Int::TargetDescriptorLoop target;
  int consumed = 0;
  target.Parse(bytes.data(), consumed, true);
  EXPECT_EQ(consumed, 9);
  target.Parse(bytes.data(), consumed, true);  // adds
  EXPECT_EQ(target.get_target_IP_slash_descriptors().size(), 2u);
  EXPECT_EQ(target.get_descriptor_pos(), (std::vector{2, 2}));

  Int::OperationalDescriptorLoop operational;
  operational.Parse(bytes.data() + 9, consumed, false);
  EXPECT_EQ(consumed, 19);
  EXPECT_EQ(operational.get_operational_descriptor_loop_length(), 17);
}

TEST(Int, RefusesWrongLengths) {
  EXPECT_EQ(refusal(body()), "nothing");
  // Descriptors are taken for the length of a loop.
  EXPECT_EQ(refusal(body({.platform = 0})), kTargetMismatch);
  EXPECT_EQ(refusal(body({.platform = 14})), kPlatformMismatch);
  EXPECT_EQ(refusal(body({.platform = 16})), kPlatformMismatch);
  EXPECT_EQ(refusal(body({.platform = 4095})), kPlatformMismatch);
  EXPECT_EQ(refusal(body({.target = 0})), kOperationalMismatch);
  EXPECT_EQ(refusal(body({.target = 6})), kTargetMismatch);
  EXPECT_EQ(refusal(body({.target = 8})), kTargetMismatch);
  EXPECT_EQ(refusal(body({.target = 4095})), kTargetMismatch);
  EXPECT_EQ(refusal(body({.operational = 0})), kTargetMismatch);
  EXPECT_EQ(refusal(body({.operational = 16})), kOperationalMismatch);
  EXPECT_EQ(refusal(body({.operational = 18})), kOperationalMismatch);
  EXPECT_EQ(refusal(joined({head(), with_length({}), with_length({}), with_length({0x80, 0xFF}, 4095)})),
            kOperationalMismatch);
}

TEST(Int, RefusesASectionOfAnotherLength) {
  const Bytes whole = body();
  // Missing and stray bytes make pairs that are read into the CRC.
  const std::string stray[] = {refusal(Bytes(whole.begin(), whole.end() - 1)),
                               refusal(joined({whole, {0xF0}})), refusal(joined({whole, {0xF0, 0}})),
                               refusal(joined({whole, {0xF0, 0, 0xF0}}))};
  for (const std::string& thrown : stray)
    EXPECT_TRUE(thrown == kTargetMismatch || thrown == kOperationalMismatch || thrown == kMismatch) << thrown;
  EXPECT_EQ(refusal(joined({whole, {0xFF, 0xFF, 0xFF}})), kTargetMismatch);
  // Pairs of empty loops to the largest section there is.
  Bytes longest = whole;
  while (longest.size() + 4 <= 4095 - 9) longest.insert(longest.end(), {0xF0, 0, 0xF0, 0});
  EXPECT_EQ(refusal(longest), "nothing");
}

TEST(Int, RefusesAPlatformLoopThatReachesIntoTheCrc) {
  // The loop's last descriptor takes in one to four bytes of the CRC, and then one past the section.
  for (uint8_t over = 1; over <= 4; ++over)
    EXPECT_EQ(refusal(joined({head(), with_length({0x80, over}, 2 + over)})), kMismatch);
  EXPECT_EQ(refusal(joined({head(), with_length({0x80, 5}, 7)})), kPlatformMismatch);
}

TEST(Int, RefusesADescriptorThatRunsPastItsLoop) {
  Bytes past = kUserPrivate;
  past[1] += 1;
  EXPECT_EQ(refusal(joined({head(), with_length(past)})), kPlatformMismatch);
  EXPECT_EQ(refusal(joined({head(), with_length({}), with_length(past), with_length({})})), kTargetMismatch);
  EXPECT_EQ(refusal(joined({head(), with_length({}), with_length({}), with_length(past)})),
            kOperationalMismatch);
}

TEST(Int, KeepsWhatItHadReadWhenItFails) {
  const Bytes late = section(joined({head(), with_length(kName), with_length(kSlash), with_length({}),
                                     with_length(kRefused), with_length({})}));
  Int table;
  EXPECT_EQ(failure([&] { table.Parse(late.data(), late.size(), false); }), "-1: descriptor size mismatch");
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_platform_id(), 0x00A00B);
  EXPECT_EQ(table.get_IP_MAC_platform_name_descriptors().size(), 1u);
  EXPECT_EQ(table.get_targetoperationaldescriptors().size(), 1u);
}

TEST(Int, KeepsEverythingOverReset) {
  Int table = parsed(kSection, true);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(saved(table, "int"), kXml);
  table.Parse(kSection.data(), kSection.size(), true);
  EXPECT_EQ(table.get_targetoperationaldescriptors().size(), 4u);
  EXPECT_EQ(table.get_general_descriptors().size(), 4u);
  EXPECT_EQ(table.get_descriptor_pos().size(), 8u);
}

TEST(Int, KeepsARefusedDescriptorWhereItIsTolerant) {
  const Bytes refused =
      section(joined({head(), with_length(joined({kName, kRefused})), with_length(joined({kSlash, kRefused})),
                      with_length(joined({kRefused, kLocation}))}));
  EXPECT_EQ(failure([&] { parsed(refused); }), "-1: descriptor size mismatch");
  Int table;
  table.set_tolerant(true);
  table.Parse(refused.data(), refused.size(), true);
  EXPECT_EQ(tags(table.get_general_descriptors()), std::vector{0x0F});
  ASSERT_EQ(table.get_targetoperationaldescriptors().size(), 1u);
  const Int::TargetOperationalDescriptors& pair = table.get_targetoperationaldescriptors()[0];
  EXPECT_EQ(tags(pair.get_target_descriptor_loop().get_general_descriptors()), std::vector{0x0F});
  EXPECT_EQ(pair.get_target_descriptor_loop().get_target_IP_slash_descriptors().size(), 1u);
  EXPECT_EQ(tags(pair.get_operational_descriptor_loop().get_general_descriptors()), std::vector{0x0F});

  std::vector<int> offsets;
  for (const DescriptorFailure& f : table.get_descriptor_failures()) {
    EXPECT_EQ(f.tag, 0x0F);
    EXPECT_EQ(f.text, "descriptor size mismatch");
    EXPECT_EQ(f.code, -1);
    offsets.push_back(f.offset);
  }
  // Failures count from the body, also where the positions count from their loop.
  EXPECT_EQ(offsets, (std::vector{6 + 7, 6 + 13 + 2 + 7, 6 + 13 + 2 + 13 + 2}));
  EXPECT_EQ(pair.get_target_descriptor_loop().get_descriptor_pos(), (std::vector{2, 9}));
  EXPECT_EQ(pair.get_operational_descriptor_loop().get_descriptor_pos(), (std::vector{2, 8}));
}

TEST(Int, LoadsItsFieldsWithoutLookingAtTheHeader) {
  const Int table = loaded_table<Int>(changed(kXml, R"(context_id="421")", R"(context_id="9")"));
  EXPECT_EQ(table.get_action_type(), 1);
  EXPECT_EQ(table.get_platform_id_hash(), 0xA5);
}

TEST(Int, NeedsItsAttributesAndElements) {
  const auto failure_with = [](const std::string& from, const std::string& to) {
    return failure([&] { loaded_table<Int>(changed(kXml, from, to)); });
  };
  for (const char* name : {"action_type", "platform_id_hash", "platform_id", "processing_order",
                           "platform_descriptor_loop_length", "target_descriptor_loop_length",
                           "operational_descriptor_loop_length"})
    EXPECT_EQ(failure_with(" " + std::string(name) + "=", " other="), "-1: failed") << name;
  EXPECT_EQ(failure_with("targetoperationaldescriptors", "other"),
            "-1: failed to get targetoperationaldescriptors");
  EXPECT_EQ(failure_with("targetdescriptorloop", "other"), "-1: failed to get targetdescriptorloop");
  EXPECT_EQ(failure_with("operationaldescriptorloop", "other"),
            "-1: failed to get operationaldescriptorloop");
  EXPECT_EQ(failure_with("<descriptors />", "<other />"), "nothing");
}

namespace {

std::string load_failure(const std::string& operation, int nth) {
  FaultyDom dom(operation, nth);
  Int table;
  const std::string out = failure([&] { table.ParseDOM(dom.node()); });
  EXPECT_EQ(dom.references(), 0);
  return out;
}

bool save_result(const Int& table, const std::string& operation, int nth) {
  FaultyDom dom(operation, nth);
  const bool result = table.SaveSection(dom.document(), dom.node());
  EXPECT_EQ(dom.references(), 0);
  return result;
}

}  // namespace

TEST(Int, NamesTheStepOfALoadThatFailed) {
  EXPECT_EQ(load_failure("get_attributes", 1), "-1: failed to get attribute map");
  EXPECT_EQ(load_failure("get_attributes", 2), "-1: failed");
  EXPECT_EQ(load_failure("selectSingleNode", 1), "-1: failed to get targetoperationaldescriptors");
  EXPECT_EQ(load_failure("get_childNodes", 1),
            "-1: failed to get program_info list targetoperationaldescriptors");
  EXPECT_EQ(load_failure("get_length", 1), "-1: failed to get length targetoperationaldescriptors");
  EXPECT_EQ(load_failure("get_item", 1), "-1: failed to get program_info node targetoperationaldescriptors");
  EXPECT_EQ(load_failure("get_attributes", 3), "-1: failed");  // of the pair
  EXPECT_EQ(load_failure("selectSingleNode", 2), "-1: failed to get targetdescriptorloop");
  EXPECT_EQ(load_failure("get_attributes", 4), "-1: failed");  // of its first loop
  EXPECT_EQ(load_failure("selectSingleNode", 3), "-1: failed to get descriptors node");
  EXPECT_EQ(load_failure("selectSingleNode", 4), "-1: failed to get operationaldescriptorloop");
  EXPECT_EQ(load_failure("get_attributes", 5), "-1: failed");  // of its second
  EXPECT_EQ(load_failure("selectSingleNode", 6), "-1: failed to get descriptors node");
}

TEST(Int, AttachesItsListLastAndDoesNotLookAtWhatPairsSay) {
  const Int table = parsed(section(joined({head(), with_length({}), with_length({}), with_length({})})));
  FaultyDom dom;
  EXPECT_TRUE(table.SaveSection(dom.document(), dom.node()));
  const std::string steps = dom.steps();
  EXPECT_EQ(steps.substr(steps.find("createAttribute action_type")),
            "createAttribute action_type\n"
            "createAttribute platform_id_hash\n"
            "createAttribute platform_id\n"
            "createAttribute processing_order\n"
            "createAttribute platform_descriptor_loop_length\n"
            "createElement targetoperationaldescriptors\n"
            "createElement targetoperationaldescriptors\n"
            "createElement targetdescriptorloop\n"
            "createAttribute target_descriptor_loop_length\n"
            "createElement descriptors\n"
            "appendChild\n"
            "appendChild\n"
            "createElement operationaldescriptorloop\n"
            "createAttribute operational_descriptor_loop_length\n"
            "createElement descriptors\n"
            "appendChild\n"
            "appendChild\n"
            "appendChild\n"
            "appendChild\n"
            "createElement descriptors\n"
            "appendChild\n");

  for (int nth = 1; nth <= 14; ++nth) EXPECT_FALSE(save_result(table, "put_nodeValue", nth)) << nth;
  for (int nth = 15; nth <= 16; ++nth) EXPECT_TRUE(save_result(table, "put_nodeValue", nth)) << nth;
  for (int nth = 1; nth <= 2; ++nth) EXPECT_FALSE(save_result(table, "createElement", nth)) << nth;
  for (int nth = 3; nth <= 7; ++nth) EXPECT_TRUE(save_result(table, "createElement", nth)) << nth;
  for (int nth = 1; nth <= 4; ++nth) EXPECT_TRUE(save_result(table, "appendChild", nth)) << nth;
  for (int nth = 5; nth <= 6; ++nth) EXPECT_FALSE(save_result(table, "appendChild", nth)) << nth;
  EXPECT_TRUE(save_result(table, "appendChild", 7));
}

TEST(IntPair, SaysWhetherItsLoopsCouldBeAttached) {
  const Int::TargetOperationalDescriptors pair;
  const auto save = [&pair](const std::string& operation, int nth) {
    FaultyDom dom(operation, nth);
    const bool result = pair.SaveSection(dom.document(), dom.node());
    EXPECT_EQ(dom.references(), 0);
    return result;
  };
  EXPECT_TRUE(save("", 1));
  EXPECT_FALSE(save("createElement", 1));  // targetdescriptorloop
  EXPECT_FALSE(save("createElement", 3));  // operationaldescriptorloop
  EXPECT_FALSE(save("appendChild", 2));
  EXPECT_FALSE(save("appendChild", 4));
  // What goes wrong inside a loop is not looked at.
  EXPECT_TRUE(save("createElement", 2));
  EXPECT_TRUE(save("appendChild", 1));
  EXPECT_TRUE(save("put_nodeValue", 1));
  EXPECT_TRUE(save("put_nodeValue", 2));
}
