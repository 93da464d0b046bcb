// Which vector of a DVB loop a descriptor goes to, and what of a loop is saved and loaded.

#include "tests/descriptors/dvb_loops.h"

#include <algorithm>
#include <functional>
#include <map>

using namespace quillon;
using namespace quillon::test;

namespace {

struct Row {
  int tag;
  const char* element;
  // The lengths of the descriptors of the class, in the order of its vector.
  std::function<std::vector<int>(const DvbLoop&)> lengths;
  Bytes body;  // one that the class accepts
};

template <class T>
Row row(int tag, const char* element, const std::vector<T>& (DvbLoop::*get)() const, Bytes body = {}) {
  const auto lengths = [get](const DvbLoop& loop) {
    std::vector<int> out;
    for (const T& d : (loop.*get)()) out.push_back(d.get_descriptor_length());
    return out;
  };
  return {tag, element, lengths, std::move(body)};
}

// In saving order; the last two have no tag of their own.
const std::vector<Row>& rows() {
  static const std::vector<Row> all = {
      row<DescriptorVideoStream>(0x02, "video_stream_descriptor", &DvbLoop::get_video_stream_descriptors,
                                 Bytes(3)),
      row<DescriptorAudioStream>(0x03, "audio_stream_descriptor", &DvbLoop::get_audio_stream_descriptors,
                                 Bytes(1)),
      row<DescriptorHierarchy>(0x04, "hierarchy_descriptor", &DvbLoop::get_hierarchy_descriptors, Bytes(4)),
      row<DescriptorRegistration>(0x05, "registration_descriptor", &DvbLoop::get_registration_descriptors,
                                  Bytes(4)),
      row<DescriptorDataStreamAlignment>(0x06, "data_stream_alignment_descriptor",
                                         &DvbLoop::get_data_stream_alignment_descriptors, Bytes(1)),
      row<DescriptorTargetBackgroundGrid>(0x07, "target_background_grid_descriptor",
                                          &DvbLoop::get_target_background_grid_descriptors, Bytes(4)),
      row<DescriptorVideoWindow>(0x08, "video_window_descriptor", &DvbLoop::get_video_window_descriptors,
                                 Bytes(4)),
      row<DescriptorCa>(0x09, "CA_descriptor", &DvbLoop::get_CA_descriptors, Bytes(4)),
      row<DescriptorISO639Language>(0x0A, "ISO_639_language_descriptor",
                                    &DvbLoop::get_ISO_639_language_descriptors, Bytes(4)),
      row<DescriptorSystemClock>(0x0B, "system_clock_descriptor", &DvbLoop::get_system_clock_descriptors,
                                 Bytes(2)),
      row<DescriptorMultiplexBufferUtilization>(0x0C, "multiplex_buffer_utilization_descriptor",
                                                &DvbLoop::get_multiplex_buffer_utilization_descriptors,
                                                Bytes(4)),
      row<DescriptorCopyright>(0x0D, "copyright_descriptor", &DvbLoop::get_copyright_descriptors, Bytes(4)),
      row<DescriptorMaximumBitrate>(0x0E, "maximum_bitrate_descriptor",
                                    &DvbLoop::get_maximum_bitrate_descriptors, Bytes(3)),
      row<DescriptorPrivateDataIndicator>(0x0F, "private_data_indicator_descriptor",
                                          &DvbLoop::get_private_data_indicator_descriptors, Bytes(4)),
      row<DescriptorSmoothingBuffer>(0x10, "smoothing_buffer_descriptor",
                                     &DvbLoop::get_smoothing_buffer_descriptors, Bytes(6)),
      row<DescriptorSTD>(0x11, "STD_descriptor", &DvbLoop::get_STD_descriptors, Bytes(1)),
      row<DescriptorIBP>(0x12, "IBP_descriptor", &DvbLoop::get_IBP_descriptors, Bytes(2)),
      row<DescriptorCarouselId>(0x13, "carousel_id_descriptor", &DvbLoop::get_carousel_id_descriptors,
                                Bytes(5)),
      row<DescriptorAssociationTag>(0x14, "association_tag_descriptor",
                                    &DvbLoop::get_association_tag_descriptors, {0, 0, 0, 1, 0}),
      row<DescriptorNetworkName>(0x40, "network_name_descriptor", &DvbLoop::get_network_name_descriptors,
                                 Bytes(1)),
      row<DescriptorServiceList>(0x41, "service_list_descriptor", &DvbLoop::get_service_list_descriptors,
                                 Bytes(3)),
      row<DescriptorBouquetName>(0x47, "bouquet_descriptor", &DvbLoop::get_bouquet_name_descriptors,
                                 Bytes(1)),
      row<DescriptorService>(0x48, "service_descriptor", &DvbLoop::get_service_descriptors, Bytes(3)),
      row<DescriptorStuffing>(0x42, "stuffing_descriptor", &DvbLoop::get_stuffing_descriptors, Bytes(1)),
      row<DescriptorSatelliteDeliverySystem>(0x43, "satellite_delivery_system_descriptor",
                                             &DvbLoop::get_satellite_delivery_system_descriptors, Bytes(11)),
      row<DescriptorCableDeliverySystem>(0x44, "cable_delivery_system_descriptor",
                                         &DvbLoop::get_cable_delivery_system_descriptors, Bytes(11)),
      row<DescriptorCountryAvailability>(0x49, "country_availability_descriptor",
                                         &DvbLoop::get_country_availability_descriptors, Bytes(1)),
      row<DescriptorLinkage>(0x4A, "linkage_descriptor", &DvbLoop::get_linkage_descriptors, Bytes(7)),
      row<DescriptorNVODReference>(0x4B, "NVOD_reference_descriptor",
                                   &DvbLoop::get_nvod_reference_descriptors, Bytes(6)),
      row<DescriptorTimeShiftedService>(0x4C, "time_shifted_service_descriptor",
                                        &DvbLoop::get_time_shifted_service_descriptors, Bytes(2)),
      row<DescriptorMosiac>(0x51, "mosiac_descriptor", &DvbLoop::get_mosiac_descriptors, Bytes(1)),
      row<DescriptorStreamIdentifier>(0x52, "stream_identifier_descriptor",
                                      &DvbLoop::get_stream_identifier_descriptors, Bytes(1)),
      row<DescriptorParentalRating>(0x55, "parental_rating_descriptor",
                                    &DvbLoop::get_parental_rating_descriptors, Bytes(4)),
      row<DescriptorTelephone>(0x57, "telephone_descriptor", &DvbLoop::get_telephone_descriptors, Bytes(3)),
      row<DescriptorSubtitling>(0x59, "subtitling_descriptor", &DvbLoop::get_subtitling_descriptors,
                                Bytes(8)),
      row<DescriptorTerrestrialDeliverySystem>(0x5A, "terrestrial_delivery_system_descriptor",
                                               &DvbLoop::get_terrestrial_delivery_system_descriptors,
                                               Bytes(11)),
      row<DescriptorMultilingualNetworkName>(0x5B, "multilingual_network_name_descriptor",
                                             &DvbLoop::get_multilingual_network_name_descriptors, Bytes(4)),
      row<DescriptorMultilingualBouquetName>(0x5C, "multilingual_bouquet_name_descriptor",
                                             &DvbLoop::get_multilingual_bouquet_name_descriptors, Bytes(4)),
      row<DescriptorMultilingualServiceName>(0x5D, "multilingual_service_name_descriptor",
                                             &DvbLoop::get_multilingual_service_name_descriptors, Bytes(5)),
      row<DescriptorMultilingualComponent>(0x5E, "multilingual_component_descriptor",
                                           &DvbLoop::get_multilingual_component_descriptors, Bytes(1)),
      row<DescriptorPrivateDataSpecifier>(0x5F, "private_data_specifier_descriptor",
                                          &DvbLoop::get_private_data_specifier_descriptors, Bytes(4)),
      row<DescriptorServiceMove>(0x60, "service_move_descriptor", &DvbLoop::get_service_move_descriptors,
                                 Bytes(6)),
      row<DescriptorShortSmoothingBuffer>(0x61, "short_smoothing_buffer_descriptor",
                                          &DvbLoop::get_short_smoothing_buffer_descriptors, Bytes(1)),
      row<DescriptorVBIData>(0x45, "VBI_data_descriptor", &DvbLoop::get_VBI_data_descriptors, Bytes(2)),
      row<DescriptorVBITeletext>(0x46, "VBI_teletext_descriptor", &DvbLoop::get_VBI_teletext_descriptors,
                                 Bytes(5)),
      row<DescriptorFrequencyList>(0x62, "frequency_list_descriptor",
                                   &DvbLoop::get_frequency_list_descriptors, Bytes(1)),
      row<DescriptorPartialTransportStream>(0x63, "partial_transport_stream_descriptor",
                                            &DvbLoop::get_partial_transport_stream_descriptors, Bytes(8)),
      row<DescriptorDataBroadcast>(0x64, "data_broadcast_descriptor",
                                   &DvbLoop::get_data_broadcast_descriptors, Bytes(8)),
      row<DescriptorDataBroadcastId>(0x66, "data_broadcast_id_descriptor",
                                     &DvbLoop::get_data_broadcast_id_descriptors, Bytes(2)),
      row<DescriptorTransportStream>(0x67, "transport_stream_descriptor",
                                     &DvbLoop::get_transport_stream_descriptors, Bytes(1)),
      row<DescriptorDSNG>(0x68, "DSNG_descriptor", &DvbLoop::get_DSNG_descriptors, Bytes(1)),
      row<DescriptorPDC>(0x69, "PDC_descriptor", &DvbLoop::get_PDC_descriptors, Bytes(3)),
      row<DescriptorAC3>(0x6A, "AC3_descriptor", &DvbLoop::get_AC3_descriptors, Bytes(1)),
      row<DescriptorAncillaryData>(0x6B, "ancillary_data_descriptor",
                                   &DvbLoop::get_ancillary_data_descriptors, Bytes(1)),
      row<DescriptorCellList>(0x6C, "cell_list_descriptor", &DvbLoop::get_cell_list_descriptors, Bytes(10)),
      row<DescriptorCellFrequncyLink>(0x6D, "cell_frequency_link_descriptor",
                                      &DvbLoop::get_cell_frequency_link_descriptors, Bytes(7)),
      row<DescriptorAnnouncementSupport>(0x6E, "announcement_support_descriptor",
                                         &DvbLoop::get_announcement_support_descriptors, Bytes(2)),
      row<DescriptorApplicationSignalling>(0x6F, "application_signalling_descriptor",
                                           &DvbLoop::get_application_signalling_descriptors, Bytes(3)),
      row<DescriptorAdaptationFieldData>(0x70, "adaptation_field_data_descriptor",
                                         &DvbLoop::get_adaptation_field_data_descriptors, Bytes(1)),
      row<DescriptorServiceIdentifier>(0x71, "service_identifier_descriptor",
                                       &DvbLoop::get_service_identifier_descriptors, Bytes(1)),
      row<DescriptorServiceAvailability>(0x72, "service_availability_descriptor",
                                         &DvbLoop::get_service_availability_descriptors, Bytes(1)),
      row<DescriptorCAIdentifier>(0x53, "CA_identifier_descriptor", &DvbLoop::get_CA_identifiers_descriptors,
                                  Bytes(2)),
      row<DescriptorContent>(0x54, "content_descriptor", &DvbLoop::get_content_descriptors, Bytes(2)),
      row<DescriptorShortEvent>(0x4D, "short_event_descriptor", &DvbLoop::get_short_event_descriptors,
                                Bytes(5)),
      row<DescriptorExtendedEvent>(0x4E, "extended_event_descriptor",
                                   &DvbLoop::get_extended_event_descriptors, Bytes(6)),
      row<DescriptorTimeShiftedEvent>(0x4F, "time_shifted_event_descriptor",
                                      &DvbLoop::get_time_shifted_event_descriptors, Bytes(4)),
      row<DescriptorComponent>(0x50, "component_descriptor", &DvbLoop::get_component_descriptors, Bytes(6)),
      row<DescriptorLocalTimeOffset>(0x58, "local_time_offset_descriptor",
                                     &DvbLoop::get_local_time_offset_descriptors, Bytes(13)),
      row<DescriptorTeletext>(0x56, "teletext_descriptor", &DvbLoop::get_teletext_descriptors, Bytes(5)),
      row<DescriptorDefaultAuthority>(0x73, "default_authority_descriptor",
                                      &DvbLoop::get_default_authority_descriptors, Bytes(1)),
      row<DescriptorRelatedContent>(0x74, "related_content_descriptor",
                                    &DvbLoop::get_related_content_descriptors, Bytes(1)),
      row<DescriptorTVAId>(0x75, "TVA_id_descriptor", &DvbLoop::get_TVA_id_descriptors, Bytes(3)),
      row<DescriptorContentIdentifier>(0x76, "content_identifier_descriptor",
                                       &DvbLoop::get_content_identifier_descriptors, Bytes(2)),
      row<DescriptorTimeSliceFecIdentifier>(0x77, "time_slice_fec_identifier_descriptor",
                                            &DvbLoop::get_time_slice_fec_identifier_descriptors, Bytes(3)),
      row<DescriptorECMRepetitionRate>(0x78, "ECM_repetition_rate_descriptor",
                                       &DvbLoop::get_ECM_repetition_rate_descriptors, Bytes(4)),
      row<DescriptorS2SatelliteDeliverySystem>(0x79, "S2_satellite_delivery_system_descriptor",
                                               &DvbLoop::get_S2_satellite_delivery_system_descriptors,
                                               Bytes(1)),
      row<DescriptorEnhancedAC3>(0x7A, "enhanced_AC_3_descriptor", &DvbLoop::get_enhanced_AC_3_descriptors,
                                 Bytes(1)),
      row<DescriptorDTS>(0x7B, "DTS_descriptor", &DvbLoop::get_DTS_descriptors, Bytes(5)),
      row<DescriptorAAC>(0x7C, "AAC_descriptor", &DvbLoop::get_AAC_descriptors, Bytes(1)),
      row<DescriptorGeneral>(-1, "user_private_descriptor", &DvbLoop::get_user_private_descriptors),
      row<DescriptorGeneral>(-1, "general_descriptor", &DvbLoop::get_general_descriptors),
  };
  return all;
}
const Row& row_of(const std::string& element) {
  return *std::find_if(rows().begin(), rows().end(), [&](const Row& r) { return r.element == element; });
}

// How many descriptors a loop holds.
size_t size_of(const DvbLoop& loop) {
  size_t out = 0;
  for (const Row& r : rows()) out += r.lengths(loop).size();
  return out;
}

// One descriptor of each kind, the last kind first.
Bytes one_of_each_kind() {
  Bytes out = joined({descriptor(0x00, {1}), descriptor(0xFF, {1, 2})});
  for (auto r = rows().rbegin(); r != rows().rend(); ++r)
    if (r->tag >= 0) out = joined({out, descriptor(r->tag, r->body)});
  return out;
}

DvbLoop loaded_loop(const std::string& descriptors) {
  const auto document = xml::Document::from_text("<d>" + descriptors + "</d>");
  DvbLoop loop;
  EXPECT_TRUE(loop._parse_descriptors(document.root()));
  return loop;
}

std::string general(const char* element, int id, int length) {
  return "<" + std::string(element) + " descriptor_id=\"" + std::to_string(id) + "\" descriptor_length=\"" +
         std::to_string(length) + "\" private_data=\"\"/>";
}

}  // namespace

