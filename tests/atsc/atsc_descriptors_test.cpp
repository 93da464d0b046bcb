// The descriptors of A/65 and A/53, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/process.h"

#include <cstdint>
#include <cstdio>

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/stt.h>

using namespace quillon;
using namespace quillon::test;

namespace {

template <class T>
T read(const Bytes& bytes) {
  return T(view(bytes));
}

// One English string of one segment: ten bytes.
const Bytes kText =
    joined({bits({{8, 1, "number_strings"}}), text("eng"), bits({{8, 1, "number_segments"}}),
            bits({{8, 0, "compression_type"}, {8, 0, "mode"}, {8, 2, "number_bytes"}}), text("Hi")});

void expect_text(const ATSCMultipleStringStructure& s) {
  EXPECT_EQ(s.number_strings, 1);
  ASSERT_EQ(s.strings.size(), 1u);
  EXPECT_STREQ(s.strings[0].iso639languagecode.c_strA(), "eng");
  ASSERT_EQ(s.strings[0].segments.size(), 1u);
  EXPECT_EQ(s.strings[0].segments[0].decoded_text, (wide_string{'H', 'i'}));
}

// The first four bytes of an AC-3 body.
Bytes ac3_head(uint64_t bsmod, uint64_t num_channels) {
  return bits({{3, 6, "sample_rate_code"},
               {5, 0x15, "bsid"},
               {6, 0x2A, "bit_rate_code"},
               {2, 1, "surround_mode"},
               {3, bsmod, "bsmod"},
               {4, num_channels, "num_channels"},
               {1, 1, "full_svc"},
               {8, 0x5A, "langcod"}});
}

Bytes text_length(uint64_t textlen, uint64_t text_code) {
  return bits({{7, textlen, "textlen"}, {1, text_code, "text_code"}});
}

Bytes language_flags(uint64_t first, uint64_t second) {
  return bits({{1, first, "language_flag"}, {1, second, "language_flag_2"}, {6, 0x3F, "reserved"}});
}

const Bytes kMain = bits({{3, 5, "mainid"}, {2, 1, "priority"}, {3, 7, "reserved"}});
const Bytes kAssociated = bits({{8, 0xC3, "asvcflags"}});

const Bytes kAC3Audio =
    descriptor(0x81, joined({ac3_head(1, 0), bits({{8, 0x66, "langcod2"}}), kMain, text_length(3, 1),
                             text("abc"), language_flags(1, 1), text("engfra"), Bytes{0xDE, 0xAD}}));
const Bytes kAC3Wide =
    descriptor(0x81, joined({ac3_head(2, 8), kAssociated, text_length(4, 0), Bytes{0x11, 0x22, 0x33, 0x44},
                             language_flags(0, 1), text("fra")}));

const Bytes kDigitalCaption = joined({text("eng"), bits({{1, 1, "digital_cc"},
                                                         {1, 1, "reserved"},
                                                         {6, 0x2D, "caption_service_number"},
                                                         {1, 1, "easy_reader"},
                                                         {1, 0, "wide_aspect_ratio"},
                                                         {14, 0x3FFF, "reserved"}})});
const Bytes kAnalogCaption = joined({text("spa"), bits({{1, 0, "digital_cc"},
                                                        {1, 1, "reserved"},
                                                        {5, 0x16, "line21_field"},
                                                        {1, 1, "reserved"},
                                                        {1, 0, "easy_reader"},
                                                        {1, 1, "wide_aspect_ratio"},
                                                        {14, 0, "reserved"}})});
Bytes caption_count(uint64_t number) {
  return bits({{3, 6, "reserved"}, {5, number, "number_of_services"}});
}
const Bytes kCaptionService = descriptor(0x86, joined({caption_count(2), kDigitalCaption, kAnalogCaption}));

const Bytes kShiftedService = bits({{6, 0x3F, "reserved"},
                                    {10, 0x2A5, "time_shift"},
                                    {4, 0xF, "reserved"},
                                    {10, 0x1C3, "major_channel_number"},
                                    {10, 0x35A, "minor_channel_number"}});
const Bytes kTimeShiftedService =
    descriptor(0xA2, joined({bits({{8, 2, "number_of_services"}}), kShiftedService, Bytes(5)}));

Bytes location_head(uint64_t number_elements) {
  return bits({{3, 7, "reserved"}, {13, 0x1ABC, "PCR_PID"}, {8, number_elements, "number_elements"}});
}
const Bytes kVideoElement =
    bits({{8, 2, "stream_type"}, {3, 7, "reserved"}, {13, 0x0031, "elementary_PID"}, {24, 0, "language"}});
const Bytes kAudioElement = joined(
    {bits({{8, 129, "stream_type"}, {3, 7, "reserved"}, {13, 0x1FF4, "elementary_PID"}}), text("eng")});
const Bytes kServiceLocation = descriptor(0xA1, joined({location_head(2), kVideoElement, kAudioElement}));

Bytes advisory_count(uint64_t number) {
  return bits({{2, 3, "reserved"}, {6, number, "rating_region_count"}});
}
const Bytes kRegionHead = bits({{8, 1, "rating_region"},
                                {8, 2, "rated_dimensions"},
                                {8, 0, "rating_dimension_j"},
                                {4, 0xF, "reserved"},
                                {4, 3, "rating_value"},
                                {8, 5, "rating_dimension_j"},
                                {4, 0xF, "reserved"},
                                {4, 9, "rating_value"}});
const Bytes kRegion = joined({kRegionHead, bits({{8, 10, "rating_description_length"}}), kText});
const Bytes kContentAdvisory = descriptor(0x87, joined({advisory_count(1), kRegion}));

const Bytes kChannelName = descriptor(0xA0, kText);
const Bytes kComponentName = descriptor(0xA3, kText);
const Bytes kDeparting =
    descriptor(0xA8, joined({bits({{8, 1, "dcc_departing_request_type"}}),
                             bits({{8, 10, "dcc_departing_request_text_length"}}), kText}));
const Bytes kArriving =
    descriptor(0xA9, joined({bits({{8, 2, "dcc_arriving_request_type"}}),
                             bits({{8, 10, "dcc_arriving_request_text_length"}}), kText}));
const Bytes kGenre = descriptor(0xAB, bits({{3, 7, "reserved"},
                                            {5, 3, "attribute_count"},
                                            {8, 0x20, "attribute"},
                                            {8, 0x26, "attribute"},
                                            {8, 0xFF, "attribute"}}));
const Bytes kStuffing = descriptor(0x80, {0xFF, 0x00, 0xFF});
const Bytes kRedistribution = descriptor(0xAA, {0x01, 0x02});
const Bytes kPrivateInformation = descriptor(0xAD, text("ABCDxyz"));
const Bytes kContentIdentifier = descriptor(0xB6, Bytes(9));

// A report is the tag line; the XML form is tag and length, which is also all that a load gives back.
template <class T>
DescriptorCase wire_case(std::string name, const Bytes& bytes, const std::string& tag_line) {
  return case_of<T>(std::move(name), Family::atsc, bytes, "descriptor_tag: " + tag_line + "\n",
                    "<d descriptor_id=\"" + std::to_string(bytes[0]) + "\" descriptor_length=\"" +
                        std::to_string(bytes[1]) + "\" />");
}

const Cases cases = {
    wire_case<DescriptorAtscStuffing>("DescriptorAtscStuffing", kStuffing, "80 stuffing_descriptor("),
    wire_case<DescriptorAtscAC3Audio>("DescriptorAtscAC3Audio", kAC3Audio, "81 AC-3_audio_stream_descriptor"),
    wire_case<DescriptorAtscAC3Audio>("DescriptorAtscAC3Audio, wide text", kAC3Wide,
                                      "81 AC-3_audio_stream_descriptor"),
    wire_case<DescriptorAtscCaptionService>("DescriptorAtscCaptionService", kCaptionService,
                                            "86 caption_service_descriptor"),
    wire_case<DescriptorAtscContentAdvisory>("DescriptorAtscContentAdvisory", kContentAdvisory,
                                             "87 content_advisory_descriptor"),
    wire_case<DescriptorAtscExtendedChannelName>("DescriptorAtscExtendedChannelName", kChannelName,
                                                 "a0 extended_channel_name_descriptor"),
    wire_case<DescriptorAtscServiceLocation>("DescriptorAtscServiceLocation", kServiceLocation,
                                             "a1 service_location_descriptor"),
    wire_case<DescriptorAtscTimeShiftedService>("DescriptorAtscTimeShiftedService", kTimeShiftedService,
                                                "a2 time_shifted_service_descriptor"),
    wire_case<DescriptorAtscComponentName>("DescriptorAtscComponentName", kComponentName,
                                           "a3 component_name_descriptor"),
    wire_case<DescriptorAtscDCCDepartingRequest>("DescriptorAtscDCCDepartingRequest", kDeparting,
                                                 "a8 dcc_departing_request_descriptor"),
    wire_case<DescriptorAtscDCCArrivingRequest>("DescriptorAtscDCCArrivingRequest", kArriving,
                                                "a9 dcc_arriving_request_descriptor"),
    wire_case<DescriptorAtscRedistributionControl>("DescriptorAtscRedistributionControl", kRedistribution,
                                                   "aa rc_descriptor"),
    wire_case<DescriptorAtscGenre>("DescriptorAtscGenre", kGenre, "ab genre_descriptor"),
    wire_case<DescriptorAtscATSCPrivateInformation>("DescriptorAtscATSCPrivateInformation",
                                                    kPrivateInformation, "ad "),
    wire_case<DescriptorAtscContentIdentifier>("DescriptorAtscContentIdentifier", kContentIdentifier, "b6 "),
};

std::string at(const char* label, const uint8_t* place) {
  char out[100];
  std::snprintf(out, sizeof out, "DescriptorAtscAC3Audio: %s p2[0]=0x%08x", label,
                static_cast<unsigned>(reinterpret_cast<uintptr_t>(place)));
  return out;
}

}  // namespace

