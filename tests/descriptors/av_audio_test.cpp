// The audio descriptors of EN 300 468, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"

#include <quillon/descriptors/av/aac.h>
#include <quillon/descriptors/av/ac3.h>
#include <quillon/descriptors/av/ancillary_data.h>
#include <quillon/descriptors/av/dts.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kAC3 = descriptor(0x6A, bits({{1, 1, "component_type_flag"},
                                          {1, 1, "bsid_flag"},
                                          {1, 1, "mainid_flag"},
                                          {1, 1, "asvc_flag"},
                                          {4, 0, "reserved"},
                                          {8, 0x42, "AC_3_type"},
                                          {8, 8, "bsid"},
                                          {8, 1, "mainid"},
                                          {8, 0x80, "asvc"},
                                          {16, 0xDEAD, "additional_info"}}));

const Bytes kEnhancedAC3 = descriptor(0x7A, bits({{1, 1, "component_type_flag"},
                                                  {1, 0, "bsid_flag"},
                                                  {1, 1, "mainid_flag"},
                                                  {1, 0, "asvc_flag"},
                                                  {1, 1, "mixinfoexists"},
                                                  {1, 1, "substream1_flag"},
                                                  {1, 0, "substream2_flag"},
                                                  {1, 1, "substream3_flag"},
                                                  {8, 0xC4, "component_type"},
                                                  {8, 2, "mainid"},
                                                  {8, 0x11, "substream1"},
                                                  {8, 0x33, "substream3"},
                                                  {8, 0x0F, "additional_info"}}));

const Bytes kDTS = descriptor(0x7B, bits({{4, 13, "sample_rate_code"},
                                          {6, 0x16, "bit_rate_code"},
                                          {7, 0x55, "nblks"},
                                          {14, 0x2AAB, "fsize"},
                                          {6, 9, "surround_mode"},
                                          {1, 1, "lfe_flag"},
                                          {2, 2, "extended_surround_flag"},
                                          {16, 0x0102, "additional_info"}}));

const Bytes kAAC = descriptor(0x7C, bits({{8, 0x51, "Profile_and_level"},
                                          {1, 0, "AAC_type_flag"},
                                          {7, 0x7F, "reserved"},
                                          {8, 0x05, "AAC_type"},
                                          {16, 0xBEEF, "additional_info"}}));

const Bytes kAncillaryData = descriptor(0x6B, bits({{8, 0x41, "ancillary_data_identifier"}}));

const Cases cases = {
    case_of<DescriptorAC3>(
        "DescriptorAC3", Family::dvb, kAC3, "descriptor_tag: 6a _descriptor\n",
        R"(<d descriptor_id="106" descriptor_length="7" component_type_flag="1" bsid_flag="1")"
        R"( mainid_flag="1" asvc_flag="1" AC_3_type="66" bsid="8" mainid="1" asvc="128")"
        R"( additional_info="dead" />)"),
    case_of<DescriptorAC3>(
        "DescriptorAC3, flags clear", Family::dvb, descriptor(0x6A, {0x0F}),
        "descriptor_tag: 6a _descriptor\n",
        R"(<d descriptor_id="106" descriptor_length="1" component_type_flag="0" bsid_flag="0")"
        R"( mainid_flag="0" asvc_flag="0" AC_3_type="0" bsid="0" mainid="0" asvc="0")"
        R"( additional_info="" />)"),
    case_of<DescriptorEnhancedAC3>(
        "DescriptorEnhancedAC3", Family::dvb, kEnhancedAC3, "descriptor_tag: 7a enhanced_AC-3_descriptor\n",
        R"(<d descriptor_id="122" descriptor_length="6" component_type_flag="1" bsid_flag="0")"
        R"( mainid_flag="1" asvc_flag="0" mixinfoexists="1" substream1_flag="1" substream2_flag="0")"
        R"( substream3_flag="1" component_type="196" bsid="0" mainid="2" asvc="0" substream1="17")"
        R"( substream2="0" substream3="51" additional_info="0f" />)"),
    case_of<DescriptorDTS>(
        "DescriptorDTS", Family::dvb, kDTS, "descriptor_tag: 7b DTS descriptor\n",
        R"(<d descriptor_id="123" descriptor_length="7" sample_rate_code="13" bit_rate_code="22" nblks="85")"
        R"( fsize="10923" surround_mode="9" lfe_flag="1" extended_surround_flag="2")"
        R"( additional_info="0102" />)"),
    case_of<DescriptorAAC>("DescriptorAAC", Family::dvb, kAAC, "descriptor_tag: 7c AAC descriptor\n",
                           R"(<d descriptor_id="124" descriptor_length="5" Profile_and_level="81")"
                           R"( AAC_type_flag="1" AAC_type="5" additional_info="beef" />)"),
    case_of<DescriptorAncillaryData>(
        "DescriptorAncillaryData", Family::dvb, kAncillaryData, "descriptor_tag: 6b _descriptor\n",
        R"(<d descriptor_id="107" descriptor_length="1" ancillary_data_identifier="65" />)"),
};

}  // namespace

