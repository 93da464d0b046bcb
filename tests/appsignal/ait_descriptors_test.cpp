// The descriptors of the application information table, by wire vectors.

#include "tests/appsignal/appsignal_helpers.h"

#include <quillon/appsignal/ait_classes.h>

using namespace quillon;
using namespace quillon::test;

using Authorisation = DescriptorAitExternalApplicationAuthorisation;
using OC = DescriptorAitTransportProtocol::TransportOC;
using IP = DescriptorAitTransportProtocol::TransportIP;
using Boundary = DescriptorDVB_HTML_ApplicationLocationBoundary;

namespace {

const Bytes kApplication = descriptor(0x00, bits({{8, 10, "application_profiles_length"},
                                                  {16, 0x0001, "application_profile"},
                                                  {8, 1, "version_major"},
                                                  {8, 0, "version_minor"},
                                                  {8, 2, "version_micro"},
                                                  {16, 0x8002, "application_profile"},
                                                  {8, 2, "version_major"},
                                                  {8, 3, "version_minor"},
                                                  {8, 255, "version_micro"},
                                                  {1, 1, "service_bound_flag"},
                                                  {2, 2, "visibility"},
                                                  {5, 0x1F, "reserved_future_use"},
                                                  {8, 10, "application_priority"},
                                                  {8, 'A', "transport_protocol_label"},
                                                  {8, 7, "transport_protocol_label"}}));

const Bytes kName =
    descriptor(0x01, joined({text("eng"), counted("Chess"), text("deu"), counted("Schach\xFC")}));

const Bytes kIcons = descriptor(0x0B, joined({counted("icons"), bits({{16, 0x0103, "icon_flags"},
                                                                      {8, 'A', "reserved_future_use"},
                                                                      {8, 0x00, "reserved_future_use"}})}));

const Bytes kAuthorisation = descriptor(0x05, bits({{32, 0x0000002A, "organisation_id"},
                                                    {16, 0x0001, "application_id"},
                                                    {8, 0x80, "application_priority"},
                                                    {32, 0xFFFFFFFE, "organisation_id"},
                                                    {16, 0x4001, "application_id"},
                                                    {8, 3, "application_priority"}}));

const Bytes kRemoteOC = descriptor(0x02, bits({{16, 1, "protocol_id"},
                                               {8, 7, "transport_protocol_label"},
                                               {1, 1, "remote_connection"},
                                               {7, 0x7F, "reserved_future_use"},
                                               {16, 0x1234, "original_network_id"},
                                               {16, 0x5678, "transport_stream_id"},
                                               {16, 0x9ABC, "service_id"},
                                               {8, 0xDE, "component_tag"}}));

const Bytes kLocalOC = descriptor(0x02, bits({{16, 1, "protocol_id"},
                                              {8, 7, "transport_protocol_label"},
                                              {1, 0, "remote_connection"},
                                              {7, 0x7F, "reserved_future_use"},
                                              {8, 0xDE, "component_tag"}}));

const Bytes kRemoteIP = descriptor(0x02, bits({{16, 2, "protocol_id"},
                                               {8, 8, "transport_protocol_label"},
                                               {1, 1, "remote_connection"},
                                               {7, 0x7F, "reserved_future_use"},
                                               {16, 0x1234, "original_network_id"},
                                               {16, 0x5678, "transport_stream_id"},
                                               {16, 0x9ABC, "service_id"},
                                               {1, 1, "alignment_indicator"},
                                               {7, 0, "reserved_future_use"},
                                               {8, 3, "URL_length"},
                                               {24, 0x612F62, "URL"}}));

const Bytes kLocalIP = descriptor(0x02, bits({{16, 2, "protocol_id"},
                                              {8, 8, "transport_protocol_label"},
                                              {1, 0, "remote_connection"},
                                              {7, 0, "reserved_future_use"},
                                              {1, 0, "alignment_indicator"},
                                              {7, 0, "reserved_future_use"},
                                              {8, 4, "URL_length"},
                                              {32, 0x612F622F, "URL"},
                                              {8, 0x80, "URL_length, taken for alignment_indicator"}}));

const Bytes kThirdProtocol = descriptor(
    0x02,
    bits({{16, 3, "protocol_id"}, {8, 9, "transport_protocol_label"}, {64, ~uint64_t{0}, "selector_byte"}}));

const Bytes kRoutingIPv4 = descriptor(0x06, bits({{8, 5, "component_tag"},
                                                  {32, 0xE0000001, "address"},
                                                  {16, 8080, "port_number"},
                                                  {32, 0xFFFFFFFF, "address_mask"},
                                                  {8, 6, "component_tag"},
                                                  {32, 0x7FFFFFFF, "address"},
                                                  {16, 0xFFFF, "port_number"},
                                                  {32, 0x80000000, "address_mask"}}));

const Bytes kRoutingIPv6 = descriptor(0x07, bits({{8, 9, "component_tag"},
                                                  {64, 0x2001000000000000, "address"},
                                                  {64, 0x00000000000000AB, "address"},
                                                  {16, 0x1234, "port_number"},
                                                  {64, 0x5051525354555657, "address_mask"},
                                                  {64, 0x58595A5B5C5D5E5F, "address_mask"}}));

// The rows end one byte past the descriptor.
const Bytes kPreFetch = descriptor_claiming(
    0x0C, 5, joined({bits({{8, 7, "transport_protocol_label"}}), counted("ab"), counted("c")}));

const Bytes kDIILocation = descriptor(0x0D, bits({{8, 7, "transport_protocol_label"},
                                                  {1, 1, "reserved_future_use"},
                                                  {15, 0x1234, "DII_identification"},
                                                  {16, 0x5678, "association_tag"},
                                                  {24, 0, "stuffing to a length that is accepted"}}));

const Bytes kDVB_J = descriptor(0x03, joined({counted("x"), counted(""), counted("y=1")}));

const Bytes kDVB_JLocation = descriptor(0x04, joined({counted("/base"), counted("/a:/b"), text("org.X")}));

const Bytes kHtml = descriptor(0x08, joined({counted("id"), text("p=1&q")}));
const Bytes kHtmlLocation = descriptor(0x09, joined({counted("/root"), text("index.htm")}));
const Bytes kBoundary = descriptor(0x0A, joined({counted("lab"), text("^.*$")}));

const std::string kNoOC = R"(<transport_OC remote_connection="0" original_network_id="0")"
                          R"( transport_stream_id="0" service_id="0" component_tag="0" />)";
const std::string kNoIP = R"(<transport_IP remote_connection="0" original_network_id="0")"
                          R"( transport_stream_id="0" service_id="0" alignment_indicator="0" />)";
const std::string kMissing14(14 * 3, ' ');

const Cases cases = {
    case_of<DescriptorAitApplication>(
        "DescriptorAitApplication", Family::appsignal, kApplication,
        "descriptor_tag: 00 application_descriptor\n"
        "application_profiles_length: a\n"
        "application_profile: 1\n"
        "version_major: 1\n"
        "version_minor: 0\n"
        "version_micro: 2\n"
        "application_profile: 8002\n"
        "version_major: 2\n"
        "version_minor: 3\n"
        "version_micro: ff\n"
        "service_bound_flag: 1\n"
        "visibility: 2\n"
        "application_priority: a\n"
        "transport_protocol_label: A\n"
        "transport_protocol_label: \7\n",
        R"(<d descriptor_id="0" descriptor_length="15" application_profiles_length="10")"
        R"( service_bound_flag="1" visibility="2" application_priority="10")"
        R"( transport_protocol_label="4107"><application_profiles>)"
        R"(<profile application_profile="1" version_major="1" version_minor="0" version_micro="2" />)"
        R"(<profile application_profile="32770" version_major="2" version_minor="3" version_micro="255" />)"
        R"(</application_profiles></d>)"),
    case_of<DescriptorAitApplication>(
        "DescriptorAitApplication, empty", Family::appsignal, descriptor(0x00, Bytes(3)),
        "descriptor_tag: 00 application_descriptor\n"
        "application_profiles_length: 0\n"
        "service_bound_flag: 0\n"
        "visibility: 0\n"
        "application_priority: 0\n",
        R"(<d descriptor_id="0" descriptor_length="3" application_profiles_length="0")"
        R"( service_bound_flag="0" visibility="0" application_priority="0" transport_protocol_label="">)"
        R"(<application_profiles /></d>)"),
    case_of<DescriptorAitApplicationName>(
        "DescriptorAitApplicationName", Family::appsignal, kName,
        "descriptor_tag: 01 application_name_descriptor\n"
        "ISO_639_language_code: eng\n"
        "application_name_length: 5\n"
        "application_name: Chess\n"
        "ISO_639_language_code: deu\n"
        "application_name_length: 7\n"
        "application_name: Schach\xFC\n",
        R"(<d descriptor_id="1" descriptor_length="20"><application_name_infos>)"
        R"(<info application_name_length="5" application_name="Chess" ISO_639_language_code="eng" />)"
        "<info application_name_length=\"7\" application_name=\"Schach\xC3\xBC\""
        R"( ISO_639_language_code="deu" /></application_name_infos></d>)"),
    case_of<DescriptorAitApplicationIcons>(
        "DescriptorAitApplicationIcons", Family::appsignal, kIcons,
        "descriptor_tag: 0b application_icons_descriptor\n"
        "icon_locator_length: 5\n"
        "icon_locator: icons\n"
        "icon_flags: 103\n"
        "reserved_future_use:\n"
        "41 00 " +
            kMissing14 + " : A.\n",
        R"(<d descriptor_id="11" descriptor_length="10" icon_locator_length="5" icon_locator="icons")"
        R"( icon_flags="259" reserved_future_use="4100" />)"),
    case_of<DescriptorAitApplicationIcons>(
        "DescriptorAitApplicationIcons, no more than its fields", Family::appsignal,
        descriptor(0x0B, Bytes(3)),
        "descriptor_tag: 0b application_icons_descriptor\n"
        "icon_locator_length: 0\n"
        "icon_locator: \n"
        "icon_flags: 0\n"
        "reserved_future_use:\n",
        R"(<d descriptor_id="11" descriptor_length="3" icon_locator_length="0" icon_locator="")"
        R"( icon_flags="0" reserved_future_use="" />)"),
    case_of<Authorisation>(
        "DescriptorAitExternalApplicationAuthorisation", Family::appsignal, kAuthorisation,
        "descriptor_tag: 05 external_application_authorisation_descriptor\n"
        "organisation_id: 2a\n"
        "application_id: 1\n"
        "application_priority: 80\n"
        "organisation_id: fffffffe\n"
        "application_id: 4001\n"
        "application_priority: 3\n",
        R"(<d descriptor_id="5" descriptor_length="14"><external_application_authorisation_infos>)"
        R"(<info application_priority="128">)"
        R"(<application_identifer organisation_id="42" application_id="1" /></info>)"
        R"(<info application_priority="3">)"
        R"(<application_identifer organisation_id="-2" application_id="16385" /></info>)"
        R"(</external_application_authorisation_infos></d>)"),
    case_of<DescriptorAitTransportProtocol>(
        "DescriptorAitTransportProtocol, remote carousel", Family::appsignal, kRemoteOC,
        "descriptor_tag: 02 transport_protocol_descriptor\n"
        "protocol_id: 1\n"
        "transport_protocol_label: 7\n"
        "remote_connection: 1\n"
        "original_network_id: 1234\n"
        "transport_stream_id: 5678\n"
        "service_id: 9abc\n"
        "component_tag: de\n",
        R"(<d descriptor_id="2" descriptor_length="11" protocol_id="1" transport_protocol_label="7">)"
        R"(<transport_OC remote_connection="1" original_network_id="4660" transport_stream_id="22136")"
        R"( service_id="39612" component_tag="222" />)" +
            kNoIP + "</d>"),
    case_of<DescriptorAitTransportProtocol>(
        "DescriptorAitTransportProtocol, local carousel", Family::appsignal, kLocalOC,
        "descriptor_tag: 02 transport_protocol_descriptor\n"
        "protocol_id: 1\n"
        "transport_protocol_label: 7\n"
        "remote_connection: 0\n"
        "component_tag: de\n",
        R"(<d descriptor_id="2" descriptor_length="5" protocol_id="1" transport_protocol_label="7">)"
        R"(<transport_OC remote_connection="0" original_network_id="0" transport_stream_id="0")"
        R"( service_id="0" component_tag="222" />)" +
            kNoIP + "</d>"),
    case_of<DescriptorAitTransportProtocol>(
        "DescriptorAitTransportProtocol, remote IP", Family::appsignal, kRemoteIP,
        "descriptor_tag: 02 transport_protocol_descriptor\n"
        "protocol_id: 2\n"
        "transport_protocol_label: 8\n"
        "remote_connection: 1\n"
        "original_network_id: 1234\n"
        "transport_stream_id: 5678\n"
        "service_id: 9abc\n"
        "alignment_indicator: 1\n",
        R"(<d descriptor_id="2" descriptor_length="15" protocol_id="2" transport_protocol_label="8">)" +
            kNoOC +
            R"(<transport_IP remote_connection="1" original_network_id="4660" transport_stream_id="22136")"
            R"( service_id="39612" alignment_indicator="1" /></d>)"),
    case_of<DescriptorAitTransportProtocol>(
        "DescriptorAitTransportProtocol, local IP", Family::appsignal, kLocalIP,
        "descriptor_tag: 02 transport_protocol_descriptor\n"
        "protocol_id: 2\n"
        "transport_protocol_label: 8\n"
        "remote_connection: 0\n"
        "alignment_indicator: 1\n",
        R"(<d descriptor_id="2" descriptor_length="11" protocol_id="2" transport_protocol_label="8">)" +
            kNoOC +
            R"(<transport_IP remote_connection="0" original_network_id="0" transport_stream_id="0")"
            R"( service_id="0" alignment_indicator="1" /></d>)"),
    case_of<DescriptorAitTransportProtocol>(
        "DescriptorAitTransportProtocol, a third protocol", Family::appsignal, kThirdProtocol,
        "descriptor_tag: 02 transport_protocol_descriptor\n"
        "protocol_id: 3\n"
        "transport_protocol_label: 9\n",
        R"(<d descriptor_id="2" descriptor_length="11" protocol_id="3" transport_protocol_label="9">)" +
            kNoOC + kNoIP + "</d>"),
    case_of<DescriptorAitRoutingIPv4>(
        "DescriptorAitRoutingIPv4", Family::appsignal, kRoutingIPv4,
        "descriptor_tag: 06 routing_IPv4_descriptor\n"
        "component_tag: 5\n"
        "address: e0000001\n"
        "port_number: 1f90\n"
        "address_mask: ffffffff\n"
        "component_tag: 6\n"
        "address: 7fffffff\n"
        "port_number: ffff\n"
        "address_mask: 80000000\n",
        R"(<d descriptor_id="6" descriptor_length="22"><routing_ipv4_infos>)"
        R"(<info component_tag="5" address="-536870911" port_number="8080" address_mask="-1" />)"
        R"(<info component_tag="6" address="2147483647" port_number="65535" address_mask="-2147483648" />)"
        R"(</routing_ipv4_infos></d>)"),
    case_of<DescriptorAitRoutingIPv6>(
        "DescriptorAitRoutingIPv6", Family::appsignal, kRoutingIPv6,
        "descriptor_tag: 07 routing_IPv4_descriptor\n"  // sic
        "component_tag: 9\n"
        "address:\n"
        "20 01 00 00 00 00 00 00 00 00 00 00 00 00 00 ab  : ................\n"
        "port_number: ab12\n"
        "address_mask:\n"
        "34 50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e  : .PQRSTUVWXYZ....\n",
        R"(<d descriptor_id="7" descriptor_length="35"><routing_ipv6_infos>)"
        R"(<info component_tag="9" address="200100000000000000000000000000ab" port_number="43794")"
        R"( address_mask="34505152535455565758595a5b5c5d5e" /></routing_ipv6_infos></d>)"),
    case_of<DescriptorAitPreFetch>(
        "DescriptorAitPreFetch", Family::appsignal, kPreFetch,
        "descriptor_tag: 0c prefetch_descriptor\n"
        "transport_protocol_label: 7\n"
        "label_length: 2\n"
        "label: ab\n"
        "prefetch_priority: 0\n"
        "label_length: 1\n"
        "label: c\n"
        "prefetch_priority: 0\n",
        R"(<d descriptor_id="12" descriptor_length="5" transport_protocol_label="7"><prefetch_info>)"
        R"(<info label_length="2" label="ab" prefetch_priority="0" />)"
        R"(<info label_length="1" label="c" prefetch_priority="0" /></prefetch_info></d>)"),
    case_of<DescriptorAitDIILocation>(
        "DescriptorAitDIILocation", Family::appsignal, kDIILocation,
        "descriptor_tag: 0d DII_location_descriptor\n"
        "transport_protocol_label: 7\n"
        "DII_identification: d08\n"
        "associatoin_tag: 792\n"
        "DII_identification: d08\n"
        "associatoin_tag: 792\n",
        R"(<d descriptor_id="13" descriptor_length="8" transport_protocol_label="7"><dii_location_infos>)"
        R"(<info DII_identification="3336" associatoin_tag="1938" />)"
        R"(<info DII_identification="3336" associatoin_tag="1938" /></dii_location_infos></d>)"),
    case_of<DescriptorDVB_J_Application>(
        "DescriptorDVB_J_Application", Family::appsignal, kDVB_J,
        "descriptor_tag: 03 DVB-J_application_descriptor\n"
        "parameter_info_length: 1\n"
        "parameter_info: x\n"
        "parameter_info_length: 0\n"
        "parameter_info: \n"
        "parameter_info_length: 3\n"
        "parameter_info: y=1\n",
        R"(<d descriptor_id="3" descriptor_length="7"><parameter_infos><info length="1" value="x" />)"
        R"(<info length="0" value="" /><info length="3" value="y=1" /></parameter_infos></d>)"),
    case_of<DescriptorDVB_J_Application>(
        "DescriptorDVB_J_Application, empty", Family::appsignal, descriptor(0x03, {}),
        "descriptor_tag: 03 DVB-J_application_descriptor\n",
        R"(<d descriptor_id="3" descriptor_length="0"><parameter_infos /></d>)"),
    case_of<DescriptorDVB_J_ApplicationLocation>(
        "DescriptorDVB_J_ApplicationLocation", Family::appsignal, kDVB_JLocation,
        "descriptor_tag: 04 DVB-J_application_location_descriptor\n"
        "base_directory_length: 5\n"
        "base_directory: /base\n"
        "classpath_extension_length: 5\n"
        "classpath_extension: /a:/b\n"
        "initial_class: org.X\n",
        R"(<d descriptor_id="4" descriptor_length="17" initial_class="org.X">)"
        R"(<base_directory length="5" value="/base" /><classpath_extension length="5" value="/a:/b" /></d>)"),
    case_of<DescriptorDVB_HTML_Application>(
        "DescriptorDVB_HTML_Application", Family::appsignal, kHtml,
        "descriptor_tag: 08 DVB-HTML_application_descriptor\n"
        "application_id_length: 2\n"
        "application_id: id\n"
        "parameter: p=1&q\n",
        R"(<d descriptor_id="8" descriptor_length="8" parameter="p=1&amp;q">)"
        R"(<application_id length="2" value="id" /></d>)"),
    case_of<DescriptorDVB_HTML_ApplicationLocation>(
        "DescriptorDVB_HTML_ApplicationLocation", Family::appsignal, kHtmlLocation,
        "descriptor_tag: 09 DVB-HTML_application_location\n"
        "physical_root_length: 5\n"
        "physical_root: /root\n"
        "initial_path: index.htm\n",
        R"(<d descriptor_id="9" descriptor_length="15" initial_path="index.htm">)"
        R"(<physical_root length="5" value="/root" /></d>)"),
    case_of<Boundary>("DescriptorDVB_HTML_ApplicationLocationBoundary", Family::appsignal, kBoundary,
                      "descriptor_tag: 0a DVB-HTML_application_boundary\n"
                      "label_length: 3\n"
                      "label: lab\n"
                      "regular_expression: ^.*$\n",
                      R"(<d descriptor_id="10" descriptor_length="8" regular_expression="^.*$">)"
                      R"(<label length="3" value="lab" /></d>)"),
};

}  // namespace

