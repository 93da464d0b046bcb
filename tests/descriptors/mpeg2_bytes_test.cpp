// The descriptors of ISO/IEC 13818-1 and -6 that end in byte strings.

#include "tests/support/cases.h"
#include "tests/support/expect.h"

#include <quillon/descriptors/dvb_classes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kRegistration = descriptor(0x05, joined({bits({{32, 0x43554549, "format_identifier"}}),
                                                     {0x00, 0x7F, 0x80, 0xFF}}));  // additional information

const Bytes kCa = descriptor(0x09, joined({bits({{16, 0x0B00, "CA_system_ID"},  //
                                                 {3, 7, "reserved"},
                                                 {13, 0x1ABC, "CA_PID"}}),
                                           text("A1 b\x80"), Bytes(12, 0xFA)}));  // private_data_byte

const Bytes kCaWithoutPrivateData = descriptor(0x09, bits({{16, 0x0001, "CA_system_ID"},  //
                                                           {3, 0, "reserved"},
                                                           {13, 0x0002, "CA_PID"}}));

const Bytes kCopyright = descriptor(0x0D, joined({bits({{32, 0x89ABCDEF, "copyright_identifier"}}),
                                                  text("(c) 1998\n\xE9")}));  // additional_copyright_info

const Bytes kCarouselId = descriptor(0x13, joined({bits({{32, 0x87654321, "carousel_id"},
                                                         {8, 1, "FormatId"},
                                                         {8, 0xA1, "ModuleVersion"},
                                                         {16, 0xB2B3, "ModuleId"},
                                                         {16, 0xC4C5, "BlockSize"},
                                                         {32, 0xD6D7D8D9, "ModuleSize"},
                                                         {8, 0xE1, "CompressionMethod"},
                                                         {32, 0xF2F3F4F5, "OriginalSize"},
                                                         {8, 0x96, "TimeOut"},
                                                         {8, 3, "ObjectKeyLength"},
                                                         {24, 0x010203, "ObjectKeyData"}}),
                                                   {0x0A, 0x0B}}));  // private_data_byte

const Bytes kPlainCarouselId =
    descriptor(0x13, joined({bits({{32, 0x00000102, "carousel_id"}, {8, 0, "FormatId"}}),
                             {0x5A, 0xA5, 0x03}}));  // private_data_byte

const Bytes kTransactionTag = descriptor(0x14, joined({bits({{16, 0xABCD, "association_tag"},
                                                             {16, 0, "use"},
                                                             {8, 8, "selector_length"},
                                                             {32, 0x80000002, "transaction_id"},
                                                             {32, 0x01020304, "timeout"}}),
                                                       {0x99}}));  // private_data_byte

const Bytes kPlainTag = descriptor(0x14, joined({bits({{16, 0x0102, "association_tag"},  //
                                                       {16, 1, "use"},
                                                       {8, 0, "selector_length"}}),
                                                 {0x77, 0x88}}));  // private_data_byte

const Bytes kSelectorTag = descriptor(
    0x14, joined({bits({{16, 0x0102, "association_tag"}, {16, 0xF002, "use"}, {8, 4, "selector_length"}}),
                  {0x11, 0x22, 0x33, 0x44},  // selector_byte
                  {0x55}}));                 // private_data_byte

