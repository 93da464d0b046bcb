// The rating region table, and those of directed channel change.

#include "tests/atsc/tables.h"
#include "tests/support/table_cases.h"

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/dccsct.h>
#include <quillon/atsc/dcct.h>
#include <quillon/atsc/rrt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Dimension = AtscRRT::Dimension;
using Value = Dimension::Value;
using DccTest = AtscDCCT::DCCTest;
using Term = DccTest::DCCTerm;
using Update = AtscDCCSCT::Update;

// The CRCs are from a calculator of its own.
const Bytes kRrt = {
    0xCA,                                          // table_id
    0xF0, 0x1C,                                    // section_length 28
    0xFF, 0x01,                                    // reserved, rating_region
    0xC7, 0x00, 0x00,                              // version 3, current; section 0 of 0
    0x00,                                          // protocol_version
    0x02, 'U',  'S',                               // rating_region_name
    0x01,                                          // dimensions_defined
    0x01, 'D',  0xF0,                              // dimension_name, and the byte after it
    0xF2,                                          // graduated_scale 1, values_defined 2
    0x01, 'X',  0x02, 'Y',  'Y', 0x00, 0x01, 'Z',  //
    0xFC, 0x00,                                    // descriptors_length
    0x96, 0x51, 0x0B, 0xCD,                        // CRC_32
};

const Bytes kDcct = {
    0xD3,                    // table_id
    0xF0, 0x33,              // section_length 51
    0x12, 0x34,              // dcc_subtype, dcc_id
    0xC7, 0x00, 0x00,        // version 3, current; section 0 of 0
    0x00, 0x01,              // protocol_version, dcc_test_count
    0xF0, 0x1C, 0xFE, 0x05,  // dcc_context 1, from channel 7.517
    0xF0, 0x20, 0xFF, 0x03,  // to channel 8.771
    0x4B, 0x4A, 0x3F, 0x2E,  // dcc_start_time
    0xCB, 0x4A, 0x3F, 0x2F,  // dcc_end_time
    0x01,                    // dcc_term_count
    0x17,                    // dcc_selection_type
    0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0xFC, 0x02, 0xAA, 0x00,  // descriptors of the term
    0xFC, 0x03, 0xAB, 0x01, 0xE0,                                            // descriptors of the test
    0xFC, 0x03, 0x80, 0x01, 0xFF,                                            // descriptors of the table
    0x40, 0xCB, 0xA8, 0x29,                                                  // CRC_32
};

const Bytes kDccsct = {
    0xD4,                    // table_id
    0xF0, 0x16,              // section_length 22
    0x00, 0x00,              // dccsct_type
    0xC7, 0x00, 0x00,        // version 3, current; section 0 of 0
    0x00, 0x01,              // protocol_version, updates_defined
    0x01, 0x01, 0x2A,        // a new genre
    0xFC, 0x00,              // update_descriptors_length
    0xFC, 0x02,              // dccsct_descriptors_length
    0x55, 0x55,              // passed over
    0xAA, 0x00,              // at byte 11 of the body
    0x40, 0x0B, 0xC2, 0xDC,  // CRC_32
};

const std::string kRrtMismatch = "-1: AtscRRT: descriptor start end mismatch";
const std::string kDimensionMismatch = "-1: AtscRRT::Dimension: descriptor start end mismatch";
const std::string kTestMismatch = "-1: AtscDCCT::DCCTest: descriptor start end mismatch";
const std::string kTermMismatch = "-1: AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch";
const std::string kUpdateMismatch = "-1: AtscDCCSCT::Update descriptor start end mismatch";

const Bytes kGenre = descriptor(0xAB, {0xE0});

Bytes length_of(size_t length) {
  return bits({{6, 63, "reserved"}, {10, length, "length"}});
}
// Descriptors with their length in front.
Bytes loop(const Bytes& descriptors, int length_change = 0) {
  return joined({length_of(descriptors.size() + static_cast<size_t>(length_change)), descriptors});
}

