// The service description table.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/sdt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSection = joined({
    bits({{8, 0x42, "table_id"},
          {1, 1, "section_syntax_indicator"},
          {1, 0, "reserved_future_use"},
          {2, 3, "reserved"},
          {12, 43, "section_length"},
          {16, 0x0401, "transport_stream_id"},
          {2, 3, "reserved"},
          {5, 3, "version_number"},
          {1, 1, "current_next_indicator"},
          {8, 0, "section_number"},
          {8, 0, "last_section_number"},
          {16, 0x0002, "original_network_id"},
          {8, 0xFF, "reserved_future_use"}}),
    bits({{16, 0x1001, "service_id"},
          {6, 0x3F, "reserved_future_use"},
          {1, 0, "EIT_schedule_flag"},
          {1, 1, "EIT_present_following_flag"},
          {3, 4, "running_status"},
          {1, 1, "free_CA_mode"},
          {12, 21, "descriptors_loop_length"}}),
    descriptor(0x48, joined({{0x19, 4}, text("ARTE"), {5}, text("Kan\xE4l")})),
    descriptor(0x40, text("N")),
    descriptor(0x7F, {0x0B, 0x42}),
    bits({{16, 0xFFFE, "service_id"},
          {6, 0x3F, "reserved_future_use"},
          {1, 1, "EIT_schedule_flag"},
          {1, 0, "EIT_present_following_flag"},
          {3, 3, "running_status"},
          {1, 0, "free_CA_mode"},
          {12, 0, "descriptors_loop_length"}}),
    bits({{32, 0x9FA86BFB, "CRC_32"}}),
});

const char* const kReport =
    "table name: service_description_section - actual_transport_stream\n"
    "table_id 42\n"
    "section_length 002B\n"
    "context_id 0401\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 9FA86BFB\n"
    "original_network_id 2\n"
    "service_id 1001\n"
    "EIT_schedule_flag 0\n"
    "EIT_present_following_flag 1\n"
    "running_status 4\n"
    "free_CA_mode 1\n"
    "descriptor_tag: 7F User Private\n"
    "data:\n"
    "0B 42                                            : .B\n"
    "descriptor_tag: 48 service_descriptor\n"
    "service_type 19\n"
    "provider_name ARTE\n"
    "service_name Kan\xE4l\n"
    "service_id FFFE\n"
    "EIT_schedule_flag 1\n"
    "EIT_present_following_flag 0\n"
    "running_status 3\n"
    "free_CA_mode 0\n";

const char* const kXml =
    R"(<sdt table_id="66" syntax_indicator="1" section_length="43" context_id="1025" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-1616352261")"
    R"( original_network_id="2"><service_infos>)"
    R"(<service_info service_id="4097" EIT_schedule_flag="0" EIT_present_following_flag="1" running_status="4")"
    R"( free_CA_mode="1"><descriptors>)"
    R"(<network_name_descriptor descriptor_id="64" descriptor_length="1" network_name="N" />)"
    R"(<service_descriptor descriptor_id="72" descriptor_length="12" service_type="25" provider_name="ARTE")"
    " service_name=\"Kan\xC3\xA4l\" />"
    R"(<general_descriptor descriptor_id="127" descriptor_length="2" private_data="0b42" />)"
    R"(</descriptors></service_info>)"
    R"(<service_info service_id="65534" EIT_schedule_flag="1" EIT_present_following_flag="0" running_status="3")"
    R"( free_CA_mode="0"><descriptors /></service_info></service_infos></sdt>)";

const char* const kMismatch = "-1: descriptor start end mismatch";

Bytes service(int service_id, const Bytes& descriptors, int claimed = -1) {
  return joined({bits({{16, static_cast<uint64_t>(service_id), "service_id"}, {8, 0xFC, "flags"}}),
                 loop(descriptors, claimed)});
}
Bytes sdt(const Bytes& services) {
  return long_section(0x42, joined({{0x00, 0x01, 0xFF}, services}));
}

const TableCases kTables = {table_case<Sdt>("Sdt", "sdt", kSection)};

}  // namespace

TEST(Sdt, HasItsFaces) {
  expect_faces<Sdt>(kSection, kReport, kXml);
}

TEST(Sdt, ReadsItsMembers) {
  const auto table = parsed_table<Sdt>(kSection);
  EXPECT_EQ(table.get_transport_stream_id(), 0x0401);
  EXPECT_EQ(table.get_original_network_id(), 0x0002);
  const auto& services = table.get_service_infos();
  ASSERT_EQ(services.size(), 2u);
  EXPECT_EQ(services[0].get_service_id(), 0x1001);
  EXPECT_EQ(services[0].get_eit_schedule_flag(), 0);
  EXPECT_EQ(services[0].get_eit_present_following_flag(), 1);
  EXPECT_EQ(services[0].get_running_status(), 4);
  EXPECT_EQ(services[0].get_free_ca_mode(), 1);
  EXPECT_EQ(services[0].get_service_descriptors().size(), 1u);
  EXPECT_EQ(services[0].get_network_name_descriptors().size(), 1u);
  EXPECT_EQ(services[0].get_general_descriptors().size(), 1u);
  EXPECT_EQ(services[1].get_service_id(), 0xFFFE);
  EXPECT_EQ(services[1].get_eit_schedule_flag(), 1);
  EXPECT_EQ(services[1].get_running_status(), 3);
}