TEST(DvbLoop, SendsEachTagToItsVector) {
  std::map<int, const Row*> row_of_tag;
  for (const Row& r : rows())
    if (r.tag >= 0) row_of_tag[r.tag] = &r;
  ASSERT_EQ(row_of_tag.size(), 79u);
  for (int tag = 0; tag < 256; ++tag) {
    const auto found = row_of_tag.find(tag);
    const Row& r = found != row_of_tag.end() ? *found->second
                   : tag < 128               ? row_of("general_descriptor")
                                             : row_of("user_private_descriptor");
    const DvbLoop loop = loop_of(descriptor(tag, r.body));
    EXPECT_EQ(size_of(loop), 1u) << tag;
    EXPECT_EQ(r.lengths(loop), std::vector<int>{static_cast<int>(r.body.size())}) << tag;
  }
}

TEST(DvbLoop, HasNoClassForSomeTags) {
  std::vector<int> classless;
  for (int tag = 0; tag < 256; ++tag)
    if (std::none_of(rows().begin(), rows().end(), [tag](const Row& r) { return r.tag == tag; }))
      classless.push_back(tag);
  std::vector<int> expected = {0x00, 0x01};
  for (int tag = 0x15; tag <= 0x3F; ++tag) expected.push_back(tag);
  expected.push_back(0x65);
  for (int tag = 0x7D; tag <= 0xFF; ++tag) expected.push_back(tag);
  EXPECT_EQ(classless, expected);
}