TEST(DescriptorAitApplication, ReadsItsMembers) {
  const DescriptorAitApplication d(view(kApplication));
  EXPECT_EQ(d.get_application_profiles_length(), 10);
  ASSERT_EQ(d.get_application_profiles().size(), 2u);
  const DescriptorAitApplication::ApplicationProfile& second = d.get_application_profiles()[1];
  EXPECT_EQ(second.get_application_profile(), 0x8002);
  EXPECT_EQ(second.get_version_major(), 2);
  EXPECT_EQ(second.get_version_minor(), 3);
  EXPECT_EQ(second.get_version_micro(), 255);
  EXPECT_EQ(d.get_service_bound_flag(), 1);
  EXPECT_EQ(d.get_visibility(), 2);
  EXPECT_EQ(d.get_application_priority(), 10);
  EXPECT_EQ(d.get_transport_protocol_label(), (Bytes{'A', 7}));
}

TEST(DescriptorAitApplication, TakesProfilesOfFiveBytes) {
  const auto with_profiles = [](uint8_t length) {
    return descriptor(0x00, joined({Bytes{length}, Bytes(length), Bytes{0x40, 2, 3}}));
  };
  EXPECT_EQ(DescriptorAitApplication(view(with_profiles(5))).get_application_profiles().size(), 1u);
  EXPECT_EQ(DescriptorAitApplication(view(with_profiles(5))).get_visibility(), 2);
  for (const uint8_t length : Bytes{1, 4, 6, 252, 254})
    EXPECT_EQ(refusal<DescriptorAitApplication>(with_profiles(length)),
              "3: application_descriptor: application_profiles_length length mismatch");
  EXPECT_EQ(refusal<DescriptorAitApplication>(with_profiles(250)), "nothing");
}