Bytes rrt(uint8_t dimensions, const Bytes& rest) {
  return long_section(0xCA, joined({Bytes{0, 1, 'R', dimensions}, rest}));
}
Bytes dimension(uint8_t values_defined, const Bytes& values, const Bytes& name = {}) {
  return joined({Bytes{static_cast<uint8_t>(name.size())}, name, Bytes{0xFF, values_defined}, values});
}
Bytes value(uint8_t abbreviation, uint8_t text) {
  return joined({Bytes{abbreviation}, Bytes(abbreviation, 0xFF), Bytes{text}, Bytes(text, 0xFF)});
}

Bytes term(const Bytes& descriptors, int length_change = 0) {
  return joined({Bytes{0x05}, Bytes(8, 0xFF), loop(descriptors, length_change)});
}
// `rest` are the terms, and the descriptors with their length.
Bytes test_of(uint8_t terms, const Bytes& rest) {
  return joined({Bytes(16), Bytes{terms}, rest});
}
Bytes dcct(uint8_t tests, const Bytes& rest) {
  return long_section(0xD3, joined({Bytes{0, tests}, rest}));
}

Bytes update(uint8_t type, const Bytes& data, const Bytes& descriptors, int length_change = 0) {
  return joined({Bytes{type, static_cast<uint8_t>(data.size())}, data, loop(descriptors, length_change)});
}
Bytes dccsct(uint8_t updates, const Bytes& rest) {
  return long_section(0xD4, joined({Bytes{0, updates}, rest}));
}

template <class T>
size_t genres(const T& owner) {
  return owner.get_atsc_genre_descriptor().size();
}

const TableCases kTables = {table_case<AtscRRT>("AtscRRT", "atsc_rrt", kRrt),
                            table_case<AtscDCCT>("AtscDCCT", "atsc_dcct", kDcct),
                            table_case<AtscDCCSCT>("AtscDCCSCT", "atsc_dccsct", kDccsct)};

}  // namespace

TEST(AtscRRT, ReadsASection) {
  const auto table = parsed<AtscRRT>(kRrt);
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.protocol_version, 0);
  EXPECT_EQ(table.rating_region_name_length, 2);
  EXPECT_TRUE(table.rating_region_name_text.strings.empty());
  EXPECT_EQ(table.dimensions_defined, 1);
  EXPECT_EQ(table.descriptors_length, 0);
  ASSERT_EQ(table.dimensions.size(), 1u);
  const Dimension& only = table.dimensions[0];
  EXPECT_EQ(only.dimension_name_length, 1);
  EXPECT_TRUE(only.dimension_name_text.strings.empty());
  EXPECT_EQ(only.graduated_scale, 1);
  EXPECT_EQ(only.values_defined, 2);
  ASSERT_EQ(only.values.size(), 2u);
  EXPECT_EQ(only.values[0].abbrev_rating_value_length, 1);
  EXPECT_EQ(only.values[0].rating_value_length, 2);
  EXPECT_EQ(only.values[1].abbrev_rating_value_length, 0);
  EXPECT_EQ(only.values[1].rating_value_length, 1);
  EXPECT_TRUE(only.values[1].abbrev_rating_value_text.strings.empty());
  EXPECT_TRUE(only.values[1].rating_value_text.strings.empty());
}

TEST(AtscRRT, PrintsItsHeaderAlone) {
  EXPECT_EQ(report(parsed<AtscRRT>(kRrt)),
            "table name: rating_region_table\n"
            "table_id CA\n"
            "section_length 001C\n"
            "context_id FF01\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 96510BCD\n");
}

TEST(AtscRRT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(saved(parsed<AtscRRT>(kRrt), "rrt"),
            R"(<rrt table_id="202" syntax_indicator="1" section_length="28" context_id="65281")"
            R"( version_number="3" section_number="0" last_section_number="0" current_next_indicator="1")"
            R"( crc32="-1773073459" />)");
  expect_descriptors_loaded<AtscRRT>(0xCA);
}

