// The virtual channel tables, terrestrial and cable.

#include "tests/atsc/tables.h"
#include "tests/support/table_cases.h"

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/cvct.h>
#include <quillon/atsc/tvct.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Terrestrial = AtscTVCT::Channel;
using Cable = AtscCVCT::Channel;

// The CRCs are from a calculator of its own.
const Bytes kTvct = {
    0xC8,                                    // table_id
    0xF0, 0x32,                              // section_length 50
    0x0D, 0xE6,                              // transport_stream_id
    0xC3, 0x00, 0x00,                        // version 1, current; section 0 of 0
    0x00, 0x01,                              // protocol_version, num_channels_in_section
    0,    'K',  0,    'T',  0, 'T', 0, 'V',  // short_name
    0,    '-',  0,    'D',  0, 'T',          //
    0xF0, 0x1C, 0x05,                        // channel 7.5
    0x04,                                    // modulation_mode
    0x00, 0x11, 0x22, 0x33,                  // carrier_frequency
    0x0D, 0xE6, 0x00, 0x03,                  // channel_TSID, program_number
    0x7D, 0xC2,                              // ETM_location 1, access_controlled, hidden; service_type 2
    0x12, 0x34,                              // source_id
    0xFC, 0x03,                              // descriptors_length
    0xA0, 0x01, 0x00,                        //
    0xFC, 0x00,                              // additional_descriptors_length, which is wrong
    0xAA, 0x00,                              //
    0x2E, 0xD9, 0x44, 0x44,                  // CRC_32
};

const Bytes kCvct = {
    0xC9,                                           // table_id
    0xF0, 0x32,                                     // section_length 50
    0x0D, 0xE6,                                     // transport_stream_id
    0xC5, 0x01, 0x02,                               // version 2, current; section 1 of 2
    0x00,                                           // protocol_version
    0x01, 0x43, 0x00, 'A',  0x00, 'B',  0x00, 'L',  // num_channels_in_section, and short_name with it
    0x00, 'E',  0x00, 0x00, 0x00, 0x00,             //
    0xF0, 0x1C, 0xFE, 0x05,                         // channel 7.517
    0x03,                                           // modulation_mode
    0x11, 0x22, 0x33, 0x44,                         // carrier_frequency
    0x0D, 0xE6, 0x00, 0x07,                         // channel_TSID, program_number
    0xBE, 0xC2,                                     // ETM_location 2 and all flags; service_type 2
    0x12, 0x34,                                     // source_id
    0xFC, 0x04,                                     // descriptors_length, and the first tag
    0x02, 0xC5, 0xC6,                               //
    0xFC, 0x00,                                     // additional_descriptors_length, which is wrong
    0xAA, 0x00,                                     //
    0x20, 0xC0, 0xEA, 0x91,                         // CRC_32
};

const std::string kMismatch = "-1: AtscTVCT: descriptor start end mismatch";
const std::string kChannelMismatch = "-1: AtscTVCT::Channel: descriptor start end mismatch";

const Bytes kGenre = descriptor(0xAB, {0xE0});

Bytes length_of(size_t length) {
  return bits({{6, 63, "reserved"}, {10, length, "length"}});
}

// A terrestrial channel of zeros but for its descriptors.
Bytes terrestrial(const Bytes& descriptors, int length_change = 0) {
  return joined({Bytes(30), length_of(descriptors.size() + static_cast<size_t>(length_change)), descriptors});
}
// A cable channel likewise, with `first` as its first byte. The descriptors begin with the length's low byte.
Bytes cable(uint8_t first, const Bytes& descriptors, size_t high_bits = 0) {
  return joined(
      {Bytes{first}, Bytes(30), bits({{6, 63, "reserved"}, {2, high_bits, "high bits"}}), descriptors});
}

Bytes tvct(uint8_t channels, const Bytes& rest) {
  return long_section(0xC8, joined({Bytes{0, channels}, rest}));
}
// `rest` begins with the count.
Bytes cvct(const Bytes& rest) {
  return long_section(0xC9, joined({Bytes{0}, rest}));
}

wide_string wide(std::initializer_list<uint16_t> units) {
  return wide_string(units);
}

const TableCases kTables = {table_case<AtscTVCT>("AtscTVCT", "atsc_tvct", kTvct),
                            table_case<AtscCVCT>("AtscCVCT", "atsc_cvct", kCvct)};

}  // namespace

