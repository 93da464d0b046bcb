#include <quillon/descriptors/internal/code_text.h>
#include <quillon/descriptors/service/service.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorService::DescriptorService(ByteView d) : DescriptorBase(d), service_type_(d[2]) {
  int provider = 0;
  provider_nameA_.parse(d.from(3), provider);
  int service = 0;
  service_nameA_.parse(d.from(3 + provider), service);
}

template <class V, class S>
void DescriptorService::describe(V& v, S& s) {
  v.labels("", " ");
  v.coded("service_type", s.service_type_, {get_service_type_text, standard_service_type_text});
  v.field("provider_name", s.provider_nameA_);
  v.field("service_name", s.service_nameA_);
}
QUILLON_FACES_OF(DescriptorService, "service_descriptor")

// As reports have always shown them, misspellings included.
const char* DescriptorService::get_service_type_text(int service_type) {
  if (service_type < 0 || service_type > 255) return "<unknown>";
  if (service_type >= 128 && service_type < 255) return "user defined";
  return detail::text_of(service_type,
                         {"reserved for future use",
                          "digital television service",
                          "digital radio sound service",
                          "teletext service",
                          "NVOD reference service",
                          "NVOD time-shifted service",
                          "mosiac service",
                          "PAL coded signal",
                          "SECAM coded signal",
                          "D/D2-MAC",
                          "FM Radio",
                          "NTSC coded signal",
                          "data broadcast service",
                          "reserved for Common Interface Usage (EN 50221)",
                          "RCS Map (see EN 301 790)",
                          "RCS FLS (see EN 301 790)",
                          "DVB MHP service",
                          "MPEG-2 HD digital television service",
                          "reserved for future use",
                          "reserved for future use",
                          "reserved for future use",
                          "reserved for future use",
                          "advanced codec SD digital television service",
                          "advanced codec SD NVOD time-shifted service",
                          "advanced codec SD NVOD reference service",
                          "advanced codec HD digital television service",
                          "advanced codec HD NVOD time-shifted service",
                          "advanced codec HD NVOD reference service"},
                         "reserved for future use");
}

// Quirk: service_type texts
const char* DescriptorService::standard_service_type_text(int service_type) {
  if (service_type < 0 || service_type > 255) return "<unknown>";
  if (service_type >= 0x80 && service_type < 0xFF) return "user defined";
  return detail::text_of(service_type,
                         {"reserved for future use",
                          "digital television service",
                          "digital radio sound service",
                          "teletext service",
                          "NVOD reference service",
                          "NVOD time-shifted service",
                          "mosaic service",
                          "FM radio service",
                          "DVB SRM service",
                          "reserved for future use",
                          "advanced codec digital radio sound service",
                          "H.264/AVC mosaic service",
                          "data broadcast service",
                          "reserved for Common Interface usage",
                          "RCS Map",
                          "RCS FLS",
                          "DVB MHP service",
                          "MPEG-2 HD digital television service",
                          "reserved for future use",
                          "reserved for future use",
                          "reserved for future use",
                          "reserved for future use",
                          "H.264/AVC SD digital television service",
                          "H.264/AVC SD NVOD time-shifted service",
                          "H.264/AVC SD NVOD reference service",
                          "H.264/AVC HD digital television service",
                          "H.264/AVC HD NVOD time-shifted service",
                          "H.264/AVC HD NVOD reference service",
                          "H.264/AVC frame compatible plano-stereoscopic HD digital television service",
                          "H.264/AVC frame compatible plano-stereoscopic HD NVOD time-shifted service",
                          "H.264/AVC frame compatible plano-stereoscopic HD NVOD reference service",
                          "HEVC digital television service",
                          "HEVC UHD digital television service",
                          "VVC digital television service",
                          "AVS3 digital television service"},
                         "reserved for future use");
}

DescriptorServiceList::DescriptorServiceList(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 3 != 0) throw error("descriptor length mismatch");
  read_rows(servicelist_, d, 2, descriptor_length, 3);
}

template <class V, class S>
void DescriptorServiceList::describe(V& v, S& s) {
  v.list("servicelist", "service", s.servicelist_);
}
QUILLON_FACES_OF(DescriptorServiceList, "service_list_descriptor")

template <class V, class S>
void DescriptorServiceList::ServiceList::describe(V& v, S& s) {
  v.labels("", " ");
  v.field("service_id", s.service_id_);
  v.coded("service_type", s.service_type_,
          {DescriptorService::get_service_type_text, DescriptorService::standard_service_type_text});
}
QUILLON_RECORD_FACES_OF(DescriptorServiceList::ServiceList)

template <class V, class S>
void DescriptorServiceMove::describe(V& v, S& s) {
  v.coded("new_original_network_id", s.new_original_network_id_, registry_kind::original_network);
  v.field("new_transport_stream_id", s.new_transport_stream_id_);
  v.field("new_service_id", s.new_service_id_);
}
QUILLON_FACES_OF(DescriptorServiceMove, "service_move_descriptor")

const char* DescriptorServiceIdentifier::get_tag_text() const {
  return "service_identifier_descriptor";
}
bool DescriptorServiceIdentifier::_save_section(void*, void*) const {
  return true;
}
void DescriptorServiceIdentifier::_dump_state(std::ostream&) const {}
void DescriptorServiceIdentifier::_parse(void*) {}

template <class V, class S>
void DescriptorServiceIdentifier::describe(V& v, S& s) {
  v.standard("textual_service_identifier", s.textual_service_identifier_);
}
QUILLON_WALK_OF(DescriptorServiceIdentifier)

}  // namespace quillon
