// Which vector of an ATSC loop a descriptor goes to, and what of a loop is saved and loaded.

#include "tests/support/bytes.h"
#include "tests/support/faces.h"

#include <map>

#include <quillon/atsc/atsc_classes.h>
#include <quillon/atsc/atsc_loop.h>

using namespace quillon;
using namespace quillon::test;

namespace {

struct Row {
  int tag;
  const char* element;
  size_t (*count)(const AtscLoop&);
  Bytes body;  // one that the class accepts
};

// In saving order.
const std::vector<Row>& rows() {
  using L = const AtscLoop&;
  const Bytes name = {0};
  static const std::vector<Row> all = {
      {0x02,
       "atsc_video_stream_descriptor",
       [](L l) { return l.get_atsc_video_stream_descriptors().size(); },
       {}},
      {0x03,
       "atsc_audio_stream_descriptor",
       [](L l) { return l.get_atsc_audio_stream_descriptors().size(); },
       {}},
      {0x04, "atsc_hierarchy_descriptor", [](L l) { return l.get_atsc_hierarchy_descriptors().size(); }, {}},
      {0x05,
       "atsc_registration_descriptor",
       [](L l) { return l.get_atsc_registration_descriptors().size(); },
       {}},
      {0x06,
       "atsc_data_stream_alignment_descriptor",
       [](L l) { return l.get_atsc_data_stream_alignment_descriptors().size(); },
       {}},
      {0x07,
       "atsc_target_background_grid_descriptor",
       [](L l) { return l.get_atsc_target_background_grid_descriptors().size(); },
       {}},
      {0x08,
       "atsc_video_window_descriptor",
       [](L l) { return l.get_atsc_video_window_descriptors().size(); },
       {}},
      {0x09, "atsc_CA_descriptor", [](L l) { return l.get_atsc_CA_descriptors().size(); }, {}},
      {0x0A,
       "atsc_ISO_639_language_descriptor",
       [](L l) { return l.get_atsc_ISO_639_language_descriptors().size(); },
       {}},
      {0x0B,
       "atsc_system_clock_descriptor",
       [](L l) { return l.get_atsc_system_clock_descriptors().size(); },
       {}},
      {0x0C,
       "atsc_multiplex_buffer_utilization_descriptor",
       [](L l) { return l.get_atsc_multiplex_buffer_utilization_descriptors().size(); },
       {}},
      {0x0D, "atsc_copyright_descriptor", [](L l) { return l.get_atsc_copyright_descriptors().size(); }, {}},
      {0x0E,
       "atsc_maximum_bitrate_descriptor",
       [](L l) { return l.get_atsc_maximum_bitrate_descriptors().size(); },
       {}},
      {0x0F,
       "atsc_private_data_indicator_descriptor",
       [](L l) { return l.get_atsc_private_data_indicator_descriptors().size(); },
       {}},
      {0x10,
       "atsc_smoothing_buffer_descriptor",
       [](L l) { return l.get_atsc_smoothing_buffer_descriptors().size(); },
       {}},
      {0x11, "atsc_STD_descriptor", [](L l) { return l.get_atsc_STD_descriptors().size(); }, {}},
      {0x12, "atsc_IBP_descriptor", [](L l) { return l.get_atsc_IBP_descriptors().size(); }, {}},
      {0x13,
       "atsc_carousel_id_descriptor",
       [](L l) { return l.get_atsc_carousel_id_descriptors().size(); },
       {}},
      {0x14,
       "atsc_association_tag_descriptor",
       [](L l) { return l.get_atsc_association_tag_descriptors().size(); },
       {0, 0, 0, 1, 0}},
      {0x80, "atsc_stuffing_descriptor", [](L l) { return l.get_atsc_stuffing_descriptor().size(); }, {}},
      {0x81, "atsc_AC3_audio_descriptor", [](L l) { return l.get_atsc_AC3_audio_descriptor().size(); },
       Bytes(12)},
      {0x86,
       "atsc_caption_service_descriptor",
       [](L l) { return l.get_atsc_caption_service_descriptor().size(); },
       {0}},
      {0x87,
       "atsc_content_advisory_descriptor",
       [](L l) { return l.get_atsc_content_advisory_descriptor().size(); },
       {0}},
      {0xA0, "atsc_extended_channel_name_descriptor",
       [](L l) { return l.get_atsc_extended_channel_name_descriptor().size(); }, name},
      {0xA1,
       "atsc_service_location_descriptor",
       [](L l) { return l.get_atsc_service_location_descriptor().size(); },
       {0, 0, 0}},
      {0xA2,
       "atsc_time_shifted_service_descriptor",
       [](L l) { return l.get_atsc_time_shifted_service_descriptor().size(); },
       {0}},
      {0xA3, "atsc_component_name_descriptor",
       [](L l) { return l.get_atsc_component_name_descriptor().size(); }, name},
      {0xA8,
       "atsc_DCC_departing_request_descriptor",
       [](L l) { return l.get_atsc_DCC_departing_request_descriptor().size(); },
       {0, 1, 0}},
      {0xA9,
       "atsc_DCC_arriving_request_descriptor",
       [](L l) { return l.get_atsc_DCC_arriving_request_descriptor().size(); },
       {0, 1, 0}},
      {0xAA,
       "atsc_redistribution_control_descriptor",
       [](L l) { return l.get_atsc_redistribution_control_descriptor().size(); },
       {}},
      {0xAD,
       "atsc_ATSC_private_information_descriptor",
       [](L l) { return l.get_atsc_ATSC_private_information_descriptor().size(); },
       {}},
      {0xB6,
       "atsc_content_identifier_descriptor",
       [](L l) { return l.get_atsc_content_identifier_descriptor().size(); },
       {}},
      {0xAB, "atsc_genre_descriptor", [](L l) { return l.get_atsc_genre_descriptor().size(); }, {0}},
  };
  return all;
}

class Loop : public AtscLoop {
 public:
  void parse(const Bytes& bytes) { ParseDescriptor(view(bytes)); }
  bool parse_all(const Bytes& bytes, bool keep_raw) {
    const ByteView view = test::view(bytes);
    return parse_descriptors(view, 0, static_cast<int>(bytes.size()), {view, keep_raw});
  }
};

// How many descriptors of classes a loop holds.
size_t typed(const AtscLoop& loop) {
  size_t out = 0;
  for (const Row& row : rows()) out += row.count(loop);
  return out;
}

// One descriptor of each class, the last class first.
Loop full_loop() {
  Loop loop;
  for (auto row = rows().rbegin(); row != rows().rend(); ++row) loop.parse(descriptor(row->tag, row->body));
  return loop;
}

Loop loaded_loop(const std::string& descriptors) {
  const auto document = xml::Document::from_text("<d>" + descriptors + "</d>");
  Loop loop;
  EXPECT_TRUE(loop._parse_descriptors(document.root()));
  return loop;
}

struct Broken {
  int tag;
  const char* what;
  Bytes body;
};

}  // namespace

