#include <quillon/appsignal/stream_location.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorIntIPMACStreamLocation::describe(V& v, S& s) {
  v.coded("network_id", s.network_id_, registry_kind::network);
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("transport_stream_id", s.transport_stream_id_);
  v.field("service_id", s.service_id_);
  v.field("component_tag", s.component_tag_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntIPMACStreamLocation, "IP/MAC_stream_location_descriptor")

template <class V, class S>
void DescriptorIntISPAccessMode::describe(V& v, S& s) {
  v.field("access_mode", s.access_mode_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntISPAccessMode, "ISP_access_mode_descriptor")

}  // namespace quillon
