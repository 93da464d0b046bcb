// The program map table of a DVB stream.

#include "tests/support/table_cases.h"
#include "tests/tables/tables.h"

#include <algorithm>

#include <quillon/descriptors/dvb_classes.h>
#include <quillon/tables/pmt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kSection = joined({
    bits({{8, 0x02, "table_id"},
          {1, 1, "section_syntax_indicator"},
          {1, 0, "'0'"},
          {2, 3, "reserved"},
          {12, 60, "section_length"},
          {16, 0x1234, "program_number"},
          {2, 3, "reserved"},
          {5, 3, "version_number"},
          {1, 1, "current_next_indicator"},
          {8, 0, "section_number"},
          {8, 0, "last_section_number"},
          {3, 7, "reserved"},
          {13, 0x01FE, "PCR_PID"},
          {4, 15, "reserved"},
          {12, 18, "program_info_length"}}),
    descriptor(0x09, {0x0B, 0x00, 0xF5, 0x01, 0xAA, 0x42}),
    descriptor(0x05, text("HDMV")),
    descriptor(0x3F, {0x01, 0x7A}),
    bits({{8, 0x1B, "stream_type"},
          {3, 7, "reserved"},
          {13, 0x01FE, "elementary_PID"},
          {4, 15, "reserved"},
          {12, 3, "ES_info_length"}}),
    descriptor(0x52, {0x2A}),
    bits({{8, 0x04, "stream_type"},
          {3, 7, "reserved"},
          {13, 0x1FFE, "elementary_PID"},
          {4, 15, "reserved"},
          {12, 11, "ES_info_length"}}),
    descriptor(0x0A, text("deu\x01")),
    descriptor(0x0E, {0xC0, 0x01, 0xF4}),
    bits({{8, 0x06, "stream_type"},
          {3, 7, "reserved"},
          {13, 0x0020, "elementary_PID"},
          {4, 15, "reserved"},
          {12, 0, "ES_info_length"},
          {32, 0xC42E173E, "CRC_32"}}),
});

const char* const kReport =
    "table name: TS_program_map_section\n"
    "table_id 02\n"
    "section_length 003C\n"
    "context_id 1234\n"
    "version_number 03\n"
    "section_number 00\n"
    "last_section_number 0\n"
    "current_next_indicator 01\n"
    "crc32 C42E173E\n"
    "program_number: 1234\n"
    "version_number: 03\n"
    "section_number: 00\n"
    "last_section_number: 00\n"
    "current_next_indicator: 01\n"
    "pcr_pid: 1FE\n"
    "descriptor_tag: 09 CA_Descriptor\n"
    "sys_id: 0B00\n"
    "pid: 1501\n"
    "private data:\n"
    "AA 42                                            : .B\n"
    "descriptor_tag: 3F Reserved\n"
    "data:\n"
    "01 7A                                            : .z\n"
    "Dumping 3 stream infos\n"
    "stream_type: 1B\n"
    "elementary_PID: 01FE\n"
    "descriptor_tag: 52 stream_identifier_descriptor\n"
    "component_tag: 2A\n"
    "stream_type: 04\n"
    "elementary_PID: 1FFE\n"
    "descriptor_tag: 0A ISO_639_language_descriptor\n"
    "ISO_639_language_code: deu\n"
    "audio_type: \1\n"
    "stream_type: 06\n"
    "elementary_PID: 0020\n"
    "crc32: C42E173E\n";

