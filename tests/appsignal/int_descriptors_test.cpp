// The descriptors of the IP/MAC notification table, by wire vectors.

#include "tests/appsignal/appsignal_helpers.h"

#include <quillon/appsignal/int_classes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSmartcard =
    descriptor(0x06, bits({{32, 0x80000001, "super_CA_system_id"}, {24, 0x00A0FF, "private_data_byte"}}));

const Bytes kSerialNumber = descriptor(0x08, text("SN-1"));

const Bytes kMACAddress = descriptor(0x07, bits({{48, 0xFFFFFFFFFFFF, "MAC_addr_mask"},
                                                 {48, 0x00A0C9123401, "MAC_addr"},
                                                 {48, 0x00A0C9123402, "MAC_addr"}}));

const Bytes kMACAddressRange = descriptor(0x0E, bits({{48, 0x00A0C9000000, "MAC_addr_low"},
                                                      {48, 0x00A0C9FFFFFF, "MAC_addr_high"},
                                                      {48, 1, "MAC_addr_low"},
                                                      {48, 2, "MAC_addr_high"}}));

const Bytes kIPAddress = descriptor(
    0x09,
    bits({{32, 0xFFFFFF00, "IPv4_addr_mask"}, {32, 0xC0A80001, "IPv4_addr"}, {32, 0x0AFF0001, "IPv4_addr"}}));

const Bytes kIPv6Address = descriptor(0x0A, bits({{64, 0xFFFFFFFFFFFFFFFF, "IPv6_addr_mask"},
                                                  {64, 0, "IPv6_addr_mask"},
                                                  {64, 0x20010DB800000000, "IPv6_addr"},
                                                  {64, 1, "IPv6_addr"},
                                                  {64, 0xFF02000000000000, "IPv6_addr"},
                                                  {64, 2, "IPv6_addr"}}));

const Bytes kPlatformName = descriptor(0x0C, text("engK\xE4se"));
const Bytes kProviderName = descriptor(0x0D, text("deuAnbieter"));

const Bytes kIPSlash = descriptor(0x0F, bits({{32, 0xC0A80000, "IPv4_addr"},
                                              {8, 16, "IPv4_slash_mask"},
                                              {32, 0xE0000000, "IPv4_addr"},
                                              {8, 255, "IPv4_slash_mask"}}));

// Two rows of eight bytes; the last has two more past the descriptor.
const Bytes kIPSourceSlash = descriptor_claiming(0x10, 16,
                                                 bits({{32, 0x01020304, "IPv4_source_addr"},
                                                       {8, 5, "IPv4_source_slash_mask"},
                                                       {24, 0x060708, "IPv4_dest_addr, three bytes"},
                                                       {32, 0x090A0B0C, "IPv4_source_addr"},
                                                       {8, 13, "IPv4_source_slash_mask"},
                                                       {24, 0x0E0F10, "IPv4_dest_addr, three bytes"},
                                                       {8, 17, "IPv4_dest_addr, behind the descriptor"},
                                                       {8, 18, "IPv4_dest_slash_mask, likewise"}}));

const Bytes kIPv6Slash = descriptor(0x11, bits({{64, 0x20010DB800000000, "IPv6_addr"},
                                                {64, 0, "IPv6_addr"},
                                                {8, 32, "IPv6_slash_mask"},
                                                {64, 0xFF02000000000000, "IPv6_addr"},
                                                {64, 1, "IPv6_addr"},
                                                {8, 128, "IPv6_slash_mask"}}));

const Bytes kIPv6SourceSlash = descriptor(0x12, bits({{64, 0x20010DB800000000, "IPv6_source_addr"},
                                                      {64, 0xA, "IPv6_source_addr"},
                                                      {8, 48, "IPv6_source_slash_mask"},
                                                      {64, 0xFF02000000000000, "IPv6_dest_addr"},
                                                      {64, 0xB, "IPv6_dest_addr"},
                                                      {8, 128, "IPv6_dest_slash_mask"}}));

