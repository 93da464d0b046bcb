#include <quillon/descriptors/service/nvod.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorNVODReference::DescriptorNVODReference(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 6 != 0) throw error(error::length_mismatch, "NVOD_reference_descriptor");
  read_rows(service_list_, d, 2, descriptor_length, 6);
}

template <class V, class S>
void DescriptorNVODReference::describe(V& v, S& s) {
  v.list("service_list", "service", s.service_list_);
}
QUILLON_FACES_OF(DescriptorNVODReference, "NVOD_reference_descriptor")

template <class V, class S>
void DescriptorNVODReference::service::describe(V& v, S& s) {
  v.labels("DescriptorNVODReference::service::", ": ");
  v.field("transport_stream_id", s.transport_stream_id_);
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("service_id", s.service_id_);
}
QUILLON_RECORD_FACES_OF(DescriptorNVODReference::service)

template <class V, class S>
void DescriptorTimeShiftedService::describe(V& v, S& s) {
  v.field("reference_service_id", s.reference_service_id_);
}
// The name of another descriptor, kept: readers of reports rely on it.
QUILLON_FACES_OF(DescriptorTimeShiftedService, "time_shifted_event_descriptor")

}  // namespace quillon
