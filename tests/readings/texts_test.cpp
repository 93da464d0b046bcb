// Texts and times in both readings, and the codes in the words of the editions in force.

#include "tests/readings/readings.h"

#include <gtest/gtest.h>

#include <quillon/appsignal/ait.h>
#include <quillon/appsignal/ait_classes.h>
#include <quillon/atsc/mgt.h>
#include <quillon/atsc/tvct.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/event/extended_text.h>
#include <quillon/fields/dvb_text.h>
#include <quillon/fields/multiple_string.h>
#include <quillon/platform/utf8.h>

using namespace quillon;
using namespace quillon::test;

namespace {

Text read(const Bytes& field, Reading reading) {
  return Text(static_cast<int>(field.size()), test::view(field, reading));
}

std::string wide(const Text& text) {
  return platform::to_utf8(text.get_textW());
}

}  // namespace

TEST(StandardText, IsOfTheWholeAnnexInAllItsForms) {
  const Bytes german = text(
      "Gr\xC8"
      "u\xFB"
      "e\x8A"
      "\x86"
      "da\x87");
  const Text kept = read(german, Reading::kept);
  EXPECT_EQ(wide(kept), "GrÈuûeŠ†da‡");
  EXPECT_EQ(kept.utf8(), "Grüße\nda");
  const Text standard = read(german, Reading::standard);
  EXPECT_EQ(wide(standard), "Grüße\nda");
  EXPECT_EQ(standard.utf8(), "Grüße\nda");
  EXPECT_EQ(standard.get_textA(),
            "Gr\xFC\xDF"
            "e\nda");  // in code page 1252
}

TEST(StandardText, KnowsEachSelection) {
  const struct {
    Bytes field;
    const char* text;
  } rows[] = {
      {{0x01, 0xBF}, "П"},
      {{0x05, 0xFD}, "ı"},
      {{0x0B, 0xA4}, "€"},
      {{0x09, 0xFF}, "’"},
      {{0x10, 0x00, 0x02, 0xA3}, "Ł"},
      {{0x11, 0x4E, 0x2D}, "中"},
      {{0x12, 0xB0, 0xA1}, "가"},
      {{0x13, 0xD6, 0xD0}, "中"},
      {{0x14, 0x4E, 0x2D}, "中"},
      {{0x15, 0xC3, 0xA9, 0xC2, 0x8A}, "é\n"},
      {{0x1F, 0x01, 'x'}, ""},
      {{0x16, 'x'}, ""},
      {{0xA4}, "€"},
  };
  for (const auto& row : rows) {
    const Text kept = read(row.field, Reading::kept);
    const Text standard = read(row.field, Reading::standard);
    EXPECT_EQ(kept.utf8(), row.text);
    EXPECT_EQ(standard.utf8(), row.text);
    EXPECT_EQ(wide(standard), row.text);
    // Whatever is shown, the bytes stay.
    EXPECT_EQ(text(kept.get_bytes()), row.field);
    EXPECT_EQ(text(standard.get_bytes()), row.field);
  }
}

TEST(StandardText, WithoutASelectionIsInATableThatCanBeChanged) {
  struct Restored {
    ~Restored() { set_default_text_table(0); }
  } restored;
  EXPECT_EQ(get_default_text_table(), 0);
  EXPECT_EQ(dvb_text_to_utf8("r\xE9"), "rØ");
  EXPECT_TRUE(set_default_text_table(9));
  EXPECT_EQ(get_default_text_table(), 9);
  EXPECT_EQ(dvb_text_to_utf8("r\xE9\x8A"), "ré\n");
  EXPECT_EQ(read({'r', 0xE9}, Reading::standard).utf8(), "ré");
  EXPECT_EQ(read({0x01, 0xBF}, Reading::standard).utf8(), "П");
  for (const int part : {-1, 12, 16, 256}) EXPECT_FALSE(set_default_text_table(part)) << part;
  EXPECT_EQ(get_default_text_table(), 9);
}

