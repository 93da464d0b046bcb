#include <quillon/descriptors/internal/code_text.h>
#include <quillon/descriptors/linkage/linkage.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

using detail::text_of;

DescriptorLinkage::DescriptorLinkage(ByteView d)
    : DescriptorBase(d),
      transport_stream_id_(d.u16(2)),
      original_network_id_(d.u16(4)),
      service_id_(d.u16(6)),
      linkage_type_(d[8]) {
  if (linkage_type_ == 8)
    read_hand_over(d);
  else if (linkage_type_ == 11)
    read_platforms(d);
  // Quirk: DescriptorLinkage types 0x0D, 0x0E to 0x1F
  else if (d.standard() && linkage_type_ == 0x0D)
    read_event(d);
  else if (d.standard() && linkage_type_ >= 0x0E && linkage_type_ <= 0x1F)
    read_extended_events(d);
  else
    private_data_ = d.bytes(9, descriptor_length - 7);
}

void DescriptorLinkage::read_event(ByteView d) {
  target_event_id_ = d.u16(9);
  target_listed_ = d.bits(11, 7, 1);
  event_simulcast_ = d.bits(11, 6, 1);
  private_data_ = d.bytes(12, descriptor_length - 10);
}

void DescriptorLinkage::read_extended_events(ByteView d) {
  const int end = 2 + descriptor_length;
  const int loop_end = 10 + d[9];
  if (loop_end > end || !read_uneven_rows(extended_events_, d, 10, d[9]))
    throw error("DescriptorLinkage: extended event start end mismatch");
  private_data_ = d.bytes(loop_end, end - loop_end);
}

DescriptorLinkage::ExtendedEvent::ExtendedEvent(ByteView p, int& used)
    : target_event_id_(p.u16(0)),
      target_listed_(p.bits(2, 7, 1)),
      event_simulcast_(p.bits(2, 6, 1)),
      link_type_(p.bits(2, 5, 2)),
      target_id_type_(p.bits(2, 3, 2)),
      original_network_id_flag_(p.bits(2, 1, 1)),
      service_id_flag_(p.bits(2, 0, 1)) {
  used = 3;
  const auto next = [&](bool is_there, int& field) {
    if (!is_there) return;
    field = p.u16(used);
    used += 2;
  };
  const bool user_defined = target_id_type_ == 3;
  next(user_defined, user_defined_id_);
  next(target_id_type_ == 1, target_transport_stream_id_);
  next(!user_defined && original_network_id_flag_, target_original_network_id_);
  next(!user_defined && service_id_flag_, target_service_id_);
}

template <class V, class S>
void DescriptorLinkage::ExtendedEvent::describe(V& v, S& s) {
  v.field("target_event_id", s.target_event_id_);
  v.field("target_listed", s.target_listed_);
  v.field("event_simulcast", s.event_simulcast_);
  v.field("link_type", s.link_type_);
  v.field("target_id_type", s.target_id_type_);
  v.field("original_network_id_flag", s.original_network_id_flag_);
  v.field("service_id_flag", s.service_id_flag_);
  v.field("user_defined_id", s.user_defined_id_);
  v.field("target_transport_stream_id", s.target_transport_stream_id_);
  v.coded("target_original_network_id", s.target_original_network_id_, registry_kind::original_network);
  v.field("target_service_id", s.target_service_id_);
}
QUILLON_WALK_OF(DescriptorLinkage::ExtendedEvent)

void DescriptorLinkage::read_hand_over(ByteView d) {
  hand_over_type_ = d.bits(9, 7, 4);
  origin_type_ = d.bits(9, 0, 1);
  int pos = 10;
  if (hand_over_type_ >= 1 && hand_over_type_ <= 3) {
    network_id_ = d.u16(pos);
    pos += 2;
  }
  if (origin_type_ == 0) {
    initial_service_id_ = d.u16(pos);
    pos += 2;
  }
  private_data_ = d.bytes(pos, 2 + descriptor_length - pos);
}

void DescriptorLinkage::read_platforms(ByteView d) {
  platform_id_data_length_ = d[9];
  const int end = 2 + descriptor_length;
  const int loop_end = 10 + platform_id_data_length_;
  if (loop_end > end) throw error("DescriptorLinkage: invalid platform_id_data_length length");
  if (!read_uneven_rows(platformidinfos_, d, 10, platform_id_data_length_))
    throw error("DescriptorLinkage: descriptor start end mismatch");
  private_data_ = d.bytes(loop_end, end - loop_end);
}