const Bytes kStreamLocation = descriptor(0x13, bits({{16, 0x1001, "network_id"},
                                                     {16, 0x2002, "original_network_id"},
                                                     {16, 0x3003, "transport_stream_id"},
                                                     {16, 0xF004, "service_id"},
                                                     {8, 0xC5, "component_tag"}}));

const Bytes kAccessMode = descriptor(0x14, bits({{8, 0x81, "access_mode"}}));

const Cases cases = {
    case_of<DescriptorIntTargetSmartcard>(
        "DescriptorIntTargetSmartcard", Family::notification, kSmartcard,
        "descriptor_tag: 06 target_smartcard_descriptor\n",
        R"(<d descriptor_id="6" descriptor_length="7" super_CA_system_id="-2147483647")"
        R"( private_data_byte="00a0ff" />)"),
    case_of<DescriptorIntTargetMACAddress>(
        "DescriptorIntTargetMACAddress", Family::notification, kMACAddress,
        "descriptor_tag: 07 target_MAC_address_descriptor\n",
        R"(<d descriptor_id="7" descriptor_length="18" MAC_addr_mask="000000000000"><MAC_addr>)"
        R"(<MAC_addr addressitem="000000000000" /><MAC_addr addressitem="000000000000" />)"
        R"(</MAC_addr></d>)"),
    case_of<DescriptorIntTargetSerialNumber>(
        "DescriptorIntTargetSerialNumber", Family::notification, kSerialNumber,
        "descriptor_tag: 08 target_serial_number_descriptor\n",
        R"(<d descriptor_id="8" descriptor_length="4" serial_data_byte="534e2d31" />)"),
    case_of<DescriptorIntTargetSerialNumber>(
        "DescriptorIntTargetSerialNumber, empty", Family::notification, descriptor(0x08, {}),
        "descriptor_tag: 08 target_serial_number_descriptor\n",
        R"(<d descriptor_id="8" descriptor_length="0" serial_data_byte="" />)"),
    case_of<DescriptorIntTargetIPAddress>(
        "DescriptorIntTargetIPAddress", Family::notification, kIPAddress,
        "descriptor_tag: 09 target_IP_address_descriptor\n",
        R"(<d descriptor_id="9" descriptor_length="12" IPv4_addr_mask="ffffff00"><IPv4_addr>)"
        R"(<IPv4_addr addressitem="c0a80001" /><IPv4_addr addressitem="0aff0001" /></IPv4_addr></d>)"),
    case_of<DescriptorIntTargetIPv6Address>(
        "DescriptorIntTargetIPv6Address", Family::notification, kIPv6Address,
        "descriptor_tag: 0a target_IPv6_address_descriptor\n",
        R"(<d descriptor_id="10" descriptor_length="48" IPv6_addr_mask="ffffffffffffffff0000000000000000">)"
        R"(<IPv6_addr><IPv6_addr addressitem="20010db8000000000000000000000001" />)"
        R"(<IPv6_addr addressitem="ff020000000000000000000000000002" /></IPv6_addr></d>)"),
    case_of<DescriptorIntIPMACPlatformName>("DescriptorIntIPMACPlatformName", Family::notification,
                                            kPlatformName,
                                            "descriptor_tag: 0c IP/MAC_platform_name_descriptor\n",
                                            R"(<d descriptor_id="12" descriptor_length="7")"
                                            " ISO_639_language_code=\"eng\" text_char=\"K\xC3\xA4se\" />"),
    case_of<DescriptorIntIPMACPlatformName>(
        "DescriptorIntIPMACPlatformName, no text", Family::notification, descriptor(0x0C, text("fra")),
        "descriptor_tag: 0c IP/MAC_platform_name_descriptor\n",
        R"(<d descriptor_id="12" descriptor_length="3" ISO_639_language_code="fra" text_char="" />)"),
    case_of<DescriptorIntIPMACPlatformProviderName>(
        "DescriptorIntIPMACPlatformProviderName", Family::notification, kProviderName,
        "descriptor_tag: 0d IP/MAC_platform_provider_name_descriptor\n",
        R"(<d descriptor_id="13" descriptor_length="11" ISO_639_language_code="deu" text_char="Anbieter" />)"),
    case_of<DescriptorIntTargetMACAddressRange>(
        "DescriptorIntTargetMACAddressRange", Family::notification, kMACAddressRange,
        "descriptor_tag: 0e target_MAC_address_range_descriptor\n",
        R"(<d descriptor_id="14" descriptor_length="24"><macaddressrange>)"
        R"(<macaddressrange MAC_addr_low="000000000000" MAC_addr_high="000000000000" />)"
        R"(<macaddressrange MAC_addr_low="000000000000" MAC_addr_high="000000000000" />)"
        R"(</macaddressrange></d>)"),
    case_of<DescriptorIntTargetIPSlash>(
        "DescriptorIntTargetIPSlash", Family::notification, kIPSlash,
        "descriptor_tag: 0f target_IP_slash_descriptor\n",
        R"(<d descriptor_id="15" descriptor_length="10"><slash>)"
        R"(<slash IPv4_addr="c0a80000" IPv4_slash_mask="16" />)"
        R"(<slash IPv4_addr="e0000000" IPv4_slash_mask="255" /></slash></d>)"),
    case_of<DescriptorIntTargetIPSourceSlash>(
        "DescriptorIntTargetIPSourceSlash", Family::notification, kIPSourceSlash,
        "descriptor_tag: 10 target_IP_source_slash_descriptor\n",
        R"(<d descriptor_id="16" descriptor_length="16"><slash>)"
        R"(<slash IPv4_source_addr="01020304" IPv4_source_slash_mask="5" IPv4_dest_addr="06070809")"
        R"( IPv4_dest_slash_mask="10" />)"
        R"(<slash IPv4_source_addr="090a0b0c" IPv4_source_slash_mask="13" IPv4_dest_addr="0e0f1011")"
        R"( IPv4_dest_slash_mask="18" /></slash></d>)"),
    case_of<DescriptorIntTargetIPv6Slash>(
        "DescriptorIntTargetIPv6Slash", Family::notification, kIPv6Slash,
        "descriptor_tag: 11 target_IPv6_slash_descriptor\n",
        R"(<d descriptor_id="17" descriptor_length="34"><slash>)"
        R"(<slash IPv6_addr="20010db8000000000000000000000000" IPv6_slash_mask="32" />)"
        R"(<slash IPv6_addr="ff020000000000000000000000000001" IPv6_slash_mask="128" /></slash></d>)"),
    case_of<DescriptorIntTargetIPv6SourceSlash>(
        "DescriptorIntTargetIPv6SourceSlash", Family::notification, kIPv6SourceSlash,
        "descriptor_tag: 12 target_IPv6_source_slash_descriptor\n",
        R"(<d descriptor_id="18" descriptor_length="34"><slash>)"
        R"(<slash IPv6_source_addr="20010db800000000000000000000000a" IPv6_source_slash_mask="48")"
        R"( IPv6_dest_addr="ff02000000000000000000000000000b" IPv6_dest_slash_mask="128" /></slash></d>)"),
    case_of<DescriptorIntIPMACStreamLocation>(
        "DescriptorIntIPMACStreamLocation", Family::notification, kStreamLocation,
        "descriptor_tag: 13 IP/MAC_stream_location_descriptor\n",
        R"(<d descriptor_id="19" descriptor_length="9" network_id="4097" original_network_id="8194")"
        R"( transport_stream_id="12291" service_id="61444" component_tag="197" />)"),
    case_of<DescriptorIntISPAccessMode>(
        "DescriptorIntISPAccessMode", Family::notification, kAccessMode,
        "descriptor_tag: 14 ISP_access_mode_descriptor\n",
        R"(<d descriptor_id="20" descriptor_length="1" access_mode="129" />)"),
};