TEST(AtscLoop, SendsEachTagToItsVector) {
  std::map<int, const Row*> row_of;
  for (const Row& row : rows()) row_of[row.tag] = &row;
  ASSERT_EQ(row_of.size(), 33u);
  for (int tag = 0; tag < 256; ++tag) {
    const auto found = row_of.find(tag);
    const bool has_class = found != row_of.end();
    Loop loop;
    loop.parse(descriptor(tag, has_class ? found->second->body : Bytes{1, 2}));
    EXPECT_EQ(typed(loop), has_class ? 1u : 0u) << tag;
    EXPECT_EQ(has_class ? found->second->count(loop) : 1u, 1u) << tag;
    EXPECT_EQ(loop.get_general_descriptors().size(), !has_class && tag < 128 ? 1u : 0u) << tag;
    EXPECT_EQ(loop.get_user_private_descriptors().size(), !has_class && tag >= 128 ? 1u : 0u) << tag;
  }
}

TEST(AtscLoop, HasNoClassForTagsOfOtherFamilies) {
  Loop loop;
  loop.parse(descriptor(0x48, {1, 2, 3}));
  loop.parse(descriptor(0xA4, {4, 5}));
  ASSERT_EQ(loop.get_general_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_general_descriptors()[0].get_descriptor_tag(), 0x48);
  EXPECT_EQ(loop.get_general_descriptors()[0].get_private_data(), (Bytes{1, 2, 3}));
  ASSERT_EQ(loop.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_user_private_descriptors()[0].get_descriptor_tag(), 0xA4);
  EXPECT_EQ(loop.get_user_private_descriptors()[0].get_private_data(), (Bytes{4, 5}));
}

