// What an event says of itself in words, and its components (EN 300 468, 6.2), by wire vectors.

#include "tests/descriptors/event_helpers.h"

#include <quillon/descriptors/event/component.h>
#include <quillon/descriptors/event/extended_event.h>
#include <quillon/descriptors/event/short_event.h>
#include <quillon/descriptors/event/time_shifted_event.h>

using namespace quillon;
using namespace quillon::test;

namespace {

const Bytes kShortEvent =
    descriptor(0x4D, joined({text("fra"), counted("\5Caf\xE9"), counted("Tea & more")}));
const Bytes kEmptyShortEvent = descriptor(0x4D, joined({text("und"), counted(""), counted("")}));

Bytes extended_event(const Bytes& items, int length_of_items) {
  return descriptor(
      0x4E, joined({bits({{4, 10, "descriptor_number"}, {4, 11, "last_descriptor_number"}}), text("eng"),
                    bits({{8, static_cast<uint64_t>(length_of_items), "length_of_items"}}), items,
                    counted("A long story")}));
}
Bytes extended_event(const Bytes& items) {
  return extended_event(items, static_cast<int>(items.size()));
}

const Bytes kExtendedEvent =
    extended_event(joined({counted("Director"), counted("J. Doe"), counted("Cast"), counted("")}));

const Bytes kTimeShiftedEvent =
    descriptor(0x4F, bits({{16, 0xABCD, "reference_service_id"}, {16, 0x12EF, "reference_event_id"}}));

Bytes component(std::string_view characters) {
  return descriptor(0x50, joined({bits({{4, 15, "reserved_future_use"},
                                        {4, 2, "stream_content"},
                                        {8, 0x40, "component_type"},
                                        {8, 0xFE, "component_tag"}}),
                                  text("ger"), text(characters)}));
}

const Bytes kComponent = component("stereo");

const Bytes kMultilingualComponent =
    descriptor(0x5E, joined({bits({{8, 0x2A, "component_tag"}}), text("eng"), counted("sound"),  //
                             text("deu"), counted("Ton")}));

const Cases cases = {
    case_of<DescriptorShortEvent>("DescriptorShortEvent", Family::dvb, kShortEvent,
                                  "descriptor_tag: 4d short_event_descriptor\n"
                                  "language_code: fra\n"
                                  "event_name: Caf\xE9\n"
                                  "text: Tea & more\n",
                                  R"(<d descriptor_id="77" descriptor_length="20" language_code="fra")"
                                  R"( event_name="Café" text="Tea &amp; more" />)"),
    case_of<DescriptorShortEvent>("DescriptorShortEvent, without texts", Family::dvb, kEmptyShortEvent,
                                  "descriptor_tag: 4d short_event_descriptor\n"
                                  "language_code: und\n"
                                  "event_name: \n"
                                  "text: \n",
                                  R"(<d descriptor_id="77" descriptor_length="5" language_code="und")"
                                  R"( event_name="" text="" />)"),
    case_of<DescriptorExtendedEvent>(
        "DescriptorExtendedEvent", Family::dvb, kExtendedEvent,
        "descriptor_tag: 4e extended_event_descriptor\n"
        "descriptor_number: a\n"
        "last_descriptor_number: b\n"
        "language_code: eng\n"
        "text: A long story\n"
        "description: Director\n"
        "item: J. Doe\n"
        "description: Cast\n"
        "item: \n",
        R"(<d descriptor_id="78" descriptor_length="40" descriptor_number="10" last_descriptor_number="11")"
        R"( language_code="eng"><items><item description="Director" item="J. Doe" />)"
        R"(<item description="Cast" item="" /></items></d>)"),
    case_of<DescriptorExtendedEvent>(
        "DescriptorExtendedEvent, without items", Family::dvb, extended_event({}),
        "descriptor_tag: 4e extended_event_descriptor\n"
        "descriptor_number: a\n"
        "last_descriptor_number: b\n"
        "language_code: eng\n"
        "text: A long story\n",
        R"(<d descriptor_id="78" descriptor_length="18" descriptor_number="10" last_descriptor_number="11")"
        R"( language_code="eng"><items /></d>)"),
    case_of<DescriptorTimeShiftedEvent>("DescriptorTimeShiftedEvent", Family::dvb, kTimeShiftedEvent,
                                        "descriptor_tag: 4f time_shifted_event_descriptor\n"
                                        "reference_service_id: abcd\n"
                                        "reference_event_id: 12ef\n",
                                        R"(<d descriptor_id="79" descriptor_length="4")"
                                        R"( reference_service_id="43981" reference_event_id="4847" />)"),
    case_of<DescriptorComponent>("DescriptorComponent", Family::dvb, kComponent,
                                 "descriptor_tag: 50 component_descriptor\n"
                                 "stream_content: 2\n"
                                 "component_type: 40\n"
                                 "component_tag: fe\n"
                                 "language_code: ger\n"
                                 "text: ster\n",
                                 R"(<d descriptor_id="80" descriptor_length="12" stream_content="2")"
                                 R"( component_type="64" component_tag="254" language_code="ger" />)"),
    case_of<DescriptorMultilingualComponent>(
        "DescriptorMultilingualComponent", Family::dvb, kMultilingualComponent,
        "descriptor_tag: 5e multilingual_component_name_descriptor\n"
        "component_tag: 2a\n"
        "MultilingualNameInfo::ISO_639_language_code: eng\n"
        "MultilingualNameInfo::name: sound\n"
        "MultilingualNameInfo::ISO_639_language_code: deu\n"
        "MultilingualNameInfo::name: Ton\n",
        R"(<d descriptor_id="94" descriptor_length="17"><nameinfo>)"
        R"(<info name="sound" ISO_639_language_code="eng" />)"
        R"(<info name="Ton" ISO_639_language_code="deu" /></nameinfo></d>)"),
};

}  // namespace