TEST(DescriptorAtsc, AllDeriveFromTheBaseOfTheirFamily) {
  const auto family = []<class... T>(T*...) { return (std::is_base_of_v<DescriptorAtscBase, T> && ...); };
  EXPECT_TRUE(
      (family.operator()<
          DescriptorAtscStuffing, DescriptorAtscAC3Audio, DescriptorAtscCaptionService,
          DescriptorAtscContentAdvisory, DescriptorAtscExtendedChannelName, DescriptorAtscServiceLocation,
          DescriptorAtscTimeShiftedService, DescriptorAtscComponentName, DescriptorAtscDCCDepartingRequest,
          DescriptorAtscDCCArrivingRequest, DescriptorAtscRedistributionControl,
          DescriptorAtscATSCPrivateInformation, DescriptorAtscContentIdentifier, DescriptorAtscGenre>(
          nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
          nullptr, nullptr, nullptr)));
}

TEST(DescriptorAtsc, LoadsTagAndLengthAndNothingElse) {
  const auto d = loaded<DescriptorAtscGenre>(
      R"(<d descriptor_id="171" descriptor_length="4" attribute_count="3"><attributes/></d>)");
  EXPECT_EQ(d.get_descriptor_tag(), 0xAB);
  EXPECT_EQ(d.get_descriptor_length(), 4);
  EXPECT_EQ(d.attribute_count, 0);
  EXPECT_TRUE(d.attributes.empty());
  EXPECT_EQ(failure([] { loaded<DescriptorAtscGenre>(R"(<d descriptor_length="4"/>)"); }),
            "-1: failed to get descriptor_id");
  EXPECT_EQ(failure([] { loaded<DescriptorAtscGenre>(R"(<d descriptor_id="171"/>)"); }),
            "-1: failed to get descriptor_length");
}