// A class refuses the lengths from 0 to 255 that leave a remainder after its head.
template <class T>
void expect_lengths(int tag, int head, int row, size_t (*rows)(const T&)) {
  for (int length = 0; length <= 255; ++length) {
    SCOPED_TRACE(length);
    const Bytes bytes = descriptor(tag, Bytes(static_cast<size_t>(length)));
    if ((length - head) % row != 0) {
      EXPECT_EQ(refusal<T>(bytes), "-1: descriptor size mismatch");
      continue;
    }
    ASSERT_EQ(refusal<T>(bytes), "nothing");
    EXPECT_EQ(rows(T(view(bytes))), length < head ? 0u : static_cast<size_t>((length - head) / row));
  }
}

// What a load and a save make of a document.
template <class T>
void expect_kept(const std::string& xml) {
  EXPECT_EQ(saved(loaded<T>(xml)), xml);
}

}  // namespace

TEST(DescriptorIntTargetSmartcard, ReadsItsMembers) {
  const DescriptorIntTargetSmartcard d(view(kSmartcard));
  EXPECT_EQ(d.get_super_ca_system_id(), 0x80000001u);
  EXPECT_EQ(d.get_private_data_byte(), (Bytes{0x00, 0xA0, 0xFF}));
  EXPECT_TRUE(
      DescriptorIntTargetSmartcard(view(descriptor(0x06, Bytes(3, 1)))).get_private_data_byte().empty());
}

