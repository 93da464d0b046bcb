// The descriptors of MPEG-2 and DVB in both readings.

#include "tests/readings/readings.h"

#include <gtest/gtest.h>

#include <quillon/descriptors/dvb_classes.h>

using namespace quillon;
using namespace quillon::test;

TEST(StandardDescriptors, VideoStreamOfMPEG1HasNoProfile) {
  const Bytes d = descriptor(0x02, bits({{1, 0, "multiple_frame_rate_flag"},
                                         {4, 3, "frame_rate_code"},
                                         {1, 1, "MPEG_1_only_flag"},
                                         {1, 0, "constrained_parameter_flag"},
                                         {1, 1, "still_picture_flag"},
                                         {8, 0x48, "profile_and_level_indication"},
                                         {2, 1, "chroma_format"},
                                         {1, 1, "frame_rate_extension_flag"},
                                         {5, 31, "reserved"}}));
  EXPECT_EQ(fields<DescriptorVideoStream>(d, Reading::kept),
            "multiple_frame_rate_flag: 0\n"
            "frame_rate_code: 3\n"
            "MPEG_1_only_flag: 1\n"
            "constrained_parameter_flag: 0\n"
            "still_picture_flag: 1\n"
            "profile_and_level_indication: 72\n"
            "chroma_format: 1\n"
            "frame_rate_extension_flag: 1\n"
            "reserved: 31\n");
  EXPECT_EQ(fields<DescriptorVideoStream>(d, Reading::standard),
            "multiple_frame_rate_flag: 0\n"
            "frame_rate_code: 3\n"
            "MPEG_1_only_flag: 1\n"
            "constrained_parameter_flag: 0\n"
            "still_picture_flag: 1\n"
            "profile_and_level_indication: 0\n"
            "chroma_format: 0\n"
            "frame_rate_extension_flag: 0\n"
            "reserved: 0\n");
}

TEST(StandardDescriptors, CarouselIdOfFourBytesHasNoFormat) {
  const Bytes d = descriptor_claiming(0x13, 4, joined({bits({{32, 0xC0000001, "carousel_id"}}), {9}}));
  EXPECT_EQ(fields<DescriptorCarouselId>(d, Reading::kept),
            "carousel_id: 3221225473\n"
            "formatid: 9\n"
            "moduleversion: 0\n"
            "moduleid: 0\n"
            "blocksize: 0\n"
            "modulesize: 0\n"
            "compressionmethod: 0\n"
            "originalsize: 0\n"
            "timeout: 0\n"
            "objectkeylength: 0\n"
            "objectkeydata: \n"
            "private_data_byte: \n");
  EXPECT_EQ(fields<DescriptorCarouselId>(d, Reading::standard),
            "carousel_id: 3221225473\n"
            "formatid: 0\n"
            "moduleversion: 0\n"
            "moduleid: 0\n"
            "blocksize: 0\n"
            "modulesize: 0\n"
            "compressionmethod: 0\n"
            "originalsize: 0\n"
            "timeout: 0\n"
            "objectkeylength: 0\n"
            "objectkeydata: \n"
            "private_data_byte: \n");
}

TEST(StandardDescriptors, HierarchyHasFlags) {
  const Bytes d = descriptor(0x04, bits({{1, 0, "no_view_scalability_flag"},
                                         {1, 1, "no_temporal_scalability_flag"},
                                         {1, 0, "no_spatial_scalability_flag"},
                                         {1, 1, "no_quality_scalability_flag"},
                                         {4, 9, "hierarchy_type"},
                                         {2, 3, "reserved"},
                                         {6, 5, "hierarchy_layer_index"},
                                         {1, 1, "tref_present_flag"},
                                         {1, 1, "reserved"},
                                         {6, 7, "hierarchy_embedded_layer_index"},
                                         {2, 3, "reserved"},
                                         {6, 9, "hierarchy_channel"}}));
  EXPECT_EQ(fields<DescriptorHierarchy>(d, Reading::kept),
            "hierarchy_type: 9 (reserved)\n"
            "hierarchy_layer_index: 5\n"
            "hierarchy_embedded_layer_index: 7\n"
            "hierarchy_channel: 9\n");
  EXPECT_EQ(fields<DescriptorHierarchy>(d, Reading::standard),
            "hierarchy_type: 9 (MVC or MVCD)\n"
            "hierarchy_layer_index: 5\n"
            "hierarchy_embedded_layer_index: 7\n"
            "hierarchy_channel: 9\n"
            "no_view_scalability_flag: 0\n"
            "no_temporal_scalability_flag: 1\n"
            "no_spatial_scalability_flag: 0\n"
            "no_quality_scalability_flag: 1\n"
            "tref_present_flag: 1\n");
}

TEST(StandardDescriptors, ServiceIdentifierIsText) {
  const Bytes d = descriptor(0x71, text("tag:\xC2"
                                        "e"));
  EXPECT_EQ(fields<DescriptorServiceIdentifier>(d, Reading::kept), "");
  EXPECT_EQ(fields<DescriptorServiceIdentifier>(d, Reading::standard),
            "textual_service_identifier: \"tag:é\"\n");
}