TEST(DescriptorAtsc, KeepsItsFieldsThroughALoad) {
  auto d = read<DescriptorAtscGenre>(kGenre);
  const auto document = xml::Document::from_text(R"(<d descriptor_id="1" descriptor_length="2"/>)");
  d.Parse(document.root());
  EXPECT_EQ(d.get_descriptor_tag(), 1);
  EXPECT_EQ(d.attributes.size(), 3u);
}

TEST(DescriptorAtscStuffing, KeepsItsBytes) {
  EXPECT_EQ(read<DescriptorAtscStuffing>(kStuffing).data, (Bytes{0xFF, 0x00, 0xFF}));
  EXPECT_TRUE(read<DescriptorAtscStuffing>(descriptor(0x80, {})).data.empty());
  EXPECT_EQ(read<DescriptorAtscStuffing>(descriptor_claiming(0x80, 4, {1})).data, (Bytes{1, 0, 0, 0}));
}

TEST(DescriptorAtscRedistributionControl, KeepsItsBytes) {
  EXPECT_EQ(read<DescriptorAtscRedistributionControl>(kRedistribution).data, (Bytes{1, 2}));
}

TEST(DescriptorAtscStuffing, ResetLeavesTheBytes) {
  auto stuffing = read<DescriptorAtscStuffing>(kStuffing);
  stuffing.reset();
  EXPECT_EQ(stuffing.data.size(), 3u);
}

TEST(DescriptorAtscAC3Audio, ReadsItsMembers) {
  const auto d = read<DescriptorAtscAC3Audio>(kAC3Audio);
  EXPECT_EQ(d.get_descriptor_tag(), 0x81);
  EXPECT_EQ(d.get_descriptor_length(), 19);
  EXPECT_EQ(d.sample_rate_code, 6);
  EXPECT_EQ(d.bsid, 0x15);
  EXPECT_EQ(d.bit_rate_code, 0x2A);
  EXPECT_EQ(d.surround_mode, 1);
  EXPECT_EQ(d.bsmod, 1);
  EXPECT_EQ(d.num_channels, 0);
  EXPECT_EQ(d.full_svc, 1);
  EXPECT_EQ(d.langcod, 0x5A);
  EXPECT_EQ(d.langcod2, 0x66);
  EXPECT_EQ(d.mainid, 5);
  EXPECT_EQ(d.priority, 1);
  EXPECT_EQ(d.asvcflags, 0);
  EXPECT_EQ(d.textlen, 3);
  EXPECT_EQ(d.text_code, 1);
  EXPECT_EQ(d.text, "abc");
  EXPECT_TRUE(d.wide_text.empty());
  EXPECT_EQ(d.language_flag, 1);
  EXPECT_EQ(d.language_flag_2, 1);
  EXPECT_STREQ(d.language.c_strA(), "eng");
  EXPECT_STREQ(d.language_2.c_strA(), "fra");
  EXPECT_EQ(d.additional_info, (Bytes{0xDE, 0xAD}));
  EXPECT_STREQ(d.get_sample_rate_code_text(), "44.1 or 32 kHz");
  EXPECT_STREQ(d.get_bit_rate_code_text(), "192 Bit Rate Upper Limit (kbit/s)");
  EXPECT_STREQ(d.get_surround_mode_text(), "NOT Dolby surround encoded");
  EXPECT_STREQ(d.get_num_channels_text(), "1 + 1");
  EXPECT_STREQ(d.get_priority_text(), "Primary Audio");
}

TEST(DescriptorAtscAC3Audio, ReadsAnAssociatedServiceWithOneLanguage) {
  const auto d = read<DescriptorAtscAC3Audio>(kAC3Wide);
  EXPECT_EQ(d.bsmod, 2);
  EXPECT_EQ(d.num_channels, 8);
  EXPECT_EQ(d.langcod2, 0);
  EXPECT_EQ(d.asvcflags, 0xC3);
  EXPECT_EQ(d.mainid, 0);
  EXPECT_EQ(d.priority, 0);
  EXPECT_EQ(d.language_flag, 0);
  EXPECT_EQ(d.language_flag_2, 1);
  EXPECT_STREQ(d.language.c_strA(), "");
  EXPECT_STREQ(d.language_2.c_strA(), "fra");
  EXPECT_TRUE(d.additional_info.empty());
}

TEST(DescriptorAtscAC3Audio, TakesWideTextFromTheLengthByteOn) {
  const auto d = read<DescriptorAtscAC3Audio>(kAC3Wide);
  EXPECT_EQ(d.textlen, 4);
  EXPECT_EQ(d.text_code, 0);
  EXPECT_EQ(d.wide_text, (wide_string{0x0811, 0x2233}));
  EXPECT_EQ(d.text, "");
}