TEST(DescriptorIntTargetSerialNumber, ReadsItsWholeBody) {
  EXPECT_EQ(DescriptorIntTargetSerialNumber(view(kSerialNumber)).get_serial_data_byte(), text("SN-1"));
  EXPECT_TRUE(DescriptorIntTargetSerialNumber(view(descriptor(0x08, {}))).get_serial_data_byte().empty());
}

TEST(DescriptorIntTargetMACAddress, CountsItsAddressesButDoesNotReadThem) {
  const DescriptorIntTargetMACAddress d(view(kMACAddress));
  EXPECT_EQ(d.get_mac_addr_mask().text(), "00:00:00:00:00:00");
  ASSERT_EQ(d.get_mac_addr().size(), 2u);
  EXPECT_EQ(d.get_mac_addr()[1].get_addressitem().text(), "00:00:00:00:00:00");
  expect_kept<DescriptorIntTargetMACAddress>(
      R"(<d descriptor_id="7" descriptor_length="12" MAC_addr_mask="ffffffffff00">)"
      R"(<MAC_addr><MAC_addr addressitem="00a0c9123401" /></MAC_addr></d>)");
}

TEST(DescriptorIntTargetMACAddressRange, CountsItsRangesButDoesNotReadThem) {
  const DescriptorIntTargetMACAddressRange d(view(kMACAddressRange));
  ASSERT_EQ(d.get_macaddressrange().size(), 2u);
  EXPECT_EQ(d.get_macaddressrange()[0].get_mac_addr_low().text(), "00:00:00:00:00:00");
  EXPECT_EQ(d.get_macaddressrange()[0].get_mac_addr_high().text(), "00:00:00:00:00:00");
  expect_kept<DescriptorIntTargetMACAddressRange>(
      R"(<d descriptor_id="14" descriptor_length="12"><macaddressrange>)"
      R"(<macaddressrange MAC_addr_low="00a0c9000000" MAC_addr_high="00a0c9ffffff" />)"
      R"(</macaddressrange></d>)");
}

TEST(DescriptorIntTargetIPAddress, ReadsItsMembers) {
  const DescriptorIntTargetIPAddress d(view(kIPAddress));
  EXPECT_EQ(d.get_ipv4_addr_mask().text(), "255.255.255.0");
  ASSERT_EQ(d.get_ipv4_addr().size(), 2u);
  EXPECT_EQ(d.get_ipv4_addr()[0].get_addressitem().text(), "192.168.0.1");
  EXPECT_EQ(d.get_ipv4_addr()[1].get_addressitem().text(), "10.255.0.1");
}

