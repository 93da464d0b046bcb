#pragma once

#include <quillon/atsc/atsc_table.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// Event information table of ATSC (A/65, 6.5). A section with fewer events than it announces is accepted if
// they end at the CRC.
//
//   protocol_version        8
//   num_events_in_section   8
//   rows                        Event
class QUILLON_API AtscEIT : public AtscTable {
 public:
  // The fields after start_time are a byte earlier than in the standard, so that its last byte is read
  // again as the location and the top of the duration: kept. In the standard reading they are in their
  // places, and the title is read.
  //
  //   reserved             2
  //   event_id            14
  //   start_time          32   its low byte holds the next two fields too
  //   ETM_location         2   bits 4 and 5 of byte 5
  //   length_in_seconds   20
  //   title_length         8
  //   title                    stepped over
  //   reserved             4
  //   descriptors_length  12
  //   descriptors
  class QUILLON_API Event : public AtscLoop {
   public:
    // `length` becomes the bytes of the event. Throws error("AtscTVCT::Channel: descriptor start end
    // mismatch"), the text of another class: kept.
    Event(ByteView data, int& length, bool /*keep_raw*/, ByteView section) : Event(data, length, {section}) {}
    Event(ByteView data, int& length, const RowContext& row);

    static const char* get_ETM_location_text(int ETM_location);
    const char* get_ETM_location_text() const { return get_ETM_location_text(ETM_location); }

    void dump_state(std::ostream& stream) const;

    int event_id = 0;
    int start_time = 0;  // GPS seconds since 00:00:00 UTC, 6 January 1980
    int ETM_location = 0;
    int length_in_seconds = 0;
    int title_length = 0;
    ATSCMultipleStringStructure title_text;  // filled in the standard reading alone
    int descriptors_length = 0;

    QUILLON_WALK;
  };

  const char* get_table_id_text() const override { return "event_information_table"; }

  int protocol_version = 0;
  int num_events_in_section = 0;  // as stated; `events` may hold fewer
  std::vector<Event> events;

  QUILLON_TABLE_WALK;

 private:
  void _dump_state(std::ostream& stream) const override;
  // Throws error("AtscEIT: event loop start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xCB; }
};

}  // namespace quillon
