#pragma once

#include <quillon/platform/api.h>

// The descriptors of EN 301 192, 8.4.5: tag, class, name of the accessor, element; in the order in
// which a save writes the kinds.
#define QUILLON_INT_KINDS(X)                                                                                 \
  X(0x06, DescriptorIntTargetSmartcard, target_smartcard_descriptors, "target_smartcard_descriptor")         \
  X(0x07, DescriptorIntTargetMACAddress, target_MAC_address_descriptors, "target_MAC_address_descriptor")    \
  X(0x08, DescriptorIntTargetSerialNumber, target_serial_number_descriptors,                                 \
    "target_serial_number_descriptor")                                                                       \
  X(0x09, DescriptorIntTargetIPAddress, target_IP_address_descriptors, "target_IP_address_descriptor")       \
  X(0x0A, DescriptorIntTargetIPv6Address, target_IPv6_address_descriptors, "target_IPv6_address_descriptor") \
  X(0x0C, DescriptorIntIPMACPlatformName, IP_MAC_platform_name_descriptors,                                  \
    "IP_MAC_platform_name_descriptor")                                                                       \
  X(0x0D, DescriptorIntIPMACPlatformProviderName, IP_MAC_platform_provider_name_descriptors,                 \
    "IP_MAC_platform_provider_name_descriptor")                                                              \
  X(0x0E, DescriptorIntTargetMACAddressRange, target_MAC_address_range_descriptors,                          \
    "target_MAC_address_range_descriptor")                                                                   \
  X(0x0F, DescriptorIntTargetIPSlash, target_IP_slash_descriptors, "target_IP_slash_descriptor")             \
  X(0x10, DescriptorIntTargetIPSourceSlash, target_IP_source_slash_descriptors,                              \
    "target_IP_source_slash_descriptor")                                                                     \
  X(0x11, DescriptorIntTargetIPv6Slash, target_IPv6_slash_descriptors, "target_IPv6_slash_descriptor")       \
  X(0x12, DescriptorIntTargetIPv6SourceSlash, target_IPv6_source_slash_descriptors,                          \
    "target_IPv6_source_slash_descriptor")                                                                   \
  X(0x13, DescriptorIntIPMACStreamLocation, IP_MAC_stream_location_descriptors,                              \
    "IP_MAC_stream_location_descriptor")                                                                     \
  X(0x14, DescriptorIntISPAccessMode, ISP_access_mode_descriptors, "ISP_access_mode_descriptor")
