#pragma once

#include <quillon/atsc/atsc_table.h>
#include <quillon/tables/pmt.h>

namespace quillon {

// Program map table of an ATSC stream: the syntax of PmtDVB (ISO/IEC 13818-1, 2.4.4.8) with the descriptors
// of ATSC. A document holds its header alone, and a load reads no more.
//
//   reserved              3
//   PCR_PID              13
//   reserved              4
//   program_info_length  12
//   descriptors
//   rows                      ElementaryStream
class QUILLON_API PmtATSC : public AtscTable, public AtscLoop {
 public:
  // A stream of the program.
  //
  //   stream_type      8
  //   reserved         3
  //   elementary_PID  13
  //   reserved         4
  //   ES_info_length  12
  //   descriptors
  class QUILLON_API ElementaryStream : public AtscLoop {
   public:
    // `length` holds the bytes left in the section, and then the bytes of the row. Throws error("too little
    // data") if fewer than five are left. Positions count from `body`.
    ElementaryStream(_PMT_INFO* info, int& length, bool keep_raw, const uint8_t* body)
        : ElementaryStream(ByteView(info->bytes), length, {ByteView(body), keep_raw}) {}
    ElementaryStream(ByteView info, int& length, bool keep_raw, ByteView body)
        : ElementaryStream(info, length, {body, keep_raw}) {}
    ElementaryStream(ByteView info, int& length, const RowContext& row);

    static const char* get_stream_type_cstr(int stream_type);
    const char* get_stream_type_cstr() const { return get_stream_type_cstr(stream_type); }
    // In the edition in force, by the registration of the stream, or of ATSC.
    const char* standard_stream_type_text() const;

    // Prints nothing: a report has no more of the streams than their number.
    void dump_state(std::ostream&) const {}

    int stream_type = 0;
    int elementary_PID = 0;
    int ES_info_length = 0;

    QUILLON_WALK;
  };

  const char* get_table_id_text() const override { return "TS_program_map_section"; }

  int get_program_number() const { return get_context_id(); }
  int get_pcr_pid() const { return pcr_pid; }
  const std::vector<ElementaryStream>& get_pmt_stream_info() const { return streams_; }
  // Adds the CA descriptors of the program, then those of its streams.
  void get_all_ca_descriptors(std::vector<DescriptorCa>& out) const;

  int pcr_pid = 0;

  QUILLON_TABLE_WALK;

 private:
  void _reset() override;
  void _dump_state(std::ostream& stream) const override;
  // Throws error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x02; }
  bool is_valid_reserved_header(int) const override { return true; }

  std::vector<ElementaryStream> streams_;
};

}  // namespace quillon
