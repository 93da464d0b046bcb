// Ratings, times and identifiers of a programme (EN 300 468, 6.2; TS 102 323), by wire vectors.

#include "tests/descriptors/event_helpers.h"

#include <quillon/descriptors/event/content_identifier.h>
#include <quillon/descriptors/event/local_time_offset.h>
#include <quillon/descriptors/event/parental_rating.h>
#include <quillon/descriptors/event/pdc.h>
#include <quillon/descriptors/event/related_content.h>
#include <quillon/descriptors/event/tva_id.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kParentalRating = descriptor(0x55, joined({text("GBR"), bits({{8, 0x0C, "rating"}}),  //
                                                       text("FRA"), bits({{8, 0xFF, "rating"}})}));

Bytes local_time(std::string_view country_code, uint64_t region, uint64_t reserved, uint64_t polarity) {
  return joined({text(country_code), bits({{6, region, "country_region_id"},
                                           {1, reserved, "reserved"},
                                           {1, polarity, "local_time_offset_polarity"},
                                           {16, 0x1130, "local_time_offset"},
                                           {16, 45218, "time_of_change, MJD"},
                                           {24, 0x124500, "time_of_change, BCD"},
                                           {16, 0x1045, "next_time_offset"}})});
}

const Bytes kLocalTimeOffset =
    descriptor(0x58, joined({local_time("GBR", 0x35, 1, 0), local_time("AUS", 0x0F, 0, 1)}));

const Bytes kPDC = descriptor(0x69, bits({{4, 15, "reserved_future_use"},
                                          {5, 21, "day"},
                                          {4, 12, "month"},
                                          {5, 20, "hour"},
                                          {6, 15, "minute"}}));

const Bytes kContentIdentifier =
    descriptor(0x76, joined({bits({{6, 0x31, "crid_type"}, {2, 0, "crid_location"}}), counted("/a%"),
                             bits({{6, 0x3F, "crid_type"},
                                   {2, 1, "crid_location"},
                                   {16, 0xABCD, "crid_ref"},
                                   {6, 0x01, "crid_type"},
                                   {2, 2, "crid_location"},
                                   {6, 0x02, "crid_type"},
                                   {2, 3, "crid_location"},
                                   {6, 0x20, "crid_type"},
                                   {2, 1, "crid_location"},
                                   {16, 1, "crid_ref"}})}));

const Bytes kRelatedContent = descriptor(0x74, {0x00, 0x9F, 0xFF});

const Bytes kTVAId = descriptor(0x75, bits({{16, 0x8001, "TVA_id"},
                                            {5, 31, "reserved"},
                                            {3, 4, "running_status"},
                                            {16, 2, "TVA_id"},
                                            {5, 0, "reserved"},
                                            {3, 7, "running_status"}}));

