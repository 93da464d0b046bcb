// The names of genres (EN 300 468, 6.2.9), and the rest of the content descriptor.

#include "tests/descriptors/event_helpers.h"

#include <map>

#include <quillon/descriptors/event/content.h>

using namespace quillon;
using namespace quillon::test;

namespace {

using Content = DescriptorContent::Content;

const char* const kUndefined = "undefined/user defined/reserved for future use";

// By both nibbles, letter by letter: the misspelt ones too.
const std::map<int, std::string> kGenres = {
    {0x10, "movie/drama (general)"},
    {0x11, "detective/thriller"},
    {0x12, "adventure/western/war"},
    {0x13, "science fiction/fantasy/horror"},
    {0x14, "comedy"},
    {0x15, "soap/melodrama/folkloric"},
    {0x16, "romance"},
    {0x17, "serious/classical/religious/historical movie/drama"},
    {0x18, "adult movie/drama"},
    {0x20, "news/current affairs (general)"},
    {0x21, "news/weather report"},
    {0x22, "news magazine"},
    {0x23, "documentary"},
    {0x24, "discussion/interview/debate"},
    {0x30, "show/game show (general)"},
    {0x31, "game show/quiz/contest"},
    {0x32, "variety show"},
    {0x33, "talk show"},
    {0x40, "sports (general)"},
    {0x41, "special events (Olympic Games, World Cupt etc.)"},
    {0x42, "sports magazines"},
    {0x43, "football/soccer"},
    {0x44, "tennis/squash"},
    {0x45, "team sports (exluding football)"},
    {0x46, "athletics"},
    {0x47, "motor sport"},
    {0x48, "water sport"},
    {0x49, "winther sports"},
    {0x4A, "equestrian"},
    {0x4B, "martial sports"},
    {0x50, "children/youth programmes (general)"},
    {0x51, "pre-school children's programmes"},
    {0x52, "entertainment programmes for 6 - 14"},
    {0x53, "entertainment programmes for 10 - 16"},
    {0x54, "informational/educational/schools programmes"},
    {0x55, "cartoons/puppets"},
    {0x60, "music/ballet/dance (general)"},
    {0x61, "rock/pop"},
    {0x62, "serious music/classical music"},
    {0x63, "folk/tradional music"},
    {0x64, "jazz"},
    {0x65, "musical/opera"},
    {0x66, "ballet"},
    {0x70, "arts/culture (without music) (general)"},
    {0x71, "performing arts"},
    {0x72, "fine arts"},
    {0x73, "religion"},
    {0x74, "popular culture/traditional arts"},
    {0x75, "literature"},
    {0x76, "film/cinema"},
    {0x77, "experimental film/video"},
    {0x78, "broadcasting/press"},
    {0x79, "new media"},
    {0x7A, "arts/culture magazines"},
    {0x7B, "fashion"},
    {0x80, "social/political issues/economics (general)"},
    {0x81, "magazines/reports/documentary"},
    {0x82, "economics/social advisory"},
    {0x83, "remarkable people"},
    {0x90, "education/science/factual topics (general)"},
    {0x91, "nature/animals/environment"},
    {0x92, "technology/natural sciences"},
    {0x93, "medicine/physiology/psychology"},
    {0x94, "foriegn countries/expeditions"},
    {0x95, "social/spiritual sciences"},
    {0x96, "further education"},
    {0x97, "languages"},
    {0xA0, "leisure/hobbies (general)"},
    {0xA1, "tourism/travel"},
    {0xA2, "handicraft"},
    {0xA3, "motoring"},
    {0xA4, "fitness & health"},
    {0xA5, "cooking"},
    {0xA6, "advertisement/shopping"},
    {0xA7, "gardening"},
    {0xB0, "origianl language"},
    {0xB1, "black & white"},
    {0xB2, "unpublished"},
    {0xB3, "live broadcast"},
};

const Bytes kContent = descriptor(0x54, bits({{4, 1, "content_nibble_level_1"},
                                              {4, 4, "content_nibble_level_2"},
                                              {4, 10, "user_nibble"},
                                              {4, 5, "user_nibble"},
                                              {4, 15, "content_nibble_level_1"},
                                              {4, 0, "content_nibble_level_2"},
                                              {4, 0, "user_nibble"},
                                              {4, 15, "user_nibble"}}));

const Cases cases = {
    case_of<DescriptorContent>("DescriptorContent", Family::dvb, kContent,
                               "descriptor_tag: 54 content_descriptor\n"
                               "content_nibble_level1: 1\n"
                               "content_nibble_level2: 4\n"
                               "user_nibble1: a\n"
                               "user_nibble2: 5\n"
                               "content_nibble_level1: f\n"
                               "content_nibble_level2: 0\n"
                               "user_nibble1: 0\n"
                               "user_nibble2: f\n",
                               R"(<d descriptor_id="84" descriptor_length="4"><contents>)"
                               R"(<content content_nibble_level1="1" content_nibble_level2="4")"
                               R"( user_nibble1="10" user_nibble2="5" />)"
                               R"(<content content_nibble_level1="15" content_nibble_level2="0")"
                               R"( user_nibble1="0" user_nibble2="15" /></contents></d>)"),
};

// An entry with values that the wire does not have.
Content with_nibbles(int level_1, int level_2) {
  return loaded<Content>("<c content_nibble_level1=\"" + std::to_string(level_1) +
                         "\" content_nibble_level2=\"" + std::to_string(level_2) +
                         "\" user_nibble1=\"0\" user_nibble2=\"0\"/>");
}

}  // namespace

