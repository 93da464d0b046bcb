// The subtitle, teletext and VBI descriptors of EN 300 468, by wire vectors.

#include "tests/support/cases.h"
#include "tests/support/expect.h"

#include <quillon/descriptors/av/stream_identifier.h>
#include <quillon/descriptors/av/subtitling.h>
#include <quillon/descriptors/av/teletext.h>
#include <quillon/descriptors/av/vbi.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kStreamIdentifier = descriptor(0x52, bits({{8, 0xAB, "component_tag"}}));

const Bytes kSubtitling = descriptor(0x59, joined({text("eng"),
                                                   bits({{8, 0x10, "subtitling_type"},
                                                         {16, 0x0102, "composition_page_id"},
                                                         {16, 0xF304, "ancillary_page_id"}}),
                                                   text("fra"),
                                                   bits({{8, 0x24, "subtitling_type"},
                                                         {16, 1, "composition_page_id"},
                                                         {16, 2, "ancillary_page_id"}})}));

Bytes teletext_pages() {
  return joined(
      {text("deu"),
       bits({{5, 1, "teletext_type"}, {3, 6, "teletext_magazine_number"}, {8, 0x88, "teletext_page_number"}}),
       text("swe"),
       bits({{5, 0x1F, "teletext_type"},
             {3, 0, "teletext_magazine_number"},
             {8, 0xFF, "teletext_page_number"}})});
}

const Bytes kTeletext = descriptor(0x56, teletext_pages());

const Bytes kVBITeletext = descriptor(0x46, teletext_pages());

const Bytes kVBIData = descriptor(0x45, bits({{8, 1, "data_service_id"},
                                              {8, 2, "data_service_descriptor_length"},
                                              {16, 0xE7EA, "data"},
                                              {8, 4, "data_service_id"},
                                              {8, 0, "data_service_descriptor_length"},
                                              {8, 0xFF, "data_service_id"},
                                              {8, 1, "data_service_descriptor_length"},
                                              {8, 0xC1, "data"}}));

const Cases cases = {
    case_of<DescriptorStreamIdentifier>(
        "DescriptorStreamIdentifier", Family::dvb, kStreamIdentifier,
        "descriptor_tag: 52 stream_identifier_descriptor\n"
        "component_tag: ab\n",
        R"(<d descriptor_id="82" descriptor_length="1" component_tag="171" />)"),
    case_of<DescriptorSubtitling>(
        "DescriptorSubtitling", Family::dvb, kSubtitling,
        "descriptor_tag: 59 subtitling_descriptor\n"
        "DescriptorSubtitling::ISO_639_language_code: eng\n"
        "DescriptorSubtitling::subtitling_type: 10\n"
        "DescriptorSubtitling::composition_page_id: 102\n"
        "DescriptorSubtitling::antcillary_page_id: f304\n"
        "DescriptorSubtitling::ISO_639_language_code: fra\n"
        "DescriptorSubtitling::subtitling_type: 24\n"
        "DescriptorSubtitling::composition_page_id: 1\n"
        "DescriptorSubtitling::antcillary_page_id: 2\n",
        R"(<d descriptor_id="89" descriptor_length="16"><subtitlinginfo>)"
        R"(<info subtitling_type="16" composition_page_id="258" antcillary_page_id="62212")"
        R"( ISO_639_language_code="eng" />)"
        R"(<info subtitling_type="36" composition_page_id="1" antcillary_page_id="2")"
        R"( ISO_639_language_code="fra" /></subtitlinginfo></d>)"),
    case_of<DescriptorSubtitling>("DescriptorSubtitling, empty", Family::dvb, descriptor(0x59, {}),
                                  "descriptor_tag: 59 subtitling_descriptor\n",
                                  R"(<d descriptor_id="89" descriptor_length="0"><subtitlinginfo /></d>)"),
    case_of<DescriptorTeletext>(
        "DescriptorTeletext", Family::dvb, kTeletext,
        "descriptor_tag: 56 teletext_descriptor\n"
        "language_code deu\n"
        "teletext_type 1\n"
        "teletext_magazine_number 6\n"
        "teletext_page_number 88\n"
        "language_code swe\n"
        "teletext_type 1f\n"
        "teletext_magazine_number 0\n"
        "teletext_page_number ff\n",
        R"(<d descriptor_id="86" descriptor_length="10"><teletextitems>)"
        R"(<teletext teletext_type="1" language_code="deu" teletext_magazine_number="6")"
        R"( teletext_page_number="136" />)"
        R"(<teletext teletext_type="31" language_code="swe" teletext_magazine_number="0")"
        R"( teletext_page_number="255" /></teletextitems></d>)"),
    case_of<DescriptorVBITeletext>(
        "DescriptorVBITeletext", Family::dvb, kVBITeletext, "descriptor_tag: 46 VBI_teletext_descriptor\n",
        R"(<d descriptor_id="70" descriptor_length="10"><vbiteletextdata>)"
        R"(<vbi teletext_type="1" teletext_magazine_number="6" teletext_page_number="136")"
        R"( ISO_639_language_code="deu" />)"
        R"(<vbi teletext_type="31" teletext_magazine_number="0" teletext_page_number="255")"
        R"( ISO_639_language_code="swe" /></vbiteletextdata></d>)"),
    case_of<DescriptorVBIData>(
        "DescriptorVBIData", Family::dvb, kVBIData, "descriptor_tag: 45 VBI_data_descriptor\n",
        R"(<d descriptor_id="69" descriptor_length="9"><vbiservicedata>)"
        R"(<vbi data_service_id="1" data_service_descriptor_length="2" data="e7ea" />)"
        R"(<vbi data_service_id="4" data_service_descriptor_length="0" data="" />)"
        R"(<vbi data_service_id="255" data_service_descriptor_length="1" data="c1" /></vbiservicedata></d>)"),
};

}  // namespace