TEST(StandardText, TellsNoSelectionFromTheByteZero) {
  EXPECT_EQ(read({0x00, 'a'}, Reading::kept).utf8(), "");
  EXPECT_EQ(read({0x00, 'a'}, Reading::kept).get_textA(), "a");
  EXPECT_EQ(read({'a', 0x00, 'b'}, Reading::kept).utf8(), "ab");
  EXPECT_EQ(read({}, Reading::standard).utf8(), "");
}

TEST(StandardText, OfWhatWasSetIsThat) {
  Text text = read({0x01, 0xBF}, Reading::kept);
  text.set_textW(0, u"Привет");
  EXPECT_EQ(text.utf8(), "Привет");
  EXPECT_EQ(text.get_bytes(), "");
  text.set_textA(1, "\xBF");
  EXPECT_EQ(text.utf8(), "П");
  text.set_textA(0, "");
  EXPECT_EQ(text.utf8(), "");
}

TEST(StandardText, OfASecondParseIsAdded) {
  Text text = read({0xC2, 'e'}, Reading::standard);
  const Bytes more{0x01, 0xBF};
  text.parse(2, test::view(more, Reading::standard));
  EXPECT_EQ(text.utf8(), "éП");
  EXPECT_EQ(wide(text), "éП");
  EXPECT_EQ(text.get_textA(), "\xE9?");
}

TEST(StandardText, IsAsciiWithoutControlCodesAlone) {
  EXPECT_TRUE(read({'a', 'b'}, Reading::standard).is_ascii());
  EXPECT_FALSE(read({'a', 0x0A, 'b'}, Reading::standard).is_ascii());
  EXPECT_TRUE(read({'a', 0x0A, 'b'}, Reading::kept).is_ascii());
  EXPECT_EQ(wide(read({'a', 0x0A, 'b'}, Reading::standard)), "ab");
}

TEST(StandardText, IsInReportAndDocument) {
  const Bytes name = descriptor(0x40, {0x01, 0xBF, 0xE0});
  const DescriptorNetworkName standard(test::view(name, Reading::standard));
  EXPECT_NE(saved(standard).find("Пр"), std::string::npos);
  const DescriptorNetworkName latin(test::view(descriptor(0x40, {0xC2, 'e'}), Reading::standard));
  EXPECT_NE(report(latin).find("network_name: é\n"), std::string::npos) << report(latin);
  EXPECT_NE(report(standard).find("Пр"), std::string::npos);
  const Bytes names = descriptor(0x5B, joined({text("rus"), counted("\x01\xBF")}));
  EXPECT_NE(report(DescriptorMultilingualNetworkName(test::view(names, Reading::standard))).find("name: П\n"),
            std::string::npos);
}

TEST(StandardWireText, IsUtf8InAllFaces) {
  const Bytes icons = descriptor(0x0B, joined({counted("\xC3\xA9\xD0\x9F"), {0, 1}}));
  const DescriptorAitApplicationIcons standard(test::view(icons, Reading::standard));
  EXPECT_EQ(standard.get_icon_locator(), "éП");
  EXPECT_NE(saved(standard).find("icon_locator=\"éП\""), std::string::npos) << saved(standard);
  EXPECT_NE(report(standard).find("icon_locator: éП\n"), std::string::npos);
  const DescriptorAitApplicationIcons kept(test::view(icons, Reading::kept));
  EXPECT_EQ(kept.get_icon_locator(), "\xC3\xA9\xD0\x9F");
  EXPECT_NE(report(kept).find("icon_locator: \xC3\xA9\xD0\x9F\n"), std::string::npos);
  // A load is of the ANSI code page, whatever the object was before.
  DescriptorAitApplicationIcons loaded_again = standard;
  const auto document = xml::Document::from_text(saved(kept));
  loaded_again.Parse(document.root());
  EXPECT_EQ(loaded_again.get_icon_locator(), kept.get_icon_locator());
  EXPECT_FALSE(loaded_again.get_icon_locator().is_utf8());
}

