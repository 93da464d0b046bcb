#include <quillon/descriptors/dvb_classes.h>
#include <quillon/descriptors/internal/describe.h>
#include <quillon/tables/sdt.h>

namespace quillon {

void Sdt::_parse(ByteView body, bool keep_raw) {
  original_network_id_ = body.u16(0);
  const bool whole = walk(body, 3, body_size(), [&](ByteView row, int left) {
    int length = left;
    services_.emplace_back(row, length, keep_raw, body, tolerance());
    return length;
  });
  if (!whole) throw error("descriptor start end mismatch");
}

Sdt::Service_info::Service_info(ByteView data, int& length, bool keep_raw, ByteView body,
                                DescriptorFailures* failures) {
  if (length < 5) throw error("too little data");
  service_id_ = data.u16(0);
  eit_schedule_flag_ = data.bits(2, 1, 1);
  eit_present_following_flag_ = data.bits(2, 0, 1);
  running_status_ = data.bits(3, 7, 3);
  free_ca_mode_ = data.bits(3, 4, 1);
  const int descriptors_length = data.bits(3, 3, 12);
  // An overrun of this loop is found by the table alone.
  walk_descriptors(data, 5, 5 + descriptors_length,
                   {body, keep_raw ? &descriptor_positions_ : nullptr, failures});
  length = descriptors_length + 5;
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
  v.field("original_network_id", s.original_network_id_);
  v.rows("service_infos", "service_info", s.services_);
}
QUILLON_TABLE_XML_OF(Sdt)

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
QUILLON_ROW_XML_OF(Sdt::Service_info, Service_info)

void Sdt::Service_info::dump_state(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
  dump_descriptors(stream, get_general_descriptors(), get_service_descriptors());
}

}  // namespace quillon
