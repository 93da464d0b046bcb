#include <quillon/appsignal/internal/row_list.h>
#include <quillon/appsignal/target.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorIntTargetSmartcard::describe(V& v, S& s) {
  v.field("super_CA_system_id", s.super_ca_system_id_);
  v.bytes("private_data_byte", s.private_data_byte_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetSmartcard, "target_smartcard_descriptor")

template <class V, class S>
void DescriptorIntTargetSerialNumber::describe(V& v, S& s) {
  v.bytes("serial_data_byte", s.serial_data_byte_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetSerialNumber, "target_serial_number_descriptor")

DescriptorIntTargetMACAddress::DescriptorIntTargetMACAddress(ByteView d) : DescriptorIntBase(d) {
  mac_addr_mask_.parse(d.from(2));
  // Quirk: DescriptorIntTargetMACAddress, DescriptorIntTargetMACAddressRange incomplete rows
  detail::read_whole_rows(mac_addr_, d, MACAddress::size, MACAddress::size, d.standard());
}

template <class V, class S>
void DescriptorIntTargetMACAddress::describe(V& v, S& s) {
  v.field("MAC_addr_mask", s.mac_addr_mask_);
  v.list("MAC_addr", "MAC_addr", s.mac_addr_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetMACAddress, "target_MAC_address_descriptor")

template <class V, class S>
void DescriptorIntTargetMACAddress::MACAddressItem::describe(V& v, S& s) {
  v.field("addressitem", s.addressitem_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetMACAddress::MACAddressItem)

DescriptorIntTargetMACAddressRange::DescriptorIntTargetMACAddressRange(ByteView d) : DescriptorIntBase(d) {
  // Quirk: DescriptorIntTargetMACAddress, DescriptorIntTargetMACAddressRange incomplete rows
  detail::read_whole_rows(macaddressrange_, d, 0, 2 * MACAddress::size, d.standard());
}

template <class V, class S>
void DescriptorIntTargetMACAddressRange::describe(V& v, S& s) {
  v.list("macaddressrange", "macaddressrange", s.macaddressrange_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetMACAddressRange, "target_MAC_address_range_descriptor")

template <class V, class S>
void DescriptorIntTargetMACAddressRange::MACAddressRange::describe(V& v, S& s) {
  v.field("MAC_addr_low", s.mac_addr_low_);
  v.field("MAC_addr_high", s.mac_addr_high_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetMACAddressRange::MACAddressRange)

DescriptorIntTargetIPAddress::DescriptorIntTargetIPAddress(ByteView d) : DescriptorIntBase(d) {
  ipv4_addr_mask_.parse(d.from(2));
  detail::read_whole_rows(ipv4_addr_, d, IPv4Address::size, IPv4Address::size);
}

template <class V, class S>
void DescriptorIntTargetIPAddress::describe(V& v, S& s) {
  v.field("IPv4_addr_mask", s.ipv4_addr_mask_);
  v.list("IPv4_addr", "IPv4_addr", s.ipv4_addr_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetIPAddress, "target_IP_address_descriptor")

template <class V, class S>
void DescriptorIntTargetIPAddress::IPv4AddressItem::describe(V& v, S& s) {
  v.field("addressitem", s.addressitem_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetIPAddress::IPv4AddressItem)

DescriptorIntTargetIPv6Address::DescriptorIntTargetIPv6Address(ByteView d) : DescriptorIntBase(d) {
  ipv6_addr_mask_.parse(d.from(2));
  detail::read_whole_rows(ipv6_addr_, d, IPv6Address::size, IPv6Address::size);
}

template <class V, class S>
void DescriptorIntTargetIPv6Address::describe(V& v, S& s) {
  v.field("IPv6_addr_mask", s.ipv6_addr_mask_);
  v.list("IPv6_addr", "IPv6_addr", s.ipv6_addr_);
}
QUILLON_SILENT_FACES_OF(DescriptorIntTargetIPv6Address, "target_IPv6_address_descriptor")

template <class V, class S>
void DescriptorIntTargetIPv6Address::IPv6AddressItem::describe(V& v, S& s) {
  v.field("addressitem", s.addressitem_);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorIntTargetIPv6Address::IPv6AddressItem)

}  // namespace quillon