TEST(StandardDescriptors, TelephoneLengthsFollowOneReservedBit) {
  const Bytes d = descriptor(0x57, joined({bits({{2, 3, "reserved"},
                                                 {1, 1, "foreign_availability"},
                                                 {5, 7, "connection_type"},
                                                 {1, 1, "reserved"},
                                                 {2, 1, "country_prefix_length"},
                                                 {3, 2, "international_area_code_length"},
                                                 {2, 1, "operator_code_length"},
                                                 {1, 1, "reserved"},
                                                 {3, 3, "national_area_code_length"},
                                                 {4, 4, "core_number_length"}}),
                                           text("+49x0891234zzzz")}));
  EXPECT_EQ(fields<DescriptorTelephone>(d, Reading::kept),
            "foriegn_availability: 1\n"
            "connection_type: 7\n"
            "country_prefix_length: 2\n"
            "international_area_code_length: 5\n"
            "operator_code_length: 1\n"
            "national_area_code_length: 3\n"
            "core_number_length: 4\n"
            "country_prefix_char: \"+4\"\n"
            "international_area_code_char: \"9x089\"\n"
            "operator_code_char: \"1\"\n"
            "national_area_code_char: \"234\"\n"
            "core_number_char: \"zzzz\"\n");
  EXPECT_EQ(fields<DescriptorTelephone>(d, Reading::standard),
            "foriegn_availability: 1\n"
            "connection_type: 7\n"
            "country_prefix_length: 1\n"
            "international_area_code_length: 2\n"
            "operator_code_length: 1\n"
            "national_area_code_length: 3\n"
            "core_number_length: 4\n"
            "country_prefix_char: \"+\"\n"
            "international_area_code_char: \"49\"\n"
            "operator_code_char: \"x\"\n"
            "national_area_code_char: \"089\"\n"
            "core_number_char: \"1234\"\n");
}

TEST(StandardDescriptors, AnnouncementWithoutReferenceHasNone) {
  const Bytes d = descriptor(0x6E, bits({{16, 3, "announcement_support_indicator"},
                                         {4, 0, "announcement_type"},
                                         {1, 1, "reserved"},
                                         {3, 1, "reference_type"},
                                         {16, 1, "original_network_id"},
                                         {16, 2, "transport_stream_id"},
                                         {16, 3, "service_id"},
                                         {8, 4, "component_tag"},
                                         {4, 1, "announcement_type"},
                                         {1, 1, "reserved"},
                                         {3, 0, "reference_type"}}));
  EXPECT_EQ(fields<DescriptorAnnouncementSupport>(d, Reading::kept),
            "announcement_support_indicator: 3\n"
            "announcement_support_data: list of 2\n"
            "  data: DescriptorAnnouncementSupport::AnnouncementSupportData\n"
            "    announcement_type: 0\n"
            "    reference_type: 1\n"
            "    original_network_id: 1 (Astra Satellite Network 19,2\u00B0E)\n"
            "    transport_stream_id: 2\n"
            "    service_id: 3\n"
            "    component_tag: 4\n"
            "  data: DescriptorAnnouncementSupport::AnnouncementSupportData\n"
            "    announcement_type: 1\n"
            "    reference_type: 0\n"
            "    original_network_id: 1 (Astra Satellite Network 19,2\u00B0E)\n"
            "    transport_stream_id: 2\n"
            "    service_id: 3\n"
            "    component_tag: 4\n");
  EXPECT_EQ(fields<DescriptorAnnouncementSupport>(d, Reading::standard),
            "announcement_support_indicator: 3\n"
            "announcement_support_data: list of 2\n"
            "  data: DescriptorAnnouncementSupport::AnnouncementSupportData\n"
            "    announcement_type: 0\n"
            "    reference_type: 1\n"
            "    original_network_id: 1 (Astra Satellite Network 19,2\u00B0E)\n"
            "    transport_stream_id: 2\n"
            "    service_id: 3\n"
            "    component_tag: 4\n"
            "  data: DescriptorAnnouncementSupport::AnnouncementSupportData\n"
            "    announcement_type: 1\n"
            "    reference_type: 0\n"
            "    original_network_id: 0 (Reserved)\n"
            "    transport_stream_id: 0\n"
            "    service_id: 0\n"
            "    component_tag: 0\n");
}