const char* const kXml =
    R"(<pmt table_id="2" syntax_indicator="1" section_length="60" context_id="4660" version_number="3")"
    R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32="-1003612354" pcr="510">)"
    R"(<stream_infos>)"
    R"(<stream stream_type="27" elementary_pid="510" es_info_length="3"><descriptors>)"
    R"(<stream_identifier_descriptor descriptor_id="82" descriptor_length="1" component_tag="42" />)"
    R"(</descriptors></stream>)"
    R"(<stream stream_type="4" elementary_pid="8190" es_info_length="11"><descriptors>)"
    R"(<ISO_639_language_descriptor descriptor_id="10" descriptor_length="4"><language_vector>)"
    R"(<language ISO_639_language_code="deu" audio_type="1" /></language_vector></ISO_639_language_descriptor>)"
    R"(<maximum_bitrate_descriptor descriptor_id="14" descriptor_length="3" maximum_bitrate="500" />)"
    R"(</descriptors></stream>)"
    R"(<stream stream_type="6" elementary_pid="32" es_info_length="0"><descriptors /></stream>)"
    R"(</stream_infos><descriptors>)"
    R"(<registration_descriptor descriptor_id="5" descriptor_length="4" format_identifier="1212435798")"
    R"( additional_identification_info="" />)"
    R"(<CA_descriptor descriptor_id="9" descriptor_length="6" sys_id="2816" pid="5377" private_bytes="aa42" />)"
    R"(<general_descriptor descriptor_id="63" descriptor_length="2" private_data="017a" />)"
    R"(</descriptors></pmt>)";

Bytes row(int stream_type, int pid, const Bytes& info, int claimed = -1) {
  return joined({bits({{8, static_cast<uint64_t>(stream_type), "stream_type"},
                       {3, 7, "reserved"},
                       {13, static_cast<uint64_t>(pid), "elementary_PID"}}),
                 loop(info, claimed)});
}
Bytes pmt(const Bytes& program_info, const Bytes& rows, int claimed = -1) {
  return long_section(0x02, joined({{0xE1, 0x00}, loop(program_info, claimed), rows}));
}

const char* const kMismatch = "-1: descriptor start end mismatch";

// The tags of the descriptors in a report.
std::string tags_in(const std::string& report) {
  std::string out;
  const std::string label = "descriptor_tag: ";
  for (size_t at = 0; (at = report.find(label, at)) != std::string::npos; at += label.size())
    out += (out.empty() ? "" : " ") + report.substr(at + label.size(), 2);
  return out;
}

// One descriptor each of the classes of this test, in an order of no report.
Bytes many_descriptors() {
  Bytes out;
  for (const int tag : {0x52, 0x0D, 0x0F, 0x11, 0x03, 0x02, 0x0A, 0x56, 0x80, 0x65, 0x09, 0x05, 0x0E, 0x48})
    out = joined({out, descriptor(tag, tag == 0x0A || tag == 0x56 ? Bytes() : Bytes(6))});
  return out;
}

const TableCases kTables = {table_case<PmtDVB>("PmtDVB", "pmt", kSection)};

}  // namespace

TEST(PmtDVB, HasItsFaces) {
  expect_faces<PmtDVB>(kSection, kReport, kXml);
}

TEST(PmtDVB, ReadsItsMembers) {
  const auto table = parsed_table<PmtDVB>(kSection);
  EXPECT_EQ(table.get_table_id(), 2);
  EXPECT_STREQ(table.get_table_id_text(), "TS_program_map_section");
  EXPECT_EQ(table.get_program_number(), 0x1234);
  EXPECT_EQ(table.get_pcr_pid(), 0x01FE);
  ASSERT_EQ(table.get_CA_descriptors().size(), 1u);
  EXPECT_EQ(table.get_registration_descriptors().size(), 1u);
  EXPECT_EQ(table.get_general_descriptors().size(), 1u);
  EXPECT_EQ(table.get_user_private_descriptors().size(), 0u);
  const auto& rows = table.get_pmt_stream_info();
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].get_stream_type(), 0x1B);
  EXPECT_STREQ(rows[0].get_stream_type_cstr(),
               "AVC video stream as defined in ITU-T Rec. H.264 | ISO/IEC 14496-10 Video");
  EXPECT_EQ(rows[0].get_elementary_pid(), 0x01FE);
  EXPECT_EQ(rows[0].get_es_info_length(), 3);
  EXPECT_EQ(rows[0].get_stream_identifier_descriptors().size(), 1u);
  EXPECT_EQ(rows[1].get_elementary_pid(), 0x1FFE);
  EXPECT_EQ(rows[1].get_es_info_length(), 11);
  EXPECT_EQ(rows[1].get_ISO_639_language_descriptors().size(), 1u);
  EXPECT_EQ(rows[1].get_maximum_bitrate_descriptors().size(), 1u);
  EXPECT_EQ(rows[2].get_stream_type(), 6);
  EXPECT_EQ(rows[2].get_es_info_length(), 0);

  const PmtDVB empty;
  EXPECT_FALSE(empty.is_parsed());
  EXPECT_EQ(empty.get_pcr_pid(), 0);
  EXPECT_TRUE(empty.get_pmt_stream_info().empty());
}

