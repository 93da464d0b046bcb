// The linkage descriptor in its four shapes, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <quillon/descriptors/linkage/linkage.h>

using namespace quillon;
using namespace quillon::test;

namespace {

Bytes target(uint64_t linkage_type) {
  return bits({{16, 0x1122, "transport_stream_id"},
               {16, 0xFFFE, "original_network_id"},
               {16, 0x3344, "service_id"},
               {8, linkage_type, "linkage_type"}});
}
Bytes linkage(uint64_t linkage_type, const Bytes& behind) {
  return descriptor(0x4A, joined({target(linkage_type), behind}));
}
Bytes hand_over(uint64_t hand_over_type, uint64_t origin_type, const Bytes& behind) {
  return linkage(8, joined({bits({{4, hand_over_type, "hand_over_type"},
                                  {3, 7, "reserved_future_use"},
                                  {1, origin_type, "origin_type"}}),
                            behind}));
}
Bytes platform_info(uint64_t id, uint64_t loop_length, const Bytes& names) {
  return joined({bits({{24, id, "platform_id"}, {8, loop_length, "platform_name_loop_length"}}), names});
}
Bytes name(const char* language, uint64_t length, const char* characters) {
  return joined({text(language), bits({{8, length, "platform_name_length"}}), text(characters)});
}
Bytes platforms(uint64_t length, const Bytes& loop) {
  return linkage(11, joined({bits({{8, length, "platform_id_data_length"}}), loop}));
}

const Bytes kService = linkage(1, {});
const Bytes kPrivate = linkage(0x0C, {0x01, 0xAB, 'z'});
const Bytes kHandOver = hand_over(
    2, 0,
    bits({{16, 0x5566, "network_id"}, {16, 0x7788, "initial_service_id"}, {8, 0x99, "private_data_byte"}}));
const Bytes kPlatforms =
    platforms(26, joined({platform_info(0x80FF01, 14, joined({name("eng", 3, "One"), name("deu", 3, "Ein")})),
                          platform_info(2, 4, name("fra", 0, "")), Bytes{0xCC, 0xDD}}));

const Cases cases = {
    case_of<DescriptorLinkage>(
        "DescriptorLinkage to a service", Family::dvb, kService,
        "descriptor_tag: 4a linkage_descriptor\n"
        "transport_stream_id: 1122\n"
        "original_network_id: fffe\n"
        "service_id: 3344\n"
        "linkage_type: 1\n",
        R"(<d descriptor_id="74" descriptor_length="7" transport_stream_id="4386" original_network_id="65534")"
        R"( service_id="13124" linkage_type="1" private_data_byte="" hand_over_type="0" origin_type="0")"
        R"( network_id="0" initial_service_id="0" platform_id_data_length="0"><platformidinfos /></d>)"),
    case_of<DescriptorLinkage>(
        "DescriptorLinkage with private data", Family::dvb, kPrivate,
        "descriptor_tag: 4a linkage_descriptor\n"
        "transport_stream_id: 1122\n"
        "original_network_id: fffe\n"
        "service_id: 3344\n"
        "linkage_type: c\n"
        "private_data_byte:\n"
        "01 ab 7a                                         : ..z\n",
        R"(<d descriptor_id="74" descriptor_length="10" transport_stream_id="4386" original_network_id="65534")"
        R"( service_id="13124" linkage_type="12" private_data_byte="01ab7a" hand_over_type="0" origin_type="0")"
        R"( network_id="0" initial_service_id="0" platform_id_data_length="0"><platformidinfos /></d>)"),
    case_of<DescriptorLinkage>(
        "DescriptorLinkage with a hand-over", Family::dvb, kHandOver,
        "descriptor_tag: 4a linkage_descriptor\n"
        "transport_stream_id: 1122\n"
        "original_network_id: fffe\n"
        "service_id: 3344\n"
        "linkage_type: 8\n"
        "private_data_byte:\n"
        "99                                               : .\n",
        R"(<d descriptor_id="74" descriptor_length="13" transport_stream_id="4386" original_network_id="65534")"
        R"( service_id="13124" linkage_type="8" private_data_byte="99" hand_over_type="2" origin_type="0")"
        R"( network_id="21862" initial_service_id="30600" platform_id_data_length="0">)"
        R"(<platformidinfos /></d>)"),
    case_of<DescriptorLinkage>(
        "DescriptorLinkage with platforms", Family::dvb, kPlatforms,
        "descriptor_tag: 4a linkage_descriptor\n"
        "transport_stream_id: 1122\n"
        "original_network_id: fffe\n"
        "service_id: 3344\n"
        "linkage_type: b\n"
        "private_data_byte:\n"
        "cc dd                                            : ..\n",
        R"(<d descriptor_id="74" descriptor_length="36" transport_stream_id="4386" original_network_id="65534")"
        R"( service_id="13124" linkage_type="11" private_data_byte="ccdd" hand_over_type="0" origin_type="0")"
        R"( network_id="0" initial_service_id="0" platform_id_data_length="26"><platformidinfos>)"
        R"(<platformidinfo platform_id="8453889" platform_name_loop_length="14"><platform_names>)"
        R"(<platform_names iso639languagecode="eng" platform_name_length="3" text_char="One" />)"
        R"(<platform_names iso639languagecode="deu" platform_name_length="3" text_char="Ein" />)"
        R"(</platform_names></platformidinfo>)"
        R"(<platformidinfo platform_id="2" platform_name_loop_length="4"><platform_names>)"
        R"(<platform_names iso639languagecode="fra" platform_name_length="0" text_char="" />)"
        R"(</platform_names></platformidinfo></platformidinfos></d>)"),
};

std::string refused(const Bytes& bytes) {
  return failure([&] { DescriptorLinkage(view(bytes)); });
}

}  // namespace

