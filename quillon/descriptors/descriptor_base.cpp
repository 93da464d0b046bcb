#include <iomanip>
#include <iterator>
#include <ostream>

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/faces/internal/walk.h>
#include <quillon/report/internal/line.h>
#include <quillon/xml/internal/grammar.h>

namespace quillon {

namespace {

// Kept as reports have always shown them, misspellings included.
constexpr const char* kSystemsTags[] = {
    "Reserved",
    "Reserved",
    "video_stream_descriptor",
    "audio_stream_descriptor",
    "hierachy_descriptor",
    "registration_descriptor",
    "data_streeam_descriptor",
    "target_background_grid_descriptor",
    "video_window_descriptor",
    "CA_descriptor",
    "ISO_639_language_descriptor",
    "system_clock_descriptor",
    "multiplex_buffer_utilization_descriptor",
    "copyright_descriptor",
    "maximum_bitrate_descriptor",
    "private_data_indicator_descriptor",
    "smootihing_descriptor",
    "STD_descriptor",
    "IBP_descriptor",
};

constexpr const char* kDvbTags[] = {
    "network_name_descriptor",
    "service_list_descriptor",
    "stuffing_descriptor",
    "satellite_delivery_system_descriptor",
    "cable_delivery_system_descriptor",
    "VBI_data_descriptor",
    "VBI_teletext_descriptor",
    "bouquet_name_descriptor",
    "service_descriptor",
    "country_availability_descriptor",
    "inkage_descriptor",
    "NVOD_reference_descriptor",
    "time_shifted_service_descriptor",
    "short_event_descriptor",
    "extended_event_descriptor",
    "time_shifted_event_descriptor",
    "component_descriptor",
    "mosaic_descriptor",
    "stream_identifier_descriptor",
    "CA_identifier_descriptor",
    "content_descriptor",
    "parental_rating_descriptor",
    "teletext_descriptor",
    "telephone_descriptor",
    "local_time_offset_descriptor",
    "subtitling_descriptor",
    "terrestrial_delivery_system_descriptor",
    "multilingual_network_name_descriptor",
    "multilingual_bouquet_name_descriptor",
    "multilingual_service_name_descriptor",
    "multilingual_component_descriptor",
    "private_data_specifier_descriptor",
    "service_move_descriptor",
    "short_smoothing_buffer_descriptor",
    "frequency_list_descriptor",
    "partial_transport_stream_descriptor",
    "data_broadcast_descriptor",
    "reserved for future use",
    "data_broadcast_id_descriptor",
    "transport_stream_descriptor",
    "DSNG_descriptor",
    "PDC_descriptor",
    "AC-3_descriptor",
    "ancillary_data_descriptor",
    "cell_list_descriptor",
    "cell_frequency_link_descriptor",
    "announcement_support_descriptor",
    "application_signalling_descriptor",
    "adaptation_field_data_descriptor",
    "service_identifier_descriptor",
    "service_availability_descriptor",
    "default_authority_descriptor",
    "related_content_descriptor",
    "TVA_id_descriptor",
    "content_identifier_descriptor",
    "time_slice_fec_identifier_descriptor",
    "ECM_repetition_rate_descriptor",
    "S2_satellite_delivery_system_descriptor",
    "enhanced_AC-3_descriptor",
    "DTS descriptor",
    "AAC descriptor",
};
static_assert(std::size(kSystemsTags) == 0x13 && std::size(kDvbTags) == 0x7D - 0x40);

int load_header(IXMLDOMNamedNodeMap* attributes, const char* name, const char* failure) {
  int value = 0;
  if (GetAttributeValue(attributes, name, value) < 0) throw error(failure);
  return value;
}

}  // namespace

const char* DescriptorBase::get_tag_text(unsigned char tag) {
  if (tag < std::size(kSystemsTags)) return kSystemsTags[tag];
  if (tag >= 0x40 && tag <= 0x7C) return kDvbTags[tag - 0x40];
  return "Unknown";
}

void DescriptorBase::dump_state(std::ostream& stream) const {
  stream << std::hex << std::setfill('0');
  report::Line(stream)
      .label({}, "descriptor_tag: ", {})
      .add(descriptor_tag, 2)
      .add(" ")
      .add(get_tag_text())
      .end();
  _dump_state(stream);
}

void DescriptorBase::Parse(void* node) {
  const xml::Ref<IXMLDOMNode> held(static_cast<IXMLDOMNode*>(node));
  const auto attributes = xml::attributes_of(node, "failed to get attribute map");
  descriptor_tag = load_header(attributes.get(), "descriptor_id", "failed to get descriptor_id");
  descriptor_length = load_header(attributes.get(), "descriptor_length", "failed to get descriptor_length");
  _parse(node);
}

bool DescriptorBase::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  out.add("descriptor_id", descriptor_tag);
  return out.add("descriptor_length", descriptor_length) && _save_section(document, node);
}

void DescriptorBase::_walk_head(FieldSink& sink) const {
  faces::Walk v(sink, Reading::kept);
  v.coded("descriptor_id", descriptor_tag, get_tag_text());
  v.field("descriptor_length", descriptor_length);
}

}  // namespace quillon
