// The descriptors of the application information and the IP/MAC notification table in both readings.

#include "tests/readings/readings.h"

#include <gtest/gtest.h>

#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/int_classes.h>

using namespace quillon;
using namespace quillon::test;

TEST(StandardAppsignalDescriptors, TransportByIPHasURLs) {
  const Bytes d = descriptor(0x02, joined({bits({{16, 2, "protocol_id"},
                                                 {8, 5, "transport_protocol_label"},
                                                 {1, 0, "remote_connection"},
                                                 {7, 127, "reserved"},
                                                 {1, 1, "alignment_indicator"},
                                                 {7, 127, "reserved"}}),
                                           counted("dvb-mcast://1"), counted("\xC3\xA9")}));
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::kept),
            "protocol_id: 2\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  alignment_indicator: 0\n");
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::standard),
            "protocol_id: 2\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  alignment_indicator: 1\n"
            "  urls: list of 2\n"
            "    url: \"dvb-mcast://1\"\n"
            "    url: \"é\"\n"
            "url_groups: list of 0\n"
            "selector_byte: \n");
}

TEST(StandardAppsignalDescriptors, TransportByIPFromElsewhere) {
  const Bytes d = descriptor(0x02, joined({bits({{16, 2, "protocol_id"},
                                                 {8, 5, "transport_protocol_label"},
                                                 {1, 1, "remote_connection"},
                                                 {7, 127, "reserved"},
                                                 {16, 1, "original_network_id"},
                                                 {16, 2, "transport_stream_id"},
                                                 {16, 3, "service_id"},
                                                 {1, 1, "alignment_indicator"},
                                                 {7, 127, "reserved"}}),
                                           counted("u")}));
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::kept),
            "protocol_id: 2\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 1\n"
            "  original_network_id: 1 (Astra Satellite Network 19,2\u00B0E)\n"
            "  transport_stream_id: 2\n"
            "  service_id: 3\n"
            "  alignment_indicator: 1\n");
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::standard),
            "protocol_id: 2\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 1\n"
            "  original_network_id: 1 (Astra Satellite Network 19,2\u00B0E)\n"
            "  transport_stream_id: 2\n"
            "  service_id: 3\n"
            "  alignment_indicator: 1\n"
            "  urls: list of 1\n"
            "    url: \"u\"\n"
            "url_groups: list of 0\n"
            "selector_byte: \n");
}

TEST(StandardAppsignalDescriptors, TransportByHTTPHasURLs) {
  const Bytes d = descriptor(0x02, joined({bits({{16, 3, "protocol_id"}, {8, 5, "transport_protocol_label"}}),
                                           counted("http://a/"),
                                           {2},
                                           counted("b"),
                                           counted("\xC3\xA9"),
                                           counted("http://c/"),
                                           {0}}));
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::kept),
            "protocol_id: 3\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  alignment_indicator: 0\n");
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::standard),
            "protocol_id: 3\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  alignment_indicator: 0\n"
            "  urls: list of 0\n"
            "url_groups: list of 2\n"
            "  url_group: DescriptorAitTransportProtocol::URLGroup\n"
            "    URL_base: \"http://a/\"\n"
            "    URL_extensions: list of 2\n"
            "      URL_extension: \"b\"\n"
            "      URL_extension: \"é\"\n"
            "  url_group: DescriptorAitTransportProtocol::URLGroup\n"
            "    URL_base: \"http://c/\"\n"
            "    URL_extensions: list of 0\n"
            "selector_byte: \n");
}

TEST(StandardAppsignalDescriptors, TransportByOthersHasBytes) {
  const Bytes d = descriptor(
      0x02,
      bits({{16, 0x0100, "protocol_id"}, {8, 5, "transport_protocol_label"}, {16, 0x1122, "selector_byte"}}));
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::kept),
            "protocol_id: 256\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  alignment_indicator: 0\n");
  EXPECT_EQ(fields<DescriptorAitTransportProtocol>(d, Reading::standard),
            "protocol_id: 256\n"
            "transport_protocol_label: 5\n"
            "transport_OC: DescriptorAitTransportProtocol::TransportOC\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  component_tag: 0\n"
            "transport_IP: DescriptorAitTransportProtocol::TransportIP\n"
            "  remote_connection: 0\n"
            "  original_network_id: 0 (Reserved)\n"
            "  transport_stream_id: 0\n"
            "  service_id: 0\n"
            "  alignment_indicator: 0\n"
            "  urls: list of 0\n"
            "url_groups: list of 0\n"
            "selector_byte: 11 22\n");
}

TEST(StandardAppsignalDescriptors, ApplicationNameIsDVBText) {
  const Bytes d = descriptor(0x01, joined({text("deu"), counted("\x15\xC3\xA9")}));
  EXPECT_EQ(fields<DescriptorAitApplicationName>(d, Reading::kept),
            "application_name_infos: list of 1\n"
            "  info: DescriptorAitApplicationName::ApplicationNameInfo\n"
            "    ISO_639_language_code: \"deu\"\n"
            "    application_name_length: 3\n"
            "    application_name: \"Ã©\"\n");
  EXPECT_EQ(fields<DescriptorAitApplicationName>(d, Reading::standard),
            "application_name_infos: list of 1\n"
            "  info: DescriptorAitApplicationName::ApplicationNameInfo\n"
            "    ISO_639_language_code: \"deu\"\n"
            "    application_name_length: 3\n"
            "    application_name: \"é\"\n");
}

