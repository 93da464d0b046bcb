// The descriptors of services and what points from one to another, by wire vectors.

#include "tests/support/cases.h"

#include <algorithm>

#include <quillon/descriptors/service/availability.h>
#include <quillon/descriptors/service/default_authority.h>
#include <quillon/descriptors/service/nvod.h>
#include <quillon/descriptors/service/private_data_specifier.h>
#include <quillon/descriptors/service/service.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kServiceList = descriptor(0x41, bits({{16, 0x1001, "service_id"},
                                                  {8, 0x01, "service_type"},
                                                  {16, 0xFFFE, "service_id"},
                                                  {8, 0x19, "service_type"}}));

const Bytes kService =
    descriptor(0x48, joined({bits({{8, 0x19, "service_type"}, {8, 8, "service_provider_name_length"}}),
                             text("Provider"), bits({{8, 5, "service_name_length"}}), text("Kan\xE4l")}));

const Bytes kNamelessService = descriptor(
    0x48,
    bits({{8, 0x02, "service_type"}, {8, 0, "service_provider_name_length"}, {8, 0, "service_name_length"}}));

const Bytes kCountryAvailability = descriptor(
    0x49,
    joined({bits({{1, 1, "country_availability_flag"}, {7, 0x7F, "reserved_future_use"}}), text("GBRDEU")}));

const Bytes kNVODReference = descriptor(0x4B, bits({{16, 0x0401, "transport_stream_id"},
                                                    {16, 0x0002, "original_network_id"},
                                                    {16, 0x17D4, "service_id"},
                                                    {16, 0xABCD, "transport_stream_id"},
                                                    {16, 0xEF01, "original_network_id"},
                                                    {16, 0x0000, "service_id"}}));

const Bytes kTimeShiftedService = descriptor(0x4C, bits({{16, 0xC0DE, "reference_service_id"}}));

const Bytes kPrivateDataSpecifier = descriptor(0x5F, bits({{32, 0xC0000028, "private_data_specifier"}}));

const Bytes kServiceMove = descriptor(0x60, bits({{16, 0x0001, "new_original_network_id"},
                                                  {16, 0x8002, "new_transport_stream_id"},
                                                  {16, 0x1F03, "new_service_id"}}));

const Bytes kServiceIdentifier = descriptor(0x71, text("service.example"));

const Bytes kServiceAvailability = descriptor(
    0x72,
    bits(
        {{1, 1, "availability_flag"}, {7, 0, "reserved"}, {16, 0x0001, "cell_id"}, {16, 0xBEEF, "cell_id"}}));

const Bytes kDefaultAuthority = descriptor(0x73, text("a.example\xFF"));