TEST(DescriptorContent, ReadsItsMembers) {
  const DescriptorContent d(kContent.data());
  ASSERT_EQ(d.get_contents().size(), 2u);
  EXPECT_EQ(d.get_contents()[0].get_content_nibble_level_1(), 1);
  EXPECT_EQ(d.get_contents()[0].get_content_nibble_level_2(), 4);
  EXPECT_EQ(d.get_contents()[0].get_user_nibble1(), 10);
  EXPECT_EQ(d.get_contents()[0].get_user_nibble2(), 5);
  EXPECT_STREQ(d.get_contents()[0].get_content_nibble_level1_text(), "Movie/Drama");
  EXPECT_STREQ(d.get_contents()[0].get_content_nibble_level2_text(), "comedy");
  EXPECT_EQ(d.get_contents()[1].get_content_nibble_level_1(), 15);
  EXPECT_EQ(d.get_contents()[1].get_content_nibble_level_2(), 0);
  EXPECT_EQ(d.get_contents()[1].get_user_nibble1(), 0);
  EXPECT_EQ(d.get_contents()[1].get_user_nibble2(), 15);
}

TEST(DescriptorContent, RefusesAnOddLength) {
  for (const size_t length : std::initializer_list<size_t>{1, 3, 5})
    EXPECT_EQ(refusal<DescriptorContent>(descriptor(0x54, Bytes(length))), "-1: descriptor length mismatch");
  EXPECT_TRUE(DescriptorContent(descriptor(0x54, {}).data()).get_contents().empty());
}

TEST(DescriptorContent, NamesEachPairOfNibbles) {
  ASSERT_EQ(kGenres.size(), 79u);
  for (int nibbles = 0; nibbles < 256; ++nibbles) {
    const Bytes bytes = {static_cast<uint8_t>(nibbles), 0};
    const auto genre = kGenres.find(nibbles);
    EXPECT_EQ(Content(bytes.data()).get_content_nibble_level2_text(),
              genre == kGenres.end() ? kUndefined : genre->second)
        << nibbles;
  }
}

TEST(DescriptorContent, NamesPairsByTheirSum) {
  EXPECT_STREQ(with_nibbles(0, 0x10).get_content_nibble_level2_text(), "movie/drama (general)");
  EXPECT_STREQ(with_nibbles(0, 0xB3).get_content_nibble_level2_text(), "live broadcast");
  EXPECT_STREQ(with_nibbles(2, -16).get_content_nibble_level2_text(), "movie/drama (general)");
  EXPECT_STREQ(with_nibbles(0, 0x0F).get_content_nibble_level2_text(), kUndefined);
  EXPECT_STREQ(with_nibbles(0, 0xB4).get_content_nibble_level2_text(), kUndefined);
  EXPECT_STREQ(with_nibbles(-1, 0).get_content_nibble_level2_text(), kUndefined);
  EXPECT_STREQ(with_nibbles(2147483647, 2147483647).get_content_nibble_level2_text(), kUndefined);
}

TEST(DescriptorContent, NamesEachFirstNibble) {
  const char* const names[] = {
      "Movie/Drama",
      "News/Current affairs",
      "Show/Game show",
      "Sports",
      "Children/Youth programmes",
      "Music/Ballet/Dance",
      "Arts/Culture (without music)",
      "Social/Political issues/Economics",
      "Education/Science/Factual topics",
      "Leisure/Hobbies",
      "Special Charateristics",
  };
  for (int nibble = -1; nibble <= 256; ++nibble)
    EXPECT_STREQ(with_nibbles(nibble, 0).get_content_nibble_level1_text(),
                 nibble >= 1 && nibble <= 11 ? names[nibble - 1] : kUndefined)
        << nibble;
}

TEST(DescriptorContent, NeedsItsListAndEachAttributeInALoad) {
  expect_element_needed<DescriptorContent>(kContent, "contents");
  expect_each_attribute_needed<DescriptorContent>(saved_of<DescriptorContent>(kContent));
}

TEST(DescriptorContent, LosesItsEntriesInAReset) {
  EXPECT_EQ(saved_after_reset<DescriptorContent>(kContent),
            R"(<d descriptor_id="84" descriptor_length="4"><contents /></d>)");
}