TEST(StandardDescriptors, MosaicCellLeadsNowhere) {
  const Bytes d = descriptor(0x51, bits({{1, 1, "mosaic_entry_point"},
                                         {3, 1, "number_of_horizontal_elementary_cells"},
                                         {1, 1, "reserved"},
                                         {3, 2, "number_of_vertical_elementary_cells"},
                                         {6, 5, "logical_cell_id"},
                                         {7, 127, "reserved"},
                                         {3, 1, "logical_cell_presentation_info"},
                                         {8, 1, "elementary_cell_field_length"},
                                         {2, 3, "reserved"},
                                         {6, 9, "elementary_cell_id"},
                                         {8, 0, "cell_linkage_info"},
                                         {6, 6, "logical_cell_id"},
                                         {7, 127, "reserved"},
                                         {3, 2, "logical_cell_presentation_info"},
                                         {8, 0, "elementary_cell_field_length"},
                                         {8, 1, "cell_linkage_info"},
                                         {16, 0x1234, "bouquet_id"}}));
  EXPECT_EQ(fields<DescriptorMosiac>(d, Reading::kept), "2: \n");
  EXPECT_EQ(fields<DescriptorMosiac>(d, Reading::standard),
            "mosiac_entry_point: 1\n"
            "number_of_horizontal_elementary_cells: 1\n"
            "number_of_vertical_elementary_cells: 2\n"
            "cellinfo: list of 2\n"
            "  info: DescriptorMosiac::CellInfo\n"
            "    logical_cell_id: 5\n"
            "    logical_call_presentation_info: 1\n"
            "    elementary_cell_field_length: 1\n"
            "    cell_linkage_info: 0\n"
            "    elementary_cell_id: 09\n"
            "    bouquetinfo: DescriptorMosiac::CellInfo::BouquetInfo\n"
            "      bouquet_id: 0 (Reserved)\n"
            "    serviceinfo: DescriptorMosiac::CellInfo::ServiceInfo\n"
            "      original_network_id: 0 (Reserved)\n"
            "      transport_stream_id: 0\n"
            "      service_id: 0\n"
            "    serviceinfo2: DescriptorMosiac::CellInfo::ServiceInfo2\n"
            "      original_network_id: 0 (Reserved)\n"
            "      transport_stream_id: 0\n"
            "      service_id: 0\n"
            "    eventinfo: DescriptorMosiac::CellInfo::EventInfo\n"
            "      original_network_id: 0 (Reserved)\n"
            "      transport_stream_id: 0\n"
            "      service_id: 0\n"
            "      event_id: 0\n"
            "  info: DescriptorMosiac::CellInfo\n"
            "    logical_cell_id: 6\n"
            "    logical_call_presentation_info: 2\n"
            "    elementary_cell_field_length: 0\n"
            "    cell_linkage_info: 1\n"
            "    elementary_cell_id: \n"
            "    bouquetinfo: DescriptorMosiac::CellInfo::BouquetInfo\n"
            "      bouquet_id: 4660\n"
            "    serviceinfo: DescriptorMosiac::CellInfo::ServiceInfo\n"
            "      original_network_id: 0 (Reserved)\n"
            "      transport_stream_id: 0\n"
            "      service_id: 0\n"
            "    serviceinfo2: DescriptorMosiac::CellInfo::ServiceInfo2\n"
            "      original_network_id: 0 (Reserved)\n"
            "      transport_stream_id: 0\n"
            "      service_id: 0\n"
            "    eventinfo: DescriptorMosiac::CellInfo::EventInfo\n"
            "      original_network_id: 0 (Reserved)\n"
            "      transport_stream_id: 0\n"
            "      service_id: 0\n"
            "      event_id: 0\n");
}

TEST(StandardDescriptors, SatelliteHasEightDigits) {
  const Bytes d = descriptor(0x43, bits({{32, 0x00001758, "frequency"},
                                         {16, 0x0192, "orbital_position"},
                                         {1, 1, "west_east_flag"},
                                         {2, 2, "polarization"},
                                         {2, 1, "roll_off"},
                                         {1, 1, "modulation_system"},
                                         {2, 2, "modulation_type"},
                                         {28, 0x0275000, "symbol_rate"},
                                         {4, 7, "FEC_inner"}}));
  EXPECT_EQ(fields<DescriptorSatelliteDeliverySystem>(d, Reading::kept),
            "frequency: 0.0175\n"
            "orbital_position: 19.2\n"
            "west_east_flag: 1 (east)\n"
            "polarization: 2 (circular - horizontal)\n"
            "roll_off: 1 (0,25)\n"
            "modulation_system: 1 (DVB-S2)\n"
            "modulation_type: 2 (8PSK)\n"
            "symbol_rate: 27.5\n"
            "FEC_inner: 7 (no conv. coding)\n");
  EXPECT_EQ(fields<DescriptorSatelliteDeliverySystem>(d, Reading::standard),
            "frequency: 0.01758\n"
            "orbital_position: 19.2\n"
            "west_east_flag: 1 (east)\n"
            "polarization: 2 (circular - left)\n"
            "roll_off: 1 (0,25)\n"
            "modulation_system: 1 (DVB-S2)\n"
            "modulation_type: 2 (8PSK)\n"
            "symbol_rate: 27.5\n"
            "FEC_inner: 7 (3/5)\n");
}

TEST(StandardDescriptors, CableHasEightDigits) {
  const Bytes d = descriptor(0x44, bits({{32, 0x00000465, "frequency"},
                                         {12, 0xFFF, "reserved"},
                                         {4, 2, "FEC_outer"},
                                         {8, 5, "modulation"},
                                         {28, 0x0069000, "symbol_rate"},
                                         {4, 15, "FEC_inner"}}));
  EXPECT_EQ(fields<DescriptorCableDeliverySystem>(d, Reading::kept),
            "frequency: 0.046\n"
            "FEC_outer: 2 (RS(204/188))\n"
            "modulation: 5 (256-QAM)\n"
            "symbol_rate: 6.9\n"
            "FEC_inner: 15 (no conv. Coding)\n");
  EXPECT_EQ(fields<DescriptorCableDeliverySystem>(d, Reading::standard),
            "frequency: 0.0465\n"
            "FEC_outer: 2 (RS(204/188))\n"
            "modulation: 5 (256-QAM)\n"
            "symbol_rate: 6.9\n"
            "FEC_inner: 15 (no conv. Coding)\n");
}

