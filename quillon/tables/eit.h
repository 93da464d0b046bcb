#pragma once

#include <quillon/descriptors/dvb_loop.h>
#include <quillon/fields/time.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Event information table (EN 300 468, 5.2.4): present/following or schedule, of the actual transport stream
// or of another.
//
//   transport_stream_id          16
//   original_network_id          16
//   segment_last_section_number   8
//   last_table_id                 8
//   rows                             EventInfo
class QUILLON_API Eit : public PsiTableBase {
 public:
  // An event.
  //
  //   event_id                 16
  //   start_time               40
  //   duration                 24
  //   running_status            3
  //   free_CA_mode              1
  //   descriptors_loop_length  12
  //   descriptors
  class QUILLON_API EventInfo : public DvbLoop {
   public:
    // `length` becomes the bytes of the row; those left are not looked at, so that a stray byte is read as an
    // event.
    EventInfo(ByteView data, int& length, bool keep_raw, ByteView body)
        : EventInfo(data, length, {body, keep_raw}) {}
    EventInfo(ByteView data, int& length, const RowContext& row);
    explicit EventInfo(void* node);

    int get_event_id() const { return event_id_; }
    // UTC.
    const DateTime& get_start_time() const { return start_time_; }
    const Duration& get_duration() const { return duration_; }
    // 1 not running, 2 starts in a few seconds, 3 pausing, 4 running.
    int get_running_status() const { return running_status_; }
    // 1: one or more streams are under conditional access.
    int get_free_ca_mode() const { return free_ca_mode_; }
    int get_descriptors_length() const { return descriptors_length_; }

    // Leaves the stream in decimal.
    void dump_state(std::ostream& stream) const;
    bool _save_stream_info(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);

    int event_id_ = 0;
    int running_status_ = 0;
    int free_ca_mode_ = 0;
    int descriptors_length_ = 0;
    DateTime start_time_;
    Duration duration_;
  };

  const char* get_table_id_text() const override { return get_table_id_text(get_table_id()); }
  void walk(FieldSink& sink) const;
  // "<unknown>" for a table id that is none of the table's.
  static const char* get_table_id_text(int table_id);

  int get_service_id() const { return get_context_id(); }
  int get_transport_stream_id() const { return transport_stream_id_; }
  int get_original_network_id() const { return original_network_id_; }
  int get_segment_last_section_number() const { return segment_last_section_number_; }
  int get_last_table_id() const { return last_table_id_; }
  const std::vector<EventInfo>& get_eventinfo() const { return events_; }

 private:
  void _reset() override { events_.clear(); }
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  // Throws error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() >= 0x4E && get_table_id() <= 0x6F; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int transport_stream_id_ = 0;
  int original_network_id_ = 0;
  int segment_last_section_number_ = 0;
  int last_table_id_ = 0;
  std::vector<EventInfo> events_;
};

}  // namespace quillon
