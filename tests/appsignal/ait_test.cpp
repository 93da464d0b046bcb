// The application information table: dispatch by tag, and sections by their three faces.

#include "tests/appsignal/appsignal_helpers.h"
#include "tests/support/table_cases.h"

#include <map>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kUserPrivate = descriptor(0x80, {'A'});
const Bytes kSpecifier = descriptor(0x5F, {0, 0, 0, 0x28});
const Bytes kGeneral = descriptor(0x7F, {1, 'B'});
const Bytes kAuthorisation = descriptor(
    0x05,
    bits({{32, 0x2A, "organisation_id"}, {16, 1, "application_id"}, {8, 0x80, "application_priority"}}));
const Bytes kApplication = descriptor(0x00, bits({{8, 5, "application_profiles_length"},
                                                  {16, 1, "application_profile"},
                                                  {8, 1, "version_major"},
                                                  {8, 0, "version_minor"},
                                                  {8, 2, "version_micro"},
                                                  {1, 1, "service_bound_flag"},
                                                  {2, 3, "visibility"},
                                                  {5, 0x1F, "reserved_future_use"},
                                                  {8, 1, "application_priority"},
                                                  {8, 1, "transport_protocol_label"}}));
const Bytes kProtocol = descriptor(0x02, bits({{16, 1, "protocol_id"},
                                               {8, 1, "transport_protocol_label"},
                                               {1, 0, "remote_connection"},
                                               {7, 0x7F, "reserved_future_use"},
                                               {8, 0xC5, "component_tag"}}));
const Bytes kRefused = descriptor(0x0D, Bytes(5));

// A reserved nibble and a length of 12 bits; -1 for the length of the bytes.
Bytes with_length(const Bytes& bytes, int length = -1) {
  const uint64_t told = length < 0 ? bytes.size() : static_cast<uint64_t>(length);
  return joined({bits({{4, 0xF, "reserved"}, {12, told, "length"}}), bytes});
}

Bytes application(uint32_t organisation, int id, int code, const Bytes& loop, int loop_length = -1) {
  return joined({bits({{32, organisation, "organisation_id"},
                       {16, static_cast<uint64_t>(id), "application_id"},
                       {8, static_cast<uint64_t>(code), "application_control_code"}}),
                 with_length(loop, loop_length)});
}

const Bytes kCommon = joined({kUserPrivate, kSpecifier, kGeneral, kAuthorisation});
const Bytes kLoop = joined({kApplication, kSpecifier, kProtocol});

// The lengths of the table, -1 where they are right.
struct Lengths {
  int common = -1;
  int applications = -1;
  int loop = -1;  // of the first application
};

Bytes body(const Lengths& lengths = {}) {
  const Bytes applications =
      joined({application(0x2A, 1, 1, kLoop, lengths.loop), application(0xFFFFFFFE, 0x4001, 2, {})});
  return joined({with_length(kCommon, lengths.common), with_length(applications, lengths.applications)});
}

const Bytes kSection = long_section(0x74, body(), {.extension = 1});

const std::string kMissing14(14 * 3, ' ');
const std::string kMissing15(15 * 3, ' ');

const std::string kReport =
    "table name: ait\n"
    "table_id 74\n"
    "section_length 004D\n"
    "context_id 0001\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 8869B8A3\n"
    "application_type: 1\n"
    "common_descriptors_length: 16\n"
    "descriptor_tag: 05 external_application_authorisation_descriptor\n"
    "organisation_id: 2A\n"
    "application_id: 1\n"
    "application_priority: 80\n"
    "descriptor_tag: 7F User Private\n"
    "data:\n"
    "01 42 " +
    kMissing14 +
    " : .B\n"
    "descriptor_tag: 80 User Private\n"
    "data:\n"
    "41 " +
    kMissing15 +
    " : A\n"
    "application_loop_length: 2A\n"
    "organisation_id: 2A\n"
    "application_id: 1\n"
    "application_control_code: 1\n"
    "application_descriptors_loop_length: 18\n"
    "descriptor_tag: 00 application_descriptor\n"
    "application_profiles_length: 5\n"
    "application_profile: 1\n"
    "version_major: 1\n"
    "version_minor: 0\n"
    "version_micro: 2\n"
    "service_bound_flag: 1\n"
    "visibility: 3\n"
    "application_priority: 1\n"
    "transport_protocol_label: \1\n"
    "descriptor_tag: 02 transport_protocol_descriptor\n"
    "protocol_id: 1\n"
    "transport_protocol_label: 1\n"
    "remote_connection: 0\n"
    "component_tag: C5\n"
    "organisation_id: FFFFFFFE\n"
    "application_id: 4001\n"
    "application_control_code: 2\n"
    "application_descriptors_loop_length: 0\n";

