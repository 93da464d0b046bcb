// What --full adds to the reports of ATSC tables.

#include "apps/quillon/atsc_details.h"

#include "tests/support/bytes.h"

#include <gtest/gtest.h>
#include <string>

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/cvct.h>
#include <quillon/atsc/dccsct.h>
#include <quillon/atsc/dcct.h>
#include <quillon/atsc/eit_atsc.h>
#include <quillon/atsc/ett.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/pmt_atsc.h>
#include <quillon/atsc/rrt.h>
#include <quillon/atsc/stt.h>
#include <quillon/atsc/tvct.h>

using namespace quillon;
using namespace quillon::test;
using app::details_of;

namespace {

template <class T>
std::string details(int table_id, const Bytes& body) {
  const Bytes section = long_section(table_id, body);
  T table;
  table.Parse(section.data(), section.size(), false);
  return details_of(table);
}

// The details of a system time table with these descriptors, behind its own lines.
std::string descriptor_details(const Bytes& descriptors) {
  const std::string all = details<AtscSTT>(0xCD, joined({Bytes(8), descriptors}));
  const std::string own = details<AtscSTT>(0xCD, Bytes(8));
  EXPECT_EQ(all.substr(0, own.size()), own);
  return all.substr(own.size());
}

// One string of one segment.
Bytes string_of(const char* language, uint8_t mode, const Bytes& bytes, uint8_t compression_type = 0) {
  return joined({Bytes{1}, text(language),
                 Bytes{1, compression_type, mode, static_cast<uint8_t>(bytes.size())}, bytes});
}

const Bytes kName = descriptor(0xA0, string_of("eng", 0, text("Long")));

}  // namespace

TEST(AtscDetails, ShowChannels) {
  const Bytes channel = joined({Bytes{0, 'K', 0, 0xC9, 0x30, 0x42, 0xD8, 0x3D, 0xDC, 0xFA, 0, 0x1B, 0, 0},
                                Bytes{0xF0, 0x1C, 0x05, 0x04, 0xFF, 0, 0, 0, 0x0D, 0xE6, 0, 3, 0x7D, 0xC2},
                                Bytes{0x12, 0x34, 0xFC, static_cast<uint8_t>(kName.size())}, kName});
  EXPECT_EQ(details<AtscTVCT>(0xC8, joined({Bytes{0, 1}, channel, Bytes{0xFC, 0, 0xAA, 0}})),
            "channel 7.5 K\u00C9\u3042\U0001F4FA \n"
            "  program_number: 3\n"
            "  source_id: 0x1234\n"
            "  channel_TSID: 0x0DE6\n"
            "  modulation_mode: 4, ATSC (8 VSB)\n"
            "  carrier_frequency: 4278190080 Hz\n"
            "  service_type: 2, ATSC_digital_television\n"
            "  ETM_location: 1, ETM located in the PTC carrying this PSIP\n"
            "  access_controlled: yes\n"
            "  hidden: yes\n"
            "  hide_guide: no\n"
            "  descriptor_tag: A0 extended_channel_name_descriptor\n"
            "    long_channel_name_text (eng): Long\n"
            "descriptor_tag: AA rc_descriptor\n"
            "  data: \n");
}

TEST(AtscDetails, ShowCableChannels) {
  Bytes body = joined({Bytes{0, 1, 'A'}, Bytes(32)});
  body[1 + 27] = 0x0C;
  EXPECT_EQ(details<AtscCVCT>(0xC9, body),
            "protocol_version: 0\n"
            "num_channels_in_section: 1\n"
            "channel 0.0 \u0141\n"
            "  program_number: 0\n"
            "  source_id: 0x0000\n"
            "  channel_TSID: 0x0000\n"
            "  modulation_mode: 0, [Reserved]\n"
            "  carrier_frequency: 0 Hz\n"
            "  service_type: 0, [Reserved]\n"
            "  ETM_location: 0, No ETM\n"
            "  access_controlled: no\n"
            "  hidden: no\n"
            "  hide_guide: no\n"
            "  path_select: 1\n"
            "  out_of_band: yes\n");
}

TEST(AtscDetails, ShowThePlacesOfTables) {
  EXPECT_EQ(details<AtscMGT>(0xC7, {0,    0, 2,                                      //
                                    0,    2, 0xFF, 0xFB, 0xE5, 0, 0, 0, 9, 0xF0, 0,  //
                                    0x14, 1, 0xFD, 1,    0xFF, 0, 0, 0, 8, 0xF0, 2, 0xAD, 0, 0xF0, 0}),
            "table_type: 0x0002, Cable VCT with current_next_indicator=\u20191\u2019\n"
            "  table_type_PID: 0x1FFB\n"
            "  table_type_version_number: 5\n"
            "  number_bytes: 9\n"
            "table_type: 0x1401\n"
            "  table_type_PID: 0x1D01\n"
            "  table_type_version_number: 31\n"
            "  number_bytes: 8\n"
            "  descriptor_tag: AD \n");
}

