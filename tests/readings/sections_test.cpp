// Headers, checksums and refused descriptors in both readings.

#include "tests/readings/readings.h"

#include <gtest/gtest.h>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/appsignal/dsmcc.h>
#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/pmt_atsc.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/stream/any_table.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/tot.h>

using namespace quillon;
using namespace quillon::test;

namespace {

template <class Table>
std::string refusal(const Bytes& section, Reading reading) {
  return failure([&] { parsed<Table>(section, reading); });
}

Bytes tot(const Bytes& crc) {
  return short_section(0x73, joined({bits({{16, 59945, "MJD"},
                                           {24, 0x123456, "UTC"},
                                           {4, 15, "reserved"},
                                           {12, 0, "descriptors_loop_length"}}),
                                     crc}));
}

// A map of one program whose only stream has the given descriptors.
Bytes map_of(const Bytes& descriptors) {
  return long_section(0x02, joined({bits({{3, 7, "reserved"},
                                          {13, 0x100, "PCR_PID"},
                                          {4, 15, "reserved"},
                                          {12, 0, "program_info_length"},
                                          {8, 2, "stream_type"},
                                          {3, 7, "reserved"},
                                          {13, 0x101, "elementary_PID"},
                                          {4, 15, "reserved"},
                                          {12, descriptors.size(), "ES_info_length"}}),
                                    descriptors}));
}

}  // namespace

TEST(StandardReading, IsAskedForTableByTable) {
  Eit eit;
  EXPECT_EQ(eit.get_reading(), Reading::kept);
  eit.set_reading(Reading::standard);
  EXPECT_EQ(eit.get_reading(), Reading::standard);
  EXPECT_EQ(Eit(eit).get_reading(), Reading::standard);
  eit.reset();
  EXPECT_EQ(eit.get_reading(), Reading::standard);
}

TEST(StandardReading, IsCarriedByTheViewInItsSixteenBytes) {
  static_assert(sizeof(ByteView) == 16);
  const Bytes bytes{1, 2, 3, 4};
  const ByteView kept = test::view(bytes);
  EXPECT_FALSE(kept.standard());
  const ByteView standard = test::view(bytes, Reading::standard);
  EXPECT_TRUE(standard.standard());
  EXPECT_TRUE(standard.from(2).standard());
  EXPECT_TRUE(standard.upto(2).standard());
  EXPECT_TRUE(ByteView(bytes.data(), Reading::standard).from(3).standard());
}

TEST(StandardReading, OfAViewUpToAPlaceEndsThere) {
  const Bytes bytes{1, 2, 3, 4};
  const ByteView two = test::view(bytes).upto(2);
  EXPECT_EQ(two[1], 2);
  EXPECT_EQ(two[2], 0);
  EXPECT_EQ(test::view(bytes).upto(9)[3], 4);
  EXPECT_FALSE(test::view(bytes).upto(9).has(4));
  EXPECT_FALSE(test::view(bytes).from(2).upto(0).has(0));
}

TEST(StandardReading, TestsTheCrcOfATot) {
  const Bytes wrong = tot({1, 2, 3, 4});
  EXPECT_EQ(refusal<Tot>(wrong, Reading::kept), "nothing");
  EXPECT_EQ(refusal<Tot>(wrong, Reading::standard), "-1: crc error");
  Bytes right = wrong;
  repair_crc(right);
  EXPECT_EQ(refusal<Tot>(right, Reading::standard), "nothing");
  // One that has no room for a CRC.
  const Bytes short_one = short_section(0x73, {});
  EXPECT_EQ(refusal<Tot>(short_one, Reading::standard), "-1: crc error");
}

TEST(StandardReading, TakesADsmccSectionWithAChecksum) {
  Bytes section = long_section(0x3B, {'d', 'a', 't', 'a'}, {.syntax_indicator = 0, .private_bit = 1});
  section.back() ^= 0xFF;  // whatever the checksum says
  EXPECT_EQ(refusal<DsmCC>(section, Reading::kept), "-1: crc error");
  const DsmCC table = parsed<DsmCC>(section, Reading::standard);
  EXPECT_EQ(table.get_data(), text("data"));
  EXPECT_EQ(table.get_table_extension(), 0x1234);
  EXPECT_EQ(table.get_crc32(), test::view(section).u32(static_cast<ptrdiff_t>(section.size()) - 4));
  // With a CRC it is tested as ever.
  Bytes with_crc = long_section(0x3B, {'d'});
  EXPECT_EQ(refusal<DsmCC>(with_crc, Reading::standard), "nothing");
  with_crc.back() ^= 0xFF;
  EXPECT_EQ(refusal<DsmCC>(with_crc, Reading::standard), "-1: crc error");
  // Other tables have none.
  const Bytes eit = long_section(0x4E, Bytes(6), {.syntax_indicator = 0});
  EXPECT_EQ(refusal<Eit>(eit, Reading::standard).substr(0, 3), "2: ");
}