TEST(DescriptorAC3, ReadsItsMembers) {
  const DescriptorAC3 d(kAC3.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x6A);
  EXPECT_EQ(d.get_descriptor_length(), 7);
  EXPECT_EQ(d.component_type_flag, 1);
  EXPECT_EQ(d.bsid_flag, 1);
  EXPECT_EQ(d.mainid_flag, 1);
  EXPECT_EQ(d.asvc_flag, 1);
  EXPECT_EQ(d.AC_3_type, 0x42);
  EXPECT_EQ(d.bsid, 8);
  EXPECT_EQ(d.mainid, 1);
  EXPECT_EQ(d.asvc, 0x80);
  EXPECT_EQ(d.additional_info, (Bytes{0xDE, 0xAD}));
}

TEST(DescriptorAC3, TakesAByteForEachFlagThatIsSet) {
  for (int flags = 0; flags < 16; ++flags) {
    SCOPED_TRACE(flags);
    const Bytes bytes = descriptor(0x6A, {static_cast<uint8_t>(flags << 4), 1, 2, 3, 4, 5});
    const DescriptorAC3 d(bytes.data());
    int next = 1;
    EXPECT_EQ(d.AC_3_type, d.component_type_flag ? next++ : 0);
    EXPECT_EQ(d.bsid, d.bsid_flag ? next++ : 0);
    EXPECT_EQ(d.mainid, d.mainid_flag ? next++ : 0);
    EXPECT_EQ(d.asvc, d.asvc_flag ? next++ : 0);
    EXPECT_EQ(d.component_type_flag << 3 | d.bsid_flag << 2 | d.mainid_flag << 1 | d.asvc_flag, flags);
    EXPECT_EQ(d.additional_info, Bytes(bytes.begin() + 2 + next, bytes.end()));
  }
}

TEST(DescriptorAC3, HasNoAdditionalBytesWhereTheOptionalOnesFillIt) {
  const Bytes body = {0xF0, 1, 2, 3, 4, 5, 6};
  for (int length = 0; length <= 5; ++length) {
    SCOPED_TRACE(length);
    const DescriptorAC3 d(descriptor_claiming(0x6A, length, body).data());
    EXPECT_EQ(d.asvc, 4);  // read whatever the length says
    EXPECT_TRUE(d.additional_info.empty());
  }
  EXPECT_EQ(DescriptorAC3(descriptor_claiming(0x6A, 6, body).data()).additional_info, Bytes{5});
  EXPECT_TRUE(DescriptorAC3(descriptor_claiming(0x6A, 1, {0x00, 1, 2, 3, 4}).data()).additional_info.empty());
}

TEST(DescriptorEnhancedAC3, ReadsItsMembers) {
  const DescriptorEnhancedAC3 d(kEnhancedAC3.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x7A);
  EXPECT_EQ(d.get_descriptor_length(), 6);
  EXPECT_EQ(d.mixinfoexists, 1);
  EXPECT_EQ(d.component_type, 0xC4);
  EXPECT_EQ(d.bsid, 0);
  EXPECT_EQ(d.mainid, 2);
  EXPECT_EQ(d.asvc, 0);
  EXPECT_EQ(d.substream1, 0x11);
  EXPECT_EQ(d.substream2, 0);
  EXPECT_EQ(d.substream3, 0x33);
  EXPECT_EQ(d.additional_info, Bytes{0x0F});
}

TEST(DescriptorEnhancedAC3, TakesAByteForEachFlagThatIsSetButMixinfo) {
  for (int flags = 0; flags < 256; ++flags) {
    SCOPED_TRACE(flags);
    const Bytes bytes = descriptor(0x7A, {static_cast<uint8_t>(flags), 1, 2, 3, 4, 5, 6, 7, 8});
    const DescriptorEnhancedAC3 d(bytes.data());
    int next = 1;
    EXPECT_EQ(d.component_type, d.component_type_flag ? next++ : 0);
    EXPECT_EQ(d.bsid, d.bsid_flag ? next++ : 0);
    EXPECT_EQ(d.mainid, d.mainid_flag ? next++ : 0);
    EXPECT_EQ(d.asvc, d.asvc_flag ? next++ : 0);
    EXPECT_EQ(d.substream1, d.substream1_flag ? next++ : 0);
    EXPECT_EQ(d.substream2, d.substream2_flag ? next++ : 0);
    EXPECT_EQ(d.substream3, d.substream3_flag ? next++ : 0);
    EXPECT_EQ(d.additional_info, Bytes(bytes.begin() + 2 + next, bytes.end()));
    EXPECT_EQ(d.component_type_flag << 7 | d.bsid_flag << 6 | d.mainid_flag << 5 | d.asvc_flag << 4 |
                  d.mixinfoexists << 3 | d.substream1_flag << 2 | d.substream2_flag << 1 | d.substream3_flag,
              flags);
  }
}

