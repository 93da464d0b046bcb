#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The time shifted services of a near video on demand reference service (EN 300 468, 6.2.26).
class QUILLON_API DescriptorNVODReference final : public DescriptorBase {
 public:
  // A service that carries the same events at other times.
  class QUILLON_API service {
   public:
    service() = default;
    explicit service(ByteView item)
        : transport_stream_id_(item.u16(0)), original_network_id_(item.u16(2)), service_id_(item.u16(4)) {}

    QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
    QUILLON_FIELD(int, original_network_id, get_original_network_id);
    QUILLON_FIELD(int, service_id, get_service_id);

    QUILLON_RECORD_FACES;
  };

  DescriptorNVODReference() = default;
  // Throws error(error::length_mismatch, "NVOD_reference_descriptor") unless the length is a multiple of 6.
  explicit DescriptorNVODReference(ByteView d);

  QUILLON_FIELD(std::vector<service>, service_list, get_service_list);

  QUILLON_FACES(service_list_);
};

// The reference service that a time shifted service repeats (EN 300 468, 6.2.45).
class QUILLON_API DescriptorTimeShiftedService final : public DescriptorBase {
 public:
  DescriptorTimeShiftedService() = default;
  explicit DescriptorTimeShiftedService(ByteView d) : DescriptorBase(d), reference_service_id_(d.u16(2)) {}

  QUILLON_FIELD(int, reference_service_id, get_reference_service_id);

  QUILLON_FACES();
};

}  // namespace quillon