const Cases cases = {
    case_of<DescriptorRegistration>(
        "DescriptorRegistration", Family::dvb, kRegistration, "descriptor_tag: 05 registration_descriptor\n",
        R"(<d descriptor_id="5" descriptor_length="8" format_identifier="1129661769")"
        R"( additional_identification_info="007f80ff" />)"),
    case_of<DescriptorRegistration>("DescriptorRegistration without information", Family::dvb,
                                    descriptor(0x05, bits({{32, 0xFFFFFFFF, "format_identifier"}})),
                                    "descriptor_tag: 05 registration_descriptor\n",
                                    R"(<d descriptor_id="5" descriptor_length="4" format_identifier="-1")"
                                    R"( additional_identification_info="" />)"),
    case_of<DescriptorCa>("DescriptorCa", Family::dvb, kCa,
                          "descriptor_tag: 09 CA_Descriptor\n"
                          "sys_id: 0b00\n"
                          "pid: 1abc\n"
                          "private data:\n"
                          "41 31 20 62 80 fa fa fa fa fa fa fa fa fa fa fa  : A..b............\n"
                          "fa                                               : .\n",
                          R"(<d descriptor_id="9" descriptor_length="21" sys_id="2816" pid="6844")"
                          R"( private_bytes="4131206280fafafafafafafafafafafafa" />)"),
    case_of<DescriptorCa>(
        "DescriptorCa without private data", Family::dvb, kCaWithoutPrivateData,
        "descriptor_tag: 09 CA_Descriptor\n"
        "sys_id: 0001\n"
        "pid: 0002\n",
        R"(<d descriptor_id="9" descriptor_length="4" sys_id="1" pid="2" private_bytes="" />)"),
    case_of<DescriptorCopyright>(
        "DescriptorCopyright", Family::dvb, kCopyright,
        "descriptor_tag: 0d copyright_descriptor\n"
        "copyright_identifier:89abcdef\n"
        "additional_copyright_info: (c) 1998\n\xE9\n",
        R"(<d descriptor_id="13" descriptor_length="14" copyright_identifier="-1985229329")"
        R"( additional_copyright_info="2863292031393938)"
        R"(0ae9" />)"),
    case_of<DescriptorCopyright>("DescriptorCopyright without information", Family::dvb,
                                 descriptor(0x0D, bits({{32, 1, "copyright_identifier"}})),
                                 "descriptor_tag: 0d copyright_descriptor\n"
                                 "copyright_identifier:1\n"
                                 "additional_copyright_info: \n",
                                 R"(<d descriptor_id="13" descriptor_length="4" copyright_identifier="1")"
                                 R"( additional_copyright_info="" />)"),
    case_of<DescriptorCarouselId>(
        "DescriptorCarouselId of format 1", Family::dvb, kCarouselId,
        "descriptor_tag: 13 carousel_id_descriptor\n",
        R"(<d descriptor_id="19" descriptor_length="26" carousel_id="-2023406815" formatid="1")"
        R"( moduleversion="161" moduleid="45747" blocksize="50373" modulesize="-690497319")"
        R"( compressionmethod="225" originalsize="-218893067" timeout="150" objectkeylength="3")"
        R"( objectkeydata="010203" private_data_byte="0a0b" />)"),
    case_of<DescriptorCarouselId>(
        "DescriptorCarouselId of another format", Family::dvb, kPlainCarouselId,
        "descriptor_tag: 13 carousel_id_descriptor\n",
        R"(<d descriptor_id="19" descriptor_length="8" carousel_id="258" formatid="0")"
        R"( moduleversion="0" moduleid="0" blocksize="0" modulesize="0" compressionmethod="0")"
        R"( originalsize="0" timeout="0" objectkeylength="0" objectkeydata="" private_data_byte="5aa503" />)"),
    case_of<DescriptorAssociationTag>(
        "DescriptorAssociationTag of use 0", Family::dvb, kTransactionTag,
        "descriptor_tag: 14 association_tag_descriptor\n",
        R"(<d descriptor_id="20" descriptor_length="14" association_tag="43981" use="0" selector_length="8")"
        R"( transaction_id="-2147483646" timeout="16909060" selector_byte="" private_data_byte="99" />)"),
    case_of<DescriptorAssociationTag>(
        "DescriptorAssociationTag of use 1", Family::dvb, kPlainTag,
        "descriptor_tag: 14 association_tag_descriptor\n",
        R"(<d descriptor_id="20" descriptor_length="7" association_tag="258" use="1" selector_length="0")"
        R"( transaction_id="0" timeout="0" selector_byte="" private_data_byte="7788" />)"),
    case_of<DescriptorAssociationTag>(
        "DescriptorAssociationTag of another use", Family::dvb, kSelectorTag,
        "descriptor_tag: 14 association_tag_descriptor\n",
        R"(<d descriptor_id="20" descriptor_length="10" association_tag="258" use="61442" selector_length="4")"
        R"( transaction_id="0" timeout="0" selector_byte="11223344" private_data_byte="55" />)"),
};

Bytes association_tag(int use, int selector_length, const Bytes& rest) {
  return descriptor(0x14, joined({bits({{16, 0x0102, "association_tag"},
                                        {16, static_cast<uint64_t>(use), "use"},
                                        {8, static_cast<uint64_t>(selector_length), "selector_length"}}),
                                  rest}));
}

}  // namespace

TEST(DescriptorRegistration, ReadsItsMembers) {
  const DescriptorRegistration d(kRegistration.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x05);
  EXPECT_EQ(d.get_descriptor_length(), 8);
  EXPECT_EQ(d.get_format_identifier(), 0x43554549U);
  EXPECT_EQ(d.get_additional_identification_info(), (Bytes{0x00, 0x7F, 0x80, 0xFF}));
}