TEST(Sdt, TakesEachBitOfAServiceForItsField) {
  for (int bit = 12; bit < 40; ++bit) {
    const auto table = parsed_table<Sdt>(sdt(bits({{40, 1ULL << bit, "service"}})));
    ASSERT_EQ(table.get_service_infos().size(), 1u);
    const auto& s = table.get_service_infos()[0];
    EXPECT_EQ(s.get_service_id(), bit >= 24 ? 1 << (bit - 24) : 0) << bit;
    EXPECT_EQ(s.get_eit_schedule_flag(), bit == 17) << bit;
    EXPECT_EQ(s.get_eit_present_following_flag(), bit == 16) << bit;
    EXPECT_EQ(s.get_running_status(), bit >= 13 && bit < 16 ? 1 << (bit - 13) : 0) << bit;
    EXPECT_EQ(s.get_free_ca_mode(), bit == 12) << bit;
  }
}

TEST(Sdt, HasTwoTableIds) {
  EXPECT_EQ(table_ids<Sdt>(kSection), (std::vector<int>{0x42, 0x46}));
  Bytes section = kSection;
  for (int id = 0; id < 256; ++id) {
    section[0] = static_cast<uint8_t>(id);
    repair_crc(section);
    Sdt table;
    failure_of_parse(section, table);
    EXPECT_STREQ(table.get_table_id_text(),
                 id == 0x42   ? "service_description_section - actual_transport_stream"
                 : id == 0x46 ? "service_description_section - other_transport_stream"
                              : "ERROR");
  }
}

TEST(Sdt, WantsTheSyntaxIndicatorAndTakesAnyReservedBits) {
  expect_syntax_indicator_and_any_reserved_bits<Sdt>(0x42, Bytes(3));
}

TEST(Sdt, IsEmptyWithoutServices) {
  const auto table = parsed_table<Sdt>(sdt({}));
  EXPECT_EQ(table.get_section_length(), 12);
  EXPECT_TRUE(table.get_service_infos().empty());
  const std::string xml = saved(table);
  EXPECT_EQ(xml.substr(xml.find(" original")), " original_network_id=\"1\"><service_infos /></d>");
}

TEST(Sdt, RefusesASectionWithoutItsOwnFields) {
  for (size_t size = 0; size < 3; ++size) {
    Sdt table;
    EXPECT_EQ(failure_of_parse(long_section(0x42, Bytes(size, 0x11)), table), kMismatch) << size;
    EXPECT_TRUE(table.get_service_infos().empty());
  }
}

TEST(Sdt, RefusesAServiceOfFewerThanFiveBytes) {
  for (size_t size = 1; size < 5; ++size) {
    EXPECT_EQ(failure_of_parse<Sdt>(sdt(Bytes(size))), "-1: too little data") << size;
    Sdt table;
    EXPECT_EQ(failure_of_parse(sdt(joined({service(1, {}), Bytes(size)})), table), "-1: too little data")
        << size;
    EXPECT_EQ(table.get_service_infos().size(), 1u);
  }
}

TEST(Sdt, FindsAServiceThatOverrunsTheSection) {
  for (const int claimed : {4, 202, 4095}) {
    Sdt table;
    EXPECT_EQ(failure_of_parse(sdt(service(1, descriptor_claiming(0x80, 200, {7}), claimed)), table),
              kMismatch)
        << claimed;
    ASSERT_EQ(table.get_service_infos().size(), 1u);
    EXPECT_EQ(table.get_service_infos()[0].get_user_private_descriptors().size(), 1u);
    EXPECT_FALSE(table.is_parsed());
  }
}

TEST(Sdt, DoesNotNoticeADescriptorThatOverrunsTheLoopOfItsService) {
  const auto table = parsed_table<Sdt>(sdt(joined({service(1, {0x80}), service(0x0344, {})})));
  ASSERT_EQ(table.get_service_infos().size(), 2u);
  ASSERT_EQ(table.get_service_infos()[0].get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_service_infos()[0].get_user_private_descriptors()[0].get_private_data(),
            (Bytes{0x44, 0xFC, 0xF0}));
  EXPECT_EQ(table.get_service_infos()[1].get_service_id(), 0x0344);
}

