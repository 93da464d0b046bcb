// The descriptors of ISO/IEC 13818-1 whose fields have fixed places, and the language descriptor.

#include "tests/support/cases.h"
#include "tests/support/expect.h"
#include "tests/support/faulty_dom.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <quillon/descriptors/dvb_classes.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kVideoStream = descriptor(0x02, bits({{1, 1, "multiple_frame_rate_flag"},
                                                  {4, 9, "frame_rate_code"},
                                                  {1, 0, "MPEG_1_only_flag"},
                                                  {1, 1, "constrained_parameter_flag"},
                                                  {1, 0, "still_picture_flag"},
                                                  {8, 0x44, "profile_and_level_indication"},
                                                  {2, 2, "chroma_format"},
                                                  {1, 1, "frame_rate_extension_flag"},
                                                  {5, 0x15, "reserved"}}));

const Bytes kAudioStream = descriptor(0x03, bits({{1, 1, "free_format_flag"},
                                                  {1, 0, "ID"},
                                                  {2, 2, "layer"},
                                                  {1, 1, "variable_rate_audio_indicator"},
                                                  {3, 7, "reserved"}}));

const Bytes kHierarchy = descriptor(0x04, bits({{4, 15, "reserved"},
                                                {4, 15, "hierarchy_type"},
                                                {2, 3, "reserved"},
                                                {6, 42, "hierarchy_layer_index"},
                                                {2, 3, "reserved"},
                                                {6, 21, "hierarchy_embedded_layer_index"},
                                                {2, 3, "reserved"},
                                                {6, 62, "hierarchy_channel"}}));

const Bytes kDataStreamAlignment = descriptor(0x06, bits({{8, 2, "alignment_type"}}));

const Bytes kTargetBackgroundGrid = descriptor(
    0x07,
    bits({{14, 720, "horizontal_size"}, {14, 576, "vertical_size"}, {4, 3, "aspect_ratio_information"}}));

const Bytes kVideoWindow = descriptor(0x08, bits({{14, 0x3FFF, "horizontal_offset"},  //
                                                  {14, 0x1555, "vertical_offset"},
                                                  {4, 10, "window_priority"}}));

const Bytes kLanguage = descriptor(0x0A, joined({text("eng"), bits({{8, 'A', "audio_type"}}),  //
                                                 text("deu"), bits({{8, 3, "audio_type"}})}));

// Characters outside ASCII, a code cut by a NUL, and an audio type that is no character.
const Bytes kOddLanguage = descriptor(0x0A, joined({text("\xE4\xE9z"),
                                                    bits({{8, 0xFF, "audio_type"}}),  //
                                                    {'e', 0, 'g', 0}}));

const Bytes kSystemClock = descriptor(0x0B, bits({{1, 1, "external_clock_reference_indicator"},
                                                  {1, 1, "reserved"},
                                                  {6, 43, "clock_accuracy_integer"},
                                                  {3, 5, "clock_accuracy_exponent"},
                                                  {5, 31, "reserved"}}));

const Bytes kMultiplexBufferUtilization = descriptor(0x0C, bits({{1, 1, "bound_valid_flag"},
                                                                 {15, 0x7ABC, "LTW_offset_lower_bound"},
                                                                 {1, 1, "reserved"},
                                                                 {15, 0x1234, "LTW_offset_upper_bound"}}));

const Bytes kMaximumBitrate = descriptor(0x0E, bits({{2, 3, "reserved"}, {22, 0x2ABCDE, "maximum_bitrate"}}));

const Bytes kPrivateDataIndicator = descriptor(0x0F, bits({{32, 0xDEADBEEF, "private_data_indicator"}}));

const Bytes kSmoothingBuffer = descriptor(
    0x10,
    bits(
        {{2, 3, "reserved"}, {22, 0x123456, "sb_leak_rate"}, {2, 3, "reserved"}, {22, 0x3EDCBA, "sb_size"}}));

const Bytes kSTD = descriptor(0x11, bits({{7, 0x7F, "reserved"}, {1, 1, "leak_valid_flag"}}));