TEST(DescriptorLinkage, ReadsItsTarget) {
  const DescriptorLinkage d(kService.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x4A);
  EXPECT_EQ(d.get_descriptor_length(), 7);
  EXPECT_EQ(d.get_transport_stream_id(), 0x1122);
  EXPECT_EQ(d.get_original_network_id(), 0xFFFE);
  EXPECT_EQ(d.get_service_id(), 0x3344);
  EXPECT_EQ(d.get_linkage_type(), 1);
  EXPECT_TRUE(d.get_private_data().empty());
  EXPECT_TRUE(d.get_platformidinfos().empty());
}

TEST(DescriptorLinkage, KeepsWhatStandsBehindTheTypeAsPrivateData) {
  for (const uint64_t type : {0u, 1u, 7u, 9u, 10u, 12u, 128u, 255u}) {
    const Bytes bytes = linkage(type, {0x21, 0x22});
    const DescriptorLinkage d(bytes.data());
    EXPECT_EQ(d.get_private_data(), (Bytes{0x21, 0x22})) << type;
    EXPECT_EQ(d.get_hand_over_type(), 0) << type;
    EXPECT_EQ(d.get_platform_id_data_length(), 0) << type;
  }
}

TEST(DescriptorLinkage, HasNoPrivateDataBelowItsShortestLength) {
  for (const int type : {1, 8}) {
    const Bytes bytes = descriptor_claiming(0x4A, 3, joined({target(static_cast<uint64_t>(type)), Bytes(6)}));
    EXPECT_TRUE(DescriptorLinkage(view(bytes)).get_private_data().empty()) << type;
  }
}

TEST(DescriptorLinkage, ReadsTheHandOverThatItsTypesAnnounce) {
  for (int type = 0; type < 16; ++type)
    for (int origin = 0; origin < 2; ++origin) {
      SCOPED_TRACE(testing::Message() << type << " from " << origin);
      const bool network = type >= 1 && type <= 3;
      const Bytes behind = {0x41, 0x42, 0x43, 0x44, 0x45};
      const Bytes bytes = hand_over(static_cast<uint64_t>(type), static_cast<uint64_t>(origin), behind);
      const DescriptorLinkage d(bytes.data());
      EXPECT_EQ(d.get_hand_over_type(), type);
      EXPECT_EQ(d.get_origin_type(), origin);
      EXPECT_EQ(d.get_network_id(), network ? 0x4142 : 0);
      EXPECT_EQ(d.get_initial_service_id(), origin == 1 ? 0 : network ? 0x4344 : 0x4142);
      const ptrdiff_t used = (network ? 2 : 0) + (origin == 0 ? 2 : 0);
      EXPECT_EQ(d.get_private_data(), Bytes(behind.begin() + used, behind.end()));
    }
}