const std::string kXml =
    R"(<ait table_id="116" syntax_indicator="1" section_length="77" context_id="1" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-2006337373")"
    R"( common_descriptors_length="22" application_loop_length="42"><application_infos>)"
    R"(<application_info application_control_code="1" application_descriptors_loop_length="24")"
    R"( application_identifer="0000002A 0001"><descriptors>)"
    R"(<application_descriptor descriptor_id="0" descriptor_length="9" application_profiles_length="5")"
    R"( service_bound_flag="1" visibility="3" application_priority="1" transport_protocol_label="01">)"
    R"(<application_profiles>)"
    R"(<profile application_profile="1" version_major="1" version_minor="0" version_micro="2" />)"
    R"(</application_profiles></application_descriptor>)"
    R"(<transport_protocol_descriptor descriptor_id="2" descriptor_length="5" protocol_id="1")"
    R"( transport_protocol_label="1"><transport_OC remote_connection="0" original_network_id="0")"
    R"( transport_stream_id="0" service_id="0" component_tag="197" />)"
    R"(<transport_IP remote_connection="0" original_network_id="0" transport_stream_id="0")"
    R"( service_id="0" alignment_indicator="0" /></transport_protocol_descriptor>)"
    R"(<private_data_specifier_descriptor descriptor_id="95" descriptor_length="4")"
    R"( private_data_specifier="40" /></descriptors></application_info>)"
    R"(<application_info application_control_code="2" application_descriptors_loop_length="0")"
    R"( application_identifer="FFFFFFFE 4001"><descriptors /></application_info></application_infos>)"
    R"(<descriptors><external_application_authorisation_descriptor descriptor_id="5")"
    R"( descriptor_length="7"><external_application_authorisation_infos>)"
    R"(<info application_priority="128"><application_identifer organisation_id="42")"
    R"( application_id="1" /></info></external_application_authorisation_infos>)"
    R"(</external_application_authorisation_descriptor>)"
    R"(<private_data_specifier_descriptor descriptor_id="95" descriptor_length="4")"
    R"( private_data_specifier="40" />)"
    R"(<general_descriptor descriptor_id="127" descriptor_length="2" private_data="0142" />)"
    R"(<user_private_descriptor descriptor_id="128" descriptor_length="1" private_data="41" />)"
    R"(</descriptors></ait>)";

Ait parsed(const Bytes& section, bool keep_raw = false) {
  Ait table;
  table.Parse(section.data(), section.size(), keep_raw);
  return table;
}

Bytes section(const Bytes& table_body) {
  return long_section(0x74, table_body, {.extension = 1});
}

std::string refusal(const Bytes& table_body) {
  return failure([&] { parsed(section(table_body)); });
}

struct Row {
  int tag;
  const char* element;
};

// In saving order.
constexpr Row kRows[] = {
    {0x00, "application_descriptor"},
    {0x01, "application_name_descriptor"},
    {0x0B, "application_icons_descriptor"},
    {0x05, "external_application_authorisation_descriptor"},
    {0x02, "transport_protocol_descriptor"},
    {0x06, "routing_descriptor_IPv4"},
    {0x07, "routing_descriptor_IPv6"},
    {0x0D, "DII_location_descriptor"},
    {0x0C, "pre_fetch_descriptor"},
    {0x03, "DVB_J_application_descriptor"},
    {0x04, "DVB_J_application_location_descriptor"},
    {0x08, "DVB_HTML_application_descriptor"},
    {0x09, "DVB_HTML_application_location_descriptor"},
    {0x0A, "DVB_HTML_application_boundary_descriptor"},
    {0x5F, "private_data_specifier_descriptor"},
};

// A descriptor that every class accepts, without a body and in front of zeros.
Bytes bare(int tag) {
  return descriptor_claiming(tag, 0, Bytes(8));
}

const TableCases kTables = {table_case<Ait>("Ait", "ait", kSection)};

}  // namespace