TEST(DescriptorRegistration, HasNoInformationUpToALengthOfFour) {
  for (int length = 0; length <= 4; ++length) {
    const DescriptorRegistration d(descriptor_claiming(0x05, length, {1, 2, 3, 4, 5}).data());
    EXPECT_EQ(d.get_format_identifier(), 0x01020304U) << length;
    EXPECT_TRUE(d.get_additional_identification_info().empty()) << length;
  }
}

TEST(DescriptorRegistration, IsEmptiedOfItsBytesByReset) {
  DescriptorRegistration d(kRegistration.data());
  d.reset();
  EXPECT_EQ(saved(d), R"(<d descriptor_id="5" descriptor_length="8" format_identifier="1129661769")"
                      R"( additional_identification_info="" />)");
}

TEST(DescriptorCa, ReadsItsMembers) {
  const DescriptorCa d(kCa.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x09);
  EXPECT_EQ(d.get_descriptor_length(), 21);
  EXPECT_EQ(d.get_ca_system_id(), 0x0B00);
  EXPECT_EQ(d.get_ca_pid(), 0x1ABC);
  EXPECT_EQ(d.get_private_data_byte(), joined({text("A1 b\x80"), Bytes(12, 0xFA)}));
}

TEST(DescriptorCa, TakesItsPidFromThirteenBits) {
  for (int bit = 0; bit < 16; ++bit) {
    const Bytes bytes = descriptor(0x09, bits({{16, 0, "CA_system_ID"}, {16, 1ULL << bit, "CA_PID"}}));
    EXPECT_EQ(DescriptorCa(bytes.data()).get_ca_pid(), bit < 13 ? 1 << bit : 0) << bit;
  }
}

TEST(DescriptorCa, GrowsByPrivateBytes) {
  DescriptorCa d(kCaWithoutPrivateData.data());
  d.add_private_byte(0x12);
  d.add_private_byte(0xFE);
  EXPECT_EQ(d.get_private_data_byte(), (Bytes{0x12, 0xFE}));
  EXPECT_EQ(d.get_descriptor_length(), 4);
  EXPECT_EQ(report(d),
            "descriptor_tag: 09 CA_Descriptor\n"
            "sys_id: 0001\n"
            "pid: 0002\n"
            "private data:\n"
            "12 fe                                            : ..\n");
  d.reset();
  EXPECT_EQ(saved(d), R"(<d descriptor_id="9" descriptor_length="4" sys_id="1" pid="2" private_bytes="" />)");
}

TEST(DescriptorCa, HasAWidthOfFourThatAddsToLongerNumbers) {
  const auto d = loaded<DescriptorCa>(
      R"(<d descriptor_id="9" descriptor_length="4" sys_id="1048575" pid="-1" private_bytes="1" />)");
  EXPECT_EQ(report(d),
            "descriptor_tag: 09 CA_Descriptor\n"
            "sys_id: fffff\n"
            "pid: ffffffff\n");
}

TEST(DescriptorCa, NamesTheProviderOfItsSystem) {
  const auto expected = [](int id) {
    return id >= 0x0100 && id <= 0x01FF   ? "Canal Plus"
           : id >= 0x0500 && id <= 0x05FF ? "France Telecom"
           : id >= 0x0600 && id <= 0x06FF ? "Irdeto"
           : id >= 0x0900 && id <= 0x09FF ? "News Datacom"
           : id >= 0x0B00 && id <= 0x0BFF ? "Norwegian Telekom"
           : id >= 0x0D00 && id <= 0x0DFF ? "Philips"
           : id >= 0x1700 && id <= 0x17FF ? "BetaTechnik"
                                          : "unknown provider";
  };
  Bytes bytes = kCaWithoutPrivateData;
  for (int id = 0; id <= 0xFFFF; ++id) {
    bytes[2] = static_cast<uint8_t>(id >> 8);
    bytes[3] = static_cast<uint8_t>(id);
    ASSERT_STREQ(DescriptorCa(bytes.data()).get_ca_provider1(), expected(id)) << id;
  }
  for (const int id : {-1, 0x10100, -0xFF00}) {
    const auto d = loaded<DescriptorCa>(R"(<d descriptor_id="9" descriptor_length="4" pid="0" sys_id=")" +
                                        std::to_string(id) + R"(" private_bytes="" />)");
    EXPECT_STREQ(d.get_ca_provider1(), "unknown provider") << id;
  }
}

