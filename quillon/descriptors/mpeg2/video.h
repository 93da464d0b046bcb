#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Coding parameters of a video elementary stream (ISO/IEC 13818-1, 2.6.2). Bytes 3 and 4 are read whatever
// the MPEG_1_only_flag says, but for the standard reading, where their fields are 0 if it is set.
class QUILLON_API DescriptorVideoStream final : public DescriptorBase {
 public:
  DescriptorVideoStream() = default;
  explicit DescriptorVideoStream(ByteView d)
      : DescriptorBase(d),
        multiple_frame_rate_flag_(d.bits(2, 7, 1)),
        frame_rate_code_(d.bits(2, 6, 4)),
        mpeg_1_only_flag_(d.bits(2, 2, 1)),
        constrained_parameter_flag_(d.bits(2, 1, 1)),
        still_picture_flag_(d.bits(2, 0, 1)),
        profile_and_level_indication_(d[3]),
        chroma_format_(d.bits(4, 7, 2)),
        frame_rate_extension_flag_(d.bits(4, 5, 1)),
        reserved_(d.bits(4, 4, 5)) {
    // Quirk: DescriptorVideoStream profile_and_level_indication, chroma_format, frame_rate_extension_flag
    if (d.standard() && mpeg_1_only_flag_)
      profile_and_level_indication_ = chroma_format_ = frame_rate_extension_flag_ = reserved_ = 0;
  }

  QUILLON_FIELD(int, multiple_frame_rate_flag, get_multiple_frame_rate_flag);
  QUILLON_FIELD(int, frame_rate_code, get_frame_rate_code);
  QUILLON_FIELD(int, mpeg_1_only_flag, get_mpeg_1_only_flag);
  QUILLON_FIELD(int, constrained_parameter_flag, get_constrained_parameter_flag);
  QUILLON_FIELD(int, still_picture_flag, get_still_picture_flag);
  QUILLON_FIELD(int, profile_and_level_indication, get_profile_and_level_indication);
  QUILLON_FIELD(int, chroma_format, get_chroma_format);
  QUILLON_FIELD(int, frame_rate_extension_flag, get_frame_rate_extension_flag);
  QUILLON_FIELD(int, reserved, get_reserved);

  QUILLON_FACES();
};

// The grid of unit pixels that a video window is placed on (ISO/IEC 13818-1, 2.6.12). Sizes are in pixels.
class QUILLON_API DescriptorTargetBackgroundGrid final : public DescriptorBase {
 public:
  DescriptorTargetBackgroundGrid() = default;
  explicit DescriptorTargetBackgroundGrid(ByteView d)
      : DescriptorBase(d),
        horizontal_size_(d.bits(2, 7, 14)),
        vertical_size_(d.bits(3, 1, 14)),
        aspect_ratio_information_(d.bits(5, 3, 4)) {}

  QUILLON_FIELD(int, horizontal_size, get_horizontal_size);
  QUILLON_FIELD(int, vertical_size, get_vertical_size);
  QUILLON_FIELD(int, aspect_ratio_information, get_aspect_ratio_information);

  QUILLON_FACES();
};

// The place of a video window on the grid (ISO/IEC 13818-1, 2.6.14). Offsets are in pixels; 0 is the lowest
// priority.
class QUILLON_API DescriptorVideoWindow final : public DescriptorBase {
 public:
  DescriptorVideoWindow() = default;
  explicit DescriptorVideoWindow(ByteView d)
      : DescriptorBase(d),
        horizontal_offset_(d.bits(2, 7, 14)),
        vertical_offset_(d.bits(3, 1, 14)),
        window_priority_(d.bits(5, 3, 4)) {}

  QUILLON_FIELD(int, horizontal_offset, get_horizontal_offset);
  QUILLON_FIELD(int, vertical_offset, get_vertical_offset);
  QUILLON_FIELD(int, window_priority, get_window_priority);

  QUILLON_FACES();
};

// What the access units of a stream begin with (ISO/IEC 13818-1, 2.6.10).
class QUILLON_API DescriptorDataStreamAlignment final : public DescriptorBase {
 public:
  DescriptorDataStreamAlignment() = default;
  explicit DescriptorDataStreamAlignment(ByteView d) : DescriptorBase(d), alignment_type_(d[2]) {}

  const char* get_alignment_type_string() const;

  QUILLON_FIELD(int, alignment_type, get_alignment_type);

  QUILLON_FACES();
};

// Constraints on the sequence of frame types (ISO/IEC 13818-1, 2.6.34).
class QUILLON_API DescriptorIBP final : public DescriptorBase {
 public:
  DescriptorIBP() = default;
  explicit DescriptorIBP(ByteView d)
      : DescriptorBase(d),
        closed_gop_flag_(d.bits(2, 7, 1)),
        identical_gop_flag_(d.bits(2, 6, 1)),
        max_gop_length_(d.bits(2, 5, 14)) {}

  QUILLON_FIELD(int, closed_gop_flag, get_closed_gop_flag);
  QUILLON_FIELD(int, identical_gop_flag, get_identical_gop_flag);
  QUILLON_FIELD(int, max_gop_length, get_max_gop_length);

  QUILLON_FACES();
};

}  // namespace quillon