TEST(DescriptorAtscAC3Audio, HasNoWideTextOfLengthZero) {
  const auto d = read<DescriptorAtscAC3Audio>(
      descriptor(0x81, joined({ac3_head(0, 2), kMain, text_length(0, 0), language_flags(0, 0)})));
  EXPECT_EQ(d.textlen, 0);
  EXPECT_TRUE(d.wide_text.empty());
  EXPECT_EQ(d.mainid, 5);
}

TEST(DescriptorAtscAC3Audio, TellsMainFromAssociatedServicesAtBsmodTwo) {
  for (uint64_t bsmod = 0; bsmod < 8; ++bsmod) {
    const auto d = read<DescriptorAtscAC3Audio>(
        descriptor(0x81, joined({ac3_head(bsmod, 2), kAssociated, text_length(0, 1), language_flags(0, 0)})));
    EXPECT_EQ(d.asvcflags, bsmod < 2 ? 0 : 0xC3) << bsmod;
    EXPECT_EQ(d.mainid, bsmod < 2 ? 6 : 0) << bsmod;
    EXPECT_EQ(d.priority, 0) << bsmod;
  }
}

TEST(DescriptorAtscAC3Audio, RefusesWideTextOfOddLength) {
  const auto with_code = [](uint64_t text_code) {
    return descriptor(
        0x81, joined({ac3_head(0, 2), kMain, text_length(3, text_code), text("abc"), language_flags(0, 0)}));
  };
  EXPECT_EQ(read<DescriptorAtscAC3Audio>(with_code(1)).text, "abc");
  EXPECT_EQ(refusal<DescriptorAtscAC3Audio>(with_code(0)), "-1: DescriptorAtscAC3Audio: textlen mismatch");
}

TEST(DescriptorAtscAC3Audio, RefusesALengthBelowSeven) {
  for (int length = 0; length < 7; ++length)
    EXPECT_EQ(refusal<DescriptorAtscAC3Audio>(descriptor_claiming(0x81, length, Bytes(40))),
              "-1: DescriptorAtscAC3Audio: descriptor_length too small")
        << length;
  EXPECT_EQ(read<DescriptorAtscAC3Audio>(
                descriptor(0x81, joined({ac3_head(0, 2), kMain, text_length(0, 1), language_flags(0, 0)})))
                .get_descriptor_length(),
            7);
}

TEST(DescriptorAtscAC3Audio, RefusesFieldsThatGoBeyondIt) {
  const auto claiming = [](int length) {
    return descriptor_claiming(
        0x81, length,
        joined({ac3_head(0, 2), kMain, text_length(0, 1), language_flags(1, 0), text("eng"), Bytes(8)}));
  };
  EXPECT_EQ(refusal<DescriptorAtscAC3Audio>(claiming(9)), "-1: DescriptorAtscAC3Audio: fatal error");
  EXPECT_TRUE(read<DescriptorAtscAC3Audio>(claiming(10)).additional_info.empty());
  EXPECT_EQ(read<DescriptorAtscAC3Audio>(claiming(13)).additional_info.size(), 3u);
}

TEST(DescriptorAtscAC3Audio, NamesSampleRates) {
  const char* const texts[] = {"48 kHz",         "44.1 kHz",     "32 kHz",         "Reserved kHz",
                               "48 or 44.1 kHz", "48 or 32 kHz", "44.1 or 32 kHz", "48 or 44.1 or 32 kHz"};
  for (int code = -1; code <= 256; ++code)
    EXPECT_STREQ(DescriptorAtscAC3Audio::get_sample_rate_code_text(code),
                 code >= 0 && code < 8 ? texts[code] : "")
        << code;
}

TEST(DescriptorAtscAC3Audio, NamesBitRates) {
  const int rates[] = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                       192, 224, 256, 320, 384, 448, 512, 576, 640};
  for (int code = -40; code <= 256; ++code) {
    std::string expected;
    if (code >= 0 && code <= 18) expected = std::to_string(rates[code]) + " Exact Bit Rate (kbit/s)";
    if (code >= 32 && code <= 50)
      expected = std::to_string(rates[code - 32]) + " Bit Rate Upper Limit (kbit/s)";
    EXPECT_EQ(DescriptorAtscAC3Audio::get_bit_rate_code_text(code), expected) << code;
  }
}

TEST(DescriptorAtscAC3Audio, NamesSurroundModes) {
  const char* const texts[] = {"Not indicated", "NOT Dolby surround encoded", "Dolby surround encoded",
                               "Reserved"};
  for (int mode = -1; mode <= 256; ++mode)
    EXPECT_STREQ(DescriptorAtscAC3Audio::get_surround_mode_text(mode),
                 mode >= 0 && mode < 4 ? texts[mode] : "")
        << mode;
}

TEST(DescriptorAtscAC3Audio, NamesChannels) {
  const char* const texts[] = {"1 + 1", "1/0",  "2/0",  "3/0",  "2/1",  "3/1",  "2/2",      "3/2",
                               "1",     "<= 2", "<= 3", "<= 4", "<= 5", "<= 6", "Reserved", "Reserved"};
  for (int number = -1; number <= 256; ++number)
    EXPECT_STREQ(DescriptorAtscAC3Audio::get_num_channels_text(number),
                 number >= 0 && number < 16 ? texts[number] : "")
        << number;
}

TEST(DescriptorAtscAC3Audio, NamesPriorities) {
  const char* const texts[] = {"reserved", "Primary Audio", "Other Audio", "Not specified"};
  for (int priority = -1; priority <= 256; ++priority)
    EXPECT_STREQ(DescriptorAtscAC3Audio::get_priority_text(priority),
                 priority >= 0 && priority < 4 ? texts[priority] : "")
        << priority;
}