const Cases cases = {
    case_of<DescriptorParentalRating>("DescriptorParentalRating", Family::dvb, kParentalRating,
                                      "descriptor_tag: 55 parental_rating_descriptor\n"
                                      "DescriptorParentalRating::RatingInfo::country_code: GBR\n"
                                      "DescriptorParentalRating::RatingInfo::rating: c\n"
                                      "DescriptorParentalRating::RatingInfo::country_code: FRA\n"
                                      "DescriptorParentalRating::RatingInfo::rating: ff\n",
                                      R"(<d descriptor_id="85" descriptor_length="8"><ratinginfo>)"
                                      R"(<info rating="12" country_code="GBR" />)"
                                      R"(<info rating="255" country_code="FRA" /></ratinginfo></d>)"),
    case_of<DescriptorLocalTimeOffset>(
        "DescriptorLocalTimeOffset", Family::dvb, kLocalTimeOffset,
        "descriptor_tag: 58 local_time_offset_descriptor\n"
        "country_code: GBR\n"
        "country_region_id: 3\n"
        "local_time_offset_polarity: 0\n"
        "local_time_offset: 11:30\n"
        "time_of_change: 6/9-1982 12:45:0\n"
        "next_time_offset: 10:45\n"
        "country_code: AUS\n"
        "country_region_id: 0\n"
        "local_time_offset_polarity: 1\n"
        "local_time_offset: 11:30\n"
        "time_of_change: 6/9-1982 12:45:0\n"
        "next_time_offset: 10:45\n",
        R"(<d descriptor_id="88" descriptor_length="26"><localtime>)"
        R"(<time country_region_id="3" local_time_offset_polarity="0" country_code="GBR">)"
        R"(<local_time_offset hour="11" minute="30" />)"
        R"(<time_of_change day="6" month="9" year="1982" hour="12" minute="45" second="0" />)"
        R"(<next_time_offset hour="10" minute="45" /></time>)"
        R"(<time country_region_id="0" local_time_offset_polarity="1" country_code="AUS">)"
        R"(<local_time_offset hour="11" minute="30" />)"
        R"(<time_of_change day="6" month="9" year="1982" hour="12" minute="45" second="0" />)"
        R"(<next_time_offset hour="10" minute="45" /></time></localtime></d>)"),
    case_of<DescriptorPDC>("DescriptorPDC", Family::dvb, kPDC, "descriptor_tag: 69 PDC_descriptor\n",
                           R"(<d descriptor_id="105" descriptor_length="3")"
                           R"( programme_identification_label="182783744" />)"),
    case_of<DescriptorContentIdentifier>(
        "DescriptorContentIdentifier", Family::dvb, kContentIdentifier,
        "descriptor_tag: 76 content_identifier_descriptor\n",
        R"(<d descriptor_id="118" descriptor_length="13"><contentidentifierinfo>)"
        R"(<contentidentifierinfo crid_type="49" crid_location="0" crid_length="3" crid_byte="2f6125")"
        R"( crid_ref="0" />)"
        R"(<contentidentifierinfo crid_type="63" crid_location="1" crid_length="0" crid_byte="")"
        R"( crid_ref="43981" />)"
        R"(<contentidentifierinfo crid_type="1" crid_location="2" crid_length="0" crid_byte="")"
        R"( crid_ref="0" />)"
        R"(<contentidentifierinfo crid_type="2" crid_location="3" crid_length="0" crid_byte="")"
        R"( crid_ref="0" />)"
        R"(<contentidentifierinfo crid_type="32" crid_location="1" crid_length="0" crid_byte="")"
        R"( crid_ref="1" /></contentidentifierinfo></d>)"),
    case_of<DescriptorRelatedContent>("DescriptorRelatedContent", Family::dvb, kRelatedContent,
                                      "descriptor_tag: 74 related_content_descriptor\n",
                                      R"(<d descriptor_id="116" descriptor_length="3" data="009fff" />)"),
    case_of<DescriptorTVAId>("DescriptorTVAId", Family::dvb, kTVAId, "descriptor_tag: 75 TVA_id_descriptor\n",
                             R"(<d descriptor_id="117" descriptor_length="6"><tvaidinfo>)"
                             R"(<tvaidinfo TVA_id="32769" running_status="4" />)"
                             R"(<tvaidinfo TVA_id="2" running_status="7" /></tvaidinfo></d>)"),
};

}  // namespace

TEST(DescriptorParentalRating, ReadsItsMembers) {
  const DescriptorParentalRating d(kParentalRating.data());
  ASSERT_EQ(d.get_ratinginfo().size(), 2u);
  EXPECT_STREQ(d.get_ratinginfo()[0].get_country_code(), "GBR");
  EXPECT_EQ(d.get_ratinginfo()[0].get_rating(), 12);
  EXPECT_STREQ(d.get_ratinginfo()[1].get_country_code(), "FRA");
  EXPECT_EQ(d.get_ratinginfo()[1].get_rating(), 255);
}

TEST(DescriptorParentalRating, RefusesALengthThatIsNoMultipleOfFour) {
  for (const size_t length : std::initializer_list<size_t>{1, 2, 3, 5})
    EXPECT_EQ(refusal<DescriptorParentalRating>(descriptor(0x55, Bytes(length))),
              "3: parental_rating_descriptor");
  EXPECT_TRUE(DescriptorParentalRating(descriptor(0x55, {}).data()).get_ratinginfo().empty());
}

