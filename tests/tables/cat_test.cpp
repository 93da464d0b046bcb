// The conditional access table.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/cat.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSection = joined({
    bits({{8, 0x01, "table_id"},
          {1, 1, "section_syntax_indicator"},
          {1, 0, "'0'"},
          {2, 3, "reserved"},
          {12, 24, "section_length"},
          {16, 0xFFFF, "reserved"},
          {2, 3, "reserved"},
          {5, 3, "version_number"},
          {1, 1, "current_next_indicator"},
          {8, 0, "section_number"},
          {8, 0, "last_section_number"}}),
    bits({{8, 0x09, "descriptor_tag"},
          {8, 4, "descriptor_length"},
          {16, 0x0100, "CA_system_ID"},
          {3, 7, "reserved"},
          {13, 0x0123, "CA_PID"}}),
    bits({{8, 0x09, "descriptor_tag"},
          {8, 7, "descriptor_length"},
          {16, 0x0B00, "CA_system_ID"},
          {3, 7, "reserved"},
          {13, 0x0456, "CA_PID"},
          {24, 0x616263, "private_data_byte"}}),
    bits({{32, 0x70011B3E, "CRC_32"}}),
});

const char* const kReport =
    "table name: conditional_access_section\n"
    "table_id 01\n"
    "section_length 0018\n"
    "context_id FFFF\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 70011B3E\n";

const std::string kHeaderXml =
    R"(<cat table_id="1" syntax_indicator="1" section_length="24" context_id="65535" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="1879120702")";

const std::string kXml =
    kHeaderXml +
    R"(><descriptors>)"
    R"(<CA_descriptor descriptor_id="9" descriptor_length="4" sys_id="256" pid="291" private_bytes="" />)"
    R"(<CA_descriptor descriptor_id="9" descriptor_length="7" sys_id="2816" pid="1110" private_bytes="616263" />)"
    R"(</descriptors></cat>)";

Bytes ca(int system, const Bytes& private_data = {}) {
  return descriptor(
      0x09,
      joined({bits({{16, static_cast<uint64_t>(system), "CA_system_ID"}, {16, 0xE001, "reserved, CA_PID"}}),
              private_data}));
}

Bytes cat(const Bytes& descriptors) {
  return long_section(0x01, descriptors);
}

const TableCases kTables = {table_case<Cat>("Cat", "cat", kSection)};

}  // namespace

TEST(Cat, HasItsFaces) {
  expect_faces<Cat>(kSection, kReport, kXml);
}

TEST(Cat, LeavesTheStreamInHexadecimal) {
  std::ostringstream stream;
  parsed_table<Cat>(kSection).dump_state(stream);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
  EXPECT_EQ(stream.fill(), '0');
}

TEST(Cat, ReadsItsDescriptors) {
  const auto table = parsed_table<Cat>(kSection);
  EXPECT_STREQ(table.get_table_id_text(), "conditional_access_section");
  ASSERT_EQ(table.get_CA_descriptors().size(), 2u);
  EXPECT_EQ(report(table.get_CA_descriptors()[0]),
            "descriptor_tag: 09 CA_Descriptor\nsys_id: 0100\npid: 0123\n");
  EXPECT_EQ(report(table.get_CA_descriptors()[1]),
            "descriptor_tag: 09 CA_Descriptor\nsys_id: 0b00\npid: 0456\nprivate data:\n"
            "61 62 63                                         : abc\n");
}

TEST(Cat, IsEmptyWithoutDescriptors) {
  const auto table = parsed_table<Cat>(cat({}));
  EXPECT_EQ(table.get_section_length(), 9);
  EXPECT_TRUE(table.get_CA_descriptors().empty());
  const std::string xml = saved(table);
  EXPECT_EQ(xml.substr(xml.find('>')), "><descriptors /></d>");
}

TEST(Cat, RefusesEveryOtherTag) {
  for (int tag = 0; tag < 256; ++tag) {
    Cat table;
    const std::string text =
        failure_of_parse(cat(joined({ca(1), ca(2), descriptor(tag, Bytes(4)), ca(3)})), table, true);
    EXPECT_EQ(text, tag == 0x09 ? "nothing" : "-1: invalid descriptor tag") << tag;
    EXPECT_EQ(table.get_CA_descriptors().size(), tag == 0x09 ? 4u : 2u) << tag;
    EXPECT_EQ(table.get_descriptor_pos(),
              tag == 0x09 ? (std::vector<int>{0, 6, 12, 18}) : (std::vector<int>{0, 6, 12}))
        << tag;
    EXPECT_EQ(table.is_parsed(), tag == 0x09);
  }
}

