#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/internal/dump_descriptors.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/tables/internal/transport_stream_loop.h>
#include <quillon/tables/nit.h>

namespace quillon {

void Nit::_parse(ByteView body, bool keep_raw) {
  const int descriptors_length = body.bits(0, 3, 12);
  // A descriptor that overruns this loop goes unnoticed: the rows begin where the length says.
  const RowContext context{body, keep_raw, tolerance()};
  parse_descriptors(body, 2, 2 + descriptors_length, context);
  // Quirk: Nit rows
  const auto offer = standard() ? detail::Offer::rest_of_loop : detail::Offer::whole_loop;
  detail::parse_transport_streams(streams_, 2 + descriptors_length, offer, context);
}

const char* Nit::get_table_id_text() const {
  switch (get_table_id()) {
    case 0x40:
      return "network_information_section - actual_transport_network";
    case 0x41:
      return "network_information_section - other_transport_network";
    default:
      return "ERROR";
  }
}

void Nit::_dump_state(std::ostream& stream) const {
  for (const Stream_info& row : streams_) row.dump_state(stream);
}

void Nit::Stream_info::dump_state(std::ostream& stream) const {
  dump_ids(stream);
  dump_descriptors(stream, get_general_descriptors(), get_satellite_delivery_system_descriptors(),
                   get_service_list_descriptors());
}

template <class V, class S>
void Nit::describe(V& v, S& s) {
  v.more("network_id", s.get_network_id(), registry_kind::network);
  v.rows("stream_infos", "stream", s.streams_);
  v.descriptors(s);
}
QUILLON_TABLE_FACES_OF(Nit)

}  // namespace quillon