TEST(AtscTVCT, ReadsASection) {
  const auto vct = parsed<AtscTVCT>(kTvct);
  EXPECT_TRUE(vct.is_parsed());
  EXPECT_EQ(vct.protocol_version, 0);
  EXPECT_EQ(vct.num_channels_in_section, 1);
  EXPECT_EQ(vct.additional_descriptors_length, 0);
  EXPECT_EQ(vct.get_atsc_redistribution_control_descriptor().size(), 1u);
  ASSERT_EQ(vct.channels.size(), 1u);
  const Terrestrial& channel = vct.channels[0];
  EXPECT_EQ(channel.short_name, wide({'K', 'T', 'T', 'V', '-', 'D', 'T'}));
  EXPECT_EQ(channel.major_channel_number, 7);
  EXPECT_EQ(channel.minor_channel_number, 5);
  EXPECT_EQ(channel.modulation_mode, 4);
  EXPECT_EQ(channel.carrier_frequency, 0x00112233);
  EXPECT_EQ(channel.channel_TSID, 0x0DE6);
  EXPECT_EQ(channel.program_number, 3);
  EXPECT_EQ(channel.ETM_location, 1);
  EXPECT_EQ(channel.access_controlled, 1);
  EXPECT_EQ(channel.hidden, 1);
  EXPECT_EQ(channel.hide_guide, 0);
  EXPECT_EQ(channel.service_type, 2);
  EXPECT_EQ(channel.source_id, 0x1234);
  EXPECT_EQ(channel.descriptors_length, 3);
  EXPECT_EQ(channel.get_atsc_extended_channel_name_descriptor().size(), 1u);
  EXPECT_STREQ(channel.get_modulation_mode_text(), "ATSC (8 VSB)");
  EXPECT_STREQ(channel.get_ETM_location_text(), "ETM located in the PTC carrying this PSIP");
  EXPECT_STREQ(channel.get_service_type_text(), "ATSC_digital_television");
}

TEST(AtscTVCT, PrintsItsReport) {
  const auto vct = parsed<AtscTVCT>(kTvct);
  EXPECT_EQ(report(vct),
            "table name: terrestrial_virtual_channel_table\n"
            "table_id C8\n"
            "section_length 0032\n"
            "context_id 0DE6\n"
            "version_number 01\n"
            "section_number 00\n"
            "last_section_number 0\n"
            "current_next_indicator 01\n"
            "crc32 2ED94444\n"
            "protocol_version: 0\n"
            "num_channels_in_section: 1\n"
            "major_channel_number: 7\n"
            "minor_channel_number: 5\n"
            "modulation_mode: 4\n"
            "carrier_frequency: 112233\n"
            "channel_TSID: DE6\n"
            "program_number: 3\n"
            "ETM_location: 1\n"
            "access_controlled: 1\n"
            "hidden: 1\n"
            "hide_guide: 0\n"
            "service_type: 2\n"
            "source_id: 1234\n"
            "descriptors_length: 3\n"
            "\n");
  EXPECT_EQ(report(vct.channels[0]),
            "major_channel_number: 7\n"
            "minor_channel_number: 5\n"
            "modulation_mode: 4\n"
            "carrier_frequency: 1122867\n"
            "channel_TSID: 3558\n"
            "program_number: 3\n"
            "ETM_location: 1\n"
            "access_controlled: 1\n"
            "hidden: 1\n"
            "hide_guide: 0\n"
            "service_type: 2\n"
            "source_id: 4660\n"
            "descriptors_length: 3\n");
}

TEST(AtscTVCT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(saved(parsed<AtscTVCT>(kTvct), "tvct"),
            R"(<tvct table_id="200" syntax_indicator="1" section_length="50" context_id="3558")"
            R"( version_number="1" section_number="0" last_section_number="0" current_next_indicator="1")"
            R"( crc32="785990724" />)");
  expect_descriptors_loaded<AtscTVCT>(0xC8);
}

