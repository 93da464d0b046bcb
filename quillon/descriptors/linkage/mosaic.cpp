#include <quillon/descriptors/linkage/mosaic.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

// Saved documents and reports say mosiac, and a call where a cell is meant.

DescriptorMosiac::DescriptorMosiac(ByteView d)
    : DescriptorBase(d),
      mosaic_entry_point_(d.bits(2, 7, 1)),
      number_of_horizontal_elementary_cells_(d.bits(2, 6, 3)),
      number_of_vertical_elementary_cells_(d.bits(2, 2, 3)) {
  if (!read_uneven_rows(cellinfo_, d, 3, descriptor_length - 1))
    throw error(error::length_mismatch, "mosiac_descriptor");
}

template <class V, class S>
void DescriptorMosiac::describe(V& v, S& s) {
  v.field("mosiac_entry_point", s.mosaic_entry_point_);
  v.field("number_of_horizontal_elementary_cells", s.number_of_horizontal_elementary_cells_);
  v.field("number_of_vertical_elementary_cells", s.number_of_vertical_elementary_cells_);
  v.list("cellinfo", "info", s.cellinfo_);
}
QUILLON_FACES_OF(DescriptorMosiac, "mosiac_descriptor")

DescriptorMosiac::CellInfo::CellInfo(ByteView p, int, int& consumed)
    : logical_cell_id_(p.bits(0, 7, 6)),
      logical_cell_presentation_info_(p.bits(1, 2, 3)),
      elementary_cell_field_length_(p[2]),
      elementary_cell_id_(p.bytes(3, elementary_cell_field_length_)),
      cell_linkage_info_(p[3 + elementary_cell_field_length_]) {
  for (uint8_t& id : elementary_cell_id_) id &= 0x3F;
  consumed = elementary_cell_field_length_ + 4;
  const ByteView link = p.from(consumed);
  switch (cell_linkage_info_) {
    case 1:
      bouquetinfo_ = BouquetInfo(link);
      consumed += 2;
      break;
    case 2:
      serviceinfo_ = ServiceInfo(link);
      consumed += 6;
      break;
    case 3:
      serviceinfo2_ = ServiceInfo2(link);
      consumed += 6;
      break;
    case 4:
      eventinfo_ = EventInfo(link);
      consumed += 8;
      break;
    default:  // 0 too, which legal streams may carry. Kept: readers rely on the refusal
      // Quirk: DescriptorMosiac cell_linkage_info 0, 5 to 255
      if (!p.standard()) throw error(error::bad_value);
  }
}

template <class V, class S>
void DescriptorMosiac::CellInfo::describe(V& v, S& s) {
  v.labels("DescriptorMosiac::CellInfo::", ": ");
  v.field("logical_cell_id", s.logical_cell_id_);
  v.field("logical_call_presentation_info", s.logical_cell_presentation_info_);
  v.field("elementary_cell_field_length", s.elementary_cell_field_length_);
  v.field("cell_linkage_info", s.cell_linkage_info_);
  v.bytes("elementary_cell_id", s.elementary_cell_id_);
  // Reports show the one of the four that applies.
  if (!V::dump || s.cell_linkage_info_ == 1) v.child("bouquetinfo", s.bouquetinfo_);
  if (!V::dump || s.cell_linkage_info_ == 2) v.child("serviceinfo", s.serviceinfo_);
  if (!V::dump || s.cell_linkage_info_ == 3) v.child("serviceinfo2", s.serviceinfo2_);
  if (!V::dump || s.cell_linkage_info_ == 4) v.child("eventinfo", s.eventinfo_);
}
QUILLON_RECORD_FACES_OF(DescriptorMosiac::CellInfo)

template <class V, class S>
void DescriptorMosiac::CellInfo::BouquetInfo::describe(V& v, S& s) {
  v.labels("BouquetInfo::", ": ");
  v.coded("bouquet_id", s.bouquet_id_, registry_kind::bouquet);
}
QUILLON_RECORD_FACES_OF(DescriptorMosiac::CellInfo::BouquetInfo)

template <class V, class S>
void DescriptorMosiac::CellInfo::ServiceInfo::describe(V& v, S& s) {
  v.labels("ServiceInfo::", ": ");
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("transport_stream_id", s.transport_stream_id_);
  v.field("service_id", s.service_id_);
}
QUILLON_RECORD_FACES_OF(DescriptorMosiac::CellInfo::ServiceInfo)

template <class V, class S>
void DescriptorMosiac::CellInfo::EventInfo::describe(V& v, S& s) {
  v.labels("EventInfo::", ": ");
  v.coded("original_network_id", s.original_network_id_, registry_kind::original_network);
  v.field("transport_stream_id", s.transport_stream_id_);
  v.field("service_id", s.service_id_);
  v.field("event_id", s.event_id_);
}
QUILLON_RECORD_FACES_OF(DescriptorMosiac::CellInfo::EventInfo)

}  // namespace quillon
