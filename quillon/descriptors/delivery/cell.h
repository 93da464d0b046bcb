#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The cells of a terrestrial network and the areas that they cover (EN 300 468, 6.2.7). Coordinates are the
// raw 16 bits, with their sign in the standard reading, extents the raw 12, of a rectangle that starts at its
// south-western corner.
class QUILLON_API DescriptorCellList final : public DescriptorBase {
 public:
  // Where a cell is, and how far it goes.
  class QUILLON_API CellListData {
   public:
    // The same of a part of the cell.
    class QUILLON_API SubCellInfo {
     public:
      SubCellInfo() = default;
      explicit SubCellInfo(ByteView data)
          : cell_id_extension(data[0]),
            subcell_latitude(coordinate(data, 1)),
            subcell_longitude(coordinate(data, 3)),
            subcell_extend_of_latitude(data.bits(5, 7, 12)),
            subcell_extend_of_longitude(data.bits(6, 3, 12)) {}

      int cell_id_extension = 0;
      int subcell_latitude = 0;
      int subcell_longitude = 0;
      int subcell_extend_of_latitude = 0;
      int subcell_extend_of_longitude = 0;

      QUILLON_RECORD_FACES;
    };

    CellListData() = default;
    // `available` is not looked at; `consumed` becomes the loop length plus 10. Throws
    // error(error::bad_loop_unit) unless the loop length is a multiple of 8.
    CellListData(ByteView data, int available, int& consumed);

    int cell_id = 0;
    // Units of 90 degrees / 2^15 north, of 180 degrees / 2^15 east.
    int cell_latitude = 0;
    int cell_longitude = 0;
    int cell_extend_of_latitude = 0;
    int cell_extend_of_longitude = 0;
    int subcell_info_loop_length = 0;
    std::vector<SubCellInfo> subcells;

    QUILLON_RECORD_FACES;
  };

  DescriptorCellList() = default;
  // Throws error(error::bad_value) unless the last cell ends with the descriptor.
  explicit DescriptorCellList(ByteView d);

  std::vector<CellListData> cell_list_data;

  QUILLON_FACES(cell_list_data);

 private:
  // Quirk: DescriptorCellList latitude, longitude
  static int coordinate(ByteView data, int at) {
    return data.standard() ? static_cast<int16_t>(data.u16(at)) : data.u16(at);
  }
};

// The frequencies on which the cells of a terrestrial network carry a multiplex (EN 300 468, 6.2.6), in units
// of 10 Hz.
class QUILLON_API DescriptorCellFrequncyLink final : public DescriptorBase {
 public:
  // The frequency in one cell.
  class QUILLON_API CellFrequencyLinkData {
   public:
    // The frequency of a transposer in the cell.
    class QUILLON_API SubCellInfo {
     public:
      SubCellInfo() = default;
      explicit SubCellInfo(ByteView data) : cell_id_extension(data[0]), transposer_frequency(data.u32(1)) {}

      int cell_id_extension = 0;
      uint32_t transposer_frequency = 0;

      QUILLON_RECORD_FACES;
    };

    CellFrequencyLinkData() = default;
    // `available` is not looked at; `consumed` becomes the loop length plus 7. Throws
    // error(error::bad_loop_unit) unless the loop length is a multiple of 5.
    CellFrequencyLinkData(ByteView data, int available, int& consumed);

    int cell_id = 0;
    uint32_t frequency = 0;
    int subcell_info_loop_length = 0;
    std::vector<SubCellInfo> subcells;

    QUILLON_RECORD_FACES;
  };

  DescriptorCellFrequncyLink() = default;
  // Throws error(error::bad_value) unless the last cell ends with the descriptor.
  explicit DescriptorCellFrequncyLink(ByteView d);

  std::vector<CellFrequencyLinkData> cell_frequency_link_data;

  QUILLON_FACES(cell_frequency_link_data);
};

}  // namespace quillon
