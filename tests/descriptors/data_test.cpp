// The conditional access and transport descriptors, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <quillon/descriptors/data/ca_identifier.h>
#include <quillon/descriptors/data/short_smoothing_buffer.h>
#include <quillon/descriptors/data/transport_stream.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kCAIdentifier =
    descriptor(0x53, bits({{16, 0x0B00, "CA_system_id"}, {16, 0x0602, "CA_system_id"}}));

const Bytes kECMRepetitionRate = descriptor(0x78, bits({{16, 0x0500, "CA_system_ID"},
                                                        {16, 0x03E8, "ECM_repetition_rate"},
                                                        {24, 0xFFAABB, "private_data_byte"}}));

const Bytes kAdaptationFieldData = descriptor(0x70, bits({{8, 0x81, "adaptation_field_data_identifier"}}));

const Bytes kPartialTransportStream =
    descriptor(0x63, bits({{2, 3, "reserved"},
                           {22, 0x12345, "peak_rate"},
                           {2, 3, "reserved"},
                           {22, 0x3FFFFF, "minimum_overall_smoothing_rate"},
                           {2, 3, "reserved"},
                           {14, 0x3FFF, "maximum_overall_smoothing_buffer"}}));

const Bytes kTransportStream = descriptor(0x67, text("DVB"));

const Bytes kDSNG = descriptor(0x68, text("CONA\x01"));

const Bytes kShortSmoothingBuffer =
    descriptor(0x61, joined({bits({{2, 2, "sb_size"}, {6, 0x2A, "sb_leak_rate"}}), text("Ab1")}));

const Cases cases = {
    case_of<DescriptorCAIdentifier>("DescriptorCAIdentifier", Family::dvb, kCAIdentifier,
                                    "descriptor_tag: 53 CA_system_id_descriptor\n"
                                    "CA_system_id: CA_system_id: b00\n"
                                    "CA_system_id: 602\n",
                                    R"(<d descriptor_id="83" descriptor_length="4"><CA_system_id>)"
                                    R"(<id CA_system_id="2816" /><id CA_system_id="1538" />)"
                                    R"(</CA_system_id></d>)"),
    case_of<DescriptorCAIdentifier>("DescriptorCAIdentifier, empty", Family::dvb, descriptor(0x53, {}),
                                    "descriptor_tag: 53 CA_system_id_descriptor\n"
                                    "CA_system_id: ",
                                    R"(<d descriptor_id="83" descriptor_length="0"><CA_system_id /></d>)"),
    case_of<DescriptorECMRepetitionRate>(
        "DescriptorECMRepetitionRate", Family::dvb, kECMRepetitionRate,
        "descriptor_tag: 78 ECM_repetition_rate_descriptor\n",
        R"(<d descriptor_id="120" descriptor_length="7" CA_system_ID="1280" ECM_repetition_rate="1000")"
        R"( private_data_byte="ff0001" />)"),
    case_of<DescriptorAdaptationFieldData>(
        "DescriptorAdaptationFieldData", Family::dvb, kAdaptationFieldData,
        "descriptor_tag: 70 adaptation_field_descriptor\n",
        R"(<d descriptor_id="112" descriptor_length="1" adaptation_field_data_identifier="129" />)"),
    case_of<DescriptorPartialTransportStream>("DescriptorPartialTransportStream", Family::dvb,
                                              kPartialTransportStream,
                                              "descriptor_tag: 63 partial_transport_descriptor\n",
                                              R"(<d descriptor_id="99" descriptor_length="8" />)"),
    case_of<DescriptorTransportStream>(
        "DescriptorTransportStream", Family::dvb, kTransportStream,
        "descriptor_tag: 67 transport_stream_descriptor\n",
        R"(<d descriptor_id="103" descriptor_length="3" transport_stream_data="445642" />)"),
    case_of<DescriptorDSNG>("DescriptorDSNG", Family::dvb, kDSNG, "descriptor_tag: 68 DSNG_descriptor\n",
                            R"(<d descriptor_id="104" descriptor_length="5" DSNG_data="434f4e4101" />)"),
    case_of<DescriptorShortSmoothingBuffer>(
        "DescriptorShortSmoothingBuffer", Family::dvb, kShortSmoothingBuffer,
        "descriptor_tag: 61 short_smoothing_buffer_descriptor\n"
        "sb_size: 2\n"
        "sb_leak_rate: 2a\n"
        "DVB_reserved:\n"
        "41 62 31 " +
            std::string(39, ' ') + " : Ab.\n",
        R"(<d descriptor_id="97" descriptor_length="4" sb_size="2" sb_leak_rate="42")"
        R"( DVB_reserved="416231" />)"),
    case_of<DescriptorShortSmoothingBuffer>(
        "DescriptorShortSmoothingBuffer, nothing reserved", Family::dvb, descriptor(0x61, {0xFF}),
        "descriptor_tag: 61 short_smoothing_buffer_descriptor\n"
        "sb_size: 3\n"
        "sb_leak_rate: 3f\n",
        R"(<d descriptor_id="97" descriptor_length="1" sb_size="3" sb_leak_rate="63" DVB_reserved="" />)"),
};

}  // namespace