TEST(AtscCVCT, ReadsASectionFromTheByteOfItsCountOn) {
  const auto vct = parsed<AtscCVCT>(kCvct);
  EXPECT_TRUE(vct.is_parsed());
  EXPECT_EQ(vct.protocol_version, 0);
  EXPECT_EQ(vct.num_channels_in_section, 1);
  EXPECT_EQ(vct.additional_descriptors_length, 0);
  EXPECT_EQ(vct.get_atsc_redistribution_control_descriptor().size(), 1u);
  ASSERT_EQ(vct.channels.size(), 1u);
  const Cable& channel = vct.channels[0];
  EXPECT_EQ(channel.short_name, wide({0x0143, 'A', 'B', 'L', 'E'}));
  EXPECT_EQ(channel.major_channel_number, 7);
  EXPECT_EQ(channel.minor_channel_number, 517);
  EXPECT_EQ(channel.modulation_mode, 3);
  EXPECT_EQ(channel.carrier_frequency, 0x11223344);
  EXPECT_EQ(channel.channel_TSID, 0x0DE6);
  EXPECT_EQ(channel.program_number, 7);
  EXPECT_EQ(channel.ETM_location, 2);
  EXPECT_EQ(channel.access_controlled, 1);
  EXPECT_EQ(channel.hidden, 1);
  EXPECT_EQ(channel.path_select, 1);
  EXPECT_EQ(channel.out_of_band, 1);
  EXPECT_EQ(channel.hide_guide, 1);
  EXPECT_EQ(channel.service_type, 2);
  EXPECT_EQ(channel.source_id, 0x1234);
  EXPECT_EQ(channel.descriptors_length, 4);
  ASSERT_EQ(channel.get_atsc_hierarchy_descriptors().size(), 1u);
  EXPECT_EQ(channel.get_atsc_hierarchy_descriptors()[0].get_hierarchy_type(), 5);
  EXPECT_STREQ(channel.get_modulation_mode_text(), "SCTE_mode_2");
  EXPECT_STREQ(channel.get_ETM_location_text(), "ETM located in the PTC specified by the channel_TSID");
  EXPECT_STREQ(channel.get_service_type_text(), "ATSC_digital_television");
}

TEST(AtscCVCT, PrintsItsHeaderAloneAndAChannelOnRequest) {
  const auto vct = parsed<AtscCVCT>(kCvct);
  EXPECT_EQ(report(vct),
            "table name: cable_virtual_channel_table\n"
            "table_id C9\n"
            "section_length 0032\n"
            "context_id 0DE6\n"
            "version_number 02\n"
            "section_number 01\n"
            "last_section_number 2\n"
            "current_next_indicator 01\n"
            "crc32 20C0EA91\n");
  EXPECT_EQ(report(vct.channels[0]),
            "major_channel_number: 7\n"
            "minor_channel_number: 517\n"
            "modulation_mode: 3\n"
            "carrier_frequency: 287454020\n"
            "channel_TSID: 3558\n"
            "program_number: 7\n"
            "ETM_location: 2\n"
            "access_controlled: 1\n"
            "hidden: 1\n"
            "hide_guide: 1\n"
            "service_type: 2\n"
            "source_id: 4660\n"
            "descriptors_length: 4\n");
}

TEST(AtscCVCT, SavesItsHeaderAndLoadsDescriptorsToo) {
  EXPECT_EQ(saved(parsed<AtscCVCT>(kCvct), "cvct"),
            R"(<cvct table_id="201" syntax_indicator="1" section_length="50" context_id="3558")"
            R"( version_number="2" section_number="1" last_section_number="2" current_next_indicator="1")"
            R"( crc32="549513873" />)");
  expect_descriptors_loaded<AtscCVCT>(0xC9);
}

TEST(AtscTVCT, TakesEachBitOfAChannelForItsField) {
  using C = Terrestrial;
  expect_places<C>(31,
                   {{&C::major_channel_number, 14 * 8 + 4, 10},
                    {&C::minor_channel_number, 15 * 8 + 6, 10},
                    {&C::modulation_mode, 17 * 8, 8},
                    {&C::carrier_frequency, 18 * 8, 32},
                    {&C::channel_TSID, 22 * 8, 16},
                    {&C::program_number, 24 * 8, 16},
                    {&C::ETM_location, 26 * 8, 2},
                    {&C::access_controlled, 26 * 8 + 2, 1},
                    {&C::hidden, 26 * 8 + 3, 1},
                    {&C::hide_guide, 26 * 8 + 6, 1},
                    {&C::service_type, 27 * 8 + 2, 6},
                    {&C::source_id, 28 * 8, 16},
                    {&C::descriptors_length, 30 * 8 + 6, 10}},
                   {});
}

