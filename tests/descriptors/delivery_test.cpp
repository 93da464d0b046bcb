// Satellite, cable and terrestrial delivery systems, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"

#include <quillon/descriptors/delivery/cable.h>
#include <quillon/descriptors/delivery/satellite.h>
#include <quillon/descriptors/delivery/terrestrial.h>

using namespace quillon;
using namespace quillon::test;

namespace {

Bytes satellite(uint64_t frequency, uint64_t orbital_position, uint64_t symbol_rate) {
  return descriptor(0x43, bits({{32, frequency, "frequency"},
                                {16, orbital_position, "orbital_position"},
                                {1, 1, "west_east_flag"},
                                {2, 2, "polarization"},
                                {2, 1, "roll_off"},
                                {1, 1, "modulation_system"},
                                {2, 2, "modulation_type"},
                                {28, symbol_rate, "symbol_rate"},
                                {4, 15, "FEC_inner"}}));
}
const Bytes kSatellite = satellite(0x01175725, 0x0192, 0x0275000);

Bytes cable(uint64_t frequency, uint64_t symbol_rate) {
  return descriptor(0x44, bits({{32, frequency, "frequency"},
                                {12, 0xFFF, "reserved_future_use"},
                                {4, 2, "FEC_outer"},
                                {8, 0x1A, "modulation"},
                                {28, symbol_rate, "symbol_rate"},
                                {4, 15, "FEC_inner"}}));
}
const Bytes kCable = cable(0x03120009, 0x0068750);

const Bytes kTerrestrial = descriptor(0x5A, bits({{32, 0xFEDCBA98, "centre_frequency"},
                                                  {3, 5, "bandwidth"},
                                                  {1, 1, "priority"},
                                                  {1, 0, "Time_Slicing_indicator"},
                                                  {1, 1, "MPE_FEC_indicator"},
                                                  {2, 3, "reserved_future_use"},
                                                  {2, 2, "constellation"},
                                                  {3, 5, "hierarchy_information"},
                                                  {3, 3, "code_rate_HP_stream"},
                                                  {3, 4, "code_rate_LP_stream"},
                                                  {2, 2, "guard_interval"},
                                                  {2, 1, "transmission_mode"},
                                                  {1, 1, "other_frequency_flag"},
                                                  {32, 0xFFFFFFFF, "reserved_future_use"}}));

Bytes s2_flags(int scrambling, int multiple, int compatible) {
  return bits({{1, static_cast<uint64_t>(scrambling), "scrambling_sequence_selector"},
               {1, static_cast<uint64_t>(multiple), "multiple_input_stream_flag"},
               {1, static_cast<uint64_t>(compatible), "backwards_compatibility_indicator"},
               {5, 0, "reserved_future_use"}});
}
const Bytes kS2 =
    descriptor(0x79, joined({s2_flags(1, 1, 0), bits({{6, 0x3F, "reserved"},
                                                      {18, 0x2A5F7, "scrambling_sequence_index"},
                                                      {8, 0x81, "input_stream_identifier"}})}));

const Cases cases = {
    case_of<DescriptorSatelliteDeliverySystem>(
        "DescriptorSatelliteDeliverySystem", Family::dvb, kSatellite,
        "descriptor_tag: 43 satellite_delivery_system_descriptor\n"
        "frequency 11.7572\n"
        "orbital_position 19.2\n"
        "west_east_flag 1\n"
        "polarization 2\n"
        "symbol_rate 27.5\n"
        "FEC_inner 15\n",
        R"(<d descriptor_id="67" descriptor_length="11" frequency="11.7572" orbital_position="19.2")"
        R"( west_east_flag="1" polarization="2" roll_off="1" modulation_system="1" modulation_type="2")"
        R"( symbol_rate="27.5" FEC_inner="15" />)"),
    case_of<DescriptorCableDeliverySystem>(
        "DescriptorCableDeliverySystem", Family::dvb, kCable,
        "descriptor_tag: 44 cable_delivery_system_descriptor\n"
        "frequency: 312\n"
        "FEC_outer: 2\n"
        "modulation: 1a\n"
        "symbol_rate: 6.875\n"
        "FEC_inner: f\n",
        R"(<d descriptor_id="68" descriptor_length="11" frequency="312" FEC_outer="2" modulation="26")"
        R"( symbol_rate="6.875" FEC_inner="15" />)"),
    case_of<DescriptorTerrestrialDeliverySystem>(
        "DescriptorTerrestrialDeliverySystem", Family::dvb, kTerrestrial,
        "descriptor_tag: 5a terrestrial_delivery_system_descriptor\n",
        R"(<d descriptor_id="90" descriptor_length="11" centre_frequency="-19088744" bandwidth="5" priority="1")"
        R"( Time_Slicing_indicator="0" MPE_FEC_indicator="1" constellation="2" hierarchy_information="5")"
        R"( code_rate_HP_stream="3" code_rate_LP_stream="4" guard_interval="2" transmission_mode="1")"
        R"( other_frequency_flag="1" />)"),
    case_of<DescriptorS2SatelliteDeliverySystem>(
        "DescriptorS2SatelliteDeliverySystem", Family::dvb, kS2,
        "descriptor_tag: 79 S2_satellite_delivery_system_descriptor\n",
        R"(<d descriptor_id="121" descriptor_length="5" scrambling_sequence_selector="1")"
        R"( multiple_input_stream_flag="1" backwards_compatibility_indicator="1")"
        R"( scrambling_sequence_index="173559" input_stream_identifier="129" />)"),
};

}  // namespace