TEST(DescriptorCAIdentifier, ReadsItsMembers) {
  const DescriptorCAIdentifier d(kCAIdentifier.data());
  ASSERT_EQ(d.ca_identifier_ids.size(), 2u);
  EXPECT_EQ(d.ca_identifier_ids[0].CA_system_id, 0x0B00);
  EXPECT_EQ(d.ca_identifier_ids[1].CA_system_id, 0x0602);
  EXPECT_EQ(report(d.ca_identifier_ids[0]), "CA_system_id: 2816\n");
}

TEST(DescriptorCAIdentifier, TakesInTheByteBehindAnOddLength) {
  const Bytes bytes = descriptor_claiming(0x53, 3, {1, 2, 3, 4});
  const DescriptorCAIdentifier d(bytes.data());
  ASSERT_EQ(d.ca_identifier_ids.size(), 2u);
  EXPECT_EQ(d.ca_identifier_ids[1].CA_system_id, 0x0304);
  // Behind the section's end there are zeros.
  const DescriptorCAIdentifier last(ByteView(bytes.data(), bytes.size() - 1));
  ASSERT_EQ(last.ca_identifier_ids.size(), 2u);
  EXPECT_EQ(last.ca_identifier_ids[1].CA_system_id, 0x0300);
}

TEST(DescriptorECMRepetitionRate, CountsItsPrivateDataUpFromTheFirstByte) {
  const DescriptorECMRepetitionRate d(kECMRepetitionRate.data());
  EXPECT_EQ(d.CA_system_ID, 0x0500);
  EXPECT_EQ(d.ECM_repetition_rate, 0x03E8);
  EXPECT_EQ(d.private_data, (Bytes{0xFF, 0x00, 0x01}));
  EXPECT_TRUE(DescriptorECMRepetitionRate(descriptor(0x78, {0, 1, 0, 2}).data()).private_data.empty());
  EXPECT_EQ(DescriptorECMRepetitionRate(descriptor(0x78, {0, 1, 0, 2, 9}).data()).private_data, Bytes{9});
}

TEST(DescriptorECMRepetitionRate, RefusesALengthBelowFour) {
  for (int length = 0; length < 256; ++length)
    EXPECT_EQ(failure([&] {
                DescriptorECMRepetitionRate(ByteView(descriptor_claiming(0x78, length, Bytes(255)).data()));
              }),
              length >= 4 ? "nothing" : "-1: descriptor length to small")
        << length;
}

TEST(DescriptorAdaptationFieldData, ReadsItsMember) {
  EXPECT_EQ(DescriptorAdaptationFieldData(kAdaptationFieldData.data()).adaptation_field_data_identifier,
            0x81);
}

TEST(DescriptorPartialTransportStream, KeepsTagAndLengthAlone) {
  const DescriptorPartialTransportStream d(kPartialTransportStream.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x63);
  EXPECT_EQ(d.get_descriptor_length(), 8);
  const auto again =
      loaded<DescriptorPartialTransportStream>(R"(<d descriptor_id="200" descriptor_length="9" peak="1" />)");
  EXPECT_EQ(again.get_descriptor_tag(), 200);
  EXPECT_EQ(saved(again), R"(<d descriptor_id="200" descriptor_length="9" />)");
}

TEST(DescriptorPartialTransportStream, AsksForNothingBeyondTagAndLength) {
  FaultyDom dom("get_attributes", 2);
  DescriptorPartialTransportStream d;
  EXPECT_EQ(failure([&] { d.Parse(dom.node()); }), "nothing");
  EXPECT_EQ(dom.calls("get_attributes"), 1);
  EXPECT_EQ(dom.calls("get_nodeValue"), 2);
}

