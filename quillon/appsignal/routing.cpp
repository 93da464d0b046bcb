#include <quillon/appsignal/routing.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorAitRoutingIPv4::DescriptorAitRoutingIPv4(ByteView d) : DescriptorAitBase(d) {
  if (descriptor_length % 11 != 0) throw error(error::length_mismatch, "routing_ipv4_descriptor: 1");
  read_rows(routing_ipv4_infos_, d, 2, descriptor_length, 11);
}

template <class V, class S>
void DescriptorAitRoutingIPv4::describe(V& v, S& s) {
  v.list("routing_ipv4_infos", "info", s.routing_ipv4_infos_);
}
QUILLON_FACES_OF(DescriptorAitRoutingIPv4, "routing_IPv4_descriptor")

template <class V, class S>
void DescriptorAitRoutingIPv4::RoutingIPv4Info::describe(V& v, S& s) {
  v.field("component_tag", s.component_tag_);
  v.field("address", s.address_);
  v.field("port_number", s.port_number_);
  v.field("address_mask", s.address_mask_);
}
QUILLON_RECORD_FACES_OF(DescriptorAitRoutingIPv4::RoutingIPv4Info)

DescriptorAitRoutingIPv6::DescriptorAitRoutingIPv6(ByteView d) : DescriptorAitBase(d) {
  if (descriptor_length % 35 != 0) throw error(error::length_mismatch, "routing_ipv4_descriptor: 1");
  read_rows(routing_ipv6_infos_, d, 2, descriptor_length, 35);
}

template <class V, class S>
void DescriptorAitRoutingIPv6::describe(V& v, S& s) {
  v.list("routing_ipv6_infos", "info", s.routing_ipv6_infos_);
}
QUILLON_FACES_OF(DescriptorAitRoutingIPv6, "routing_IPv4_descriptor")

bool DescriptorAitRoutingIPv6::RoutingIPv6Info::SaveSection(void* document, void* node) const {
  xml::Writer out(document, node);
  if (!out.add("component_tag", component_tag_)) return false;
  if (!out.add("address", address_)) throw error("failed");
  if (!out.add("port_number", port_number_)) return false;
  if (!out.add("address_mask", address_mask_)) throw error("failed");
  return true;
}

template <class V, class S>
void DescriptorAitRoutingIPv6::RoutingIPv6Info::describe(V& v, S& s) {
  v.field("component_tag", s.component_tag_);
  v.field("address", s.address_);
  v.field("port_number", s.port_number_);
  v.field("address_mask", s.address_mask_);
}
QUILLON_LOAD_OF(void DescriptorAitRoutingIPv6::RoutingIPv6Info::Parse)
QUILLON_WALK_OF(DescriptorAitRoutingIPv6::RoutingIPv6Info)

void DescriptorAitRoutingIPv6::RoutingIPv6Info::dump_state(std::ostream& stream) const {
  stream << "component_tag: " << component_tag_ << std::endl;
  stream << "address:" << std::endl;
  dump_block(stream, get_address(), IPv6Address::size);
  stream << "port_number: " << port_number_ << std::endl;
  stream << "address_mask:" << std::endl;
  dump_block(stream, get_address_mask(), IPv6Address::size);
}

}  // namespace quillon