TEST(StandardTime, IsUndefinedWithAllBitsSet) {
  const Bytes all_set(5, 0xFF);
  EXPECT_FALSE(DateTime(test::view(all_set)).is_defined());
  EXPECT_EQ(DateTime(test::view(all_set)).get_date_as_text(), "22 4 2038 165 165 165");
  EXPECT_FALSE(Duration(test::view(all_set)).is_defined());
  for (size_t i = 0; i < all_set.size(); ++i) {
    Bytes nearly = all_set;
    nearly[i] = 0x59;
    EXPECT_TRUE(DateTime(test::view(nearly)).is_defined()) << i;
    EXPECT_EQ(Duration(test::view(nearly)).is_defined(), i < 3) << i;
  }
}

TEST(StandardTime, HasAPointForEachDayOfTheMJD) {
  using namespace std::chrono;
  const sys_seconds first = sys_days(1858y / November / 17);
  for (int mjd = 0; mjd <= 0xFFFF; ++mjd) {
    const Bytes bytes = bits({{16, static_cast<uint64_t>(mjd), "MJD"}, {24, 0x235958, "UTC"}});
    ASSERT_EQ(DateTime(test::view(bytes)).get_time_point(), first + days(mjd) + 23h + 59min + 58s) << mjd;
  }
}

TEST(StandardTime, HasAPointForADateThatWasLoaded) {
  using namespace std::chrono;
  DateTime time;
  time.set_date_from_text("29 2 2104 12 30 15");
  EXPECT_EQ(time.get_time_point(), sys_days(2104y / February / 29) + 12h + 30min + 15s);
  time.set_date_from_text("-2147483648 2147483647 -2147483648 2147483647 0 0");
  static_cast<void>(time.get_time_point());  // means nothing, and does no harm
}

TEST(StandardTime, HasALength) {
  using namespace std::chrono_literals;
  const Bytes bytes{0x01, 0x45, 0x30};
  EXPECT_EQ(Duration(test::view(bytes)).get_length(), 1h + 45min + 30s);
  EXPECT_EQ(TimeOffset(test::view(bytes)).get_length(), 1h + 45min);
}

