#pragma once

#include <quillon/platform/api.h>

// The descriptors of EN 300 468: tag, class, name of the accessor, element; in the order in which a
// save writes the kinds.
#define QUILLON_DVB_KINDS(X)                                                                                 \
  X(0x40, DescriptorNetworkName, network_name_descriptors, "network_name_descriptor")                        \
  X(0x41, DescriptorServiceList, service_list_descriptors, "service_list_descriptor")                        \
  X(0x47, DescriptorBouquetName, bouquet_name_descriptors, "bouquet_descriptor")                             \
  X(0x48, DescriptorService, service_descriptors, "service_descriptor")                                      \
  X(0x42, DescriptorStuffing, stuffing_descriptors, "stuffing_descriptor")                                   \
  X(0x43, DescriptorSatelliteDeliverySystem, satellite_delivery_system_descriptors,                          \
    "satellite_delivery_system_descriptor")                                                                  \
  X(0x44, DescriptorCableDeliverySystem, cable_delivery_system_descriptors,                                  \
    "cable_delivery_system_descriptor")                                                                      \
  X(0x49, DescriptorCountryAvailability, country_availability_descriptors,                                   \
    "country_availability_descriptor")                                                                       \
  X(0x4A, DescriptorLinkage, linkage_descriptors, "linkage_descriptor")                                      \
  X(0x4B, DescriptorNVODReference, nvod_reference_descriptors, "NVOD_reference_descriptor")                  \
  X(0x4C, DescriptorTimeShiftedService, time_shifted_service_descriptors, "time_shifted_service_descriptor") \
  X(0x51, DescriptorMosiac, mosiac_descriptors, "mosiac_descriptor")                                         \
  X(0x52, DescriptorStreamIdentifier, stream_identifier_descriptors, "stream_identifier_descriptor")         \
  X(0x55, DescriptorParentalRating, parental_rating_descriptors, "parental_rating_descriptor")               \
  X(0x57, DescriptorTelephone, telephone_descriptors, "telephone_descriptor")                                \
  X(0x59, DescriptorSubtitling, subtitling_descriptors, "subtitling_descriptor")                             \
  X(0x5A, DescriptorTerrestrialDeliverySystem, terrestrial_delivery_system_descriptors,                      \
    "terrestrial_delivery_system_descriptor")                                                                \
  X(0x5B, DescriptorMultilingualNetworkName, multilingual_network_name_descriptors,                          \
    "multilingual_network_name_descriptor")                                                                  \
  X(0x5C, DescriptorMultilingualBouquetName, multilingual_bouquet_name_descriptors,                          \
    "multilingual_bouquet_name_descriptor")                                                                  \
  X(0x5D, DescriptorMultilingualServiceName, multilingual_service_name_descriptors,                          \
    "multilingual_service_name_descriptor")                                                                  \
  X(0x5E, DescriptorMultilingualComponent, multilingual_component_descriptors,                               \
    "multilingual_component_descriptor")                                                                     \
  X(0x5F, DescriptorPrivateDataSpecifier, private_data_specifier_descriptors,                                \
    "private_data_specifier_descriptor")                                                                     \
  X(0x60, DescriptorServiceMove, service_move_descriptors, "service_move_descriptor")                        \
  X(0x61, DescriptorShortSmoothingBuffer, short_smoothing_buffer_descriptors,                                \
    "short_smoothing_buffer_descriptor")                                                                     \
  X(0x45, DescriptorVBIData, VBI_data_descriptors, "VBI_data_descriptor")                                    \
  X(0x46, DescriptorVBITeletext, VBI_teletext_descriptors, "VBI_teletext_descriptor")                        \
  X(0x62, DescriptorFrequencyList, frequency_list_descriptors, "frequency_list_descriptor")                  \
  X(0x63, DescriptorPartialTransportStream, partial_transport_stream_descriptors,                            \
    "partial_transport_stream_descriptor")                                                                   \
  X(0x64, DescriptorDataBroadcast, data_broadcast_descriptors, "data_broadcast_descriptor")                  \
  X(0x66, DescriptorDataBroadcastId, data_broadcast_id_descriptors, "data_broadcast_id_descriptor")          \
  X(0x67, DescriptorTransportStream, transport_stream_descriptors, "transport_stream_descriptor")            \
  X(0x68, DescriptorDSNG, DSNG_descriptors, "DSNG_descriptor")                                               \
  X(0x69, DescriptorPDC, PDC_descriptors, "PDC_descriptor")                                                  \
  X(0x6A, DescriptorAC3, AC3_descriptors, "AC3_descriptor")                                                  \
  X(0x6B, DescriptorAncillaryData, ancillary_data_descriptors, "ancillary_data_descriptor")                  \
  X(0x6C, DescriptorCellList, cell_list_descriptors, "cell_list_descriptor")                                 \
  X(0x6D, DescriptorCellFrequncyLink, cell_frequency_link_descriptors, "cell_frequency_link_descriptor")     \
  X(0x6E, DescriptorAnnouncementSupport, announcement_support_descriptors,                                   \
    "announcement_support_descriptor")                                                                       \
  X(0x6F, DescriptorApplicationSignalling, application_signalling_descriptors,                               \
    "application_signalling_descriptor")                                                                     \
  X(0x70, DescriptorAdaptationFieldData, adaptation_field_data_descriptors,                                  \
    "adaptation_field_data_descriptor")                                                                      \
  X(0x71, DescriptorServiceIdentifier, service_identifier_descriptors, "service_identifier_descriptor")      \
  X(0x72, DescriptorServiceAvailability, service_availability_descriptors,                                   \
    "service_availability_descriptor")                                                                       \
  X(0x53, DescriptorCAIdentifier, CA_identifiers_descriptors, "CA_identifier_descriptor")                    \
  X(0x54, DescriptorContent, content_descriptors, "content_descriptor")                                      \
  X(0x4D, DescriptorShortEvent, short_event_descriptors, "short_event_descriptor")                           \
  X(0x4E, DescriptorExtendedEvent, extended_event_descriptors, "extended_event_descriptor")                  \
  X(0x4F, DescriptorTimeShiftedEvent, time_shifted_event_descriptors, "time_shifted_event_descriptor")       \
  X(0x50, DescriptorComponent, component_descriptors, "component_descriptor")                                \
  X(0x58, DescriptorLocalTimeOffset, local_time_offset_descriptors, "local_time_offset_descriptor")          \
  X(0x56, DescriptorTeletext, teletext_descriptors, "teletext_descriptor")                                   \
  X(0x73, DescriptorDefaultAuthority, default_authority_descriptors, "default_authority_descriptor")         \
  X(0x74, DescriptorRelatedContent, related_content_descriptors, "related_content_descriptor")               \
  X(0x75, DescriptorTVAId, TVA_id_descriptors, "TVA_id_descriptor")                                          \
  X(0x76, DescriptorContentIdentifier, content_identifier_descriptors, "content_identifier_descriptor")      \
  X(0x77, DescriptorTimeSliceFecIdentifier, time_slice_fec_identifier_descriptors,                           \
    "time_slice_fec_identifier_descriptor")                                                                  \
  X(0x78, DescriptorECMRepetitionRate, ECM_repetition_rate_descriptors, "ECM_repetition_rate_descriptor")    \
  X(0x79, DescriptorS2SatelliteDeliverySystem, S2_satellite_delivery_system_descriptors,                     \
    "S2_satellite_delivery_system_descriptor")                                                               \
  X(0x7A, DescriptorEnhancedAC3, enhanced_AC_3_descriptors, "enhanced_AC_3_descriptor")                      \
  X(0x7B, DescriptorDTS, DTS_descriptors, "DTS_descriptor")                                                  \
  X(0x7C, DescriptorAAC, AAC_descriptors, "AAC_descriptor")