TEST(DescriptorAtscAC3Audio, TracesWhatItReads) {
  const Traces traces;
  read<DescriptorAtscAC3Audio>(kAC3Audio);
  const uint8_t* const p = kAC3Audio.data();
  char start[100];
  std::snprintf(start, sizeof start, "DescriptorAtscAC3Audio: p[0]=0x%08x",
                static_cast<unsigned>(reinterpret_cast<uintptr_t>(p)));
  EXPECT_EQ(Traces::lines(), (std::vector<std::string>{
                                 start,
                                 at("TRACE0", p + 6),
                                 "DescriptorAtscAC3Audio: num_channels=0",
                                 at("TRACE1", p + 8),
                                 "DescriptorAtscAC3Audio: textlen=3",
                                 at("TRACE2", p + 8),
                                 at("TRACE3", p + 12),
                                 "DescriptorAtscAC3Audio: language_flag=1",
                                 "DescriptorAtscAC3Audio: language_flag_2=1",
                                 "DescriptorAtscAC3Audio: additional_info_length=2",
                             }));
}

TEST(DescriptorAtscAC3Audio, TracesUpToTheFailure) {
  const Traces traces;
  refusal<DescriptorAtscAC3Audio>(descriptor_claiming(0x81, 6, Bytes(9)));
  EXPECT_TRUE(Traces::lines().empty());
  refusal<DescriptorAtscAC3Audio>(
      descriptor(0x81, joined({ac3_head(0, 2), kMain, text_length(3, 0), Bytes(9)})));
  ASSERT_EQ(Traces::lines().size(), 5u);
  EXPECT_EQ(Traces::lines()[4], "DescriptorAtscAC3Audio: textlen=3");
  Traces::lines().clear();
  refusal<DescriptorAtscAC3Audio>(
      descriptor_claiming(0x81, 7, joined({ac3_head(0, 2), kMain, text_length(2, 1), Bytes(9)})));
  ASSERT_EQ(Traces::lines().size(), 10u);
  EXPECT_EQ(Traces::lines()[9], "DescriptorAtscAC3Audio: additional_info_length=-2");
}

TEST(DescriptorAtscAC3Audio, TracesNothingWhenNobodyListens) {
  { const Traces traces; }
  read<DescriptorAtscAC3Audio>(kAC3Audio);
  EXPECT_TRUE(Traces::lines().empty());
}

TEST(DescriptorAtscCaptionService, ReadsItsMembers) {
  const auto d = read<DescriptorAtscCaptionService>(kCaptionService);
  EXPECT_EQ(d.number_of_services, 2);
  ASSERT_EQ(d.services.size(), 2u);
  EXPECT_STREQ(d.services[0].language.c_strA(), "eng");
  EXPECT_EQ(d.services[0].digital_cc, 1);
  EXPECT_EQ(d.services[0].caption_service_number, 0x2D);
  EXPECT_EQ(d.services[0].line21_field, 0);
  EXPECT_EQ(d.services[0].easy_reader, 1);
  EXPECT_EQ(d.services[0].wide_aspect_ratio, 0);
  EXPECT_STREQ(d.services[1].language.c_strA(), "spa");
  EXPECT_EQ(d.services[1].digital_cc, 0);
  EXPECT_EQ(d.services[1].caption_service_number, 0);
  EXPECT_EQ(d.services[1].line21_field, 0x16);
  EXPECT_EQ(d.services[1].easy_reader, 0);
  EXPECT_EQ(d.services[1].wide_aspect_ratio, 1);
}

TEST(DescriptorAtscCaptionService, ComparesItsCountWithItsLength) {
  const auto of = [](uint64_t count, int length) {
    return refusal<DescriptorAtscCaptionService>(
        descriptor_claiming(0x86, length, joined({caption_count(count), Bytes(200)})));
  };
  const std::string count_fails = "-1: DescriptorAtscCaptionService: number_of_services mismatch (1)";
  const std::string rest_fails = "-1: DescriptorAtscCaptionService: number_of_services mismatch (2)";
  EXPECT_EQ(of(0, 1), "nothing");
  EXPECT_EQ(of(31, 187), "nothing");
  EXPECT_EQ(of(0, 4), rest_fails);
  EXPECT_EQ(of(1, 8), rest_fails);
  EXPECT_EQ(of(2, 8), count_fails);
  EXPECT_EQ(of(0, 7), count_fails);
  EXPECT_EQ(of(2, 7), count_fails);
  EXPECT_EQ(of(0, 0), rest_fails);
  EXPECT_EQ(of(1, 0), count_fails);
}

TEST(DescriptorAtscCaptionService, EndsWithTheSection) {
  for (size_t size = 3; size < kCaptionService.size(); ++size)
    EXPECT_EQ(refusal<DescriptorAtscCaptionService>(
                  Bytes(kCaptionService.begin(), kCaptionService.begin() + static_cast<ptrdiff_t>(size))),
              "-1: DescriptorAtscCaptionService: service start end mismatch")
        << size;
}

TEST(DescriptorAtscCaptionService, ResetEmptiesTheServices) {
  auto d = read<DescriptorAtscCaptionService>(kCaptionService);
  d.reset();
  EXPECT_TRUE(d.services.empty());
  EXPECT_EQ(d.number_of_services, 2);
  EXPECT_EQ(d.get_descriptor_tag(), 0x86);
}

