// The program map table with the descriptors of ATSC.

#include "tests/atsc/tables.h"
#include "tests/support/table_cases.h"

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/pmt_atsc.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using ElementaryStream = PmtATSC::ElementaryStream;

// The CRC is from a calculator of its own.
const Bytes kPmt = {
    0x02,                                // table_id
    0xB0, 0x2C,                          // section_length 44
    0x00, 0x01,                          // program_number
    0xC7, 0x00, 0x00,                    // version 3, current; section 0 of 0
    0xE0, 0x31,                          // PCR_PID
    0xF0, 0x06,                          // program_info_length
    0x09, 0x04, 0x4A, 0xE0, 0xE5, 0x01,  // CA system 0x4AE0 on PID 0x501
    0x02, 0xE0, 0x31, 0xF0, 0x03,        // video
    0x02, 0x01, 0x12,                    //
    0x81, 0xE0, 0x34, 0xF0, 0x0C,        // AC-3
    0x0A, 0x04, 'e',  'n',  'g',  0x00,  //
    0x09, 0x04, 0x4A, 0xE1, 0xE5, 0x02,  // CA system 0x4AE1 on PID 0x502
    0xE9, 0xD3, 0x04, 0x7D,              // CRC_32
};

const char* const kReport =
    "table name: TS_program_map_section\n"
    "table_id 02\n"
    "section_length 002C\n"
    "context_id 0001\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 E9D3047D\n"
    "program_number: 0001\n"
    "version_number: 03\n"
    "section_number: 00\n"
    "last_section_number: 00\n"
    "current_next_indicator: 01\n"
    "pcr_pid: 31\n"
    "Dumping 2 stream infos\n"
    "crc32: E9D3047D\n";

const char* const kXml =
    R"(<pmt table_id="2" syntax_indicator="1" section_length="44" context_id="1" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-372046723" />)";

const std::string kMismatch = "-1: descriptor start end mismatch";

Bytes program(const Bytes& descriptors, int length_change = 0) {
  const size_t length = descriptors.size() + static_cast<size_t>(length_change);
  return joined({bits({{3, 7, "reserved"}, {13, 0x0031, "PCR_PID"}}),
                 bits({{4, 15, "reserved"}, {12, length, "program_info_length"}}), descriptors});
}

Bytes stream(const Bytes& descriptors, int length_change = 0) {
  const size_t length = descriptors.size() + static_cast<size_t>(length_change);
  return joined({bits({{8, 0x81, "stream_type"},
                       {3, 7, "reserved"},
                       {13, 0x1FF4, "elementary_PID"},
                       {4, 15, "reserved"},
                       {12, length, "ES_info_length"}}),
                 descriptors});
}

Bytes section(const Bytes& body) {
  return long_section(0x02, body);
}

const Bytes kGenre = descriptor(0xAB, {0xE0});

const TableCases kTables = {table_case<PmtATSC>("PmtATSC", "atsc_pmt", kPmt)};

}  // namespace

TEST(PmtATSC, ReadsASection) {
  const auto pmt = parsed<PmtATSC>(kPmt);
  EXPECT_TRUE(pmt.is_parsed());
  EXPECT_EQ(pmt.get_program_number(), 1);
  EXPECT_EQ(pmt.get_pcr_pid(), 0x31);
  EXPECT_EQ(pmt.pcr_pid, 0x31);
  EXPECT_TRUE(pmt.get_descriptor_pos().empty());
  ASSERT_EQ(pmt.get_atsc_CA_descriptors().size(), 1u);
  EXPECT_EQ(pmt.get_atsc_CA_descriptors()[0].get_ca_system_id(), 0x4AE0);
  ASSERT_EQ(pmt.get_pmt_stream_info().size(), 2u);
  const ElementaryStream& video = pmt.get_pmt_stream_info()[0];
  EXPECT_EQ(video.stream_type, 2);
  EXPECT_EQ(video.elementary_PID, 0x31);
  EXPECT_EQ(video.ES_info_length, 3);
  EXPECT_EQ(video.get_atsc_video_stream_descriptors().size(), 1u);
  EXPECT_TRUE(video.get_atsc_CA_descriptors().empty());
  EXPECT_TRUE(video.get_descriptor_pos().empty());
  EXPECT_STREQ(
      video.get_stream_type_cstr(),
      "ITU-T Rec. H.262 | ISO/IEC 13818-2 Video or ISO/IEC 11172-2 constrained parameter video stream");
  const ElementaryStream& audio = pmt.get_pmt_stream_info()[1];
  EXPECT_EQ(audio.stream_type, 0x81);
  EXPECT_EQ(audio.elementary_PID, 0x34);
  EXPECT_EQ(audio.ES_info_length, 12);
  EXPECT_EQ(audio.get_atsc_ISO_639_language_descriptors().size(), 1u);
  ASSERT_EQ(audio.get_atsc_CA_descriptors().size(), 1u);
  EXPECT_STREQ(audio.get_stream_type_cstr(), "User Private");
}