TEST(DescriptorEnhancedAC3, HasNoAdditionalBytesWhereTheOptionalOnesFillIt) {
  const Bytes body = {0xFF, 1, 2, 3, 4, 5, 6, 7, 8};
  for (int length = 0; length <= 8; ++length)
    EXPECT_TRUE(
        DescriptorEnhancedAC3(descriptor_claiming(0x7A, length, body).data()).additional_info.empty());
  EXPECT_EQ(DescriptorEnhancedAC3(descriptor(0x7A, body).data()).additional_info, Bytes{8});
}

TEST(DescriptorDTS, ReadsItsMembers) {
  const DescriptorDTS d(kDTS.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x7B);
  EXPECT_EQ(d.get_descriptor_length(), 7);
  EXPECT_EQ(d.sample_rate_code, 13);
  EXPECT_EQ(d.bit_rate_code, 0x16);
  EXPECT_EQ(d.nblks, 0x55);
  EXPECT_EQ(d.fsize, 0x2AAB);
  EXPECT_EQ(d.surround_mode, 9);
  EXPECT_EQ(d.lfe_flag, 1);
  EXPECT_EQ(d.extended_surround_flag, 2);
  EXPECT_EQ(d.additional_info, (Bytes{1, 2}));
  EXPECT_STREQ(d.get_sample_rate_code_cstr(), "48 kHz");
  EXPECT_STREQ(d.get_bit_rate_code_cstr(), "1411,2 kbps");
  EXPECT_STREQ(d.get_surround_mode_cstr(), "5 / C + L + R+ SL+SR");
  EXPECT_STREQ(d.get_extended_surround_flag_cstr(), "Discrete Extended Surround");
}

// Each bit alone, among zeros and among ones: the fields cross byte borders.
TEST(DescriptorDTS, HasEachBitInItsField) {
  int bit = 0;
  const auto field = [&bit](int width, int DescriptorDTS::*member) {
    for (int value = 1 << (width - 1); value; value >>= 1, ++bit) {
      Bytes ones(7, 0xFF), zeros(7);
      zeros[1] = 5;
      zeros[static_cast<size_t>(2 + bit / 8)] = static_cast<uint8_t>(0x80 >> bit % 8);
      ones[1] = 5;
      ones[static_cast<size_t>(2 + bit / 8)] = static_cast<uint8_t>(~(0x80 >> bit % 8));
      EXPECT_EQ(DescriptorDTS(zeros.data()).*member, value) << bit;
      EXPECT_EQ(DescriptorDTS(ones.data()).*member, (1 << width) - 1 - value) << bit;
    }
  };
  field(4, &DescriptorDTS::sample_rate_code);
  field(6, &DescriptorDTS::bit_rate_code);
  field(7, &DescriptorDTS::nblks);
  field(14, &DescriptorDTS::fsize);
  field(6, &DescriptorDTS::surround_mode);
  field(1, &DescriptorDTS::lfe_flag);
  field(2, &DescriptorDTS::extended_surround_flag);
  EXPECT_EQ(bit, 40);
}

TEST(DescriptorDTS, HasNoAdditionalBytesUpToALengthOfFive) {
  for (int length = 0; length <= 5; ++length)
    EXPECT_TRUE(DescriptorDTS(descriptor_claiming(0x7B, length, Bytes(8, 1)).data()).additional_info.empty());
  EXPECT_EQ(DescriptorDTS(descriptor(0x7B, {0, 0, 0, 0, 0, 7}).data()).additional_info, Bytes{7});
}