TEST(DescriptorAtscTimeShiftedService, ReadsItsMembers) {
  const auto d = read<DescriptorAtscTimeShiftedService>(kTimeShiftedService);
  EXPECT_EQ(d.number_of_services, 2);
  ASSERT_EQ(d.services.size(), 2u);
  EXPECT_EQ(d.services[0].time_shift, 0x2A5);
  EXPECT_EQ(d.services[0].major_channel_number, 0x1C3);
  EXPECT_EQ(d.services[0].minor_channel_number, 0x35A);
  EXPECT_EQ(d.services[1].time_shift, 0);
  EXPECT_EQ(d.services[1].major_channel_number, 0);
  EXPECT_EQ(d.services[1].minor_channel_number, 0);
}

TEST(DescriptorAtscTimeShiftedService, CountsWithTheWholeByte) {
  const auto of = [](int count, int length) {
    return refusal<DescriptorAtscTimeShiftedService>(
        descriptor_claiming(0xA2, length, joined({{static_cast<uint8_t>(count)}, Bytes(300)})));
  };
  const std::string count_fails = "-1: DescriptorAtscTimeShiftedService: number_of_services mismatch (1)";
  const std::string rest_fails = "-1: DescriptorAtscTimeShiftedService: number_of_services mismatch (2)";
  EXPECT_EQ(of(0, 1), "nothing");
  EXPECT_EQ(of(1, 6), "nothing");
  EXPECT_EQ(of(50, 251), "nothing");
  EXPECT_EQ(of(0xE1, 6), count_fails);
  EXPECT_EQ(of(0xE1, 255), count_fails);
  EXPECT_EQ(of(2, 6), count_fails);
  EXPECT_EQ(of(1, 7), rest_fails);
  EXPECT_EQ(of(0, 0), rest_fails);
  EXPECT_EQ(of(1, 0), count_fails);
}

TEST(DescriptorAtscTimeShiftedService, EndsWithTheSection) {
  const Bytes cut(kTimeShiftedService.begin(), kTimeShiftedService.end() - 1);
  EXPECT_EQ(refusal<DescriptorAtscTimeShiftedService>(cut),
            "-1: DescriptorAtscTimeShiftedService: service start end mismatch");
}

TEST(DescriptorAtscTimeShiftedService, ResetLeavesTheServices) {
  auto d = read<DescriptorAtscTimeShiftedService>(kTimeShiftedService);
  d.reset();
  EXPECT_EQ(d.services.size(), 2u);
}

TEST(DescriptorAtscServiceLocation, ReadsItsMembers) {
  const auto d = read<DescriptorAtscServiceLocation>(kServiceLocation);
  EXPECT_EQ(d.PCR_PID, 0x1ABC);
  EXPECT_EQ(d.number_elements, 2);
  ASSERT_EQ(d.elements.size(), 2u);
  EXPECT_EQ(d.elements[0].stream_type, 2);
  EXPECT_EQ(d.elements[0].elementary_PID, 0x31);
  EXPECT_STREQ(d.elements[0].language.c_strA(), "");
  EXPECT_EQ(d.elements[1].stream_type, 129);
  EXPECT_EQ(d.elements[1].elementary_PID, 0x1FF4);
  EXPECT_STREQ(d.elements[1].language.c_strA(), "eng");
  EXPECT_STREQ(d.elements[1].get_stream_type_text(), "Audio per ATSC A/53E [1] Annex B");
}

TEST(DescriptorAtscServiceLocation, ComparesItsCountWithItsLengthInTheNameOfTheCaptions) {
  const auto of = [](uint64_t count, int length) {
    return refusal<DescriptorAtscServiceLocation>(
        descriptor_claiming(0xA1, length, joined({location_head(count), Bytes(300)})));
  };
  const std::string count_fails = "-1: DescriptorAtscCaptionService: number_elements mismatch (1)";
  const std::string rest_fails = "-1: DescriptorAtscCaptionService: number_elements mismatch (2)";
  EXPECT_EQ(of(0, 3), "nothing");
  EXPECT_EQ(of(1, 9), "nothing");
  EXPECT_EQ(of(42, 255), "nothing");
  EXPECT_EQ(of(2, 9), count_fails);
  EXPECT_EQ(of(0, 9), count_fails);
  EXPECT_EQ(of(1, 10), rest_fails);
  EXPECT_EQ(of(2, 10), count_fails);
  for (int length = 0; length < 3; ++length) EXPECT_EQ(of(0, length), rest_fails) << length;
  EXPECT_EQ(of(1, 0), count_fails);
}

TEST(DescriptorAtscServiceLocation, EndsWithTheSection) {
  const Bytes cut(kServiceLocation.begin(), kServiceLocation.end() - 1);
  EXPECT_EQ(refusal<DescriptorAtscServiceLocation>(cut),
            "-1: DescriptorAtscServiceLocation: element start end mismatch");
}

TEST(DescriptorAtscServiceLocation, NamesStreamTypes) {
  for (int type = -1; type <= 256; ++type) {
    std::string expected;
    if (type == 2)
      expected =
          "ITU-T Rec. H.262 | ISO/IEC 13818-2 Video [9] or ISO/IEC 11172-2 [17] constrained parameter "
          "video stream";
    if (type == 6) expected = "PES packets containing A/90 streaming, synchronized data";
    if (type == 11) expected = "DSM-CC sections containing A/90 asynchronous data";
    if (type == 13) expected = "DSM-CC addressable sections per A/90";
    if (type == 20) expected = "DSM-CC sections containing non-streaming, synchronized data per A/90";
    if (type == 129) expected = "Audio per ATSC A/53E [1] Annex B";
    if (type == 149) expected = "Sections conveying A/90 [14] Data Service Table, Network Resources Table";
    if (type == 194) expected = "PES packets containing A/90 [14] streaming, synchronous data";
    EXPECT_EQ(DescriptorAtscServiceLocation::Element::get_stream_type_text(type), expected) << type;
  }
}