TEST(PmtATSC, PrintsItsReportWithoutTheStreams) {
  const auto pmt = parsed<PmtATSC>(kPmt);
  EXPECT_EQ(report(pmt), kReport);
  EXPECT_EQ(report(pmt.get_pmt_stream_info()[1]), "");
}

TEST(PmtATSC, CountsItsStreamsInHexadecimal) {
  Bytes body = program({});
  for (int i = 0; i < 18; ++i) body = joined({body, stream({})});
  const std::string text = report(parsed<PmtATSC>(section(body)));
  EXPECT_NE(text.find("\nDumping 12 stream infos\ncrc32: "), std::string::npos) << text;
}

TEST(PmtATSC, PadsAPidToTwoDigitsAndLetsALongerOneOverrunThem) {
  Bytes body = program({});
  body[1] = 0x05;
  EXPECT_NE(report(parsed<PmtATSC>(section(body))).find("pcr_pid: 05\n"), std::string::npos);
  body[0] = 0xFF;
  EXPECT_NE(report(parsed<PmtATSC>(section(body))).find("pcr_pid: 1F05\n"), std::string::npos);
}

TEST(PmtATSC, PadsItsCrcToEightDigits) {
  for (int number = 0;; ++number) {
    const auto pmt = parsed<PmtATSC>(long_section(0x02, program({}), {.extension = number}));
    if (pmt.get_crc32() >> 24 != 0) continue;
    std::ostringstream line;
    line << "\ncrc32: 00" << std::hex << std::uppercase << pmt.get_crc32() << "\n";
    const std::string text = report(pmt);
    EXPECT_EQ(text.substr(text.size() - line.str().size()), line.str());
    break;
  }
}

TEST(PmtATSC, PutsTheFlagsAndTheWidthOfTheStreamBack) {
  std::ostringstream stream;
  stream << std::left << std::dec;
  parsed<PmtATSC>(kPmt).dump_state(stream);
  // As the header left them, not as they were before it.
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
  EXPECT_EQ(stream.flags() & std::ios::adjustfield, std::ios::right);
  EXPECT_EQ(stream.width(), 0);
  EXPECT_EQ(stream.fill(), '0');
}

TEST(PmtATSC, SavesAndLoadsItsHeaderAlone) {
  EXPECT_EQ(saved(parsed<PmtATSC>(kPmt), "pmt"), kXml);
  const auto pmt = loaded_table<PmtATSC>(kXml);
  EXPECT_TRUE(pmt.is_parsed());
  EXPECT_EQ(pmt.get_program_number(), 1);
  EXPECT_EQ(pmt.get_pcr_pid(), 0);
  EXPECT_TRUE(pmt.get_pmt_stream_info().empty());
  EXPECT_TRUE(pmt.get_atsc_CA_descriptors().empty());
  EXPECT_EQ(saved(pmt, "pmt"), kXml);
}

TEST(PmtATSC, KeepsWhereItsDescriptorsLie) {
  const auto pmt = parsed<PmtATSC>(section(joined({program(joined({kGenre, descriptor(0x48, {1})})),
                                                   stream(joined({kGenre, kGenre})), stream(kGenre)})),
                                   true);
  EXPECT_EQ(pmt.get_descriptor_pos(), (std::vector<int>{4, 7}));
  EXPECT_EQ(pmt.get_pmt_stream_info()[0].get_descriptor_pos(), (std::vector<int>{15, 18}));
  EXPECT_EQ(pmt.get_pmt_stream_info()[1].get_descriptor_pos(), (std::vector<int>{26}));
  EXPECT_EQ(*pmt.get_section_ptr_by_desc_pos(7), 0x48);
  EXPECT_EQ(*pmt.get_section_ptr_by_desc_pos(26), 0xAB);
}