TEST(DvbLoop, KeepsADescriptorWithoutAClassAsBytes) {
  const DvbLoop loop = loop_of(joined({descriptor(0x65, {1}), descriptor(0x7F, {2, 3}), descriptor(0x80, {4}),
                                       descriptor(0xFF, {}), descriptor(0x00, {})}));
  ASSERT_EQ(loop.get_general_descriptors().size(), 3u);
  EXPECT_EQ(loop.get_general_descriptors()[0].get_descriptor_tag(), 0x65);
  EXPECT_EQ(loop.get_general_descriptors()[0].get_private_data(), Bytes{1});
  EXPECT_EQ(loop.get_general_descriptors()[1].get_descriptor_tag(), 0x7F);
  EXPECT_EQ(loop.get_general_descriptors()[1].get_private_data(), (Bytes{2, 3}));
  EXPECT_EQ(loop.get_general_descriptors()[2].get_descriptor_tag(), 0x00);
  ASSERT_EQ(loop.get_user_private_descriptors().size(), 2u);
  EXPECT_EQ(loop.get_user_private_descriptors()[0].get_private_data(), Bytes{4});
  EXPECT_EQ(loop.get_user_private_descriptors()[1].get_descriptor_tag(), 0xFF);
}

TEST(DvbLoop, InterpretsNoDescriptorByAPrivateDataSpecifier) {
  const Bytes mine = descriptor(0x83, {1, 2, 3});
  const DvbLoop loop =
      loop_of(joined({mine, descriptor(0x5F, {0, 0, 0, 40}), mine, descriptor(0x48, {1, 0, 0})}));
  EXPECT_EQ(loop.get_private_data_specifier_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_user_private_descriptors().size(), 2u);
  EXPECT_EQ(loop.get_service_descriptors().size(), 1u);
}

