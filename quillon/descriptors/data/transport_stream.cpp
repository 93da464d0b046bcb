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
void DescriptorPartialTransportStream::describe(V&, S&) {}
QUILLON_WALK_OF(DescriptorPartialTransportStream)

template <class V, class S>
void DescriptorAdaptationFieldData::describe(V& v, S& s) {
  v.field("adaptation_field_data_identifier", s.adaptation_field_data_identifier);
}
QUILLON_SILENT_FACES_OF(DescriptorAdaptationFieldData, "adaptation_field_descriptor")

}  // namespace quillon
