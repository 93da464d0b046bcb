// The telephone descriptor, by wire vectors.

#include "tests/support/cases.h"

#include <quillon/descriptors/service/telephone.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kTelephone =
    descriptor(0x57, joined({bits({{2, 3, "reserved_future_use"},
                                   {1, 1, "foreign_availability"},
                                   {5, 0x11, "connection_type"},
                                   {2, 1, "country_prefix_length"},
                                   {3, 6, "international_area_code_length"},
                                   {1, 0, "passed over"},
                                   {2, 2, "operator_code_length"},
                                   {1, 1, "reserved_future_use"},
                                   {3, 3, "national_area_code_length"},
                                   {4, 7, "core_number_length"}}),
                             text("0"), text("049123"), text("10"), text("089"), text("5550100")}));

const Cases cases = {
    case_of<DescriptorTelephone>(
        "DescriptorTelephone", Family::dvb, kTelephone,
        "descriptor_tag: 57 telephone_descriptor\n"
        "foriegn_availability: 1\n"
        "connection_type: 11\n"
        "country_prefix_length: 1\n"
        "international_area_code_length: 6\n"
        "operator_code_length: 2\n"
        "national_area_code_length: 3\n"
        "core_number_length: 7\n"
        "country_prefix_char: 0\n"
        "international_area_code_char: 049123\n"
        "operator_code_char: 10\n"
        "national_area_code_char: 089\n"
        "core_number_char: 5550100\n",
        R"(<d descriptor_id="87" descriptor_length="22" foriegn_availability="1" connection_type="17")"
        R"( country_prefix_length="1" international_area_code_length="6" operator_code_length="2")"
        R"( national_area_code_length="3" core_number_length="7" country_prefix_char="0")"
        R"( international_area_code_char="049123" operator_code_char="10" national_area_code_char="089")"
        R"( core_number_char="5550100" />)"),
};

}  // namespace

TEST(DescriptorTelephone, ReadsItsMembers) {
  const DescriptorTelephone d(kTelephone.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x57);
  EXPECT_EQ(d.get_descriptor_length(), 22);
  EXPECT_EQ(d.get_foriegn_availability(), 1);
  EXPECT_EQ(d.get_connection_type(), 0x11);
  EXPECT_EQ(d.get_country_prefix_length(), 1);
  EXPECT_EQ(d.get_international_area_code_length(), 6);
  EXPECT_EQ(d.get_operator_code_length(), 2);
  EXPECT_EQ(d.get_national_area_code_length(), 3);
  EXPECT_EQ(d.get_core_number_length(), 7);
  EXPECT_EQ(d.get_country_prefix_char(), "0");
  EXPECT_EQ(d.get_international_area_code_char(), "049123");
  EXPECT_EQ(d.get_operator_code_char(), "10");
  EXPECT_EQ(d.get_national_area_code_char(), "089");
  EXPECT_EQ(d.get_core_number_char(), "5550100");
}

TEST(DescriptorTelephone, SplitsItsLengthsInItsOwnWay) {
  const auto lengths = [](uint8_t first, uint8_t second) {
    const DescriptorTelephone d(joined({descriptor_claiming(0x57, 3, {0, first, second}), Bytes(32)}).data());
    return std::vector<int>{d.get_country_prefix_length(), d.get_international_area_code_length(),
                            d.get_operator_code_length(), d.get_national_area_code_length(),
                            d.get_core_number_length()};
  };
  EXPECT_EQ(lengths(0b01110010, 0), (std::vector<int>{1, 6, 2, 0, 0}));
  EXPECT_EQ(lengths(0b11000000, 0), (std::vector<int>{3, 0, 0, 0, 0}));
  EXPECT_EQ(lengths(0b00111000, 0), (std::vector<int>{0, 7, 0, 0, 0}));
  EXPECT_EQ(lengths(0b00000100, 0b10000000), (std::vector<int>{0, 0, 0, 0, 0}));
  EXPECT_EQ(lengths(0b00000011, 0), (std::vector<int>{0, 0, 3, 0, 0}));
  EXPECT_EQ(lengths(0, 0b01110000), (std::vector<int>{0, 0, 0, 7, 0}));
  EXPECT_EQ(lengths(0, 0b00001111), (std::vector<int>{0, 0, 0, 0, 15}));
}

TEST(DescriptorTelephone, ReadsItsFlagAndTypeFromTheLowSixBits) {
  const DescriptorTelephone type_only(descriptor(0x57, {0b11011111, 0, 0}).data());
  EXPECT_EQ(type_only.get_foriegn_availability(), 0);
  EXPECT_EQ(type_only.get_connection_type(), 0x1F);
  const DescriptorTelephone flag_only(descriptor(0x57, {0b00100000, 0, 0}).data());
  EXPECT_EQ(flag_only.get_foriegn_availability(), 1);
  EXPECT_EQ(flag_only.get_connection_type(), 0);
}

TEST(DescriptorTelephone, LosesItsNumbersAndKeepsTheirLengthsOverReset) {
  DescriptorTelephone d(kTelephone.data());
  d.reset();
  EXPECT_EQ(saved(d),
            R"(<d descriptor_id="87" descriptor_length="22" foriegn_availability="1" connection_type="17")"
            R"( country_prefix_length="1" international_area_code_length="6" operator_code_length="2")"
            R"( national_area_code_length="3" core_number_length="7" country_prefix_char="")"
            R"( international_area_code_char="" operator_code_char="" national_area_code_char="")"
            R"( core_number_char="" />)");
}