TEST(AtscRRT, ReadsItsDescriptorsBehindTheNameIfThereIsNoDimension) {
  for (const size_t name : {0u, 1u, 255u}) {
    const auto table = parsed<AtscRRT>(long_section(
        0xCA, joined({Bytes{7, static_cast<uint8_t>(name)}, Bytes(name, 0xFF), Bytes{0}, loop(kGenre)})));
    EXPECT_EQ(table.protocol_version, 7);
    EXPECT_EQ(table.rating_region_name_length, static_cast<int>(name));
    EXPECT_EQ(table.dimensions_defined, 0);
    EXPECT_TRUE(table.dimensions.empty());
    EXPECT_EQ(table.descriptors_length, 3);
    EXPECT_EQ(genres(table), 1u);
  }
  // What follows them is not looked at.
  EXPECT_EQ(genres(parsed<AtscRRT>(rrt(0, joined({loop(kGenre), Bytes(9, 0xFF)})))), 1u);
  for (const int change : {-1, 1, 0x200})
    EXPECT_EQ(failure_of<AtscRRT>(rrt(0, joined({loop(kGenre, change), Bytes(1)}))), kRrtMismatch) << change;
}

TEST(AtscRRT, HoldsOneDimensionAtMost) {
  const Bytes one = dimension(1, value(2, 3));
  for (const uint8_t told : Bytes{1, 2, 255}) {
    const auto table = parsed<AtscRRT>(rrt(told, joined({one, length_of(0)})));
    EXPECT_EQ(table.dimensions_defined, told);
    EXPECT_EQ(table.dimensions.size(), 1u);
  }
  EXPECT_EQ(failure_of<AtscRRT>(rrt(2, joined({one, one, length_of(0)}))), kDimensionMismatch);
  EXPECT_EQ(failure_of<AtscRRT>(rrt(1, joined({one, loop(kGenre)}))), kDimensionMismatch);
}

TEST(AtscRRT, BeginsNoDimensionInTheLastTwoBytesBeforeTheCrc) {
  EXPECT_TRUE(parsed<AtscRRT>(rrt(1, Bytes(2))).dimensions.empty());
  EXPECT_EQ(failure_of<AtscRRT>(rrt(1, Bytes(3))), kDimensionMismatch);
}

TEST(AtscRRT, ReadsALengthBehindADimensionThatOnlyTheCrcCanFill) {
  for (const size_t length : {1u, 5u, 0x3FFu})
    EXPECT_EQ(failure_of<AtscRRT>(rrt(1, joined({dimension(0, {}), length_of(length)}))), kRrtMismatch);
  // A name for which the CRC is a descriptor of two bytes.
  Bytes section = rrt(1, joined({dimension(0, {}), length_of(2)}));
  while (section[section.size() - 3] != 0) {
    ++section[10];
    repair_crc(section);
  }
  const auto table = parsed<AtscRRT>(section);
  EXPECT_EQ(table.descriptors_length, 2);
}

TEST(AtscRRT, KeepsNoPositions) {
  EXPECT_TRUE(parsed<AtscRRT>(rrt(0, loop(kGenre)), true).get_descriptor_pos().empty());
}

TEST(AtscRRT, ReadsADimension) {
  for (const size_t size : {0u, 1u, 20u, 255u}) {
    const Bytes bytes =
        dimension(0xE0 | 0x10 | 3, joined({value(0, 0), value(1, 2), value(255, 255)}), Bytes(size, 0xFF));
    const Read<Dimension> read(bytes);
    EXPECT_EQ(read.used, static_cast<int>(bytes.size()));  // as it was
    EXPECT_EQ(read.row.dimension_name_length, static_cast<int>(size));
    EXPECT_EQ(read.row.graduated_scale, 1);
    EXPECT_EQ(read.row.values_defined, 3);
    ASSERT_EQ(read.row.values.size(), 3u);
    EXPECT_EQ(read.row.values[2].abbrev_rating_value_length, 255);
    EXPECT_EQ(read.row.values[2].rating_value_length, 255);
  }
  EXPECT_EQ(Read<Dimension>(dimension(0xEF, {})).row.graduated_scale, 0);
  EXPECT_EQ(Read<Dimension>(dimension(0x1F, {})).row.values_defined, 15);  // fewer will do
}