const Cases cases = {
    case_of<DescriptorServiceList>("DescriptorServiceList", Family::dvb, kServiceList,
                                   "descriptor_tag: 41 service_list_descriptor\n"
                                   "service_id 1001\n"
                                   "service_type 1\n"
                                   "service_id fffe\n"
                                   "service_type 19\n",
                                   R"(<d descriptor_id="65" descriptor_length="6"><servicelist>)"
                                   R"(<service service_id="4097" service_type="1" />)"
                                   R"(<service service_id="65534" service_type="25" /></servicelist></d>)"),
    case_of<DescriptorService>("DescriptorService", Family::dvb, kService,
                               "descriptor_tag: 48 service_descriptor\n"
                               "service_type 19\n"
                               "provider_name Provider\n"
                               "service_name Kan\xE4l\n",
                               R"(<d descriptor_id="72" descriptor_length="16" service_type="25")"
                               " provider_name=\"Provider\" service_name=\"Kan\xC3\xA4l\" />"),
    case_of<DescriptorService>(
        "DescriptorService, without names", Family::dvb, kNamelessService,
        "descriptor_tag: 48 service_descriptor\n"
        "service_type 2\n"
        "provider_name \n"
        "service_name \n",
        R"(<d descriptor_id="72" descriptor_length="3" service_type="2" provider_name="")"
        R"( service_name="" />)"),
    case_of<DescriptorCountryAvailability>("DescriptorCountryAvailability", Family::dvb, kCountryAvailability,
                                           "descriptor_tag: 49 country_availability_descriptor\n"
                                           "country_availability_flag: 1\n"
                                           "country_code: GBR\n"
                                           "country_code: DEU\n",
                                           R"(<d descriptor_id="73" descriptor_length="7" />)"),
    case_of<DescriptorNVODReference>(
        "DescriptorNVODReference", Family::dvb, kNVODReference,
        "descriptor_tag: 4b NVOD_reference_descriptor\n"
        "DescriptorNVODReference::service::transport_stream_id: 401\n"
        "DescriptorNVODReference::service::original_network_id: 2\n"
        "DescriptorNVODReference::service::service_id: 17d4\n"
        "DescriptorNVODReference::service::transport_stream_id: abcd\n"
        "DescriptorNVODReference::service::original_network_id: ef01\n"
        "DescriptorNVODReference::service::service_id: 0\n",
        R"(<d descriptor_id="75" descriptor_length="12"><service_list>)"
        R"(<service transport_stream_id="1025" original_network_id="2" service_id="6100" />)"
        R"(<service transport_stream_id="43981" original_network_id="61185" service_id="0" />)"
        R"(</service_list></d>)"),
    case_of<DescriptorTimeShiftedService>(
        "DescriptorTimeShiftedService", Family::dvb, kTimeShiftedService,
        "descriptor_tag: 4c time_shifted_event_descriptor\n"
        "reference_service_id: c0de\n",
        R"(<d descriptor_id="76" descriptor_length="2" reference_service_id="49374" />)"),
    case_of<DescriptorPrivateDataSpecifier>(
        "DescriptorPrivateDataSpecifier", Family::dvb, kPrivateDataSpecifier,
        "descriptor_tag: 5f private_data_specifier_descriptor\n"
        "private_data_specifier: c0000028\n",
        R"(<d descriptor_id="95" descriptor_length="4" private_data_specifier="-1073741784" />)"),
    case_of<DescriptorServiceMove>(
        "DescriptorServiceMove", Family::dvb, kServiceMove,
        "descriptor_tag: 60 service_move_descriptor\n"
        "new_original_network_id: 1\n"
        "new_transport_stream_id: 8002\n"
        "new_service_id: 1f03\n",
        R"(<d descriptor_id="96" descriptor_length="6" new_original_network_id="1")"
        R"( new_transport_stream_id="32770" new_service_id="7939" />)"),
    case_of<DescriptorServiceIdentifier>("DescriptorServiceIdentifier", Family::dvb, kServiceIdentifier,
                                         "descriptor_tag: 71 service_identifier_descriptor\n",
                                         R"(<d descriptor_id="113" descriptor_length="15" />)"),
    case_of<DescriptorServiceAvailability>(
        "DescriptorServiceAvailability", Family::dvb, kServiceAvailability,
        "descriptor_tag: 72 service_availability_descriptor\n",
        R"(<d descriptor_id="114" descriptor_length="5" availability_flag="1" cell_id="000000010000beef" />)",
        R"(<d descriptor_id="114" descriptor_length="5" availability_flag="1")"
        R"( cell_id="0000000000000001000000000000beef" />)"),
    case_of<DescriptorDefaultAuthority>(
        "DescriptorDefaultAuthority", Family::dvb, kDefaultAuthority,
        "descriptor_tag: 73 default_authority_descriptor\n",
        R"(<d descriptor_id="115" descriptor_length="10" default_authority_byte="612e6578616d706c65ff" />)"),
};

template <class T>
std::string failure_of(const Bytes& bytes) {
  return failure([&] { T(view(bytes)); });
}

}  // namespace

TEST(ServiceDescriptors, FailToLoadWithoutAnyOneOfTheirAttributes) {
  const Bytes tags = {0x40, 0x41, 0x47, 0x48, 0x49, 0x4B, 0x4C, 0x57, 0x5B,
                      0x5C, 0x5D, 0x5F, 0x60, 0x6E, 0x71, 0x72, 0x73};
  for (const DescriptorCase& c : Cases::all()) {
    if (c.family != Family::dvb || std::find(tags.begin(), tags.end(), c.bytes[0]) == tags.end()) continue;
    SCOPED_TRACE(c.name);
    for (size_t end = 0, equals; (equals = c.xml.find("=\"", end)) != std::string::npos;) {
      const size_t begin = c.xml.rfind(' ', equals);
      end = c.xml.find('"', equals + 2) + 1;
      const std::string name = c.xml.substr(begin + 1, equals - begin - 1);
      const bool header = name == "descriptor_id" || name == "descriptor_length";
      EXPECT_EQ(failure([&] { c.resaved_of(c.xml.substr(0, begin) + c.xml.substr(end)); }),
                header ? "-1: failed to get " + name : "-1: failed")
          << name;
    }
  }
}

