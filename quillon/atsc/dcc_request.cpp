#include <quillon/atsc/dcc_request.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

DescriptorAtscDCCDepartingRequest::DescriptorAtscDCCDepartingRequest(ByteView d)
    : DescriptorAtscWireOnly(d), dcc_departing_request_type(d[2]), dcc_departing_request_text_length(d[3]) {
  int length = dcc_departing_request_text_length;
  dcc_departing_request_text.parse(d.from(4), length);
  if (length != dcc_departing_request_text_length)
    throw error("DescriptorAtscDCCDepartingRequest: service start end mismatch");
}

DescriptorAtscDCCArrivingRequest::DescriptorAtscDCCArrivingRequest(ByteView d)
    : DescriptorAtscWireOnly(d), dcc_arriving_request_type(d[2]), dcc_arriving_request_text_length(d[3]) {
  int length = dcc_arriving_request_text_length;
  dcc_arriving_request_text.parse(d.from(4), length);
  if (length != dcc_arriving_request_text_length)
    throw error("DescriptorAtscDCCArrivingRequest: service start end mismatch");
}

template <class V, class S>
void DescriptorAtscDCCDepartingRequest::describe(V& v, S& s) {
  v.field("dcc_departing_request_type", s.dcc_departing_request_type);
  v.field("dcc_departing_request_text_length", s.dcc_departing_request_text_length);
  v.field("dcc_departing_request_text", s.dcc_departing_request_text);
}
QUILLON_WALK_OF(DescriptorAtscDCCDepartingRequest)

template <class V, class S>
void DescriptorAtscDCCArrivingRequest::describe(V& v, S& s) {
  v.field("dcc_arriving_request_type", s.dcc_arriving_request_type);
  v.field("dcc_arriving_request_text_length", s.dcc_arriving_request_text_length);
  v.field("dcc_arriving_request_text", s.dcc_arriving_request_text);
}
QUILLON_WALK_OF(DescriptorAtscDCCArrivingRequest)

}  // namespace quillon