TEST(StandardReading, IgnoresTheReservedBitsOfAtscHeaders) {
  for (const int table_id : {0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xD3, 0xD4}) {
    const Bytes section = long_section(table_id, Bytes(24), {.reserved = 0});
    const auto refused = [&](Reading reading) {
      const auto table = AnyTable::for_table_id(table_id, Standard::atsc);
      table->set_reading(reading);
      return failure([&] { table->Parse(section.data(), section.size(), false); });
    };
    const std::string kept = refused(Reading::kept);
    EXPECT_EQ(kept.substr(0, 3), "2: ") << table_id;
    EXPECT_NE(refused(Reading::standard), kept) << table_id;
  }
}

TEST(StandardReading, KeepsWhatADvbClassRefuses) {
  const Bytes refused = descriptor(0x56, {1});  // no whole row
  const Bytes section = map_of(joined({refused, descriptor(0x52, {7})}));
  EXPECT_EQ(refusal<PmtDVB>(section, Reading::kept), "-1: descriptor length mismatch");
  const auto pmt = parsed<PmtDVB>(section, Reading::standard);
  ASSERT_EQ(pmt.get_descriptor_failures().size(), 1u);
  EXPECT_EQ(pmt.get_descriptor_failures()[0].tag, 0x56);
  EXPECT_EQ(pmt.get_descriptor_failures()[0].offset, 9);
  EXPECT_EQ(pmt.get_descriptor_failures()[0].text, "descriptor length mismatch");
  const auto& stream = pmt.get_pmt_stream_info()[0];
  ASSERT_EQ(stream.get_general_descriptors().size(), 1u);
  EXPECT_EQ(stream.get_general_descriptors()[0].get_descriptor_tag(), 0x56);
  EXPECT_EQ(stream.get_stream_identifier_descriptors().size(), 1u);
}

TEST(StandardReading, KeepsThemInARowThatIsReadByHandToo) {
  const Bytes row = joined({bits({{16, 1, "event_id"},
                                  {40, 0, "start_time"},
                                  {24, 0, "duration"},
                                  {4, 0, "flags"},
                                  {12, 3, "descriptors_loop_length"}}),
                            descriptor(0x56, {1})});
  int length = 0;
  EXPECT_EQ(failure([&] { Eit::EventInfo(test::view(row), length, false, test::view(row)); }),
            "-1: descriptor length mismatch");
  const ByteView standard = test::view(row, Reading::standard);
  EXPECT_EQ(Eit::EventInfo(standard, length, false, standard).get_general_descriptors().size(), 1u);
}

