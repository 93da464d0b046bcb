// The tables of MPEG-2, DVB and application signalling in both readings.

#include "tests/readings/readings.h"

#include <gtest/gtest.h>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/int.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>

using namespace quillon;
using namespace quillon::test;

TEST(StandardTables, RstOriginalNetworkIdHasItsOwnBytes) {
  const Bytes section = short_section(0x71, bits({{16, 1, "transport_stream_id"},
                                                  {16, 0x1234, "original_network_id"},
                                                  {16, 3, "service_id"},
                                                  {16, 4, "event_id"},
                                                  {5, 31, "reserved"},
                                                  {3, 4, "running_status"}}));
  EXPECT_EQ(body_of<Rst>(section, Reading::kept),
            "status_infos: list of 1\n"
            "  status_info: Rst::Status\n"
            "    transport_stream_id: 1\n"
            "    original_network_id: 4626\n"
            "    service_id: 3\n"
            "    event_id: 4\n"
            "    running_status: 4\n");
  EXPECT_EQ(body_of<Rst>(section, Reading::standard),
            "status_infos: list of 1\n"
            "  status_info: Rst::Status\n"
            "    transport_stream_id: 1\n"
            "    original_network_id: 4660\n"
            "    service_id: 3\n"
            "    event_id: 4\n"
            "    running_status: 4\n");
}

TEST(StandardTables, NitRowsAreOfferedTheRestOfTheLoop) {
  const Bytes section = long_section(0x40, joined({bits({{4, 15, "reserved"},
                                                         {12, 0, "network_descriptors_length"},
                                                         {4, 15, "reserved"},
                                                         {12, 9, "transport_stream_loop_length"},
                                                         {16, 1, "transport_stream_id"},
                                                         {16, 2, "original_network_id"},
                                                         {4, 15, "reserved"},
                                                         {12, 0, "transport_descriptors_length"},
                                                         {24, 0, "less than a row"}}),
                                                   {0, 0, 0}}));
  EXPECT_EQ(body_of<Nit>(section, Reading::kept), "-1: descriptor start end mismatch\n");
  EXPECT_EQ(body_of<Nit>(section, Reading::standard), "-1: too little data\n");
}

TEST(StandardTables, CatKeepsWhatIsNotCA) {
  const Bytes section = long_section(
      0x01,
      joined(
          {descriptor(0x09, bits({{16, 0x0B00, "CA_system_ID"}, {3, 7, "reserved"}, {13, 0x123, "CA_PID"}})),
           descriptor(0x65, {1, 2})}));
  EXPECT_EQ(body_of<Cat>(section, Reading::kept), "-1: invalid descriptor tag\n");
  EXPECT_EQ(body_of<Cat>(section, Reading::standard),
            "descriptors: list of 2\n"
            "  CA_descriptor: DescriptorCa\n"
            "    descriptor_id: 9 (CA_Descriptor)\n"
            "    descriptor_length: 4\n"
            "    sys_id: 2816 (Norwegian Telekom)\n"
            "    pid: 291\n"
            "    private_bytes: \n"
            "  general_descriptor: DescriptorGeneral\n"
            "    descriptor_id: 101 (User Private)\n"
            "    descriptor_length: 2\n"
            "    private_data: 01 02\n");
}

