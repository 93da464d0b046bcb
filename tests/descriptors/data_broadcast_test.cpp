// The data broadcast and application signalling descriptors, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <quillon/descriptors/data/application_signalling.h>
#include <quillon/descriptors/data/data_broadcast.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kDataBroadcast =
    descriptor(0x64, joined({bits({{16, 0x0106, "data_broadcast_id"},
                                   {8, 0x0B, "component_tag"},
                                   {8, 3, "selector_length"},
                                   {24, 0x00A0FF, "selector bytes"}}),
                             text("fre"), bits({{8, 4, "textlength"}}), text("Caf\xE9")}));

const Bytes kDataBroadcastId = descriptor(0x66, bits({{16, 0x000B, "data_broadcast_id"},
                                                      {8, 10, "platform_id_data_length"},
                                                      {24, 0x010203, "platform_id"},
                                                      {8, 1, "action_type"},
                                                      {2, 3, "reserved"},
                                                      {1, 1, "INT_versioning_flag"},
                                                      {5, 0x12, "INT_version"},
                                                      {24, 0xFFFFFF, "platform_id"},
                                                      {8, 0xFE, "action_type"},
                                                      {2, 3, "reserved"},
                                                      {1, 0, "INT_versioning_flag"},
                                                      {5, 0x1F, "INT_version"},
                                                      {16, 0xCAFE, "private_data_byte"}}));

const Bytes kOtherDataBroadcastId =
    descriptor(0x66, bits({{16, 0x000A, "data_broadcast_id"}, {24, 0x010203, "id_selector_byte"}}));

const Bytes kApplicationSignalling = descriptor(0x6F, bits({{16, 0x0001, "application_type"},
                                                            {3, 7, "reserved"},
                                                            {5, 0x09, "AIT_version_number"},
                                                            {16, 0xFFFE, "application_type"},
                                                            {3, 0, "reserved"},
                                                            {5, 0x1F, "AIT_version_number"}}));

const Cases cases = {
    case_of<DescriptorDataBroadcast>(
        "DescriptorDataBroadcast", Family::dvb, kDataBroadcast,
        "descriptor_tag: 64 data_broadcast_descriptor\n",
        R"(<d descriptor_id="100" descriptor_length="15" data_broadcast_id="262" component_tag="11")"
        R"( selector_length="3" language_code="fre" textlength="4" text="Caf)"
        "\xC3\xA9"
        R"(" selector_bytes="00a0ff" />)"),
    case_of<DescriptorDataBroadcast>(
        "DescriptorDataBroadcast, a NUL in its text", Family::dvb,
        descriptor(0x64, joined({{0, 1, 2, 0}, text("eng"), {3, 'a', 0, 'b'}})),
        "descriptor_tag: 64 data_broadcast_descriptor\n",
        R"(<d descriptor_id="100" descriptor_length="11" data_broadcast_id="1" component_tag="2")"
        R"( selector_length="0" language_code="eng" textlength="3" text="a" selector_bytes="" />)"),
    case_of<DescriptorDataBroadcastId>(
        "DescriptorDataBroadcastId", Family::dvb, kDataBroadcastId,
        "descriptor_tag: 66 data_broadcast_id_descriptor\n",
        R"(<d descriptor_id="102" descriptor_length="15" data_broadcast_id="11" platform_id_data_length="10")"
        R"( private_data_byte="cafe"><platformiddata>)"
        R"(<platformiddata platform_id="16777731" action_type="1" INT_versioning_flag="1")"
        R"( INT_version="18" />)"
        R"(<platformiddata platform_id="-16711681" action_type="254" INT_versioning_flag="0")"
        R"( INT_version="31" /></platformiddata></d>)"),
    case_of<DescriptorDataBroadcastId>(
        "DescriptorDataBroadcastId, another id", Family::dvb, kOtherDataBroadcastId,
        "descriptor_tag: 66 data_broadcast_id_descriptor\n",
        R"(<d descriptor_id="102" descriptor_length="5" data_broadcast_id="10" platform_id_data_length="0")"
        R"( private_data_byte=""><platformiddata /></d>)"),
    case_of<DescriptorApplicationSignalling>(
        "DescriptorApplicationSignalling", Family::dvb, kApplicationSignalling,
        "descriptor_tag: 6f application_signalling_descriptor\n",
        R"(<d descriptor_id="111" descriptor_length="6"><application_info>)"
        R"(<info application_type="1" AIT_version_number="9" />)"
        R"(<info application_type="65534" AIT_version_number="31" /></application_info></d>)"),
};

}  // namespace