const Bytes kIBP = descriptor(
    0x12, bits({{1, 1, "closed_gop_flag"}, {1, 0, "identical_gop_flag"}, {14, 0x2BCD, "max_gop_length"}}));

const Cases cases = {
    case_of<DescriptorVideoStream>(
        "DescriptorVideoStream", Family::dvb, kVideoStream,
        "descriptor_tag: 02 video_stream_descriptor\n"
        "TO IMPLEMENT!!!\n",
        R"(<d descriptor_id="2" descriptor_length="3" multiple_frame_rate_flag="1" frame_rate_code="9")"
        R"( MPEG_1_only_flag="0" constrained_parameter_flag="1" still_picture_flag="0")"
        R"( profile_and_level_indication="68" chroma_format="2" frame_rate_extension_flag="1" reserved="21" />)"),
    case_of<DescriptorAudioStream>(
        "DescriptorAudioStream", Family::dvb, kAudioStream,
        "descriptor_tag: 03 audio_stream_descriptor\n"
        "free_format_flag: 1\n"
        "ID: 0\n"
        "layer: 2\n"
        "variable_rate_audio_indicator: 1\n",
        R"(<d descriptor_id="3" descriptor_length="1" free_format_flag="1" ID="0" layer="2")"
        R"( variable_rate_audio_indicator="1" />)"),
    case_of<DescriptorHierarchy>(
        "DescriptorHierarchy", Family::dvb, kHierarchy, "descriptor_tag: 04 hierachy_descriptor\n",
        R"(<d descriptor_id="4" descriptor_length="4" hierarchy_type="15" hierarchy_layer_index="42")"
        R"( hierarchy_embedded_layer_index="21" hierarchy_channel="62" />)"),
    case_of<DescriptorDataStreamAlignment>(
        "DescriptorDataStreamAlignment", Family::dvb, kDataStreamAlignment,
        "descriptor_tag: 06 data_stream_alignment_descriptor\n",
        R"(<d descriptor_id="6" descriptor_length="1" alignment_type="2" />)"),
    case_of<DescriptorTargetBackgroundGrid>(
        "DescriptorTargetBackgroundGrid", Family::dvb, kTargetBackgroundGrid,
        "descriptor_tag: 07 target_background_grid_descriptor\n",
        R"(<d descriptor_id="7" descriptor_length="4" horizontal_size="720" vertical_size="576")"
        R"( aspect_ratio_information="3" />)"),
    case_of<DescriptorVideoWindow>(
        "DescriptorVideoWindow", Family::dvb, kVideoWindow, "descriptor_tag: 08 video_window_descriptor\n",
        R"(<d descriptor_id="8" descriptor_length="4" horizonal_offset="16383" vertical_offset="5461")"
        R"( window_priority="10" />)"),
    case_of<DescriptorISO639Language>(
        "DescriptorISO639Language", Family::dvb, kLanguage,
        "descriptor_tag: 0a ISO_639_language_descriptor\n"
        "ISO_639_language_code: eng\n"
        "audio_type: A\n"
        "ISO_639_language_code: deu\n"
        "audio_type: \3\n",
        R"(<d descriptor_id="10" descriptor_length="8"><language_vector>)"
        R"(<language ISO_639_language_code="eng" audio_type="65" />)"
        R"(<language ISO_639_language_code="deu" audio_type="3" /></language_vector></d>)"),
    case_of<DescriptorISO639Language>(
        "DescriptorISO639Language with odd characters", Family::dvb, kOddLanguage,
        std::string("descriptor_tag: 0a ISO_639_language_descriptor\n"
                    "ISO_639_language_code: \xE4\xE9z\n"
                    "audio_type: \xFF\n"
                    "ISO_639_language_code: e\n"
                    "audio_type: ") +
            '\0' + '\n',
        R"(<d descriptor_id="10" descriptor_length="8"><language_vector>)"
        "<language ISO_639_language_code=\"\u00E4\u00E9z\" audio_type=\"255\" />"
        R"(<language ISO_639_language_code="e" audio_type="0" /></language_vector></d>)"),
    case_of<DescriptorISO639Language>(
        "DescriptorISO639Language without a language", Family::dvb, descriptor(0x0A, {}),
        "descriptor_tag: 0a ISO_639_language_descriptor\n",
        R"(<d descriptor_id="10" descriptor_length="0"><language_vector /></d>)"),
    case_of<DescriptorSystemClock>(
        "DescriptorSystemClock", Family::dvb, kSystemClock, "descriptor_tag: 0b system_clock_descriptor\n",
        R"(<d descriptor_id="11" descriptor_length="2" external_clock_reference_indicator="1")"
        R"( clock_acuracy_integer="43" clock_acuracy_exponent="5" />)"),
    case_of<DescriptorMultiplexBufferUtilization>(
        "DescriptorMultiplexBufferUtilization", Family::dvb, kMultiplexBufferUtilization,
        "descriptor_tag: 0c multiplex_buffer_utilization_descriptor\n",
        R"(<d descriptor_id="12" descriptor_length="4" bound_valid_flag="1" LTW_offset_lower_bound="31420")"
        R"( LTW_offset_upper_bound="4660" />)"),
    case_of<DescriptorMaximumBitrate>(
        "DescriptorMaximumBitrate", Family::dvb, kMaximumBitrate,
        "descriptor_tag: 0e maximum_bitrate_descriptor\n",
        R"(<d descriptor_id="14" descriptor_length="3" maximum_bitrate="2800862" />)"),
    case_of<DescriptorPrivateDataIndicator>(
        "DescriptorPrivateDataIndicator", Family::dvb, kPrivateDataIndicator,
        "descriptor_tag: 0f private_data__indicatordescriptor\n"
        "private_data_indicator: deadbeef\n",
        R"(<d descriptor_id="15" descriptor_length="4" private_data_indicator="-559038737" />)"),
    case_of<DescriptorSmoothingBuffer>(
        "DescriptorSmoothingBuffer", Family::dvb, kSmoothingBuffer,
        "descriptor_tag: 10 smoothing_buffer_descriptor\n",
        R"(<d descriptor_id="16" descriptor_length="6" sb_leak_rate="1193046" sb_size="4119738" />)"),
    case_of<DescriptorSTD>("DescriptorSTD", Family::dvb, kSTD,
                           "descriptor_tag: 11 STD_descriptor\n"
                           "leak_valid_flag: 1\n",
                           R"(<d descriptor_id="17" descriptor_length="1" leak_valid_flag="1" />)"),
    case_of<DescriptorIBP>(
        "DescriptorIBP", Family::dvb, kIBP, "descriptor_tag: 12 IBP_descriptor\n",
        R"(<d descriptor_id="18" descriptor_length="2" closed_gop_flag="1" identical_gop_flag="0")"
        R"( max_gop_length="11213" />)"),
};