TEST(AtscRRT, NeedsValuesThatFillTheDimension) {
  EXPECT_EQ(row_refusal<Dimension>(dimension(0, {})), "nothing");
  EXPECT_EQ(row_refusal<Dimension>(dimension(0, Bytes(1))), kDimensionMismatch);
  EXPECT_EQ(row_refusal<Dimension>(dimension(0, {}), 2), kDimensionMismatch);
  EXPECT_EQ(row_refusal<Dimension>(dimension(1, joined({value(1, 1), value(1, 1)}))), kDimensionMismatch);
  EXPECT_EQ(row_refusal<Dimension>(dimension(1, value(1, 1)), 6), kDimensionMismatch);
  EXPECT_EQ(row_refusal<Dimension>(dimension(2, value(1, 1))), "nothing");
}

TEST(AtscRRT, ReadsAValue) {
  const Read<Value> read(value(3, 5), 0);
  EXPECT_EQ(read.used, 10);
  EXPECT_EQ(read.row.abbrev_rating_value_length, 3);
  EXPECT_EQ(read.row.rating_value_length, 5);
  EXPECT_EQ(Read<Value>(value(255, 255)).used, 512);
}

TEST(AtscRRT, IsNotEmptiedByReset) {
  auto table = parsed<AtscRRT>(kRrt);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.dimensions.size(), 1u);
}

TEST(AtscRRT, AcceptsItsHeader) {
  expect_header<AtscRRT>(0xCA, Bytes(5), false);
}

TEST(AtscRRT, StaysWithinAnySection) {
  expect_bounded<AtscRRT>(kRrt, {kRrtMismatch, kDimensionMismatch});
  expect_bounded<AtscRRT>(rrt(0, loop(joined({kGenre, kGenre}))), {kRrtMismatch, kDimensionMismatch});
}

TEST(AtscDCCT, ReadsASection) {
  const auto table = parsed<AtscDCCT>(kDcct);
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.protocol_version, 0);
  EXPECT_EQ(table.dcc_test_count, 1);
  EXPECT_EQ(table.additional_descriptors_length, 3);
  EXPECT_EQ(table.get_atsc_stuffing_descriptor().size(), 1u);
  ASSERT_EQ(table.tests.size(), 1u);
  const DccTest& test = table.tests[0];
  EXPECT_EQ(test.dcc_context, 1);
  EXPECT_EQ(test.dcc_from_major_channel_number, 7);
  EXPECT_EQ(test.dcc_from_minor_channel_number, 517);
  EXPECT_EQ(test.dcc_to_major_channel_number, 8);
  EXPECT_EQ(test.dcc_to_minor_channel_number, 771);
  EXPECT_EQ(test.dcc_start_time, 0x4B4A3F2E);
  EXPECT_EQ(test.dcc_end_time, -0x34B5C0D1);
  EXPECT_EQ(test.dcc_term_count, 1);
  EXPECT_EQ(test.dcc_test_descriptors_length, 3);
  EXPECT_EQ(genres(test), 1u);
  ASSERT_EQ(test.terms.size(), 1u);
  EXPECT_EQ(test.terms[0].dcc_selection_type, 0x17);
  EXPECT_EQ(test.terms[0].dcc_selection_id, 0u);
  EXPECT_EQ(test.terms[0].dcc_term_descriptors_length, 2);
  EXPECT_EQ(test.terms[0].get_atsc_redistribution_control_descriptor().size(), 1u);
}

TEST(AtscDCCT, PrintsItsHeaderAlone) {
  EXPECT_EQ(report(parsed<AtscDCCT>(kDcct)),
            "table name: directed_channel_change_table\n"
            "table_id D3\n"
            "section_length 0033\n"
            "context_id 1234\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 40CBA829\n");
}

TEST(AtscDCCT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(saved(parsed<AtscDCCT>(kDcct), "dcct"),
            R"(<dcct table_id="211" syntax_indicator="1" section_length="51" context_id="4660")"
            R"( version_number="3" section_number="0" last_section_number="0" current_next_indicator="1")"
            R"( crc32="1087088681" />)");
  expect_descriptors_loaded<AtscDCCT>(0xD3);
}