TEST(DvbLoop, TakesEveryTagInEveryTable) {
  std::vector<std::string> expected;
  for (const Row& r : rows()) expected.push_back(r.element);
  ASSERT_EQ(expected.size(), 81u);
  for (const Owner& o : owners()) {
    SCOPED_TRACE(o.name);
    const DvbLoop loop = o.loop(o.section(one_of_each_kind()), nullptr);
    for (const Row& r : rows()) EXPECT_EQ(r.lengths(loop).size(), 1u) << r.element;
    EXPECT_EQ(saved_names(loop), expected);
  }
}

TEST(DvbLoop, KeepsTheOrderWithinAKindAndNotBetweenThem) {
  const DvbLoop loop =
      loop_of(joined({descriptor(0x80, Bytes(3)), descriptor(0x42, Bytes(2)), descriptor(0x01, Bytes(9)),
                      descriptor(0x42, Bytes(4)), descriptor(0x02, {}), descriptor(0x80, Bytes(1)),
                      descriptor(0x42, {}), descriptor(0x47, {}), descriptor(0x20, Bytes(7))}));
  EXPECT_EQ(row_of("stuffing_descriptor").lengths(loop), (std::vector<int>{2, 4, 0}));
  EXPECT_EQ(row_of("user_private_descriptor").lengths(loop), (std::vector<int>{3, 1}));
  EXPECT_EQ(row_of("general_descriptor").lengths(loop), (std::vector<int>{9, 7}));
  EXPECT_EQ(saved_names(loop), (std::vector<std::string>{
                                   "video_stream_descriptor", "bouquet_descriptor", "stuffing_descriptor",
                                   "stuffing_descriptor", "stuffing_descriptor", "user_private_descriptor",
                                   "user_private_descriptor", "general_descriptor", "general_descriptor"}));
}