TEST(DescriptorSatelliteDeliverySystem, ReadsItsMembers) {
  const DescriptorSatelliteDeliverySystem d(kSatellite.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x43);
  EXPECT_EQ(d.get_descriptor_length(), 11);
  EXPECT_DOUBLE_EQ(d.frequency, 11.7572);
  EXPECT_DOUBLE_EQ(d.orbital_position, 19.2);
  EXPECT_EQ(d.west_east_flag, 1);
  EXPECT_EQ(d.polarization, 2);
  EXPECT_EQ(d.roll_off, 1);
  EXPECT_EQ(d.modulation_system, 1);
  EXPECT_EQ(d.modulation_type, 2);
  EXPECT_DOUBLE_EQ(d.symbol_rate, 27.5);
  EXPECT_EQ(d.FEC_inner, 15);
}

TEST(DescriptorSatelliteDeliverySystem, WeighsEachDigit) {
  const double weights[] = {100, 10, 1, 0.1, 0.01, 0.001, 0.0001};
  for (int i = 0; i < 7; ++i) {
    const uint64_t digit = uint64_t{7} << 4 * (6 - i);
    const DescriptorSatelliteDeliverySystem d(satellite(digit << 4, digit >> 12, digit).data());
    EXPECT_EQ(d.frequency, 7 * weights[i]) << i;
    EXPECT_EQ(d.symbol_rate, 7 * weights[i]) << i;
    EXPECT_EQ(d.orbital_position, i < 4 ? 7 * weights[i] : 0) << i;
  }
}

TEST(DescriptorSatelliteDeliverySystem, LosesTheLastDigitOfAFrequencyWhateverItIs) {
  for (uint64_t digit = 0; digit < 16; ++digit)
    EXPECT_EQ(DescriptorSatelliteDeliverySystem(satellite(digit, 0, 0).data()).frequency, 0) << digit;
}

// To the last bit: 1.7445 itself, and the sum from the other end, are both one unit lower.
TEST(DescriptorSatelliteDeliverySystem, AddsTheDigitsFromTheFirstOn) {
  const DescriptorSatelliteDeliverySystem d(satellite(0x00174455, 0, 0x0017445).data());
  EXPECT_EQ(d.frequency, 0x1.be978d4fdf3b7p+0);
  EXPECT_EQ(d.symbol_rate, 0x1.be978d4fdf3b7p+0);
}

TEST(DescriptorSatelliteDeliverySystem, TakesDigitsAboveNineAtTheirValue) {
  const DescriptorSatelliteDeliverySystem d(satellite(0xF0000000, 0x000A, 0xF000000).data());
  EXPECT_EQ(d.frequency, 1500);
  EXPECT_EQ(d.orbital_position, 1);
  EXPECT_EQ(d.symbol_rate, 1500);
}