TEST(DescriptorLinkage, ReadsItsPlatforms) {
  const DescriptorLinkage d(kPlatforms.data());
  EXPECT_EQ(d.get_platform_id_data_length(), 26);
  EXPECT_EQ(d.get_private_data(), (Bytes{0xCC, 0xDD}));
  ASSERT_EQ(d.get_platformidinfos().size(), 2u);
  const auto& first = d.get_platformidinfos()[0];
  EXPECT_EQ(first.get_platform_id(), 0x80FF01);
  EXPECT_EQ(first.get_platform_name_loop_length(), 14);
  ASSERT_EQ(first.get_platform_names().size(), 2u);
  EXPECT_STREQ(first.get_platform_names()[1].get_iso_639_language_code().c_strA(), "deu");
  EXPECT_EQ(first.get_platform_names()[1].get_platform_name_length(), 3);
  EXPECT_STREQ(first.get_platform_names()[1].get_name().c_strA(), "Ein");
  const auto& second = d.get_platformidinfos()[1];
  EXPECT_EQ(second.get_platform_id(), 2);
  ASSERT_EQ(second.get_platform_names().size(), 1u);
  EXPECT_STREQ(second.get_platform_names()[0].get_name().c_strA(), "");
}

TEST(DescriptorLinkage, RefusesAPlatformLoopThatGoesPastItsEnd) {
  const char* const invalid = "-1: DescriptorLinkage: invalid platform_id_data_length length";
  EXPECT_EQ(refused(joined({platforms(5, platform_info(1, 0, {})), Bytes(8)})), invalid);
  // Nothing is read of the platform itself, which would not add up.
  EXPECT_EQ(refused(joined({platforms(6, platform_info(1, 1, {})), Bytes(8)})), invalid);
  EXPECT_EQ(refused(joined({linkage(11, {}), Bytes(4)})), invalid);  // without its length byte
  EXPECT_EQ(refused(platforms(0, {})), "nothing");
}

TEST(DescriptorLinkage, RefusesPlatformsThatDoNotEndWithTheirLoop) {
  const char* const mismatch = "-1: DescriptorLinkage: descriptor start end mismatch";
  EXPECT_EQ(refused(platforms(3, Bytes(4))), mismatch);
  EXPECT_EQ(refused(platforms(5, joined({platform_info(1, 0, {}), Bytes(4)}))), mismatch);
  // The section ends in front of the loop's end.
  EXPECT_EQ(refused(descriptor_claiming(0x4A, 16, joined({target(11), Bytes{8}, platform_info(1, 0, {})}))),
            mismatch);
}

TEST(DescriptorLinkage, RefusesNamesThatDoNotEndWithTheirLoop) {
  EXPECT_EQ(refused(platforms(10, platform_info(1, 6, name("eng", 3, "One")))),
            "-1: PlatformIDInfo: descriptor start end mismatch");
  EXPECT_EQ(refused(descriptor_claiming(0x4A, 16, joined({target(11), Bytes{8}, platform_info(1, 4, {})}))),
            "-1: PlatformIDInfo: descriptor start end mismatch");
}

TEST(DescriptorLinkage, ReadsAPlatformWhateverIsLeft) {
  const Bytes bytes = platform_info(1, 7, name("eng", 3, "One"));
  int len = 2;
  const DescriptorLinkage::PlatformIDInfo info(bytes.data(), len);
  EXPECT_EQ(len, 11);
  EXPECT_EQ(info.get_platform_names().size(), 1u);
}

TEST(DescriptorLinkage, CutsALanguageCodeAtItsFirstNulAndReadsTheNameBehindAllThree) {
  const Bytes bytes = {'e', 0, 'g', 2, 'H', 'i'};
  int consumed = 0;
  const DescriptorLinkage::PlatformIDInfo::PlatformIDInfoName info(bytes.data(), consumed);
  EXPECT_EQ(consumed, 6);
  EXPECT_STREQ(info.get_iso_639_language_code().c_strA(), "e");
  EXPECT_STREQ(info.get_name().c_strA(), "Hi");
}

