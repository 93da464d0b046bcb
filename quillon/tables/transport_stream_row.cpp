#include <quillon/descriptors/internal/describe.h>
#include <quillon/tables/transport_stream_row.h>

namespace quillon::detail {

TransportStreamRow::TransportStreamRow(ByteView data, int& length, bool keep_raw, ByteView body,
                                       DescriptorFailures* failures) {
  if (length < 6) throw error("too little data");
  transport_stream_id_ = data.u16(0);
  original_network_id_ = data.u16(2);
  const int descriptors_length = data.bits(4, 3, 12);
  // An overrun of this loop is found by the table alone.
  walk_descriptors(data, 6, 6 + descriptors_length,
                   {body, keep_raw ? &descriptor_positions_ : nullptr, failures});
  length = descriptors_length + 6;
}

template <class V, class S>
void TransportStreamRow::describe(V& v, S& s) {
  v.labels("", " ");
  v.field("stream_id", s.transport_stream_id_);
  v.field(V::dump ? "original_network_id" : "network_id", s.original_network_id_);
  v.descriptors(s);
}
QUILLON_ROW_XML_OF(TransportStreamRow, TransportStreamRow)

void TransportStreamRow::dump_ids(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
}

}  // namespace quillon::detail
