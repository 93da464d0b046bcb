// The names of networks, bouquets and services, by wire vectors.

#include "tests/support/cases.h"

#include <quillon/descriptors/service/names.h>

using namespace quillon;
using namespace quillon::test;

using ServiceNameInfo = DescriptorMultilingualServiceName::MultilingualServiceNameInfo;

namespace {

const Bytes kNetworkName = descriptor(0x40, text("Kan\xE4le"));
const Bytes kTurkishNetworkName = descriptor(0x40, joined({bits({{8, 0x05, "ISO 8859-9"}}), text("\xDDz")}));
const Bytes kBouquetName = descriptor(0x47, text("Basic & more"));

Bytes name_info(const char* language, const char* name) {
  return joined({text(language), bits({{8, std::string_view(name).size(), "name_length"}}), text(name)});
}

const Bytes kNames = joined({name_info("eng", "North"), name_info("deu", ""), name_info("fra", "N\xF4rd")});
const Bytes kNetworkNames = descriptor(0x5B, kNames);
const Bytes kBouquetNames = descriptor(0x5C, kNames);

Bytes service_name_info(const char* language, const char* provider, const char* service) {
  return joined({name_info(language, provider),
                 bits({{8, std::string_view(service).size(), "service_name_length"}}), text(service)});
}

const Bytes kServiceNames = descriptor(
    0x5D, joined({service_name_info("eng", "Provider 01", "News"), service_name_info("deu", "", "")}));

const char* const kNamesXml = R"(<nameinfo><info name="North" ISO_639_language_code="eng" />)"
                              R"(<info name="" ISO_639_language_code="deu" />)"
                              "<info name=\"N\xC3\xB4rd\" ISO_639_language_code=\"fra\" /></nameinfo></d>";

const char* const kNamesReport =
    "MultilingualNameInfo::ISO_639_language_code: eng\n"
    "MultilingualNameInfo::name: North\n"
    "MultilingualNameInfo::ISO_639_language_code: deu\n"
    "MultilingualNameInfo::name: \n"
    "MultilingualNameInfo::ISO_639_language_code: fra\n"
    "MultilingualNameInfo::name: N\xF4rd\n";

const Cases cases = {
    case_of<DescriptorNetworkName>("DescriptorNetworkName", Family::dvb, kNetworkName,
                                   "descriptor_tag: 40 network_name_descriptor\n"
                                   "network_name: Kan\xE4le\n",
                                   R"(<d descriptor_id="64" descriptor_length="6" network_name="Kan)"
                                   "\xC3\xA4le\" />"),
    case_of<DescriptorNetworkName>("DescriptorNetworkName, in Turkish", Family::dvb, kTurkishNetworkName,
                                   "descriptor_tag: 40 network_name_descriptor\n"
                                   "network_name: ?z\n",
                                   R"(<d descriptor_id="64" descriptor_length="3" network_name=")"
                                   "\xC4\xB0z\" />"),
    case_of<DescriptorBouquetName>(
        "DescriptorBouquetName", Family::dvb, kBouquetName,
        "descriptor_tag: 47 bouquet_name_descriptor\n"
        "bouquet_name: Basic & more\n",
        R"(<d descriptor_id="71" descriptor_length="12" bouquet_name="Basic &amp; more" />)"),
    case_of<DescriptorMultilingualNetworkName>(
        "DescriptorMultilingualNetworkName", Family::dvb, kNetworkNames,
        std::string("descriptor_tag: 5b multilingual_network_name_descriptor\n") + kNamesReport,
        std::string(R"(<d descriptor_id="91" descriptor_length="21">)") + kNamesXml),
    case_of<DescriptorMultilingualBouquetName>(
        "DescriptorMultilingualBouquetName", Family::dvb, kBouquetNames,
        std::string("descriptor_tag: 5c multilingual_bouquet_name_descriptor\n") + kNamesReport,
        std::string(R"(<d descriptor_id="92" descriptor_length="21">)") + kNamesXml),
    case_of<DescriptorMultilingualServiceName>(
        "DescriptorMultilingualServiceName", Family::dvb, kServiceNames,
        "descriptor_tag: 5d multilingual_service_name_descriptor\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::ISO_639_language_code: eng\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::provider_len: b\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::providername: Provider 01\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::service_len: 4\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::servicename: News\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::ISO_639_language_code: deu\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::provider_len: 0\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::providername: \n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::service_len: 0\n"
        "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::servicename: \n",
        R"(<d descriptor_id="93" descriptor_length="25"><servicenameinfo>)"
        R"(<info providername="Provider 01" servicename="News" ISO_639_language_code="eng" />)"
        R"(<info providername="" servicename="" ISO_639_language_code="deu" /></servicenameinfo></d>)"),
};

}  // namespace

TEST(DescriptorNetworkName, ReadsItsMembers) {
  const DescriptorNetworkName d(kNetworkName.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x40);
  EXPECT_EQ(d.get_descriptor_length(), 6);
  EXPECT_EQ(d.get_network_name().get_textA(), "Kan\xE4le");
  EXPECT_EQ(d.get_network_name().get_text_len(), 6u);
}