TEST(DescriptorShortEvent, ReadsItsMembers) {
  const DescriptorShortEvent d(kShortEvent.data());
  EXPECT_EQ(d.get_descriptor_tag(), 0x4D);
  EXPECT_EQ(d.get_descriptor_length(), 20);
  EXPECT_STREQ(d.get_iso_639_language_code(), "fra");
  EXPECT_EQ(d.get_event_name().get_textA(), "Caf\xE9");
  EXPECT_EQ(d.get_event_name().get_textW(), "Caf\xE9"_w);
  EXPECT_EQ(d.get_event_name().get_text_len(), 5u);
  EXPECT_EQ(d.get_text().get_textA(), "Tea & more");
  EXPECT_EQ(d.get_text().get_text_len(), 10u);
}

TEST(DescriptorShortEvent, MayHaveEmptyTexts) {
  const DescriptorShortEvent d(kEmptyShortEvent.data());
  EXPECT_TRUE(d.get_event_name().get_textW().empty());
  EXPECT_EQ(d.get_event_name().get_text_len(), 0u);
  EXPECT_TRUE(d.get_text().get_textW().empty());
  EXPECT_EQ(d.get_text().get_text_len(), 0u);
}

TEST(DescriptorShortEvent, ReadsOnWhereItsLengthIsTooShort) {
  const Bytes bytes = descriptor_claiming(0x4D, 0, joined({text("eng"), counted("ab"), counted("cde")}));
  const DescriptorShortEvent d(bytes.data());
  EXPECT_EQ(d.get_descriptor_length(), 0);
  EXPECT_EQ(d.get_event_name().get_textA(), "ab");
  EXPECT_EQ(d.get_text().get_textA(), "cde");
}

TEST(DescriptorShortEvent, LosesTheLengthsOfItsTextsInALoad) {
  const auto d = loaded<DescriptorShortEvent>(saved_of<DescriptorShortEvent>(kShortEvent));
  EXPECT_EQ(d.get_event_name().get_textW(), "Caf\xE9"_w);
  EXPECT_EQ(d.get_event_name().get_text_len(), 0u);
  EXPECT_EQ(d.get_event_name().get_char_set(), 1);
}

TEST(DescriptorExtendedEvent, ReadsItsMembers) {
  const DescriptorExtendedEvent d(kExtendedEvent.data());
  EXPECT_EQ(d.get_descriptor_number(), 10);
  EXPECT_EQ(d.get_last_descriptor_number(), 11);
  EXPECT_STREQ(d.get_iso_639_language_code(), "eng");
  EXPECT_EQ(d.get_text().get_textA(), "A long story");
  ASSERT_EQ(d.get_items().size(), 2u);
  EXPECT_EQ(d.get_items()[0].get_item_description().get_textA(), "Director");
  EXPECT_EQ(d.get_items()[0].get_item().get_textA(), "J. Doe");
  EXPECT_EQ(d.get_items()[1].get_item_description().get_textA(), "Cast");
  EXPECT_EQ(d.get_items()[1].get_item().get_text_len(), 0u);
}