TEST(DescriptorDataBroadcast, ReadsItsMembers) {
  const DescriptorDataBroadcast d(kDataBroadcast.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x64);
  EXPECT_EQ(d.get_descriptor_length(), 15);
  EXPECT_EQ(d.data_broadcast_id, 0x0106);
  EXPECT_EQ(d.component_tag, 0x0B);
  EXPECT_EQ(d.selector_length, 3);
  EXPECT_EQ(d.selector_bytes, (Bytes{0x00, 0xA0, 0xFF}));
  EXPECT_STREQ(d.language.c_strA(), "fre");
  EXPECT_EQ(d.textlength, 4);
  EXPECT_EQ(d.text, "Caf\xE9");
}

TEST(DescriptorDataBroadcast, HasItsLanguageAtByteSixWithoutASelector) {
  const Bytes bytes = {0x64, 10, 0, 1, 2, 0, 'e', 'n', 'g', 2, 'h', 'i'};
  const DescriptorDataBroadcast d(bytes.data());
  EXPECT_TRUE(d.selector_bytes.empty());
  EXPECT_STREQ(d.language.c_strA(), "eng");
  EXPECT_EQ(d.textlength, 2);
  EXPECT_EQ(d.text, "hi");
}

// Neither a selection byte of the text nor a NUL in it means anything here.
TEST(DescriptorDataBroadcast, KeepsTheBytesOfItsText) {
  const Bytes wire = {0x05, 'a', 0, 'b'};
  const Bytes bytes = descriptor(0x64, joined({{0, 1, 2, 0}, text("eng"), {4}, wire}));
  EXPECT_EQ(text(DescriptorDataBroadcast(bytes.data()).text), wire);
}

TEST(DescriptorDataBroadcast, ReadsOnBehindItsLength) {
  const Bytes bytes = descriptor_claiming(0x64, 0, joined({{0, 1, 2, 1, 0x77}, text("eng"), {1, 'x'}}));
  const DescriptorDataBroadcast d(bytes.data());
  EXPECT_EQ(d.selector_bytes, Bytes{0x77});
  EXPECT_EQ(d.text, "x");
  // Behind the section's end there are zeros.
  EXPECT_EQ(DescriptorDataBroadcast(ByteView(bytes.data(), bytes.size() - 1)).text, std::string(1, '\0'));
}

TEST(DescriptorDataBroadcastId, ReadsItsMembers) {
  const DescriptorDataBroadcastId d(kDataBroadcastId.data());
  EXPECT_EQ(d.data_broadcast_id, 11);
  EXPECT_EQ(d.platform_id_data_length, 10);
  ASSERT_EQ(d.platform_id_data.size(), 2u);
  EXPECT_EQ(d.platform_id_data[0].platform_id, 0x01000203);
  EXPECT_EQ(d.platform_id_data[0].action_type, 1);
  EXPECT_EQ(d.platform_id_data[0].INT_versioning_flag, 1);
  EXPECT_EQ(d.platform_id_data[0].INT_version, 0x12);
  EXPECT_EQ(d.platform_id_data[1].platform_id, -0x00FF0001);
  EXPECT_EQ(d.platform_id_data[1].action_type, 0xFE);
  EXPECT_EQ(d.platform_id_data[1].INT_versioning_flag, 0);
  EXPECT_EQ(d.platform_id_data[1].INT_version, 0x1F);
  EXPECT_EQ(d.private_data, (Bytes{0xCA, 0xFE}));
  EXPECT_TRUE(d.id_selector_bytes.empty());
}