TEST(AitLoop, KeepsEachTagUnderItsName) {
  std::map<int, std::string> expected;
  for (int tag = 0; tag < 256; ++tag)
    expected[tag] = tag < 128 ? "general_descriptor" : "user_private_descriptor";
  for (const Row& row : kRows) expected[row.tag] = row.element;
  for (int tag = 0; tag < 256; ++tag) {
    AitLoop loop;
    loop.ParseDescriptorAit(view(bare(tag)));
    EXPECT_EQ(saved_names(loop), std::vector<std::string>{expected[tag]}) << tag;
  }
}

TEST(AitLoop, HasAnAccessorAKind) {
  AitLoop loop;
  for (int tag = 0; tag < 256; ++tag) loop.ParseDescriptorAit(bare(tag).data());
  EXPECT_EQ(tags(loop.get_application_descriptors()), std::vector{0x00});
  EXPECT_EQ(tags(loop.get_application_name_descriptors()), std::vector{0x01});
  EXPECT_EQ(tags(loop.get_application_icons_descriptors()), std::vector{0x0B});
  EXPECT_EQ(tags(loop.get_external_application_authorisation_descriptors()), std::vector{0x05});
  EXPECT_EQ(tags(loop.get_transport_protocol_descriptors()), std::vector{0x02});
  EXPECT_EQ(tags(loop.get_routing_descriptors_IPv4()), std::vector{0x06});
  EXPECT_EQ(tags(loop.get_routing_descriptors_IPv6()), std::vector{0x07});
  EXPECT_EQ(tags(loop.get_DII_location_descriptors()), std::vector{0x0D});
  EXPECT_EQ(tags(loop.get_pre_fetch_descriptors()), std::vector{0x0C});
  EXPECT_EQ(tags(loop.get_DVB_J_application_descriptors()), std::vector{0x03});
  EXPECT_EQ(tags(loop.get_DVB_J_application_location_descriptors()), std::vector{0x04});
  EXPECT_EQ(tags(loop.get_DVB_HTML_application_descriptors()), std::vector{0x08});
  EXPECT_EQ(tags(loop.get_DVB_HTML_application_location_descriptors()), std::vector{0x09});
  EXPECT_EQ(tags(loop.get_DVB_HTML_application_boundary_descriptors()), std::vector{0x0A});
  EXPECT_EQ(tags(loop.get_private_data_specifier_descriptors()), std::vector{0x5F});
  EXPECT_EQ(loop.get_general_descriptors().size(), 128u - 15u);
  EXPECT_EQ(loop.get_user_private_descriptors().size(), 128u);
}

TEST(AitLoop, SavesInTheOrderOfTheKindsAndLoadsThemAll) {
  AitLoop loop;
  for (const int tag : {0xFF, 0x10}) loop.ParseDescriptorAit(view(bare(tag)));
  std::vector<std::string> expected;
  for (auto row = std::rbegin(kRows); row != std::rend(kRows); ++row)
    loop.ParseDescriptorAit(view(bare(row->tag)));
  for (const Row& row : kRows) expected.push_back(row.element);
  expected.insert(expected.end(), {"general_descriptor", "user_private_descriptor"});
  EXPECT_EQ(saved_names(loop), expected);

  xml::Document document;
  loop._save_descriptors(document.dom(), document.create_root("d"));
  AitLoop again;
  EXPECT_TRUE(again._parse_descriptors(document.root()));
  xml::Document resaved;
  again._save_descriptors(resaved.dom(), resaved.create_root("d"));
  EXPECT_EQ(plain(resaved), plain(document));
}

TEST(AitLoop, ThrowsAsTheClassDoes) {
  AitLoop loop;
  EXPECT_EQ(failure([&] { loop.ParseDescriptorAit(view(kRefused)); }), "3: dii_location_descriptor: 1");
  EXPECT_TRUE(loop.get_DII_location_descriptors().empty());
  EXPECT_TRUE(loop.get_general_descriptors().empty());
}

TEST(Ait, HasItsFaces) {
  const Ait table = parsed(kSection);
  EXPECT_EQ(report(table), kReport);
  EXPECT_EQ(saved(table, "ait"), kXml);
  const Ait again = loaded_table<Ait>(kXml);
  EXPECT_TRUE(again.is_parsed());
  EXPECT_EQ(saved(again, "ait"), kXml);
  EXPECT_EQ(report(again), kReport);
}