TEST(StandardDescriptors, TerrestrialPriorityOneIsHigh) {
  const Bytes d = descriptor(0x5A, bits({{32, 0xC0000000, "centre_frequency"},
                                         {3, 0, "bandwidth"},
                                         {1, 1, "priority"},
                                         {1, 1, "Time_Slicing_indicator"},
                                         {1, 1, "MPE-FEC_indicator"},
                                         {2, 3, "reserved"},
                                         {2, 2, "constellation"},
                                         {3, 0, "hierarchy_information"},
                                         {3, 2, "code_rate-HP_stream"},
                                         {3, 0, "code_rate-LP_stream"},
                                         {2, 0, "guard_interval"},
                                         {2, 1, "transmission_mode"},
                                         {1, 0, "other_frequency_flag"},
                                         {32, 0xFFFFFFFF, "reserved"}}));
  EXPECT_EQ(fields<DescriptorTerrestrialDeliverySystem>(d, Reading::kept),
            "centre_frequency: 3221225472\n"
            "bandwidth: 0 (8 MHz)\n"
            "priority: 1 (LP (low priority))\n"
            "Time_Slicing_indicator: 1 (no)\n"
            "MPE_FEC_indicator: 1 (no)\n"
            "constellation: 2 (64-QAM)\n"
            "hierarchy_information: 0 (non-hierarchical, native interleaver)\n"
            "code_rate_HP_stream: 2 (3/4)\n"
            "code_rate_LP_stream: 0 (1/2)\n"
            "guard_interval: 0 (1/32)\n"
            "transmission_mode: 1 (8k mode)\n"
            "other_frequency_flag: 0 (no)\n");
  EXPECT_EQ(fields<DescriptorTerrestrialDeliverySystem>(d, Reading::standard),
            "centre_frequency: 3221225472\n"
            "bandwidth: 0 (8 MHz)\n"
            "priority: 1 (HP (high priority))\n"
            "Time_Slicing_indicator: 1 (no)\n"
            "MPE_FEC_indicator: 1 (no)\n"
            "constellation: 2 (64-QAM)\n"
            "hierarchy_information: 0 (non-hierarchical, native interleaver)\n"
            "code_rate_HP_stream: 2 (3/4)\n"
            "code_rate_LP_stream: 0 (1/2)\n"
            "guard_interval: 0 (1/32)\n"
            "transmission_mode: 1 (8k mode)\n"
            "other_frequency_flag: 0 (no)\n");
}

TEST(StandardDescriptors, S2FlagsHaveTheirBits) {
  const Bytes d = descriptor(0x79, bits({{1, 1, "scrambling_sequence_selector"},
                                         {1, 1, "multiple_input_stream_flag"},
                                         {1, 0, "backwards_compatibility_indicator"},
                                         {1, 0, "not_timeslice_flag"},
                                         {2, 3, "reserved"},
                                         {2, 2, "TS_GS_mode"},
                                         {6, 63, "reserved"},
                                         {18, 0x12345, "scrambling_sequence_index"},
                                         {8, 0x56, "input_stream_identifier"},
                                         {8, 0x78, "timeslice_number"}}));
  EXPECT_EQ(fields<DescriptorS2SatelliteDeliverySystem>(d, Reading::kept),
            "scrambling_sequence_selector: 1\n"
            "multiple_input_stream_flag: 1\n"
            "backwards_compatibility_indicator: 1\n"
            "scrambling_sequence_index: 74565\n"
            "input_stream_identifier: 86\n");
  EXPECT_EQ(fields<DescriptorS2SatelliteDeliverySystem>(d, Reading::standard),
            "scrambling_sequence_selector: 1\n"
            "multiple_input_stream_flag: 1\n"
            "backwards_compatibility_indicator: 0\n"
            "scrambling_sequence_index: 74565\n"
            "input_stream_identifier: 86\n"
            "not_timeslice_flag: 0\n"
            "TS_GS_mode: 2 (transport stream)\n"
            "timeslice_number: 120\n");
}