TEST(DescriptorExtendedEvent, RefusesAnItemThatOverrunsTheItems) {
  const Bytes items = joined({counted("a"), counted("b"), counted("cd"), counted("ef")});
  EXPECT_EQ(refusal<DescriptorExtendedEvent>(extended_event(items)), "nothing");
  for (const int cut : {1, 2, 3, 4, 5})
    EXPECT_EQ(refusal<DescriptorExtendedEvent>(extended_event(items, static_cast<int>(items.size()) - cut)),
              "-1: data length mismatch")
        << cut;
  // Without its second length an item has no fewer than two bytes.
  EXPECT_EQ(refusal<DescriptorExtendedEvent>(extended_event({0}, 1)), "-1: data length mismatch");
}

TEST(DescriptorExtendedEvent, ItemTellsTheBytesItUsed) {
  const Bytes bytes = joined({counted("abc"), counted("de"), text("more")});
  int len = 100;
  const DescriptorExtendedEvent::Item item(bytes.data(), len);
  EXPECT_EQ(len, 7);
  EXPECT_EQ(item.get_item_description().get_textA(), "abc");
  EXPECT_EQ(item.get_item().get_textA(), "de");
  len = 7;
  EXPECT_EQ(failure([&] { DescriptorExtendedEvent::Item(bytes.data(), len); }), "nothing");
  len = 6;
  EXPECT_EQ(failure([&] { DescriptorExtendedEvent::Item(bytes.data(), len); }), "-1: data length mismatch");
  EXPECT_EQ(len, 6);
}

TEST(DescriptorExtendedEvent, ReadsItsTextBehindTheItemsWhateverItsLength) {
  const Bytes whole = extended_event(joined({counted("a"), counted("b")}));
  const Bytes bytes = descriptor_claiming(0x4E, 1, Bytes(whole.begin() + 2, whole.end()));
  const DescriptorExtendedEvent d(bytes.data());
  EXPECT_EQ(d.get_items().size(), 1u);
  EXPECT_EQ(d.get_text().get_textA(), "A long story");
}

TEST(DescriptorExtendedEvent, StopsAtTheEndOfTheSectionAmongItsItems) {
  const Bytes whole = extended_event(joined({counted("a"), counted("b"), counted("c"), counted("d")}));
  const DescriptorExtendedEvent d(ByteView(whole.data(), 11));
  EXPECT_EQ(d.get_items().size(), 1u);
  EXPECT_TRUE(d.get_text().get_textA().empty());
}

TEST(DescriptorExtendedEvent, LosesItsTextInASave) {
  const auto d = loaded<DescriptorExtendedEvent>(saved_of<DescriptorExtendedEvent>(kExtendedEvent));
  EXPECT_EQ(d.get_items().size(), 2u);
  EXPECT_TRUE(d.get_text().get_textA().empty());
}

TEST(DescriptorTimeShiftedEvent, ReadsItsMembers) {
  const DescriptorTimeShiftedEvent d(kTimeShiftedEvent.data());
  EXPECT_EQ(d.get_reference_service_id(), 0xABCD);
  EXPECT_EQ(d.get_reference_event_id(), 0x12EF);
}

TEST(DescriptorComponent, ReadsItsMembers) {
  const DescriptorComponent d(kComponent.data());
  EXPECT_EQ(d.get_stream_content(), 2);
  EXPECT_EQ(d.get_component_type(), 0x40);
  EXPECT_EQ(d.get_component_tag(), 0xFE);
  EXPECT_STREQ(d.get_iso_639_language_code(), "ger");
  EXPECT_EQ(d.get_text().get_textA(), "ster");
}

TEST(DescriptorComponent, LeavesOutTheLastTwoBytesOfItsText) {
  const struct {
    const char* on_wire;
    const char* text;
    int length;
  } rows[] = {{"", "", -2}, {"a", "", -1}, {"ab", "", 0}, {"abc", "a", 1}, {"abcd", "ab", 2}};
  for (const auto& row : rows) {
    const DescriptorComponent d(component(row.on_wire).data());
    EXPECT_EQ(d.get_text().get_textA(), row.text);
    EXPECT_EQ(static_cast<int>(d.get_text().get_text_len()), row.length);
  }
}

TEST(DescriptorComponent, LosesItsTextInASave) {
  const auto d = loaded<DescriptorComponent>(saved_of<DescriptorComponent>(kComponent));
  EXPECT_EQ(d.get_component_tag(), 0xFE);
  EXPECT_TRUE(d.get_text().get_textA().empty());
}

TEST(DescriptorMultilingualComponent, ReadsItsMembers) {
  const DescriptorMultilingualComponent d(kMultilingualComponent.data());
  EXPECT_EQ(d.get_component_tag(), 0x2A);
  ASSERT_EQ(d.get_nameinfo().size(), 2u);
  EXPECT_STREQ(d.get_nameinfo()[0].get_iso_639_language_code(), "eng");
  EXPECT_EQ(d.get_nameinfo()[0].get_name().get_textA(), "sound");
  EXPECT_STREQ(d.get_nameinfo()[1].get_iso_639_language_code(), "deu");
  EXPECT_EQ(d.get_nameinfo()[1].get_name().get_textA(), "Ton");
}