TEST(PmtDVB, TakesEachBitForItsField) {
  for (int bit = 0; bit < 13; ++bit) {
    const int pid = 1 << bit;
    const Bytes pid_field = bits({{3, 0, "reserved"}, {13, static_cast<uint64_t>(pid), "PCR_PID"}});
    const auto table =
        parsed_table<PmtDVB>(long_section(0x02, joined({pid_field, {0, 0}, row(1 << (bit % 8), pid, {})})));
    EXPECT_EQ(table.get_pcr_pid(), pid);
    EXPECT_EQ(table.get_pmt_stream_info().at(0).get_elementary_pid(), pid);
    EXPECT_EQ(table.get_pmt_stream_info().at(0).get_stream_type(), 1 << (bit % 8));
  }
  // The reserved bits of a row belong to no field.
  const auto table =
      parsed_table<PmtDVB>(pmt({}, {0x00, 0x00, 0x00, 0xF0, 0x00, 0x00, 0xE0, 0x00, 0x00, 0x00}));
  ASSERT_EQ(table.get_pmt_stream_info().size(), 2u);
  for (const auto& r : table.get_pmt_stream_info()) {
    EXPECT_EQ(r.get_elementary_pid(), 0);
    EXPECT_EQ(r.get_es_info_length(), 0);
  }
}

TEST(PmtDVB, NamesTheTypeOfAStream) {
  const char* const named[] = {
      "ITU-T | ISO/IEC Reserved",
      "ISO/IEC 11172-2 Video",
      "ITU-T Rec. H.262 | ISO/IEC 13818-2 Video or ISO/IEC 11172-2 constrained parameter video stream",
      "ISO/IEC 11172-3 Audio",
      "ISO/IEC 13818-3 Audio",
      "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 private_sections",
      "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 PES packets containing private data",
      "ISO/IEC 13522 MHEG",
      "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Annex A DSM-CC",
      "ITU-T Rec. H.222.1",
      "ISO/IEC 13818-6 type A",
      "ISO/IEC 13818-6 type B",
      "ISO/IEC 13818-6 type C",
      "ISO/IEC 13818-6 type D",
      "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 auxiliary",
      "ISO/IEC 13818-7 Audio with ADTS transport syntax",
      "ISO/IEC 14496-2 Visual",
      "ISO/IEC 14496-3 Audio with the LATM transport syntax as defined in ISO/IEC 14496-3/AMD-1",
      "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in PES packets",
      "ISO/IEC 14496-1 SL-packetized stream or FlexMux stream carried in ISO/IEC14496_sections",
      "ISO/IEC 13818-6 Synchronized Download Protocol",
      "Metadata carried in PES packets",
      "Metadata carried in metadata_sections",
      "Metadata carried in ISO/IEC 13818-6 Data Carousel",
      "Metadata carried in ISO/IEC 13818-6 Object Carousel",
      "Metadata carried in ISO/IEC 13818-6 Synchronized Download Protocol",
      "IPMP stream (defined in ISO/IEC 13818-11, MPEG-2 IPMP)",
      "AVC video stream as defined in ITU-T Rec. H.264 | ISO/IEC 14496-10 Video",
  };
  static_assert(std::size(named) == 28);
  for (int type = -1; type <= 256; ++type) {
    const char* const expected = type < 0 || type > 127 ? "User Private"
                                 : type == 127          ? "IPMP stream"
                                 : type < 28            ? named[type]
                                                        : "ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Reserved";
    EXPECT_STREQ(PmtDVB::ElementaryStream::get_stream_type_cstr(type), expected) << type;
    if (type < 0 || type > 255) continue;
    const auto table = parsed_table<PmtDVB>(pmt({}, row(type, 1, {})));
    EXPECT_STREQ(table.get_pmt_stream_info().at(0).get_stream_type_cstr(), expected) << type;
  }
}