TEST(StandardDescriptors, LinkageOfAnEvent) {
  const Bytes d = descriptor(0x4A, bits({{16, 1, "transport_stream_id"},
                                         {16, 2, "original_network_id"},
                                         {16, 3, "service_id"},
                                         {8, 0x0D, "linkage_type"},
                                         {16, 0x1234, "target_event_id"},
                                         {1, 1, "target_listed"},
                                         {1, 0, "event_simulcast"},
                                         {6, 63, "reserved"},
                                         {8, 0xAB, "private_data_byte"}}));
  EXPECT_EQ(fields<DescriptorLinkage>(d, Reading::kept),
            "transport_stream_id: 1\n"
            "original_network_id: 2 (Astra Satellite Network 28,2\u00B0E)\n"
            "service_id: 3\n"
            "linkage_type: 13 (reserved for future use)\n"
            "private_data_byte: 12 34 bf ab\n"
            "hand_over_type: 0 (reserved for future use)\n"
            "origin_type: 0 (NIT)\n"
            "network_id: 0 (Reserved)\n"
            "initial_service_id: 0\n"
            "platform_id_data_length: 0\n"
            "platformidinfos: list of 0\n");
  EXPECT_EQ(fields<DescriptorLinkage>(d, Reading::standard),
            "transport_stream_id: 1\n"
            "original_network_id: 2 (Astra Satellite Network 28,2\u00B0E)\n"
            "service_id: 3\n"
            "linkage_type: 13 (event linkage)\n"
            "private_data_byte: ab\n"
            "hand_over_type: 0 (reserved for future use)\n"
            "origin_type: 0 (NIT)\n"
            "network_id: 0 (Reserved)\n"
            "initial_service_id: 0\n"
            "platform_id_data_length: 0\n"
            "platformidinfos: list of 0\n"
            "target_event_id: 4660\n"
            "target_listed: 1\n"
            "event_simulcast: 0\n"
            "extended_events: list of 0\n");
}

TEST(StandardDescriptors, LinkageOfExtendedEvents) {
  const Bytes d = descriptor(0x4A, bits({{16, 1, "transport_stream_id"},
                                         {16, 2, "original_network_id"},
                                         {16, 3, "service_id"},
                                         {8, 0x0E, "linkage_type"},
                                         {8, 14, "loop_length"},
                                         {16, 0x1234, "target_event_id"},
                                         {1, 1, "target_listed"},
                                         {1, 0, "event_simulcast"},
                                         {2, 2, "link_type"},
                                         {2, 1, "target_id_type"},
                                         {1, 1, "original_network_id_flag"},
                                         {1, 1, "service_id_flag"},
                                         {16, 4, "target_transport_stream_id"},
                                         {16, 5, "target_original_network_id"},
                                         {16, 6, "target_service_id"},
                                         {16, 0x5678, "target_event_id"},
                                         {1, 0, "target_listed"},
                                         {1, 1, "event_simulcast"},
                                         {2, 1, "link_type"},
                                         {2, 3, "target_id_type"},
                                         {1, 1, "original_network_id_flag"},
                                         {1, 1, "service_id_flag"},
                                         {16, 7, "user_defined_id"},
                                         {8, 0xAB, "private_data_byte"}}));
  EXPECT_EQ(fields<DescriptorLinkage>(d, Reading::kept),
            "transport_stream_id: 1\n"
            "original_network_id: 2 (Astra Satellite Network 28,2\u00B0E)\n"
            "service_id: 3\n"
            "linkage_type: 14 (reserved for future use)\n"
            "private_data_byte: 0e 12 34 a7 00 04 00 05 00 06 56 78 5f 00 07 ab\n"
            "hand_over_type: 0 (reserved for future use)\n"
            "origin_type: 0 (NIT)\n"
            "network_id: 0 (Reserved)\n"
            "initial_service_id: 0\n"
            "platform_id_data_length: 0\n"
            "platformidinfos: list of 0\n");
  EXPECT_EQ(fields<DescriptorLinkage>(d, Reading::standard),
            "transport_stream_id: 1\n"
            "original_network_id: 2 (Astra Satellite Network 28,2\u00B0E)\n"
            "service_id: 3\n"
            "linkage_type: 14 (extended event linkage)\n"
            "private_data_byte: ab\n"
            "hand_over_type: 0 (reserved for future use)\n"
            "origin_type: 0 (NIT)\n"
            "network_id: 0 (Reserved)\n"
            "initial_service_id: 0\n"
            "platform_id_data_length: 0\n"
            "platformidinfos: list of 0\n"
            "target_event_id: 0\n"
            "target_listed: 0\n"
            "event_simulcast: 0\n"
            "extended_events: list of 2\n"
            "  extended_event: DescriptorLinkage::ExtendedEvent\n"
            "    target_event_id: 4660\n"
            "    target_listed: 1\n"
            "    event_simulcast: 0\n"
            "    link_type: 2\n"
            "    target_id_type: 1\n"
            "    original_network_id_flag: 1\n"
            "    service_id_flag: 1\n"
            "    user_defined_id: 0\n"
            "    target_transport_stream_id: 4\n"
            "    target_original_network_id: 5 (Astra)\n"
            "    target_service_id: 6\n"
            "  extended_event: DescriptorLinkage::ExtendedEvent\n"
            "    target_event_id: 22136\n"
            "    target_listed: 0\n"
            "    event_simulcast: 1\n"
            "    link_type: 1\n"
            "    target_id_type: 3\n"
            "    original_network_id_flag: 1\n"
            "    service_id_flag: 1\n"
            "    user_defined_id: 7\n"
            "    target_transport_stream_id: 0\n"
            "    target_original_network_id: 0 (Reserved)\n"
            "    target_service_id: 0\n");
}

