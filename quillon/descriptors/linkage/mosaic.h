#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The cells of a mosaic picture and what each leads to (EN 300 468, 6.2.21). Numbers of cells are the coded
// values, one less than the cells there are.
class QUILLON_API DescriptorMosiac final : public DescriptorBase {
 public:
  // A cell of the mosaic, and what it leads to.
  class QUILLON_API CellInfo {
   public:
    // A bouquet, where cell_linkage_info is 1.
    class QUILLON_API BouquetInfo {
     public:
      BouquetInfo() = default;
      explicit BouquetInfo(ByteView p) : bouquet_id_(p.u16(0)) {}

      void _dump_state(std::ostream& stream) const { dump_state(stream); }

      QUILLON_FIELD(int, bouquet_id, get_bouquet_id);

      QUILLON_RECORD_FACES;
    };

    // A service, where cell_linkage_info is 2.
    class QUILLON_API ServiceInfo {
     public:
      ServiceInfo() = default;
      explicit ServiceInfo(ByteView p)
          : original_network_id_(p.u16(0)), transport_stream_id_(p.u16(2)), service_id_(p.u16(4)) {}

      void _dump_state(std::ostream& stream) const { dump_state(stream); }

      QUILLON_FIELD(int, original_network_id, get_original_network_id);
      QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
      QUILLON_FIELD(int, service_id, get_service_id);

      QUILLON_RECORD_FACES;
    };

    // A service of its own kind with the faces of the other, its labels included.
    class QUILLON_API ServiceInfo2 : public ServiceInfo {
     public:
      using ServiceInfo::ServiceInfo;
    };

    // An event, where cell_linkage_info is 4.
    class QUILLON_API EventInfo {
     public:
      EventInfo() = default;
      explicit EventInfo(ByteView p)
          : original_network_id_(p.u16(0)),
            transport_stream_id_(p.u16(2)),
            service_id_(p.u16(4)),
            event_id_(p.u16(6)) {}

      void _dump_state(std::ostream& stream) const { dump_state(stream); }

      QUILLON_FIELD(int, original_network_id, get_original_network_id);
      QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
      QUILLON_FIELD(int, service_id, get_service_id);
      QUILLON_FIELD(int, event_id, get_event_id);

      QUILLON_RECORD_FACES;
    };

    CellInfo() = default;
    // `avail` is not looked at; `consumed` becomes the bytes of the cell. Throws error(error::bad_value)
    // unless cell_linkage_info is 1 to 4; in the standard reading any other has no record.
    CellInfo(ByteView p, int avail, int& consumed);

    QUILLON_FIELD(int, logical_cell_id, get_logical_cell_id);                                // 6 bits
    QUILLON_FIELD(int, logical_cell_presentation_info, get_logical_cell_presentation_info);  // 3 bits
    QUILLON_FIELD(int, elementary_cell_field_length, get_elementary_cell_field_length);
    QUILLON_FIELD(std::vector<uint8_t>, elementary_cell_id, get_elementary_cell_id);  // 6 bits each
    QUILLON_FIELD(int, cell_linkage_info, get_cell_linkage_info);
    // The one that cell_linkage_info names is filled, the others are zero.
    QUILLON_FIELD(BouquetInfo, bouquetinfo, get_bouquetinfo);
    QUILLON_FIELD(ServiceInfo, serviceinfo, get_serviceinfo);
    QUILLON_FIELD(ServiceInfo2, serviceinfo2, get_serviceinfo2);
    QUILLON_FIELD(EventInfo, eventinfo, get_eventinfo);

    QUILLON_RECORD_FACES;
  };

  DescriptorMosiac() = default;
  // Throws error(error::length_mismatch, "mosiac_descriptor") unless the last cell ends with the descriptor.
  explicit DescriptorMosiac(ByteView d);

  QUILLON_FIELD(int, mosaic_entry_point, get_mosaic_entry_point);
  QUILLON_FIELD(int, number_of_horizontal_elementary_cells,
                get_number_of_horizontal_elementary_cells);                                          // 3 bits
  QUILLON_FIELD(int, number_of_vertical_elementary_cells, get_number_of_vertical_elementary_cells);  // 3 bits
  QUILLON_FIELD(std::vector<CellInfo>, cellinfo, get_cellinfo);

  QUILLON_FACES(cellinfo_);
};

}  // namespace quillon