TEST(DescriptorAitApplication, ReadsProfilesBehindTheDescriptorButNotBehindTheSection) {
  const Bytes long_profiles = descriptor_claiming(0x00, 3, {10, 0, 1, 1, 0, 0, 0, 2, 1, 0, 0, 0x60, 9, 'A'});
  const DescriptorAitApplication d(view(long_profiles));
  EXPECT_EQ(d.get_application_profiles().size(), 2u);
  EXPECT_EQ(d.get_visibility(), 3);
  EXPECT_EQ(d.get_application_priority(), 9);
  EXPECT_TRUE(d.get_transport_protocol_label().empty());
  EXPECT_EQ(refusal<DescriptorAitApplication>(descriptor_claiming(0x00, 12, {10, 0, 1, 1, 0, 0, 0, 2})),
            "3: application_descriptor: 1");
}

TEST(DescriptorAitApplicationName, ReadsItsMembers) {
  const DescriptorAitApplicationName d(view(kName));
  ASSERT_EQ(d.get_application_name_infos().size(), 2u);
  const DescriptorAitApplicationName::ApplicationNameInfo& second = d.get_application_name_infos()[1];
  EXPECT_STREQ(second.get_iso_639_language_code(), "deu");
  EXPECT_EQ(second.get_application_name_length(), 7);
  EXPECT_EQ(second.get_application_name(), "Schach\xFC");
  EXPECT_TRUE(DescriptorAitApplicationName(view(descriptor(0x01, {}))).get_application_name_infos().empty());
}