TEST(StandardDescriptors, CellListCoordinatesHaveSigns) {
  const Bytes d = descriptor(0x6C, bits({{16, 1, "cell_id"},
                                         {16, 0x4000, "cell_latitude"},
                                         {16, 0xFFFE, "cell_longitude"},
                                         {12, 0x123, "cell_extent_of_latitude"},
                                         {12, 0xFFF, "cell_extent_of_longitude"},
                                         {8, 8, "subcell_info_loop_length"},
                                         {8, 7, "cell_id_extension"},
                                         {16, 0x8000, "subcell_latitude"},
                                         {16, 2, "subcell_longitude"},
                                         {12, 3, "subcell_extent_of_latitude"},
                                         {12, 4, "subcell_extent_of_longitude"}}));
  EXPECT_EQ(fields<DescriptorCellList>(d, Reading::kept),
            "cell_list_data: list of 1\n"
            "  data: DescriptorCellList::CellListData\n"
            "    cell_id: 1\n"
            "    cell_latitude: 16384\n"
            "    cell_longitude: 65534\n"
            "    cell_extend_of_latitude: 291\n"
            "    cell_extend_of_longitude: 4095\n"
            "    subcell_info_length: 8\n"
            "    sub_cell_info: list of 1\n"
            "      info: DescriptorCellList::CellListData::SubCellInfo\n"
            "        cell_id_extension: 7\n"
            "        cell_latitude: 32768\n"
            "        cell_longitude: 2\n"
            "        cell_extend_of_latitude: 3\n"
            "        cell_extend_of_longitude: 4\n");
  EXPECT_EQ(fields<DescriptorCellList>(d, Reading::standard),
            "cell_list_data: list of 1\n"
            "  data: DescriptorCellList::CellListData\n"
            "    cell_id: 1\n"
            "    cell_latitude: 16384\n"
            "    cell_longitude: -2\n"
            "    cell_extend_of_latitude: 291\n"
            "    cell_extend_of_longitude: 4095\n"
            "    subcell_info_length: 8\n"
            "    sub_cell_info: list of 1\n"
            "      info: DescriptorCellList::CellListData::SubCellInfo\n"
            "        cell_id_extension: 7\n"
            "        cell_latitude: -32768\n"
            "        cell_longitude: 2\n"
            "        cell_extend_of_latitude: 3\n"
            "        cell_extend_of_longitude: 4\n");
}

TEST(StandardDescriptors, TimeSliceSelectorIsTheWires) {
  const Bytes d = descriptor(0x77, bits({{1, 1, "time_slicing"},
                                         {2, 1, "mpe_fec"},
                                         {2, 3, "reserved"},
                                         {3, 2, "frame_size"},
                                         {8, 9, "max_burst_duration"},
                                         {4, 3, "max_average_rate"},
                                         {4, 0, "time_slice_fec_id"},
                                         {24, 0x102030, "id_selector_byte"}}));
  EXPECT_EQ(fields<DescriptorTimeSliceFecIdentifier>(d, Reading::kept),
            "time_slicing: 1\n"
            "mpe_fec: 1\n"
            "frame_size: 2 (1536 kbits)\n"
            "max_burst_duration: 9\n"
            "max_average_rate: 3 (128 kbps)\n"
            "time_slice_fec_id: 0\n"
            "id_selector_byte: 10 11 12\n");
  EXPECT_EQ(fields<DescriptorTimeSliceFecIdentifier>(d, Reading::standard),
            "time_slicing: 1\n"
            "mpe_fec: 1\n"
            "frame_size: 2 (1536 kbits)\n"
            "max_burst_duration: 9\n"
            "max_average_rate: 3 (128 kbps)\n"
            "time_slice_fec_id: 0\n"
            "id_selector_byte: 10 20 30\n");
}

TEST(StandardDescriptors, ECMPrivateBytesAreTheWires) {
  const Bytes d = descriptor(0x78, bits({{16, 0x0B00, "CA_system_ID"},
                                         {16, 100, "ECM_repetition_rate"},
                                         {24, 0x102030, "private_data_byte"}}));
  EXPECT_EQ(fields<DescriptorECMRepetitionRate>(d, Reading::kept),
            "CA_system_ID: 2816 (Norwegian Telekom)\n"
            "ECM_repetition_rate: 100\n"
            "private_data_byte: 10 11 12\n");
  EXPECT_EQ(fields<DescriptorECMRepetitionRate>(d, Reading::standard),
            "CA_system_ID: 2816 (Norwegian Telekom)\n"
            "ECM_repetition_rate: 100\n"
            "private_data_byte: 10 20 30\n");
}

TEST(StandardDescriptors, ComponentHasItsWholeText) {
  const Bytes d = descriptor(0x50, joined({bits({{4, 5, "stream_content_ext"},
                                                 {4, 9, "stream_content"},
                                                 {8, 0, "component_type"},
                                                 {8, 1, "component_tag"}}),
                                           text("fraStereo")}));
  EXPECT_EQ(fields<DescriptorComponent>(d, Reading::kept),
            "stream_content: 9\n"
            "component_type: 0\n"
            "component_tag: 1\n"
            "language_code: \"fra\"\n"
            "text: \"Ster\"\n");
  EXPECT_EQ(fields<DescriptorComponent>(d, Reading::standard),
            "stream_content_ext: 5\n"
            "stream_content: 9\n"
            "component_type: 0\n"
            "component_tag: 1\n"
            "language_code: \"fra\"\n"
            "text: \"Stereo\"\n");
}