TEST(DescriptorStreamIdentifier, ReadsItsMember) {
  EXPECT_EQ(DescriptorStreamIdentifier(kStreamIdentifier.data()).component_tag, 0xAB);
}

TEST(DescriptorSubtitling, ReadsItsMembers) {
  const DescriptorSubtitling d(kSubtitling.data());
  ASSERT_EQ(d.subtitling_infos.size(), 2u);
  EXPECT_STREQ(d.subtitling_infos[0].ISO_639_language_code.c_strA(), "eng");
  EXPECT_EQ(d.subtitling_infos[0].subtitling_type, 0x10);
  EXPECT_EQ(d.subtitling_infos[0].composition_page_id, 0x0102);
  EXPECT_EQ(d.subtitling_infos[0].ancillary_page_id, 0xF304);
  EXPECT_STREQ(d.subtitling_infos[1].ISO_639_language_code.c_strA(), "fra");
  EXPECT_EQ(d.subtitling_infos[1].ancillary_page_id, 2);

  const DescriptorSubtitling::SubtitlingInfo info(kSubtitling.data() + 2);
  EXPECT_EQ(saved(info), saved(d.subtitling_infos[0]));
}

TEST(DescriptorSubtitling, RefusesALengthThatIsNoMultipleOfEight) {
  for (int length = 0; length < 256; ++length)
    EXPECT_EQ(failure([&] {
                DescriptorSubtitling(ByteView(descriptor_claiming(0x59, length, Bytes(264)).data()));
              }),
              length % 8 == 0 ? "nothing" : "3: subtitling_descriptor")
        << length;
}

TEST(DescriptorTeletext, ReadsItsMembers) {
  const DescriptorTeletext d(kTeletext.data());
  ASSERT_EQ(d.teletext_items.size(), 2u);
  EXPECT_STREQ(d.teletext_items[0].language.c_strA(), "deu");
  EXPECT_EQ(d.teletext_items[0].teletext_type, 1);
  EXPECT_EQ(d.teletext_items[0].teletext_magazine_number, 6);
  EXPECT_EQ(d.teletext_items[0].teletext_page_number, 0x88);
  EXPECT_STREQ(d.teletext_items[1].language.c_strA(), "swe");
  EXPECT_EQ(d.teletext_items[1].teletext_type, 0x1F);
  EXPECT_EQ(d.teletext_items[1].teletext_magazine_number, 0);
  EXPECT_EQ(d.teletext_items[1].teletext_page_number, 0xFF);
}

TEST(DescriptorTeletext, RefusesALengthThatIsNoMultipleOfFive) {
  for (int length = 0; length < 256; ++length)
    EXPECT_EQ(
        failure([&] { DescriptorTeletext(ByteView(descriptor_claiming(0x56, length, Bytes(260)).data())); }),
        length % 5 == 0 ? "nothing" : "-1: descriptor length mismatch")
        << length;
}

TEST(DescriptorTeletext, NamesItsTypes) {
  expect_texts(
      [](int code) {
        DescriptorTeletext::TeletextItem item;
        item.teletext_type = code;
        return item.get_teletext_type_text();
      },
      {"reserved for future use", "initial teletext page", "teletext subtitle page",
       "additional information page", "programme schedule page"},
      "reserved for future use");
}

TEST(DescriptorVBITeletext, ReadsItsMembers) {
  const DescriptorVBITeletext d(kVBITeletext.data());
  ASSERT_EQ(d.vbi_teletext_data.size(), 2u);
  EXPECT_STREQ(d.vbi_teletext_data[0].language.c_strA(), "deu");
  EXPECT_EQ(d.vbi_teletext_data[0].teletext_type, 1);
  EXPECT_EQ(d.vbi_teletext_data[0].teletext_magazine_number, 6);
  EXPECT_EQ(d.vbi_teletext_data[0].teletext_page_number, 0x88);
  EXPECT_EQ(d.vbi_teletext_data[1].teletext_type, 0x1F);
}

TEST(DescriptorVBITeletext, RefusesALengthThatIsNoMultipleOfFive) {
  for (int length = 0; length < 256; ++length)
    EXPECT_EQ(failure([&] {
                DescriptorVBITeletext(ByteView(descriptor_claiming(0x46, length, Bytes(260)).data()));
              }),
              length % 5 == 0 ? "nothing" : "0: ")
        << length;
}

