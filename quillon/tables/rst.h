#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

// Running status table (EN 300 468, 5.2.7): rows of nine bytes to the end of the section.
class QUILLON_API Rst : public PsiBase {
 public:
  // The running status of an event.
  //
  //   transport_stream_id  16
  //   original_network_id  16   its high byte alone is taken, for both: kept, reports rely on it
  //   service_id           16
  //   event_id             16
  //   reserved              5
  //   running_status        3
  class QUILLON_API Status {
   public:
    // `length` becomes the bytes of the row.
    Status(ByteView data, int& length);
    explicit Status(void* node);

    QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
    QUILLON_FIELD(int, original_network_id, get_original_network_id);
    QUILLON_FIELD(int, service_id, get_service_id);
    QUILLON_FIELD(int, event_id, get_event_id);
    QUILLON_FIELD(int, running_status, get_running_status);

   public:
    void dump_state(std::ostream& stream) const;
    bool _save_stream_info(void* document, void* element) const;
    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

   private:
    template <class Visitor, class Self>
    static void describe(Visitor& v, Self& s);
  };

  const char* get_table_id_text() const override { return "running_status_section"; }
  void walk(FieldSink& sink) const;
  const std::vector<Status>& get_status() const { return status_; }

 private:
  bool is_syntax_indicator_valid(int indicator) const override { return indicator == 0; }
  void _reset() override { status_.clear(); }
  void _dump_state(std::ostream& stream) const override;
  void _parse(void* node) override;
  // Throws error("descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool _save_section(void* document, void* node) const override;
  bool is_valid_tablesid() const override { return get_table_id() == 0x71; }

  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  std::vector<Status> status_;
};

}  // namespace quillon