TEST(DescriptorCopyright, ReadsItsMembers) {
  const DescriptorCopyright d(kCopyright.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x0D);
  EXPECT_EQ(d.get_descriptor_length(), 14);
  EXPECT_EQ(d.get_copyright_identifier(), 0x89ABCDEFU);
  EXPECT_EQ(d.get_additional_copyright_info(), text("(c) 1998\n\xE9"));
}

TEST(DescriptorCopyright, PrintsItsNulsToo) {
  const DescriptorCopyright d(descriptor(0x0D, {0, 0, 0, 0, 'a', 0, 'b'}).data());
  EXPECT_EQ(report(d), std::string("descriptor_tag: 0d copyright_descriptor\n"
                                   "copyright_identifier:0\n"
                                   "additional_copyright_info: a") +
                           '\0' + "b\n");
}

TEST(DescriptorCopyright, IsEmptiedOfItsBytesByReset) {
  DescriptorCopyright d(kCopyright.data());
  d.reset();
  EXPECT_EQ(saved(d), R"(<d descriptor_id="13" descriptor_length="14" copyright_identifier="-1985229329")"
                      R"( additional_copyright_info="" />)");
}

TEST(DescriptorCarouselId, ReadsItsMembersOfFormatOne) {
  const DescriptorCarouselId d(kCarouselId.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x13);
  EXPECT_EQ(d.get_descriptor_length(), 26);
  EXPECT_EQ(d.get_carousel_id(), 0x87654321U);
  EXPECT_EQ(d.get_formatid(), 1);
  EXPECT_EQ(d.get_moduleversion(), 0xA1);
  EXPECT_EQ(d.get_moduleid(), 0xB2B3);
  EXPECT_EQ(d.get_blocksize(), 0xC4C5);
  EXPECT_EQ(d.get_modulesize(), 0xD6D7D8D9U);
  EXPECT_EQ(d.get_compressionmethod(), 0xE1);
  EXPECT_EQ(d.get_originalsize(), 0xF2F3F4F5U);
  EXPECT_EQ(d.get_timeout(), 0x96);
  EXPECT_EQ(d.get_objectkeylength(), 3);
  EXPECT_EQ(d.get_objectkeydata(), (Bytes{1, 2, 3}));
  EXPECT_EQ(d.get_private_data_byte(), (Bytes{0x0A, 0x0B}));
}

TEST(DescriptorCarouselId, HasOnlyPrivateBytesBehindAnyOtherFormat) {
  for (int format = 0; format <= 255; ++format) {
    if (format == 1) continue;
    Bytes bytes = kPlainCarouselId;
    bytes[6] = static_cast<uint8_t>(format);
    const DescriptorCarouselId d(bytes.data());
    EXPECT_EQ(d.get_carousel_id(), 0x0102U);
    EXPECT_EQ(d.get_formatid(), format);
    EXPECT_EQ(d.get_moduleversion(), 0);
    EXPECT_EQ(d.get_objectkeylength(), 0);
    EXPECT_TRUE(d.get_objectkeydata().empty());
    EXPECT_EQ(d.get_private_data_byte(), (Bytes{0x5A, 0xA5, 0x03}));
  }
  EXPECT_TRUE(DescriptorCarouselId(descriptor(0x13, Bytes(5)).data()).get_private_data_byte().empty());
}

TEST(DescriptorCarouselId, ReadsOnBehindAShortBodyOfFormatOne) {
  Bytes bytes = kCarouselId;
  bytes[1] = 5;
  const DescriptorCarouselId d(bytes.data());
  EXPECT_EQ(d.get_originalsize(), 0xF2F3F4F5U);
  EXPECT_EQ(d.get_objectkeydata(), (Bytes{1, 2, 3}));
  EXPECT_TRUE(d.get_private_data_byte().empty());
}

TEST(DescriptorCarouselId, FindsZerosBehindTheEndOfTheSection) {
  const DescriptorCarouselId d(ByteView(kCarouselId.data(), 24));  // one byte of the object key is left
  EXPECT_EQ(d.get_objectkeydata(), (Bytes{1, 0, 0}));
  EXPECT_EQ(d.get_private_data_byte(), (Bytes{0, 0}));
}

TEST(DescriptorCarouselId, IsEmptiedOfItsBytesByReset) {
  DescriptorCarouselId d(kCarouselId.data());
  d.reset();
  EXPECT_TRUE(d.get_objectkeydata().empty());
  EXPECT_TRUE(d.get_private_data_byte().empty());
  EXPECT_EQ(d.get_objectkeylength(), 3);
  EXPECT_EQ(d.get_carousel_id(), 0x87654321U);
}