TEST(DescriptorSatelliteDeliverySystem, ReadsItsFlagsToTheirBits) {
  for (int i = 0; i < 12; ++i) {
    Bytes bytes = satellite(0, 0, 0);
    bytes[8] = static_cast<uint8_t>(1 << i >> 4);
    bytes[12] = static_cast<uint8_t>(1 << i & 0x0F);
    const DescriptorSatelliteDeliverySystem d(bytes.data());
    EXPECT_EQ(d.west_east_flag << 11 | d.polarization << 9 | d.roll_off << 7 | d.modulation_system << 6 |
                  d.modulation_type << 4 | d.FEC_inner,
              1 << i)
        << i;
  }
}

TEST(DescriptorSatelliteDeliverySystem, LeavesTheStreamInDecimal) {
  std::ostringstream stream;
  DescriptorSatelliteDeliverySystem(kSatellite.data()).dump_state(stream);
  stream.str("");
  stream << 26;
  EXPECT_EQ(stream.str(), "26");
}

TEST(DescriptorSatelliteDeliverySystem, NamesItsCodes) {
  using D = DescriptorSatelliteDeliverySystem;
  expect_texts(&D::get_west_east_flag_text, {"west"}, "east");
  expect_texts(&D::get_polarization_text,
               {"linear - horizontal", "linear - vertical", "circular - horizontal", "circular - vertical"},
               "<unknown>");
  expect_texts(&D::get_modulation_type_text, {"Auto", "QPSK", "8PSK", "16-QAM (n/a for DVB-S2)"}, "reserved");
  expect_texts(&D::get_modulation_system_text, {"DVB-S", "DVB-S2"}, "reserved");
  expect_texts(&D::get_roll_off_text, {"0,35", "0,25", "0,20"}, "reserved");
  expect_texts(&D::get_FEC_inner_text,
               {"not defined", "1/2", "2/3", "3/4", "5/6", "7/8", "reserved", "no conv. coding"}, "reserved");

  const D d(kSatellite.data());
  EXPECT_STREQ(d.get_west_east_flag_text(), "east");
  EXPECT_STREQ(d.get_polarization_text(), "circular - horizontal");
  EXPECT_STREQ(d.get_modulation_type_text(), "8PSK");
  EXPECT_STREQ(d.get_modulation_system_text(), "DVB-S2");
  EXPECT_STREQ(d.get_roll_off_text(), "0,25");
  EXPECT_STREQ(d.get_FEC_inner_text(), "reserved");
}

TEST(DescriptorCableDeliverySystem, ReadsItsMembers) {
  const DescriptorCableDeliverySystem d(kCable.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x44);
  EXPECT_EQ(d.get_descriptor_length(), 11);
  EXPECT_EQ(d.frequency, 312.0);
  EXPECT_EQ(d.FEC_outer, 2);
  EXPECT_EQ(d.modulation, 0x1A);
  EXPECT_DOUBLE_EQ(d.symbol_rate, 6.875);
  EXPECT_EQ(d.FEC_inner, 15);
}

TEST(DescriptorCableDeliverySystem, WeighsEachDigitButTheLastOfTheFrequency) {
  const double weights[] = {1000, 100, 10, 1, 0.1, 0.01, 0.001, 0};
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(DescriptorCableDeliverySystem(cable(uint64_t{7} << 4 * (7 - i), 0).data()).frequency,
              7 * weights[i])
        << i;
  EXPECT_EQ(DescriptorCableDeliverySystem(cable(0, 0x0017445).data()).symbol_rate, 0x1.be978d4fdf3b7p+0);
}

TEST(DescriptorCableDeliverySystem, NamesItsCodes) {
  using D = DescriptorCableDeliverySystem;
  const char* const reserved = "reserved for future use";
  expect_texts(&D::get_FEC_outer_text, {"not defined", "no outer FEC coding", "RS(204/188)"}, reserved);
  expect_texts(&D::get_modulation_text, {"not defined", "16-QAM", "32-QAM", "64-QAM", "128-QAM", "256-QAM"},
               reserved);
  expect_texts(&D::get_FEC_inner_text,
               {"not defined", "1/2 conv. code rate", "2/3 conv. code rate", "3/4 conv. code rate",
                "5/6 conv. code rate", "7/8 conv. code rate", "8/9 conv. code rate", "3/5 conv. code rate",
                "4/5 conv. code rate", "9/10 conv. code rate", reserved, reserved, reserved, reserved,
                reserved, "no conv. Coding"},
               reserved);

  const D d(kCable.data());
  EXPECT_STREQ(d.get_FEC_outer_text(), "RS(204/188)");
  EXPECT_STREQ(d.get_modulation_text(), reserved);
  EXPECT_STREQ(d.get_FEC_inner_text(), "no conv. Coding");
}