// A field of a body, in wire order; reserved bits have no reader.
template <class T>
struct Row {
  int width;
  std::function<int64_t(const T&)> get;
};

// Reads bodies of zeros with one bit set, and of ones with one bit clear: every field has its own bits, no
// others, and the reserved ones reach none.
template <class T>
void expect_bits(int tag, const std::vector<Row<T>>& rows) {
  size_t size = 0;
  for (const Row<T>& row : rows) size += static_cast<size_t>(row.width);
  ASSERT_EQ(size % 8, 0U);
  for (const uint8_t ground : Bytes{0x00, 0xFF})
    for (size_t flipped = 0; flipped < size; ++flipped) {
      Bytes body(size / 8, ground);
      body[flipped / 8] = static_cast<uint8_t>(body[flipped / 8] ^ 0x80 >> flipped % 8);
      const T d(descriptor(tag, body).data());
      EXPECT_EQ(d.get_descriptor_tag(), tag);
      EXPECT_EQ(d.get_descriptor_length(), static_cast<int>(body.size()));
      size_t at = 0;
      for (const Row<T>& row : rows) {
        int64_t value = 0;
        for (int i = 0; i < row.width; ++i, ++at) value = value << 1 | (body[at / 8] >> (7 - at % 8) & 1);
        if (!row.get) continue;
        EXPECT_EQ(row.get(d), value) << "bit " << flipped << ", field that ends before bit " << at;
      }
    }
}