TEST(DescriptorLocalTimeOffset, ReadsItsMembers) {
  const DescriptorLocalTimeOffset d(kLocalTimeOffset.data());
  ASSERT_EQ(d.get_localtime().size(), 2u);
  const DescriptorLocalTimeOffset::LocalTime& entry = d.get_localtime()[0];
  EXPECT_STREQ(entry.get_country_code(), "GBR");
  EXPECT_EQ(entry.get_country_region_id(), 3);
  EXPECT_EQ(entry.get_local_time_offset_polarity(), 0);
  EXPECT_EQ(entry.get_local_time_offset().get_hours(), 11);
  EXPECT_EQ(entry.get_local_time_offset().get_minutes(), 30);
  EXPECT_EQ(entry.get_time_of_change().get_date_as_text(), "6 9 1982 12 45 0");
  EXPECT_EQ(entry.get_next_time_offset().get_hours(), 10);
  EXPECT_EQ(entry.get_next_time_offset().get_minutes(), 45);
  EXPECT_STREQ(d.get_localtime()[1].get_country_code(), "AUS");
}

TEST(DescriptorLocalTimeOffset, KeepsTheTopTwoBitsOfTheRegion) {
  const struct {
    uint8_t byte;
    int region;
    int polarity;
  } rows[] = {{0x00, 0, 0}, {0x01, 0, 1}, {0x3F, 0, 1}, {0x40, 1, 0},
              {0x7F, 1, 1}, {0x80, 2, 0}, {0xC0, 3, 0}, {0xFE, 3, 0}};
  for (const auto& row : rows) {
    Bytes bytes = local_time("GBR", 0, 0, 0);
    bytes[3] = row.byte;
    int consumed = 0;
    const DescriptorLocalTimeOffset::LocalTime entry(bytes.data(), consumed);
    EXPECT_EQ(consumed, 13);
    EXPECT_EQ(entry.get_country_region_id(), row.region) << +row.byte;
    EXPECT_EQ(entry.get_local_time_offset_polarity(), row.polarity) << +row.byte;
  }
}

TEST(DescriptorLocalTimeOffset, RefusesALengthThatIsNoMultipleOfThirteen) {
  for (const size_t length : std::initializer_list<size_t>{1, 12, 14, 25})
    EXPECT_EQ(refusal<DescriptorLocalTimeOffset>(descriptor(0x58, Bytes(length))),
              "-1: descriptor start end mismatch");
  EXPECT_TRUE(DescriptorLocalTimeOffset(descriptor(0x58, {}).data()).get_localtime().empty());
}

TEST(DescriptorLocalTimeOffset, ReportsInDecimalAndLeavesTheStreamSo) {
  std::string xml = saved_of<DescriptorLocalTimeOffset>(kLocalTimeOffset);
  xml.replace(xml.find("region_id=\"3\""), 13, "region_id=\"30\"");
  const auto d = loaded<DescriptorLocalTimeOffset>(xml);
  std::ostringstream stream;
  d.dump_state(stream);
  stream << 10;
  EXPECT_NE(stream.str().find("country_region_id: 30\n"), std::string::npos);
  EXPECT_TRUE(stream.str().ends_with("next_time_offset: 10:45\n10"));

  std::ostringstream without_entries;
  DescriptorLocalTimeOffset(descriptor(0x58, {}).data()).dump_state(without_entries);
  without_entries << 10;
  EXPECT_EQ(without_entries.str(), "descriptor_tag: 58 local_time_offset_descriptor\na");
}

TEST(DescriptorPDC, TakesTheByteBehindItIntoTheLabel) {
  Bytes bytes = kPDC;
  bytes.push_back(0x5A);
  const DescriptorPDC d(view(bytes));
  EXPECT_EQ(d.get_programme_identification_label(), (21 << 15 | 12 << 11 | 20 << 6 | 15) << 8 | 0x5A);
  EXPECT_STREQ(d.get_programme_identification_label_text(), "to be implemented");

  const Bytes ones(6, 0xFF);
  EXPECT_EQ(DescriptorPDC(ones.data()).get_programme_identification_label(), 0x0FFFFFFF);
}