TEST(AtscDCCT, TakesEachBitOfATestForItsField) {
  expect_places<DccTest>(17,
                         {{&DccTest::dcc_context, 0, 1},
                          {&DccTest::dcc_from_major_channel_number, 4, 10},
                          {&DccTest::dcc_from_minor_channel_number, 2 * 8 + 6, 10},
                          {&DccTest::dcc_to_major_channel_number, 4 * 8 + 4, 10},
                          {&DccTest::dcc_to_minor_channel_number, 6 * 8 + 6, 10},
                          {&DccTest::dcc_start_time, 8 * 8, 32},
                          {&DccTest::dcc_end_time, 12 * 8, 32},
                          {&DccTest::dcc_term_count, 16 * 8, 8}},
                         {});
  for (const size_t length : {2u, 4u, 8u, 16u, 32u, 64u, 128u, 256u, 512u})
    EXPECT_EQ(Read<DccTest>(test_of(0, loop(Bytes(length)))).row.dcc_test_descriptors_length,
              static_cast<int>(length));
}

TEST(AtscDCCT, TakesEachBitOfATermForItsField) {
  expect_places<Term>(10, {{&Term::dcc_selection_type, 0, 8}, {&Term::dcc_term_descriptors_length, 78, 10}},
                      {});
  const Read<Term> read(term(joined({kGenre, kGenre})), 0);
  EXPECT_EQ(read.used, 17);
  EXPECT_EQ(read.row.dcc_term_descriptors_length, 6);
  EXPECT_EQ(read.row.dcc_selection_id, 0u);
  EXPECT_EQ(genres(read.row), 2u);
  EXPECT_EQ(Read<Term>(term({})).used, 11);
}

TEST(AtscDCCT, GivesTheBytesOfATest) {
  EXPECT_EQ(Read<DccTest>(test_of(0, loop({}))).used, 19);
  const Read<DccTest> read(joined({test_of(2, joined({term(kGenre), term({}), loop(kGenre)})), Bytes(50)}));
  EXPECT_EQ(read.used, 17 + 14 + 11 + 5);
  ASSERT_EQ(read.row.terms.size(), 2u);
  EXPECT_EQ(genres(read.row.terms[0]), 1u);
  EXPECT_EQ(read.row.dcc_test_descriptors_length, 3);
}

TEST(AtscDCCT, ReadsTermsThatBeginBeforeTheLastTwoBytesOfATest) {
  const Bytes bytes = test_of(3, Bytes(3 * 11 + 2));
  struct Case {
    int offered;
    size_t terms;
  };
  for (const auto& [offered, terms] : {Case{-5, 0}, Case{0, 0}, Case{19, 0}, Case{20, 1}, Case{30, 1},
                                       Case{31, 2}, Case{41, 2}, Case{42, 3}, Case{54, 3}}) {
    int length = offered;
    const DccTest test(view(bytes), length, true, nullptr);
    EXPECT_EQ(test.terms.size(), terms) << offered;
    EXPECT_EQ(test.dcc_term_count, 3);
    EXPECT_EQ(length, 19 + 11 * static_cast<int>(terms));
  }
}

TEST(AtscDCCT, FailsWhenDescriptorsMissTheirEnd) {
  for (const int change : {-1, 1, 0x200}) {
    const Bytes bad_term = joined({term(kGenre, change), Bytes(1)});
    EXPECT_EQ(row_refusal<Term>(bad_term), kTermMismatch) << change;
    EXPECT_EQ(row_refusal<DccTest>(test_of(1, joined({bad_term, loop({})}))), kTermMismatch) << change;
    EXPECT_EQ(failure_of<AtscDCCT>(dcct(1, joined({test_of(1, joined({bad_term, loop({})})), loop({})}))),
              kTermMismatch);
    const Bytes bad_test = joined({test_of(0, loop(kGenre, change)), Bytes(1)});
    EXPECT_EQ(row_refusal<DccTest>(bad_test), kTestMismatch) << change;
    EXPECT_EQ(failure_of<AtscDCCT>(dcct(1, joined({bad_test, loop({})}))), kTestMismatch) << change;
    // The text is that of the rating table.
    EXPECT_EQ(failure_of<AtscDCCT>(dcct(0, joined({loop(kGenre, change), Bytes(1)}))), kRrtMismatch);
  }
}