TEST(DescriptorDTS, NamesItsCodes) {
  expect_texts(
      [](int code) {
        DescriptorDTS d;
        d.sample_rate_code = code;
        return d.get_sample_rate_code_cstr();
      },
      {"Invalid", "8 kHz", "16 kHz", "32 kHz", "64 kHz", "128 kHz", "11,025 kHz", "22,05 kHz", "44,1 kHz",
       "88.02 kHz", "176,4 kHz", "12,kHz", "24 kHz", "48 kHz", "96 kHz", "192 kHz"},
      "Invalid");
  expect_texts(
      [](int code) {
        DescriptorDTS d;
        d.bit_rate_code = code;
        return d.get_bit_rate_code_cstr();
      },
      {"32 kbps",   "56 kbps",     "64 kbps",   "96 kbps",   "112 kbps",  "128 kbps",  "192 kbps",
       "224 kbps",  "256 kbps",    "320 kbps",  "384 kbps",  "448 kbps",  "512 kbps",  "576 kbps",
       "640 kbps",  "768 kbps",    "960 kbps",  "1024 kbps", "1152 kbps", "1280 kbps", "1344 kbps",
       "1408 kbps", "1411,2 kbps", "1472 kbps", "1536 kbps", "1920 kbps", "2048 kbps", "3072 kbps",
       "3840 kbps", "open",        "Variable",  "Loss-less"},
      "invalid");
  expect_texts(
      [](int code) {
        DescriptorDTS d;
        d.surround_mode = code;
        return d.get_surround_mode_cstr();
      },
      {"1 / mono", "User defined", "2 / L + R (stereo)", "2 / (L+R) + (L-R) (sum-difference)",
       "2 / LT +RT (left and right total)", "3 / C + L + R", "3 / L + R+ S", "4 / C + L + R+ S",
       "4 / L + R+ SL+SR", "5 / C + L + R+ SL+SR"},
      "User defined");
  expect_texts(
      [](int code) {
        DescriptorDTS d;
        d.extended_surround_flag = code;
        return d.get_extended_surround_flag_cstr();
      },
      {"No Extended Surround", "Matrixed Extended Surround", "Discrete Extended Surround", "undefined"},
      "invalid");
}

TEST(DescriptorAAC, TakesItsTypeWhateverTheFlagSays) {
  for (const uint8_t flags : Bytes{0x00, 0x7F, 0x80, 0xFF}) {
    Bytes bytes = kAAC;
    bytes[3] = flags;
    const DescriptorAAC d(bytes.data());
    EXPECT_EQ(d.Profile_and_level, 0x51);
    EXPECT_EQ(d.AAC_type_flag, 1);
    EXPECT_EQ(d.AAC_type, 5);
    EXPECT_EQ(d.additional_info, (Bytes{0xBE, 0xEF}));
  }
  EXPECT_EQ(DescriptorAAC().AAC_type_flag, 0);
  EXPECT_EQ(loaded<DescriptorAAC>(R"(<d descriptor_id="124" descriptor_length="3" Profile_and_level="1")"
                                  R"( AAC_type_flag="0" AAC_type="2" additional_info="" />)")
                .AAC_type_flag,
            0);
}

TEST(DescriptorAAC, HasNoAdditionalBytesUpToALengthOfThree) {
  for (int length = 0; length <= 3; ++length) {
    const DescriptorAAC d(descriptor_claiming(0x7C, length, {1, 2, 3, 4, 5}).data());
    EXPECT_EQ(d.AAC_type, 3);
    EXPECT_TRUE(d.additional_info.empty());
  }
  EXPECT_EQ(DescriptorAAC(descriptor(0x7C, {1, 2, 3, 4}).data()).additional_info, Bytes{4});
}

TEST(DescriptorAncillaryData, ReadsItsMember) {
  EXPECT_EQ(DescriptorAncillaryData(kAncillaryData.data()).ancillary_data_identifier, 0x41);
}

TEST(AudioDescriptors, AreEmptiedOfBytesByReset) {
  DescriptorAC3 ac3(kAC3.data());
  ac3.reset();
  EXPECT_TRUE(ac3.additional_info.empty());
  EXPECT_EQ(ac3.AC_3_type, 0x42);
  DescriptorEnhancedAC3 enhanced(kEnhancedAC3.data());
  enhanced.reset();
  EXPECT_TRUE(enhanced.additional_info.empty());
  EXPECT_EQ(enhanced.component_type, 0xC4);
  DescriptorDTS dts(kDTS.data());
  dts.reset();
  EXPECT_TRUE(dts.additional_info.empty());
  EXPECT_EQ(dts.fsize, 0x2AAB);
  DescriptorAAC aac(kAAC.data());
  aac.reset();
  EXPECT_TRUE(aac.additional_info.empty());
  EXPECT_EQ(aac.AAC_type, 5);
  DescriptorAncillaryData ancillary(kAncillaryData.data());
  ancillary.reset();
  EXPECT_EQ(ancillary.ancillary_data_identifier, 0x41);
}

TEST(AudioDescriptors, LoadOnlyWithAllTheirAttributes) {
  expect_each_attribute_needed<DescriptorAC3>(saved(DescriptorAC3(kAC3.data())));
  expect_each_attribute_needed<DescriptorEnhancedAC3>(saved(DescriptorEnhancedAC3(kEnhancedAC3.data())));
  expect_each_attribute_needed<DescriptorDTS>(saved(DescriptorDTS(kDTS.data())));
  expect_each_attribute_needed<DescriptorAAC>(saved(DescriptorAAC(kAAC.data())));
  expect_each_attribute_needed<DescriptorAncillaryData>(
      saved(DescriptorAncillaryData(kAncillaryData.data())));
}
