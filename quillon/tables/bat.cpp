#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/internal/describe.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/internal/transport_stream_loop.h>

namespace quillon {

void Bat::_parse(ByteView body, bool keep_raw) {
  const int descriptors_length = body.bits(0, 3, 12);
  // A descriptor that overruns this loop goes unnoticed: the rows begin where the length says.
  walk_descriptors(body, 2, 2 + descriptors_length, {body, positions_if(keep_raw), tolerance()});
  detail::parse_transport_streams(streams_, body, 2 + descriptors_length, keep_raw,
                                  detail::Offer::rest_of_loop, tolerance());
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
  if constexpr (V::load) {
    xml::ListFailures failures = xml::table_list_failures();
    failures.list = "failed to get infos node";
    v.rows("infos", "stream_info", s.streams_, failures);
  } else {
    v.rows("infos", "stream_info", s.streams_);
  }
  v.descriptors(s);
}
QUILLON_TABLE_XML_OF(Bat)

}  // namespace quillon