TEST(AtscDCCT, ReadsItsOwnDescriptorsByTheirLength) {
  const auto none = parsed<AtscDCCT>(dcct(0, joined({loop(kGenre), Bytes(5, 0xFF)})));
  EXPECT_EQ(none.additional_descriptors_length, 3);
  EXPECT_EQ(genres(none), 1u);
  const auto fewer = parsed<AtscDCCT>(dcct(200, joined({test_of(0, loop({})), loop({})})));
  EXPECT_EQ(fewer.dcc_test_count, 200);
  EXPECT_EQ(fewer.tests.size(), 1u);
  EXPECT_TRUE(parsed<AtscDCCT>(dcct(0, loop(kGenre)), true).get_descriptor_pos().empty());
}

TEST(AtscDCCT, BeginsNoTestInTheLastTwoBytesBeforeTheCrc) {
  const Bytes one = test_of(0, loop({}));
  EXPECT_EQ(parsed<AtscDCCT>(dcct(2, joined({one, Bytes(2)}))).tests.size(), 1u);
  // One that begins before them ends past the section; it says of no descriptor that it is there.
  EXPECT_EQ(parsed<AtscDCCT>(dcct(2, joined({one, Bytes(3)}))).tests.size(), 2u);
}

TEST(AtscDCCT, StopsAtTheSectionsEndWhateverItsCounts) {
  AtscDCCT tests;
  const Bytes zeros = with_length(dcct(255, {}), 4095);
  // 214 tests of 19 bytes go up to the last two before the CRC, and 16 more.
  EXPECT_EQ(failure([&] { tests.Parse(zeros.data(), zeros.size(), false); }), kTestMismatch);
  EXPECT_EQ(tests.tests.size(), 214u);
  AtscDCCT terms;
  const Bytes full = with_length(dcct(1, test_of(255, {})), 4095);
  EXPECT_EQ(failure([&] { terms.Parse(full.data(), full.size(), false); }), "nothing");
  EXPECT_EQ(terms.tests.at(0).terms.size(), 255u);
  EXPECT_EQ(failure_of<AtscDCCT>(dcct(1, {})), kRrtMismatch);
  EXPECT_EQ(failure_of<AtscDCCT>(dcct(1, Bytes(1))), kRrtMismatch);
}

TEST(AtscDCCT, IsNotEmptiedByReset) {
  auto table = parsed<AtscDCCT>(kDcct);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.tests.size(), 1u);
}

TEST(AtscDCCT, AcceptsItsHeader) {
  expect_header<AtscDCCT>(0xD3, Bytes(4), false);
}

TEST(AtscDCCT, StaysWithinAnySection) {
  expect_bounded<AtscDCCT>(kDcct, {kRrtMismatch, kTestMismatch, kTermMismatch});
}

TEST(AtscDCCSCT, ReadsASection) {
  const auto table = parsed<AtscDCCSCT>(kDccsct);
  EXPECT_TRUE(table.is_parsed());
  EXPECT_EQ(table.protocol_version, 0);
  EXPECT_EQ(table.updates_defined, 1);
  EXPECT_EQ(table.dccsct_descriptors_length, 2);
  EXPECT_EQ(table.get_atsc_redistribution_control_descriptor().size(), 1u);
  ASSERT_EQ(table.updates.size(), 1u);
  EXPECT_EQ(table.updates[0].update_type, 1);
  EXPECT_EQ(table.updates[0].update_data_length, 1);
  EXPECT_EQ(table.updates[0].genre_category_code, 0x2A);
  EXPECT_EQ(table.updates[0].update_descriptors_length, 0);
  EXPECT_STREQ(table.updates[0].get_update_type_text(), "new_genre_category");
}

TEST(AtscDCCSCT, PrintsItsHeaderAlone) {
  EXPECT_EQ(report(parsed<AtscDCCSCT>(kDccsct)),
            "table name: dcc_selection_code_table\n"
            "table_id D4\n"
            "section_length 0016\n"
            "context_id 0000\n"
            "version_number 03\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 400BC2DC\n");
}

