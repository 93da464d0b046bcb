#pragma once

#include <quillon/platform/api.h>

// The descriptors of ISO/IEC 13818-1 and -6: tag, class, name of the accessor, element; in the order in
// which a save writes the kinds.
#define QUILLON_MPEG2_KINDS(X)                                                                    \
  X(0x02, DescriptorVideoStream, video_stream_descriptors, "video_stream_descriptor")             \
  X(0x03, DescriptorAudioStream, audio_stream_descriptors, "audio_stream_descriptor")             \
  X(0x04, DescriptorHierarchy, hierarchy_descriptors, "hierarchy_descriptor")                     \
  X(0x05, DescriptorRegistration, registration_descriptors, "registration_descriptor")            \
  X(0x06, DescriptorDataStreamAlignment, data_stream_alignment_descriptors,                       \
    "data_stream_alignment_descriptor")                                                           \
  X(0x07, DescriptorTargetBackgroundGrid, target_background_grid_descriptors,                     \
    "target_background_grid_descriptor")                                                          \
  X(0x08, DescriptorVideoWindow, video_window_descriptors, "video_window_descriptor")             \
  X(0x09, DescriptorCa, CA_descriptors, "CA_descriptor")                                          \
  X(0x0A, DescriptorISO639Language, ISO_639_language_descriptors, "ISO_639_language_descriptor")  \
  X(0x0B, DescriptorSystemClock, system_clock_descriptors, "system_clock_descriptor")             \
  X(0x0C, DescriptorMultiplexBufferUtilization, multiplex_buffer_utilization_descriptors,         \
    "multiplex_buffer_utilization_descriptor")                                                    \
  X(0x0D, DescriptorCopyright, copyright_descriptors, "copyright_descriptor")                     \
  X(0x0E, DescriptorMaximumBitrate, maximum_bitrate_descriptors, "maximum_bitrate_descriptor")    \
  X(0x0F, DescriptorPrivateDataIndicator, private_data_indicator_descriptors,                     \
    "private_data_indicator_descriptor")                                                          \
  X(0x10, DescriptorSmoothingBuffer, smoothing_buffer_descriptors, "smoothing_buffer_descriptor") \
  X(0x11, DescriptorSTD, STD_descriptors, "STD_descriptor")                                       \
  X(0x12, DescriptorIBP, IBP_descriptors, "IBP_descriptor")                                       \
  X(0x13, DescriptorCarouselId, carousel_id_descriptors, "carousel_id_descriptor")                \
  X(0x14, DescriptorAssociationTag, association_tag_descriptors, "association_tag_descriptor")