TEST(PmtDVB, IsEmptyWithoutRowsAndDescriptors) {
  const auto table = parsed_table<PmtDVB>(pmt({}, {}));
  EXPECT_EQ(table.get_section_length(), 13);
  EXPECT_TRUE(table.get_pmt_stream_info().empty());
  EXPECT_EQ(saved(table),
            R"(<d table_id="2" syntax_indicator="1" section_length="13" context_id="4660" version_number="3")"
            R"( section_number="0" last_section_number="0" current_next_indicator="1" crc32=")" +
                std::to_string(static_cast<int32_t>(table.get_crc32())) +
                R"(" pcr="256"><stream_infos /><descriptors /></d>)");
}

TEST(PmtDVB, TakesAProgramLoopThatFillsIt) {
  const auto table =
      parsed_table<PmtDVB>(pmt(joined({descriptor(0x80, {1}), descriptor(0x05, text("ABCD"))}), {}));
  EXPECT_EQ(table.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(table.get_registration_descriptors().size(), 1u);
  EXPECT_TRUE(table.get_pmt_stream_info().empty());
}

TEST(PmtDVB, RefusesADescriptorThatOverrunsItsProgramLoop) {
  PmtDVB table;
  const Bytes overrun = descriptor_claiming(0x05, 5, text("ABCD"));
  EXPECT_EQ(failure_of_parse(pmt(overrun, row(1, 1, {1, 0})), table), kMismatch);
  // It was read before that, with the byte after the loop.
  ASSERT_EQ(table.get_registration_descriptors().size(), 1u);
  EXPECT_EQ(table.get_registration_descriptors()[0].get_descriptor_length(), 5);
  EXPECT_TRUE(table.get_pmt_stream_info().empty());
  EXPECT_EQ(table.get_pcr_pid(), 0x100);
  EXPECT_FALSE(table.is_parsed());

  // A lone tag, the length byte of which is past the loop.
  EXPECT_EQ(failure_of_parse<PmtDVB>(pmt({0x80}, {0x00, 1, 2, 3, 4})), kMismatch);
}

TEST(PmtDVB, RefusesAProgramLoopThatReachesBehindTheRows) {
  // Into the CRC, onto its end, and past the section.
  for (const int claimed : {1, 3, 4, 5, 4095}) {
    PmtDVB table;
    EXPECT_EQ(failure_of_parse(pmt({}, {}, claimed), table), kMismatch) << claimed;
    EXPECT_TRUE(table.get_pmt_stream_info().empty());
  }
}

TEST(PmtDVB, RefusesARowOfFewerThanFiveBytes) {
  for (size_t size = 1; size < 5; ++size) {
    PmtDVB table;
    EXPECT_EQ(failure_of_parse(pmt({}, joined({row(2, 3, {}), Bytes(size)})), table), "-1: too little data")
        << size;
    EXPECT_EQ(table.get_pmt_stream_info().size(), 1u);
  }
}

TEST(PmtDVB, FindsARowThatOverrunsTheSectionAtItsEnd) {
  for (const int claimed : {4, 202, 203, 4095}) {
    PmtDVB table;
    const Bytes section = pmt({}, row(1, 2, descriptor_claiming(0x80, 200, {7}), claimed));
    EXPECT_EQ(failure_of_parse(section, table), kMismatch) << claimed;
    ASSERT_EQ(table.get_pmt_stream_info().size(), 1u);
    const auto& last = table.get_pmt_stream_info()[0];
    EXPECT_EQ(last.get_es_info_length(), claimed);
    // The bytes of the section, then zeros.
    ASSERT_EQ(last.get_user_private_descriptors().size(), 1u);
    const Bytes& data = last.get_user_private_descriptors()[0].get_private_data();
    EXPECT_EQ(data, joined({{7}, Bytes(section.end() - 4, section.end()), Bytes(195)}));
  }
}

TEST(PmtDVB, DoesNotNoticeADescriptorThatOverrunsTheLoopOfItsRow) {
  const auto table = parsed_table<PmtDVB>(pmt({}, joined({row(1, 2, {0x80}), row(3, 4, {})})));
  const auto& rows = table.get_pmt_stream_info();
  ASSERT_EQ(rows.size(), 2u);
  ASSERT_EQ(rows[0].get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(rows[0].get_user_private_descriptors()[0].get_private_data(), (Bytes{0xE0, 0x04, 0xF0}));
  EXPECT_EQ(rows[1].get_elementary_pid(), 4);
}

TEST(PmtDVB, ReadsItsRowOnItsOwn) {
  Bytes bytes = row(0x1B, 0x123, joined({descriptor(0x52, {1}), descriptor(0xC0, {2})}));
  int size = static_cast<int>(bytes.size()) + 7;
  const PmtDVB::ElementaryStream made(reinterpret_cast<_PMT_INFO*>(bytes.data()), size, true,
                                      bytes.data() - 20);
  EXPECT_EQ(size, 11);
  EXPECT_EQ(made.get_stream_type(), 0x1B);
  EXPECT_EQ(made.get_elementary_pid(), 0x123);
  EXPECT_EQ(made.get_descriptor_pos(), (std::vector<int>{25, 28}));
  const PmtDVB::ElementaryStream copy = made;
  EXPECT_EQ(copy.get_stream_identifier_descriptors().size(), 1u);
  EXPECT_EQ(copy.get_user_private_descriptors().size(), 1u);

  size = 5;
  const PmtDVB::ElementaryStream other(ByteView(bytes.data()), size, false, ByteView(bytes.data()));
  EXPECT_EQ(size, 11);  // not held against the five
  EXPECT_TRUE(other.get_descriptor_pos().empty());
  size = 4;
  EXPECT_EQ(
      failure([&] { PmtDVB::ElementaryStream(ByteView(bytes.data()), size, false, ByteView(bytes.data())); }),
      "-1: too little data");
}

TEST(PmtDVB, RefusesADescriptorThatItsClassRefuses) {
  PmtDVB table;
  EXPECT_EQ(
      failure_of_parse(pmt(joined({descriptor(0x05, text("ABCD")), descriptor(0x0A, Bytes(5))}), {}), table),
      "-1: descriptor length mismatch");
  EXPECT_EQ(table.get_registration_descriptors().size(), 1u);
  EXPECT_TRUE(table.get_ISO_639_language_descriptors().empty());
  EXPECT_FALSE(table.is_parsed());
}

TEST(PmtDVB, HasItsPositionsOnlyIfItKeepsTheSection) {
  const auto table = parsed_table<PmtDVB>(kSection, true);
  EXPECT_EQ(table.get_section_raw_bytes(), kSection);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{4, 12, 18}));
  const auto& rows = table.get_pmt_stream_info();
  EXPECT_EQ(rows[0].get_descriptor_pos(), std::vector<int>{27});
  EXPECT_EQ(rows[1].get_descriptor_pos(), (std::vector<int>{35, 41}));
  EXPECT_TRUE(rows[2].get_descriptor_pos().empty());
  const auto tag_at = [&table](int position) { return table.get_section_ptr_by_desc_pos(position)[0]; };
  EXPECT_EQ(tag_at(4), 0x09);
  EXPECT_EQ(tag_at(12), 0x05);
  EXPECT_EQ(tag_at(18), 0x3F);
  EXPECT_EQ(tag_at(27), 0x52);
  EXPECT_EQ(tag_at(35), 0x0A);
  EXPECT_EQ(tag_at(41), 0x0E);
  EXPECT_EQ(table.get_section_ptr_by_desc_pos(55), nullptr);

  const auto other = parsed_table<PmtDVB>(kSection);
  EXPECT_TRUE(other.get_section_raw_bytes().empty());
  EXPECT_TRUE(other.get_descriptor_pos().empty());
  for (const auto& r : other.get_pmt_stream_info()) EXPECT_TRUE(r.get_descriptor_pos().empty());
  EXPECT_EQ(other.get_section_ptr_by_desc_pos(4), nullptr);
}

