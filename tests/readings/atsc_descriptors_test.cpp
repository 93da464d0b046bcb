// The descriptors of ATSC in both readings.

#include "tests/readings/readings.h"

#include <gtest/gtest.h>

#include <quillon/atsc/atsc_classes.h>

using namespace quillon;
using namespace quillon::test;

TEST(StandardAtscDescriptors, AC3MayEndAfterThreeBytes) {
  const Bytes d = descriptor(0x81, bits({{3, 0, "sample_rate_code"},
                                         {5, 8, "bsid"},
                                         {6, 34, "bit_rate_code"},
                                         {2, 1, "surround_mode"},
                                         {3, 0, "bsmod"},
                                         {4, 2, "num_channels"},
                                         {1, 1, "full_svc"}}));
  EXPECT_EQ(fields<DescriptorAtscAC3Audio>(d, Reading::kept),
            "-1: DescriptorAtscAC3Audio: descriptor_length too small\n");
  EXPECT_EQ(fields<DescriptorAtscAC3Audio>(d, Reading::standard),
            "sample_rate_code: 0 (48 kHz)\n"
            "bsid: 8\n"
            "bit_rate_code: 34 (48 Bit Rate Upper Limit (kbit/s))\n"
            "surround_mode: 1 (NOT Dolby surround encoded)\n"
            "bsmod: 0\n"
            "num_channels: 2 (2/0)\n"
            "full_svc: 1\n"
            "langcod: 0\n"
            "langcod2: 0\n"
            "mainid: 0\n"
            "priority: 0 (reserved)\n"
            "asvcflags: 0\n"
            "textlen: 0\n"
            "text_code: 0\n"
            "text: \"\"\n"
            "wide_text: \"\"\n"
            "language_flag: 0\n"
            "language_flag_2: 0\n"
            "language: \"\"\n"
            "language_2: \"\"\n"
            "additional_info: \n");
}

TEST(StandardAtscDescriptors, AC3TextFollowsItsLength) {
  const Bytes d = descriptor(0x81, joined({bits({{3, 0, "sample_rate_code"},
                                                 {5, 8, "bsid"},
                                                 {6, 34, "bit_rate_code"},
                                                 {2, 1, "surround_mode"},
                                                 {3, 2, "bsmod"},
                                                 {4, 0, "num_channels"},
                                                 {1, 1, "full_svc"},
                                                 {8, 0xFF, "langcod"},
                                                 {8, 0xFE, "langcod2"},
                                                 {8, 0x81, "asvcflags"},
                                                 {7, 4, "textlen"},
                                                 {1, 0, "text_code"},
                                                 {16, 0x00E9, "text"},
                                                 {16, 'b', "text"},
                                                 {1, 1, "language_flag"},
                                                 {1, 1, "language_flag_2"},
                                                 {6, 63, "reserved"}}),
                                           text("eng"),
                                           text("fra"),
                                           {0xAB}}));
  EXPECT_EQ(fields<DescriptorAtscAC3Audio>(d, Reading::kept),
            "sample_rate_code: 0 (48 kHz)\n"
            "bsid: 8\n"
            "bit_rate_code: 34 (48 Bit Rate Upper Limit (kbit/s))\n"
            "surround_mode: 1 (NOT Dolby surround encoded)\n"
            "bsmod: 2\n"
            "num_channels: 0 (1 + 1)\n"
            "full_svc: 1\n"
            "langcod: 255\n"
            "langcod2: 254\n"
            "mainid: 0\n"
            "priority: 0 (reserved)\n"
            "asvcflags: 129\n"
            "textlen: 4\n"
            "text_code: 0\n"
            "text: \"\"\n"
            "wide_text: \"ࠀ\"\n"
            "language_flag: 1\n"
            "language_flag_2: 1\n"
            "language: \"eng\"\n"
            "language_2: \"fra\"\n"
            "additional_info: ab\n");
  EXPECT_EQ(fields<DescriptorAtscAC3Audio>(d, Reading::standard),
            "sample_rate_code: 0 (48 kHz)\n"
            "bsid: 8\n"
            "bit_rate_code: 34 (48 Bit Rate Upper Limit (kbit/s))\n"
            "surround_mode: 1 (NOT Dolby surround encoded)\n"
            "bsmod: 2\n"
            "num_channels: 0 (1 + 1)\n"
            "full_svc: 1\n"
            "langcod: 255\n"
            "langcod2: 254\n"
            "mainid: 0\n"
            "priority: 0 (reserved)\n"
            "asvcflags: 129\n"
            "textlen: 4\n"
            "text_code: 0\n"
            "text: \"\"\n"
            "wide_text: \"éb\"\n"
            "language_flag: 1\n"
            "language_flag_2: 1\n"
            "language: \"eng\"\n"
            "language_2: \"fra\"\n"
            "additional_info: ab\n");
}

