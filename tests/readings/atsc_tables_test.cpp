// The tables of ATSC in both readings.

#include "tests/readings/readings.h"
#include "tests/support/table_cases.h"

#include <gtest/gtest.h>

#include <quillon/atsc/cvct.h>
#include <quillon/atsc/dccsct.h>
#include <quillon/atsc/dcct.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/rrt.h>
#include <quillon/atsc/tvct.h>

using namespace quillon;
using namespace quillon::test;

namespace {

// One string in English, of one segment: "Title".
const Bytes title = joined({{1}, text("eng"), {1, 0, 0, 7}, text("A title")});
const std::string title_text(title.begin(), title.end());

const Bytes channel = joined(
    {bits({{16, 'W', "short_name"},         {16, 'X', "short_name"},   {16, 0, "short_name"},
           {64, 0, "short_name"},           {4, 15, "reserved"},       {10, 7, "major_channel_number"},
           {10, 2, "minor_channel_number"}, {8, 4, "modulation_mode"}, {32, 0xC0000000, "carrier_frequency"},
           {16, 0x1111, "channel_TSID"},    {16, 3, "program_number"}, {2, 1, "ETM_location"},
           {1, 1, "access_controlled"},     {1, 0, "hidden"},          {1, 1, "path_select"},
           {1, 0, "out_of_band"},           {1, 1, "hide_guide"},      {3, 7, "reserved"},
           {6, 7, "service_type"},          {16, 0x2222, "source_id"}, {6, 63, "reserved"},
           {10, 3, "descriptors_length"}}),
     descriptor(0x80, {0xFF})});

}  // namespace

const Bytes eit_section = long_section(
    0xCB, joined({bits({{8, 0, "protocol_version"},
                        {8, 2, "num_events_in_section"},
                        {2, 3, "reserved"},
                        {14, 0x1234, "event_id"},
                        {32, 1450000000, "start_time"},
                        {2, 3, "reserved"},
                        {2, 1, "ETM_location"},
                        {20, 7200, "length_in_seconds"},
                        {8, 15, "title_length"}}),
                  title, bits({{4, 15, "reserved"}, {12, 3, "descriptors_length"}}), descriptor(0x80, {0xFF}),
                  bits({{2, 3, "reserved"},
                        {14, 0x1235, "event_id"},
                        {32, 0xC0000000, "start_time"},
                        {2, 3, "reserved"},
                        {2, 0, "ETM_location"},
                        {20, 1800, "length_in_seconds"},
                        {8, 0, "title_length"},
                        {4, 15, "reserved"},
                        {12, 0, "descriptors_length"}})}));

