#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/address.h>

namespace quillon {

// The descriptors below name the receivers that a notification is for (EN 301 192, 8.4.5). A length that does
// not suit the rows of a class throws error("descriptor size mismatch"). A MAC address is read from the
// wire in the standard reading alone: else only a load gives it a value.

// Receivers by their smartcards.
class QUILLON_API DescriptorIntTargetSmartcard final : public DescriptorIntBase {
 public:
  DescriptorIntTargetSmartcard() = default;
  explicit DescriptorIntTargetSmartcard(ByteView d)
      : DescriptorIntBase(d),
        super_ca_system_id_(d.u32(2)),
        private_data_byte_(d.bytes(6, descriptor_length - 4)) {}

  QUILLON_FIELD(uint32_t, super_ca_system_id, get_super_ca_system_id);
  QUILLON_FIELD(std::vector<uint8_t>, private_data_byte, get_private_data_byte);

  QUILLON_FACES(private_data_byte_);
};

// Receivers by their serial numbers.
class QUILLON_API DescriptorIntTargetSerialNumber final : public DescriptorIntBase {
 public:
  DescriptorIntTargetSerialNumber() = default;
  explicit DescriptorIntTargetSerialNumber(ByteView d)
      : DescriptorIntBase(d), serial_data_byte_(d.bytes(2, descriptor_length)) {}

  QUILLON_FIELD(std::vector<uint8_t>, serial_data_byte, get_serial_data_byte);

  QUILLON_FACES(serial_data_byte_);
};

// Receivers by their MAC addresses.
class QUILLON_API DescriptorIntTargetMACAddress final : public DescriptorIntBase {
 public:
  // An address of a receiver.
  class QUILLON_API MACAddressItem {
   public:
    MACAddressItem() = default;
    explicit MACAddressItem(ByteView p) { addressitem_.parse(p); }

    QUILLON_FIELD(MACAddress, addressitem, get_addressitem);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetMACAddress() = default;
  explicit DescriptorIntTargetMACAddress(ByteView d);

  QUILLON_FIELD(MACAddress, mac_addr_mask, get_mac_addr_mask);
  QUILLON_FIELD(std::vector<MACAddressItem>, mac_addr, get_mac_addr);

  QUILLON_FACES(mac_addr_);
};

// Receivers by ranges of MAC addresses.
class QUILLON_API DescriptorIntTargetMACAddressRange final : public DescriptorIntBase {
 public:
  // The first and the last address of a range.
  class QUILLON_API MACAddressRange {
   public:
    MACAddressRange() = default;
    explicit MACAddressRange(ByteView p) {
      mac_addr_low_.parse(p);
      mac_addr_high_.parse(p.from(6));
    }

    QUILLON_FIELD(MACAddress, mac_addr_low, get_mac_addr_low);
    QUILLON_FIELD(MACAddress, mac_addr_high, get_mac_addr_high);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetMACAddressRange() = default;
  explicit DescriptorIntTargetMACAddressRange(ByteView d);

  QUILLON_FIELD(std::vector<MACAddressRange>, macaddressrange, get_macaddressrange);

  QUILLON_FACES(macaddressrange_);
};

// Receivers by their IPv4 addresses.
class QUILLON_API DescriptorIntTargetIPAddress final : public DescriptorIntBase {
 public:
  // An address of a receiver.
  class QUILLON_API IPv4AddressItem {
   public:
    IPv4AddressItem() = default;
    explicit IPv4AddressItem(ByteView p) { addressitem_.parse(p); }

    QUILLON_FIELD(IPv4Address, addressitem, get_addressitem);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetIPAddress() = default;
  explicit DescriptorIntTargetIPAddress(ByteView d);

  QUILLON_FIELD(IPv4Address, ipv4_addr_mask, get_ipv4_addr_mask);
  QUILLON_FIELD(std::vector<IPv4AddressItem>, ipv4_addr, get_ipv4_addr);

  QUILLON_FACES(ipv4_addr_);
};

// Receivers by their IPv6 addresses.
class QUILLON_API DescriptorIntTargetIPv6Address final : public DescriptorIntBase {
 public:
  // An address of a receiver.
  class QUILLON_API IPv6AddressItem {
   public:
    IPv6AddressItem() = default;
    explicit IPv6AddressItem(ByteView p) { addressitem_.parse(p); }

    QUILLON_FIELD(IPv6Address, addressitem, get_addressitem);

    QUILLON_RECORD_FACES;
  };

  DescriptorIntTargetIPv6Address() = default;
  explicit DescriptorIntTargetIPv6Address(ByteView d);

  QUILLON_FIELD(IPv6Address, ipv6_addr_mask, get_ipv6_addr_mask);
  QUILLON_FIELD(std::vector<IPv6AddressItem>, ipv6_addr, get_ipv6_addr);

  QUILLON_FACES(ipv6_addr_);
};

}  // namespace quillon
