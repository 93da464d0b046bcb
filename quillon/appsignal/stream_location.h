#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The component that carries an IP/MAC stream (EN 301 192, 8.4.5).
class QUILLON_API DescriptorIntIPMACStreamLocation final : public DescriptorIntBase {
 public:
  DescriptorIntIPMACStreamLocation() = default;
  explicit DescriptorIntIPMACStreamLocation(ByteView d)
      : DescriptorIntBase(d),
        network_id_(d.u16(2)),
        original_network_id_(d.u16(4)),
        transport_stream_id_(d.u16(6)),
        service_id_(d.u16(8)),
        component_tag_(d[10]) {}

  QUILLON_FIELD(int, network_id, get_network_id);
  QUILLON_FIELD(int, original_network_id, get_original_network_id);
  QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
  QUILLON_FIELD(int, service_id, get_service_id);
  QUILLON_FIELD(int, component_tag, get_component_tag);

  QUILLON_FACES();
};

// How the interaction channel to a provider is opened (EN 301 192, 8.4.5).
class QUILLON_API DescriptorIntISPAccessMode final : public DescriptorIntBase {
 public:
  DescriptorIntISPAccessMode() = default;
  explicit DescriptorIntISPAccessMode(ByteView d) : DescriptorIntBase(d), access_mode_(d[2]) {}

  QUILLON_FIELD(int, access_mode, get_access_mode);

  QUILLON_FACES();
};

}  // namespace quillon