TEST(DescriptorIntTargetIPv6Address, ReadsItsMembers) {
  const DescriptorIntTargetIPv6Address d(view(kIPv6Address));
  EXPECT_EQ(d.get_ipv6_addr_mask().text(), "ffff:ffff:ffff:ffff:0000:0000:0000:0000");
  ASSERT_EQ(d.get_ipv6_addr().size(), 2u);
  EXPECT_EQ(d.get_ipv6_addr()[0].get_addressitem().text(), "2001:0db8:0000:0000:0000:0000:0000:0001");
  EXPECT_EQ(d.get_ipv6_addr()[1].get_addressitem().text(), "ff02:0000:0000:0000:0000:0000:0000:0002");
}

TEST(DescriptorIntTargetIPSlash, ReadsItsMembers) {
  const DescriptorIntTargetIPSlash d(view(kIPSlash));
  ASSERT_EQ(d.get_slash().size(), 2u);
  EXPECT_EQ(d.get_slash()[1].get_ipv4_addr().text(), "224.0.0.0");
  EXPECT_EQ(d.get_slash()[1].get_ipv4_slash_mask(), 255);
}

TEST(DescriptorIntTargetIPSourceSlash, ReadsTenBytesEveryEight) {
  const DescriptorIntTargetIPSourceSlash d(view(kIPSourceSlash));
  ASSERT_EQ(d.get_slash().size(), 2u);
  EXPECT_EQ(d.get_slash()[0].get_ipv4_source_addr().text(), "1.2.3.4");
  EXPECT_EQ(d.get_slash()[0].get_ipv4_source_slash_mask(), 5);
  EXPECT_EQ(d.get_slash()[0].get_ipv4_dest_addr().text(), "6.7.8.9");
  EXPECT_EQ(d.get_slash()[0].get_ipv4_dest_slash_mask(), 10);
  EXPECT_EQ(d.get_slash()[1].get_ipv4_source_addr().text(), "9.10.11.12");
  EXPECT_EQ(d.get_slash()[1].get_ipv4_dest_addr().text(), "14.15.16.17");
  EXPECT_EQ(d.get_slash()[1].get_ipv4_dest_slash_mask(), 18);
}