TEST(DescriptorAtscContentAdvisory, ReadsItsMembers) {
  const auto d = read<DescriptorAtscContentAdvisory>(kContentAdvisory);
  EXPECT_EQ(d.rating_region_count, 1);
  ASSERT_EQ(d.regions.size(), 1u);
  const auto& region = d.regions[0];
  EXPECT_EQ(region.rating_region, 1);
  EXPECT_EQ(region.rated_dimensions, 2);
  ASSERT_EQ(region.dimensions.size(), 2u);
  EXPECT_EQ(region.dimensions[0].rating_dimension_j, 0);
  EXPECT_EQ(region.dimensions[0].rating_value, 3);
  EXPECT_EQ(region.dimensions[1].rating_dimension_j, 5);
  EXPECT_EQ(region.dimensions[1].rating_value, 9);
  EXPECT_EQ(region.rating_description_length, 10);
  expect_text(region.rating_description_text);
}

TEST(DescriptorAtscContentAdvisory, HoldsTheFirstOfItsRegionsAlone) {
  const auto d =
      read<DescriptorAtscContentAdvisory>(descriptor(0x87, joined({advisory_count(2), kRegion, kRegion})));
  EXPECT_EQ(d.rating_region_count, 2);
  EXPECT_EQ(d.regions.size(), 1u);
}

TEST(DescriptorAtscContentAdvisory, WantsARegionWhereThereAreBytesAndBytesWhereThereIsALength) {
  const std::string fails = "-1: DescriptorAtscContentAdvisory: region start end mismatch";
  const auto of = [](uint64_t count, int length) {
    return refusal<DescriptorAtscContentAdvisory>(
        descriptor_claiming(0x87, length, joined({advisory_count(count), kRegion})));
  };
  EXPECT_EQ(of(0, 1), "nothing");
  EXPECT_EQ(of(5, 1), "nothing");
  EXPECT_EQ(of(0, 2), fails);
  EXPECT_EQ(of(0, 18), fails);
  EXPECT_EQ(of(0, 0), fails);
  EXPECT_EQ(of(1, 0), fails);
  // The section ends before the descriptor: the region is whole, and takes all that is left.
  EXPECT_EQ(of(1, 60), "nothing");
  EXPECT_EQ(refusal<DescriptorAtscContentAdvisory>(descriptor_claiming(0x87, 60, advisory_count(1))), fails);
}

TEST(DescriptorAtscContentAdvisory, StaysTypedWhereItsClaimPassesTheSection) {
  const Bytes bytes = descriptor_claiming(0x87, 60, joined({advisory_count(2), kRegion}));
  const auto d = read<DescriptorAtscContentAdvisory>(bytes);
  ASSERT_EQ(d.regions.size(), 1u);
  EXPECT_EQ(d.regions[0].rating_description_length, 10);
  expect_text(d.regions[0].rating_description_text);
  AtscSTT owner;
  owner.ParseDescriptor(view(bytes));
  EXPECT_EQ(owner.get_atsc_content_advisory_descriptor().size(), 1u);
  EXPECT_TRUE(owner.get_general_descriptors().empty());
}

TEST(DescriptorAtscContentAdvisory, WantsTheTextOfARegionToHaveItsLength) {
  const auto of = [](int length, const Bytes& text) {
    return refusal<DescriptorAtscContentAdvisory>(descriptor(
        0x87, joined({advisory_count(1), kRegionHead, {static_cast<uint8_t>(length)}, text, Bytes(4)})));
  };
  const std::string fails = "-1: DescriptorAtscContentAdvisory::Region: region start end mismatch";
  EXPECT_EQ(of(10, kText), "nothing");
  EXPECT_EQ(of(9, kText), fails);
  EXPECT_EQ(of(11, kText), fails);
  EXPECT_EQ(of(0, {0}), fails);  // the count of strings is one byte even so
  EXPECT_EQ(of(1, {0}), "nothing");
}

TEST(DescriptorAtscContentAdvisory, BoundsTheDimensionsByTheLengthAndNotTheText) {
  // Five bytes hold the head and one dimension and a half; the second one is read whole.
  const Bytes bytes = joined({Bytes{7, 200, 1, 0xF2, 3, 0xF4}, Bytes{10}, kText});
  const DescriptorAtscContentAdvisory::Region region(view(bytes), 5);
  EXPECT_EQ(region.rating_region, 7);
  EXPECT_EQ(region.rated_dimensions, 200);
  ASSERT_EQ(region.dimensions.size(), 2u);
  EXPECT_EQ(region.dimensions[1].rating_dimension_j, 3);
  EXPECT_EQ(region.dimensions[1].rating_value, 4);
  EXPECT_EQ(region.rating_description_length, 10);
  expect_text(region.rating_description_text);
}

TEST(DescriptorAtscContentAdvisory, ResetEmptiesTheRegions) {
  auto d = read<DescriptorAtscContentAdvisory>(kContentAdvisory);
  d.reset();
  EXPECT_TRUE(d.regions.empty());
  EXPECT_EQ(d.rating_region_count, 1);
}

