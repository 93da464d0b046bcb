#pragma once

#include <quillon/tables/transport_stream_row.h>

namespace quillon {

// Network information table (EN 300 468, 5.2.1).
//
//   reserved_future_use            4
//   network_descriptors_length    12
//   descriptors
//   reserved_future_use            4
//   transport_stream_loop_length  12
//   rows                               Stream_info
//
// reset empties the rows alone: the descriptors of the table survive it.
class QUILLON_API Nit : public PsiTableBase, public DvbLoop {
 public:
  // A transport stream of the network.
  class QUILLON_API Stream_info : public TransportStreamRow {
   public:
    using TransportStreamRow::TransportStreamRow;
    void dump_state(std::ostream& stream) const;
  };

  // "ERROR" for a table id that is none of the table's.
  const char* get_table_id_text() const override;
  void walk(FieldSink& sink) const;

  int get_network_id() const { return get_context_id(); }
  const std::vector<Stream_info>& get_stream_infos() const { return streams_; }

 private:
  void _reset() override { streams_.clear(); }
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  // Throws error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  // 0x40, the actual network, and 0x41, another.
  bool is_valid_tablesid() const override { return get_table_id() == 0x40 || get_table_id() == 0x41; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  std::vector<Stream_info> streams_;
};

}  // namespace quillon
