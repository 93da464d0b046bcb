#include <quillon/descriptors/data/transport_stream.h>
#include <quillon/faces/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorTransportStream::describe(V& v, S& s) {
  v.bytes("transport_stream_data", s.data);
}
QUILLON_SILENT_FACES_OF(DescriptorTransportStream, "transport_stream_descriptor")

template <class V, class S>
void DescriptorDSNG::describe(V& v, S& s) {
  v.bytes("DSNG_data", s.data);
}
QUILLON_SILENT_FACES_OF(DescriptorDSNG, "DSNG_descriptor")

template <class V, class S>
void DescriptorPartialTransportStream::describe(V& v, S& s) {
  v.standard("peak_rate", s.peak_rate_);
  v.standard("minimum_overall_smoothing_rate", s.minimum_overall_smoothing_rate_);
  v.standard("maximum_overall_smoothing_buffer", s.maximum_overall_smoothing_buffer_);
}
QUILLON_WALK_OF(DescriptorPartialTransportStream)

template <class V, class S>
void DescriptorAdaptationFieldData::describe(V& v, S& s) {
  v.field("adaptation_field_data_identifier", s.adaptation_field_data_identifier);
}
QUILLON_SILENT_FACES_OF(DescriptorAdaptationFieldData, "adaptation_field_descriptor")

}  // namespace quillon