TEST(Ait, ReadsItsMembers) {
  const Ait table = parsed(kSection);
  EXPECT_STREQ(table.get_table_id_text(), "ait");
  EXPECT_EQ(table.get_application_type(), 1);
  EXPECT_EQ(table.get_common_descriptors_length(), 22);
  EXPECT_EQ(table.get_application_loop_length(), 42);
  EXPECT_EQ(table.get_private_data_specifier_descriptors().at(0).get_private_data_specifier(), 0x28u);
  ASSERT_EQ(table.get_applications().size(), 2u);
  const Ait::Application& first = table.get_applications()[0];
  EXPECT_EQ(first.get_application_identifier().application_identifier_as_text(), "0000002A 0001");
  EXPECT_EQ(first.get_application_control_code(), 1);
  EXPECT_EQ(first.get_application_descriptors_loop_length(), 24);
  EXPECT_EQ(first.get_application_descriptors().size(), 1u);
  EXPECT_EQ(first.get_transport_protocol_descriptors().size(), 1u);
  const Ait::Application& second = table.get_applications()[1];
  EXPECT_EQ(second.get_organisation_id(), 0xFFFFFFFEu);
  EXPECT_EQ(second.get_application_id(), 0x4001);
  EXPECT_EQ(second.get_application_control_code(), 2);
}

TEST(Ait, NamesTheApplicationTypes) {
  expect_texts(&Ait::get_application_type_text,
               {"reserved_future_use", "DVB-J application", "DVB-HTML application"},
               "subject to registration with DVB");
  EXPECT_STREQ(parsed(kSection).get_application_type_text(), "DVB-J application");
  EXPECT_STREQ(parsed(long_section(0x74, body(), {.extension = 0x8002})).get_application_type_text(),
               "subject to registration with DVB");
}

TEST(Ait, TakesAnyTableIdAndReservedBits) {
  for (int id = 0; id <= 255; ++id)
    EXPECT_EQ(failure([&] { parsed(long_section(id, body(), {.private_bit = id & 1, .reserved = id & 3})); }),
              "nothing");
  EXPECT_EQ(failure([&] { parsed(long_section(0x74, body(), {.syntax_indicator = 0})); }), "2: ");
}

TEST(Ait, KeepsPositionsWithTheSection) {
  const Ait table = parsed(kSection, true);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{2, 5, 11, 15}));
  ASSERT_EQ(table.get_applications().size(), 2u);
  EXPECT_EQ(table.get_applications()[0].get_descriptor_pos(), (std::vector<int>{35, 46, 52}));
  EXPECT_TRUE(table.get_applications()[1].get_descriptor_pos().empty());
  EXPECT_EQ(*table.get_section_ptr_by_desc_pos(15), 0x05);
  EXPECT_EQ(*table.get_section_ptr_by_desc_pos(52), 0x02);

  const Ait without = parsed(kSection, false);
  EXPECT_TRUE(without.get_descriptor_pos().empty());
  EXPECT_TRUE(without.get_applications()[0].get_descriptor_pos().empty());
}

TEST(Ait, MayBeEmpty) {
  const Ait table = parsed(section({0xF0, 0, 0xF0, 0}));
  EXPECT_TRUE(table.get_applications().empty());
  EXPECT_EQ(table.get_common_descriptors_length(), 0);
  const Ait fresh;
  EXPECT_FALSE(fresh.is_parsed());
  EXPECT_EQ(fresh.get_common_descriptors_length(), 0);
  EXPECT_EQ(fresh.get_application_loop_length(), 0);
  EXPECT_TRUE(fresh.get_applications().empty());
}

TEST(Ait, RefusesWrongLengths) {
  const std::string common = "3: application common descriptors length mismatch";
  const std::string applications = "3: application length mismatch";
  const std::string small = "3: application length to small";
  EXPECT_EQ(refusal(body()), "nothing");
  EXPECT_EQ(refusal(body({.common = 0})), small);  // the first descriptor gives a loop of 1 byte
  EXPECT_EQ(refusal(body({.common = 21})), common);
  EXPECT_EQ(refusal(body({.common = 23})), common);
  EXPECT_EQ(refusal(body({.common = 4095})), common);
  EXPECT_EQ(refusal(body({.applications = 0})), "nothing");  // what follows the loops is not looked at
  EXPECT_EQ(refusal(body({.applications = 32})), applications);
  EXPECT_EQ(refusal(body({.applications = 41})), small);
  EXPECT_EQ(refusal(body({.applications = 43})), small);
  EXPECT_EQ(refusal(body({.applications = 4095})), applications);  // the last ends past the CRC
  EXPECT_EQ(refusal(body({.loop = 0})),
            "3: application_name_descriptor: 1");  // descriptors taken for an application
  EXPECT_EQ(refusal(body({.loop = 23})), common);
  EXPECT_EQ(refusal(body({.loop = 25})), common);
  EXPECT_EQ(refusal(body({.loop = 4095})), common);
}