TEST(DescriptorAitApplicationName, RefusesANameThatDoesNotEndWithTheDescriptor) {
  for (const int length : {1, 8, 10, 11, 12})
    EXPECT_EQ(refusal<DescriptorAitApplicationName>(
                  descriptor_claiming(0x01, length, joined({text("eng"), counted("Chess"), Bytes(9)}))),
              "3: application_name_descriptor: 1")
        << length;
  EXPECT_EQ(refusal<DescriptorAitApplicationName>(descriptor_claiming(0x01, 9, text("eng\5Che"))),
            "3: application_name_descriptor: 1");
}

TEST(DescriptorAitApplicationName, TellsTheBytesOfARow) {
  int size = 0;
  const DescriptorAitApplicationName::ApplicationNameInfo cut(view(text("eng\5Che")), 7, size);
  EXPECT_EQ(size, 9);
  EXPECT_EQ(cut.get_application_name_length(), 5);
  EXPECT_EQ(cut.get_application_name(), "Che");
}

TEST(DescriptorAitApplicationIcons, ReadsItsMembers) {
  const DescriptorAitApplicationIcons d(view(kIcons));
  EXPECT_EQ(d.get_icon_locator_length(), 5);
  EXPECT_EQ(d.get_icon_locator(), "icons");
  EXPECT_EQ(d.get_icon_flags(), 0x0103);
  EXPECT_EQ(d.get_reserved_future_use(), (Bytes{'A', 0}));
}

TEST(DescriptorAitApplicationIcons, ReadsALocatorBehindTheDescriptorUpToTheSectionsEnd) {
  const DescriptorAitApplicationIcons d(view(descriptor_claiming(0x0B, 3, joined({{9}, text("abcd")}))));
  EXPECT_EQ(d.get_icon_locator_length(), 9);
  EXPECT_EQ(d.get_icon_locator(), "abcd");
  EXPECT_EQ(d.get_icon_flags(), 0);
  EXPECT_TRUE(d.get_reserved_future_use().empty());
}