// The texts of a code from -1 to 256, which is in the `xml` as CODE.
template <class T>
void expect_loaded_texts(const std::string& xml, const char* (T::*text)() const,
                         const std::map<int, std::string>& texts) {
  for (int code = -1; code <= 256; ++code) {
    const auto found = texts.find(code);
    const T d = loaded<T>(std::string(xml).replace(xml.find("CODE"), 4, std::to_string(code)));
    EXPECT_EQ((d.*text)(), found == texts.end() ? "reserved" : found->second) << code;
  }
}

// What holds for the classes whose fields are all numbers.
template <class T>
void expect_plain_fields(const Bytes& bytes) {
  T d(bytes.data());
  const std::string xml = saved(d);
  expect_each_attribute_needed<T>(xml);
  d.reset();
  EXPECT_EQ(saved(d), xml);
}

}  // namespace

TEST(DescriptorVideoStream, ReadsBytesThreeAndFourWhateverTheMpeg1FlagSays) {
  using D = DescriptorVideoStream;
  expect_bits<D>(0x02, {{1, &D::get_multiple_frame_rate_flag},
                        {4, &D::get_frame_rate_code},
                        {1, &D::get_mpeg_1_only_flag},
                        {1, &D::get_constrained_parameter_flag},
                        {1, &D::get_still_picture_flag},
                        {8, &D::get_profile_and_level_indication},
                        {2, &D::get_chroma_format},
                        {1, &D::get_frame_rate_extension_flag},
                        {5, &D::get_reserved}});
  Bytes short_one = kVideoStream;
  short_one[1] = 1;
  EXPECT_EQ(D(short_one.data()).get_profile_and_level_indication(), 0x44);
}

TEST(DescriptorAudioStream, ReadsItsFields) {
  using D = DescriptorAudioStream;
  expect_bits<D>(0x03, {{1, &D::get_free_format_flag},
                        {1, &D::get_id},
                        {2, &D::get_layer},
                        {1, &D::get_variable_rate_audio_indicator},
                        {3, nullptr}});
}

TEST(DescriptorHierarchy, ReadsItsFields) {
  using D = DescriptorHierarchy;
  expect_bits<D>(0x04, {{4, nullptr},
                        {4, &D::get_hierarchy_type},
                        {2, nullptr},
                        {6, &D::get_hierarchy_layer_index},
                        {2, nullptr},
                        {6, &D::get_hierarchy_embedded_layer_index},
                        {2, nullptr},
                        {6, &D::get_hierarchy_channel}});
}

TEST(DescriptorHierarchy, NamesItsType) {
  expect_loaded_texts(
      R"(<d descriptor_id="4" descriptor_length="4" hierarchy_type="CODE" hierarchy_layer_index="0")"
      R"( hierarchy_embedded_layer_index="0" hierarchy_channel="0" />)",
      &DescriptorHierarchy::get_hierchy_type_string,
      {{1, "ITU-T Rec. H.262|ISO/IEC 13818-2 Spatial Scalability"},
       {2, "ITU-T Rec. H.262|ISO/IEC 13818-2 SNR Scalability"},
       {3, "ITU-T Rec. H.262|ISO/IEC 13818-2 Temporal Scalability"},
       {4, "ITU-T Rec. H.262|ISO/IEC 13818-2 Data partitioning"},
       {5, "ISO/IEC 13818-3 Extension bitstream"},
       {6, "ITU-T Rec. H.222.0|ISO/IEC 13818-1 Private Stream"},
       {15, "Base Layer"}});
}