TEST(Ait, RefusesASectionThatEndsInItsLoops) {
  const Bytes whole = body();
  EXPECT_EQ(refusal(Bytes(whole.begin(), whole.end() - 1)),
            "3: application common descriptors length mismatch");  // the CRC gives a loop its length
  EXPECT_EQ(refusal(joined({whole, Bytes(1)})), "nothing");
  Bytes longest = whole;
  longest.resize(4095 - 9);
  EXPECT_EQ(refusal(longest), "nothing");
  for (size_t size = 0; size < whole.size(); ++size)
    EXPECT_NE(refusal(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size))), "-1: crc error");
}

TEST(Ait, RefusesADescriptorThatRunsPastItsLoop) {
  Bytes past = kGeneral;
  past[1] += 1;
  EXPECT_EQ(refusal(joined({with_length(past), with_length({})})),
            "3: application common descriptors length mismatch");
  EXPECT_EQ(refusal(joined({with_length({}), with_length(application(1, 1, 1, past))})),
            "3: application common descriptors length mismatch");
}

TEST(Ait, RefusesAnApplicationOfLessThanNineBytes) {
  for (size_t left = 1; left < 9; ++left)
    EXPECT_EQ(refusal(joined({with_length({}), with_length(Bytes(left))})), "3: application length to small");
  EXPECT_EQ(refusal(joined({with_length({}), with_length(Bytes(9))})), "nothing");
  int consumed = 0;
  EXPECT_EQ(failure([&] { Ait::Application(Bytes(9).data(), 8, consumed, false, Bytes(9).data()); }),
            "3: application length to small");
}

TEST(Ait, TellsNoBytesOfAnApplicationThatFails) {
  Bytes past = kGeneral;
  past[1] += 1;
  const Bytes bytes = application(1, 1, 1, past);
  int consumed = -7;
  EXPECT_EQ(failure([&] { Ait::Application(view(bytes), 99, consumed, false, view(bytes)); }),
            "3: application common descriptors length mismatch");
  EXPECT_EQ(consumed, -7);
}

TEST(Ait, TellsTheBytesOfAnApplication) {
  const Bytes bytes = joined({Bytes{0xEE}, application(1, 2, 3, kLoop)});
  int consumed = 0;
  const Ait::Application row(view(bytes).from(1), 99, consumed, true, view(bytes));
  EXPECT_EQ(consumed, 33);
  EXPECT_EQ(row.get_descriptor_pos(), (std::vector<int>{10, 21, 27}));
}

TEST(Ait, KeepsWhatItHadReadWhenItFails) {
  Ait table;
  const Bytes late = section(
      joined({with_length(joined({kGeneral, kSpecifier})),
              with_length(joined({application(1, 1, 1, kGeneral), application(2, 2, 2, kRefused)}))}));
  EXPECT_EQ(failure([&] { table.Parse(late.data(), late.size(), true); }), "3: dii_location_descriptor: 1");
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.get_general_descriptors().size(), 1u);
  EXPECT_EQ(table.get_private_data_specifier_descriptors().size(), 1u);
  ASSERT_EQ(table.get_applications().size(), 1u);
  EXPECT_EQ(table.get_applications()[0].get_application_id(), 1);
}

TEST(Ait, EmptiesItsApplicationsAndGeneralDescriptorsAloneOverReset) {
  Ait table = parsed(kSection, true);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_applications().empty());
  EXPECT_TRUE(table.get_general_descriptors().empty());
  EXPECT_EQ(table.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_private_data_specifier_descriptors().size(), 1u);
  EXPECT_EQ(table.get_external_application_authorisation_descriptors().size(), 1u);
  EXPECT_EQ(table.get_descriptor_pos().size(), 4u);
  EXPECT_EQ(table.get_common_descriptors_length(), 22);

  table.Parse(kSection.data(), kSection.size(), true);
  EXPECT_EQ(table.get_applications().size(), 2u);
  EXPECT_EQ(table.get_general_descriptors().size(), 1u);
  EXPECT_EQ(table.get_user_private_descriptors().size(), 2u);
  EXPECT_EQ(table.get_external_application_authorisation_descriptors().size(), 2u);
  EXPECT_EQ(table.get_descriptor_pos().size(), 8u);
}