TEST(DescriptorAitExternalApplicationAuthorisation, ReadsItsMembers) {
  const Authorisation d(view(kAuthorisation));
  ASSERT_EQ(d.get_external_application_authorisation_infos().size(), 2u);
  const Authorisation::AitExternalApplicationAuthorisationInfo& second =
      d.get_external_application_authorisation_infos()[1];
  EXPECT_EQ(second.get_organisation_id(), 0xFFFFFFFEu);
  EXPECT_EQ(second.get_application_id(), 0x4001);
  EXPECT_EQ(second.get_application_identifier().application_identifier_as_text(), "FFFFFFFE 4001");
  EXPECT_EQ(second.get_application_priority(), 3);
}

TEST(DescriptorAitExternalApplicationAuthorisation, RefusesALengthThatIsNoMultipleOfSeven) {
  for (size_t length = 0; length <= 255; ++length)
    EXPECT_EQ(refusal<Authorisation>(descriptor(0x05, Bytes(length))),
              length % 7 == 0 ? "nothing" : "3: external_application_authorisation_descriptor: 1");
}

TEST(DescriptorAitTransportProtocol, ReadsTheSelectedRecordAlone) {
  const DescriptorAitTransportProtocol oc(view(kRemoteOC));
  EXPECT_EQ(oc.get_protocol_id(), 1);
  EXPECT_EQ(oc.get_transport_protocol_label(), 7);
  EXPECT_EQ(oc.get_transport_oc().get_remote_connection(), 1);
  EXPECT_EQ(oc.get_transport_oc().get_original_network_id(), 0x1234);
  EXPECT_EQ(oc.get_transport_oc().get_transport_stream_id(), 0x5678);
  EXPECT_EQ(oc.get_transport_oc().get_service_id(), 0x9ABC);
  EXPECT_EQ(oc.get_transport_oc().get_component_tag(), 0xDE);
  EXPECT_EQ(saved(oc.get_transport_ip(), "transport_IP"), kNoIP);

  const DescriptorAitTransportProtocol ip(view(kRemoteIP));
  EXPECT_EQ(ip.get_protocol_id(), 2);
  EXPECT_EQ(ip.get_transport_ip().get_remote_connection(), 1);
  EXPECT_EQ(ip.get_transport_ip().get_original_network_id(), 0x1234);
  EXPECT_EQ(ip.get_transport_ip().get_transport_stream_id(), 0x5678);
  EXPECT_EQ(ip.get_transport_ip().get_service_id(), 0x9ABC);
  EXPECT_EQ(ip.get_transport_ip().get_alignment_indicator(), 1);
  EXPECT_EQ(saved(ip.get_transport_oc(), "transport_OC"), kNoOC);

  for (const uint8_t protocol : Bytes{0, 3, 4, 255}) {
    const DescriptorAitTransportProtocol other(
        view(descriptor(0x02, joined({Bytes{0, protocol, 9}, Bytes(8, 0xFF)}))));
    EXPECT_EQ(saved(other.get_transport_oc(), "transport_OC"), kNoOC);
    EXPECT_EQ(saved(other.get_transport_ip(), "transport_IP"), kNoIP);
  }
  // The whole of protocol_id counts.
  EXPECT_EQ(DescriptorAitTransportProtocol(view(descriptor(0x02, {1, 1, 9, 0, 5})))
                .get_transport_oc()
                .get_component_tag(),
            0);
}

TEST(DescriptorAitTransportProtocol, TakesTheAlignmentIndicatorFromTheEighthByteAlways) {
  const auto alignment = [](const Bytes& selector) {
    int consumed = 0;
    return IP(view(selector), 8, consumed).get_alignment_indicator();
  };
  EXPECT_EQ(alignment({0x00, 0x80, 0, 0, 0, 0, 0, 0x7F}), 0);
  EXPECT_EQ(alignment({0x7F, 0x00, 0, 0, 0, 0, 0, 0x80}), 1);
  EXPECT_EQ(alignment({0x80, 0x80, 0, 0, 0, 0, 0, 0x7F}), 0);
  EXPECT_EQ(alignment({0x80, 0x00, 0, 0, 0, 0, 0, 0x80}), 1);
}

TEST(DescriptorAitTransportProtocol, TellsTheBytesOfASelector) {
  const Bytes local(8, 0x7F);
  const Bytes remote(8, 0xFF);
  const auto consumed_by = []<class Record>(const Record*, const Bytes& selector) {
    int consumed = 0;
    Record(view(selector), 8, consumed);
    return consumed;
  };
  constexpr const OC* oc = nullptr;
  constexpr const IP* ip = nullptr;
  EXPECT_EQ(consumed_by(oc, local), 2);
  EXPECT_EQ(consumed_by(oc, remote), 8);
  EXPECT_EQ(consumed_by(ip, local), 2);
  EXPECT_EQ(consumed_by(ip, remote), 8);
}

TEST(DescriptorAitTransportProtocol, ReportsTheIdsForARemoteConnectionOfOneOnly) {
  const std::string xml = changed(xml_of("DescriptorAitTransportProtocol, remote carousel"),
                                  R"(remote_connection="1")", R"(remote_connection="2")");
  EXPECT_EQ(report(loaded<DescriptorAitTransportProtocol>(xml)),
            "descriptor_tag: 02 transport_protocol_descriptor\n"
            "protocol_id: 1\n"
            "transport_protocol_label: 7\n"
            "remote_connection: 2\n"
            "component_tag: de\n");
}

TEST(DescriptorAitRoutingIPv4, ReadsItsMembers) {
  const DescriptorAitRoutingIPv4 d(view(kRoutingIPv4));
  ASSERT_EQ(d.get_routing_ipv4_infos().size(), 2u);
  const DescriptorAitRoutingIPv4::RoutingIPv4Info& first = d.get_routing_ipv4_infos()[0];
  EXPECT_EQ(first.get_component_tag(), 5);
  EXPECT_EQ(first.get_address(), 0xE0000001u);
  EXPECT_EQ(first.get_port_number(), 8080);
  EXPECT_EQ(first.get_address_mask(), 0xFFFFFFFFu);
}

TEST(DescriptorAitRoutingIPv4, RefusesALengthThatIsNoMultipleOfEleven) {
  for (size_t length = 0; length <= 255; ++length)
    EXPECT_EQ(refusal<DescriptorAitRoutingIPv4>(descriptor(0x06, Bytes(length))),
              length % 11 == 0 ? "nothing" : "3: routing_ipv4_descriptor: 1");
}