template <class V, class S>
void DescriptorLinkage::describe(V& v, S& s) {
  v.field("transport_stream_id", s.transport_stream_id_);
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("service_id", s.service_id_);
  v.coded("linkage_type", s.linkage_type_, {get_linkage_type_text, standard_linkage_type_text});
  v.block("private_data_byte", s.private_data_);
  if constexpr (!V::dump) {
    v.coded("hand_over_type", s.hand_over_type_, get_hand_over_type_text);
    v.coded("origin_type", s.origin_type_, get_origin_type_text);
    v.coded("network_id", s.network_id_, registry_kind::network);
    v.field("initial_service_id", s.initial_service_id_);
    v.field("platform_id_data_length", s.platform_id_data_length_);
    v.list("platformidinfos", "platformidinfo", s.platformidinfos_);
    v.standard("target_event_id", s.target_event_id_);
    v.standard("target_listed", s.target_listed_);
    v.standard("event_simulcast", s.event_simulcast_);
    v.standard("extended_events", "extended_event", s.extended_events_);
  }
}
QUILLON_FACES_OF(DescriptorLinkage, "linkage_descriptor")

DescriptorLinkage::PlatformIDInfo::PlatformIDInfo(ByteView p, int& len)
    : platform_id_(p.u24(0)), platform_name_loop_length_(p[3]) {
  if (!read_uneven_rows(platform_names_, p, 4, platform_name_loop_length_))
    throw error("PlatformIDInfo: descriptor start end mismatch");
  len = platform_name_loop_length_ + 4;
}

template <class V, class S>
void DescriptorLinkage::PlatformIDInfo::describe(V& v, S& s) {
  v.field("platform_id", s.platform_id_);
  v.field("platform_name_loop_length", s.platform_name_loop_length_);
  v.list("platform_names", "platform_names", s.platform_names_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorLinkage::PlatformIDInfo)

DescriptorLinkage::PlatformIDInfo::PlatformIDInfoName::PlatformIDInfoName(ByteView p, int& consumed)
    : platform_name_length_(p[3]), name_(platform_name_length_, p.from(4)) {
  iso_639_language_code_.parse(p);
  consumed = platform_name_length_ + 4;
}

template <class V, class S>
void DescriptorLinkage::PlatformIDInfo::PlatformIDInfoName::describe(V& v, S& s) {
  v.field("iso639languagecode", s.iso_639_language_code_);
  v.field("platform_name_length", s.platform_name_length_);
  v.field("text_char", s.name_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorLinkage::PlatformIDInfo::PlatformIDInfoName)

const char* DescriptorLinkage::get_linkage_type_text(int linkage_type) {
  if (linkage_type > 255 || linkage_type < 0) return "";
  if (linkage_type > 127) return "user defined";
  return text_of(linkage_type,
                 {"reserved for future use", "information service", "EPG service", "CA replacement service",
                  "TS containing complete Network/Bouquet SI", "service replacement service",
                  "data broadcast service", "RCS Map", "mobile hand-over",
                  "System Software Update Service (TS 102 006)", "TS containing SSU BAT or NIT (TS 102 006)",
                  "IP/MAC Notification Service (EN 301 192)", "TS containing INT BAT or NIT (EN 301 192)"},
                 "reserved for future use");
}

// Quirk: linkage_type texts
const char* DescriptorLinkage::standard_linkage_type_text(int linkage_type) {
  if (linkage_type > 255 || linkage_type < 0) return "";
  if (linkage_type == 255) return "reserved for future use";
  if (linkage_type > 127) return "user defined";
  if (linkage_type == 0x0D) return "event linkage";
  if (linkage_type >= 0x0E && linkage_type <= 0x1F) return "extended event linkage";
  if (linkage_type == 0x20) return "downloadable font info linkage";
  if (linkage_type == 0x21) return "native IP bootstrap MPE stream";
  return get_linkage_type_text(linkage_type);
}

const char* DescriptorLinkage::get_hand_over_type_text(int hand_over_type) {
  if (hand_over_type > 15 || hand_over_type < 0) return "";
  return text_of(
      hand_over_type,
      {"reserved for future use", "DVB hand-over to an identical service in a neighbouring country",
       "DVB hand-over to a local variation of the same service", "DVB hand-over to an associated service"},
      "reserved for future use");
}

const char* DescriptorLinkage::get_origin_type_text(int origin_type) {
  return text_of(origin_type, {"NIT", "SDT"}, "");
}

}  // namespace quillon