TEST(StandardAtscDescriptors, CaptionFieldIsTheLowestBit) {
  const Bytes d =
      descriptor(0x86, joined({bits({{3, 7, "reserved"}, {5, 1, "number_of_services"}}), text("eng"),
                               bits({{1, 0, "digital_cc"},
                                     {1, 1, "reserved"},
                                     {5, 31, "reserved"},
                                     {1, 1, "line21_field"},
                                     {1, 1, "easy_reader"},
                                     {1, 0, "wide_aspect_ratio"},
                                     {14, 0x3FFF, "reserved"}})}));
  EXPECT_EQ(fields<DescriptorAtscCaptionService>(d, Reading::kept),
            "number_of_services: 1\n"
            "services: list of 1\n"
            "  service: DescriptorAtscCaptionService::Service\n"
            "    language: \"eng\"\n"
            "    digital_cc: 0\n"
            "    caption_service_number: 0\n"
            "    line21_field: 31\n"
            "    easy_reader: 1\n"
            "    wide_aspect_ratio: 0\n");
  EXPECT_EQ(fields<DescriptorAtscCaptionService>(d, Reading::standard),
            "number_of_services: 1\n"
            "services: list of 1\n"
            "  service: DescriptorAtscCaptionService::Service\n"
            "    language: \"eng\"\n"
            "    digital_cc: 0\n"
            "    caption_service_number: 0\n"
            "    line21_field: 1\n"
            "    easy_reader: 1\n"
            "    wide_aspect_ratio: 0\n");
}

TEST(StandardAtscDescriptors, ContentAdvisoryHasAllRegions) {
  const Bytes d = descriptor(0x87, joined({bits({{2, 3, "reserved"},
                                                 {6, 2, "rating_region_count"},
                                                 {8, 1, "rating_region"},
                                                 {8, 1, "rated_dimensions"},
                                                 {8, 0, "rating_dimension_j"},
                                                 {4, 15, "reserved"},
                                                 {4, 3, "rating_value"},
                                                 {8, 0, "rating_description_length"},
                                                 {8, 2, "rating_region"},
                                                 {8, 0, "rated_dimensions"},
                                                 {8, 12, "rating_description_length"},
                                                 {8, 1, "number_strings"}}),
                                           text("eng"),
                                           bits({{8, 1, "number_segments"},
                                                 {8, 0, "compression_type"},
                                                 {8, 0, "mode"},
                                                 {8, 4, "number_bytes"}}),
                                           text("TV-G")}));
  EXPECT_EQ(fields<DescriptorAtscContentAdvisory>(d, Reading::kept),
            "-1: DescriptorAtscContentAdvisory::Region: region start end mismatch\n");
  EXPECT_EQ(fields<DescriptorAtscContentAdvisory>(d, Reading::standard),
            "rating_region_count: 2\n"
            "regions: list of 2\n"
            "  region: DescriptorAtscContentAdvisory::Region\n"
            "    rating_region: 1\n"
            "    rated_dimensions: 1\n"
            "    dimensions: list of 1\n"
            "      dimension: DescriptorAtscContentAdvisory::Region::RatedDimension\n"
            "        rating_dimension_j: 0\n"
            "        rating_value: 3\n"
            "    rating_description_length: 0\n"
            "    rating_description_text: ATSCMultipleStringStructure\n"
            "      number_strings: 0\n"
            "      strings: list of 0\n"
            "  region: DescriptorAtscContentAdvisory::Region\n"
            "    rating_region: 2\n"
            "    rated_dimensions: 0\n"
            "    dimensions: list of 0\n"
            "    rating_description_length: 12\n"
            "    rating_description_text: ATSCMultipleStringStructure\n"
            "      number_strings: 1\n"
            "      strings: list of 1\n"
            "        string: ATSCMultipleStringStructure::String\n"
            "          ISO_639_language_code: \"eng\"\n"
            "          number_segments: 1\n"
            "          segments: list of 1\n"
            "            segment: ATSCMultipleStringStructure::String::Segment\n"
            "              compression_type: 0 (No compression)\n"
            "              mode: 0 (Select Unicode Code Range 0x0000 – 0x00FF)\n"
            "              number_bytes: 4\n"
            "              compressed_string_bytes: 54 56 2d 47\n"
            "              decoded_text: \"TV-G\"\n"
            "          text: \"TV-G\"\n");
}

TEST(StandardAtscDescriptors, TimeShiftedServicesAreCountedInFiveBits) {
  const Bytes d = descriptor(0xA2, bits({{3, 7, "reserved"},
                                         {5, 1, "number_of_services"},
                                         {6, 63, "reserved"},
                                         {10, 60, "time_shift"},
                                         {4, 15, "reserved"},
                                         {10, 7, "major_channel_number"},
                                         {10, 2, "minor_channel_number"}}));
  EXPECT_EQ(fields<DescriptorAtscTimeShiftedService>(d, Reading::kept),
            "-1: DescriptorAtscTimeShiftedService: number_of_services mismatch (1)\n");
  EXPECT_EQ(fields<DescriptorAtscTimeShiftedService>(d, Reading::standard),
            "number_of_services: 1\n"
            "services: list of 1\n"
            "  service: DescriptorAtscTimeShiftedService::Service\n"
            "    time_shift: 60\n"
            "    major_channel_number: 7\n"
            "    minor_channel_number: 2\n");
}

TEST(StandardAtscDescriptors, PrivateInformationHasItsIdentifier) {
  const Bytes d = descriptor(0xAD, joined({text("GA94"), {1, 2}}));
  EXPECT_EQ(fields<DescriptorAtscATSCPrivateInformation>(d, Reading::kept), "");
  EXPECT_EQ(fields<DescriptorAtscATSCPrivateInformation>(d, Reading::standard),
            "format_identifier: 1195456820\n"
            "private_data_byte: 01 02\n");
}

TEST(StandardAtscDescriptors, ContentIdentifierHasItsBytes) {
  const Bytes d = descriptor(0xB6, Bytes{1, 2, 3});
  EXPECT_EQ(fields<DescriptorAtscContentIdentifier>(d, Reading::kept), "");
  EXPECT_EQ(fields<DescriptorAtscContentIdentifier>(d, Reading::standard), "data: 01 02 03\n");
}
