#include <quillon/descriptors/delivery/time_slice_fec.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/descriptors/internal/counted_bytes.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

using detail::text_of;

namespace {

const char* frame_size_text(int code) {
  return text_of(code, {"512 kbits", "1024 kbits", "1536 kbits", "2 048 kbits"}, "reserved for future use");
}

const char* max_average_rate_text(int code) {
  return text_of(
      code, {"16 kbps", "32 kbps", "64 kbps", "128 kbps", "256 kbps", "512 kbps", "1024 kbps", "2048 kbps"},
      "reserved for future use");
}

}  // namespace

DescriptorTimeSliceFecIdentifier::DescriptorTimeSliceFecIdentifier(ByteView d)
    : DescriptorBase(d),
      time_slicing(d.bits(2, 7, 1)),
      mpe_fec(d.bits(2, 6, 2)),
      frame_size(d.bits(2, 2, 3)),
      max_burst_duration(d[3]),
      max_average_rate(d.bits(4, 7, 4)),
      time_slice_fec_id(d.bits(4, 3, 4)) {
  if (descriptor_length < 3) throw error("descriptor length to small");  // sic: tools match on the text
  // Quirk: DescriptorTimeSliceFecIdentifier id_selector_byte, DescriptorECMRepetitionRate private bytes
  id_selector_byte = detail::counted_bytes(d, 5, descriptor_length - 3);
}

template <class V, class S>
void DescriptorTimeSliceFecIdentifier::describe(V& v, S& s) {
  v.field("time_slicing", s.time_slicing);
  v.field("mpe_fec", s.mpe_fec);
  v.coded("frame_size", s.frame_size, frame_size_text);
  v.field("max_burst_duration", s.max_burst_duration);
  v.coded("max_average_rate", s.max_average_rate, max_average_rate_text);
  v.field("time_slice_fec_id", s.time_slice_fec_id);
  v.bytes("id_selector_byte", s.id_selector_byte);
}
QUILLON_SILENT_FACES_OF(DescriptorTimeSliceFecIdentifier, "time_slice_fec_identifier_descriptor")

const char* DescriptorTimeSliceFecIdentifier::get_frame_size_cstr() const {
  return frame_size_text(frame_size);
}

const char* DescriptorTimeSliceFecIdentifier::get_max_average_rate_cstr() const {
  return max_average_rate_text(max_average_rate);
}

}  // namespace quillon