TEST(AtscLoop, KeepsADescriptorThatItsClassRefusesAmongTheGeneralOnes) {
  const std::vector<Broken> all = {
      {0x0A, "length no multiple of four", Bytes(5)},
      {0x14, "selector of the wrong length", {0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0}},
      {0x81, "too short", Bytes(6)},
      {0x81, "wide text of odd length", {0, 0, 4, 0, 0, 2, 0, 0}},
      {0x81, "fields beyond it", {0, 0, 4, 0, 0, 0x41, 0, 0}},
      {0x86, "count", {1}},
      {0x86, "rest", {0, 1, 2, 3}},
      {0x87, "no region", {0, 1}},
      {0x87, "text of a region", {1, 1, 0, 0}},
      {0xA0, "text", {0, 0}},
      {0xA1, "count", {0, 0, 1}},
      {0xA1, "rest", {0, 0, 0, 9}},
      {0xA2, "count", {0xE1, 0, 0, 0, 0, 0}},
      {0xA2, "rest", {0, 9}},
      {0xA3, "text", {0, 0}},
      {0xA8, "text", {0, 2, 0, 0}},
      {0xA9, "text", {0, 2, 0, 0}},
  };
  for (const Broken& broken : all) {
    SCOPED_TRACE(std::to_string(broken.tag) + ": " + broken.what);
    Loop loop;
    loop.parse(descriptor(broken.tag, broken.body));
    EXPECT_EQ(typed(loop), 0u);
    EXPECT_TRUE(loop.get_user_private_descriptors().empty());
    ASSERT_EQ(loop.get_general_descriptors().size(), 1u);
    const DescriptorGeneral& kept = loop.get_general_descriptors()[0];
    EXPECT_EQ(kept.get_descriptor_tag(), broken.tag);
    EXPECT_EQ(kept.get_descriptor_length(), static_cast<int>(broken.body.size()));
    EXPECT_EQ(kept.get_private_data(), broken.body);
  }
}

TEST(AtscLoop, WalksOnBehindARefusedDescriptor) {
  Loop loop;
  EXPECT_TRUE(loop.parse_all(joined({descriptor(0x86, {0}),   // at 0
                                     descriptor(0x86, {1}),   // at 3, refused
                                     descriptor(0x02, {7}),   // at 6
                                     descriptor(0x86, {0}),   // at 9
                                     descriptor(0xFF, {})}),  // at 12
                             true));
  EXPECT_EQ(loop.get_descriptor_pos(), (std::vector<int>{0, 3, 6, 9, 12}));
  EXPECT_EQ(loop.get_atsc_caption_service_descriptor().size(), 2u);
  EXPECT_EQ(loop.get_atsc_video_stream_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_general_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_user_private_descriptors().size(), 1u);
}

