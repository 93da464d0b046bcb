#pragma once

#include <quillon/descriptors/dvb_loop.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Service description table (EN 300 468, 5.2.3).
//
//   original_network_id  16
//   reserved_future_use   8
//   rows                     Service_info
class QUILLON_API Sdt : public PsiTableBase {
 public:
  // A service.
  //
  //   service_id                  16
  //   reserved_future_use          6
  //   EIT_schedule_flag            1
  //   EIT_present_following_flag   1
  //   running_status               3
  //   free_CA_mode                 1
  //   descriptors_loop_length     12
  //   descriptors
  class QUILLON_API Service_info : public DvbLoop {
   public:
    // `length` holds the bytes left, and then those of the row. Throws error("too little data") if fewer than
    // five are left.
    Service_info(ByteView data, int& length, bool keep_raw, ByteView body)
        : Service_info(data, length, {body, keep_raw}) {}
    Service_info(ByteView data, int& length, const RowContext& row);
    explicit Service_info(void* node);

    int get_service_id() const { return service_id_; }
    int get_eit_schedule_flag() const { return eit_schedule_flag_; }
    int get_eit_present_following_flag() const { return eit_present_following_flag_; }
    // 1 not running, 2 starts in a few seconds, 3 pausing, 4 running.
    int get_running_status() const { return running_status_; }
    // 1: one or more streams are under conditional access.
    int get_free_ca_mode() const { return free_ca_mode_; }

    void dump_state(std::ostream& stream) const;
    bool _save_stream_info(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);

    int service_id_ = 0;
    int eit_schedule_flag_ = 0;
    int eit_present_following_flag_ = 0;
    int running_status_ = 0;
    int free_ca_mode_ = 0;
  };

  // "ERROR" for a table id that is none of the table's.
  const char* get_table_id_text() const override;
  void walk(FieldSink& sink) const;

  int get_transport_stream_id() const { return get_context_id(); }
  int get_original_network_id() const { return original_network_id_; }
  const std::vector<Service_info>& get_service_infos() const { return services_; }

 private:
  void _reset() override { services_.clear(); }
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  // Throws error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  // 0x42, the actual transport stream, and 0x46, another.
  bool is_valid_tablesid() const override { return get_table_id() == 0x42 || get_table_id() == 0x46; }
  bool is_valid_syntax_indicator(int indicator) const override { return indicator == 1; }
  bool is_valid_reserved_header(int) const override { return true; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  int original_network_id_ = 0;
  std::vector<Service_info> services_;
};

}  // namespace quillon
