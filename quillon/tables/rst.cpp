#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>
#include <quillon/tables/rst.h>

namespace quillon {

namespace {

constexpr int kStatusRow = 9;

}  // namespace

void Rst::_parse(ByteView body, bool) {
  const int rows = get_section_length() / kStatusRow;
  read_rows(status_, body, 0, rows * kStatusRow, kStatusRow);
  if (get_section_length() != rows * kStatusRow) throw error("descriptor start end mismatch");
}

Rst::Status::Status(ByteView data, int& length)
    : transport_stream_id_(data.u16(0)),
      // Quirk: Rst original_network_id
      original_network_id_(data.standard() ? data.u16(2) : data[2] * 0x101),
      service_id_(data.u16(4)),
      event_id_(data.u16(6)),
      running_status_(data.bits(8, 2, 3)) {
  length = kStatusRow;
}

template <class V, class S>
void Rst::Status::describe(V& v, S& s) {
  v.field("transport_stream_id", s.transport_stream_id_);
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("service_id", s.service_id_);
  v.field("event_id", s.event_id_);
  v.field("running_status", s.running_status_);
}

QUILLON_ROW_FACES_OF(Rst::Status, Status)

void Rst::Status::dump_state(std::ostream& stream) const {
  faces::Dump v(stream);
  describe(v, *this);
}

template <class V, class S>
void Rst::describe(V& v, S& s) {
  v.rows("status_infos", "status_info", s.status_);
}
QUILLON_TABLE_FACES_OF(Rst)

void Rst::_dump_state(std::ostream& stream) const {
  PsiBase::_dump_state(stream);
  for (const Status& status : status_) status.dump_state(stream);
}

}  // namespace quillon