TEST(PmtDVB, HasATableIdOfItsOwn) {
  EXPECT_EQ(table_ids<PmtDVB>(kSection), std::vector<int>{0x02});
}

TEST(PmtDVB, WantsTheSyntaxIndicatorAndTakesAnyReservedBits) {
  expect_syntax_indicator_and_any_reserved_bits<PmtDVB>(0x02, {0xE0, 0, 0, 0});
}

TEST(PmtDVB, DoublesWhatItHoldsWhenItIsNotReset) {
  auto table = parsed_table<PmtDVB>(kSection, true);
  table.Parse(kSection.data(), true);
  EXPECT_EQ(table.get_pmt_stream_info().size(), 6u);
  EXPECT_EQ(table.get_CA_descriptors().size(), 2u);
  EXPECT_EQ(table.get_general_descriptors().size(), 2u);
  EXPECT_EQ(table.get_descriptor_pos(), (std::vector<int>{4, 12, 18, 4, 12, 18}));

  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_TRUE(table.get_pmt_stream_info().empty());
  EXPECT_TRUE(table.get_CA_descriptors().empty());
  EXPECT_TRUE(table.get_general_descriptors().empty());
  EXPECT_TRUE(table.get_descriptor_pos().empty());
  EXPECT_EQ(table.get_section_raw_bytes(), kSection);
  EXPECT_EQ(table.get_pcr_pid(), 0x1FE);
  EXPECT_EQ(table.get_program_number(), 0x1234);
  table.Parse(kSection.data(), false);
  EXPECT_EQ(report(table), kReport);
}