TEST(AtscDetails, ShowEvents) {
  EXPECT_EQ(details<AtscEIT>(0xCB, joined({Bytes{0, 1, 0xD2, 0x34, 0x45, 0xD2, 0xE1, 0xE3, 0x0E, 0x10, 2},
                                           text("Hi"), Bytes{0xF0, 3, 0xAB, 1, 0xE0}})),
            "event_id: 0x1234\n"
            "  start_time: 2017-02-18 10:18:11 GPS\n"
            "  length_in_seconds: 200208\n"
            "  ETM_location: 2, ETM located in the PTC specified by the channel_TSID\n"
            "  title_length: 2\n"
            "  descriptor_tag: AB genre_descriptor\n");
}

TEST(AtscDetails, ShowTexts) {
  EXPECT_EQ(
      details<AtscETT>(0xCC, joined({Bytes{0, 0, 5, 4, 0xD2}, string_of("eng", 0, text("a\nb\x7F\x9B"))})),
      "protocol_version: 0\n"
      "ETM_id: 0x000504D2\n"
      "  source_id: 0x0005\n"
      "  event_id: 0x0134\n"
      "  extended_text_message (eng): a b  \n");
  EXPECT_EQ(details<AtscETT>(0xCC, joined({Bytes{0, 0, 5, 0, 0}, string_of("esp", 0, text("xyz"), 2)})),
            "protocol_version: 0\n"
            "ETM_id: 0x00050000\n"
            "  source_id: 0x0005\n"
            "  extended_text_message (esp): [3 bytes: Huffman coding using standard encode/decode tables"
            " defined in Table C.6 and C.7 in Annex C.]\n");
  EXPECT_EQ(details<AtscETT>(0xCC, joined({Bytes(5), string_of("esp", 0x3F, text("xy"))})),
            "protocol_version: 0\n"
            "ETM_id: 0x00000000\n"
            "  source_id: 0x0000\n"
            "  extended_text_message (esp): [2 bytes: Select Unicode, UTF-16 Form]\n");
}

TEST(AtscDetails, ShowTheTime) {
  EXPECT_EQ(details<AtscSTT>(0xCD, {0, 0x4B, 0x4A, 0x3F, 0x2E, 18, 0x95, 2}),
            "system_time: 2020-01-15 20:57:00 UTC\n"
            "daylight_savings: yes\n"
            "DS_day_of_month: 21\n"
            "DS_hour: 2\n");
  EXPECT_EQ(details<AtscSTT>(0xCD, {0, 0, 0, 0, 0, 1, 0, 0}).substr(0, 37),
            "system_time: 1980-01-05 23:59:59 UTC\n");
  EXPECT_EQ(details<AtscSTT>(0xCD, {0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0}).substr(0, 37),
            "system_time: 2116-02-12 06:28:15 UTC\n");
}

TEST(AtscDetails, ShowRatings) {
  EXPECT_EQ(details<AtscRRT>(0xCA, {0, 2, 'U', 'S', 1, 0, 0, 0x12, 1, 'X', 2, 'Y', 'Y', 0, 1, 'Z', 0xFC, 0}),
            "protocol_version: 0\n"
            "rating_region_name_length: 2\n"
            "dimensions_defined: 1\n"
            "dimension_name_length: 0\n"
            "  graduated_scale: yes\n"
            "  values_defined: 2\n"
            "  abbrev_rating_value_length: 1, rating_value_length: 2\n"
            "  abbrev_rating_value_length: 0, rating_value_length: 1\n");
}

TEST(AtscDetails, ShowChannelChanges) {
  EXPECT_EQ(
      details<AtscDCCT>(0xD3, joined({Bytes{0, 1, 0xF0, 0x1C, 0xFE, 5, 0xF0, 0x20, 0xFF, 3}, Bytes(8),
                                      Bytes{1, 0x17}, Bytes(8), Bytes{0xFC, 2, 0xAD, 0, 0xFC, 0, 0xFC, 0}})),
      "protocol_version: 0\n"
      "dcc_test_count: 1\n"
      "dcc_context: 1, channel redirect\n"
      "  from: 7.517\n"
      "  to: 8.771\n"
      "  dcc_start_time: 1980-01-06 00:00:00 GPS\n"
      "  dcc_end_time: 1980-01-06 00:00:00 GPS\n"
      "  dcc_selection_type: 0x17\n"
      "    descriptor_tag: AD \n");
}

TEST(AtscDetails, ShowSelectionCodes) {
  EXPECT_EQ(details<AtscDCCSCT>(0xD4, {0,    4,                          //
                                       1,    1, 0x2A, 0xFC, 0,           //
                                       2,    1, 0x06, 0xFC, 0,           //
                                       3,    3, 0x07, 0xFE, 1, 0xFC, 0,  //
                                       9,    0, 0xFC, 0,                 //
                                       0xFC, 0}),
            "protocol_version: 0\n"
            "updates_defined: 4\n"
            "update_type: 1, new_genre_category\n"
            "  genre_category_code: 42\n"
            "update_type: 2, new_state\n"
            "  dcc_state_location_code: 6\n"
            "update_type: 3, new_county\n"
            "  state_code: 7\n"
            "  dcc_county_location_code: 513\n"
            "update_type: 9, Reserved for future use\n");
}

