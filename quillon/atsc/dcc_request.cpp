#include <quillon/atsc/dcc_request.h>

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

}  // namespace quillon