TEST(AtscDCCSCT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(saved(parsed<AtscDCCSCT>(kDccsct), "dccsct"),
            R"(<dccsct table_id="212" syntax_indicator="1" section_length="22" context_id="0")"
            R"( version_number="3" section_number="0" last_section_number="0" current_next_indicator="1")"
            R"( crc32="1074512604" />)");
  expect_descriptors_loaded<AtscDCCSCT>(0xD4);
}

TEST(AtscDCCSCT, ReadsTheCodesOfAnUpdateByItsType) {
  const Bytes data = {0xA1, 0xFE, 0x35, 'N', 'Y'};
  for (int type = 0; type < 256; ++type) {
    const Read<Update> read(update(static_cast<uint8_t>(type), data, kGenre), 0);
    EXPECT_EQ(read.used, 2 + 5 + 2 + 3);
    EXPECT_EQ(read.row.update_type, type);
    EXPECT_EQ(read.row.update_data_length, 5);
    EXPECT_EQ(read.row.genre_category_code, type == 1 ? 0xA1 : 0) << type;
    EXPECT_EQ(read.row.dcc_state_location_code, type == 2 ? 0xA1 : 0) << type;
    EXPECT_EQ(read.row.state_code, type == 3 ? 0xA1 : 0) << type;
    EXPECT_EQ(read.row.dcc_county_location_code, type == 3 ? 0x235 : 0) << type;
    EXPECT_EQ(read.row.update_descriptors_length, 3);
    EXPECT_EQ(genres(read.row), 1u);
    EXPECT_TRUE(read.row.genre_category_name_text.strings.empty());
    EXPECT_TRUE(read.row.dcc_state_location_code_text.strings.empty());
    EXPECT_TRUE(read.row.dcc_county_location_code_text.strings.empty());
  }
}

TEST(AtscDCCSCT, ReadsTheCodesOfAnUpdateWithoutDataFromWhatFollows) {
  const Read<Update> read(update(3, {}, kGenre));
  EXPECT_EQ(read.used, 7);
  EXPECT_EQ(read.row.state_code, 0xFC);
  EXPECT_EQ(read.row.dcc_county_location_code, 0x3AB);
  EXPECT_EQ(read.row.update_descriptors_length, 3);
  EXPECT_EQ(genres(read.row), 1u);
}

TEST(AtscDCCSCT, StepsOverTheDataOfAnUpdate) {
  for (const size_t size : {0u, 1u, 2u, 128u, 255u}) {
    const Read<Update> read(update(9, Bytes(size, 0xFF), kGenre));
    EXPECT_EQ(read.used, static_cast<int>(size) + 7);
    EXPECT_EQ(genres(read.row), 1u);
  }
  for (const size_t length : {2u, 4u, 8u, 16u, 32u, 64u, 128u, 256u, 512u})
    EXPECT_EQ(Read<Update>(update(0, {}, Bytes(length))).row.update_descriptors_length,
              static_cast<int>(length));
}

TEST(AtscDCCSCT, FailsWhenTheDescriptorsOfAnUpdateMissTheirEnd) {
  for (const int change : {-1, 1, 0x200}) {
    EXPECT_EQ(row_refusal<Update>(joined({update(1, {0}, kGenre, change), Bytes(1)})), kUpdateMismatch);
    EXPECT_EQ(failure_of<AtscDCCSCT>(dccsct(1, joined({update(1, {0}, kGenre, change), length_of(0)}))),
              kUpdateMismatch);
  }
}