TEST(DescriptorHierarchy, KeepsWhatWasReadBeforeTheMissingAttribute) {
  const xml::Document document = xml::Document::from_text(
      R"(<d descriptor_id="5" descriptor_length="6" hierarchy_type="1" hierarchy_layer_index="2")"
      R"( hierarchy_channel="4" />)");
  DescriptorHierarchy d(kHierarchy.data());
  EXPECT_EQ(failure([&] { d.Parse(document.root()); }), "-1: failed");
  EXPECT_EQ(saved(d),
            R"(<d descriptor_id="5" descriptor_length="6" hierarchy_type="1" hierarchy_layer_index="2")"
            R"( hierarchy_embedded_layer_index="21" hierarchy_channel="62" />)");
}

TEST(DescriptorDataStreamAlignment, ReadsItsField) {
  using D = DescriptorDataStreamAlignment;
  expect_bits<D>(0x06, {{8, &D::get_alignment_type}});
}

TEST(DescriptorDataStreamAlignment, NamesItsType) {
  expect_loaded_texts(
      R"(<d descriptor_id="6" descriptor_length="1" alignment_type="CODE" />)",
      &DescriptorDataStreamAlignment::get_alignment_type_string,
      {{1, "Slice, or video access unit"}, {2, "video access unit"}, {3, "GOP, or SEQ"}, {4, "SEQ"}});
}

TEST(DescriptorTargetBackgroundGrid, ReadsItsFields) {
  using D = DescriptorTargetBackgroundGrid;
  expect_bits<D>(
      0x07,
      {{14, &D::get_horizontal_size}, {14, &D::get_vertical_size}, {4, &D::get_aspect_ratio_information}});
}

TEST(DescriptorVideoWindow, ReadsItsFields) {
  using D = DescriptorVideoWindow;
  expect_bits<D>(0x08, {{14, &D::get_horizontal_offset},  //
                        {14, &D::get_vertical_offset},
                        {4, &D::get_window_priority}});
}

TEST(DescriptorISO639Language, ReadsALanguageFromEachFourBytes) {
  const DescriptorISO639Language d(kLanguage.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x0A);
  EXPECT_EQ(d.get_descriptor_length(), 8);
  ASSERT_EQ(d.get_language_vector().size(), 2U);
  EXPECT_STREQ(d.get_language_vector()[0].get_iso_639_language_code().c_strA(), "eng");
  EXPECT_EQ(d.get_language_vector()[0].get_audio_type(), 'A');
  EXPECT_STREQ(d.get_language_vector()[1].get_iso_639_language_code().c_strA(), "deu");
  EXPECT_EQ(d.get_language_vector()[1].get_audio_type(), 3);
}

TEST(DescriptorISO639Language, RefusesALengthThatIsNoMultipleOfFour) {
  for (int length = 0; length < 256; ++length) {
    const Bytes bytes = descriptor_claiming(0x0A, length, Bytes(256));
    if (length % 4 != 0) {
      EXPECT_EQ(failure([&] { DescriptorISO639Language(ByteView(bytes.data())); }),
                "-1: descriptor length mismatch")
          << length;
    } else {
      EXPECT_EQ(DescriptorISO639Language(bytes.data()).get_language_vector().size(),
                static_cast<size_t>(length / 4));
    }
  }
}

TEST(DescriptorISO639Language, StopsAtTheEndOfTheSection) {
  const DescriptorISO639Language d(ByteView(kLanguage.data(), 2 + 4 + 2));
  ASSERT_EQ(d.get_language_vector().size(), 2U);
  EXPECT_STREQ(d.get_language_vector()[1].get_iso_639_language_code().c_strA(), "de");
  EXPECT_EQ(d.get_language_vector()[1].get_audio_type(), 0);
  EXPECT_EQ(DescriptorISO639Language(ByteView(kLanguage.data(), 2 + 4)).get_language_vector().size(), 1U);
}

TEST(DescriptorISO639Language, LoadsEightBitsOfAnAudioType) {
  const auto loaded_type = [](const std::string& text) {
    return loaded<DescriptorISO639Language::ISO639Lang>(R"(<d ISO_639_language_code="deu" audio_type=")" +
                                                        text + R"(" />)")
        .get_audio_type();
  };
  EXPECT_EQ(loaded_type("3"), 3);
  EXPECT_EQ(loaded_type("255"), 255);
  EXPECT_EQ(loaded_type("256"), 0);
  EXPECT_EQ(loaded_type("321"), 65);
  EXPECT_EQ(loaded_type("-1"), 255);
}

