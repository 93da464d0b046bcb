#include <quillon/descriptors/delivery/cell.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

DescriptorCellList::DescriptorCellList(ByteView d) : DescriptorBase(d) {
  if (!read_uneven_rows(cell_list_data, d, 2, descriptor_length)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorCellList::describe(V& v, S& s) {
  v.list("cell_list_data", "data", s.cell_list_data);
}
QUILLON_SILENT_FACES_OF(DescriptorCellList, "cell_list_descriptor")

DescriptorCellList::CellListData::CellListData(ByteView data, int, int& consumed)
    : cell_id(data.u16(0)),
      cell_latitude(coordinate(data, 2)),
      cell_longitude(coordinate(data, 4)),
      cell_extend_of_latitude(data.bits(6, 7, 12)),
      cell_extend_of_longitude(data.bits(7, 3, 12)),
      subcell_info_loop_length(data[9]) {
  if (subcell_info_loop_length % 8 != 0) throw error(error::bad_loop_unit);
  read_rows(subcells, data, 10, subcell_info_loop_length, 8);
  consumed = subcell_info_loop_length + 10;
}

template <class V, class S>
void DescriptorCellList::CellListData::describe(V& v, S& s) {
  v.field("cell_id", s.cell_id);
  v.field("cell_latitude", s.cell_latitude);
  v.field("cell_longitude", s.cell_longitude);
  v.field("cell_extend_of_latitude", s.cell_extend_of_latitude);
  v.field("cell_extend_of_longitude", s.cell_extend_of_longitude);
  v.field("subcell_info_length", s.subcell_info_loop_length);
  v.list("sub_cell_info", "info", s.subcells);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorCellList::CellListData)

template <class V, class S>
void DescriptorCellList::CellListData::SubCellInfo::describe(V& v, S& s) {
  v.field("cell_id_extension", s.cell_id_extension);
  v.field("cell_latitude", s.subcell_latitude);
  v.field("cell_longitude", s.subcell_longitude);
  v.field("cell_extend_of_latitude", s.subcell_extend_of_latitude);
  v.field("cell_extend_of_longitude", s.subcell_extend_of_longitude);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorCellList::CellListData::SubCellInfo)

DescriptorCellFrequncyLink::DescriptorCellFrequncyLink(ByteView d) : DescriptorBase(d) {
  if (!read_uneven_rows(cell_frequency_link_data, d, 2, descriptor_length)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorCellFrequncyLink::describe(V& v, S& s) {
  v.list("cell_frequency_link_data", "data", s.cell_frequency_link_data);
}
QUILLON_SILENT_FACES_OF(DescriptorCellFrequncyLink, "cell_frequency_link_descriptor")

DescriptorCellFrequncyLink::CellFrequencyLinkData::CellFrequencyLinkData(ByteView data, int, int& consumed)
    : cell_id(data.u16(0)), frequency(data.u32(2)), subcell_info_loop_length(data[6]) {
  if (subcell_info_loop_length % 5 != 0) throw error(error::bad_loop_unit);
  read_rows(subcells, data, 7, subcell_info_loop_length, 5);
  consumed = subcell_info_loop_length + 7;
}

template <class V, class S>
void DescriptorCellFrequncyLink::CellFrequencyLinkData::describe(V& v, S& s) {
  v.field("cell_id", s.cell_id);
  v.field("frequency", s.frequency);
  v.field("sub_cell_info_length", s.subcell_info_loop_length);
  v.list("sub_cell_info", "info", s.subcells);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorCellFrequncyLink::CellFrequencyLinkData)

template <class V, class S>
void DescriptorCellFrequncyLink::CellFrequencyLinkData::SubCellInfo::describe(V& v, S& s) {
  v.field("cell_id_extension", s.cell_id_extension);
  v.field("transposer_frequency", s.transposer_frequency);
}
QUILLON_SILENT_RECORD_FACES_OF(DescriptorCellFrequncyLink::CellFrequencyLinkData::SubCellInfo)

}  // namespace quillon