TEST(StandardCodes, AreInTheWordsOfTheEditionsInForce) {
  const auto service = DescriptorService::standard_service_type_text;
  EXPECT_STREQ(service(0x01), "digital television service");
  EXPECT_STREQ(service(0x06), "mosaic service");
  EXPECT_STREQ(service(0x0A), "advanced codec digital radio sound service");
  EXPECT_STREQ(service(0x11), "MPEG-2 HD digital television service");
  EXPECT_STREQ(service(0x12), "reserved for future use");
  EXPECT_STREQ(service(0x16), "H.264/AVC SD digital television service");
  EXPECT_STREQ(service(0x1F), "HEVC digital television service");
  EXPECT_STREQ(service(0x22), "AVS3 digital television service");
  EXPECT_STREQ(service(0x23), "reserved for future use");
  EXPECT_STREQ(service(0xFE), "user defined");
  EXPECT_STREQ(service(0xFF), "reserved for future use");
  EXPECT_STREQ(service(-1), "<unknown>");
  EXPECT_STREQ(service(256), "<unknown>");

  const auto linkage = DescriptorLinkage::standard_linkage_type_text;
  EXPECT_STREQ(linkage(0x0C), "TS containing INT BAT or NIT (EN 301 192)");
  EXPECT_STREQ(linkage(0x0D), "event linkage");
  EXPECT_STREQ(linkage(0x1F), "extended event linkage");
  EXPECT_STREQ(linkage(0x20), "downloadable font info linkage");
  EXPECT_STREQ(linkage(0x21), "native IP bootstrap MPE stream");
  EXPECT_STREQ(linkage(0x22), "reserved for future use");
  EXPECT_STREQ(linkage(0xFE), "user defined");
  EXPECT_STREQ(linkage(0xFF), "reserved for future use");
  EXPECT_STREQ(linkage(256), "");

  using Content = DescriptorContent::Content;
  EXPECT_STREQ(Content::standard_content_nibble_level1_text(0), "undefined content");
  EXPECT_STREQ(Content::standard_content_nibble_level1_text(1), "Movie/Drama");
  EXPECT_STREQ(Content::standard_content_nibble_level1_text(12), "Adult");
  EXPECT_STREQ(Content::standard_content_nibble_level1_text(13), "reserved for future use");
  EXPECT_STREQ(Content::standard_content_nibble_level1_text(15), "user defined");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(0, 5), "undefined content");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(1, 4), "comedy");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(1, 15), "user defined");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(11, 4), "plano-stereoscopic");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(11, 5), "local or regional");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(11, 6), "reserved for future use");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(12, 0), "adult (general)");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(13, 15), "reserved for future use");
  EXPECT_STREQ(Content::standard_content_nibble_level2_text(15, 0), "user defined");

  using Satellite = DescriptorSatelliteDeliverySystem;
  EXPECT_STREQ(Satellite::standard_polarization_text(3), "circular - right");
  EXPECT_STREQ(Satellite::standard_FEC_inner_text(6), "8/9");
  EXPECT_STREQ(Satellite::standard_FEC_inner_text(9), "9/10");
  EXPECT_STREQ(Satellite::standard_FEC_inner_text(10), "reserved");
  EXPECT_STREQ(Satellite::standard_FEC_inner_text(15), "no conv. coding");
  EXPECT_STREQ(DescriptorS2SatelliteDeliverySystem::standard_TS_GS_mode_text(1), "GSE");
  EXPECT_STREQ(DescriptorTerrestrialDeliverySystem::standard_priority_text(0), "LP (low priority)");

  EXPECT_STREQ(DescriptorTeletext::TeletextItem::standard_teletext_type_text(5),
               "teletext subtitle page for hearing impaired people");
  EXPECT_STREQ(DescriptorTeletext::TeletextItem::standard_teletext_type_text(6), "reserved for future use");
  EXPECT_STREQ(DescriptorTVAId::TVAIdInfo::standard_running_status_text(6), "Completed");
  EXPECT_STREQ(DescriptorTVAId::TVAIdInfo::standard_running_status_text(7), "Reserved");
  EXPECT_STREQ(DescriptorDTS::standard_sample_rate_code_text(11), "12 kHz");
  EXPECT_STREQ(DescriptorDTS::standard_bit_rate_code_text(5), "128 kbps");
  EXPECT_STREQ(DescriptorDTS::standard_bit_rate_code_text(0x25), "128 kbps");
  EXPECT_STREQ(DescriptorDTS::standard_bit_rate_code_text(4), "reserved");
  EXPECT_STREQ(DescriptorDTS::standard_surround_mode_text(1), "unassigned");
  EXPECT_STREQ(DescriptorHierarchy::standard_hierarchy_type_text(15), "base layer or base view");
  EXPECT_STREQ(DescriptorHierarchy::standard_hierarchy_type_text(11), "reserved");

  EXPECT_STREQ(AtscMGT::Table::standard_table_type_text(0x14FF), "DCCT with dcc_id 0x00 \x96 0xFF");
  EXPECT_STREQ(AtscMGT::Table::standard_table_type_text(0x0301), "RRT with rating_region 1-255");
  EXPECT_STREQ(VirtualChannel::standard_service_type_text(2), "ATSC_digital_television");
  EXPECT_STREQ(VirtualChannel::standard_service_type_text(9), "extended_parameterized_service");
  EXPECT_STREQ(VirtualChannel::standard_service_type_text(10), "[Reserved for future ATSC use]");
  EXPECT_STREQ(Ait::standard_application_type_text(0x0010), "HbbTV application");
  EXPECT_STREQ(Ait::standard_application_type_text(1), "DVB-J application");
  using Segment = ATSCMultipleStringStructure::String::Segment;
  EXPECT_STREQ(Segment::standard_mode_text(0x11), "Reserved");
  EXPECT_STREQ(Segment::standard_mode_text(0x10), Segment::get_mode_text(0x10));
}

namespace {

struct Part {
  int number;
  int last;
  const char* language;
  std::vector<std::pair<std::string, std::string>> items;
  std::string text;
};

std::vector<DescriptorExtendedEvent> events(const std::vector<Part>& parts) {
  std::vector<DescriptorExtendedEvent> out;
  for (const Part& part : parts) {
    Bytes items;
    for (const auto& [description, item] : part.items)
      items = joined({items, counted(description), counted(item)});
    const Bytes bytes = descriptor(0x4E, joined({{static_cast<uint8_t>(part.number << 4 | part.last)},
                                                 text(part.language),
                                                 {static_cast<uint8_t>(items.size())},
                                                 items,
                                                 counted(part.text)}));
    out.emplace_back(test::view(bytes, Reading::standard));
  }
  return out;
}

}  // namespace