TEST(DvbLoop, HasOnePositionADescriptorInWireOrder) {
  const Bytes descriptors =
      joined({descriptor(0x48, {1, 0, 0}), descriptor(0x80, {}), descriptor(0x53, {0, 1}),
              descriptor(0x7E, {1}), descriptor(0x48, {2, 0, 0})});
  for (const Owner& o : owners()) {
    SCOPED_TRACE(o.name);
    const Bytes section = o.section(descriptors);
    std::vector<int> expected;
    for (const int offset : {0, 5, 7, 11, 14}) expected.push_back(o.place + offset);
    const std::vector<int> positions = o.positions(section);
    if (positions.empty()) {
      EXPECT_STREQ(o.name, "Bat");  // shows none of its own loop
      continue;
    }
    EXPECT_EQ(positions, expected);
    EXPECT_EQ(section[o.body + static_cast<size_t>(positions[2])], 0x53);
    const DvbLoop loop = o.loop(section, nullptr);
    EXPECT_EQ(loop.get_service_descriptors().size(), 2u);
    EXPECT_EQ(loop.get_CA_identifiers_descriptors().size(), 1u);
  }
}

TEST(DvbLoop, IsAValue) {
  const DvbLoop first = loop_of(one_of_each_kind());
  DvbLoop copy = first;
  EXPECT_EQ(saved_names(copy), saved_names(first));
  copy = loop_of(descriptor(0x42, {1, 2}));
  EXPECT_EQ(size_of(copy), 1u);
  EXPECT_EQ(size_of(first), 81u);
  DvbLoop moved = std::move(copy);
  EXPECT_EQ(row_of("stuffing_descriptor").lengths(moved), std::vector<int>{2});
  moved = first;
  const DvbLoop& itself = moved;
  moved = itself;
  EXPECT_EQ(saved_names(moved), saved_names(first));

  std::vector<DvbLoop> many(3, first);
  many.erase(many.begin());
  many.push_back(loop_of({}));
  EXPECT_EQ(size_of(many[1]), 81u);
  EXPECT_EQ(size_of(many[2]), 0u);
}