TEST(DescriptorTransportStream, KeepsItsBody) {
  EXPECT_EQ(DescriptorTransportStream(kTransportStream.data()).data, text("DVB"));
  EXPECT_TRUE(DescriptorTransportStream(descriptor(0x67, {}).data()).data.empty());
}

TEST(DescriptorDSNG, KeepsItsBody) {
  EXPECT_EQ(DescriptorDSNG(kDSNG.data()).data, text("CONA\x01"));
  EXPECT_TRUE(DescriptorDSNG(descriptor(0x68, {}).data()).data.empty());
}

TEST(DescriptorShortSmoothingBuffer, ReadsItsMembers) {
  const DescriptorShortSmoothingBuffer d(kShortSmoothingBuffer.data());
  EXPECT_EQ(d.sb_size, 2);
  EXPECT_EQ(d.sb_leak_rate, 0x2A);
  EXPECT_EQ(d.DVB_reserved, text("Ab1"));
}

TEST(DescriptorShortSmoothingBuffer, ReadsItsByteAlsoWithALengthOfZero) {
  const DescriptorShortSmoothingBuffer d(descriptor_claiming(0x61, 0, {0x41, 7}).data());
  EXPECT_EQ(d.sb_size, 1);
  EXPECT_EQ(d.sb_leak_rate, 1);
  EXPECT_TRUE(d.DVB_reserved.empty());
}

TEST(DataDescriptors, AreEmptiedOfBytesAndRowsByReset) {
  DescriptorCAIdentifier identifier(kCAIdentifier.data());
  identifier.reset();
  EXPECT_TRUE(identifier.ca_identifier_ids.empty());
  DescriptorECMRepetitionRate rate(kECMRepetitionRate.data());
  rate.reset();
  EXPECT_TRUE(rate.private_data.empty());
  EXPECT_EQ(rate.CA_system_ID, 0x0500);
  DescriptorAdaptationFieldData field(kAdaptationFieldData.data());
  field.reset();
  EXPECT_EQ(field.adaptation_field_data_identifier, 0x81);
  DescriptorPartialTransportStream partial(kPartialTransportStream.data());
  partial.reset();
  EXPECT_EQ(partial.get_descriptor_length(), 8);
  DescriptorTransportStream stream(kTransportStream.data());
  stream.reset();
  EXPECT_TRUE(stream.data.empty());
  DescriptorDSNG dsng(kDSNG.data());
  dsng.reset();
  EXPECT_TRUE(dsng.data.empty());
  DescriptorShortSmoothingBuffer buffer(kShortSmoothingBuffer.data());
  buffer.reset();
  EXPECT_TRUE(buffer.DVB_reserved.empty());
  EXPECT_EQ(buffer.sb_size, 2);
}

TEST(DataDescriptors, LoadOnlyWithAllTheirAttributes) {
  expect_each_attribute_needed<DescriptorCAIdentifier>(saved(DescriptorCAIdentifier(kCAIdentifier.data())));
  expect_each_attribute_needed<DescriptorECMRepetitionRate>(
      saved(DescriptorECMRepetitionRate(kECMRepetitionRate.data())));
  expect_each_attribute_needed<DescriptorAdaptationFieldData>(
      saved(DescriptorAdaptationFieldData(kAdaptationFieldData.data())));
  expect_each_attribute_needed<DescriptorPartialTransportStream>(
      saved(DescriptorPartialTransportStream(kPartialTransportStream.data())));
  expect_each_attribute_needed<DescriptorTransportStream>(
      saved(DescriptorTransportStream(kTransportStream.data())));
  expect_each_attribute_needed<DescriptorDSNG>(saved(DescriptorDSNG(kDSNG.data())));
  expect_each_attribute_needed<DescriptorShortSmoothingBuffer>(
      saved(DescriptorShortSmoothingBuffer(kShortSmoothingBuffer.data())));
}

TEST(DataDescriptors, NameTheListThatALoadMisses) {
  const std::string bare = R"(<d descriptor_id="1" descriptor_length="0" />)";
  EXPECT_EQ(failure([&] { loaded<DescriptorCAIdentifier>(bare); }), "-1: failed to get CA_system_id");
}