TEST(Ait, AddsToWhatItHolds) {
  Ait table = loaded_table<Ait>(kXml);
  table.Parse(kSection.data(), kSection.size(), false);
  EXPECT_EQ(table.get_applications().size(), 4u);
  EXPECT_EQ(table.get_general_descriptors().size(), 2u);
}

TEST(Ait, KeepsARefusedDescriptorWhereItIsTolerant) {
  const Bytes refused = section(joined({with_length(joined({kGeneral, kRefused})),
                                        with_length(application(1, 1, 1, joined({kRefused, kProtocol})))}));
  EXPECT_EQ(failure([&] { parsed(refused); }), "3: dii_location_descriptor: 1");
  Ait table;
  table.set_tolerant(true);
  table.Parse(refused.data(), refused.size(), false);
  EXPECT_EQ(tags(table.get_general_descriptors()), (std::vector{0x7F, 0x0D}));
  ASSERT_EQ(table.get_applications().size(), 1u);
  EXPECT_EQ(tags(table.get_applications()[0].get_general_descriptors()), std::vector{0x0D});
  EXPECT_EQ(table.get_applications()[0].get_transport_protocol_descriptors().size(), 1u);
  ASSERT_EQ(table.get_descriptor_failures().size(), 2u);
  for (const DescriptorFailure& f : table.get_descriptor_failures()) {
    EXPECT_EQ(f.tag, 0x0D);
    EXPECT_EQ(f.text, "dii_location_descriptor: 1");
    EXPECT_EQ(f.code, 3);
  }
  EXPECT_EQ(table.get_descriptor_failures()[0].offset, 2 + 4);
  EXPECT_EQ(table.get_descriptor_failures()[1].offset, 2 + 4 + 7 + 2 + 9);
}

TEST(Ait, StopsAStringAtTheSectionsEnd) {
  const Bytes runs_on = descriptor_claiming(0x0B, 1, {200});
  const Bytes bytes = section(joined({with_length({}), with_length(application(1, 1, 1, runs_on))}));
  const Ait table = parsed(bytes);
  const DescriptorAitApplicationIcons& icons =
      table.get_applications().at(0).get_application_icons_descriptors().at(0);
  EXPECT_EQ(icons.get_icon_locator_length(), 200);
  EXPECT_EQ(icons.get_icon_locator(), std::string(bytes.end() - 4, bytes.end()));
  EXPECT_EQ(icons.get_icon_flags(), 0);
}

TEST(Ait, NeedsItsAttributesAndLists) {
  for (const char* name : {"table_id", "crc32"})
    EXPECT_EQ(failure([&] { loaded_table<Ait>(changed(kXml, std::string(name) + "=", "other=")); }),
              std::string("-1: failed to get ") + name);
  for (const char* name : {"common_descriptors_length", "application_loop_length", "application_control_code",
                           "application_descriptors_loop_length", "application_identifer"})
    EXPECT_EQ(failure([&] { loaded_table<Ait>(changed(kXml, std::string(name) + "=", "other=")); }),
              "-1: failed");
  EXPECT_EQ(failure([] { loaded_table<Ait>(changed(kXml, "application_infos>", "other>")); }),
            "-1: failed to get program_infos node");
  EXPECT_EQ(failure([] { loaded_table<Ait>(changed(kXml, "<descriptors />", "<other />")); }), "nothing");
}

TEST(Ait, LoadsApplicationsOfAnyNameAndSkipsUnknownDescriptors) {
  const std::string xml = changed(changed(kXml, "application_info ", "app "), "application_info>", "app>");
  EXPECT_EQ(saved(loaded_table<Ait>(xml), "ait"), kXml);
  const Ait table = loaded_table<Ait>(changed(kXml, "user_private_descriptor", "CA_descriptor"));
  EXPECT_TRUE(table.get_user_private_descriptors().empty());
  EXPECT_EQ(table.get_general_descriptors().size(), 1u);
}

