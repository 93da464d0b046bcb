#include <quillon/descriptors/mpeg2/buffer.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

// Saved documents spell accuracy with one c.
template <class V, class S>
void DescriptorSystemClock::describe(V& v, S& s) {
  v.field("external_clock_reference_indicator", s.external_clock_reference_indicator_);
  v.field("clock_acuracy_integer", s.clock_accuracy_integer_);
  v.field("clock_acuracy_exponent", s.clock_accuracy_exponent_);
}
QUILLON_SILENT_FACES_OF(DescriptorSystemClock, "system_clock_descriptor")

template <class V, class S>
void DescriptorMultiplexBufferUtilization::describe(V& v, S& s) {
  v.field("bound_valid_flag", s.bound_valid_flag_);
  v.field("LTW_offset_lower_bound", s.ltw_offset_lower_bound_);
  v.field("LTW_offset_upper_bound", s.ltw_offset_upper_bound_);
}
QUILLON_SILENT_FACES_OF(DescriptorMultiplexBufferUtilization, "multiplex_buffer_utilization_descriptor")

template <class V, class S>
void DescriptorMaximumBitrate::describe(V& v, S& s) {
  v.field("maximum_bitrate", s.maximum_bitrate_);
}
QUILLON_SILENT_FACES_OF(DescriptorMaximumBitrate, "maximum_bitrate_descriptor")

template <class V, class S>
void DescriptorSmoothingBuffer::describe(V& v, S& s) {
  v.field("sb_leak_rate", s.sb_leak_rate_);
  v.field("sb_size", s.sb_size_);
}
QUILLON_SILENT_FACES_OF(DescriptorSmoothingBuffer, "smoothing_buffer_descriptor")

template <class V, class S>
void DescriptorSTD::describe(V& v, S& s) {
  v.field("leak_valid_flag", s.leak_valid_flag_);
}
QUILLON_FACES_OF(DescriptorSTD, "STD_descriptor")

}  // namespace quillon