TEST(DescriptorTerrestrialDeliverySystem, ReadsItsMembers) {
  const DescriptorTerrestrialDeliverySystem d(kTerrestrial.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x5A);
  EXPECT_EQ(d.get_descriptor_length(), 11);
  EXPECT_EQ(d.centre_frequency, 0xFEDCBA98u);
  EXPECT_EQ(d.bandwidth, 5);
  EXPECT_EQ(d.priority, 1);
  EXPECT_EQ(d.Time_Slicing_indicator, 0);
  EXPECT_EQ(d.MPE_FEC_indicator, 1);
  EXPECT_EQ(d.constellation, 2);
  EXPECT_EQ(d.hierarchy_information, 5);
  EXPECT_EQ(d.code_rate_HP_stream, 3);
  EXPECT_EQ(d.code_rate_LP_stream, 4);
  EXPECT_EQ(d.guard_interval, 2);
  EXPECT_EQ(d.transmission_mode, 1);
  EXPECT_EQ(d.other_frequency_flag, 1);
}

TEST(DescriptorTerrestrialDeliverySystem, ReadsItsFieldsToTheirBits) {
  for (int i = 0; i < 24; ++i) {
    Bytes bytes = descriptor(0x5A, Bytes(11));
    bytes[static_cast<size_t>(8 - i / 8)] = static_cast<uint8_t>(1 << i % 8);
    const DescriptorTerrestrialDeliverySystem d(bytes.data());
    EXPECT_EQ(d.bandwidth << 21 | d.priority << 20 | d.Time_Slicing_indicator << 19 |
                  d.MPE_FEC_indicator << 18 | d.constellation << 14 | d.hierarchy_information << 11 |
                  d.code_rate_HP_stream << 8 | d.code_rate_LP_stream << 5 | d.guard_interval << 3 |
                  d.transmission_mode << 1 | d.other_frequency_flag,
              1 << i & ~(3 << 16))
        << i;
    EXPECT_EQ(d.centre_frequency, 0u) << i;
  }
}

TEST(DescriptorTerrestrialDeliverySystem, LoadsTheSameFrequency) {
  EXPECT_EQ(loaded<DescriptorTerrestrialDeliverySystem>(
                saved(DescriptorTerrestrialDeliverySystem(kTerrestrial.data())))
                .centre_frequency,
            0xFEDCBA98u);
}

TEST(DescriptorTerrestrialDeliverySystem, NamesItsCodes) {
  using D = DescriptorTerrestrialDeliverySystem;
  const char* const reserved = "reserved for future use";
  expect_texts(&D::get_bandwidth_text, {"8 MHz", "7 MHz", "6 MHz", "5 MHz"}, reserved);
  expect_texts(&D::get_priority_text, {"HP (high priority)", "LP (low priority)"}, "n/a");
  expect_texts(&D::get_Time_Slicing_indicator_text, {"yes", "no"}, "n/a");
  expect_texts(&D::get_MPE_FEC_indicator_text, {"yes", "no"}, "n/a");
  expect_texts(&D::get_other_frequency_flag_text, {"no", "yes"}, "n/a");
  expect_texts(&D::get_constellation_text, {"QPSK", "16-QAM", "64-QAM"}, reserved);
  expect_texts(&D::get_hierarchy_information_text,
               {"non-hierarchical, native interleaver", "alpha = 1, native interleaver",
                "alpha = 2, native interleaver", "alpha = 4, native interleaver",
                "non-hierarchical, in-depth interleaver", "alpha = 1, in-depth interleaver",
                "alpha = 2, in-depth interleaver", "alpha = 4, in-depth interleaver"},
               "n/a");
  expect_texts(&D::get_code_rate_stream_text, {"1/2", "2/3", "3/4", "5/6", "7/8"}, reserved);
  expect_texts(&D::get_guard_interval_text, {"1/32", "1/16", "1/8", "1/4"}, "n/a");
  expect_texts(&D::get_transmission_mode_text, {"2k mode", "8k mode", "4k mode"}, reserved);

  const D d(kTerrestrial.data());
  EXPECT_STREQ(d.get_bandwidth_text(), reserved);
  EXPECT_STREQ(d.get_priority_text(), "LP (low priority)");
  EXPECT_STREQ(d.get_Time_Slicing_indicator_text(), "yes");
  EXPECT_STREQ(d.get_MPE_FEC_indicator_text(), "no");
  EXPECT_STREQ(d.get_constellation_text(), "64-QAM");
  EXPECT_STREQ(d.get_hierarchy_information_text(), "alpha = 1, in-depth interleaver");
  EXPECT_STREQ(d.get_code_rate_HP_stream_text(), "5/6");
  EXPECT_STREQ(d.get_code_rate_LP_stream_text(), "7/8");
  EXPECT_STREQ(d.get_guard_interval_text(), "1/8");
  EXPECT_STREQ(d.get_transmission_mode_text(), "8k mode");
  EXPECT_STREQ(d.get_other_frequency_flag_text(), "yes");
}