TEST(ServiceDescriptors, FailToLoadWithoutTheirList) {
  EXPECT_EQ(
      failure([] { loaded<DescriptorServiceList>(R"(<d descriptor_id="65" descriptor_length="0" />)"); }),
      "-1: failed to get servicelist");
  EXPECT_EQ(
      failure([] { loaded<DescriptorNVODReference>(R"(<d descriptor_id="75" descriptor_length="0" />)"); }),
      "-1: failed to get service_list");
}

TEST(DescriptorServiceList, ReadsItsMembers) {
  DescriptorServiceList d(kServiceList.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x41);
  EXPECT_EQ(d.get_descriptor_length(), 6);
  ASSERT_EQ(d.get_servicelist().size(), 2u);
  EXPECT_EQ(d.get_servicelist()[0].get_service_id(), 0x1001);
  EXPECT_EQ(d.get_servicelist()[0].get_service_type(), 0x01);
  EXPECT_EQ(d.get_servicelist()[1].get_service_id(), 0xFFFE);
  EXPECT_EQ(d.get_servicelist()[1].get_service_type(), 0x19);
  EXPECT_EQ(report(d.get_servicelist()[1]), "service_id 65534\nservice_type 25\n");
  d.reset();
  EXPECT_EQ(d.get_servicelist().size(), 2u);
}

TEST(DescriptorServiceList, RefusesALengthThatIsNoMultipleOfThree) {
  for (const size_t length : {1u, 2u, 4u, 5u})
    EXPECT_EQ(failure_of<DescriptorServiceList>(descriptor(0x41, Bytes(length))),
              "-1: descriptor length mismatch");
  EXPECT_TRUE(DescriptorServiceList(descriptor(0x41, {}).data()).get_servicelist().empty());
}

TEST(DescriptorService, ReadsItsMembers) {
  DescriptorService d(kService.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x48);
  EXPECT_EQ(d.get_descriptor_length(), 16);
  EXPECT_EQ(d.get_service_type(), 0x19);
  EXPECT_STREQ(d.get_service_type_text(), "advanced codec HD digital television service");
  EXPECT_EQ(d.get_provider_nameA().get_textA(), "Provider");
  EXPECT_EQ(d.get_provider_nameA().get_text_len(), 8u);
  EXPECT_EQ(d.get_service_nameA().get_textA(), "Kan\xE4l");
  EXPECT_EQ(d.get_service_nameA().get_text_len(), 5u);
  d.reset();
  EXPECT_EQ(d.get_service_nameA().get_text_len(), 5u);
}

TEST(DescriptorService, TakesItsNamesAlsoFromBehindItsLength) {
  Bytes bytes = kService;
  bytes[1] = 0;
  const DescriptorService d(bytes.data());
  EXPECT_EQ(d.get_provider_nameA().get_textA(), "Provider");
  EXPECT_EQ(d.get_service_nameA().get_text_len(), 5u);
}

