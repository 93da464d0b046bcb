#include <utility>

#include <quillon/appsignal/transport_protocol.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

constexpr const char* kUrlMismatch = "DescriptorAitTransportProtocol: URL start end mismatch";

// A length byte and a URL; `pos` moves past them.
WireText read_url(ByteView p, int& pos) {
  const int begin = std::exchange(pos, pos + 1 + p[pos]);
  // Quirk: texts of an Ait but application_name
  return WireText(p.present(begin + 1, p[begin]), p.reading());
}

}  // namespace

DescriptorAitTransportProtocol::DescriptorAitTransportProtocol(ByteView d)
    : DescriptorAitBase(d), protocol_id_(d.u16(2)), transport_protocol_label_(d[4]) {
  int consumed = 0;
  if (protocol_id_ == 1) transport_oc_ = TransportOC(d.from(5), descriptor_length - 3, consumed);
  if (protocol_id_ == 2) transport_ip_ = TransportIP(d.from(5), descriptor_length - 3, consumed);
  // Quirk: DescriptorAitTransportProtocol protocol_id 3 and others
  if (!d.standard()) return;
  if (protocol_id_ == 3 &&
      !read_uneven_rows(url_groups_, d.upto(2 + descriptor_length), 5, descriptor_length - 3))
    throw error(kUrlMismatch);
  if (protocol_id_ < 1 || protocol_id_ > 3) selector_bytes_ = d.bytes(5, descriptor_length - 3);
}

template <class V, class S>
void DescriptorAitTransportProtocol::describe(V& v, S& s) {
  v.field("protocol_id", s.protocol_id_);
  v.field("transport_protocol_label", s.transport_protocol_label_);
  if (!V::dump || s.protocol_id_ == 1) v.child("transport_OC", s.transport_oc_);
  if (!V::dump || s.protocol_id_ == 2) v.child("transport_IP", s.transport_ip_);
  v.standard("url_groups", "url_group", s.url_groups_);
  v.standard("selector_byte", s.selector_bytes_);
}
QUILLON_FACES_OF(DescriptorAitTransportProtocol, "transport_protocol_descriptor")

DescriptorAitTransportProtocol::TransportOC::TransportOC(ByteView p, int, int& consumed)
    : remote_connection_(p.bits(0, 7, 1)) {
  if (remote_connection_) {
    original_network_id_ = p.u16(1);
    transport_stream_id_ = p.u16(3);
    service_id_ = p.u16(5);
    component_tag_ = p[7];
    consumed = 8;
  } else {
    component_tag_ = p[1];
    consumed = 2;
  }
}

template <class V, class S>
void DescriptorAitTransportProtocol::TransportOC::describe(V& v, S& s) {
  v.field("remote_connection", s.remote_connection_);
  if (!V::dump || s.remote_connection_ == 1) {
    v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
    v.field("transport_stream_id", s.transport_stream_id_);
    v.field("service_id", s.service_id_);
  }
  v.field("component_tag", s.component_tag_);
}
QUILLON_RECORD_FACES_OF(DescriptorAitTransportProtocol::TransportOC)

DescriptorAitTransportProtocol::TransportIP::TransportIP(ByteView p, int length, int& consumed)
    : remote_connection_(p.bits(0, 7, 1)), alignment_indicator_(p.bits(7, 7, 1)) {
  if (remote_connection_) {
    original_network_id_ = p.u16(1);
    transport_stream_id_ = p.u16(3);
    service_id_ = p.u16(5);
    consumed = 8;
  } else {
    consumed = 2;
  }
  // Quirk: DescriptorAitTransportProtocol protocol_id 2
  if (!p.standard()) return;
  alignment_indicator_ = p.bits(consumed - 1, 7, 1);
  const bool whole = each_row(p, consumed, length, [this](ByteView at, int) {
    int used = 0;
    urls_.push_back(read_url(at, used));
    return used;
  });
  if (!whole) throw error(kUrlMismatch);
  consumed = length;
}

template <class V, class S>
void DescriptorAitTransportProtocol::TransportIP::describe(V& v, S& s) {
  v.field("remote_connection", s.remote_connection_);
  if (!V::dump || s.remote_connection_ == 1) {
    v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
    v.field("transport_stream_id", s.transport_stream_id_);
    v.field("service_id", s.service_id_);
  }
  v.field("alignment_indicator", s.alignment_indicator_);
  v.standard("urls", "url", s.urls_);
}
QUILLON_RECORD_FACES_OF(DescriptorAitTransportProtocol::TransportIP)

DescriptorAitTransportProtocol::URLGroup::URLGroup(ByteView p, int& used) {
  used = 0;
  url_base_ = read_url(p, used);
  const int count = p[used++];
  // One that is not there moves the end past that of the descriptor.
  for (int n = 0; n < count && p.reaches(used); ++n) url_extensions_.push_back(read_url(p, used));
}

template <class V, class S>
void DescriptorAitTransportProtocol::URLGroup::describe(V& v, S& s) {
  v.field("URL_base", s.url_base_);
  v.list("URL_extensions", "URL_extension", s.url_extensions_);
}
QUILLON_WALK_OF(DescriptorAitTransportProtocol::URLGroup)

}  // namespace quillon
