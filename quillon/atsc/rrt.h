#pragma once

#include <quillon/atsc/atsc_table.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// Rating region table (A/65, 6.4). Its report is the header alone, and no text is read. Of several dimensions
// only one could be: the first is given all bytes up to the last two before the CRC, and fails unless it
// fills them. Kept, callers rely on it. The standard reading has all texts and dimensions.
//
//   protocol_version            8
//   rating_region_name_length   8
//   rating_region_name              stepped over
//   dimensions_defined          8
//   rows                            Dimension
//   reserved                    6
//   descriptors_length         10
//   descriptors
class QUILLON_API AtscRRT : public AtscLoopTable {
 public:
  // A dimension of the rating.
  //
  //   dimension_name_length   8
  //   dimension_name              stepped over, and the byte after it but in the standard reading
  //   reserved                3
  //   graduated_scale         1
  //   values_defined          4
  //   rows                        Value
  class QUILLON_API Dimension {
   public:
    // A value of the dimension.
    //
    //   abbrev_rating_value_length  8
    //   abbrev_rating_value            stepped over
    //   rating_value_length         8
    //   rating_value                   stepped over
    class QUILLON_API Value {
     public:
      // `length` becomes the bytes of the value.
      Value(ByteView data, int& length, bool /*keep_raw*/, ByteView /*section*/);

      int abbrev_rating_value_length = 0;
      ATSCMultipleStringStructure abbrev_rating_value_text;  // in the standard reading alone
      int rating_value_length = 0;
      ATSCMultipleStringStructure rating_value_text;  // in the standard reading alone

      QUILLON_WALK;
    };

    // `length` holds the bytes left, which the values must fill, and stays as it is. Throws
    // error("AtscRRT::Dimension: descriptor start end mismatch"). In the standard reading it becomes the
    // bytes of the dimension.
    Dimension(ByteView data, int& length, bool /*keep_raw*/, ByteView section);

    int dimension_name_length = 0;
    ATSCMultipleStringStructure dimension_name_text;  // in the standard reading alone
    int graduated_scale = 0;
    int values_defined = 0;
    std::vector<Value> values;

    QUILLON_WALK;
  };

  const char* get_table_id_text() const override { return "rating_region_table"; }

  int protocol_version = 0;
  int rating_region_name_length = 0;
  ATSCMultipleStringStructure rating_region_name_text;  // in the standard reading alone
  int dimensions_defined = 0;                           // as stated; `dimensions` may hold fewer
  int descriptors_length = 0;
  std::vector<Dimension> dimensions;

  QUILLON_TABLE_WALK;

 private:
  // Throws error("AtscRRT: descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xCA; }
};

}  // namespace quillon