TEST(DescriptorVBIData, ReadsItsMembers) {
  const DescriptorVBIData d(kVBIData.data());
  ASSERT_EQ(d.vbi_service_data.size(), 3u);
  EXPECT_EQ(d.vbi_service_data[0].data_service_id, 1);
  EXPECT_EQ(d.vbi_service_data[0].data_service_descriptor_length, 2);
  EXPECT_EQ(d.vbi_service_data[0].data, (Bytes{0xE7, 0xEA}));
  EXPECT_EQ(d.vbi_service_data[1].data_service_id, 4);
  EXPECT_TRUE(d.vbi_service_data[1].data.empty());
  EXPECT_EQ(d.vbi_service_data[2].data_service_id, 0xFF);
  EXPECT_EQ(d.vbi_service_data[2].data, Bytes{0xC1});
}

TEST(DescriptorVBIData, HasServicesThatTellWhatTheyUse) {
  for (const int length : {0, 1, 255}) {
    Bytes bytes(257, 0x5A);
    bytes[1] = static_cast<uint8_t>(length);
    int consumed = -1;
    const DescriptorVBIData::VBIServiceData service(bytes.data(), 0, consumed);
    EXPECT_EQ(consumed, length + 2);
    EXPECT_EQ(service.data, Bytes(static_cast<size_t>(length), 0x5A));
  }
}

TEST(DescriptorVBIData, RefusesServicesThatDoNotEndWithIt) {
  const Bytes body = {1, 2, 0xAA, 0xBB, 4, 0, 0, 0};
  const auto outcome = [&](int length) {
    return failure([&] { DescriptorVBIData(ByteView(descriptor_claiming(0x45, length, body).data())); });
  };
  for (const int length : {0, 4, 6, 8}) EXPECT_EQ(outcome(length), "nothing") << length;
  for (const int length : {1, 2, 3, 5, 7}) EXPECT_EQ(outcome(length), "2: ") << length;
}

TEST(AvDescriptors, EndALanguageAtItsFirstNul) {
  const Bytes row = {'e', 0, 'g', 0, 0, 0, 0, 0};
  EXPECT_STREQ(DescriptorSubtitling::SubtitlingInfo(row.data()).ISO_639_language_code.c_strA(), "e");
  EXPECT_STREQ(DescriptorTeletext::TeletextItem(row.data()).language.c_strA(), "e");
  EXPECT_STREQ(DescriptorVBITeletext::VBITeleTextData(row.data()).language.c_strA(), "e");
}

TEST(AvDescriptors, AreEmptiedOfRowsByReset) {
  DescriptorStreamIdentifier identifier(kStreamIdentifier.data());
  identifier.reset();
  EXPECT_EQ(identifier.component_tag, 0xAB);
  DescriptorSubtitling subtitling(kSubtitling.data());
  subtitling.reset();
  EXPECT_TRUE(subtitling.subtitling_infos.empty());
  EXPECT_EQ(subtitling.get_descriptor_length(), 16);
  DescriptorTeletext teletext(kTeletext.data());
  teletext.reset();
  EXPECT_TRUE(teletext.teletext_items.empty());
  DescriptorVBITeletext vbi_teletext(kVBITeletext.data());
  vbi_teletext.reset();
  EXPECT_TRUE(vbi_teletext.vbi_teletext_data.empty());
  DescriptorVBIData vbi(kVBIData.data());
  vbi.reset();
  EXPECT_TRUE(vbi.vbi_service_data.empty());
}

TEST(AvDescriptors, LoadOnlyWithAllTheirAttributes) {
  expect_each_attribute_needed<DescriptorStreamIdentifier>(
      saved(DescriptorStreamIdentifier(kStreamIdentifier.data())));
  expect_each_attribute_needed<DescriptorSubtitling>(saved(DescriptorSubtitling(kSubtitling.data())));
  expect_each_attribute_needed<DescriptorTeletext>(saved(DescriptorTeletext(kTeletext.data())));
  expect_each_attribute_needed<DescriptorVBITeletext>(saved(DescriptorVBITeletext(kVBITeletext.data())));
  expect_each_attribute_needed<DescriptorVBIData>(saved(DescriptorVBIData(kVBIData.data())));
}

TEST(AvDescriptors, NameTheListThatALoadMisses) {
  const std::string bare = R"(<d descriptor_id="1" descriptor_length="0" />)";
  EXPECT_EQ(failure([&] { loaded<DescriptorSubtitling>(bare); }), "-1: failed to get subtitlinginfo");
  EXPECT_EQ(failure([&] { loaded<DescriptorTeletext>(bare); }), "-1: failed to get teletextitems");
  EXPECT_EQ(failure([&] { loaded<DescriptorVBITeletext>(bare); }), "-1: failed to get vbiteletextdata");
  EXPECT_EQ(failure([&] { loaded<DescriptorVBIData>(bare); }), "-1: failed to get vbiservicedata");
}