TEST(DescriptorService, NamesItsType) {
  const char* const reserved = "reserved for future use";
  const char* const texts[] = {reserved,
                               "digital television service",
                               "digital radio sound service",
                               "teletext service",
                               "NVOD reference service",
                               "NVOD time-shifted service",
                               "mosiac service",
                               "PAL coded signal",
                               "SECAM coded signal",
                               "D/D2-MAC",
                               "FM Radio",
                               "NTSC coded signal",
                               "data broadcast service",
                               "reserved for Common Interface Usage (EN 50221)",
                               "RCS Map (see EN 301 790)",
                               "RCS FLS (see EN 301 790)",
                               "DVB MHP service",
                               "MPEG-2 HD digital television service",
                               reserved,
                               reserved,
                               reserved,
                               reserved,
                               "advanced codec SD digital television service",
                               "advanced codec SD NVOD time-shifted service",
                               "advanced codec SD NVOD reference service",
                               "advanced codec HD digital television service",
                               "advanced codec HD NVOD time-shifted service",
                               "advanced codec HD NVOD reference service"};
  int value = 0;
  for (const char* const expected : texts)
    EXPECT_STREQ(DescriptorService::get_service_type_text(value++), expected);
  for (; value <= 127; ++value)
    EXPECT_STREQ(DescriptorService::get_service_type_text(value), reserved) << value;
  for (; value <= 254; ++value)
    EXPECT_STREQ(DescriptorService::get_service_type_text(value), "user defined") << value;
  EXPECT_STREQ(DescriptorService::get_service_type_text(255), reserved);
  for (const int outside : {-1, 256, -128, 0x7FFFFFFF})
    EXPECT_STREQ(DescriptorService::get_service_type_text(outside), "<unknown>");
}

TEST(DescriptorServiceMove, ReadsItsMembers) {
  DescriptorServiceMove d(kServiceMove.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x60);
  EXPECT_EQ(d.get_descriptor_length(), 6);
  d.reset();
  EXPECT_EQ(d.get_new_original_network_id(), 0x0001);
  EXPECT_EQ(d.get_new_transport_stream_id(), 0x8002);
  EXPECT_EQ(d.get_new_service_id(), 0x1F03);
}

TEST(DescriptorServiceIdentifier, IsItsFrameAlone) {
  DescriptorServiceIdentifier d(kServiceIdentifier.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x71);
  EXPECT_EQ(d.get_descriptor_length(), 15);
  d.reset();
  EXPECT_EQ(d.get_descriptor_length(), 15);
  EXPECT_EQ(saved(DescriptorServiceIdentifier(descriptor_claiming(0x71, 255, {}).data())),
            R"(<d descriptor_id="113" descriptor_length="255" />)");
  EXPECT_EQ(saved(DescriptorServiceIdentifier(descriptor(0x71, {}).data())),
            R"(<d descriptor_id="113" descriptor_length="0" />)");
}

TEST(DescriptorCountryAvailability, ReadsItsMembers) {
  DescriptorCountryAvailability d(kCountryAvailability.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x49);
  EXPECT_EQ(d.get_descriptor_length(), 7);
  d.reset();
  EXPECT_EQ(d.get_country_availability_flag(), 1);
  ASSERT_EQ(d.get_country_codes().size(), 2u);
  EXPECT_EQ(d.get_country_codes()[0].get_country_code(), "GBR");
  EXPECT_EQ(d.get_country_codes()[1].get_country_code(), "DEU");
}

TEST(DescriptorCountryAvailability, KeepsItsCodesAsBytes) {
  const DescriptorCountryAvailability d(descriptor(0x49, {0x7F, 'A', 0x00, 0xC4}).data());
  EXPECT_EQ(d.get_country_availability_flag(), 0);
  ASSERT_EQ(d.get_country_codes().size(), 1u);
  EXPECT_EQ(d.get_country_codes()[0].get_country_code(), std::string("A\0\xC4", 3));
  EXPECT_EQ(report(d), std::string("descriptor_tag: 49 country_availability_descriptor\n"
                                   "country_availability_flag: 0\n"
                                   "country_code: A") +
                           std::string("\0\xC4\n", 3));
}

TEST(DescriptorCountryAvailability, RefusesCodesThatDoNotFillItsBody) {
  for (const size_t length : {0u, 2u, 3u, 5u, 6u})
    EXPECT_EQ(failure_of<DescriptorCountryAvailability>(descriptor(0x49, Bytes(length))),
              "3: country_availability_descriptor");
  EXPECT_TRUE(DescriptorCountryAvailability(descriptor(0x49, Bytes(1)).data()).get_country_codes().empty());
}

TEST(DescriptorCountryAvailability, IsLoadedWithoutItsCodesAndFlag) {
  const auto d = loaded<DescriptorCountryAvailability>(
      saved(DescriptorCountryAvailability(kCountryAvailability.data())));
  EXPECT_EQ(d.get_descriptor_length(), 7);
  EXPECT_EQ(d.get_country_availability_flag(), 0);
  EXPECT_TRUE(d.get_country_codes().empty());
}

