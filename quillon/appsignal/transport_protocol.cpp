#include <quillon/appsignal/transport_protocol.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

DescriptorAitTransportProtocol::DescriptorAitTransportProtocol(ByteView d)
    : DescriptorAitBase(d), protocol_id_(d.u16(2)), transport_protocol_label_(d[4]) {
  int consumed = 0;
  if (protocol_id_ == 1) transport_oc_ = TransportOC(d.from(5), descriptor_length - 3, consumed);
  if (protocol_id_ == 2) transport_ip_ = TransportIP(d.from(5), descriptor_length - 3, consumed);
}

template <class V, class S>
void DescriptorAitTransportProtocol::describe(V& v, S& s) {
  v.field("protocol_id", s.protocol_id_);
  v.field("transport_protocol_label", s.transport_protocol_label_);
  if (!V::dump || s.protocol_id_ == 1) v.child("transport_OC", s.transport_oc_);
  if (!V::dump || s.protocol_id_ == 2) v.child("transport_IP", s.transport_ip_);
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

DescriptorAitTransportProtocol::TransportIP::TransportIP(ByteView p, int, int& consumed)
    : remote_connection_(p.bits(0, 7, 1)), alignment_indicator_(p.bits(7, 7, 1)) {
  if (remote_connection_) {
    original_network_id_ = p.u16(1);
    transport_stream_id_ = p.u16(3);
    service_id_ = p.u16(5);
    consumed = 8;
  } else {
    consumed = 2;
  }
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
}
QUILLON_RECORD_FACES_OF(DescriptorAitTransportProtocol::TransportIP)

}  // namespace quillon