TEST(StandardDescriptors, PDCLabelHasTwentyBits) {
  const Bytes d = descriptor(
      0x69,
      bits({{4, 15, "reserved"}, {5, 22, "day"}, {4, 11, "month"}, {5, 20, "hour"}, {6, 15, "minute"}}));
  EXPECT_EQ(fields<DescriptorPDC>(d, Reading::kept), "programme_identification_label: 190648064\n");
  EXPECT_EQ(fields<DescriptorPDC>(d, Reading::standard), "programme_identification_label: 744719\n");
}

TEST(StandardDescriptors, LocalTimeRegionHasSixBits) {
  const Bytes d = descriptor(0x58, joined({text("ESP"), bits({{6, 2, "country_region_id"},
                                                              {1, 1, "reserved"},
                                                              {1, 0, "local_time_offset_polarity"},
                                                              {16, 0x0100, "local_time_offset"},
                                                              {16, 59945, "MJD"},
                                                              {24, 0x010000, "UTC"},
                                                              {16, 0x0200, "next_time_offset"}})}));
  EXPECT_EQ(fields<DescriptorLocalTimeOffset>(d, Reading::kept),
            "localtime: list of 1\n"
            "  time: DescriptorLocalTimeOffset::LocalTime\n"
            "    country_region_id: 0\n"
            "    local_time_offset_polarity: 0\n"
            "    country_code: \"ESP\"\n"
            "    local_time_offset: TimeOffset\n"
            "      hour: 1\n"
            "      minute: 0\n"
            "    time_of_change: time 1 1 2023 1 0 0\n"
            "    next_time_offset: TimeOffset\n"
            "      hour: 2\n"
            "      minute: 0\n");
  EXPECT_EQ(fields<DescriptorLocalTimeOffset>(d, Reading::standard),
            "localtime: list of 1\n"
            "  time: DescriptorLocalTimeOffset::LocalTime\n"
            "    country_region_id: 2\n"
            "    local_time_offset_polarity: 0\n"
            "    country_code: \"ESP\"\n"
            "    local_time_offset: TimeOffset\n"
            "      hour: 1\n"
            "      minute: 0\n"
            "    time_of_change: time 1 1 2023 1 0 0\n"
            "    next_time_offset: TimeOffset\n"
            "      hour: 2\n"
            "      minute: 0\n");
}

TEST(StandardDescriptors, AACWithoutType) {
  const Bytes d = descriptor(0x7C, bits({{8, 0x58, "profile_and_level"},
                                         {1, 0, "AAC_type_flag"},
                                         {1, 1, "SAOC_DE_flag"},
                                         {6, 0, "reserved"},
                                         {16, 0x1122, "additional_info_byte"}}));
  EXPECT_EQ(fields<DescriptorAAC>(d, Reading::kept),
            "Profile_and_level: 88\n"
            "AAC_type_flag: 1\n"
            "AAC_type: 17\n"
            "additional_info: 22\n");
  EXPECT_EQ(fields<DescriptorAAC>(d, Reading::standard),
            "Profile_and_level: 88\n"
            "AAC_type_flag: 0\n"
            "SAOC_DE_flag: 1\n"
            "AAC_type: 0\n"
            "additional_info: 11 22\n");
}

TEST(StandardDescriptors, AACOfOneByte) {
  const Bytes d = descriptor(0x7C, bits({{8, 0x58, "profile_and_level"}}));
  EXPECT_EQ(fields<DescriptorAAC>(d, Reading::kept),
            "Profile_and_level: 88\n"
            "AAC_type_flag: 1\n"
            "AAC_type: 0\n"
            "additional_info: \n");
  EXPECT_EQ(fields<DescriptorAAC>(d, Reading::standard),
            "Profile_and_level: 88\n"
            "AAC_type_flag: 0\n"
            "SAOC_DE_flag: 0\n"
            "AAC_type: 0\n"
            "additional_info: \n");
}

TEST(StandardDescriptors, AACWithType) {
  const Bytes d = descriptor(0x7C, bits({{8, 0x58, "profile_and_level"},
                                         {1, 1, "AAC_type_flag"},
                                         {1, 0, "SAOC_DE_flag"},
                                         {6, 0, "reserved"},
                                         {8, 3, "AAC_type"},
                                         {8, 0x11, "additional_info_byte"}}));
  EXPECT_EQ(fields<DescriptorAAC>(d, Reading::kept),
            "Profile_and_level: 88\n"
            "AAC_type_flag: 1\n"
            "AAC_type: 3\n"
            "additional_info: 11\n");
  EXPECT_EQ(fields<DescriptorAAC>(d, Reading::standard),
            "Profile_and_level: 88\n"
            "AAC_type_flag: 1\n"
            "SAOC_DE_flag: 0\n"
            "AAC_type: 3\n"
            "additional_info: 11\n");
}

