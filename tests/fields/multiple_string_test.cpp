#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <ios>

#include <quillon/fields/multiple_string.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using String = ATSCMultipleStringStructure::String;
using Segment = String::Segment;

Bytes segment(int compression_type, int mode, const Bytes& bytes) {
  return joined({bits({{8, static_cast<uint64_t>(compression_type), "compression_type"},
                       {8, static_cast<uint64_t>(mode), "mode"},
                       {8, bytes.size(), "number_bytes"}}),
                 bytes});
}

Bytes string_of(std::string_view language, uint64_t number_segments, std::initializer_list<Bytes> segments) {
  return joined({text(language), bits({{8, number_segments, "number_segments"}}), joined(segments)});
}

Bytes structure(uint64_t number_strings, std::initializer_list<Bytes> strings) {
  return joined({bits({{8, number_strings, "number_strings"}}), joined(strings)});
}

const Bytes kTwoLanguages = structure(2, {string_of("eng", 2,
                                                    {segment(0, 0x00, {'T', 0xE9}),  //
                                                     segment(1, 0x00, {1, 2, 3})}),
                                          string_of("jpn", 1, {segment(0, 0x30, {0x41})})});

struct Parsed {
  ATSCMultipleStringStructure structure;
  int used;
};

// Parses with `length` bytes said to be there, all of `bytes` by default.
Parsed parse(const Bytes& bytes, int length = -1) {
  Parsed out;
  out.used = length < 0 ? static_cast<int>(bytes.size()) : length;
  out.structure.parse(view(bytes), out.used);
  return out;
}

Segment segment_of(const Bytes& bytes) {
  int length = 0;
  return Segment(view(bytes), length);
}

std::string page_text(int high) {
  char out[64];
  std::snprintf(out, sizeof out, "Select Unicode Code Range 0x%02X00 \226 0x%02XFF",
                static_cast<unsigned>(high), static_cast<unsigned>(high));
  return out;
}

std::string expected_mode_text(int mode) {
  if (mode < 0 || mode > 255) return "";
  if (mode <= 6) return page_text(mode);
  if (mode <= 8) return "Reserved";
  if (mode <= 16) return page_text(mode);
  if (mode <= 31) return page_text(0x10);
  if (mode <= 39) return page_text(mode);
  if (mode <= 47) return "Reserved";
  if (mode <= 51) return page_text(mode);
  if (mode <= 61) return "Reserved";
  if (mode == 62) return "Select Standard Compression Scheme for Unicode (SCSU)";
  if (mode == 63) return "Select Unicode, UTF-16 Form";
  if (mode <= 65) return "Assigned to ATSC standard for Taiwan";
  if (mode == 72) return "Assigned to ATSC standard for South Korea";
  if (mode <= 223) return "Reserved for future ATSC use";
  if (mode <= 254) return "Used in other systems";
  return "Not applicable";
}

}  // namespace

TEST(MultipleString, ReadsStringsAndSegments) {
  const auto [s, used] = parse(kTwoLanguages);
  EXPECT_EQ(used, static_cast<int>(kTwoLanguages.size()));
  EXPECT_EQ(s.number_strings, 2);
  ASSERT_EQ(s.strings.size(), 2u);
  EXPECT_STREQ(s.strings[0].iso639languagecode.c_strA(), "eng");
  EXPECT_EQ(s.strings[0].number_segments, 2);
  ASSERT_EQ(s.strings[0].segments.size(), 2u);
  const Segment& first = s.strings[0].segments[0];
  EXPECT_EQ(first.compression_type, 0);
  EXPECT_EQ(first.mode, 0x00);
  EXPECT_EQ(first.number_bytes, 2);
  EXPECT_EQ(first.compressed_string_bytes, (Bytes{'T', 0xE9}));
  EXPECT_EQ(first.decoded_text, (wide_string{0x0054, 0x00E9}));
  EXPECT_STREQ(s.strings[1].iso639languagecode.c_strA(), "jpn");
  EXPECT_EQ(s.strings[1].number_segments, 1);
  ASSERT_EQ(s.strings[1].segments.size(), 1u);
  EXPECT_EQ(s.strings[1].segments[0].mode, 0x30);
  EXPECT_EQ(s.strings[1].segments[0].decoded_text, wide_string{0x3041});
}

TEST(MultipleString, ReportsItsNumbersInTheBaseOfTheStream) {
  const ATSCMultipleStringStructure s =
      parse(structure(1, {string_of("eng", 1, {segment(0, 0x30, Bytes(20))})})).structure;
  EXPECT_EQ(report(s),
            "number_strings: 1\n"
            "iso639languagecode: eng\n"
            "number_segments: 1\n"
            "compression_type: 0\n"
            "mode: 48\n"
            "number_bytes: 20\n");
  std::ostringstream stream;
  stream << std::hex;
  s.dump_state(stream);
  EXPECT_EQ(stream.str(),
            "number_strings: 1\n"
            "iso639languagecode: eng\n"
            "number_segments: 1\n"
            "compression_type: 0\n"
            "mode: 30\n"
            "number_bytes: 14\n");
  EXPECT_EQ(report(s.strings[0].segments[0]), "compression_type: 0\nmode: 48\nnumber_bytes: 20\n");
}