TEST(AtscCVCT, TakesEachBitOfAChannelForItsField) {
  using C = Cable;
  expect_places<C>(32,
                   {{&C::major_channel_number, 14 * 8 + 4, 10},
                    {&C::minor_channel_number, 16 * 8 + 6, 10},
                    {&C::modulation_mode, 18 * 8, 8},
                    {&C::carrier_frequency, 19 * 8, 32},
                    {&C::channel_TSID, 23 * 8, 16},
                    {&C::program_number, 25 * 8, 16},
                    {&C::ETM_location, 27 * 8, 2},
                    {&C::access_controlled, 27 * 8 + 2, 1},
                    {&C::hidden, 27 * 8 + 3, 1},
                    {&C::path_select, 27 * 8 + 4, 1},
                    {&C::out_of_band, 27 * 8 + 5, 1},
                    {&C::hide_guide, 27 * 8 + 6, 1},
                    {&C::service_type, 28 * 8 + 2, 6},
                    {&C::source_id, 29 * 8, 16},
                    {&C::descriptors_length, 31 * 8 + 6, 10}},
                   {});
}

TEST(VirtualChannel, EndsItsNameAtTheFirstZeroUnit) {
  const auto names = [](const Bytes& name) {
    Bytes bytes(33);
    std::copy(name.begin(), name.end(), bytes.begin());
    bytes[15] = 0x1C;
    const Terrestrial terrestrial = Read<Terrestrial>(bytes).row;
    const Cable cable = Read<Cable>(bytes).row;
    EXPECT_EQ(terrestrial.major_channel_number, 7);
    EXPECT_EQ(cable.major_channel_number, 7);
    EXPECT_EQ(terrestrial.short_name, cable.short_name);
    return terrestrial.short_name;
  };
  EXPECT_EQ(names({}), wide({}));
  EXPECT_EQ(names({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}),
            wide({0x0102, 0x0304, 0x0506, 0x0708, 0x090A, 0x0B0C, 0x0D0E}));
  EXPECT_EQ(names({0, 'A', 0, 0, 0, 'B'}), wide({'A'}));
  EXPECT_EQ(names({0, 0, 0, 'B'}), wide({}));
  // A unit with one byte of zero is none.
  EXPECT_EQ(names({0x30, 0, 0, 'B'}), wide({0x3000, 'B'}));
  EXPECT_EQ(names({0xFF, 0xFF}), wide({0xFFFF}));
}

TEST(AtscTVCT, ReadsTheDescriptorsOfAChannel) {
  const Read<Terrestrial> none(terrestrial({}));
  EXPECT_EQ(none.used, 32);
  EXPECT_EQ(none.row.descriptors_length, 0);
  for (const int offered : {-100, 0, 5, 32, 4000}) {
    int length = offered;
    const Bytes bytes = terrestrial(joined({kGenre, kGenre}));
    const Terrestrial channel(view(bytes), length, true, nullptr);
    EXPECT_EQ(length, 38) << offered;
    EXPECT_EQ(channel.get_atsc_genre_descriptor().size(), 2u);
  }
  for (const int change : {-1, 1, 0x200}) {
    EXPECT_EQ(row_refusal<Terrestrial>(joined({terrestrial(kGenre, change), Bytes(1)})), kChannelMismatch);
    EXPECT_EQ(failure_of<AtscTVCT>(tvct(1, joined({terrestrial(kGenre, change), length_of(0)}))),
              kChannelMismatch);
  }
}

