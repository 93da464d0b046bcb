#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/address.h>

namespace quillon {

// The components that carry IPv4 multicast addresses (TS 102 812, 10.8).
class QUILLON_API DescriptorAitRoutingIPv4 final : public DescriptorAitBase {
 public:
  // The component that carries what is sent to an address and port.
  class QUILLON_API RoutingIPv4Info {
   public:
    RoutingIPv4Info() = default;
    explicit RoutingIPv4Info(ByteView p)
        : component_tag_(p[0]), address_(p.u32(1)), port_number_(p.u16(5)), address_mask_(p.u32(7)) {}

    QUILLON_FIELD(int, component_tag, get_component_tag);
    QUILLON_FIELD(uint32_t, address, get_address);
    QUILLON_FIELD(int, port_number, get_port_number);
    QUILLON_FIELD(uint32_t, address_mask, get_address_mask);

    QUILLON_RECORD_FACES;
  };

  DescriptorAitRoutingIPv4() = default;
  // Throws error(error::length_mismatch, "routing_ipv4_descriptor: 1") unless the length is a multiple of 11.
  explicit DescriptorAitRoutingIPv4(ByteView d);

  QUILLON_FIELD(std::vector<RoutingIPv4Info>, routing_ipv4_infos, get_routing_ipv4_infos);

  QUILLON_FACES(routing_ipv4_infos_);
};

// The same for IPv6. Its name in reports and its failure text are those of IPv4; kept: tools match on them.
class QUILLON_API DescriptorAitRoutingIPv6 final : public DescriptorAitBase {
 public:
  // The address and the mask have 16 bytes each. The port begins on the address's last byte and the mask on
  // the port's last one, and byte 34 is not read. Kept: readers of reports and saved documents rely on it. In
  // the standard reading each has its own bytes.
  class QUILLON_API RoutingIPv6Info {
   public:
    RoutingIPv6Info() = default;
    explicit RoutingIPv6Info(ByteView p)
        : component_tag_(p[0]),
          // Quirk: RoutingIPv6Info port, mask
          port_number_(p.u16(p.standard() ? 17 : 16)) {
      address_.parse(p.from(1));
      address_mask_.parse(p.from(p.standard() ? 19 : 18));
    }

    int get_component_tag() const { return component_tag_; }
    const uint8_t* get_address() const { return address_.get_addr(); }
    int get_port_number() const { return port_number_; }
    const uint8_t* get_address_mask() const { return address_mask_.get_addr(); }

    // Throws error("failed") if the address or the mask can't be added; false for the numbers.
    bool SaveSection(void* document, void* node) const;
    void dump_state(std::ostream& stream) const;
    // Throws error("failed").
    void Parse(void* node);

    QUILLON_WALK;

   private:
    int component_tag_ = 0;
    IPv6Address address_;
    int port_number_ = 0;
    IPv6Address address_mask_;
  };

  DescriptorAitRoutingIPv6() = default;
  // Throws error(error::length_mismatch, "routing_ipv4_descriptor: 1") unless the length is a multiple of 35.
  explicit DescriptorAitRoutingIPv6(ByteView d);

  QUILLON_FIELD(std::vector<RoutingIPv6Info>, routing_ipv6_infos, get_routing_ipv6_infos);

  QUILLON_FACES(routing_ipv6_infos_);
};

}  // namespace quillon