TEST(StandardAtscTables, EitHasTitles) {
  EXPECT_EQ(body_of<AtscEIT>(eit_section, Reading::kept),
            "-1: AtscTVCT::Channel: descriptor start end mismatch\n");
  EXPECT_EQ(body_of<AtscEIT>(eit_section, Reading::standard),
            "protocol_version: 0\n"
            "num_events_in_section: 2\n"
            "events: list of 2\n"
            "  event: AtscEIT::Event\n"
            "    event_id: 4660\n"
            "    start_time: 1450000000 (2025-12-17T09:46:40)\n"
            "    ETM_location: 1 (ETM located in the PTC carrying this PSIP)\n"
            "    length_in_seconds: 7200\n"
            "    title_length: 15\n"
            "    title_text: ATSCMultipleStringStructure\n"
            "      number_strings: 1\n"
            "      strings: list of 1\n"
            "        string: ATSCMultipleStringStructure::String\n"
            "          ISO_639_language_code: \"eng\"\n"
            "          number_segments: 1\n"
            "          segments: list of 1\n"
            "            segment: ATSCMultipleStringStructure::String::Segment\n"
            "              compression_type: 0 (No compression)\n"
            "              mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "              number_bytes: 7\n"
            "              compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "              decoded_text: \"A title\"\n"
            "          text: \"A title\"\n"
            "    descriptors_length: 3\n"
            "    descriptors: list of 1\n"
            "      atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "        descriptor_id: 128 (stuffing_descriptor()\n"
            "        descriptor_length: 1\n"
            "        data: ff\n"
            "  event: AtscEIT::Event\n"
            "    event_id: 4661\n"
            "    start_time: 3221225472 (2082-02-01T16:51:12)\n"
            "    ETM_location: 0 (No ETM)\n"
            "    length_in_seconds: 1800\n"
            "    title_length: 0\n"
            "    title_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    descriptors_length: 0\n"
            "    descriptors: list of 0\n");
}

const Bytes mgt_section = long_section(0xC7, joined({bits({{8, 0, "protocol_version"},
                                                           {16, 1, "tables_defined"},
                                                           {16, 0x1405, "table_type"},
                                                           {3, 7, "reserved"},
                                                           {13, 0x1D00, "table_type_PID"},
                                                           {3, 7, "reserved"},
                                                           {5, 3, "table_type_version_number"},
                                                           {32, 0xC0010203, "number_bytes"},
                                                           {4, 15, "reserved"},
                                                           {12, 0, "table_type_descriptors_length"},
                                                           {4, 15, "reserved"},
                                                           {12, 3, "descriptors_length"}}),
                                                     descriptor(0x80, {1}), descriptor(0x80, {2})}));

TEST(StandardAtscTables, MgtCountsAllBytesAndBoundsItsLoop) {
  EXPECT_EQ(body_of<AtscMGT>(mgt_section, Reading::kept),
            "protocol_version: 0\n"
            "tables_defined: 1\n"
            "tables: list of 1\n"
            "  table: AtscMGT::Table\n"
            "    table_type: 5125\n"
            "    table_type_PID: 7424\n"
            "    table_type_version_number: 3\n"
            "    number_bytes: 3221291211\n"
            "    table_type_descriptors_length: 0\n"
            "    descriptors: list of 0\n"
            "descriptors_length: 3\n"
            "descriptors: list of 2\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 01\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 02\n");
  EXPECT_EQ(body_of<AtscMGT>(mgt_section, Reading::standard),
            "protocol_version: 0\n"
            "tables_defined: 1\n"
            "tables: list of 1\n"
            "  table: AtscMGT::Table\n"
            "    table_type: 5125 (DCCT with dcc_id 0x00 – 0xFF)\n"
            "    table_type_PID: 7424\n"
            "    table_type_version_number: 3\n"
            "    number_bytes: 3221291523\n"
            "    table_type_descriptors_length: 0\n"
            "    descriptors: list of 0\n"
            "descriptors_length: 3\n"
            "descriptors: list of 1\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 01\n");
}

const Bytes tvct_section =
    long_section(0xC8, joined({bits({{8, 0, "protocol_version"}, {8, 1, "num_channels_in_section"}}), channel,
                               bits({{6, 63, "reserved"}, {10, 3, "additional_descriptors_length"}}),
                               descriptor(0x80, {1}), descriptor(0x80, {2})}));

TEST(StandardAtscTables, TvctBoundsItsLoop) {
  EXPECT_EQ(body_of<AtscTVCT>(tvct_section, Reading::kept),
            "protocol_version: 0\n"
            "num_channels_in_section: 1\n"
            "channels: list of 1\n"
            "  channel: AtscTVCT::Channel\n"
            "    short_name: \"WX\"\n"
            "    major_channel_number: 7\n"
            "    minor_channel_number: 2\n"
            "    modulation_mode: 4 (ATSC (8 VSB))\n"
            "    carrier_frequency: 3221225472\n"
            "    channel_TSID: 4369\n"
            "    program_number: 3\n"
            "    ETM_location: 1 (ETM located in the PTC carrying this PSIP)\n"
            "    access_controlled: 1\n"
            "    hidden: 0\n"
            "    hide_guide: 1\n"
            "    service_type: 7 ([Reserved for future ATSC use])\n"
            "    source_id: 8738\n"
            "    descriptors_length: 3\n"
            "    descriptors: list of 1\n"
            "      atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "        descriptor_id: 128 (stuffing_descriptor()\n"
            "        descriptor_length: 1\n"
            "        data: ff\n"
            "additional_descriptors_length: 3\n"
            "descriptors: list of 2\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 01\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 02\n");
  EXPECT_EQ(body_of<AtscTVCT>(tvct_section, Reading::standard),
            "protocol_version: 0\n"
            "num_channels_in_section: 1\n"
            "channels: list of 1\n"
            "  channel: AtscTVCT::Channel\n"
            "    short_name: \"WX\"\n"
            "    major_channel_number: 7\n"
            "    minor_channel_number: 2\n"
            "    modulation_mode: 4 (ATSC (8 VSB))\n"
            "    carrier_frequency: 3221225472\n"
            "    channel_TSID: 4369\n"
            "    program_number: 3\n"
            "    ETM_location: 1 (ETM located in the PTC carrying this PSIP)\n"
            "    access_controlled: 1\n"
            "    hidden: 0\n"
            "    hide_guide: 1\n"
            "    service_type: 7 (parameterized_service)\n"
            "    source_id: 8738\n"
            "    descriptors_length: 3\n"
            "    descriptors: list of 1\n"
            "      atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "        descriptor_id: 128 (stuffing_descriptor()\n"
            "        descriptor_length: 1\n"
            "        data: ff\n"
            "additional_descriptors_length: 3\n"
            "descriptors: list of 1\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 01\n");
}

const Bytes cvct_section =
    long_section(0xC9, joined({bits({{8, 0, "protocol_version"}, {8, 1, "num_channels_in_section"}}), channel,
                               bits({{6, 63, "reserved"}, {10, 0, "additional_descriptors_length"}})}));

TEST(StandardAtscTables, CvctHasItsFieldsInTheirPlaces) {
  EXPECT_EQ(body_of<AtscCVCT>(cvct_section, Reading::kept),
            "-1: AtscTVCT::Channel: descriptor start end mismatch\n");
  EXPECT_EQ(body_of<AtscCVCT>(cvct_section, Reading::standard),
            "protocol_version: 0\n"
            "num_channels_in_section: 1\n"
            "channels: list of 1\n"
            "  channel: AtscCVCT::Channel\n"
            "    short_name: \"WX\"\n"
            "    major_channel_number: 7\n"
            "    minor_channel_number: 2\n"
            "    modulation_mode: 4 (ATSC (8 VSB))\n"
            "    carrier_frequency: 3221225472\n"
            "    channel_TSID: 4369\n"
            "    program_number: 3\n"
            "    ETM_location: 1 (ETM located in the PTC carrying this PSIP)\n"
            "    access_controlled: 1\n"
            "    hidden: 0\n"
            "    hide_guide: 1\n"
            "    service_type: 7 (parameterized_service)\n"
            "    source_id: 8738\n"
            "    descriptors_length: 3\n"
            "    path_select: 1\n"
            "    out_of_band: 0\n"
            "    descriptors: list of 1\n"
            "      atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "        descriptor_id: 128 (stuffing_descriptor()\n"
            "        descriptor_length: 1\n"
            "        data: ff\n"
            "additional_descriptors_length: 0\n"
            "descriptors: list of 0\n");
}

const Bytes rrt_section =
    long_section(0xCA,
                 joined({{0},
                         counted(title_text),
                         bits({{8, 2, "dimensions_defined"}}),
                         counted(title_text),
                         bits({{3, 7, "reserved"}, {1, 1, "graduated_scale"}, {4, 1, "values_defined"}}),
                         counted(title_text),
                         counted(title_text),
                         {0},
                         bits({{3, 7, "reserved"}, {1, 0, "graduated_scale"}, {4, 0, "values_defined"}}),
                         bits({{6, 63, "reserved"}, {10, 3, "descriptors_length"}}),
                         descriptor(0x80, {1})}),
                 {.extension = 0xFF01});

TEST(StandardAtscTables, RrtHasTextsAndDimensions) {
  EXPECT_EQ(body_of<AtscRRT>(rrt_section, Reading::kept),
            "-1: AtscRRT::Dimension: descriptor start end mismatch\n");
  EXPECT_EQ(body_of<AtscRRT>(rrt_section, Reading::standard),
            "protocol_version: 0\n"
            "rating_region_name_length: 15\n"
            "rating_region_name_text: ATSCMultipleStringStructure\n"
            "  number_strings: 1\n"
            "  strings: list of 1\n"
            "    string: ATSCMultipleStringStructure::String\n"
            "      ISO_639_language_code: \"eng\"\n"
            "      number_segments: 1\n"
            "      segments: list of 1\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "          number_bytes: 7\n"
            "          compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "          decoded_text: \"A title\"\n"
            "      text: \"A title\"\n"
            "dimensions_defined: 2\n"
            "dimensions: list of 2\n"
            "  dimension: AtscRRT::Dimension\n"
            "    dimension_name_length: 15\n"
            "    dimension_name_text: ATSCMultipleStringStructure\n"
            "      number_strings: 1\n"
            "      strings: list of 1\n"
            "        string: ATSCMultipleStringStructure::String\n"
            "          ISO_639_language_code: \"eng\"\n"
            "          number_segments: 1\n"
            "          segments: list of 1\n"
            "            segment: ATSCMultipleStringStructure::String::Segment\n"
            "              compression_type: 0 (No compression)\n"
            "              mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "              number_bytes: 7\n"
            "              compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "              decoded_text: \"A title\"\n"
            "          text: \"A title\"\n"
            "    graduated_scale: 1\n"
            "    values_defined: 1\n"
            "    values: list of 1\n"
            "      value: AtscRRT::Dimension::Value\n"
            "        abbrev_rating_value_length: 15\n"
            "        abbrev_rating_value_text: ATSCMultipleStringStructure\n"
            "          number_strings: 1\n"
            "          strings: list of 1\n"
            "            string: ATSCMultipleStringStructure::String\n"
            "              ISO_639_language_code: \"eng\"\n"
            "              number_segments: 1\n"
            "              segments: list of 1\n"
            "                segment: ATSCMultipleStringStructure::String::Segment\n"
            "                  compression_type: 0 (No compression)\n"
            "                  mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "                  number_bytes: 7\n"
            "                  compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "                  decoded_text: \"A title\"\n"
            "              text: \"A title\"\n"
            "        rating_value_length: 15\n"
            "        rating_value_text: ATSCMultipleStringStructure\n"
            "          number_strings: 1\n"
            "          strings: list of 1\n"
            "            string: ATSCMultipleStringStructure::String\n"
            "              ISO_639_language_code: \"eng\"\n"
            "              number_segments: 1\n"
            "              segments: list of 1\n"
            "                segment: ATSCMultipleStringStructure::String::Segment\n"
            "                  compression_type: 0 (No compression)\n"
            "                  mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "                  number_bytes: 7\n"
            "                  compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "                  decoded_text: \"A title\"\n"
            "              text: \"A title\"\n"
            "  dimension: AtscRRT::Dimension\n"
            "    dimension_name_length: 0\n"
            "    dimension_name_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    graduated_scale: 0\n"
            "    values_defined: 0\n"
            "    values: list of 0\n"
            "descriptors_length: 3\n"
            "descriptors: list of 1\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 01\n");
}

const Bytes dcct_section = long_section(
    0xD3,
    joined({bits({{8, 0, "protocol_version"},
                  {8, 1, "dcc_test_count"},
                  {1, 1, "dcc_context"},
                  {3, 7, "reserved"},
                  {10, 7, "dcc_from_major_channel_number"},
                  {10, 2, "dcc_from_minor_channel_number"},
                  {4, 15, "reserved"},
                  {10, 9, "dcc_to_major_channel_number"},
                  {10, 3, "dcc_to_minor_channel_number"},
                  {32, 1450000000, "dcc_start_time"},
                  {32, 1450003600, "dcc_end_time"},
                  {8, 2, "dcc_term_count"},
                  {8, 1, "dcc_selection_type"},
                  {64, 0x8000000000000001, "dcc_selection_id"},
                  {6, 63, "reserved"},
                  {10, 3, "dcc_term_descriptors_length"}}),
            descriptor(0x80, {1}),
            bits({{8, 2, "dcc_selection_type"},
                  {64, 2, "dcc_selection_id"},
                  {6, 63, "reserved"},
                  {10, 0, "dcc_term_descriptors_length"},
                  {6, 63, "reserved"},
                  {10, 3, "dcc_test_descriptors_length"}}),
            descriptor(0x80, {2}), bits({{6, 63, "reserved"}, {10, 3, "dcc_additional_descriptors_length"}}),
            descriptor(0x80, {3})}),
    {.extension = 0x0105});

TEST(StandardAtscTables, DcctHasItsFieldsInTheirPlaces) {
  EXPECT_EQ(body_of<AtscDCCT>(dcct_section, Reading::kept),
            "-1: AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch\n");
  EXPECT_EQ(body_of<AtscDCCT>(dcct_section, Reading::standard),
            "dcc_subtype: 1\n"
            "dcc_id: 5\n"
            "protocol_version: 0\n"
            "dcc_test_count: 1\n"
            "tests: list of 1\n"
            "  test: AtscDCCT::DCCTest\n"
            "    dcc_context: 1 (channel redirect)\n"
            "    dcc_from_major_channel_number: 7\n"
            "    dcc_from_minor_channel_number: 2\n"
            "    dcc_to_major_channel_number: 9\n"
            "    dcc_to_minor_channel_number: 3\n"
            "    dcc_start_time: 1450000000 (2025-12-17T09:46:40)\n"
            "    dcc_end_time: 1450003600 (2025-12-17T10:46:40)\n"
            "    dcc_term_count: 2\n"
            "    terms: list of 2\n"
            "      term: AtscDCCT::DCCTest::DCCTerm\n"
            "        dcc_selection_type: 1\n"
            "        dcc_selection_id: 80 00 00 00 00 00 00 01\n"
            "        dcc_term_descriptors_length: 3\n"
            "        descriptors: list of 1\n"
            "          atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "            descriptor_id: 128 (stuffing_descriptor()\n"
            "            descriptor_length: 1\n"
            "            data: 01\n"
            "      term: AtscDCCT::DCCTest::DCCTerm\n"
            "        dcc_selection_type: 2\n"
            "        dcc_selection_id: 00 00 00 00 00 00 00 02\n"
            "        dcc_term_descriptors_length: 0\n"
            "        descriptors: list of 0\n"
            "    dcc_test_descriptors_length: 3\n"
            "    descriptors: list of 1\n"
            "      atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "        descriptor_id: 128 (stuffing_descriptor()\n"
            "        descriptor_length: 1\n"
            "        data: 02\n"
            "additional_descriptors_length: 3\n"
            "descriptors: list of 1\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 03\n");
}

const Bytes dccsct_section = long_section(
    0xD4,
    joined({bits({{8, 0, "protocol_version"},
                  {8, 4, "updates_defined"},
                  {8, 1, "update_type"},
                  {8, 16, "update_data_length"},
                  {8, 0x21, "genre_category_code"}}),
            title, bits({{6, 63, "reserved"}, {10, 0, "dccsct_descriptors_length"}}),
            bits({{8, 2, "update_type"}, {8, 16, "update_data_length"}, {8, 5, "dcc_state_location_code"}}),
            title, bits({{6, 63, "reserved"}, {10, 0, "dccsct_descriptors_length"}}),
            bits({{8, 3, "update_type"},
                  {8, 18, "update_data_length"},
                  {8, 6, "state_code"},
                  {6, 63, "reserved"},
                  {10, 0x155, "dcc_county_location_code"}}),
            title, bits({{6, 63, "reserved"}, {10, 3, "dccsct_descriptors_length"}}), descriptor(0x80, {1}),
            bits({{8, 9, "update_type"},
                  {8, 1, "update_data_length"},
                  {8, 0xAB, "data"},
                  {6, 63, "reserved"},
                  {10, 0, "dccsct_descriptors_length"},
                  {6, 63, "reserved"},
                  {10, 3, "dccsct_additional_descriptors_length"}}),
            descriptor(0x80, {2})}));

TEST(StandardAtscTables, DccsctHasTextsAndItsDescriptorsFollowTheirLength) {
  EXPECT_EQ(body_of<AtscDCCSCT>(dccsct_section, Reading::kept),
            "-1: AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch\n");
  EXPECT_EQ(body_of<AtscDCCSCT>(dccsct_section, Reading::standard),
            "protocol_version: 0\n"
            "updates_defined: 4\n"
            "updates: list of 4\n"
            "  update: AtscDCCSCT::Update\n"
            "    update_type: 1 (new_genre_category)\n"
            "    update_data_length: 16\n"
            "    genre_category_code: 33\n"
            "    genre_category_name_text: ATSCMultipleStringStructure\n"
            "      number_strings: 1\n"
            "      strings: list of 1\n"
            "        string: ATSCMultipleStringStructure::String\n"
            "          ISO_639_language_code: \"eng\"\n"
            "          number_segments: 1\n"
            "          segments: list of 1\n"
            "            segment: ATSCMultipleStringStructure::String::Segment\n"
            "              compression_type: 0 (No compression)\n"
            "              mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "              number_bytes: 7\n"
            "              compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "              decoded_text: \"A title\"\n"
            "          text: \"A title\"\n"
            "    dcc_state_location_code: 0\n"
            "    dcc_state_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    state_code: 0\n"
            "    dcc_county_location_code: 0\n"
            "    dcc_county_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    update_descriptors_length: 0\n"
            "    descriptors: list of 0\n"
            "  update: AtscDCCSCT::Update\n"
            "    update_type: 2 (new_state)\n"
            "    update_data_length: 16\n"
            "    genre_category_code: 0\n"
            "    genre_category_name_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    dcc_state_location_code: 5\n"
            "    dcc_state_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 1\n"
            "      strings: list of 1\n"
            "        string: ATSCMultipleStringStructure::String\n"
            "          ISO_639_language_code: \"eng\"\n"
            "          number_segments: 1\n"
            "          segments: list of 1\n"
            "            segment: ATSCMultipleStringStructure::String::Segment\n"
            "              compression_type: 0 (No compression)\n"
            "              mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "              number_bytes: 7\n"
            "              compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "              decoded_text: \"A title\"\n"
            "          text: \"A title\"\n"
            "    state_code: 0\n"
            "    dcc_county_location_code: 0\n"
            "    dcc_county_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    update_descriptors_length: 0\n"
            "    descriptors: list of 0\n"
            "  update: AtscDCCSCT::Update\n"
            "    update_type: 3 (new_county)\n"
            "    update_data_length: 18\n"
            "    genre_category_code: 0\n"
            "    genre_category_name_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    dcc_state_location_code: 0\n"
            "    dcc_state_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    state_code: 6\n"
            "    dcc_county_location_code: 341\n"
            "    dcc_county_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 1\n"
            "      strings: list of 1\n"
            "        string: ATSCMultipleStringStructure::String\n"
            "          ISO_639_language_code: \"eng\"\n"
            "          number_segments: 1\n"
            "          segments: list of 1\n"
            "            segment: ATSCMultipleStringStructure::String::Segment\n"
            "              compression_type: 0 (No compression)\n"
            "              mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "              number_bytes: 7\n"
            "              compressed_string_bytes: 41 20 74 69 74 6c 65\n"
            "              decoded_text: \"A title\"\n"
            "          text: \"A title\"\n"
            "    update_descriptors_length: 3\n"
            "    descriptors: list of 1\n"
            "      atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "        descriptor_id: 128 (stuffing_descriptor()\n"
            "        descriptor_length: 1\n"
            "        data: 01\n"
            "  update: AtscDCCSCT::Update\n"
            "    update_type: 9 (Reserved for future use)\n"
            "    update_data_length: 1\n"
            "    genre_category_code: 0\n"
            "    genre_category_name_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    dcc_state_location_code: 0\n"
            "    dcc_state_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    state_code: 0\n"
            "    dcc_county_location_code: 0\n"
            "    dcc_county_location_code_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "    update_descriptors_length: 0\n"
            "    descriptors: list of 0\n"
            "dccsct_descriptors_length: 3\n"
            "descriptors: list of 1\n"
            "  atsc_stuffing_descriptor: DescriptorAtscStuffing\n"
            "    descriptor_id: 128 (stuffing_descriptor()\n"
            "    descriptor_length: 1\n"
            "    data: 02\n");
}

const Bytes ett_section = long_section(0xCC, joined({bits({{8, 0, "protocol_version"},
                                                           {16, 0xC001, "source_id"},
                                                           {14, 0x1234, "event_id"},
                                                           {2, 2, "an event"},
                                                           {8, 1, "number_strings"}}),
                                                     text("eng"),
                                                     bits({{8, 4, "number_segments"},
                                                           {8, 2, "compression_type"},
                                                           {8, 0, "mode"},
                                                           {8, 8, "number_bytes"},
                                                           {64, 0x9cecfea3332ff580, "Lorem ipsum."},
                                                           {8, 0, "compression_type"},
                                                           {8, 0x3E, "mode"},
                                                           {8, 3, "number_bytes"},
                                                           {8, 0x12, "SC2"},
                                                           {8, 0x9C, "Cyrillic"},
                                                           {8, 0xBE, "Cyrillic"},
                                                           {8, 0, "compression_type"},
                                                           {8, 0x3F, "mode"},
                                                           {8, 4, "number_bytes"},
                                                           {32, 0xD83DDE00, "UTF-16"},
                                                           {8, 0, "compression_type"},
                                                           {8, 0x12, "mode"},
                                                           {8, 1, "number_bytes"},
                                                           {8, 'x', "reserved"}})}));

TEST(StandardAtscTables, EttIsDecompressed) {
  EXPECT_EQ(body_of<AtscETT>(ett_section, Reading::kept),
            "protocol_version: 0\n"
            "ETM_id: 3221309650\n"
            "source_id: 49153\n"
            "event_id: 4660\n"
            "extended_text_message: ATSCMultipleStringStructure\n"
            "  number_strings: 1\n"
            "  strings: list of 1\n"
            "    string: ATSCMultipleStringStructure::String\n"
            "      ISO_639_language_code: \"eng\"\n"
            "      number_segments: 4\n"
            "      segments: list of 4\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 2 (Huffman coding using standard encode/decode tables defined in "
            "Table C.6 and C.7 in Annex C.)\n"
            "          mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "          number_bytes: 8\n"
            "          compressed_string_bytes: 9c ec fe a3 33 2f f5 80\n"
            "          decoded_text: \"\"\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 62 (Select Standard Compression Scheme for Unicode (SCSU))\n"
            "          number_bytes: 3\n"
            "          compressed_string_bytes: 12 9c be\n"
            "          decoded_text: \"\"\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 63 (Select Unicode, UTF-16 Form)\n"
            "          number_bytes: 4\n"
            "          compressed_string_bytes: d8 3d de 00\n"
            "          decoded_text: \"\"\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 18 (Select Unicode Code Range 0x1000 – 0x10FF)\n"
            "          number_bytes: 1\n"
            "          compressed_string_bytes: 78\n"
            "          decoded_text: \"\"\n");
  EXPECT_EQ(body_of<AtscETT>(ett_section, Reading::standard),
            "protocol_version: 0\n"
            "ETM_id: 3221309650\n"
            "source_id: 49153\n"
            "event_id: 4660\n"
            "extended_text_message: ATSCMultipleStringStructure\n"
            "  number_strings: 1\n"
            "  strings: list of 1\n"
            "    string: ATSCMultipleStringStructure::String\n"
            "      ISO_639_language_code: \"eng\"\n"
            "      number_segments: 4\n"
            "      segments: list of 4\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 2 (Huffman coding using standard encode/decode tables defined in "
            "Table C.6 and C.7 in Annex C.)\n"
            "          mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "          number_bytes: 8\n"
            "          compressed_string_bytes: 9c ec fe a3 33 2f f5 80\n"
            "          decoded_text: \"Lorem ipsum.\"\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 62 (Select Standard Compression Scheme for Unicode (SCSU))\n"
            "          number_bytes: 3\n"
            "          compressed_string_bytes: 12 9c be\n"
            "          decoded_text: \"Мо\"\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 63 (Select Unicode, UTF-16 Form)\n"
            "          number_bytes: 4\n"
            "          compressed_string_bytes: d8 3d de 00\n"
            "          decoded_text: \"😀\"\n"
            "        segment: ATSCMultipleStringStructure::String::Segment\n"
            "          compression_type: 0 (No compression)\n"
            "          mode: 18 (Reserved)\n"
            "          number_bytes: 1\n"
            "          compressed_string_bytes: 78\n"
            "          decoded_text: \"\"\n"
            "      text: \"Lorem ipsum.Мо😀\"\n");
}

static const StandardSections standard_sections = {
    {"atsc_eit", eit_section},       {"atsc_mgt", mgt_section}, {"atsc_tvct", tvct_section},
    {"atsc_cvct", cvct_section},     {"atsc_rrt", rrt_section}, {"atsc_dcct", dcct_section},
    {"atsc_dccsct", dccsct_section}, {"atsc_ett", ett_section},
};