TEST(AtscDCCSCT, SeeksItsDescriptorsAtByteElevenWhereverTheUpdatesEnd) {
  // No update: the length is at 2, and the bytes from 4 to 10 are passed over.
  const auto none = parsed<AtscDCCSCT>(dccsct(0, joined({length_of(6), Bytes(7, 0xFF), kGenre, kGenre})));
  EXPECT_TRUE(none.updates.empty());
  EXPECT_EQ(none.dccsct_descriptors_length, 6);
  EXPECT_EQ(genres(none), 2u);
  // Updates from 2 to 15: the table's descriptors are those of the update at 6, its second among them.
  const auto two = parsed<AtscDCCSCT>(
      dccsct(2, joined({update(0, {}, {}), update(1, {0}, joined({kGenre, kGenre})), length_of(6)})));
  ASSERT_EQ(two.updates.size(), 2u);
  EXPECT_EQ(genres(two.updates[1]), 2u);
  EXPECT_EQ(genres(two), 2u);
  // The text is that of a term.
  EXPECT_EQ(failure_of<AtscDCCSCT>(dccsct(0, joined({length_of(3), kGenre}))), kTermMismatch);
  EXPECT_EQ(failure_of<AtscDCCSCT>(dccsct(0, joined({length_of(2), Bytes(7), kGenre}))), kTermMismatch);
  EXPECT_TRUE(parsed<AtscDCCSCT>(dccsct(0, joined({length_of(3), Bytes(7), kGenre})), true)
                  .get_descriptor_pos()
                  .empty());
}

TEST(AtscDCCSCT, BeginsNoUpdateInTheLastTwoBytesBeforeTheCrc) {
  const Bytes one = update(0, Bytes(5), {});
  EXPECT_EQ(parsed<AtscDCCSCT>(dccsct(2, joined({one, Bytes(2)}))).updates.size(), 1u);
  // One that begins before them ends past the section; it says of no descriptor that it is there.
  EXPECT_EQ(parsed<AtscDCCSCT>(dccsct(2, joined({one, Bytes{0, 255, 0}}))).updates.size(), 2u);
}

TEST(AtscDCCSCT, NeedsNoByteElevenWithoutDescriptors) {
  for (size_t more = 0; more < 12; ++more) {
    const auto table = parsed<AtscDCCSCT>(dccsct(0, joined({length_of(0), Bytes(more)})));
    EXPECT_TRUE(table.updates.empty());
    EXPECT_EQ(table.dccsct_descriptors_length, 0);
  }
  // With some, they must lie in the section.
  EXPECT_EQ(failure_of<AtscDCCSCT>(dccsct(0, length_of(1))), kTermMismatch);
}

TEST(AtscDCCSCT, StopsAtTheSectionsEndWhateverItsCount) {
  for (const uint8_t told : Bytes{1, 2, 255}) {
    // One update that ends with the section itself: data for which the CRC ends with a length of 0.
    Bytes section = dccsct(told, joined({Bytes{0, 8}, Bytes(6)}));
    while ((section[section.size() - 2] & 3) != 0 || section.back() != 0) {
      if (++section[12] == 0) ++section[13];
      repair_crc(section);
    }
    // The length after it lies beyond the section, and is 0.
    EXPECT_EQ(parsed<AtscDCCSCT>(section).updates.size(), 1u);
  }
  AtscDCCSCT zeros;
  const Bytes longest = with_length(dccsct(255, {}), 4095);
  EXPECT_EQ(failure([&] { zeros.Parse(longest.data(), longest.size(), false); }), "nothing");
  EXPECT_EQ(zeros.updates.size(), 255u);
}

TEST(AtscDCCSCT, IsNotEmptiedByReset) {
  auto table = parsed<AtscDCCSCT>(kDccsct);
  table.reset();
  EXPECT_FALSE(table.is_parsed());
  EXPECT_EQ(table.updates.size(), 1u);
}

TEST(AtscDCCSCT, AcceptsItsHeader) {
  expect_header<AtscDCCSCT>(0xD4, Bytes(11), false);
}

TEST(AtscDCCSCT, NamesUpdateTypes) {
  expect_ranges(&Update::get_update_type_text, {{0, "Reserved"},
                                                {1, "new_genre_category"},
                                                {2, "new_state"},
                                                {3, "new_county"},
                                                {255, "Reserved for future use"}});
}

TEST(AtscDCCSCT, StaysWithinAnySection) {
  expect_bounded<AtscDCCSCT>(kDccsct, {kTermMismatch, kUpdateMismatch});
}
