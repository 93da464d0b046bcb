#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The clock that timestamps come from (ISO/IEC 13818-1, 2.6.20): accuracy is integer x 10^-exponent ppm.
class QUILLON_API DescriptorSystemClock final : public DescriptorBase {
 public:
  DescriptorSystemClock() = default;
  explicit DescriptorSystemClock(ByteView d)
      : DescriptorBase(d),
        external_clock_reference_indicator_(d.bits(2, 7, 1)),
        clock_accuracy_integer_(d.bits(2, 5, 6)),
        clock_accuracy_exponent_(d.bits(3, 7, 3)) {}

  QUILLON_FIELD(int, external_clock_reference_indicator, get_external_clock_reference_indicator);
  QUILLON_FIELD(int, clock_accuracy_integer, get_clock_accuracy_integer);
  QUILLON_FIELD(int, clock_accuracy_exponent, get_clock_accuracy_exponent);

  QUILLON_FACES();
};

// Bounds on the occupancy of the multiplex buffer (ISO/IEC 13818-1, 2.6.22), in units of (27 MHz / 300).
class QUILLON_API DescriptorMultiplexBufferUtilization final : public DescriptorBase {
 public:
  DescriptorMultiplexBufferUtilization() = default;
  explicit DescriptorMultiplexBufferUtilization(ByteView d)
      : DescriptorBase(d),
        bound_valid_flag_(d.bits(2, 7, 1)),
        ltw_offset_lower_bound_(d.bits(2, 6, 15)),
        ltw_offset_upper_bound_(d.bits(4, 6, 15)) {}

  QUILLON_FIELD(int, bound_valid_flag, get_bound_valid_flag);
  QUILLON_FIELD(int, ltw_offset_lower_bound, get_ltw_offset_lower_bound);
  QUILLON_FIELD(int, ltw_offset_upper_bound, get_ltw_offset_upper_bound);

  QUILLON_FACES();
};

// An upper bound of the bit rate (ISO/IEC 13818-1, 2.6.26), in units of 50 bytes a second.
class QUILLON_API DescriptorMaximumBitrate final : public DescriptorBase {
 public:
  DescriptorMaximumBitrate() = default;
  explicit DescriptorMaximumBitrate(ByteView d) : DescriptorBase(d), maximum_bitrate_(d.bits(2, 5, 22)) {}

  QUILLON_FIELD(int, maximum_bitrate, get_maximum_bitrate);

  QUILLON_FACES();
};

// The smoothing buffer of an elementary stream (ISO/IEC 13818-1, 2.6.30): leak rate in units of 400 bit/s,
// size in bytes.
class QUILLON_API DescriptorSmoothingBuffer final : public DescriptorBase {
 public:
  DescriptorSmoothingBuffer() = default;
  explicit DescriptorSmoothingBuffer(ByteView d)
      : DescriptorBase(d), sb_leak_rate_(d.bits(2, 5, 22)), sb_size_(d.bits(5, 5, 22)) {}

  QUILLON_FIELD(int, sb_leak_rate, get_sb_leak_rate);
  QUILLON_FIELD(int, sb_size, get_sb_size);

  QUILLON_FACES();
};

// How a video stream leaves its multiplex buffer (ISO/IEC 13818-1, 2.6.32).
class QUILLON_API DescriptorSTD final : public DescriptorBase {
 public:
  DescriptorSTD() = default;
  explicit DescriptorSTD(ByteView d) : DescriptorBase(d), leak_valid_flag_(d.bits(2, 0, 1)) {}

  QUILLON_FIELD(int, leak_valid_flag, get_leak_valid_flag);

  QUILLON_FACES();
};

}  // namespace quillon