TEST(AtscDetails, ShowProgramMaps) {
  EXPECT_EQ(details<PmtATSC>(0x02, joined({Bytes{0xE0, 0x31, 0xF0, 6, 0x05, 4}, text("GA94"),
                                           Bytes{0x81, 0xE0, 0x34, 0xF0, 5, 0x0E, 3, 0xC0, 0, 3}})),
            "descriptor_tag: 05 registration_descriptor\n"
            "  format_identifier: 0x47413934, GA94\n"
            "elementary_PID: 0x0034\n"
            "  stream_type: 129, User Private\n"
            "  descriptor_tag: 0E maximum_bitrate_descriptor\n"
            "    maximum_bitrate: 1200 bit/s\n");
}

TEST(AtscDetails, ShowTheMembersOfAtscDescriptors) {
  EXPECT_EQ(descriptor_details(descriptor(0x81, {0x08, 0x38, 0x0F, 0, 0x28, 0x01, 0xBF, 'e', 'n', 'g'})),
            "descriptor_tag: 81 AC-3_audio_stream_descriptor\n"
            "  sample_rate_code: 0, 48 kHz\n"
            "  bit_rate_code: 14, 384 Exact Bit Rate (kbit/s)\n"
            "  surround_mode: 0, Not indicated\n"
            "  bsmod: 0\n"
            "  num_channels: 7, 3/2\n"
            "  full_svc: yes\n"
            "  priority: 1, Primary Audio\n"
            "  language: eng\n");
  EXPECT_EQ(descriptor_details(descriptor(0x86, {0xE2, 'e', 'n', 'g', 0xC1, 0xFF, 0xFF,  //
                                                 's', 'p', 'a', 0x7E, 0x3F, 0xFF})),
            "descriptor_tag: 86 caption_service_descriptor\n"
            "  captions: eng, digital, service 1, easy reader, wide\n"
            "  captions: spa, line 21, field 31\n");
  EXPECT_EQ(descriptor_details(descriptor(
                0x87, joined({Bytes{0xC1, 1, 1, 5, 0xF3, 12}, string_of("eng", 0, text("TV-G"))}))),
            "descriptor_tag: 87 content_advisory_descriptor\n"
            "  rating_region: 1\n"
            "    dimension: 5, value 3\n"
            "    rating_description_text (eng): TV-G\n");
  EXPECT_EQ(descriptor_details(descriptor(0xA1, {0xE0, 0x31, 1, 2, 0xE0, 0x31, 0, 0, 0})),
            "descriptor_tag: A1 service_location_descriptor\n"
            "  PCR_PID: 0x0031\n"
            "  elementary_PID: 0x0031\n"
            "    stream_type: 2, ITU-T Rec. H.262 | ISO/IEC 13818-2 Video [9] or ISO/IEC 11172-2 [17]"
            " constrained parameter video stream\n");
  EXPECT_EQ(descriptor_details(descriptor(0xA2, {1, 0xFC, 60, 0xF0, 0x1C, 1})),
            "descriptor_tag: A2 time_shifted_service_descriptor\n"
            "  channel: 7.1, 60 minutes later\n");
  EXPECT_EQ(descriptor_details(descriptor(0xA3, string_of("eng", 0, text("Audio")))),
            "descriptor_tag: A3 component_name_descriptor\n"
            "  component_name_string (eng): Audio\n");
  EXPECT_EQ(descriptor_details(descriptor(0xA8, joined({Bytes{1, 9}, string_of("eng", 0, text("x"))}))),
            "descriptor_tag: A8 dcc_departing_request_descriptor\n"
            "  dcc_departing_request_type: 1\n"
            "  dcc_departing_request_text (eng): x\n");
  EXPECT_EQ(descriptor_details(descriptor(0xA9, joined({Bytes{2, 9}, string_of("eng", 0, text("y"))}))),
            "descriptor_tag: A9 dcc_arriving_request_descriptor\n"
            "  dcc_arriving_request_type: 2\n"
            "  dcc_arriving_request_text (eng): y\n");
  EXPECT_EQ(descriptor_details(descriptor(0xAB, {0xE1, 0x26})),
            "descriptor_tag: AB genre_descriptor\n"
            "  attribute: 0x26\n");
  EXPECT_EQ(descriptor_details(descriptor(0x80, {1, 0xFF})),
            "descriptor_tag: 80 stuffing_descriptor(\n"
            "  data: 01FF\n");
}

TEST(AtscDetails, ShowARefusedDescriptorAsItsBytes) {
  const std::string text = descriptor_details(descriptor(0x86, {0xE1, 'A'}));
  EXPECT_EQ(text.substr(0, 18), "descriptor_tag: 86");
  EXPECT_NE(text.find("E1 41"), std::string::npos) << text;
}