TEST(MultipleString, ReportsEverySegmentOfEveryString) {
  EXPECT_EQ(report(parse(kTwoLanguages).structure),
            "number_strings: 2\n"
            "iso639languagecode: eng\n"
            "number_segments: 2\n"
            "compression_type: 0\nmode: 0\nnumber_bytes: 2\n"
            "compression_type: 1\nmode: 0\nnumber_bytes: 3\n"
            "iso639languagecode: jpn\n"
            "number_segments: 1\n"
            "compression_type: 0\nmode: 48\nnumber_bytes: 1\n");
}

TEST(MultipleString, IsEmptyUntilItIsParsed) {
  EXPECT_EQ(report(ATSCMultipleStringStructure()), "number_strings: 0\n");
}

TEST(MultipleString, CopiesDeep) {
  ATSCMultipleStringStructure s = parse(kTwoLanguages).structure;
  const ATSCMultipleStringStructure copy = s;
  s.strings[0].segments.clear();
  EXPECT_EQ(copy.strings[0].segments.size(), 2u);
}

TEST(MultipleString, UsesOneByteForNoStrings) {
  const auto [s, used] = parse(structure(0, {Bytes(9)}));
  EXPECT_EQ(used, 1);
  EXPECT_EQ(s.number_strings, 0);
  EXPECT_TRUE(s.strings.empty());
}

TEST(MultipleString, UsesOneByteWhereNoneIsSaidToBeThere) {
  for (const int length : {1, 0, -7}) {
    int used = length;
    ATSCMultipleStringStructure s;
    s.parse(ByteView(kTwoLanguages.data(), kTwoLanguages.size()), used);
    EXPECT_EQ(used, 1) << length;
    EXPECT_EQ(s.number_strings, 2);
    EXPECT_TRUE(s.strings.empty());
  }
}

TEST(MultipleString, StopsAtTheEndWhateverTheCountsSay) {
  const auto [s, used] = parse(structure(9, {string_of("eng", 7, {segment(0, 0, {'A'})})}));
  EXPECT_EQ(used, 9);
  EXPECT_EQ(s.number_strings, 9);
  ASSERT_EQ(s.strings.size(), 1u);
  EXPECT_EQ(s.strings[0].number_segments, 7);
  EXPECT_EQ(s.strings[0].segments.size(), 1u);
}

TEST(MultipleString, LeavesUnreadWhatStandsBehindTheAnnouncedStrings) {
  const auto [s, used] = parse(structure(1, {string_of("eng", 1, {segment(0, 0, {'A'})}), text("rest")}));
  EXPECT_EQ(used, 9);
  EXPECT_EQ(s.strings.size(), 1u);
}

TEST(MultipleString, BeginsAStringWithOneByteLeft) {
  const Bytes bytes = structure(2, {string_of("eng", 0, {}), string_of("fra", 1, {segment(0, 0, {'A'})})});
  const auto [s, used] = parse(bytes, 6);
  EXPECT_EQ(used, 9);
  ASSERT_EQ(s.strings.size(), 2u);
  EXPECT_STREQ(s.strings[1].iso639languagecode.c_strA(), "fra");
  EXPECT_EQ(s.strings[1].number_segments, 1);
  EXPECT_TRUE(s.strings[1].segments.empty());
}

TEST(MultipleString, CopiesASegmentThatRunsPastTheLength) {
  const Bytes bytes =
      structure(3, {string_of("eng", 3, {segment(0, 0, text("abcdef"))}), string_of("fra", 0, {})});
  const auto [s, used] = parse(bytes, 10);
  EXPECT_EQ(used, 14);
  ASSERT_EQ(s.strings.size(), 1u);
  ASSERT_EQ(s.strings[0].segments.size(), 1u);
  EXPECT_EQ(s.strings[0].segments[0].compressed_string_bytes, text("abcdef"));
}

TEST(MultipleString, FillsWithZerosWhatTheSectionDoesNotHave) {
  Bytes bytes = structure(200, {string_of("eng", 200, {segment(0, 0, text("ab"))})});
  bytes[7] = 5;  // number_bytes
  const auto [s, used] = parse(bytes, 4000);
  EXPECT_EQ(used, 13);
  ASSERT_EQ(s.strings.size(), 1u);
  ASSERT_EQ(s.strings[0].segments.size(), 1u);
  EXPECT_EQ(s.strings[0].segments[0].compressed_string_bytes, (Bytes{'a', 'b', 0, 0, 0}));
  EXPECT_EQ(s.strings[0].segments[0].decoded_text.size(), 5u);
}