TEST(StandardReading, TellsWhatAnAtscClassRefuses) {
  const Bytes section = map_of(joined({descriptor(0x86, {1, 2}), descriptor(0x05, {})}));
  const auto kept = parsed<PmtATSC>(section, Reading::kept);
  EXPECT_TRUE(kept.get_descriptor_failures().empty());
  EXPECT_EQ(kept.get_pmt_stream_info()[0].get_general_descriptors()[0].get_descriptor_tag(), 0x86);
  const auto standard = parsed<PmtATSC>(section, Reading::standard);
  ASSERT_EQ(standard.get_descriptor_failures().size(), 1u);
  EXPECT_EQ(standard.get_descriptor_failures()[0].text,
            "DescriptorAtscCaptionService: number_of_services mismatch (1)");
  const auto& stream = standard.get_pmt_stream_info()[0];
  EXPECT_TRUE(stream.get_general_descriptors().empty());
  ASSERT_EQ(stream.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(stream.get_user_private_descriptors()[0].get_descriptor_tag(), 0x86);
}

TEST(StandardReading, KnowsTheStreamTypesOfAtsc) {
  const auto meaning = [](int stream_type, const Bytes& descriptors) {
    Bytes section = map_of(descriptors);
    section[12] = static_cast<uint8_t>(stream_type);
    repair_crc(section);
    return std::string(
        parsed<PmtATSC>(section, Reading::standard).get_pmt_stream_info()[0].standard_stream_type_text());
  };
  EXPECT_EQ(meaning(0x81, {}), "AC-3 audio");
  EXPECT_EQ(meaning(0x87, {}), "Enhanced AC-3 audio");
  EXPECT_EQ(meaning(0x86, {}), "User Private");
  EXPECT_EQ(meaning(0x86, descriptor(0x05, text("CUEI"))), "SCTE 35 splice information");
  EXPECT_EQ(meaning(0x06, descriptor(0x05, text("DTS1"))), "DTS audio");
  EXPECT_EQ(meaning(0x24, {}), "HEVC video stream (ITU-T Rec. H.265 | ISO/IEC 23008-2)");
}

TEST(StandardReading, LetsALoadedMapKnowItsRegistration) {
  const Bytes section = long_section(0x02, joined({bits({{3, 7, "reserved"},
                                                         {13, 0x100, "PCR_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 6, "program_info_length"}}),
                                                   descriptor(0x05, text("HDMV")),
                                                   bits({{8, 0x83, "stream_type"},
                                                         {3, 7, "reserved"},
                                                         {13, 0x101, "elementary_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 0, "ES_info_length"}})}));
  const auto pmt = loaded_table<PmtDVB>(saved(parsed<PmtDVB>(section, Reading::kept)));
  EXPECT_STREQ(pmt.get_pmt_stream_info()[0].standard_stream_type_text(), "Dolby TrueHD audio");
}

TEST(StandardReading, TakesAReusedTagForAnotherDescriptor) {
  const auto section = [](int tag) {
    return long_section(0x74, joined({bits({{4, 15, "reserved"}, {12, 5, "common_descriptors_length"}}),
                                      descriptor(tag, {1, 2, 3}),
                                      bits({{4, 15, "reserved"}, {12, 0, "application_loop_length"}})}));
  };
  for (const int tag : {0x06, 0x07}) {
    EXPECT_EQ(refusal<Ait>(section(tag), Reading::kept), "3: routing_ipv4_descriptor: 1");
    const auto ait = parsed<Ait>(section(tag), Reading::standard);
    EXPECT_TRUE(ait.get_descriptor_failures().empty());
    EXPECT_EQ(ait.get_general_descriptors()[0].get_descriptor_tag(), tag);
  }
  // Any other that is refused is a failure.
  const auto ait = parsed<Ait>(section(0x05), Reading::standard);
  EXPECT_EQ(ait.get_descriptor_failures().size(), 1u);
}

TEST(StandardReading, OfACountryAvailabilityWithoutABodyIsNothing) {
  const Bytes empty = joined({descriptor(0x49, {}), {0x80}});
  EXPECT_EQ(fields<DescriptorCountryAvailability>(empty, Reading::kept),
            "3: country_availability_descriptor\n");
  EXPECT_EQ(fields<DescriptorCountryAvailability>(empty, Reading::standard),
            "country_availability_flag: 0\ncountry_codes: list of 0\n");
}

TEST(StandardReading, WantsBothNamesOfAServiceToFit) {
  const Bytes row = joined({text("eng"), counted("ab"), {3}, text("cd")});
  const Bytes cut = joined({descriptor(0x5D, row), {'e'}});
  EXPECT_EQ(failure([&] { DescriptorMultilingualServiceName(test::view(cut, Reading::kept)); }), "2: ");
  EXPECT_EQ(failure([&] { DescriptorMultilingualServiceName(test::view(cut, Reading::standard)); }),
            "3: multilingual_service_name_info_descriptor:3");
}

TEST(StandardReading, RefusesEventsThatDoNotFillTheirLoop) {
  for (const int length : {1, 5, 200}) {
    const Bytes linkage = descriptor(
        0x4A, joined({Bytes(6), {0x0E}, {static_cast<uint8_t>(length)}, {0, 1, 0x00, 0, 0, 0, 0}}));
    EXPECT_EQ(fields<DescriptorLinkage>(linkage, Reading::standard),
              "-1: DescriptorLinkage: extended event start end mismatch\n")
        << length;
  }
}

TEST(StandardReading, RefusesUrlsThatDoNotEndWithTheirDescriptor) {
  for (const Bytes& body :
       {Bytes{0, 3, 1, 5, 'a'}, Bytes{0, 3, 1, 1, 'a', 2, 0}, Bytes{0, 2, 1, 0, 0, 9, 'a'}})
    EXPECT_EQ(fields<DescriptorAitTransportProtocol>(descriptor(0x02, body), Reading::standard),
              "-1: DescriptorAitTransportProtocol: URL start end mismatch\n");
}

TEST(StandardReading, OfDeliverySystemsHasTheLastDigitOfAFrequency) {
  const auto frequency = []<class Descriptor>(const Bytes& digits, Reading reading) {
    const Bytes bytes = descriptor(0x43, joined({digits, Bytes(7)}));
    return Descriptor(test::view(bytes, reading)).frequency;
  };
  using Satellite = DescriptorSatelliteDeliverySystem;
  using Cable = DescriptorCableDeliverySystem;
  const Bytes satellite{0x01, 0x17, 0x27, 0x58};
  EXPECT_DOUBLE_EQ(frequency.operator()<Satellite>(satellite, Reading::kept), 11.7275);
  EXPECT_EQ(frequency.operator()<Satellite>(satellite, Reading::standard), 11.72758);
  const Bytes cable{0x03, 0x46, 0x00, 0x05};
  EXPECT_DOUBLE_EQ(frequency.operator()<Cable>(cable, Reading::kept), 346.0);
  EXPECT_EQ(frequency.operator()<Cable>(cable, Reading::standard), 346.0005);
}
