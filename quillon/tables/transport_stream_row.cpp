#include <quillon/faces/internal/describe.h>
#include <quillon/tables/transport_stream_row.h>

namespace quillon {

TransportStreamRow::TransportStreamRow(ByteView data, int& length, const RowContext& row) {
  if (length < 6) throw error("too little data");
  transport_stream_id_ = data.u16(0);
  original_network_id_ = data.u16(2);
  const int descriptors_length = data.bits(4, 3, 12);
  // An overrun of this loop is found by the table alone.
  parse_descriptors(data, 6, 6 + descriptors_length, row);
  length = descriptors_length + 6;
}

template <class V, class S>
void TransportStreamRow::describe(V& v, S& s) {
  v.labels("", " ");
  v.field("stream_id", s.transport_stream_id_);
  v.coded(V::dump ? "original_network_id" : "network_id", s.original_network_id_,
          registry_kind::original_network);
  v.descriptors(s);
}
QUILLON_ROW_FACES_OF(TransportStreamRow, TransportStreamRow)

void TransportStreamRow::dump_ids(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
}

}  // namespace quillon
