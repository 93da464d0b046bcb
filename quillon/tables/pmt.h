#pragma once

#include <quillon/descriptors/dvb_loop.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// An entry of the elementary stream loop as it is on the wire.
struct _PMT_INFO {
  uint8_t bytes[5];
};

// Program map table of a DVB stream (ISO/IEC 13818-1, 2.4.4.8).
//
//   reserved              3
//   PCR_PID              13
//   reserved              4
//   program_info_length  12
//   descriptors
//   rows                      ElementaryStream
class QUILLON_API PmtDVB : public PsiTableBase, public DvbLoop {
 public:
  // A stream of the program.
  //
  //   stream_type      8
  //   reserved         3
  //   elementary_PID  13
  //   reserved         4
  //   ES_info_length  12
  //   descriptors
  class QUILLON_API ElementaryStream : public DvbLoop {
   public:
    // `size` holds the bytes left in the section, and then the bytes of the row. Throws error("too little
    // data") if fewer than five are left.
    ElementaryStream(_PMT_INFO* info, int& size, bool keep_raw, const uint8_t* body)
        : ElementaryStream(ByteView(info->bytes), size, {ByteView(body), keep_raw}) {}
    ElementaryStream(ByteView info, int& size, bool keep_raw, ByteView body)
        : ElementaryStream(info, size, {body, keep_raw}) {}
    ElementaryStream(ByteView info, int& size, const RowContext& row);
    explicit ElementaryStream(void* node);

    int get_stream_type() const { return stream_type_; }
    int get_elementary_pid() const { return elementary_pid_; }
    int get_es_info_length() const { return es_info_length_; }

    static const char* get_stream_type_cstr(int stream_type);
    const char* get_stream_type_cstr() const { return get_stream_type_cstr(stream_type_); }
    // In the edition in force, by the registrations of the stream and its program, and by the descriptors of
    // private data.
    const char* standard_stream_type_text() const;
    // The registration of the program; 0 without one.
    uint32_t get_program_format_identifier() const { return program_format_identifier_; }

    void dump_state(std::ostream& stream) const;
    bool _save_stream_info(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);

    friend PmtDVB;

    uint32_t program_format_identifier_ = 0;
    int stream_type_ = 0;
    int elementary_pid_ = 0;
    int es_info_length_ = 0;
  };

  const char* get_table_id_text() const override { return "TS_program_map_section"; }
  void walk(FieldSink& sink) const;

  int get_program_number() const { return get_context_id(); }
  int get_pcr_pid() const { return pcr_pid_; }
  const std::vector<ElementaryStream>& get_pmt_stream_info() const { return streams_; }

 private:
  void _reset() override;
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  // Throws error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x02; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  // Lets the streams know the registration of the program.
  void spread_registration();

  int pcr_pid_ = 0;
  std::vector<ElementaryStream> streams_;
};

}  // namespace quillon