TEST(StandardTables, AitTypeHas15BitsAndTextsAreUTF8) {
  const Bytes section = long_section(0x74,
                                     bits({{4, 15, "reserved"},
                                           {12, 0, "common_descriptors_length"},
                                           {4, 15, "reserved"},
                                           {12, 9, "application_loop_length"},
                                           {32, 0xC0000001, "organisation_id"},
                                           {16, 2, "application_id"},
                                           {8, 1, "application_control_code"},
                                           {4, 15, "reserved"},
                                           {12, 0, "application_descriptors_loop_length"}}),
                                     {.extension = 0x8010});
  EXPECT_EQ(body_of<Ait>(section, Reading::kept),
            "application_type: 32784 (subject to registration with DVB)\n"
            "common_descriptors_length: 0\n"
            "application_loop_length: 9\n"
            "application_infos: list of 1\n"
            "  application_info: Ait::Application\n"
            "    application_control_code: 1\n"
            "    application_descriptors_loop_length: 0\n"
            "    application_identifer: ApplicationIdentifier\n"
            "      organisation_id: 3221225473\n"
            "      application_id: 2\n"
            "    descriptors: list of 0\n"
            "descriptors: list of 0\n");
  EXPECT_EQ(body_of<Ait>(section, Reading::standard),
            "application_type: 16 (HbbTV application)\n"
            "test_application_flag: 1\n"
            "common_descriptors_length: 0\n"
            "application_loop_length: 9\n"
            "application_infos: list of 1\n"
            "  application_info: Ait::Application\n"
            "    application_control_code: 1\n"
            "    application_descriptors_loop_length: 0\n"
            "    application_identifer: ApplicationIdentifier\n"
            "      organisation_id: 3221225473\n"
            "      application_id: 2\n"
            "    descriptors: list of 0\n"
            "descriptors: list of 0\n");
}

TEST(StandardTables, AitTakesItsOwnTableIdAlone) {
  const Bytes section = long_section(0x75, bits({{4, 15, "reserved"},
                                                 {12, 0, "common_descriptors_length"},
                                                 {4, 15, "reserved"},
                                                 {12, 0, "application_loop_length"}}));
  EXPECT_EQ(body_of<Ait>(section, Reading::kept),
            "application_type: 4660 (subject to registration with DVB)\n"
            "common_descriptors_length: 0\n"
            "application_loop_length: 0\n"
            "application_infos: list of 0\n"
            "descriptors: list of 0\n");
  EXPECT_EQ(body_of<Ait>(section, Reading::standard), "-1: invalid table id\n");
}

TEST(StandardTables, IntTakesItsOwnTableIdAlone) {
  const Bytes section = long_section(0x4D, bits({{24, 0x123456, "platform_id"},
                                                 {8, 0, "processing_order"},
                                                 {4, 15, "reserved"},
                                                 {12, 0, "platform_descriptor_loop_length"}}));
  EXPECT_EQ(body_of<Int>(section, Reading::kept),
            "action_type: 18\n"
            "platform_id_hash: 52\n"
            "platform_id: 1193046\n"
            "processing_order: 0\n"
            "platform_descriptor_loop_length: 0\n"
            "targetoperationaldescriptors: list of 0\n"
            "descriptors: list of 0\n");
  EXPECT_EQ(body_of<Int>(section, Reading::standard), "-1: invalid table id\n");
}