TEST(AtscLoop, TellsATolerantTableOfRefusedDescriptorsToo) {
  struct Tolerant : AtscLoop {
    DescriptorFailures failures;
    explicit Tolerant(const Bytes& bytes) {
      const ByteView view = test::view(bytes);
      parse_descriptors(view, 0, static_cast<int>(bytes.size()), {view, false, &failures});
    }
  };
  const Tolerant loop(joined({descriptor(0x80, {1}), descriptor(0x81, {1})}));
  ASSERT_EQ(loop.failures.size(), 1u);
  EXPECT_EQ(loop.failures[0].tag, 0x81);
  EXPECT_EQ(loop.failures[0].offset, 3);
  EXPECT_EQ(loop.failures[0].text, "DescriptorAtscAC3Audio: descriptor_length too small");
  EXPECT_EQ(loop.failures[0].code, -1);
}

TEST(AtscLoop, SavesTheClassesInTheirOrder) {
  std::vector<std::string> expected;
  for (const Row& row : rows()) expected.push_back(row.element);
  EXPECT_EQ(saved_names(full_loop()), expected);
}

TEST(AtscLoop, DoesNotSaveDescriptorsWithoutAClass) {
  Loop loop;
  loop.parse(descriptor(0x48, {}));
  loop.parse(descriptor(0xA4, {}));
  loop.parse(descriptor(0x80, {}));
  EXPECT_EQ(saved_names(loop), std::vector<std::string>{"atsc_stuffing_descriptor"});
  EXPECT_TRUE(saved_names(Loop()).empty());
}

TEST(AtscLoop, LoadsWhatItSavedButForTheCarouselId) {
  xml::Document document;
  void* const root = document.create_root("d");
  full_loop()._save_descriptors(document.dom(), root);
  Loop loop;
  loop._parse_descriptors(root);
  for (const Row& row : rows()) EXPECT_EQ(row.count(loop), row.tag == 0x13 ? 0u : 1u) << row.element;
}

TEST(AtscLoop, LoadsNamesThatNoSaveWrites) {
  const Loop loop = loaded_loop(
      "<descriptors>"
      R"(<user_private_descriptor descriptor_id="164" descriptor_length="1" private_data="0a"/>)"
      R"(<general_descriptor descriptor_id="72" descriptor_length="2" private_data="0102"/>)"
      R"(<atsc_carousel_id_descriptors descriptor_id="19" descriptor_length="5" carousel_id="9" formatid="0")"
      R"( moduleversion="0" moduleid="0" blocksize="0" modulesize="0" compressionmethod="0" originalsize="0")"
      R"( timeout="0" objectkeylength="0" objectkeydata="" private_data_byte=""/>)"
      "</descriptors>");
  ASSERT_EQ(loop.get_general_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_general_descriptors()[0].get_private_data(), (Bytes{1, 2}));
  ASSERT_EQ(loop.get_user_private_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_user_private_descriptors()[0].get_private_data(), Bytes{10});
  ASSERT_EQ(loop.get_atsc_carousel_id_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_atsc_carousel_id_descriptors()[0].get_carousel_id(), 9u);
  EXPECT_EQ(saved_names(loop), std::vector<std::string>{"atsc_carousel_id_descriptor"});
}

TEST(AtscLoop, PassesOverOtherNames) {
  const Loop loop = loaded_loop(
      R"(<descriptors><video_stream_descriptor/><atsc_stuffing_descriptors/><atsc_GENRE_descriptor/>)"
      R"(<atsc_genre_descriptor descriptor_id="1" descriptor_length="2"/></descriptors>)");
  EXPECT_EQ(typed(loop), 1u);
  ASSERT_EQ(loop.get_atsc_genre_descriptor().size(), 1u);
  EXPECT_EQ(loop.get_atsc_genre_descriptor()[0].get_descriptor_tag(), 1);
  EXPECT_TRUE(loop.get_general_descriptors().empty());
}

TEST(AtscLoop, IsEmptyWithoutADescriptorsElement) {
  EXPECT_EQ(typed(loaded_loop("")), 0u);
  EXPECT_EQ(failure([] { loaded_loop("<descriptors><atsc_genre_descriptor/></descriptors>"); }),
            "-1: failed to get descriptor_id");
}