TEST(DescriptorAssociationTag, ReadsItsMembersOfUseZero) {
  const DescriptorAssociationTag d(kTransactionTag.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x14);
  EXPECT_EQ(d.get_descriptor_length(), 14);
  EXPECT_EQ(d.get_association_tag(), 0xABCD);
  EXPECT_EQ(d.get_use(), 0);
  EXPECT_EQ(d.get_selector_length(), 8);
  EXPECT_EQ(d.get_transaction_id(), 0x80000002U);
  EXPECT_EQ(d.get_timeout(), 0x01020304U);
  EXPECT_TRUE(d.get_selector_byte().empty());
  EXPECT_EQ(d.get_private_data_byte(), (Bytes{0x99}));
}

TEST(DescriptorAssociationTag, ReadsItsMembersOfOtherUses) {
  const DescriptorAssociationTag plain(kPlainTag.data());
  EXPECT_EQ(plain.get_use(), 1);
  EXPECT_EQ(plain.get_selector_length(), 0);
  EXPECT_EQ(plain.get_transaction_id(), 0U);
  EXPECT_TRUE(plain.get_selector_byte().empty());
  EXPECT_EQ(plain.get_private_data_byte(), (Bytes{0x77, 0x88}));

  const DescriptorAssociationTag d(kSelectorTag.data());
  EXPECT_EQ(d.get_association_tag(), 0x0102);
  EXPECT_EQ(d.get_use(), 0xF002);
  EXPECT_EQ(d.get_selector_length(), 4);
  EXPECT_EQ(d.get_transaction_id(), 0U);
  EXPECT_EQ(d.get_timeout(), 0U);
  EXPECT_EQ(d.get_selector_byte(), (Bytes{0x11, 0x22, 0x33, 0x44}));
  EXPECT_EQ(d.get_private_data_byte(), (Bytes{0x55}));
}

TEST(DescriptorAssociationTag, HasOneSelectorLengthForUseZeroAndForUseOne) {
  const Bytes rest(255, 0x42);
  for (int length = 0; length <= 255; ++length) {
    const auto parse = [&](int use) {
      Bytes bytes = association_tag(use, length, {});
      bytes.insert(bytes.end(), rest.begin(), rest.end());
      return failure([&] { DescriptorAssociationTag(view(bytes)); });
    };
    const std::string refused = "3: association_tag_descriptor:selector_length";
    EXPECT_EQ(parse(0), length == 8 ? "nothing" : refused) << length;
    EXPECT_EQ(parse(1), length == 0 ? "nothing" : refused) << length;
    EXPECT_EQ(parse(2), "nothing") << length;
    EXPECT_EQ(parse(0x0100), "nothing") << length;
    EXPECT_EQ(parse(0xFFFF), "nothing") << length;
  }
}

TEST(DescriptorAssociationTag, HasNoPrivateBytesWhenTheSelectorOutgrowsTheDescriptor) {
  Bytes bytes = association_tag(2, 4, {1, 2});
  bytes.insert(bytes.end(), {3, 4, 5});
  const DescriptorAssociationTag d(bytes.data());
  EXPECT_EQ(d.get_selector_byte(), (Bytes{1, 2, 3, 4}));
  EXPECT_TRUE(d.get_private_data_byte().empty());
}

TEST(DescriptorAssociationTag, IsEmptiedOfItsBytesByReset) {
  DescriptorAssociationTag d(kSelectorTag.data());
  d.reset();
  EXPECT_EQ(
      saved(d),
      R"(<d descriptor_id="20" descriptor_length="10" association_tag="258" use="61442")"
      R"( selector_length="4" transaction_id="0" timeout="0" selector_byte="" private_data_byte="" />)");
}

TEST(SystemsDescriptors, OfByteStringsNeedEachAttribute) {
  expect_each_attribute_needed<DescriptorRegistration>(saved(DescriptorRegistration(kRegistration.data())));
  expect_each_attribute_needed<DescriptorCa>(saved(DescriptorCa(kCa.data())));
  expect_each_attribute_needed<DescriptorCopyright>(saved(DescriptorCopyright(kCopyright.data())));
  expect_each_attribute_needed<DescriptorCarouselId>(saved(DescriptorCarouselId(kCarouselId.data())));
  expect_each_attribute_needed<DescriptorAssociationTag>(
      saved(DescriptorAssociationTag(kSelectorTag.data())));
}