TEST(DescriptorNetworkName, IsLoadedWithCharSetOneAndNoTextLength) {
  const auto d = loaded<DescriptorNetworkName>(saved(DescriptorNetworkName(kTurkishNetworkName.data())));
  EXPECT_EQ(d.get_network_name().get_textW(),
            DescriptorNetworkName(kTurkishNetworkName.data()).get_network_name().get_textW());
  EXPECT_EQ(d.get_network_name().get_textA(), "?z");
  EXPECT_EQ(d.get_network_name().get_char_set(), 1);
  EXPECT_EQ(d.get_network_name().get_text_len(), 0u);
}

TEST(DescriptorNetworkName, IsEmptyBehindATwoByteSelection) {
  const DescriptorNetworkName d(
      descriptor(0x40, bits({{8, 0x10, "selection"}, {16, 5, "table"}, {8, 'A', "text"}})).data());
  EXPECT_EQ(d.get_network_name().get_textA(), "");
  EXPECT_TRUE(d.get_network_name().get_textW().empty());
  EXPECT_EQ(d.get_network_name().get_text_len(), 4u);
  EXPECT_EQ(report(d), "descriptor_tag: 40 network_name_descriptor\nnetwork_name: \n");
}

TEST(DescriptorNetworkName, KeepsItsNameOverReset) {
  DescriptorNetworkName d(kNetworkName.data());
  d.reset();
  EXPECT_EQ(d.get_network_name().get_textA(), "Kan\xE4le");
}

TEST(DescriptorBouquetName, ReadsItsMembers) {
  DescriptorBouquetName d(kBouquetName.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x47);
  EXPECT_EQ(d.get_descriptor_length(), 12);
  EXPECT_EQ(d.get_bouquet_name().get_textA(), "Basic & more");
  d.reset();
  EXPECT_EQ(d.get_bouquet_name().get_textA(), "Basic & more");
}

TEST(DescriptorBouquetName, OfLengthZeroHasNoName) {
  const DescriptorBouquetName d(descriptor(0x47, {}).data());
  EXPECT_EQ(d.get_bouquet_name().get_textA(), "");
  EXPECT_EQ(saved(d), R"(<d descriptor_id="71" descriptor_length="0" bouquet_name="" />)");
}

// Both multilingual name descriptors are one class but for their names.
template <class T>
class DescriptorMultilingualName : public testing::Test {};
using MultilingualNames =
    testing::Types<DescriptorMultilingualNetworkName, DescriptorMultilingualBouquetName>;
TYPED_TEST_SUITE(DescriptorMultilingualName, MultilingualNames);

TYPED_TEST(DescriptorMultilingualName, ReadsItsMembers) {
  const TypeParam d(kNetworkNames.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x5B);
  EXPECT_EQ(d.get_descriptor_length(), 21);
  ASSERT_EQ(d.get_nameinfo().size(), 3u);
  EXPECT_STREQ(d.get_nameinfo()[0].get_iso_639_language_code(), "eng");
  EXPECT_EQ(d.get_nameinfo()[0].get_name().get_textA(), "North");
  EXPECT_STREQ(d.get_nameinfo()[1].get_iso_639_language_code(), "deu");
  EXPECT_EQ(d.get_nameinfo()[1].get_name().get_textA(), "");
  EXPECT_STREQ(d.get_nameinfo()[2].get_iso_639_language_code(), "fra");
  EXPECT_EQ(d.get_nameinfo()[2].get_name().get_textA(), "N\xF4rd");
  EXPECT_TRUE(TypeParam(descriptor(0x5B, {}).data()).get_nameinfo().empty());
}

TYPED_TEST(DescriptorMultilingualName, RefusesNamesThatDoNotFit) {
  const Bytes name = name_info("eng", "North");
  const auto of_length = [&](int length) {
    return failure([&] {
      TypeParam(ByteView(descriptor_claiming(0x5B, length, joined({name, name})).data()));
    });
  };
  for (int left = 1; left <= 3; ++left) {
    EXPECT_EQ(of_length(left), "3: multilingual_name_info_descriptor");
    EXPECT_EQ(of_length(9 + left), "3: multilingual_name_info_descriptor");
  }
  for (int left = 4; left <= 8; ++left) EXPECT_EQ(of_length(left), "3: multilingual_name_info_descriptor:2");
  EXPECT_EQ(of_length(9), "nothing");
  EXPECT_EQ(of_length(18), "nothing");
}

TYPED_TEST(DescriptorMultilingualName, RefusesABodyThatTheSectionDoesNotHold) {
  for (size_t size = 3; size < kNetworkNames.size(); ++size)
    EXPECT_EQ(failure([&] { TypeParam(ByteView(kNetworkNames.data(), size)); }), "2: ") << size;
}

TYPED_TEST(DescriptorMultilingualName, IsEmptiedByReset) {
  TypeParam d(kNetworkNames.data());
  d.reset();
  EXPECT_TRUE(d.get_nameinfo().empty());
  EXPECT_EQ(d.get_descriptor_length(), 21);
}