TEST(MultipleString, WalksNoFurtherThanTheSection) {
  const auto [s, used] = parse({255}, 4000);
  EXPECT_EQ(used, 1);
  EXPECT_TRUE(s.strings.empty());
  int length = 4000;
  const String string(ByteView(kTwoLanguages.data(), 0), length);
  EXPECT_EQ(length, 4);
  EXPECT_EQ(string.number_segments, 0);
}

TEST(MultipleString, SurvivesBeingCutAtEachLength) {
  for (size_t size = 0; size <= kTwoLanguages.size(); ++size) {
    const Bytes cut(kTwoLanguages.begin(), kTwoLanguages.begin() + static_cast<ptrdiff_t>(size));
    EXPECT_LE(parse(cut, static_cast<int>(kTwoLanguages.size())).structure.strings.size(), 2u);
  }
}

TEST(MultipleString, AddsToWhatItHolds) {
  ATSCMultipleStringStructure s = parse(kTwoLanguages).structure;
  const Bytes second = structure(1, {string_of("deu", 0, {})});
  int length = static_cast<int>(second.size());
  s.parse(view(second), length);
  EXPECT_EQ(length, 5);
  EXPECT_EQ(s.number_strings, 1);
  ASSERT_EQ(s.strings.size(), 3u);
  EXPECT_STREQ(s.strings[2].iso639languagecode.c_strA(), "deu");
}

TEST(MultipleStringSegment, WritesItsLengthAndDoesNotReadIt) {
  const Bytes bytes = segment(0, 0, text("abc"));
  for (int length : {0, 1, 600}) {
    const Segment s(view(bytes), length);
    EXPECT_EQ(length, 6);
    EXPECT_EQ(s.compressed_string_bytes, text("abc"));
  }
}

TEST(MultipleStringSegment, KeepsCodedBytesAsTheyStand) {
  for (const int type : {1, 2, 3, 175, 255}) {
    const Segment s = segment_of(segment(type, 0x00, text("abc")));
    EXPECT_EQ(s.compression_type, type);
    EXPECT_EQ(s.compressed_string_bytes, text("abc"));
    EXPECT_TRUE(s.decoded_text.empty()) << type;
  }
}

TEST(MultipleStringSegment, DecodesTheModesThatAreAPage) {
  for (int mode = 0; mode <= 255; ++mode) {
    const Segment s = segment_of(segment(0, mode, {0x41, 0xFF}));
    const bool page = mode <= 0x06 || (mode >= 0x09 && mode <= 0x10) || (mode >= 0x20 && mode <= 0x27) ||
                      (mode >= 0x30 && mode <= 0x33);
    const uint16_t high = static_cast<uint16_t>(mode << 8);
    const wide_string expected = page ? wide_string{static_cast<uint16_t>(high + 0x41),  //
                                                    static_cast<uint16_t>(high + 0xFF)}
                                      : wide_string();
    EXPECT_EQ(s.decoded_text, expected) << mode;
    EXPECT_EQ(s.compressed_string_bytes, (Bytes{0x41, 0xFF})) << mode;
  }
}

TEST(MultipleStringSegment, NamesItsCompression) {
  for (int type = -2; type <= 257; ++type) {
    const char* expected =
        type < 0 || type > 255 ? ""
        : type == 0            ? "No compression"
        : type == 1   ? "Huffman coding using standard encode/decode tables defined in Table C.4 and "
                        "C.5 in Annex C."
        : type == 2   ? "Huffman coding using standard encode/decode tables defined in Table C.6 and "
                        "C.7 in Annex C."
        : type <= 175 ? "reserved"
                      : "Used in other systems";
    EXPECT_STREQ(Segment::get_compression_type_text(type), expected) << type;
  }
  EXPECT_STREQ(segment_of(segment(176, 0, {})).get_compression_type_text(), "Used in other systems");
}

TEST(MultipleStringSegment, NamesItsMode) {
  for (int mode = -2; mode <= 257; ++mode)
    EXPECT_EQ(Segment::get_mode_text(mode), expected_mode_text(mode)) << mode;
  EXPECT_STREQ(Segment::get_mode_text(0x0A), "Select Unicode Code Range 0x0A00 \x96 0x0AFF");
  EXPECT_STREQ(Segment::get_mode_text(0x1F), "Select Unicode Code Range 0x1000 \x96 0x10FF");
  EXPECT_STREQ(segment_of(segment(0, 0x3F, {})).get_mode_text(), "Select Unicode, UTF-16 Form");
}