TEST(DescriptorAitRoutingIPv6, ReadsItsMembersWithThePortOnTheAddressesLastByte) {
  const Bytes two_rows =
      descriptor(0x07, joined({Bytes(kRoutingIPv6.begin() + 2, kRoutingIPv6.end()), Bytes{4}, Bytes(16, 0x11),
                               Bytes{0x22, 0x33}, Bytes(16, 0x44)}));
  const DescriptorAitRoutingIPv6 d(view(two_rows));
  ASSERT_EQ(d.get_routing_ipv6_infos().size(), 2u);
  const DescriptorAitRoutingIPv6::RoutingIPv6Info& first = d.get_routing_ipv6_infos()[0];
  EXPECT_EQ(first.get_component_tag(), 9);
  EXPECT_EQ(Bytes(first.get_address(), first.get_address() + 16),
            (Bytes{0x20, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xAB}));
  EXPECT_EQ(first.get_port_number(), 0xAB12);
  EXPECT_EQ(Bytes(first.get_address_mask(), first.get_address_mask() + 16),
            (Bytes{0x34, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5A, 0x5B, 0x5C, 0x5D,
                   0x5E}));
  const DescriptorAitRoutingIPv6::RoutingIPv6Info& second = d.get_routing_ipv6_infos()[1];
  EXPECT_EQ(second.get_component_tag(), 4);
  EXPECT_EQ(second.get_port_number(), 0x1122);
  EXPECT_EQ(second.get_address_mask()[0], 0x33);
  EXPECT_EQ(second.get_address_mask()[15], 0x44);
}

TEST(DescriptorAitRoutingIPv6, RefusesALengthThatIsNoMultipleOfThirtyFiveInTheWordsOfIPv4) {
  for (size_t length = 0; length <= 255; ++length)
    EXPECT_EQ(refusal<DescriptorAitRoutingIPv6>(descriptor(0x07, Bytes(length))),
              length % 35 == 0 ? "nothing" : "3: routing_ipv4_descriptor: 1");
}

TEST(DescriptorAitRoutingIPv6, ThrowsWhereAnAddressCannotBeSaved) {
  const DescriptorAitRoutingIPv6 d(view(kRoutingIPv6));
  const auto save = [&d](int nth) {
    FaultyDom dom("put_nodeValue", nth);
    bool saved = true;
    const std::string thrown =
        failure([&] { saved = d.get_routing_ipv6_infos()[0].SaveSection(dom.document(), dom.node()); });
    EXPECT_EQ(dom.references(), 0);
    return thrown + (saved ? "" : ", false");
  };
  EXPECT_EQ(save(1), "nothing, false");  // component_tag
  EXPECT_EQ(save(2), "-1: failed");      // address
  EXPECT_EQ(save(3), "nothing, false");  // port_number
  EXPECT_EQ(save(4), "-1: failed");      // address_mask
  EXPECT_EQ(save(5), "nothing");

  // The descriptor's two numbers are in front; a record's false is not looked at, what it throws passes.
  const auto save_whole = [&d](int nth) {
    FaultyDom dom("put_nodeValue", nth);
    bool saved = true;
    const std::string thrown = failure([&] { saved = d.SaveSection(dom.document(), dom.node()); });
    EXPECT_EQ(dom.references(), 0);
    return thrown + (saved ? "" : ", false");
  };
  EXPECT_EQ(save_whole(2), "nothing, false");
  EXPECT_EQ(save_whole(3), "nothing");
  EXPECT_EQ(save_whole(4), "-1: failed");
}

TEST(DescriptorAitPreFetch, ReadsItsMembersToOneByteBehindItsEnd) {
  const DescriptorAitPreFetch d(view(kPreFetch));
  EXPECT_EQ(d.get_transport_protocol_label(), 7);
  ASSERT_EQ(d.get_prefetch_info().size(), 2u);
  EXPECT_EQ(d.get_prefetch_info()[0].get_label_length(), 2);
  EXPECT_EQ(d.get_prefetch_info()[0].get_label(), "ab");
  EXPECT_EQ(d.get_prefetch_info()[1].get_label(), "c");
  EXPECT_EQ(d.get_prefetch_info()[1].get_prefetch_priority(), 0);
}

TEST(DescriptorAitPreFetch, RunsOnIntoTheByteBehindItsEnd) {
  const auto followed_by = [](const Bytes& rest) {
    return descriptor_claiming(0x0C, 4, joined({Bytes{7}, counted("ab"), rest}));
  };
  EXPECT_EQ(refusal<DescriptorAitPreFetch>(followed_by({3, 'x', 'y', 'z'})), "3: prefetch_descriptor: 1");
  EXPECT_EQ(refusal<DescriptorAitPreFetch>(followed_by({3, 'x'})), "3: prefetch_descriptor: 1");
  EXPECT_EQ(refusal<DescriptorAitPreFetch>(followed_by({})), "3: prefetch_descriptor: 1");
  const DescriptorAitPreFetch exact(view(followed_by({0, 'x'})));
  ASSERT_EQ(exact.get_prefetch_info().size(), 2u);
  EXPECT_EQ(exact.get_prefetch_info()[1].get_label_length(), 0);
  EXPECT_TRUE(DescriptorAitPreFetch(view(descriptor_claiming(0x0C, 0, {7}))).get_prefetch_info().empty());
}

TEST(DescriptorAitPreFetch, TakesThePriorityByteForTheNextRow) {
  const Bytes standard = descriptor(0x0C, joined({Bytes{7}, counted("ab"), Bytes{1}}));
  EXPECT_EQ(refusal<DescriptorAitPreFetch>(joined({standard, Bytes(4)})), "nothing");
  EXPECT_EQ(DescriptorAitPreFetch(view(joined({standard, Bytes{'x', 0}}))).get_prefetch_info()[1].get_label(),
            "x");
}

TEST(DescriptorAitPreFetch, KeepsALoadedPriority) {
  const std::string xml =
      changed(xml_of("DescriptorAitPreFetch"), R"(prefetch_priority="0")", R"(prefetch_priority="99")");
  EXPECT_EQ(saved(loaded<DescriptorAitPreFetch>(xml)), xml);
}