TEST(PmtATSC, CollectsTheCaDescriptorsOfProgramAndStreams) {
  const auto pmt = parsed<PmtATSC>(kPmt);
  std::vector<DescriptorCa> all;
  pmt.get_all_ca_descriptors(all);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].get_ca_system_id(), 0x4AE0);
  EXPECT_EQ(all[1].get_ca_system_id(), 0x4AE1);
  pmt.get_all_ca_descriptors(all);
  ASSERT_EQ(all.size(), 4u);
  EXPECT_EQ(all[2].get_ca_pid(), 0x501);
}

TEST(PmtATSC, ParsesAProgramWithoutStreams) {
  EXPECT_TRUE(parsed<PmtATSC>(section(program({}))).get_pmt_stream_info().empty());
  const auto pmt = parsed<PmtATSC>(section(program(kGenre)));
  EXPECT_TRUE(pmt.get_pmt_stream_info().empty());
  EXPECT_EQ(pmt.get_atsc_genre_descriptor().size(), 1u);
}

TEST(PmtATSC, FailsWhenALoopMissesItsEnd) {
  for (const int change : {-1, 1}) {
    EXPECT_EQ(failure_of<PmtATSC>(section(program(kGenre, change))), kMismatch) << change;
    EXPECT_EQ(failure_of<PmtATSC>(section(joined({program(kGenre, change), stream({})}))), kMismatch);
  }
  // Behind the rows' end, and beyond the section.
  EXPECT_EQ(failure_of<PmtATSC>(section(program(Bytes(4), 2))), kMismatch);
  EXPECT_EQ(failure_of<PmtATSC>(section(program({}, 0xFFF))), kMismatch);
  EXPECT_EQ(failure_of<PmtATSC>(section(joined({program({}), stream(kGenre, 1)}))), kMismatch);
  EXPECT_EQ(failure_of<PmtATSC>(section(joined({program({}), stream({}, 0xFFF)}))), kMismatch);
}

TEST(PmtATSC, NeedsFiveBytesForAStream) {
  for (size_t stray = 1; stray < 5; ++stray)
    EXPECT_EQ(failure_of<PmtATSC>(section(joined({program({}), stream({}), Bytes(stray)}))),
              "-1: too little data")
        << stray;
  EXPECT_EQ(
      parsed<PmtATSC>(section(joined({program({}), stream({}), Bytes(5)}))).get_pmt_stream_info().size(), 2u);
}

TEST(PmtATSC, LetsADescriptorRunOverTheLoopOfItsStream) {
  // The genre begins in the loop of two bytes and ends in the next row, which begins with its body.
  const Bytes next = {0x0F, 0xE0, 0x44, 0xF0, 0x00};
  const auto pmt = parsed<PmtATSC>(section(joined({program({}), stream({0xAB, 0x01}), next})));
  ASSERT_EQ(pmt.get_pmt_stream_info().size(), 2u);
  const ElementaryStream& first = pmt.get_pmt_stream_info()[0];
  ASSERT_EQ(first.get_atsc_genre_descriptor().size(), 1u);
  EXPECT_EQ(first.get_atsc_genre_descriptor()[0].attribute_count, 15);
  EXPECT_EQ(pmt.get_pmt_stream_info()[1].stream_type, 0x0F);
  // One byte is a descriptor too.
  const auto tag_alone = parsed<PmtATSC>(section(joined({program({}), stream({0xAB}), next})));
  ASSERT_EQ(tag_alone.get_pmt_stream_info().size(), 2u);
  EXPECT_EQ(tag_alone.get_pmt_stream_info()[0].get_atsc_genre_descriptor().size(), 1u);
}

TEST(PmtATSC, ReadsAStreamFromItsBytes) {
  Bytes bytes = stream(kGenre);
  int length = 5;
  const ElementaryStream row(reinterpret_cast<_PMT_INFO*>(bytes.data()), length, true, bytes.data());
  EXPECT_EQ(length, 8);
  EXPECT_EQ(row.stream_type, 0x81);
  EXPECT_EQ(row.elementary_PID, 0x1FF4);
  EXPECT_EQ(row.ES_info_length, 3);
  EXPECT_EQ(row.get_descriptor_pos(), std::vector<int>{5});
  EXPECT_EQ(row.get_atsc_genre_descriptor().size(), 1u);
  EXPECT_EQ(row_refusal<ElementaryStream>(bytes, 4), "-1: too little data");
}