TEST(DescriptorContentIdentifier, ReadsItsMembers) {
  const DescriptorContentIdentifier d(kContentIdentifier.data());
  ASSERT_EQ(d.get_contentidentifierinfo().size(), 5u);
  const auto& explicit_crid = d.get_contentidentifierinfo()[0];
  EXPECT_EQ(explicit_crid.get_crid_type(), 0x31);
  EXPECT_EQ(explicit_crid.get_crid_location(), 0);
  EXPECT_EQ(explicit_crid.get_crid_length(), 3);
  EXPECT_EQ(explicit_crid.get_crid_byte(), text("/a%"));
  EXPECT_EQ(explicit_crid.get_crid_ref(), 0);
  const auto& reference = d.get_contentidentifierinfo()[1];
  EXPECT_EQ(reference.get_crid_type(), 0x3F);
  EXPECT_EQ(reference.get_crid_location(), 1);
  EXPECT_EQ(reference.get_crid_length(), 0);
  EXPECT_TRUE(reference.get_crid_byte().empty());
  EXPECT_EQ(reference.get_crid_ref(), 0xABCD);
}

TEST(DescriptorContentIdentifier, EntryTellsTheBytesItUsed) {
  const auto used = [](const Bytes& bytes) {
    int consumed = 0;
    DescriptorContentIdentifier::ContentIdentifierInfo(bytes.data(), consumed);
    return consumed;
  };
  EXPECT_EQ(used({0x00, 0}), 2);
  EXPECT_EQ(used({0xFC, 3, 1, 2, 3}), 5);
  EXPECT_EQ(used({0x01, 3, 1}), 3);
  EXPECT_EQ(used({0x02}), 1);
  EXPECT_EQ(used({0x03}), 1);
}

TEST(DescriptorContentIdentifier, RefusesABodyThatItsEntriesDoNotFill) {
  const auto refusal_of = [](const Bytes& body) {
    return refusal<DescriptorContentIdentifier>(descriptor(0x76, body));
  };
  EXPECT_EQ(refusal_of({}), "nothing");
  EXPECT_EQ(refusal_of({0x00, 1, 'a'}), "nothing");
  EXPECT_EQ(refusal_of({0x00}), "-1: descriptor start end mismatch");
  EXPECT_EQ(refusal_of({0x00, 2, 'a'}), "-1: descriptor start end mismatch");
  EXPECT_EQ(refusal_of({0x01, 2}), "-1: descriptor start end mismatch");
}

TEST(DescriptorRelatedContent, KeepsItsBody) {
  EXPECT_EQ(DescriptorRelatedContent(kRelatedContent.data()).get_data(), (Bytes{0x00, 0x9F, 0xFF}));
  EXPECT_EQ(saved_of<DescriptorRelatedContent>(descriptor(0x74, {})),
            R"(<d descriptor_id="116" descriptor_length="0" data="" />)");
}

TEST(DescriptorTVAId, ReadsItsMembers) {
  const DescriptorTVAId d(kTVAId.data());
  ASSERT_EQ(d.get_tvaidinfo().size(), 2u);
  EXPECT_EQ(d.get_tvaidinfo()[0].get_tva_id(), 0x8001);
  EXPECT_EQ(d.get_tvaidinfo()[0].get_running_status(), 4);
  EXPECT_EQ(d.get_tvaidinfo()[1].get_tva_id(), 2);
  EXPECT_EQ(d.get_tvaidinfo()[1].get_running_status(), 7);
}

TEST(DescriptorTVAId, RefusesALengthThatIsNoMultipleOfThree) {
  for (const size_t length : std::initializer_list<size_t>{1, 2, 4})
    EXPECT_EQ(refusal<DescriptorTVAId>(descriptor(0x75, Bytes(length))), "-1: invalid descriptor size");
  EXPECT_TRUE(DescriptorTVAId(descriptor(0x75, {}).data()).get_tvaidinfo().empty());
}