TEST(DescriptorAitDIILocation, ReadsEachRowFromItsOwnHead) {
  const DescriptorAitDIILocation d(view(kDIILocation));
  EXPECT_EQ(d.get_transport_protocol_label(), 7);
  ASSERT_EQ(d.get_dii_location_infos().size(), 2u);
  for (const DescriptorAitDIILocation::DIILocationInfo& row : d.get_dii_location_infos()) {
    EXPECT_EQ(row.get_dii_identification(), 0x0D08);
    EXPECT_EQ(row.get_association_tag(), 0x0792);
  }
  Bytes other_tag = kDIILocation;
  other_tag[0] = 0x8D;
  EXPECT_EQ(DescriptorAitDIILocation(view(other_tag)).get_dii_location_infos()[1].get_dii_identification(),
            0x0D08);
}

TEST(DescriptorAitDIILocation, RefusesALengthThatIsNoMultipleOfFour) {
  for (size_t length = 0; length <= 255; ++length)
    EXPECT_EQ(refusal<DescriptorAitDIILocation>(descriptor(0x0D, Bytes(length))),
              length % 4 == 0 ? "nothing" : "3: dii_location_descriptor: 1");
  EXPECT_TRUE(
      DescriptorAitDIILocation(view(descriptor_claiming(0x0D, 0, {7}))).get_dii_location_infos().empty());
}

TEST(DIILocationInfo, ReadsFifteenBitsAndSixteenFromThePlaceGiven) {
  const DescriptorAitDIILocation::DIILocationInfo row(Bytes{0xFF, 0xFE, 0xFF, 0xFD}.data());
  EXPECT_EQ(row.get_dii_identification(), 0x7FFE);
  EXPECT_EQ(row.get_association_tag(), 0xFFFD);
}

TEST(DescriptorDVB_J_Application, ReadsItsMembers) {
  const DescriptorDVB_J_Application d(view(kDVB_J));
  ASSERT_EQ(d.get_parameter_infos().size(), 3u);
  EXPECT_EQ(d.get_parameter_infos()[2].get_length(), 3);
  EXPECT_EQ(d.get_parameter_infos()[2].get_value(), "y=1");
}

TEST(DescriptorDVB_J_Application, ReadsAParameterBehindItsEndUpToTheSectionsEnd) {
  const Bytes beyond = descriptor_claiming(0x03, 2, joined({counted("abcd"), counted("no more")}));
  const DescriptorDVB_J_Application d(view(beyond));
  ASSERT_EQ(d.get_parameter_infos().size(), 1u);
  EXPECT_EQ(d.get_parameter_infos()[0].get_value(), "abcd");
  const DescriptorDVB_J_Application cut(view(descriptor_claiming(0x03, 200, joined({{99}, text("abc")}))));
  ASSERT_EQ(cut.get_parameter_infos().size(), 1u);
  EXPECT_EQ(cut.get_parameter_infos()[0].get_length(), 99);
  EXPECT_STREQ(cut.get_parameter_infos()[0].get_value().c_str(), "abc");
}

TEST(DescriptorDVB_J_ApplicationLocation, ReadsItsMembers) {
  const DescriptorDVB_J_ApplicationLocation d(view(kDVB_JLocation));
  EXPECT_EQ(d.get_base_directory().get_value(), "/base");
  EXPECT_EQ(d.get_classpath_extension().get_value(), "/a:/b");
  EXPECT_EQ(d.get_initial_class(), "org.X");
}

TEST(DescriptorDVB_J_ApplicationLocation, ReadsStringsBehindItsEndUpToTheSectionsEnd) {
  const DescriptorDVB_J_ApplicationLocation d(
      view(descriptor_claiming(0x04, 4, joined({counted("abc"), counted("defg"), text("rest")}))));
  EXPECT_EQ(d.get_base_directory().get_value(), "abc");
  EXPECT_EQ(d.get_classpath_extension().get_value(), "defg");
  EXPECT_EQ(d.get_initial_class(), "");
  const DescriptorDVB_J_ApplicationLocation cut(
      view(descriptor_claiming(0x04, 90, joined({counted(""), counted(""), text("rest")}))));
  EXPECT_EQ(cut.get_initial_class(), "rest");
}

TEST(DescriptorDVB_HTML, ReadsItsMembers) {
  const DescriptorDVB_HTML_Application application(view(kHtml));
  EXPECT_EQ(application.get_application_id().get_value(), "id");
  EXPECT_EQ(application.get_parameter(), "p=1&q");
  const DescriptorDVB_HTML_ApplicationLocation location(view(kHtmlLocation));
  EXPECT_EQ(location.get_physical_root().get_value(), "/root");
  EXPECT_EQ(location.get_initial_path(), "index.htm");
  const Boundary boundary(view(kBoundary));
  EXPECT_EQ(boundary.get_label().get_value(), "lab");
  EXPECT_EQ(boundary.get_regular_expression(), "^.*$");
}

TEST(DescriptorDVB_HTML, HasNoSecondStringWhereTheFirstRunsBehindItsEnd) {
  const DescriptorDVB_HTML_Application d(
      view(descriptor_claiming(0x08, 3, joined({counted("abc"), text("rest")}))));
  EXPECT_EQ(d.get_application_id().get_value(), "abc");
  EXPECT_EQ(d.get_parameter(), "");
  EXPECT_EQ(DescriptorDVB_HTML_ApplicationLocation(view(descriptor_claiming(0x09, 90, {0, 'a', 0, 'b'})))
                .get_initial_path(),
            std::string("a\0b", 3));
  EXPECT_EQ(Boundary(view(descriptor_claiming(0x0A, 0, {2, 'a', 'b', 'c'}))).get_label().get_value(), "ab");
}

TEST(AitDescriptors, NeedEachOfTheirAttributes) {
  expect_each_attribute_needed<DescriptorAitApplication>(xml_of("DescriptorAitApplication"));
  expect_each_attribute_needed<DescriptorAitApplicationName>(xml_of("DescriptorAitApplicationName"));
  expect_each_attribute_needed<DescriptorAitApplicationIcons>(xml_of("DescriptorAitApplicationIcons"));
  expect_each_attribute_needed<Authorisation>(xml_of("DescriptorAitExternalApplicationAuthorisation"));
  expect_each_attribute_needed<DescriptorAitTransportProtocol>(
      xml_of("DescriptorAitTransportProtocol, remote carousel"));
  expect_each_attribute_needed<DescriptorAitRoutingIPv4>(xml_of("DescriptorAitRoutingIPv4"));
  expect_each_attribute_needed<DescriptorAitRoutingIPv6>(xml_of("DescriptorAitRoutingIPv6"));
  expect_each_attribute_needed<DescriptorAitPreFetch>(xml_of("DescriptorAitPreFetch"));
  expect_each_attribute_needed<DescriptorAitDIILocation>(xml_of("DescriptorAitDIILocation"));
  expect_each_attribute_needed<DescriptorDVB_J_Application>(xml_of("DescriptorDVB_J_Application"));
  expect_each_attribute_needed<DescriptorDVB_J_ApplicationLocation>(
      xml_of("DescriptorDVB_J_ApplicationLocation"));
  expect_each_attribute_needed<DescriptorDVB_HTML_Application>(xml_of("DescriptorDVB_HTML_Application"));
  expect_each_attribute_needed<DescriptorDVB_HTML_ApplicationLocation>(
      xml_of("DescriptorDVB_HTML_ApplicationLocation"));
  expect_each_attribute_needed<Boundary>(xml_of("DescriptorDVB_HTML_ApplicationLocationBoundary"));
}