TEST(DescriptorServiceAvailability, ReadsItsMembers) {
  DescriptorServiceAvailability d(kServiceAvailability.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x72);
  EXPECT_EQ(d.get_descriptor_length(), 5);
  d.reset();
  EXPECT_EQ(d.get_availability_flag(), 1);
  EXPECT_EQ(d.get_cell_id(), (std::vector<int>{0x0001, 0xBEEF}));
}

TEST(DescriptorServiceAvailability, RefusesCellsThatDoNotFillItsBody) {
  for (const size_t length : {0u, 2u, 4u})
    EXPECT_EQ(failure_of<DescriptorServiceAvailability>(descriptor(0x72, Bytes(length))), "0: ");
  const DescriptorServiceAvailability d(descriptor(0x72, {0x7F}).data());
  EXPECT_EQ(d.get_availability_flag(), 0);
  EXPECT_TRUE(d.get_cell_id().empty());
}

TEST(DescriptorServiceAvailability, IsLoadedWithEachCellAsItsTwoHalves) {
  const auto d = loaded<DescriptorServiceAvailability>(
      saved(DescriptorServiceAvailability(kServiceAvailability.data())));
  EXPECT_EQ(d.get_cell_id(), (std::vector<int>{0x0000, 0x0001, 0x0000, 0xBEEF}));
}

TEST(DescriptorNVODReference, ReadsItsMembers) {
  DescriptorNVODReference d(kNVODReference.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x4B);
  EXPECT_EQ(d.get_descriptor_length(), 12);
  ASSERT_EQ(d.get_service_list().size(), 2u);
  EXPECT_EQ(d.get_service_list()[0].get_transport_stream_id(), 0x0401);
  EXPECT_EQ(d.get_service_list()[0].get_original_network_id(), 0x0002);
  EXPECT_EQ(d.get_service_list()[0].get_service_id(), 0x17D4);
  EXPECT_EQ(d.get_service_list()[1].get_transport_stream_id(), 0xABCD);
  EXPECT_EQ(d.get_service_list()[1].get_original_network_id(), 0xEF01);
  EXPECT_EQ(d.get_service_list()[1].get_service_id(), 0x0000);
  d.reset();
  EXPECT_TRUE(d.get_service_list().empty());
  EXPECT_EQ(d.get_descriptor_length(), 12);
}

TEST(DescriptorNVODReference, RefusesALengthThatIsNoMultipleOfSix) {
  for (const size_t length : {1u, 5u, 7u, 9u})
    EXPECT_EQ(failure_of<DescriptorNVODReference>(descriptor(0x4B, Bytes(length))),
              "3: NVOD_reference_descriptor");
  EXPECT_TRUE(DescriptorNVODReference(descriptor(0x4B, {}).data()).get_service_list().empty());
}

TEST(DescriptorTimeShiftedService, ReadsItsMembers) {
  DescriptorTimeShiftedService d(kTimeShiftedService.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x4C);
  EXPECT_EQ(d.get_descriptor_length(), 2);
  d.reset();
  EXPECT_EQ(d.get_reference_service_id(), 0xC0DE);
}

TEST(DescriptorPrivateDataSpecifier, ReadsItsMembers) {
  DescriptorPrivateDataSpecifier d(kPrivateDataSpecifier.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x5F);
  EXPECT_EQ(d.get_descriptor_length(), 4);
  d.reset();
  EXPECT_EQ(d.get_private_data_specifier(), 0xC0000028u);
  EXPECT_EQ(loaded<DescriptorPrivateDataSpecifier>(saved(d)).get_private_data_specifier(), 0xC0000028u);
}

TEST(DescriptorDefaultAuthority, ReadsItsMembers) {
  DescriptorDefaultAuthority d(kDefaultAuthority.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x73);
  EXPECT_EQ(d.get_descriptor_length(), 10);
  EXPECT_EQ(d.get_default_authority(), text("a.example\xFF"));
  d.reset();
  EXPECT_TRUE(d.get_default_authority().empty());
  EXPECT_EQ(d.get_descriptor_length(), 10);
}
