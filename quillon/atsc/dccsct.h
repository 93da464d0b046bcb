#pragma once

#include <quillon/atsc/atsc_table.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// Directed channel change selection code table (A/65, 6.8). Its report is the header alone, and texts
// are read in the standard reading alone.
//
//   protocol_version            8
//   updates_defined             8
//   rows                           Update
//   reserved                    6
//   dccsct_descriptors_length  10
//   descriptors                    read from byte 11 of the body on, wherever the updates end, but in the
//                                  standard reading: kept
class QUILLON_API AtscDCCSCT : public AtscLoopTable {
 public:
  // A genre, state or county that is new.
  //
  //   update_type                 8
  //   update_data_length          8
  //   update data                    codes by the type; and names
  //   reserved                    6
  //   update_descriptors_length  10
  //   descriptors
  class QUILLON_API Update : public AtscLoop {
   public:
    // `length` becomes the bytes of the update, whose data bounds no code: without data the codes are read
    // from what follows. Throws error("AtscDCCSCT::Update descriptor start end mismatch"), without the colon
    // that others have: kept.
    Update(ByteView data, int& length, bool /*keep_raw*/, ByteView section)
        : Update(data, length, {section}) {}
    Update(ByteView data, int& length, const RowContext& row);

    static const char* get_update_type_text(int update_type);
    const char* get_update_type_text() const { return get_update_type_text(update_type); }

    int update_type = 0;
    int update_data_length = 0;
    int genre_category_code = 0;                                // type 1
    ATSCMultipleStringStructure genre_category_name_text;       // in the standard reading alone
    int dcc_state_location_code = 0;                            // type 2
    ATSCMultipleStringStructure dcc_state_location_code_text;   // in the standard reading alone
    int state_code = 0;                                         // type 3
    int dcc_county_location_code = 0;                           // type 3, 10 bits
    ATSCMultipleStringStructure dcc_county_location_code_text;  // in the standard reading alone
    int update_descriptors_length = 0;

    QUILLON_WALK;
  };

  const char* get_table_id_text() const override { return "dcc_selection_code_table"; }

  int protocol_version = 0;
  int updates_defined = 0;  // as stated; `updates` may hold fewer
  std::vector<Update> updates;
  int dccsct_descriptors_length = 0;

  QUILLON_TABLE_WALK;

 private:
  // Throws what an update throws, and error("AtscDCCT::DCCTest::DCCTerm: descriptor start end mismatch"), the
  // text of another table, for its own descriptors: kept.
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xD4; }
};

}  // namespace quillon