TEST(Sdt, RefusesADescriptorThatItsClassRefuses) {
  Sdt table;
  EXPECT_EQ(failure_of_parse(sdt(joined({service(1, {}), service(2, descriptor(0x4B, {1}))})), table),
            "3: NVOD_reference_descriptor");
  EXPECT_EQ(table.get_service_infos().size(), 1u);
}

TEST(Sdt, HasThePositionsOfItsServicesOnlyIfItKeepsTheSection) {
  const auto table = parsed_table<Sdt>(kSection, true);
  EXPECT_EQ(table.get_service_infos()[0].get_descriptor_pos(), (std::vector<int>{8, 22, 25}));
  EXPECT_TRUE(table.get_service_infos()[1].get_descriptor_pos().empty());
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(8)[0], 0x48);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(25)[0], 0x7F);
  EXPECT_TRUE(parsed_table<Sdt>(kSection).get_service_infos()[0].get_descriptor_pos().empty());
}

TEST(Sdt, DoublesWhatItHoldsWhenItIsNotReset) {
  auto table = parsed_table<Sdt>(kSection);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(table.get_service_infos().size(), 4u);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_service_infos().empty());
  EXPECT_EQ(table.get_original_network_id(), 2);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(report(table), kReport);
}

TEST(Sdt, PrintsTheDescriptorsOfTwoClassesInTheirOrder) {
  const Bytes name = descriptor(0x48, {1, 0, 0});
  const auto table = parsed_table<Sdt>(sdt(service(
      1, joined({name, descriptor(0x90, {}), descriptor(0x47, text("B")), descriptor(0x65, {}), name}))));
  const std::string text = report(table);
  const std::string service_lines = "service_type 1\nprovider_name \nservice_name \n";
  EXPECT_EQ(text.substr(text.find("descriptor_tag")),
            "descriptor_tag: 65 User Private\ndata:\n"
            "descriptor_tag: 48 service_descriptor\n" +
                service_lines + "descriptor_tag: 48 service_descriptor\n" + service_lines);
  EXPECT_EQ(table.get_service_infos()[0].get_bouquet_name_descriptors().size(), 1u);
}

TEST(Sdt, PrintsAServiceInTheBaseOfTheStream) {
  const auto table = parsed_table<Sdt>(sdt(service(0x2A, {})));
  EXPECT_EQ(
      report(table.get_service_infos()[0]),
      "service_id 42\nEIT_schedule_flag 0\nEIT_present_following_flag 0\nrunning_status 7\nfree_CA_mode 1\n");
  std::ostringstream stream;
  table.dump_state(stream);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
}

TEST(Sdt, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Sdt>(kXml);
  EXPECT_EQ(failure_of_load<Sdt>(kXml, R"(free_CA_mode="0"><descriptors />)", R"(free_CA_mode="0">)"),
            "nothing");
  const std::string header = std::string(kXml, std::string(kXml).find('>'));
  const auto load = [&header](const std::string& rest) {
    return failure([&] { loaded_table<Sdt>(header + rest); });
  };
  EXPECT_EQ(load("/>"), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><x><service_infos/></x></sdt>"), "-1: failed to get program_infos node");
  EXPECT_EQ(load("><service_infos/></sdt>"), "nothing");
}

TEST(Sdt, SaysWhichStepOfItsLoadFails) {
  const auto step = [](auto... arguments) { return failure_of_step<Sdt>(arguments...); };
  EXPECT_EQ(step("none"), "nothing");
  EXPECT_EQ(step("get_attributes"), "-1: failed to get attribute map");
  EXPECT_EQ(step("getNamedItem", 9, S_FALSE), "-1: failed to get crc32");
  EXPECT_EQ(step("get_attributes", 2), "-1: failed");
  EXPECT_EQ(step("getNamedItem", 10, S_FALSE), "-1: failed");
  EXPECT_EQ(step("selectSingleNode"), "-1: failed to get program_infos node");
  EXPECT_EQ(step("get_childNodes"), "-1: failed to get program_info list");
  EXPECT_EQ(step("get_length"), "-1: failed to get length");
  EXPECT_EQ(step("get_item"), "-1: failed to get program_info node");
  EXPECT_EQ(step("get_attributes", 3), "-1: failed");
  for (int nth = 11; nth <= 15; ++nth) EXPECT_EQ(step("getNamedItem", nth, S_FALSE), "-1: failed");
  EXPECT_EQ(step("selectSingleNode", 2), "-1: failed to get descriptors node");
  EXPECT_EQ(step("get_childNodes", 2), "-1: failed to get descriptors node list");
  EXPECT_EQ(step("get_length", 2), "-1: failed to get descriptors node list length");
  EXPECT_EQ(step("get_item", 2), "-1: failed to get item");
  EXPECT_EQ(step("get_nodeName"), "-1: failed to get node name");
}