TEST(DescriptorISO639Language, MakesALanguageOfFourBytesOnTheirOwn) {
  ISO_639_LANGUAGE_CODE entry = {{'f', 'r', 'a'}, 2};
  const DescriptorISO639Language::ISO639Lang language(&entry);
  EXPECT_EQ(report(language), "ISO_639_language_code: fra\naudio_type: \2\n");
  EXPECT_EQ(saved(language, "language"), R"(<language ISO_639_language_code="fra" audio_type="2" />)");
  const DescriptorISO639Language::ISO639Lang empty;
  EXPECT_EQ(saved(empty), R"(<d ISO_639_language_code="" audio_type="0" />)");
}

TEST(DescriptorISO639Language, LoadsEveryChildOfTheListAndCutsItsCode) {
  const auto d = loaded<DescriptorISO639Language>(
      R"(<d descriptor_id="10" descriptor_length="77"><other/><language_vector>)"
      R"(<anything audio_type="-1" ISO_639_language_code="english"/></language_vector></d>)");
  EXPECT_EQ(saved(d), R"(<d descriptor_id="10" descriptor_length="77"><language_vector>)"
                      R"(<language ISO_639_language_code="eng" audio_type="255" /></language_vector></d>)");
}

TEST(DescriptorISO639Language, NeedsItsListAndEachAttribute) {
  expect_each_attribute_needed<DescriptorISO639Language>(saved(DescriptorISO639Language(kLanguage.data())));
  EXPECT_EQ(
      failure([] { loaded<DescriptorISO639Language>(R"(<d descriptor_id="10" descriptor_length="0"/>)"); }),
      "-1: failed to get language_vector");
}

TEST(DescriptorISO639Language, IsEmptiedByReset) {
  DescriptorISO639Language d(kLanguage.data());
  d.reset();
  EXPECT_EQ(saved(d), R"(<d descriptor_id="10" descriptor_length="8"><language_vector /></d>)");
}

TEST(DescriptorISO639Language, SaysWhichStepOfItsLoadFails) {
  const auto load = [](const char* operation, int nth = 1) {
    FaultyDom dom(operation, nth);
    DescriptorISO639Language d;
    const std::string text = failure([&] { d.Parse(dom.node()); });
    EXPECT_EQ(dom.references(), 0);
    return text;
  };
  EXPECT_EQ(load("get_attributes", 1), "-1: failed to get attribute map");
  EXPECT_EQ(load("get_attributes", 2), "-1: failed");
  EXPECT_EQ(load("get_attributes", 3), "-1: failed");
  EXPECT_EQ(load("getNamedItem", 1), "-1: failed to get descriptor_id");
  EXPECT_EQ(load("get_nodeValue", 2), "-1: failed to get descriptor_length");
  EXPECT_EQ(load("getNamedItem", 3), "-1: failed");
  EXPECT_EQ(load("get_nodeValue", 4), "-1: failed");
  EXPECT_EQ(load("selectSingleNode"), "-1: failed to get language_vector");
  EXPECT_EQ(load("get_childNodes"), "-1: failed to get program_info list language_vector");
  EXPECT_EQ(load("get_length"), "-1: failed to get length language_vector");
  EXPECT_EQ(load("get_item"), "-1: failed to get program_info node language_vector");
  EXPECT_EQ(load("none"), "nothing");
}