TEST(DescriptorIntTargetIPSourceSlash, ReadsTheLastRowBehindItsEndUpToTheSections) {
  const Bytes one = descriptor_claiming(0x10, 8, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(DescriptorIntTargetIPSourceSlash(view(one)).get_slash()[0].get_ipv4_dest_slash_mask(), 10);
  const Bytes cut = descriptor(0x10, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(DescriptorIntTargetIPSourceSlash(view(cut)).get_slash()[0].get_ipv4_dest_addr().text(),
            "6.7.8.0");
  EXPECT_EQ(DescriptorIntTargetIPSourceSlash(view(cut)).get_slash()[0].get_ipv4_dest_slash_mask(), 0);
  EXPECT_EQ(refusal<DescriptorIntTargetIPSourceSlash>(descriptor(0x10, Bytes(10))),
            "-1: descriptor size mismatch");
}

TEST(DescriptorIntTargetIPv6Slash, ReadsItsMembers) {
  const DescriptorIntTargetIPv6Slash d(view(kIPv6Slash));
  ASSERT_EQ(d.get_slash().size(), 2u);
  EXPECT_EQ(d.get_slash()[1].get_ipv6_addr().text(), "ff02:0000:0000:0000:0000:0000:0000:0001");
  EXPECT_EQ(d.get_slash()[1].get_ipv6_slash_mask(), 128);
}

TEST(DescriptorIntTargetIPv6SourceSlash, ReadsItsMembers) {
  const DescriptorIntTargetIPv6SourceSlash d(view(kIPv6SourceSlash));
  ASSERT_EQ(d.get_slash().size(), 1u);
  EXPECT_EQ(d.get_slash()[0].get_ipv6_source_addr().text(), "2001:0db8:0000:0000:0000:0000:0000:000a");
  EXPECT_EQ(d.get_slash()[0].get_ipv6_source_slash_mask(), 48);
  EXPECT_EQ(d.get_slash()[0].get_ipv6_dest_addr().text(), "ff02:0000:0000:0000:0000:0000:0000:000b");
  EXPECT_EQ(d.get_slash()[0].get_ipv6_dest_slash_mask(), 128);
}

TEST(IntDescriptors, RefuseALengthThatIsNoWholeNumberOfRows) {
  expect_lengths<DescriptorIntTargetMACAddress>(
      0x07, 6, 6, [](const DescriptorIntTargetMACAddress& d) { return d.get_mac_addr().size(); });
  expect_lengths<DescriptorIntTargetIPAddress>(
      0x09, 4, 4, [](const DescriptorIntTargetIPAddress& d) { return d.get_ipv4_addr().size(); });
  expect_lengths<DescriptorIntTargetIPv6Address>(
      0x0A, 16, 16, [](const DescriptorIntTargetIPv6Address& d) { return d.get_ipv6_addr().size(); });
  expect_lengths<DescriptorIntTargetMACAddressRange>(
      0x0E, 0, 12,
      [](const DescriptorIntTargetMACAddressRange& d) { return d.get_macaddressrange().size(); });
  expect_lengths<DescriptorIntTargetIPSlash>(
      0x0F, 0, 5, [](const DescriptorIntTargetIPSlash& d) { return d.get_slash().size(); });
  expect_lengths<DescriptorIntTargetIPSourceSlash>(
      0x10, 0, 8, [](const DescriptorIntTargetIPSourceSlash& d) { return d.get_slash().size(); });
  expect_lengths<DescriptorIntTargetIPv6Slash>(
      0x11, 0, 17, [](const DescriptorIntTargetIPv6Slash& d) { return d.get_slash().size(); });
  expect_lengths<DescriptorIntTargetIPv6SourceSlash>(
      0x12, 0, 34, [](const DescriptorIntTargetIPv6SourceSlash& d) { return d.get_slash().size(); });
}

TEST(IntDescriptors, StopAtTheSectionsEndWithoutAFailure) {
  EXPECT_EQ(DescriptorIntTargetIPSlash(view(descriptor_claiming(0x0F, 250, Bytes(12, 1)))).get_slash().size(),
            3u);
  EXPECT_EQ(
      DescriptorIntTargetIPAddress(view(descriptor_claiming(0x09, 252, Bytes(8, 1)))).get_ipv4_addr().size(),
      1u);
}

TEST(DescriptorIntIPMACPlatformName, ReadsItsMembers) {
  const DescriptorIntIPMACPlatformName d(view(kPlatformName));
  EXPECT_STREQ(d.get_iso_639_language_code().c_strA(), "eng");
  EXPECT_STREQ(d.get_text_char().c_strA(), "K\xE4se");
  EXPECT_EQ(d.get_text_char().get_text_len(), 4u);
  const DescriptorIntIPMACPlatformProviderName provider(view(kProviderName));
  EXPECT_STREQ(provider.get_iso_639_language_code().c_strA(), "deu");
  EXPECT_STREQ(provider.get_text_char().c_strA(), "Anbieter");
}

TEST(DescriptorIntIPMACPlatformName, CutsTheLanguageAtItsFirstNul) {
  const Bytes bytes = descriptor(0x0C, {'e', 0, 'g', 'x'});
  EXPECT_STREQ(DescriptorIntIPMACPlatformName(view(bytes)).get_iso_639_language_code().c_strA(), "e");
  EXPECT_STREQ(DescriptorIntIPMACPlatformName(view(bytes)).get_text_char().c_strA(), "x");
}

TEST(DescriptorIntIPMACPlatformName, HasATextOfNegativeLengthWhereItIsTooShort) {
  for (int length = 0; length < 3; ++length) {
    const Bytes bytes = descriptor_claiming(0x0C, length, text("engxyz"));
    const DescriptorIntIPMACPlatformName name(view(bytes));
    EXPECT_STREQ(name.get_iso_639_language_code().c_strA(), "eng");
    EXPECT_STREQ(name.get_text_char().c_strA(), "");
    EXPECT_EQ(name.get_text_char().get_text_len(), static_cast<uint32_t>(length - 3));
    const DescriptorIntIPMACPlatformProviderName provider(view(bytes));
    EXPECT_STREQ(provider.get_text_char().c_strA(), "");
    EXPECT_EQ(provider.get_text_char().get_text_len(), static_cast<uint32_t>(length - 3));
  }
}

TEST(DescriptorIntIPMACStreamLocation, ReadsItsMembersWhateverItsLength) {
  const DescriptorIntIPMACStreamLocation d(view(kStreamLocation));
  EXPECT_EQ(d.get_network_id(), 0x1001);
  EXPECT_EQ(d.get_original_network_id(), 0x2002);
  EXPECT_EQ(d.get_transport_stream_id(), 0x3003);
  EXPECT_EQ(d.get_service_id(), 0xF004);
  EXPECT_EQ(d.get_component_tag(), 0xC5);
  Bytes short_one = kStreamLocation;
  short_one[1] = 0;
  EXPECT_EQ(DescriptorIntIPMACStreamLocation(view(short_one)).get_component_tag(), 0xC5);
}

TEST(DescriptorIntISPAccessMode, ReadsItsMember) {
  EXPECT_EQ(DescriptorIntISPAccessMode(view(kAccessMode)).get_access_mode(), 0x81);
  EXPECT_EQ(DescriptorIntISPAccessMode(view(descriptor(0x14, {}))).get_access_mode(), 0);
}

TEST(IntDescriptors, NeedEachOfTheirAttributes) {
  expect_each_attribute_needed<DescriptorIntTargetSmartcard>(xml_of("DescriptorIntTargetSmartcard"));
  expect_each_attribute_needed<DescriptorIntTargetMACAddress>(xml_of("DescriptorIntTargetMACAddress"));
  expect_each_attribute_needed<DescriptorIntTargetSerialNumber>(xml_of("DescriptorIntTargetSerialNumber"));
  expect_each_attribute_needed<DescriptorIntTargetIPAddress>(xml_of("DescriptorIntTargetIPAddress"));
  expect_each_attribute_needed<DescriptorIntTargetIPv6Address>(xml_of("DescriptorIntTargetIPv6Address"));
  expect_each_attribute_needed<DescriptorIntIPMACPlatformName>(xml_of("DescriptorIntIPMACPlatformName"));
  expect_each_attribute_needed<DescriptorIntIPMACPlatformProviderName>(
      xml_of("DescriptorIntIPMACPlatformProviderName"));
  expect_each_attribute_needed<DescriptorIntTargetMACAddressRange>(
      xml_of("DescriptorIntTargetMACAddressRange"));
  expect_each_attribute_needed<DescriptorIntTargetIPSlash>(xml_of("DescriptorIntTargetIPSlash"));
  expect_each_attribute_needed<DescriptorIntTargetIPSourceSlash>(xml_of("DescriptorIntTargetIPSourceSlash"));
  expect_each_attribute_needed<DescriptorIntTargetIPv6Slash>(xml_of("DescriptorIntTargetIPv6Slash"));
  expect_each_attribute_needed<DescriptorIntTargetIPv6SourceSlash>(
      xml_of("DescriptorIntTargetIPv6SourceSlash"));
  expect_each_attribute_needed<DescriptorIntIPMACStreamLocation>(xml_of("DescriptorIntIPMACStreamLocation"));
  expect_each_attribute_needed<DescriptorIntISPAccessMode>(xml_of("DescriptorIntISPAccessMode"));
}

TEST(IntDescriptors, LoadItemsOfAnyName) {
  EXPECT_EQ(saved(loaded<DescriptorIntTargetIPSlash>(
                R"(<d descriptor_id="15" descriptor_length="5"><slash>)"
                R"(<row IPv4_addr="01020304" IPv4_slash_mask="8" /></slash></d>)")),
            R"(<d descriptor_id="15" descriptor_length="5"><slash>)"
            R"(<slash IPv4_addr="01020304" IPv4_slash_mask="8" /></slash></d>)");
}

TEST(IntDescriptors, NeedTheirList) {
  EXPECT_EQ(failure([] {
              loaded<DescriptorIntTargetIPSlash>(R"(<d descriptor_id="15" descriptor_length="5" />)");
            }),
            "-1: failed to get slash");
  EXPECT_EQ(failure([] {
              loaded<DescriptorIntTargetMACAddress>(
                  R"(<d descriptor_id="7" descriptor_length="6" MAC_addr_mask="000000000000" />)");
            }),
            "-1: failed to get MAC_addr");
}

TEST(IntDescriptors, NameTheirListInEachOfItsFailures) {
  expect_list_failures<DescriptorIntTargetMACAddress>("MAC_addr");
  expect_list_failures<DescriptorIntTargetIPAddress>("IPv4_addr");
  expect_list_failures<DescriptorIntTargetIPv6Address>("IPv6_addr");
  expect_list_failures<DescriptorIntTargetMACAddressRange>("macaddressrange");
  expect_list_failures<DescriptorIntTargetIPSlash>("slash");
  expect_list_failures<DescriptorIntTargetIPSourceSlash>("slash");
  expect_list_failures<DescriptorIntTargetIPv6Slash>("slash");
  expect_list_failures<DescriptorIntTargetIPv6SourceSlash>("slash");
}

TEST(IntDescriptors, LoseTheirListsAndBytesOverReset) {
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetSmartcard>(kSmartcard),
            R"(<d descriptor_id="6" descriptor_length="7" super_CA_system_id="-2147483647")"
            R"( private_data_byte="" />)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetSerialNumber>(kSerialNumber),
            R"(<d descriptor_id="8" descriptor_length="4" serial_data_byte="" />)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetMACAddress>(kMACAddress),
            R"(<d descriptor_id="7" descriptor_length="18" MAC_addr_mask="000000000000"><MAC_addr /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetIPAddress>(kIPAddress),
            R"(<d descriptor_id="9" descriptor_length="12" IPv4_addr_mask="ffffff00"><IPv4_addr /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetIPv6Address>(kIPv6Address),
            R"(<d descriptor_id="10" descriptor_length="48")"
            R"( IPv6_addr_mask="ffffffffffffffff0000000000000000"><IPv6_addr /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetMACAddressRange>(kMACAddressRange),
            R"(<d descriptor_id="14" descriptor_length="24"><macaddressrange /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetIPSlash>(kIPSlash),
            R"(<d descriptor_id="15" descriptor_length="10"><slash /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetIPSourceSlash>(kIPSourceSlash),
            R"(<d descriptor_id="16" descriptor_length="16"><slash /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetIPv6Slash>(kIPv6Slash),
            R"(<d descriptor_id="17" descriptor_length="34"><slash /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorIntTargetIPv6SourceSlash>(kIPv6SourceSlash),
            R"(<d descriptor_id="18" descriptor_length="34"><slash /></d>)");
}

TEST(IntDescriptors, KeepTheirOtherFieldsOverReset) {
  EXPECT_EQ(saved_after_reset<DescriptorIntIPMACPlatformName>(kPlatformName),
            xml_of("DescriptorIntIPMACPlatformName"));
  EXPECT_EQ(saved_after_reset<DescriptorIntIPMACPlatformProviderName>(kProviderName),
            xml_of("DescriptorIntIPMACPlatformProviderName"));
  EXPECT_EQ(saved_after_reset<DescriptorIntIPMACStreamLocation>(kStreamLocation),
            xml_of("DescriptorIntIPMACStreamLocation"));
  EXPECT_EQ(saved_after_reset<DescriptorIntISPAccessMode>(kAccessMode), xml_of("DescriptorIntISPAccessMode"));
}
