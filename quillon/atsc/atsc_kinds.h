#pragma once

#include <quillon/platform/api.h>

// The descriptors of A/65 and A/53: tag, class, name of the accessor, element; in the order in which
// a save writes the kinds.
#define QUILLON_ATSC_KINDS(X)                                                                               \
  X(0x80, DescriptorAtscStuffing, atsc_stuffing_descriptor, "atsc_stuffing_descriptor")                     \
  X(0x81, DescriptorAtscAC3Audio, atsc_AC3_audio_descriptor, "atsc_AC3_audio_descriptor")                   \
  X(0x86, DescriptorAtscCaptionService, atsc_caption_service_descriptor, "atsc_caption_service_descriptor") \
  X(0x87, DescriptorAtscContentAdvisory, atsc_content_advisory_descriptor,                                  \
    "atsc_content_advisory_descriptor")                                                                     \
  X(0xA0, DescriptorAtscExtendedChannelName, atsc_extended_channel_name_descriptor,                         \
    "atsc_extended_channel_name_descriptor")                                                                \
  X(0xA1, DescriptorAtscServiceLocation, atsc_service_location_descriptor,                                  \
    "atsc_service_location_descriptor")                                                                     \
  X(0xA2, DescriptorAtscTimeShiftedService, atsc_time_shifted_service_descriptor,                           \
    "atsc_time_shifted_service_descriptor")                                                                 \
  X(0xA3, DescriptorAtscComponentName, atsc_component_name_descriptor, "atsc_component_name_descriptor")    \
  X(0xA8, DescriptorAtscDCCDepartingRequest, atsc_DCC_departing_request_descriptor,                         \
    "atsc_DCC_departing_request_descriptor")                                                                \
  X(0xA9, DescriptorAtscDCCArrivingRequest, atsc_DCC_arriving_request_descriptor,                           \
    "atsc_DCC_arriving_request_descriptor")                                                                 \
  X(0xAA, DescriptorAtscRedistributionControl, atsc_redistribution_control_descriptor,                      \
    "atsc_redistribution_control_descriptor")                                                               \
  X(0xAD, DescriptorAtscATSCPrivateInformation, atsc_ATSC_private_information_descriptor,                   \
    "atsc_ATSC_private_information_descriptor")                                                             \
  X(0xB6, DescriptorAtscContentIdentifier, atsc_content_identifier_descriptor,                              \
    "atsc_content_identifier_descriptor")                                                                   \
  X(0xAB, DescriptorAtscGenre, atsc_genre_descriptor, "atsc_genre_descriptor")