TEST(DescriptorLinkage, LosesItsPrivateDataAloneByAReset) {
  DescriptorLinkage d(kPlatforms.data());
  d.reset();
  EXPECT_TRUE(d.get_private_data().empty());
  EXPECT_EQ(d.get_platformidinfos().size(), 2u);
  EXPECT_EQ(d.get_linkage_type(), 11);
}

TEST(DescriptorLinkage, NamesItsCodes) {
  const char* const reserved = "reserved for future use";
  const char* const known[] = {reserved,
                               "information service",
                               "EPG service",
                               "CA replacement service",
                               "TS containing complete Network/Bouquet SI",
                               "service replacement service",
                               "data broadcast service",
                               "RCS Map",
                               "mobile hand-over",
                               "System Software Update Service (TS 102 006)",
                               "TS containing SSU BAT or NIT (TS 102 006)",
                               "IP/MAC Notification Service (EN 301 192)",
                               "TS containing INT BAT or NIT (EN 301 192)"};
  for (int code = -1; code <= 256; ++code)
    EXPECT_STREQ(DescriptorLinkage::get_linkage_type_text(code), code < 0 || code > 255 ? ""
                                                                 : code > 127           ? "user defined"
                                                                 : code > 12            ? reserved
                                                                                        : known[code])
        << code;
  expect_texts(&DescriptorLinkage::get_hand_over_type_text,
               {reserved, "DVB hand-over to an identical service in a neighbouring country",
                "DVB hand-over to a local variation of the same service",
                "DVB hand-over to an associated service", reserved, reserved, reserved, reserved, reserved,
                reserved, reserved, reserved, reserved, reserved, reserved, reserved},
               "");
  expect_texts(&DescriptorLinkage::get_origin_type_text, {"NIT", "SDT"}, "");
}

TEST(DescriptorLinkage, LoadsOnlyWithAllItsAttributesAndLists) {
  const std::string xml = saved(DescriptorLinkage(kPlatforms.data()));
  expect_each_attribute_needed<DescriptorLinkage>(xml);

  const auto without = [&xml](const std::string& list) {
    const size_t begin = xml.find("<" + list + ">");
    const size_t end = xml.rfind("</" + list + ">") + list.size() + 3;
    return failure([&] { loaded<DescriptorLinkage>(std::string(xml).erase(begin, end - begin)); });
  };
  EXPECT_EQ(without("platformidinfos"), "-1: failed to get platformidinfos");
  EXPECT_EQ(failure([] {
              loaded<DescriptorLinkage::PlatformIDInfo>(
                  R"(<platformidinfo platform_id="2" platform_name_loop_length="4" />)");
            }),
            "-1: failed to get platform_names");
}

TEST(DescriptorLinkage, LoadsTextsAsCodePageOne) {
  const auto d = loaded<DescriptorLinkage>(saved(DescriptorLinkage(kPlatforms.data())));
  ASSERT_EQ(d.get_platformidinfos().size(), 2u);
  const Text& name = d.get_platformidinfos()[0].get_platform_names()[0].get_name();
  EXPECT_STREQ(name.c_strA(), "One");
  EXPECT_EQ(name.get_char_set(), 1);
  EXPECT_EQ(name.get_text_len(), 0u);
}

TEST(DescriptorLinkage, TellsEachStepOfAListThatFails) {
  const auto failed = [](const char* operation, int nth) {
    FaultyDom dom(operation, nth);
    return failure([&] {
      DescriptorLinkage d;
      d.Parse(dom.node());
    });
  };
  int nth = 0;
  for (const std::string list : {"platformidinfos", "platform_names"}) {
    ++nth;
    EXPECT_EQ(failed("selectSingleNode", nth), "-1: failed to get " + list);
    EXPECT_EQ(failed("get_childNodes", nth), "-1: failed to get program_info list " + list);
    EXPECT_EQ(failed("get_length", nth), "-1: failed to get length " + list);
    EXPECT_EQ(failed("get_item", nth), "-1: failed to get program_info node " + list);
  }
}
