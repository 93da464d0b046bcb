#pragma once

#include <quillon/atsc/atsc_table.h>

namespace quillon {

// Directed channel change table (A/65, 6.7). Its report is the header alone.
//
//   protocol_version                8
//   dcc_test_count                  8
//   rows                                DCCTest
//   reserved                        6
//   additional_descriptors_length  10
//   descriptors
class QUILLON_API AtscDCCT : public AtscLoopTable {
 public:
  // The channel numbers are spread over four bytes a pair: kept. In the standard reading they have three, and
  // the reserved bits between two numbers are not there.
  //
  //   dcc_context                     1
  //   reserved                        3
  //   dcc_from_major_channel_number  10
  //   reserved                        8
  //   dcc_from_minor_channel_number  10
  //   reserved                        4
  //   dcc_to_major_channel_number    10
  //   reserved                        8
  //   dcc_to_minor_channel_number    10
  //   dcc_start_time                 32
  //   dcc_end_time                   32
  //   dcc_term_count                  8
  //   rows                               DCCTerm
  //   reserved                        6
  //   dcc_test_descriptors_length    10
  //   descriptors
  class QUILLON_API DCCTest : public AtscLoop {
   public:
    // What a receiver is to match.
    //
    //   dcc_selection_type            8
    //   dcc_selection_id             64  stepped over but in the standard reading
    //   reserved                      6
    //   dcc_term_descriptors_length  10
    //   descriptors
    class QUILLON_API DCCTerm : public AtscLoop {
     public:
      // `length` becomes the bytes of the term. Throws error("AtscDCCT::DCCTest::DCCTerm: descriptor start
      // end mismatch").
      DCCTerm(ByteView data, int& length, bool /*keep_raw*/, ByteView section)
          : DCCTerm(data, length, {section}) {}
      DCCTerm(ByteView data, int& length, const RowContext& row);

      int dcc_selection_type = 0;
      uint64_t dcc_selection_id = 0;  // in the standard reading alone
      int dcc_term_descriptors_length = 0;

      QUILLON_WALK;
    };

    // `length` holds the bytes left, which bound the terms alone, and then those of the test. Throws
    // error("AtscDCCT::DCCTest: descriptor start end mismatch").
    DCCTest(ByteView data, int& length, bool /*keep_raw*/, ByteView section)
        : DCCTest(data, length, {section}) {}
    DCCTest(ByteView data, int& length, const RowContext& row);

    int dcc_context = 0;  // 0 temporary retune, 1 channel redirect
    int dcc_from_major_channel_number = 0;
    int dcc_from_minor_channel_number = 0;
    int dcc_to_major_channel_number = 0;
    int dcc_to_minor_channel_number = 0;
    int dcc_start_time = 0;  // GPS seconds since 00:00:00 UTC, 6 January 1980
    int dcc_end_time = 0;    // likewise
    int dcc_term_count = 0;  // as stated; `terms` may hold fewer
    int dcc_test_descriptors_length = 0;
    std::vector<DCCTerm> terms;

    QUILLON_WALK;
  };

  const char* get_table_id_text() const override { return "directed_channel_change_table"; }

  // Quirk: AtscDCCT dcc_subtype, dcc_id
  // The two bytes of the header's extension.
  int get_dcc_subtype() const { return get_context_id() >> 8; }
  int get_dcc_id() const { return get_context_id() & 0xFF; }

  int protocol_version = 0;
  int dcc_test_count = 0;  // as stated; `tests` may hold fewer
  std::vector<DCCTest> tests;
  int additional_descriptors_length = 0;

  QUILLON_TABLE_WALK;

 private:
  // Throws error("AtscRRT: descriptor start end mismatch"), the text of another table: kept.
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xD3; }
};

}  // namespace quillon