TEST(DescriptorISO639Language, AttachesItsListLastAndMissesFailuresInsideAnItem) {
  const DescriptorISO639Language d(descriptor(0x0A, text("eng\1")).data());
  FaultyDom whole;
  EXPECT_TRUE(d.SaveSection(whole.document(), whole.node()));
  EXPECT_EQ(whole.steps(),
            "createAttribute descriptor_id\n"
            "createAttribute descriptor_length\n"
            "createElement language_vector\n"
            "createElement language\n"
            "createAttribute ISO_639_language_code\n"
            "createAttribute audio_type\n"
            "appendChild\n"
            "appendChild\n");
  const auto save = [&d](const char* operation, int nth) {
    FaultyDom dom(operation, nth);
    const bool result = d.SaveSection(dom.document(), dom.node());
    EXPECT_EQ(dom.references(), 0);
    return result;
  };
  for (const char* const step : {"createAttribute", "put_nodeValue", "setAttributeNode"})
    for (int nth = 1; nth <= 4; ++nth) EXPECT_EQ(save(step, nth), nth > 2) << step << " " << nth;
  for (const char* const step : {"createElement", "appendChild"})
    for (int nth = 1; nth <= 3; ++nth) EXPECT_EQ(save(step, nth), nth > 2) << step << " " << nth;
}

TEST(DescriptorSystemClock, ReadsItsFields) {
  using D = DescriptorSystemClock;
  expect_bits<D>(0x0B, {{1, &D::get_external_clock_reference_indicator},
                        {1, nullptr},
                        {6, &D::get_clock_accuracy_integer},
                        {3, &D::get_clock_accuracy_exponent},
                        {5, nullptr}});
}

TEST(DescriptorMultiplexBufferUtilization, ReadsItsFields) {
  using D = DescriptorMultiplexBufferUtilization;
  expect_bits<D>(0x0C, {{1, &D::get_bound_valid_flag},
                        {15, &D::get_ltw_offset_lower_bound},
                        {1, nullptr},
                        {15, &D::get_ltw_offset_upper_bound}});
}

TEST(DescriptorMaximumBitrate, ReadsItsField) {
  expect_bits<DescriptorMaximumBitrate>(0x0E,
                                        {{2, nullptr}, {22, &DescriptorMaximumBitrate::get_maximum_bitrate}});
}

TEST(DescriptorPrivateDataIndicator, ReadsItsField) {
  expect_bits<DescriptorPrivateDataIndicator>(
      0x0F, {{32, &DescriptorPrivateDataIndicator::get_private_data_indicator}});
}

TEST(DescriptorSmoothingBuffer, ReadsItsFields) {
  using D = DescriptorSmoothingBuffer;
  expect_bits<D>(0x10, {{2, nullptr}, {22, &D::get_sb_leak_rate}, {2, nullptr}, {22, &D::get_sb_size}});
}

TEST(DescriptorSTD, ReadsTheLowestBit) {
  expect_bits<DescriptorSTD>(0x11, {{7, nullptr}, {1, &DescriptorSTD::get_leak_valid_flag}});
}

TEST(DescriptorIBP, ReadsItsFields) {
  using D = DescriptorIBP;
  expect_bits<D>(
      0x12, {{1, &D::get_closed_gop_flag}, {1, &D::get_identical_gop_flag}, {14, &D::get_max_gop_length}});
}

TEST(SystemsDescriptors, OfPlainFieldsNeedEachAttributeAndAreNotChangedByReset) {
  expect_plain_fields<DescriptorVideoStream>(kVideoStream);
  expect_plain_fields<DescriptorAudioStream>(kAudioStream);
  expect_plain_fields<DescriptorHierarchy>(kHierarchy);
  expect_plain_fields<DescriptorDataStreamAlignment>(kDataStreamAlignment);
  expect_plain_fields<DescriptorTargetBackgroundGrid>(kTargetBackgroundGrid);
  expect_plain_fields<DescriptorVideoWindow>(kVideoWindow);
  expect_plain_fields<DescriptorSystemClock>(kSystemClock);
  expect_plain_fields<DescriptorMultiplexBufferUtilization>(kMultiplexBufferUtilization);
  expect_plain_fields<DescriptorMaximumBitrate>(kMaximumBitrate);
  expect_plain_fields<DescriptorPrivateDataIndicator>(kPrivateDataIndicator);
  expect_plain_fields<DescriptorSmoothingBuffer>(kSmoothingBuffer);
  expect_plain_fields<DescriptorSTD>(kSTD);
  expect_plain_fields<DescriptorIBP>(kIBP);
}