TEST(StandardTables, PmtStreamTypesAreThoseInForce) {
  const Bytes section = long_section(0x02, joined({bits({{3, 7, "reserved"},
                                                         {13, 0x100, "PCR_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 6, "program_info_length"}}),
                                                   descriptor(0x05, text("CUEI")),
                                                   bits({{8, 0x24, "stream_type"},
                                                         {3, 7, "reserved"},
                                                         {13, 0x100, "elementary_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 0, "ES_info_length"}}),
                                                   bits({{8, 0x86, "stream_type"},
                                                         {3, 7, "reserved"},
                                                         {13, 0x101, "elementary_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 0, "ES_info_length"}}),
                                                   bits({{8, 0x06, "stream_type"},
                                                         {3, 7, "reserved"},
                                                         {13, 0x102, "elementary_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 6, "ES_info_length"}}),
                                                   descriptor(0x05, text("Opus")),
                                                   bits({{8, 0x06, "stream_type"},
                                                         {3, 7, "reserved"},
                                                         {13, 0x103, "elementary_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 3, "ES_info_length"}}),
                                                   descriptor(0x6A, {0}),
                                                   bits({{8, 0x81, "stream_type"},
                                                         {3, 7, "reserved"},
                                                         {13, 0x104, "elementary_PID"},
                                                         {4, 15, "reserved"},
                                                         {12, 0, "ES_info_length"}})}));
  EXPECT_EQ(body_of<PmtDVB>(section, Reading::kept),
            "program_number: 4660\n"
            "pcr: 256\n"
            "stream_infos: list of 5\n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 36 (ITU-T Rec. H.222.0 | ISO/IEC 13818-1 Reserved)\n"
            "    elementary_pid: 256\n"
            "    es_info_length: 0\n"
            "    descriptors: list of 0\n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 134 (User Private)\n"
            "    elementary_pid: 257\n"
            "    es_info_length: 0\n"
            "    descriptors: list of 0\n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 6 (ITU-T Rec. H.222.0 | ISO/IEC 13818-1 PES packets containing private data)\n"
            "    elementary_pid: 258\n"
            "    es_info_length: 6\n"
            "    descriptors: list of 1\n"
            "      registration_descriptor: DescriptorRegistration\n"
            "        descriptor_id: 5 (registration_descriptor)\n"
            "        descriptor_length: 4\n"
            "        format_identifier: 1332770163\n"
            "        additional_identification_info: \n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 6 (ITU-T Rec. H.222.0 | ISO/IEC 13818-1 PES packets containing private data)\n"
            "    elementary_pid: 259\n"
            "    es_info_length: 3\n"
            "    descriptors: list of 1\n"
            "      AC3_descriptor: DescriptorAC3\n"
            "        descriptor_id: 106 (_descriptor)\n"
            "        descriptor_length: 1\n"
            "        component_type_flag: 0\n"
            "        bsid_flag: 0\n"
            "        mainid_flag: 0\n"
            "        asvc_flag: 0\n"
            "        AC_3_type: 0\n"
            "        bsid: 0\n"
            "        mainid: 0\n"
            "        asvc: 0\n"
            "        additional_info: \n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 129 (User Private)\n"
            "    elementary_pid: 260\n"
            "    es_info_length: 0\n"
            "    descriptors: list of 0\n"
            "descriptors: list of 1\n"
            "  registration_descriptor: DescriptorRegistration\n"
            "    descriptor_id: 5 (registration_descriptor)\n"
            "    descriptor_length: 4\n"
            "    format_identifier: 1129661769\n"
            "    additional_identification_info: \n");
  EXPECT_EQ(body_of<PmtDVB>(section, Reading::standard),
            "program_number: 4660\n"
            "pcr: 256\n"
            "stream_infos: list of 5\n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 36 (HEVC video stream (ITU-T Rec. H.265 | ISO/IEC 23008-2))\n"
            "    elementary_pid: 256\n"
            "    es_info_length: 0\n"
            "    descriptors: list of 0\n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 134 (SCTE 35 splice information)\n"
            "    elementary_pid: 257\n"
            "    es_info_length: 0\n"
            "    descriptors: list of 0\n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 6 (Opus audio)\n"
            "    elementary_pid: 258\n"
            "    es_info_length: 6\n"
            "    descriptors: list of 1\n"
            "      registration_descriptor: DescriptorRegistration\n"
            "        descriptor_id: 5 (registration_descriptor)\n"
            "        descriptor_length: 4\n"
            "        format_identifier: 1332770163\n"
            "        additional_identification_info: \n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 6 (AC-3 audio)\n"
            "    elementary_pid: 259\n"
            "    es_info_length: 3\n"
            "    descriptors: list of 1\n"
            "      AC3_descriptor: DescriptorAC3\n"
            "        descriptor_id: 106 (_descriptor)\n"
            "        descriptor_length: 1\n"
            "        component_type_flag: 0\n"
            "        bsid_flag: 0\n"
            "        mainid_flag: 0\n"
            "        asvc_flag: 0\n"
            "        AC_3_type: 0\n"
            "        bsid: 0\n"
            "        mainid: 0\n"
            "        asvc: 0\n"
            "        additional_info: \n"
            "  stream: PmtDVB::ElementaryStream\n"
            "    stream_type: 129 (User Private)\n"
            "    elementary_pid: 260\n"
            "    es_info_length: 0\n"
            "    descriptors: list of 0\n"
            "descriptors: list of 1\n"
            "  registration_descriptor: DescriptorRegistration\n"
            "    descriptor_id: 5 (registration_descriptor)\n"
            "    descriptor_length: 4\n"
            "    format_identifier: 1129661769\n"
            "    additional_identification_info: \n");
}
