#pragma once

#include <quillon/atsc/atsc_table.h>

namespace quillon {

// Master guide table (A/65, 6.2): the PID and size of the other tables.
//
//   protocol_version     8
//   tables_defined      16
//   rows                     Table
//   reserved             4
//   descriptors_length  12
//   descriptors              to the CRC, whatever their length says but in the standard reading
class QUILLON_API AtscMGT : public AtscLoopTable {
 public:
  // A table, its PID, version and size in bytes.
  //
  //   table_type                     16
  //   reserved                        3
  //   table_type_PID                 13
  //   reserved                        3
  //   table_type_version_number       5
  //   number_bytes                   32
  //   reserved                        4
  //   table_type_descriptors_length  12
  //   descriptors
  class QUILLON_API Table : public AtscLoop {
   public:
    // `length` becomes the bytes of the row. Throws error("AtscMGT: descriptor start end mismatch").
    Table(ByteView data, int& length, bool /*keep_raw*/, ByteView section) : Table(data, length, {section}) {}
    Table(ByteView data, int& length, const RowContext& row);

    static const char* get_table_type_text(int table_type);
    const char* get_table_type_text() const { return get_table_type_text(table_type); }
    // In the edition in force.
    static const char* standard_table_type_text(int table_type);

    void dump_state(std::ostream& stream) const;

    int table_type = 0;
    int table_type_PID = 0;
    int table_type_version_number = 0;
    int number_bytes = 0;  // the third byte counts 100, not 256, but in the standard reading: kept
    int table_type_descriptors_length = 0;

    QUILLON_WALK;
  };

  const char* get_table_id_text() const override { return "master_guide_table"; }

  int protocol_version = 0;
  int tables_defined = 0;  // as stated; `tables` may hold fewer after a failure
  std::vector<Table> tables;
  int descriptors_length = 0;

  QUILLON_TABLE_WALK;

 private:
  void _dump_state(std::ostream& stream) const override;
  // Throws error("AtscMGT: descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xC7; }
  bool is_valid_reserved_header(int) const override { return true; }
};

}  // namespace quillon
