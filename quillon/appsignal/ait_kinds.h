#pragma once

#include <quillon/platform/api.h>

// The descriptors of TS 102 812, 10.7, and one of EN 300 468: tag, class, name of the accessor, element; in
// the order in which a save writes the kinds.
#define QUILLON_AIT_KINDS(X)                                                                               \
  X(0x00, DescriptorAitApplication, application_descriptors, "application_descriptor")                     \
  X(0x01, DescriptorAitApplicationName, application_name_descriptors, "application_name_descriptor")       \
  X(0x0B, DescriptorAitApplicationIcons, application_icons_descriptors, "application_icons_descriptor")    \
  X(0x05, DescriptorAitExternalApplicationAuthorisation, external_application_authorisation_descriptors,   \
    "external_application_authorisation_descriptor")                                                       \
  X(0x02, DescriptorAitTransportProtocol, transport_protocol_descriptors, "transport_protocol_descriptor") \
  X(0x06, DescriptorAitRoutingIPv4, routing_descriptors_IPv4, "routing_descriptor_IPv4")                   \
  X(0x07, DescriptorAitRoutingIPv6, routing_descriptors_IPv6, "routing_descriptor_IPv6")                   \
  X(0x0D, DescriptorAitDIILocation, DII_location_descriptors, "DII_location_descriptor")                   \
  X(0x0C, DescriptorAitPreFetch, pre_fetch_descriptors, "pre_fetch_descriptor")                            \
  X(0x03, DescriptorDVB_J_Application, DVB_J_application_descriptors, "DVB_J_application_descriptor")      \
  X(0x04, DescriptorDVB_J_ApplicationLocation, DVB_J_application_location_descriptors,                     \
    "DVB_J_application_location_descriptor")                                                               \
  X(0x08, DescriptorDVB_HTML_Application, DVB_HTML_application_descriptors,                                \
    "DVB_HTML_application_descriptor")                                                                     \
  X(0x09, DescriptorDVB_HTML_ApplicationLocation, DVB_HTML_application_location_descriptors,               \
    "DVB_HTML_application_location_descriptor")                                                            \
  X(0x0A, DescriptorDVB_HTML_ApplicationLocationBoundary, DVB_HTML_application_boundary_descriptors,       \
    "DVB_HTML_application_boundary_descriptor")                                                            \
  X(0x5F, DescriptorPrivateDataSpecifier, private_data_specifier_descriptors,                              \
    "private_data_specifier_descriptor")