TEST(AtscCVCT, ReadsTheDescriptorsOfAChannelFromTheLowByteOfTheirLengthOn) {
  const Read<Cable> none(cable(0, {0}));
  EXPECT_EQ(none.used, 32);  // the byte at 32 is left to the next channel
  EXPECT_EQ(none.row.descriptors_length, 0);
  // Two bytes: tag 2, and no body.
  const Read<Cable> two(cable(0, {2, 0}));
  EXPECT_EQ(two.used, 34);
  ASSERT_EQ(two.row.get_atsc_video_stream_descriptors().size(), 1u);
  EXPECT_EQ(two.row.get_atsc_video_stream_descriptors()[0].get_descriptor_length(), 0);
  // 0x106 bytes: tag 6, then a tag of no class.
  const Read<Cable> long_loop(
      cable(0, joined({descriptor(0x06, {9}), descriptor(0x70, Bytes(255)), Bytes(2)}), 1));
  EXPECT_EQ(long_loop.row.descriptors_length, 0x106);
  EXPECT_EQ(long_loop.used, 32 + 0x106);
  EXPECT_EQ(long_loop.row.get_atsc_data_stream_alignment_descriptors().size(), 1u);
  EXPECT_EQ(long_loop.row.get_general_descriptors().size(), 2u);
  EXPECT_EQ(row_refusal<Cable>(cable(0, {1, 0, 0})), kChannelMismatch);
  EXPECT_EQ(row_refusal<Cable>(cable(0, {4, 3, 0, 0, 0})), kChannelMismatch);
  EXPECT_EQ(failure_of<AtscCVCT>(cvct(joined({cable(1, {4, 3, 0, 0, 0}), length_of(0)}))), kChannelMismatch);
}

TEST(AtscTVCT, ReadsItsOwnDescriptorsUpToTheCrc) {
  for (const size_t told : {size_t{0}, size_t{3}, size_t{6}, size_t{0x3FF}}) {
    const auto vct = parsed<AtscTVCT>(tvct(0, joined({length_of(told), kGenre, kGenre})));
    EXPECT_TRUE(vct.channels.empty());
    EXPECT_EQ(vct.additional_descriptors_length, static_cast<int>(told));
    EXPECT_EQ(vct.get_atsc_genre_descriptor().size(), 2u) << told;
  }
  EXPECT_EQ(failure_of<AtscTVCT>(tvct(0, joined({length_of(4), kGenre, Bytes(1)}))), kMismatch);
  EXPECT_EQ(failure_of<AtscTVCT>(tvct(0, {0xFC})), kMismatch);
}

TEST(AtscCVCT, FindsTheLengthBehindNoChannelsInTheByteOfTheCount) {
  // The count is also the upper byte of the length, and the descriptors begin a byte earlier.
  const auto vct = parsed<AtscCVCT>(cvct(joined({Bytes{0, 0x21}, kGenre})));
  EXPECT_EQ(vct.num_channels_in_section, 0);
  EXPECT_EQ(vct.additional_descriptors_length, 0x21);
  EXPECT_EQ(vct.get_atsc_genre_descriptor().size(), 1u);
  EXPECT_EQ(failure_of<AtscCVCT>(cvct({0})), kMismatch);
  EXPECT_EQ(failure_of<AtscCVCT>(cvct({0, 0, 0})), kMismatch);
}

TEST(VirtualChannelTable, KeepsWhereItsOwnDescriptorsLie) {
  const Bytes terrestrial_table = tvct(1, joined({terrestrial(kGenre), length_of(6), kGenre, kGenre}));
  EXPECT_EQ(parsed<AtscTVCT>(terrestrial_table, true).get_descriptor_pos(), (std::vector<int>{39, 42}));
  EXPECT_TRUE(parsed<AtscTVCT>(terrestrial_table).get_descriptor_pos().empty());
  const Bytes cable_table = cvct(joined({cable(1, {2, 0}), length_of(6), kGenre, kGenre}));
  EXPECT_EQ(parsed<AtscCVCT>(cable_table, true).get_descriptor_pos(), (std::vector<int>{37, 40}));
}

TEST(AtscTVCT, StopsAtTheSectionsEndWhateverItsCount) {
  for (const int told : {2, 3, 255}) {
    AtscTVCT vct;
    const Bytes bytes = tvct(static_cast<uint8_t>(told), joined({terrestrial({}), length_of(0)}));
    // The second channel begins with the length and the CRC, has no descriptors, and ends beyond them.
    EXPECT_EQ(failure([&] { vct.Parse(bytes.data(), bytes.size(), false); }), kMismatch) << told;
    EXPECT_EQ(vct.num_channels_in_section, told);
    EXPECT_EQ(vct.channels.size(), 2u);
  }
  // Two channels that end with the section itself: a name for which the CRC is such a length of descriptors.
  Bytes ended = tvct(255, Bytes(2 * 32 - 4));
  while ((ended[ended.size() - 2] & 3) != 0 || ended.back() != 0) {
    if (++ended[11] == 0) ++ended[10];
    repair_crc(ended);
  }
  AtscTVCT vct;
  EXPECT_EQ(failure([&] { vct.Parse(ended.data(), ended.size(), false); }), kMismatch);
  EXPECT_EQ(vct.channels.size(), 2u);
  AtscTVCT all;
  const Bytes longest = with_length(tvct(255, {}), 4095);
  EXPECT_EQ(failure([&] { all.Parse(longest.data(), longest.size(), false); }), kMismatch);
  EXPECT_EQ(all.channels.size(), (4095u - 9 - 2 + 4 + 31) / 32);
}