TEST(DvbLoop, GivesOneEmptyVectorForAnAbsentClass) {
  Nit table;
  const auto& absent = table.get_stuffing_descriptors();
  EXPECT_EQ(&absent, &DvbLoop().get_stuffing_descriptors());
  const Bytes section = long_section(0x40, joined({loop(descriptor(0x42, {})), loop({})}));
  table.Parse(section.data(), false);
  EXPECT_TRUE(absent.empty());
  EXPECT_EQ(table.get_stuffing_descriptors().size(), 1u);
}

TEST(DvbLoop, SavesNothingOfAnEmptyLoop) {
  EXPECT_TRUE(saved_names(DvbLoop()).empty());
  EXPECT_TRUE(saved_names(loop_of({})).empty());
}

TEST(DvbLoop, LoadsWhatItSavedButForTheCarouselId) {
  xml::Document document;
  void* const root = document.create_root("d");
  loop_of(one_of_each_kind())._save_descriptors(document.dom(), root);
  DvbLoop loop;
  loop._parse_descriptors(root);
  for (const Row& r : rows()) EXPECT_EQ(r.lengths(loop).size(), r.tag == 0x13 ? 0u : 1u) << r.element;
  // Once more into the same loop.
  loop._parse_descriptors(root);
  EXPECT_EQ(size_of(loop), 160u);
}