TEST(DescriptorAtscExtendedChannelName, ReadsItsMembers) {
  auto d = read<DescriptorAtscExtendedChannelName>(kChannelName);
  expect_text(d.long_channel_name_text);
  d.reset();
  expect_text(d.long_channel_name_text);
}

TEST(DescriptorAtscComponentName, ReadsItsMembers) {
  auto d = read<DescriptorAtscComponentName>(kComponentName);
  expect_text(d.component_name_string);
  d.reset();
  expect_text(d.component_name_string);
}

TEST(DescriptorAtscDCCDepartingRequest, ReadsItsMembers) {
  auto d = read<DescriptorAtscDCCDepartingRequest>(kDeparting);
  EXPECT_EQ(d.dcc_departing_request_type, 1);
  EXPECT_EQ(d.dcc_departing_request_text_length, 10);
  expect_text(d.dcc_departing_request_text);
  d.reset();
  expect_text(d.dcc_departing_request_text);
}

TEST(DescriptorAtscDCCArrivingRequest, ReadsItsMembers) {
  auto d = read<DescriptorAtscDCCArrivingRequest>(kArriving);
  EXPECT_EQ(d.dcc_arriving_request_type, 2);
  EXPECT_EQ(d.dcc_arriving_request_text_length, 10);
  expect_text(d.dcc_arriving_request_text);
  d.reset();
  expect_text(d.dcc_arriving_request_text);
}

// A text may stop after its count of strings, after a string's head, or at its end.
TEST(DescriptorAtscNames, WantTheTextToFillThem) {
  const auto of = [](int length) {
    const Bytes body = joined({kText, Bytes(4)});
    const std::string first =
        refusal<DescriptorAtscExtendedChannelName>(descriptor_claiming(0xA0, length, body));
    const std::string second = refusal<DescriptorAtscComponentName>(descriptor_claiming(0xA3, length, body));
    return first + ", " + second;
  };
  const std::string fails =
      "-1: DescriptorAtscExtendedChannelName::Region: region start end mismatch, "
      "-1: DescriptorAtscComponentName: service start end mismatch";
  for (const int length : {1, 5, 10}) EXPECT_EQ(of(length), "nothing, nothing") << length;
  for (const int length : {0, 2, 3, 4, 6, 7, 8, 9, 11, 14}) EXPECT_EQ(of(length), fails) << length;
}

TEST(DescriptorAtscDCCRequests, WantTheTextToHaveItsLength) {
  const auto of = [](int length) {
    const Bytes body = joined({{1, static_cast<uint8_t>(length)}, kText, Bytes(4)});
    const std::string first = refusal<DescriptorAtscDCCDepartingRequest>(descriptor(0xA8, body));
    const std::string second = refusal<DescriptorAtscDCCArrivingRequest>(descriptor(0xA9, body));
    return first + ", " + second;
  };
  const std::string fails =
      "-1: DescriptorAtscDCCDepartingRequest: service start end mismatch, "
      "-1: DescriptorAtscDCCArrivingRequest: service start end mismatch";
  for (const int length : {1, 5, 10}) EXPECT_EQ(of(length), "nothing, nothing") << length;
  for (const int length : {0, 2, 3, 4, 6, 7, 8, 9, 11, 255}) EXPECT_EQ(of(length), fails) << length;
}

TEST(DescriptorAtscDCCRequests, MeasureTheTextByItsOwnLengthAlone) {
  const Bytes body = joined({{1, 10}, kText});
  expect_text(
      read<DescriptorAtscDCCDepartingRequest>(descriptor_claiming(0xA8, 0, body)).dcc_departing_request_text);
  expect_text(
      read<DescriptorAtscDCCArrivingRequest>(descriptor_claiming(0xA9, 0, body)).dcc_arriving_request_text);
}

TEST(DescriptorAtscGenre, ReadsItsMembers) {
  auto d = read<DescriptorAtscGenre>(kGenre);
  EXPECT_EQ(d.attribute_count, 3);
  ASSERT_EQ(d.attributes.size(), 3u);
  EXPECT_EQ(d.attributes[0].attribute, 0x20);
  EXPECT_EQ(d.attributes[1].attribute, 0x26);
  EXPECT_EQ(d.attributes[2].attribute, 0xFF);
  d.reset();
  EXPECT_EQ(d.attributes.size(), 3u);
}

TEST(DescriptorAtscGenre, ReadsAsManyAttributesAsItCounts) {
  const auto d = read<DescriptorAtscGenre>(descriptor_claiming(0xAB, 1, {0xFF, 7, 8}));
  EXPECT_EQ(d.attribute_count, 31);
  ASSERT_EQ(d.attributes.size(), 31u);
  EXPECT_EQ(d.attributes[1].attribute, 8);
  EXPECT_EQ(d.attributes[2].attribute, 0);
}

TEST(DescriptorAtscATSCPrivateInformation, KeepsTagAndLengthAlone) {
  const auto d = read<DescriptorAtscATSCPrivateInformation>(kPrivateInformation);
  EXPECT_EQ(d.get_descriptor_tag(), 0xAD);
  EXPECT_EQ(d.get_descriptor_length(), 7);
  EXPECT_STREQ(d.get_tag_text(), "");
}

TEST(DescriptorAtscContentIdentifier, KeepsTagAndLengthAlone) {
  const auto d = read<DescriptorAtscContentIdentifier>(kContentIdentifier);
  EXPECT_EQ(d.get_descriptor_tag(), 0xB6);
  EXPECT_EQ(d.get_descriptor_length(), 9);
  EXPECT_STREQ(d.get_tag_text(), "");
}
