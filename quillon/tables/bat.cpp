#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/internal/dump_descriptors.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/internal/transport_stream_loop.h>

namespace quillon {

void Bat::_parse(ByteView body, bool keep_raw) {
  const int descriptors_length = body.bits(0, 3, 12);
  // A descriptor that overruns this loop goes unnoticed: the rows begin where the length says.
  const RowContext context{body, keep_raw, tolerance()};
  parse_descriptors(body, 2, 2 + descriptors_length, context);
  detail::parse_transport_streams(streams_, 2 + descriptors_length, detail::Offer::rest_of_loop, context);
}

const char* Bat::get_table_id_text() const {
  return get_table_id() == 0x4A ? "bouquet_association_section" : "ERROR";
}

void Bat::_dump_state(std::ostream& stream) const {
  for (const Stream_info& row : streams_) row.dump_state(stream);
}

void Bat::Stream_info::dump_state(std::ostream& stream) const {
  dump_ids(stream);
  dump_descriptors(stream, get_general_descriptors());
}

template <class V, class S>
void Bat::describe(V& v, S& s) {
  v.more("bouquet_id", s.get_bouquet_id(), registry_kind::bouquet);
  if constexpr (V::load) {
    xml::ListFailures failures = xml::table_list_failures();
    failures.list = "failed to get infos node";
    v.rows("infos", "stream_info", s.streams_, failures);
  } else {
    v.rows("infos", "stream_info", s.streams_);
  }
  v.descriptors(s);
}
QUILLON_TABLE_FACES_OF(Bat)

}  // namespace quillon