namespace {

std::string load_failure(const std::string& operation, int nth) {
  FaultyDom dom(operation, nth);
  Ait table;
  const std::string out = failure([&] { table.ParseDOM(dom.node()); });
  EXPECT_EQ(dom.references(), 0);
  return out;
}

// What a save says when a call fails, and what it throws.
std::string save_result(const Ait& table, const std::string& operation, int nth) {
  FaultyDom dom(operation, nth);
  bool result = false;
  const std::string thrown = failure([&] { result = table.SaveSection(dom.document(), dom.node()); });
  EXPECT_EQ(dom.references(), 0);
  return thrown == "nothing" ? (result ? "true" : "false") : thrown;
}

}  // namespace

TEST(Ait, NamesTheStepOfALoadThatFailed) {
  EXPECT_EQ(load_failure("get_attributes", 1), "-1: failed to get attribute map");
  EXPECT_EQ(load_failure("get_attributes", 2), "-1: failed");
  EXPECT_EQ(load_failure("selectSingleNode", 1), "-1: failed to get program_infos node");
  EXPECT_EQ(load_failure("get_childNodes", 1), "-1: failed to get program_info list");
  EXPECT_EQ(load_failure("get_length", 1), "-1: failed to get length");
  EXPECT_EQ(load_failure("get_item", 1), "-1: failed to get program_info node");
  EXPECT_EQ(load_failure("get_attributes", 3), "-1: failed");
  EXPECT_EQ(load_failure("selectSingleNode", 2), "-1: failed to get descriptors node");
  EXPECT_EQ(load_failure("get_childNodes", 2), "-1: failed to get descriptors node list");
  EXPECT_EQ(load_failure("get_length", 2), "-1: failed to get descriptors node list length");
  EXPECT_EQ(load_failure("get_item", 2), "-1: failed to get item");
  EXPECT_EQ(load_failure("selectSingleNode", 3), "-1: failed to get descriptors node");
}

TEST(Ait, AttachesItsListFirstAndHonoursItsApplications) {
  const Ait table = parsed(section(joined({with_length(kGeneral), with_length(application(1, 1, 1, {}))})));
  FaultyDom dom;
  EXPECT_TRUE(table.SaveSection(dom.document(), dom.node()));
  const std::string steps = dom.steps();
  EXPECT_EQ(steps.substr(steps.find("createAttribute common_descriptors_length")),
            "createAttribute common_descriptors_length\n"
            "createAttribute application_loop_length\n"
            "createElement application_infos\n"
            "appendChild\n"
            "createElement application_info\n"
            "appendChild\n"
            "createAttribute application_control_code\n"
            "createAttribute application_descriptors_loop_length\n"
            "createAttribute application_identifer\n"
            "createElement descriptors\n"
            "appendChild\n"
            "createElement descriptors\n"
            "createElement general_descriptor\n"
            "createAttribute descriptor_id\n"
            "createAttribute descriptor_length\n"
            "createAttribute private_data\n"
            "appendChild\n"
            "appendChild\n");

  // 9 attributes of the header, 2 of the table, 3 of the application; then none that counts.
  for (int nth = 1; nth <= 14; ++nth) EXPECT_EQ(save_result(table, "put_nodeValue", nth), "false") << nth;
  for (int nth = 15; nth <= 17; ++nth) EXPECT_EQ(save_result(table, "put_nodeValue", nth), "true") << nth;
  EXPECT_EQ(save_result(table, "createElement", 1), "false");
  EXPECT_EQ(save_result(table, "createElement", 2), "false");
  for (int nth = 3; nth <= 5; ++nth) EXPECT_EQ(save_result(table, "createElement", nth), "true") << nth;
  EXPECT_EQ(save_result(table, "appendChild", 1), "false");
  EXPECT_EQ(save_result(table, "appendChild", 2), "false");
  for (int nth = 3; nth <= 5; ++nth) EXPECT_EQ(save_result(table, "appendChild", nth), "true") << nth;
  EXPECT_EQ(save_result(table, "QueryInterface", 1), "false");
}

TEST(Ait, PassesOnWhatTheSaveOfAnIPv6RouteThrows) {
  const Ait table = parsed(section(joined({with_length(descriptor(0x07, Bytes(35))), with_length({})})));
  // Behind 11 attributes of the table and 2 of the descriptor: component_tag, address, port_number,
  // address_mask.
  EXPECT_EQ(save_result(table, "put_nodeValue", 14), "true");
  EXPECT_EQ(save_result(table, "put_nodeValue", 15), "-1: failed");
  EXPECT_EQ(save_result(table, "put_nodeValue", 16), "true");
  EXPECT_EQ(save_result(table, "put_nodeValue", 17), "-1: failed");
}