TEST(Cat, RefusesADescriptorThatOverrunsItsLoop) {
  Bytes last = ca(2, {7});
  for (const int claimed : {6, 9, 255}) {
    last[1] = static_cast<uint8_t>(claimed);
    Cat table;
    EXPECT_EQ(failure_of_parse(cat(joined({ca(1), last})), table, true), "-1: invalid descriptor size")
        << claimed;
    EXPECT_EQ(table.get_CA_descriptors().size(), 1u);
    EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{0, 6}));
  }
  last[1] = 4;  // then one byte is left, and the length byte after it is the first of the CRC
  const Bytes section = cat(joined({ca(1), last}));
  EXPECT_EQ(failure_of_parse<Cat>(section), "-1: invalid descriptor size");
}

TEST(Cat, LooksAtTheSizeBeforeTheTag) {
  EXPECT_EQ(failure_of_parse<Cat>(cat(descriptor_claiming(0x52, 3, {1}))), "-1: invalid descriptor size");
  EXPECT_EQ(failure_of_parse<Cat>(cat(descriptor(0x52, {1}))), "-1: invalid descriptor tag");
}

TEST(Cat, HasItsPositionsOnlyIfItKeepsTheSection) {
  const auto table = parsed_table<Cat>(kSection, true);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{0, 6}));
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(6), table.get_section_raw_bytes().data() + 14);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(6)[0], 0x09);
  EXPECT_TRUE(parsed_table<Cat>(kSection).get_descriptor_pos().empty());
  EXPECT_EQ(parsed_table<Cat>(kSection).get_section_ptr_by_desc_pos(0), nullptr);
}

TEST(Cat, HasATableIdOfItsOwn) {
  EXPECT_EQ(table_ids<Cat>(kSection), std::vector<int>{0x01});
}

TEST(Cat, WantsTheSyntaxIndicatorAndTakesAnyReservedBits) {
  expect_syntax_indicator_and_any_reserved_bits<Cat>(0x01, {});
}

TEST(Cat, DoublesWhatItHoldsWhenItIsNotReset) {
  auto table = parsed_table<Cat>(kSection, true);
  table.Parse(kSection.data(), true);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{0, 6, 0, 6}));
  EXPECT_EQ(table.get_CA_descriptors().size(), 4u);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_CA_descriptors().empty());
  EXPECT_TRUE(table.get_descriptor_pos().empty());
  table.Parse(kSection.data(), false);
  EXPECT_EQ(saved(table, "cat"), kXml);
}

TEST(Cat, LoadsDescriptorsOfEveryClass) {
  const auto table = loaded_table<Cat>(
      kHeaderXml +
      R"(><x/><descriptors><stuffing_descriptor descriptor_id="66" descriptor_length="1" stuffing_byte="ff"/>)"
      R"(<CA_descriptor descriptor_id="200" descriptor_length="4" sys_id="1" pid="2" private_bytes=""/>)"
      R"(</descriptors></cat>)");
  EXPECT_EQ(table.get_stuffing_descriptors().size(), 1u);
  ASSERT_EQ(table.get_CA_descriptors().size(), 1u);
  EXPECT_EQ(table.get_CA_descriptors()[0].get_descriptor_tag(), 200);
  EXPECT_EQ(report(table), kReport);
}

TEST(Cat, SaysWhatItsDocumentLacks) {
  expect_each_attribute_of_table_needed<Cat>(kXml);
  const xml::Document document = xml::Document::from_text(kHeaderXml + "/>");
  Cat table;
  table.ParseDOM(document.root());
  EXPECT_TRUE(table.is_parsed());
  EXPECT_TRUE(table.get_CA_descriptors().empty());
  EXPECT_EQ(table.get_crc32(), 0x70011B3Eu);
}

TEST(Cat, SaysWhichStepOfItsLoadFails) {
  const auto step = [](auto... arguments) { return failure_of_step<Cat>(arguments...); };
  EXPECT_EQ(step("none"), "nothing");
  EXPECT_EQ(step("get_attributes"), "-1: failed to get attribute map");
  EXPECT_EQ(step("getNamedItem", 1, S_FALSE), "-1: failed to get table_id");
  EXPECT_EQ(step("selectSingleNode"), "-1: failed to get descriptors node");
  EXPECT_EQ(step("get_childNodes"), "-1: failed to get descriptors node list");
  EXPECT_EQ(step("get_length"), "-1: failed to get descriptors node list length");
  EXPECT_EQ(step("get_item"), "-1: failed to get item");
  EXPECT_EQ(step("get_nodeName"), "-1: failed to get node name");
}