TEST(DescriptorMultilingualComponent, RefusesABodyThatItsNamesDoNotFill) {
  const auto refusal_of = [](const Bytes& body) {
    return refusal<DescriptorMultilingualComponent>(descriptor(0x5E, body));
  };
  EXPECT_EQ(refusal_of({}), "2: ");
  EXPECT_EQ(refusal_of({1}), "nothing");
  EXPECT_EQ(refusal_of({1, 'e', 'n', 'g'}), "3: multilingual_name_info_descriptor");
  EXPECT_EQ(refusal_of({1, 'e', 'n', 'g', 0}), "nothing");
  EXPECT_EQ(refusal_of({1, 'e', 'n', 'g', 1}), "3: multilingual_name_info_descriptor:2");
  // The section ends before the body does.
  EXPECT_EQ(refusal<DescriptorMultilingualComponent>(descriptor_claiming(0x5E, 9, {1, 'e', 'n', 'g', 0})),
            "2: ");
}

TEST(DescriptorMultilingualComponent, LosesItsComponentTagInASave) {
  const auto d = loaded<DescriptorMultilingualComponent>(
      saved_of<DescriptorMultilingualComponent>(kMultilingualComponent));
  EXPECT_EQ(d.get_component_tag(), 0);
  EXPECT_EQ(d.get_nameinfo().size(), 2u);
}

TEST(EventDescriptors, NeedEachAttributeInALoad) {
  expect_each_attribute_needed<DescriptorShortEvent>(saved_of<DescriptorShortEvent>(kShortEvent));
  expect_each_attribute_needed<DescriptorExtendedEvent>(saved_of<DescriptorExtendedEvent>(kExtendedEvent));
  expect_each_attribute_needed<DescriptorTimeShiftedEvent>(
      saved_of<DescriptorTimeShiftedEvent>(kTimeShiftedEvent));
  expect_each_attribute_needed<DescriptorComponent>(saved_of<DescriptorComponent>(kComponent));
  expect_each_attribute_needed<DescriptorMultilingualComponent>(
      saved_of<DescriptorMultilingualComponent>(kMultilingualComponent));
}

TEST(EventDescriptors, NeedTheirListsInALoad) {
  expect_element_needed<DescriptorExtendedEvent>(kExtendedEvent, "items");
  expect_element_needed<DescriptorMultilingualComponent>(kMultilingualComponent, "nameinfo");
}

TEST(EventDescriptors, LoseTheirRowsAndKeepTheirFieldsInAReset) {
  EXPECT_EQ(saved_after_reset<DescriptorShortEvent>(kShortEvent),
            saved_of<DescriptorShortEvent>(kShortEvent));
  EXPECT_EQ(saved_after_reset<DescriptorTimeShiftedEvent>(kTimeShiftedEvent),
            saved_of<DescriptorTimeShiftedEvent>(kTimeShiftedEvent));

  DescriptorExtendedEvent extended(kExtendedEvent.data());
  extended.reset();
  EXPECT_TRUE(extended.get_items().empty());
  EXPECT_EQ(extended.get_descriptor_number(), 10);
  EXPECT_EQ(extended.get_text().get_textA(), "A long story");

  DescriptorComponent stereo(kComponent.data());
  stereo.reset();
  EXPECT_EQ(stereo.get_component_tag(), 0xFE);
  EXPECT_EQ(stereo.get_text().get_textA(), "ster");

  DescriptorMultilingualComponent names(kMultilingualComponent.data());
  names.reset();
  EXPECT_TRUE(names.get_nameinfo().empty());
  EXPECT_EQ(names.get_component_tag(), 0x2A);
}

TEST(EventDescriptors, StartEmpty) {
  EXPECT_EQ(saved(DescriptorShortEvent()),
            R"(<d descriptor_id="0" descriptor_length="0" language_code="" event_name="" text="" />)");
  EXPECT_EQ(saved(DescriptorExtendedEvent()),
            R"(<d descriptor_id="0" descriptor_length="0" descriptor_number="0" last_descriptor_number="0")"
            R"( language_code=""><items /></d>)");
  EXPECT_EQ(report(DescriptorMultilingualComponent()),
            "descriptor_tag: 00 multilingual_component_name_descriptor\n"
            "component_tag: 0\n");
}