TEST(PmtATSC, TakesEachBitOfAStreamForItsField) {
  using E = ElementaryStream;
  expect_places<E>(5, {{&E::stream_type, 0, 8}, {&E::elementary_PID, 11, 13}, {&E::ES_info_length, 28, 12}},
                   {});
}

TEST(PmtATSC, KeepsADescriptorThatItsClassRefuses) {
  PmtATSC pmt;
  pmt.set_tolerant(true);
  const Bytes bytes = section(program(descriptor(0x81, {1})));
  pmt.Parse(bytes.data(), bytes.size(), false);
  EXPECT_EQ(pmt.get_general_descriptors().size(), 1u);
  EXPECT_TRUE(pmt.get_descriptor_failures().empty());
}

TEST(PmtATSC, IsEmptiedByReset) {
  auto pmt = parsed<PmtATSC>(kPmt, true);
  EXPECT_FALSE(pmt.get_descriptor_pos().empty());
  pmt.reset();
  EXPECT_TRUE(pmt.get_descriptor_pos().empty());
  EXPECT_FALSE(pmt.is_parsed());
  EXPECT_TRUE(pmt.get_pmt_stream_info().empty());
  EXPECT_TRUE(pmt.get_atsc_CA_descriptors().empty());
  EXPECT_EQ(pmt.get_pcr_pid(), 0x31);
}

TEST(PmtATSC, AddsASecondSectionToTheFirst) {
  auto pmt = parsed<PmtATSC>(kPmt);
  pmt.Parse(kPmt.data(), kPmt.size(), false);
  EXPECT_EQ(pmt.get_pmt_stream_info().size(), 4u);
  EXPECT_EQ(pmt.get_atsc_CA_descriptors().size(), 2u);
}

TEST(PmtATSC, AcceptsItsHeader) {
  expect_header<PmtATSC>(0x02, program({}), true);
}

TEST(PmtATSC, NamesStreamTypes) {
  const std::vector<Until> ranges = {
      {0, "ITU-T | ISO/IEC Reserved"},
      {1, "ISO/IEC 11172-2 Video"},
      {2, "ITU-T Rec. H.262 | ISO/IEC 13818-2 Video or ISO/IEC 11172-2 constrained parameter video stream"},
      {3, "ISO/IEC 11172-3 Audio"},
      {4, "ISO/IEC 13818-3 Audio"},
      {5, "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 private_sections"},
      {6, "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 PES packets containing private data"},
      {7, "ISO/IEC 13522 MHEG"},
      {8, "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Annex A DSM-CC"},
      {9, "ITU-T Rec. H.222.1"},
      {10, "ISO/IEC 13818-6 type A"},
      {11, "ISO/IEC 13818-6 type B"},
      {12, "ISO/IEC 13818-6 type C"},
      {13, "ISO/IEC 13818-6 type D"},
      {14, "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 auxiliary"},
      {15, "ISO/IEC 13818-7 Audio with ADTS transport syntax"},
      {16, "ISO/IEC 14496-2 Visual"},
      {17, "ISO/IEC 14496-3 Audio with the LATM transport syntax as defined in ISO/IEC 14496-3/AMD-1"},
      {18, "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in PES packets"},
      {19, "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in ISO/IEC14496_sections"},
      {20, "ISO/IEC 13818-6 Synchronized Download Protocol"},
      {21, "Metadata carried in PES packets"},
      {22, "Metadata carried in metadata_sections"},
      {23, "Metadata carried in ISO/IEC 13818-6 Data Carousel"},
      {24, "Metadata carried in ISO/IEC 13818-6 Object Carousel"},
      {25, "Metadata carried in ISO/IEC 13818-6 Synchronized Download Protocol"},
      {26, "IPMP stream (defined in ISO/IEC 13818-11, MPEG-2 IPMP)"},
      {27, "AVC video stream as defined in ITU-T Rec. H.264 | ISO/IEC 14496-10 Video"},
      {126, "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Reserved"},
      {127, "IPMP stream"},
      {256, "User Private"},
  };
  expect_ranges(&ElementaryStream::get_stream_type_cstr, ranges, 0);
  EXPECT_STREQ(ElementaryStream::get_stream_type_cstr(-1), "User Private");
}

TEST(PmtATSC, StaysWithinAnySection) {
  expect_bounded<PmtATSC>(kPmt, {kMismatch, "-1: too little data"});
}