TEST(DescriptorDataBroadcastId, KeepsTheSelectorOfAnyOtherIdButSavesNone) {
  const DescriptorDataBroadcastId d(kOtherDataBroadcastId.data());
  EXPECT_EQ(d.data_broadcast_id, 10);
  EXPECT_EQ(d.id_selector_bytes, (Bytes{1, 2, 3}));
  EXPECT_EQ(d.platform_id_data_length, 0);
  EXPECT_TRUE(d.platform_id_data.empty());
  EXPECT_TRUE(d.private_data.empty());
  EXPECT_TRUE(loaded<DescriptorDataBroadcastId>(saved(d)).id_selector_bytes.empty());

  for (const int length : {0, 1, 2}) {
    const Bytes bytes = descriptor_claiming(0x66, length, {0, 10, 1, 2});
    EXPECT_TRUE(DescriptorDataBroadcastId(bytes.data()).id_selector_bytes.empty());
  }
  for (const uint8_t high : Bytes{0x00, 0x01, 0xFF})
    for (const uint8_t low : Bytes{0x0A, 0x0B, 0x0C}) {
      const DescriptorDataBroadcastId any(descriptor(0x66, {high, low, 0, 9}).data());
      const bool notification = high == 0 && low == 11;
      EXPECT_EQ(any.id_selector_bytes, notification ? Bytes{} : (Bytes{0, 9}));
      EXPECT_EQ(any.private_data, notification ? Bytes{9} : Bytes{});
    }
}

TEST(DescriptorDataBroadcastId, HasPrivateDataFromByteFiveOnWithoutPlatforms) {
  const DescriptorDataBroadcastId d(descriptor(0x66, {0, 11, 0, 7, 8, 9}).data());
  EXPECT_EQ(d.platform_id_data_length, 0);
  EXPECT_TRUE(d.platform_id_data.empty());
  EXPECT_EQ(d.private_data, (Bytes{7, 8, 9}));
}

TEST(DescriptorDataBroadcastId, RefusesPlatformsWhoseLengthIsNoMultipleOfFive) {
  for (int length = 0; length < 256; ++length) {
    Bytes body(260);
    body[1] = 11;
    body[2] = static_cast<uint8_t>(length);
    const Bytes bytes = descriptor_claiming(0x66, 255, body);
    EXPECT_EQ(failure([&] { DescriptorDataBroadcastId(ByteView(bytes.data())); }),
              length % 5 == 0 ? "nothing" : "-1: invalid length")
        << length;
  }
}

TEST(DescriptorDataBroadcastId, ReadsPlatformsBehindItsLength) {
  const Bytes bytes = descriptor_claiming(0x66, 4, {0, 11, 5, 0, 0, 7, 1, 0});
  const DescriptorDataBroadcastId d(bytes.data());
  ASSERT_EQ(d.platform_id_data.size(), 1u);
  EXPECT_EQ(d.platform_id_data[0].platform_id, 7);
  EXPECT_TRUE(d.private_data.empty());
}

TEST(DescriptorDataBroadcastId, LeavesAByteFreeInItsPlatforms) {
  const auto platform_id = [](const Bytes& bytes) {
    return DescriptorDataBroadcastId::PlatformIdData(bytes.data()).platform_id;
  };
  EXPECT_EQ(platform_id({1, 2, 3, 0, 0}), 0x01000203);
  EXPECT_EQ(platform_id({0, 0xFF, 0, 0, 0}), 0xFF00);
  EXPECT_EQ(platform_id({0, 0, 0xFF, 0, 0}), 0xFF);
  EXPECT_EQ(platform_id({0x7F, 0, 0, 0, 0}), 0x7F000000);
  EXPECT_EQ(platform_id({0x80, 0, 0, 0, 0}), INT32_MIN);
}

TEST(DescriptorApplicationSignalling, ReadsItsMembers) {
  const DescriptorApplicationSignalling d(kApplicationSignalling.data());
  ASSERT_EQ(d.application_infos.size(), 2u);
  EXPECT_EQ(d.application_infos[0].application_type, 1);
  EXPECT_EQ(d.application_infos[0].AIT_version_number, 9);
  EXPECT_EQ(d.application_infos[1].application_type, 0xFFFE);
  EXPECT_EQ(d.application_infos[1].AIT_version_number, 0x1F);
}

TEST(DescriptorApplicationSignalling, RefusesALengthThatIsNoMultipleOfThree) {
  for (int length = 0; length < 256; ++length)
    EXPECT_EQ(
        failure([&] {
          DescriptorApplicationSignalling(ByteView(descriptor_claiming(0x6F, length, Bytes(260)).data()));
        }),
        length % 3 == 0 ? "nothing" : "-1: ")
        << length;
}