TEST(PmtDVB, PrintsTheDescriptorsOfSomeClassesOnly) {
  const auto program = parsed_table<PmtDVB>(pmt(many_descriptors(), {}));
  EXPECT_EQ(tags_in(report(program)), "09 65 0A 02 03 11 0F 0D");
  const auto stream = parsed_table<PmtDVB>(pmt({}, row(1, 1, many_descriptors())));
  EXPECT_EQ(tags_in(report(stream)), "09 65 56 0A 02 03 11 0F 0D 52");
  EXPECT_EQ(stream.get_pmt_stream_info().at(0).get_service_descriptors().size(), 1u);
  // The document has them all.
  EXPECT_NE(saved(program).find("<registration_descriptor "), std::string::npos);
  EXPECT_NE(saved(stream).find("<user_private_descriptor "), std::string::npos);
}

TEST(PmtDVB, LeavesTheStreamAsItsHeaderDid) {
  const auto table = parsed_table<PmtDVB>(kSection);
  std::ostringstream stream;
  stream << std::dec << std::left;
  stream.fill('*');
  table.dump_state(stream);
  EXPECT_EQ(stream.str(), kReport);
  EXPECT_EQ(stream.flags() & std::ios::basefield, std::ios::hex);
  EXPECT_EQ(stream.flags() & std::ios::adjustfield, std::ios::right);
  EXPECT_TRUE(stream.flags() & std::ios::unitbuf);
  EXPECT_TRUE(stream.flags() & std::ios::uppercase);
  EXPECT_EQ(stream.fill(), '0');
  EXPECT_EQ(stream.width(), 0);
}

TEST(PmtDVB, PrintsARowInTheFillOfTheStream) {
  const auto table = parsed_table<PmtDVB>(pmt({}, row(0x0B, 0x1A, {})));
  EXPECT_EQ(report(table.get_pmt_stream_info()[0]), "stream_type:  b\nelementary_PID:   1a\n");
}