TEST(ExtendedText, IsGatheredPerLanguageInTheOrderOfTheNumbers) {
  const auto texts = extended_texts(events({
      {1, 2, "deu", {{"Regie", "B"}}, "zwei "},
      {0, 1, "fra", {}, "un "},
      {0, 2, "deu", {{"Mit", "A"}}, "eins "},
      {2, 2, "deu", {}, "drei"},
      {2, 2, "deu", {}, "again"},
  }));
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[0].language, "deu");
  EXPECT_EQ(texts[0].text, "eins zwei drei");
  ASSERT_EQ(texts[0].items.size(), 2u);
  EXPECT_EQ(texts[0].items[0].description, "Mit");
  EXPECT_EQ(texts[0].items[0].item, "A");
  EXPECT_EQ(texts[0].items[1].item, "B");
  EXPECT_TRUE(texts[0].is_complete);
  EXPECT_EQ(texts[1].language, "fra");
  EXPECT_EQ(texts[1].text, "un ");
  EXPECT_FALSE(texts[1].is_complete);
}

TEST(ExtendedText, WithoutItsFirstPartIsNotComplete) {
  EXPECT_FALSE(extended_texts(events({{1, 1, "eng", {}, "b"}}))[0].is_complete);
  EXPECT_TRUE(extended_texts(events({{0, 0, "eng", {}, "a"}}))[0].is_complete);
  EXPECT_TRUE(extended_texts({}).empty());
}

TEST(ExtendedText, PutsAnItemTogetherThatGoesOn) {
  const auto texts = extended_texts(events({
      {0, 1, "eng", {{"Cast", "Ann, B"}}, ""},
      {1, 1, "eng", {{"", "ob"}, {"Year", "1999"}, {"", ""}}, ""},
  }));
  ASSERT_EQ(texts[0].items.size(), 2u);
  EXPECT_EQ(texts[0].items[0].item, "Ann, Bob");
  EXPECT_EQ(texts[0].items[1].item, "1999");
}

TEST(ExtendedText, PutsACharacterTogetherThatIsCut) {
  EXPECT_EQ(extended_texts(events({{0,
                                    1,
                                    "eng",
                                    {},
                                    "\x15"
                                    "a\xC3"},
                                   {1, 1, "eng", {}, "\x15\xA9"}}))[0]
                .text,
            "aé");
  EXPECT_EQ(extended_texts(events({{0, 1, "eng", {}, "a\xC2"}, {1, 1, "eng", {}, "e"}}))[0].text, "aé");
  // In another table it is another text.
  EXPECT_EQ(
      extended_texts(events({{0, 1, "eng", {}, "\x01\xBF"}, {1, 1, "eng", {}, "\x15\xC3\xA9"}}))[0].text,
      "Пé");
}

TEST(ExtendedText, OfEventsThatWereLoadedHasTheirItems) {
  auto parts = events({{0,
                        0,
                        "eng",
                        {{"Cast",
                          "\xC2"
                          "e"}},
                        ""}});
  std::vector<DescriptorExtendedEvent> again{loaded<DescriptorExtendedEvent>(saved(parts[0]))};
  ASSERT_EQ(extended_texts(again).size(), 1u);
  EXPECT_EQ(extended_texts(again)[0].items[0].item, "é");
}

TEST(ExtendedText, PassesOverNumbersThatNoStreamHas) {
  std::string document = saved(events({{0, 0, "eng", {{"Cast", "A"}}, ""}})[0]);
  const std::string number = "descriptor_number=\"0\"";
  for (const char* const other : {"descriptor_number=\"16\"", "descriptor_number=\"-1\""}) {
    std::string changed = document;
    changed.replace(changed.find(number), number.size(), other);
    EXPECT_TRUE(extended_texts({loaded<DescriptorExtendedEvent>(changed)}).empty());
  }
}