TEST(DescriptorApplicationSignalling, NamesItsTypes) {
  const auto text_of = [](int type) {
    DescriptorApplicationSignalling::ApplicationInfo info;
    info.application_type = type;
    return info.get_application_type_text();
  };
  expect_texts(text_of, {"reserved_future_use", "DVB-J application", "DVB-HTML application"},
               "subject to registration with DVB");
  EXPECT_STREQ(text_of(0xFFFF), "subject to registration with DVB");
}

TEST(DataBroadcastDescriptors, AreEmptiedOfBytesTextAndRowsByReset) {
  DescriptorDataBroadcast broadcast(kDataBroadcast.data());
  broadcast.reset();
  EXPECT_TRUE(broadcast.selector_bytes.empty());
  EXPECT_TRUE(broadcast.text.empty());
  EXPECT_EQ(broadcast.data_broadcast_id, 0x0106);
  EXPECT_STREQ(broadcast.language.c_strA(), "fre");
  DescriptorDataBroadcastId id(kDataBroadcastId.data());
  id.reset();
  EXPECT_TRUE(id.platform_id_data.empty());
  EXPECT_TRUE(id.private_data.empty());
  EXPECT_EQ(id.platform_id_data_length, 10);
  DescriptorDataBroadcastId other(kOtherDataBroadcastId.data());
  other.reset();
  EXPECT_TRUE(other.id_selector_bytes.empty());
  DescriptorApplicationSignalling signalling(kApplicationSignalling.data());
  signalling.reset();
  EXPECT_TRUE(signalling.application_infos.empty());
}

TEST(DataBroadcastDescriptors, LoadOnlyWithAllTheirAttributes) {
  expect_each_attribute_needed<DescriptorDataBroadcast>(
      saved(DescriptorDataBroadcast(kDataBroadcast.data())));
  expect_each_attribute_needed<DescriptorDataBroadcastId>(
      saved(DescriptorDataBroadcastId(kDataBroadcastId.data())));
  expect_each_attribute_needed<DescriptorApplicationSignalling>(
      saved(DescriptorApplicationSignalling(kApplicationSignalling.data())));
}

TEST(DataBroadcastDescriptors, NameTheListThatALoadMisses) {
  const std::string bare = R"(<d descriptor_id="1" descriptor_length="0" data_broadcast_id="1")"
                           R"( platform_id_data_length="0" />)";
  EXPECT_EQ(failure([&] { loaded<DescriptorDataBroadcastId>(bare); }), "-1: failed to get platformiddata");
  EXPECT_EQ(failure([&] { loaded<DescriptorApplicationSignalling>(bare); }),
            "-1: failed to get application_info");
}

TEST(DescriptorDataBroadcastId, TellsEachStepOfItsListThatFails) {
  const auto failed = [](const char* operation) {
    FaultyDom dom(operation);
    return failure([&] { DescriptorDataBroadcastId().Parse(dom.node()); });
  };
  EXPECT_EQ(failed("selectSingleNode"), "-1: failed to get platformiddata");
  EXPECT_EQ(failed("get_childNodes"), "-1: failed to get program_info list platformiddata");
  EXPECT_EQ(failed("get_length"), "-1: failed to get length platformiddata");
  EXPECT_EQ(failed("get_item"), "-1: failed to get program_info node platformiddata");
}

// The list is between the attributes: without it the private data is not reached, and what its items lack
// is not noticed.
TEST(DescriptorDataBroadcastId, SavesItsPrivateDataBehindTheList) {
  const DescriptorDataBroadcastId d(descriptor(0x66, {0, 11, 5, 0, 0, 7, 1, 0, 0xAA}).data());
  const auto steps = [&](const char* operation, int nth, bool saved) {
    FaultyDom dom(operation, nth);
    EXPECT_EQ(d.SaveSection(dom.document(), dom.node()), saved);
    return dom.steps();
  };
  const std::string head =
      "createAttribute descriptor_id\ncreateAttribute descriptor_length\n"
      "createAttribute data_broadcast_id\ncreateAttribute platform_id_data_length\n";
  EXPECT_EQ(steps("createElement", 1, false), head + "createElement platformiddata\n");
  EXPECT_EQ(steps("createAttribute", 5, true),
            head +
                "createElement platformiddata\ncreateElement platformiddata\n"
                "createAttribute platform_id\nappendChild\nappendChild\n"
                "createAttribute private_data_byte\n");
}