TEST(StandardAppsignalDescriptors, IconLocatorIsUTF8) {
  const Bytes d = descriptor(0x0B, joined({counted("\xC3\xA9\xFF"), {0x00, 0x01}}));
  EXPECT_EQ(fields<DescriptorAitApplicationIcons>(d, Reading::kept),
            "icon_locator_length: 3\n"
            "icon_locator: \"Ã©ÿ\"\n"
            "icon_flags: 1\n"
            "reserved_future_use: \n");
  EXPECT_EQ(fields<DescriptorAitApplicationIcons>(d, Reading::standard),
            "icon_locator_length: 3\n"
            "icon_locator: \"é�\"\n"
            "icon_flags: 1\n"
            "reserved_future_use: \n");
}

TEST(StandardAppsignalDescriptors, RoutingIPv6HasAPlaceForEach) {
  const Bytes d = descriptor(0x07, joined({{9},
                                           {0x20, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x42},
                                           {0x12, 0x34},
                                           {0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x77}}));
  EXPECT_EQ(fields<DescriptorAitRoutingIPv6>(d, Reading::kept),
            "routing_ipv6_infos: list of 1\n"
            "  info: DescriptorAitRoutingIPv6::RoutingIPv6Info\n"
            "    component_tag: 9\n"
            "    address: \"2001:0000:0000:0000:0000:0000:0000:0042\"\n"
            "    port_number: 16914\n"
            "    address_mask: \"34ff:ff00:0000:0000:0000:0000:0000:0000\"\n");
  EXPECT_EQ(fields<DescriptorAitRoutingIPv6>(d, Reading::standard),
            "routing_ipv6_infos: list of 1\n"
            "  info: DescriptorAitRoutingIPv6::RoutingIPv6Info\n"
            "    component_tag: 9\n"
            "    address: \"2001:0000:0000:0000:0000:0000:0000:0042\"\n"
            "    port_number: 4660\n"
            "    address_mask: \"ffff:0000:0000:0000:0000:0000:0000:0077\"\n");
}

TEST(StandardAppsignalDescriptors, PreFetchRowsHavePriorities) {
  const Bytes d = descriptor(0x0C, joined({{5}, counted("ab"), {90}, counted("c"), {10}}));
  EXPECT_EQ(fields<DescriptorAitPreFetch>(d, Reading::kept), "3: prefetch_descriptor: 1\n");
  EXPECT_EQ(fields<DescriptorAitPreFetch>(d, Reading::standard),
            "transport_protocol_label: 5\n"
            "prefetch_info: list of 2\n"
            "  info: DescriptorAitPreFetch::PreFetchInfo\n"
            "    label_length: 2\n"
            "    label: \"ab\"\n"
            "    prefetch_priority: 90\n"
            "  info: DescriptorAitPreFetch::PreFetchInfo\n"
            "    label_length: 1\n"
            "    label: \"c\"\n"
            "    prefetch_priority: 10\n");
}

TEST(StandardAppsignalDescriptors, DIILocationRowsFollowTheLabel) {
  const Bytes d = descriptor(0x0D, bits({{8, 5, "transport_protocol_label"},
                                         {1, 1, "reserved"},
                                         {15, 0x1234, "DII_identification"},
                                         {16, 0x5678, "association_tag"},
                                         {1, 1, "reserved"},
                                         {15, 1, "DII_identification"},
                                         {16, 2, "association_tag"}}));
  EXPECT_EQ(fields<DescriptorAitDIILocation>(d, Reading::kept), "3: dii_location_descriptor: 1\n");
  EXPECT_EQ(fields<DescriptorAitDIILocation>(d, Reading::standard),
            "transport_protocol_label: 5\n"
            "dii_location_infos: list of 2\n"
            "  info: DescriptorAitDIILocation::DIILocationInfo\n"
            "    DII_identification: 4660\n"
            "    associatoin_tag: 22136\n"
            "  info: DescriptorAitDIILocation::DIILocationInfo\n"
            "    DII_identification: 1\n"
            "    associatoin_tag: 2\n");
}

TEST(StandardAppsignalDescriptors, HTMLApplicationIdsAreAList) {
  const Bytes d = descriptor(0x08, joined({counted("abcde"), text("p=\xC3\xA9")}));
  EXPECT_EQ(fields<DescriptorDVB_HTML_Application>(d, Reading::kept),
            "parameter: \"p=Ã©\"\n"
            "application_id: LengthPrefixedString\n"
            "  length: 5\n"
            "  value: \"abcde\"\n");
  EXPECT_EQ(fields<DescriptorDVB_HTML_Application>(d, Reading::standard),
            "application_ids: list of 2\n"
            "  application_ids: 24930\n"
            "  application_ids: 25444\n"
            "parameter: \"p=é\"\n"
            "application_id: LengthPrefixedString\n"
            "  length: 5\n"
            "  value: \"\"\n");
}