TEST(AtscCVCT, StopsAtTheSectionsEndWhateverItsCount) {
  AtscCVCT vct;
  const Bytes bytes = with_length(cvct({255}), 4095);
  EXPECT_EQ(failure([&] { vct.Parse(bytes.data(), bytes.size(), false); }), kMismatch);
  EXPECT_EQ(vct.num_channels_in_section, 255);
  EXPECT_EQ(vct.channels.size(), (4095u - 9 - 1 + 4 + 31) / 32);
  EXPECT_EQ(vct.channels[0].short_name, wide({0xFF00}));
}

TEST(VirtualChannelTable, IsNotEmptiedByReset) {
  auto terrestrial_table = parsed<AtscTVCT>(kTvct);
  terrestrial_table.reset();
  EXPECT_FALSE(terrestrial_table.is_parsed());
  EXPECT_EQ(terrestrial_table.num_channels_in_section, 1);
  EXPECT_EQ(terrestrial_table.channels.size(), 1u);
  EXPECT_EQ(terrestrial_table.get_atsc_redistribution_control_descriptor().size(), 1u);
  auto cable_table = parsed<AtscCVCT>(kCvct);
  cable_table.reset();
  EXPECT_FALSE(cable_table.is_parsed());
  EXPECT_EQ(cable_table.channels.size(), 1u);
}

TEST(VirtualChannelTable, TakesDescriptorsOfTheApplicationsOwn) {
  AtscTVCT vct;
  vct.ParseDescriptor(kGenre.data());
  EXPECT_EQ(vct.get_atsc_genre_descriptor().size(), 1u);
}

TEST(VirtualChannelTable, AcceptsItsHeader) {
  expect_header<AtscTVCT>(0xC8, joined({Bytes(2), length_of(0)}), false);
  expect_header<AtscCVCT>(0xC9, Bytes(3), false);
}

TEST(VirtualChannel, NamesModulationModes) {
  const std::vector<Until> ranges = {{0, "[Reserved]"},
                                     {1, "Analog"},
                                     {2, "SCTE_mode_1"},
                                     {3, "SCTE_mode_2"},
                                     {4, "ATSC (8 VSB)"},
                                     {5, "ATSC (16 VSB)"},
                                     {127, "[Reserved for future use by ATSC]"},
                                     {255, "[User Private]"}};
  expect_ranges(&Terrestrial::get_modulation_mode_text, ranges);
  expect_ranges(&Cable::get_modulation_mode_text, ranges);
}

TEST(VirtualChannel, NamesEtmLocations) {
  const std::vector<Until> ranges = {{0, "No ETM"},
                                     {1, "ETM located in the PTC carrying this PSIP"},
                                     {2, "ETM located in the PTC specified by the channel_TSID"},
                                     {3, "[Reserved for future ATSC use]"}};
  expect_ranges(&Terrestrial::get_ETM_location_text, ranges);
  expect_ranges(&Cable::get_ETM_location_text, ranges);
}

TEST(VirtualChannel, NamesServiceTypes) {
  const std::vector<Until> ranges = {
      {0, "[Reserved]"}, {1, "analog_television"},      {2, "ATSC_digital_television"},
      {3, "ATSC_audio"}, {4, "ATSC_data_only_service"}, {63, "[Reserved for future ATSC use]"}};
  expect_ranges(&Terrestrial::get_service_type_text, ranges);
  expect_ranges(&Cable::get_service_type_text, ranges);
}

TEST(VirtualChannelTable, StaysWithinAnySection) {
  expect_bounded<AtscTVCT>(kTvct, {kMismatch, kChannelMismatch});
  expect_bounded<AtscCVCT>(kCvct, {kMismatch, kChannelMismatch});
}