TEST(PmtDVB, NeedsEachAttribute) {
  expect_each_attribute_of_table_needed<PmtDVB>(kXml);
}

TEST(PmtDVB, SaysWhatItsDocumentLacks) {
  const std::string empty =
      R"(<pmt table_id="2" syntax_indicator="1" section_length="0" context_id="0" version_number="0")"
      R"( section_number="0" last_section_number="0" current_next_indicator="0" crc32="0" pcr="0">)"
      R"(<stream_infos><x stream_type="1" elementary_pid="2" es_info_length="3"><descriptors /></x>)"
      R"(</stream_infos><descriptors /></pmt>)";
  const std::string row_of_empty = "<descriptors /></x>";
  EXPECT_EQ(failure_of_load<PmtDVB>(empty, "<descriptors /></pmt>", "<descriptors /></pmt>"), "nothing");
  EXPECT_EQ(failure_of_load<PmtDVB>(empty, "stream_infos><x", "y><stream_infos /></y><stream_infos><x"),
            "nothing");
  std::string without_list = empty;
  without_list.erase(empty.find("<stream_infos>"),
                     empty.find("<descriptors /></pmt>") - empty.find("<stream_infos>"));
  EXPECT_EQ(failure_of_load<PmtDVB>(without_list, "<descriptors />", "<descriptors />"),
            "-1: failed to get program_infos node");
  // An absent loop is an empty one.
  EXPECT_EQ(failure_of_load<PmtDVB>(empty, row_of_empty, "</x>"), "nothing");
  EXPECT_EQ(failure_of_load<PmtDVB>(empty, "<descriptors /></pmt>", "</pmt>"), "nothing");

  // What was read until a failure stays.
  const auto document = xml::Document::from_text(
      std::string(empty).replace(empty.find("<descriptors /></pmt>"), std::string::npos,
                                 R"(<descriptors><CA_descriptor /></descriptors></pmt>)"));
  PmtDVB table;
  EXPECT_EQ(failure([&] { table.ParseDOM(document.root()); }), "-1: failed to get descriptor_id");
  EXPECT_EQ(table.get_pmt_stream_info().size(), 1u);
  EXPECT_FALSE(table.is_parsed());
}

TEST(PmtDVB, SaysWhichStepOfItsLoadFails) {
  const auto step = [](auto... arguments) { return failure_of_step<PmtDVB>(arguments...); };
  EXPECT_EQ(step("none"), "nothing");
  EXPECT_EQ(step("get_attributes", 1), "-1: failed to get attribute map");
  EXPECT_EQ(step("getNamedItem", 9, S_FALSE), "-1: failed to get crc32");
  EXPECT_EQ(step("get_attributes", 2), "-1: failed");
  EXPECT_EQ(step("getNamedItem", 10, S_FALSE), "-1: failed");
  EXPECT_EQ(step("selectSingleNode", 1), "-1: failed to get program_infos node");
  EXPECT_EQ(step("get_childNodes", 1), "-1: failed to get program_info list");
  EXPECT_EQ(step("get_length", 1), "-1: failed to get length");
  EXPECT_EQ(step("get_item", 1), "-1: failed to get program_info node");
  EXPECT_EQ(step("get_attributes", 3), "-1: failed");
  for (const int nth : {11, 12, 13}) EXPECT_EQ(step("getNamedItem", nth, S_FALSE), "-1: failed");
  for (const int nth : {2, 3}) {  // the loop of the row, then that of the program
    EXPECT_EQ(step("selectSingleNode", nth), "-1: failed to get descriptors node");
    EXPECT_EQ(step("get_childNodes", nth), "-1: failed to get descriptors node list");
    EXPECT_EQ(step("get_length", nth), "-1: failed to get descriptors node list length");
    EXPECT_EQ(step("get_item", nth), "-1: failed to get item");
    EXPECT_EQ(step("get_nodeName", nth - 1), "-1: failed to get node name");
  }
}