TEST(StandardAppsignalDescriptors, HTMLLocationIsUTF8) {
  const Bytes d = descriptor(0x09, joined({counted("\xC3\xA9"), text("\xC3\xA8.html")}));
  EXPECT_EQ(fields<DescriptorDVB_HTML_ApplicationLocation>(d, Reading::kept),
            "initial_path: \"Ã¨.html\"\n"
            "physical_root: LengthPrefixedString\n"
            "  length: 2\n"
            "  value: \"Ã©\"\n");
  EXPECT_EQ(fields<DescriptorDVB_HTML_ApplicationLocation>(d, Reading::standard),
            "initial_path: \"è.html\"\n"
            "physical_root: LengthPrefixedString\n"
            "  length: 2\n"
            "  value: \"é\"\n");
}

TEST(StandardAppsignalDescriptors, JavaParametersAreUTF8) {
  const Bytes d = descriptor(0x03, joined({counted("\xC3\xA9"), counted("b")}));
  EXPECT_EQ(fields<DescriptorDVB_J_Application>(d, Reading::kept),
            "parameter_infos: list of 2\n"
            "  info: LengthPrefixedString\n"
            "    length: 2\n"
            "    value: \"Ã©\"\n"
            "  info: LengthPrefixedString\n"
            "    length: 1\n"
            "    value: \"b\"\n");
  EXPECT_EQ(fields<DescriptorDVB_J_Application>(d, Reading::standard),
            "parameter_infos: list of 2\n"
            "  info: LengthPrefixedString\n"
            "    length: 2\n"
            "    value: \"é\"\n"
            "  info: LengthPrefixedString\n"
            "    length: 1\n"
            "    value: \"b\"\n");
}

TEST(StandardAppsignalDescriptors, IPSourceSlashRowsHaveTenBytes) {
  const Bytes d = descriptor(
      0x10, joined({{192, 168, 0, 1, 24, 10, 0, 0, 1, 8}, {192, 168, 1, 1, 25, 10, 0, 1, 1, 9}, {0xAB}}));
  EXPECT_EQ(fields<DescriptorIntTargetIPSourceSlash>(d, Reading::kept), "-1: descriptor size mismatch\n");
  EXPECT_EQ(fields<DescriptorIntTargetIPSourceSlash>(d, Reading::standard),
            "slash: list of 2\n"
            "  slash: DescriptorIntTargetIPSourceSlash::IPSourceSlash\n"
            "    IPv4_source_addr: \"192.168.0.1\"\n"
            "    IPv4_source_slash_mask: 24\n"
            "    IPv4_dest_addr: \"10.0.0.1\"\n"
            "    IPv4_dest_slash_mask: 8\n"
            "  slash: DescriptorIntTargetIPSourceSlash::IPSourceSlash\n"
            "    IPv4_source_addr: \"192.168.1.1\"\n"
            "    IPv4_source_slash_mask: 25\n"
            "    IPv4_dest_addr: \"10.0.1.1\"\n"
            "    IPv4_dest_slash_mask: 9\n");
}

TEST(StandardAppsignalDescriptors, MACAddressesAreRead) {
  const Bytes d = descriptor(0x07, joined({{0xFF, 0xFF, 0xFF, 0, 0, 0}, {0, 0xA0, 0xC9, 1, 2, 3}, {0xAB}}));
  EXPECT_EQ(fields<DescriptorIntTargetMACAddress>(d, Reading::kept), "-1: descriptor size mismatch\n");
  EXPECT_EQ(fields<DescriptorIntTargetMACAddress>(d, Reading::standard),
            "MAC_addr_mask: \"ff:ff:ff:00:00:00\"\n"
            "MAC_addr: list of 1\n"
            "  MAC_addr: DescriptorIntTargetMACAddress::MACAddressItem\n"
            "    addressitem: \"00:a0:c9:01:02:03\"\n");
}

TEST(StandardAppsignalDescriptors, MACRangesAreRead) {
  const Bytes d = descriptor(0x0E, joined({{0, 0xA0, 0xC9, 1, 2, 3}, {0, 0xA0, 0xC9, 1, 2, 9}}));
  EXPECT_EQ(fields<DescriptorIntTargetMACAddressRange>(d, Reading::kept),
            "macaddressrange: list of 1\n"
            "  macaddressrange: DescriptorIntTargetMACAddressRange::MACAddressRange\n"
            "    MAC_addr_low: \"00:00:00:00:00:00\"\n"
            "    MAC_addr_high: \"00:00:00:00:00:00\"\n");
  EXPECT_EQ(fields<DescriptorIntTargetMACAddressRange>(d, Reading::standard),
            "macaddressrange: list of 1\n"
            "  macaddressrange: DescriptorIntTargetMACAddressRange::MACAddressRange\n"
            "    MAC_addr_low: \"00:a0:c9:01:02:03\"\n"
            "    MAC_addr_high: \"00:a0:c9:01:02:09\"\n");
}