namespace {

// What a load of a case throws when the element of that name is called something else.
template <class T>
std::string failure_without(const std::string& case_name, const std::string& element) {
  return failure([&] {
    loaded<T>(changed(
        changed(changed(xml_of(case_name), "<" + element + " ", "<other "), "<" + element + ">", "<other>"),
        "</" + element + ">", "</other>"));
  });
}

}  // namespace

TEST(AitDescriptors, NeedTheirChildren) {
  EXPECT_EQ(failure_without<Authorisation>("DescriptorAitExternalApplicationAuthorisation",
                                           "application_identifer"),
            "-1: failed to get application_identifer");
  EXPECT_EQ(failure_without<DescriptorAitTransportProtocol>("DescriptorAitTransportProtocol, remote IP",
                                                            "transport_OC"),
            "-1: failed to get transport_OC");
  EXPECT_EQ(failure_without<DescriptorAitTransportProtocol>("DescriptorAitTransportProtocol, remote carousel",
                                                            "transport_IP"),
            "-1: failed to get transport_IP");
  EXPECT_EQ(failure_without<DescriptorDVB_J_ApplicationLocation>("DescriptorDVB_J_ApplicationLocation",
                                                                 "base_directory"),
            "-1: failed to get base_directory");
  EXPECT_EQ(failure_without<DescriptorDVB_J_ApplicationLocation>("DescriptorDVB_J_ApplicationLocation",
                                                                 "classpath_extension"),
            "-1: failed to get classpath_extension");
  EXPECT_EQ(
      failure_without<DescriptorDVB_HTML_Application>("DescriptorDVB_HTML_Application", "application_id"),
      "-1: failed to get application_id");
  EXPECT_EQ(failure_without<DescriptorDVB_HTML_ApplicationLocation>("DescriptorDVB_HTML_ApplicationLocation",
                                                                    "physical_root"),
            "-1: failed to get physical_root");
  EXPECT_EQ(failure_without<Boundary>("DescriptorDVB_HTML_ApplicationLocationBoundary", "label"),
            "-1: failed to get label");
  EXPECT_EQ(failure_without<DescriptorAitApplication>("DescriptorAitApplication", "application_profiles"),
            "-1: failed to get application_profiles");
}

TEST(AitDescriptors, NameTheirListInEachOfItsFailures) {
  expect_list_failures<DescriptorAitApplication>("application_profiles");
  expect_list_failures<DescriptorAitApplicationName>("application_name_infos");
  expect_list_failures<Authorisation>("external_application_authorisation_infos");
  expect_list_failures<DescriptorAitRoutingIPv4>("routing_ipv4_infos");
  expect_list_failures<DescriptorAitRoutingIPv6>("routing_ipv6_infos");
  expect_list_failures<DescriptorAitPreFetch>("prefetch_info");
  expect_list_failures<DescriptorAitDIILocation>("dii_location_infos");
  expect_list_failures<DescriptorDVB_J_Application>("parameter_infos");
}

TEST(AitDescriptors, LoseTheirListsAndBytesOverReset) {
  EXPECT_EQ(saved_after_reset<DescriptorAitApplication>(kApplication),
            R"(<d descriptor_id="0" descriptor_length="15" application_profiles_length="10")"
            R"( service_bound_flag="1" visibility="2" application_priority="10")"
            R"( transport_protocol_label=""><application_profiles /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorAitApplicationName>(kName),
            R"(<d descriptor_id="1" descriptor_length="20"><application_name_infos /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorAitApplicationIcons>(kIcons),
            R"(<d descriptor_id="11" descriptor_length="10" icon_locator_length="5" icon_locator="icons")"
            R"( icon_flags="259" reserved_future_use="" />)");
  EXPECT_EQ(
      saved_after_reset<Authorisation>(kAuthorisation),
      R"(<d descriptor_id="5" descriptor_length="14"><external_application_authorisation_infos /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorAitRoutingIPv4>(kRoutingIPv4),
            R"(<d descriptor_id="6" descriptor_length="22"><routing_ipv4_infos /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorAitRoutingIPv6>(kRoutingIPv6),
            R"(<d descriptor_id="7" descriptor_length="35"><routing_ipv6_infos /></d>)");
  EXPECT_EQ(
      saved_after_reset<DescriptorAitPreFetch>(kPreFetch),
      R"(<d descriptor_id="12" descriptor_length="5" transport_protocol_label="7"><prefetch_info /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorAitDIILocation>(kDIILocation),
            R"(<d descriptor_id="13" descriptor_length="8" transport_protocol_label="7">)"
            R"(<dii_location_infos /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorDVB_J_Application>(kDVB_J),
            R"(<d descriptor_id="3" descriptor_length="7"><parameter_infos /></d>)");
}

TEST(AitDescriptors, KeepTheirStringsAndRecordsOverReset) {
  EXPECT_EQ(saved_after_reset<DescriptorAitTransportProtocol>(kRemoteOC),
            xml_of("DescriptorAitTransportProtocol, remote carousel"));
  EXPECT_EQ(saved_after_reset<DescriptorDVB_J_ApplicationLocation>(kDVB_JLocation),
            xml_of("DescriptorDVB_J_ApplicationLocation"));
  EXPECT_EQ(saved_after_reset<DescriptorDVB_HTML_Application>(kHtml),
            xml_of("DescriptorDVB_HTML_Application"));
  EXPECT_EQ(saved_after_reset<DescriptorDVB_HTML_ApplicationLocation>(kHtmlLocation),
            xml_of("DescriptorDVB_HTML_ApplicationLocation"));
  EXPECT_EQ(saved_after_reset<Boundary>(kBoundary), xml_of("DescriptorDVB_HTML_ApplicationLocationBoundary"));
}