TEST(DescriptorS2SatelliteDeliverySystem, ReadsItsMembers) {
  const DescriptorS2SatelliteDeliverySystem d(kS2.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x79);
  EXPECT_EQ(d.get_descriptor_length(), 5);
  EXPECT_EQ(d.scrambling_sequence_selector, 1);
  EXPECT_EQ(d.multiple_input_stream_flag, 1);
  EXPECT_EQ(d.backwards_compatibility_indicator, 1);
  EXPECT_EQ(d.scrambling_sequence_index, 0x2A5F7);
  EXPECT_EQ(d.input_stream_identifier, 0x81);
}

TEST(DescriptorS2SatelliteDeliverySystem, TakesTheCompatibilityIndicatorFromTheFlagInFrontOfIt) {
  for (int flags = 0; flags < 8; ++flags) {
    const Bytes bytes = descriptor(0x79, joined({s2_flags(flags >> 2, flags >> 1 & 1, flags & 1), Bytes(4)}));
    const DescriptorS2SatelliteDeliverySystem d(bytes.data());
    EXPECT_EQ(d.scrambling_sequence_selector, flags >> 2) << flags;
    EXPECT_EQ(d.multiple_input_stream_flag, flags >> 1 & 1) << flags;
    EXPECT_EQ(d.backwards_compatibility_indicator, flags >> 1 & 1) << flags;
  }
}

TEST(DescriptorS2SatelliteDeliverySystem, ReadsOnlyWhatItsFlagsAnnounce) {
  const Bytes behind = {0x92, 0xA5, 0xF7, 0x81};
  const Bytes multiple = descriptor(0x79, joined({Bytes{0x40}, behind}));
  const DescriptorS2SatelliteDeliverySystem identified(multiple.data());
  EXPECT_EQ(identified.multiple_input_stream_flag, 1);
  EXPECT_EQ(identified.backwards_compatibility_indicator, 1);
  EXPECT_EQ(identified.scrambling_sequence_index, 0);
  EXPECT_EQ(identified.input_stream_identifier, 0x92);

  const Bytes scrambling = descriptor(0x79, joined({s2_flags(1, 0, 1), behind}));
  const DescriptorS2SatelliteDeliverySystem scrambled(scrambling.data());
  EXPECT_EQ(scrambled.scrambling_sequence_index, 0x2A5F7);
  EXPECT_EQ(scrambled.input_stream_identifier, 0);

  const Bytes neither = descriptor(0x79, joined({s2_flags(0, 0, 1), behind}));
  const DescriptorS2SatelliteDeliverySystem plain(neither.data());
  EXPECT_EQ(plain.scrambling_sequence_index, 0);
  EXPECT_EQ(plain.input_stream_identifier, 0);
}

TEST(DeliveryDescriptors, LoadOnlyWithAllTheirAttributes) {
  expect_each_attribute_needed<DescriptorSatelliteDeliverySystem>(
      saved(DescriptorSatelliteDeliverySystem(kSatellite.data())));
  expect_each_attribute_needed<DescriptorCableDeliverySystem>(
      saved(DescriptorCableDeliverySystem(kCable.data())));
  expect_each_attribute_needed<DescriptorTerrestrialDeliverySystem>(
      saved(DescriptorTerrestrialDeliverySystem(kTerrestrial.data())));
  expect_each_attribute_needed<DescriptorS2SatelliteDeliverySystem>(
      saved(DescriptorS2SatelliteDeliverySystem(kS2.data())));
}