TEST(DvbLoop, LoadsACarouselIdUnderANameThatNoSaveWrites) {
  const std::string attributes =
      R"( descriptor_id="19" descriptor_length="5" carousel_id="9" formatid="0" moduleversion="0" moduleid="0")"
      R"( blocksize="0" modulesize="0" compressionmethod="0" originalsize="0" timeout="0" objectkeylength="0")"
      R"( objectkeydata="" private_data_byte=""/>)";
  const DvbLoop loop = loaded_loop("<descriptors><carousel_id_descriptor" + attributes +
                                   "<carousel_id_descriptors" + attributes + "</descriptors>");
  EXPECT_EQ(size_of(loop), 1u);
  ASSERT_EQ(loop.get_carousel_id_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_carousel_id_descriptors()[0].get_carousel_id(), 9u);
  EXPECT_EQ(saved_names(loop), std::vector<std::string>{"carousel_id_descriptor"});
}

TEST(DvbLoop, GoesByTheNameOfAnElementAndNotByItsTag) {
  const DvbLoop loop =
      loaded_loop("<descriptors>" + general("user_private_descriptor", 5, 1) +
                  general("general_descriptor", 200, 2) + general("general_descriptor", 5, 3) +
                  R"(<STD_descriptor descriptor_id="200" descriptor_length="4" leak_valid_flag="1"/>)" +
                  "</descriptors>");
  EXPECT_EQ(row_of("user_private_descriptor").lengths(loop), std::vector<int>{1});
  EXPECT_EQ(row_of("general_descriptor").lengths(loop), (std::vector<int>{2, 3}));
  EXPECT_EQ(loop.get_general_descriptors()[0].get_descriptor_tag(), 200);
  ASSERT_EQ(loop.get_STD_descriptors().size(), 1u);
  EXPECT_EQ(loop.get_STD_descriptors()[0].get_descriptor_tag(), 200);
}

TEST(DvbLoop, PassesOverNamesThatItDoesNotKnow) {
  std::string descriptors = "<descriptors>";
  for (const char* const name :
       {"carousel_id_descriptor", "video_stream_descriptors", "Video_stream_descriptor",
        "video_stream_descripto", "xvideo_stream_descriptor", "bouquet_name_descriptor", "mosaic_descriptor",
        "CA_identifiers_descriptor", "nvod_reference_descriptor", "atsc_stuffing_descriptor",
        "target_smartcard_descriptor", "descriptors", "application_descriptor", "v",
        "stuffing_descriptor\u00E4", "AC-3_descriptor"})
    descriptors += "<" + std::string(name) + "/>";
  const DvbLoop loop = loaded_loop(descriptors + general("general_descriptor", 1, 2) + "</descriptors>");
  EXPECT_EQ(size_of(loop), 1u);
  EXPECT_EQ(saved_names(loop), std::vector<std::string>{"general_descriptor"});
}

TEST(DvbLoop, ReadsTheFirstDescriptorsElement) {
  const DvbLoop loop =
      loaded_loop("<x/><descriptors>" + general("general_descriptor", 1, 2) + "</descriptors><descriptors>" +
                  general("general_descriptor", 1, 3) + "</descriptors>");
  EXPECT_EQ(row_of("general_descriptor").lengths(loop), std::vector<int>{2});
}

TEST(DvbLoop, SaysWhatItsElementLacks) {
  for (const char* empty : {"", "<x><descriptors/></x>", "<descriptors/>"})
    EXPECT_EQ(failure([&] { loaded_loop(empty); }), "nothing") << empty;
  for (const Row& r : rows()) {
    if (r.tag == 0x13) continue;
    const std::string element = "<descriptors><" + std::string(r.element);
    EXPECT_EQ(failure([&] { loaded_loop(element + "/></descriptors>"); }), "-1: failed to get descriptor_id");
    EXPECT_EQ(failure([&] { loaded_loop(element + " descriptor_id='1'/></descriptors>"); }),
              "-1: failed to get descriptor_length");
  }

  // What was read until then stays.
  const auto document = xml::Document::from_text("<d><descriptors>" + general("general_descriptor", 1, 2) +
                                                 "<general_descriptor/></descriptors></d>");
  DvbLoop loop;
  EXPECT_EQ(failure([&] { loop._parse_descriptors(document.root()); }), "-1: failed to get descriptor_id");
  EXPECT_EQ(size_of(loop), 1u);
}
