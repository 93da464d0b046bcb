#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/internal/dump_descriptors.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/tables/sdt.h>

namespace quillon {

namespace {

constexpr int kServiceHeader = 5;

int service_size(ByteView row) {
  return row.bits(3, 3, 12) + kServiceHeader;
}

}  // namespace

void Sdt::_parse(ByteView body, bool keep_raw) {
  original_network_id_ = body.u16(0);
  const RowContext context{body, keep_raw, tolerance()};
  if (!read_sized_rows(services_, body, 3, body_size() - 3, service_size, context))
    throw error("descriptor start end mismatch");
}

Sdt::Service_info::Service_info(ByteView data, int& length, const RowContext& row) {
  if (length < kServiceHeader) throw error("too little data");
  service_id_ = data.u16(0);
  eit_schedule_flag_ = data.bits(2, 1, 1);
  eit_present_following_flag_ = data.bits(2, 0, 1);
  running_status_ = data.bits(3, 7, 3);
  free_ca_mode_ = data.bits(3, 4, 1);
  // An overrun of this loop is found by the table alone.
  parse_descriptors(data, kServiceHeader, service_size(data), row);
  length = service_size(data);
}

const char* Sdt::get_table_id_text() const {
  switch (get_table_id()) {
    case 0x42:
      return "service_description_section - actual_transport_stream";
    case 0x46:
      return "service_description_section - other_transport_stream";
    default:
      return "ERROR";
  }
}

template <class V, class S>
void Sdt::describe(V& v, S& s) {
  v.labels("", " ");
  v.more("transport_stream_id", s.get_transport_stream_id());
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.rows("service_infos", "service_info", s.services_);
}
QUILLON_TABLE_FACES_OF(Sdt)

void Sdt::_dump_state(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
  for (const Service_info& service : services_) service.dump_state(stream);
}

template <class V, class S>
void Sdt::Service_info::describe(V& v, S& s) {
  v.labels("", " ");
  v.field("service_id", s.service_id_);
  v.field("EIT_schedule_flag", s.eit_schedule_flag_);
  v.field("EIT_present_following_flag", s.eit_present_following_flag_);
  v.field("running_status", s.running_status_);
  v.field("free_CA_mode", s.free_ca_mode_);
  v.descriptors(s);
}
QUILLON_ROW_FACES_OF(Sdt::Service_info, Service_info)

void Sdt::Service_info::dump_state(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
  dump_descriptors(stream, get_general_descriptors(), get_service_descriptors());
}

}  // namespace quillon