TEST(DescriptorTVAId, NamesItsRunningStatus) {
  const char* const names[] = {"Reserved", "Not yet running", "Starts (or restarts) shortly",
                               "Paused",   "Running",         "Cancelled"};
  for (int status = -1; status <= 256; ++status) {
    const auto entry = loaded<DescriptorTVAId::TVAIdInfo>("<e TVA_id=\"1\" running_status=\"" +
                                                          std::to_string(status) + "\"/>");
    EXPECT_STREQ(entry.get_running_status_cstr(), status >= 0 && status <= 5 ? names[status] : "Reserved")
        << status;
  }
}

TEST(ProgrammeDescriptors, NeedEachAttributeInALoad) {
  expect_each_attribute_needed<DescriptorParentalRating>(saved_of<DescriptorParentalRating>(kParentalRating));
  expect_each_attribute_needed<DescriptorLocalTimeOffset>(
      saved_of<DescriptorLocalTimeOffset>(kLocalTimeOffset));
  expect_each_attribute_needed<DescriptorPDC>(saved_of<DescriptorPDC>(kPDC));
  expect_each_attribute_needed<DescriptorContentIdentifier>(
      saved_of<DescriptorContentIdentifier>(kContentIdentifier));
  expect_each_attribute_needed<DescriptorRelatedContent>(saved_of<DescriptorRelatedContent>(kRelatedContent));
  expect_each_attribute_needed<DescriptorTVAId>(saved_of<DescriptorTVAId>(kTVAId));
}

TEST(ProgrammeDescriptors, NeedTheirListsAndChildrenInALoad) {
  expect_element_needed<DescriptorParentalRating>(kParentalRating, "ratinginfo");
  expect_element_needed<DescriptorLocalTimeOffset>(kLocalTimeOffset, "localtime");
  expect_element_needed<DescriptorLocalTimeOffset>(kLocalTimeOffset, "local_time_offset");
  expect_element_needed<DescriptorLocalTimeOffset>(kLocalTimeOffset, "time_of_change");
  expect_element_needed<DescriptorLocalTimeOffset>(kLocalTimeOffset, "next_time_offset");
  expect_element_needed<DescriptorContentIdentifier>(kContentIdentifier, "contentidentifierinfo");
  expect_element_needed<DescriptorTVAId>(kTVAId, "tvaidinfo");
}

TEST(ProgrammeDescriptors, LoseTheirRowsAndKeepTheirFieldsInAReset) {
  EXPECT_EQ(saved_after_reset<DescriptorPDC>(kPDC), saved_of<DescriptorPDC>(kPDC));
  EXPECT_EQ(saved_after_reset<DescriptorParentalRating>(kParentalRating),
            R"(<d descriptor_id="85" descriptor_length="8"><ratinginfo /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorLocalTimeOffset>(kLocalTimeOffset),
            R"(<d descriptor_id="88" descriptor_length="26"><localtime /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorContentIdentifier>(kContentIdentifier),
            R"(<d descriptor_id="118" descriptor_length="13"><contentidentifierinfo /></d>)");
  EXPECT_EQ(saved_after_reset<DescriptorRelatedContent>(kRelatedContent),
            R"(<d descriptor_id="116" descriptor_length="3" data="" />)");
  EXPECT_EQ(saved_after_reset<DescriptorTVAId>(kTVAId),
            R"(<d descriptor_id="117" descriptor_length="6"><tvaidinfo /></d>)");
}

TEST(ProgrammeDescriptors, StartEmpty) {
  EXPECT_EQ(saved(DescriptorPDC()),
            R"(<d descriptor_id="0" descriptor_length="0" programme_identification_label="0" />)");
  EXPECT_EQ(saved(DescriptorContentIdentifier::ContentIdentifierInfo()),
            R"(<d crid_type="0" crid_location="0" crid_length="0" crid_byte="" crid_ref="0" />)");
  EXPECT_EQ(saved(DescriptorLocalTimeOffset::LocalTime()),
            R"(<d country_region_id="0" local_time_offset_polarity="0" country_code="">)"
            R"(<local_time_offset hour="0" minute="0" />)"
            R"(<time_of_change day="1" month="1" year="1" hour="1" minute="1" second="1" />)"
            R"(<next_time_offset hour="0" minute="0" /></d>)");
}