TEST(StandardDescriptors, PlatformIdHas24Bits) {
  const Bytes d = descriptor(0x66, bits({{16, 0x000B, "data_broadcast_id"},
                                         {8, 5, "platform_id_data_length"},
                                         {24, 0x123456, "platform_id"},
                                         {8, 1, "action_type"},
                                         {2, 3, "reserved"},
                                         {1, 1, "INT_versioning_flag"},
                                         {5, 7, "INT_version"},
                                         {8, 0xAB, "private_data_byte"}}));
  EXPECT_EQ(fields<DescriptorDataBroadcastId>(d, Reading::kept),
            "data_broadcast_id: 11 (Reserved for future use by DVB)\n"
            "id_selector_byte: \n"
            "platform_id_data_length: 5\n"
            "platformiddata: list of 1\n"
            "  platformiddata: DescriptorDataBroadcastId::PlatformIdData\n"
            "    platform_id: 302003286\n"
            "    action_type: 1\n"
            "    INT_versioning_flag: 1\n"
            "    INT_version: 7\n"
            "private_data_byte: ab\n");
  EXPECT_EQ(fields<DescriptorDataBroadcastId>(d, Reading::standard),
            "data_broadcast_id: 11 (Reserved for future use by DVB)\n"
            "id_selector_byte: \n"
            "platform_id_data_length: 5\n"
            "platformiddata: list of 1\n"
            "  platformiddata: DescriptorDataBroadcastId::PlatformIdData\n"
            "    platform_id: 1193046\n"
            "    action_type: 1\n"
            "    INT_versioning_flag: 1\n"
            "    INT_version: 7\n"
            "private_data_byte: ab\n");
}

TEST(StandardDescriptors, DataBroadcastTextIsDVBText) {
  const Bytes d = descriptor(0x64, joined({bits({{16, 5, "data_broadcast_id"},
                                                 {8, 1, "component_tag"},
                                                 {8, 1, "selector_length"},
                                                 {8, 0xAB, "selector_byte"}}),
                                           text("deu"),
                                           counted("\xC8"
                                                   "au\x8A"
                                                   "b")}));
  EXPECT_EQ(fields<DescriptorDataBroadcast>(d, Reading::kept),
            "data_broadcast_id: 5 (Multi protocol encapsulation)\n"
            "component_tag: 1\n"
            "selector_length: 1\n"
            "language_code: \"deu\"\n"
            "textlength: 5\n"
            "text: \"ÈauŠb\"\n"
            "selector_bytes: ab\n");
  EXPECT_EQ(fields<DescriptorDataBroadcast>(d, Reading::standard),
            "data_broadcast_id: 5 (Multi protocol encapsulation)\n"
            "component_tag: 1\n"
            "selector_length: 1\n"
            "language_code: \"deu\"\n"
            "textlength: 5\n"
            "text: \"äu\n"
            "b\"\n"
            "selector_bytes: ab\n");
}

TEST(StandardDescriptors, CAIdentifierOfOddLengthEndsBeforeIt) {
  const Bytes d = descriptor(0x53, bits({{16, 0x0B00, "CA_system_id"}, {8, 0x05, "half of one"}}));
  EXPECT_EQ(fields<DescriptorCAIdentifier>(d, Reading::kept),
            "CA_system_id: list of 2\n"
            "  id: DescriptorCAIdentifier::CAIdentifierID\n"
            "    CA_system_id: 2816 (Norwegian Telekom)\n"
            "  id: DescriptorCAIdentifier::CAIdentifierID\n"
            "    CA_system_id: 1280 (France Telecom)\n");
  EXPECT_EQ(fields<DescriptorCAIdentifier>(d, Reading::standard),
            "CA_system_id: list of 1\n"
            "  id: DescriptorCAIdentifier::CAIdentifierID\n"
            "    CA_system_id: 2816 (Norwegian Telekom)\n");
}

TEST(StandardDescriptors, PartialTransportStreamHasRates) {
  const Bytes d = descriptor(0x63, bits({{2, 3, "reserved"},
                                         {22, 0x012345, "peak_rate"},
                                         {2, 3, "reserved"},
                                         {22, 0x3FFFFF, "minimum_overall_smoothing_rate"},
                                         {2, 3, "reserved"},
                                         {14, 0x1234, "maximum_overall_smoothing_buffer"}}));
  EXPECT_EQ(fields<DescriptorPartialTransportStream>(d, Reading::kept), "");
  EXPECT_EQ(fields<DescriptorPartialTransportStream>(d, Reading::standard),
            "peak_rate: 74565\n"
            "minimum_overall_smoothing_rate: 4194303\n"
            "maximum_overall_smoothing_buffer: 4660\n");
}

TEST(StandardDescriptors, ApplicationTypeHas15Bits) {
  const Bytes d = descriptor(0x6F, bits({{1, 1, "reserved"},
                                         {15, 0x0010, "application_type"},
                                         {3, 7, "reserved"},
                                         {5, 9, "AIT_version_number"}}));
  EXPECT_EQ(fields<DescriptorApplicationSignalling>(d, Reading::kept),
            "application_info: list of 1\n"
            "  info: DescriptorApplicationSignalling::ApplicationInfo\n"
            "    application_type: 32784 (subject to registration with DVB)\n"
            "    AIT_version_number: 9\n");
  EXPECT_EQ(fields<DescriptorApplicationSignalling>(d, Reading::standard),
            "application_info: list of 1\n"
            "  info: DescriptorApplicationSignalling::ApplicationInfo\n"
            "    application_type: 16 (HbbTV application)\n"
            "    AIT_version_number: 9\n");
}