TYPED_TEST(DescriptorMultilingualName, FailsToLoadWithoutItsListOrAnAttribute) {
  const auto loading = [](const char* xml) { return failure([&] { loaded<TypeParam>(xml); }); };
  EXPECT_EQ(loading(R"(<d descriptor_id="91" descriptor_length="0" />)"), "-1: failed to get nameinfo");
  EXPECT_EQ(
      loading(R"(<d descriptor_id="91" descriptor_length="0"><nameinfo><info name="x" /></nameinfo></d>)"),
      "-1: failed");
  EXPECT_EQ(
      loading(
          R"(<d descriptor_id="91" descriptor_length="0"><nameinfo><info ISO_639_language_code="x" /></nameinfo></d>)"),
      "-1: failed");
  EXPECT_EQ(loading(R"(<d descriptor_id="91" descriptor_length="0"><nameinfo /></d>)"), "nothing");
}

TEST(DescriptorMultilingualServiceName, ReadsItsMembers) {
  const DescriptorMultilingualServiceName d(kServiceNames.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x5D);
  EXPECT_EQ(d.get_descriptor_length(), 25);
  ASSERT_EQ(d.get_servicenameinfo().size(), 2u);
  const ServiceNameInfo& info = d.get_servicenameinfo()[0];
  EXPECT_STREQ(info.get_iso_639_language_code(), "eng");
  EXPECT_EQ(info.get_provider_name().get_textA(), "Provider 01");
  EXPECT_EQ(info.get_provider_name().get_text_len(), 11u);
  EXPECT_EQ(info.get_service_name().get_textA(), "News");
  EXPECT_EQ(info.get_service_name().get_text_len(), 4u);
  EXPECT_STREQ(d.get_servicenameinfo()[1].get_iso_639_language_code(), "deu");
  EXPECT_TRUE(DescriptorMultilingualServiceName(descriptor(0x5D, {}).data()).get_servicenameinfo().empty());
}

TEST(DescriptorMultilingualServiceName, RefusesItemsThatDoNotFit) {
  const Bytes item = service_name_info("eng", "P", "SRV");  // 9 bytes
  const auto of_length = [&](int length) {
    return failure([&] {
      DescriptorMultilingualServiceName(
          ByteView(descriptor_claiming(0x5D, length, joined({item, item})).data()));
    });
  };
  for (int left = 1; left <= 4; ++left) {
    EXPECT_EQ(of_length(left), "3: multilingual_service_name_info_descriptor");
    EXPECT_EQ(of_length(9 + left), "3: multilingual_service_name_info_descriptor");
  }
  EXPECT_EQ(of_length(5), "3: multilingual_service_name_info_descriptor:2");
  EXPECT_EQ(of_length(6), "3: multilingual_service_name_info_descriptor:3");
  EXPECT_EQ(of_length(7), "3: multilingual_service_name_info_descriptor:3");
  EXPECT_EQ(of_length(8), "2: ");  // the item passes, and ends past the body
  EXPECT_EQ(of_length(9), "nothing");
  EXPECT_EQ(of_length(18), "nothing");
}

TEST(DescriptorMultilingualServiceName, HasItemsThatReadOneByteTooFar) {
  const Bytes item = service_name_info("eng", "P", "SX");
  int consumed = 0;
  const ServiceNameInfo info(item.data(), 7, consumed);
  EXPECT_EQ(info.get_service_name().get_textA(), "SX");
  EXPECT_EQ(consumed, 8);
  EXPECT_EQ(failure([&] { ServiceNameInfo(item.data(), 6, consumed); }),
            "3: multilingual_service_name_info_descriptor:3");
  EXPECT_EQ(failure([&] { ServiceNameInfo(item.data(), 5, consumed); }),
            "3: multilingual_service_name_info_descriptor:2");
  EXPECT_EQ(failure([&] { ServiceNameInfo(item.data(), 4, consumed); }),
            "3: multilingual_service_name_info_descriptor");
}

TEST(DescriptorMultilingualServiceName, RefusesABodyThatTheSectionDoesNotHold) {
  for (size_t size = 3; size < kServiceNames.size(); ++size)
    EXPECT_EQ(failure([&] { DescriptorMultilingualServiceName(ByteView(kServiceNames.data(), size)); }),
              "2: ")
        << size;
}

TEST(DescriptorMultilingualServiceName, IsLoadedWithoutTextLengths) {
  const auto d = loaded<DescriptorMultilingualServiceName>(
      saved(DescriptorMultilingualServiceName(kServiceNames.data())));
  ASSERT_EQ(d.get_servicenameinfo().size(), 2u);
  EXPECT_EQ(report(d.get_servicenameinfo()[0]),
            "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::ISO_639_language_code: eng\n"
            "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::provider_len: 0\n"
            "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::providername: Provider 01\n"
            "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::service_len: 0\n"
            "DescriptorMultilingualServiceName::MultilingualServiceNameInfo::servicename: News\n");
}

TEST(DescriptorMultilingualServiceName, IsEmptiedByReset) {
  DescriptorMultilingualServiceName d(kServiceNames.data());
  d.reset();
  EXPECT_TRUE(d.get_servicenameinfo().empty());
  EXPECT_EQ(d.get_descriptor_length(), 25);
}
