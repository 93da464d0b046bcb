#pragma once

#include <quillon/atsc/virtual_channel.h>

namespace quillon {

// Cable virtual channel table (A/65, 6.3.2). Its report is the header alone. The places below are not those
// of the terrestrial table, but for the standard reading, and the failures have its name: kept, callers rely
// on both.
//
//   protocol_version                8
//   num_channels_in_section         8   the first channel begins with this byte
//   rows                                Channel
//   reserved                        6
//   additional_descriptors_length  10
//   descriptors                         to the CRC, whatever their length says but in the standard reading
class QUILLON_API AtscCVCT : public VirtualChannelTable {
 public:
  // A virtual channel of a cable system.
  //
  //   short_name               7 * 16
  //   reserved                      4
  //   major_channel_number         10
  //   reserved                      8   where the minor number of the terrestrial table begins
  //   minor_channel_number         10
  //   modulation_mode               8
  //   carrier_frequency            32
  //   channel_TSID                 16
  //   program_number               16
  //   ETM_location                  2
  //   access_controlled             1
  //   hidden                        1
  //   path_select                   1
  //   out_of_band                   1
  //   hide_guide                    1
  //   reserved                      3
  //   service_type                  6
  //   source_id                    16
  //   reserved                      6
  //   descriptors_length           10   its low byte is also the first of the descriptors
  //   descriptors
  class QUILLON_API Channel : public VirtualChannel {
   public:
    // `length` becomes the bytes of the channel. Throws error("AtscTVCT::Channel: descriptor start end
    // mismatch").
    Channel(ByteView data, int& length, bool /*keep_raw*/, ByteView section)
        : Channel(data, length, {section}) {}
    Channel(ByteView data, int& length, const RowContext& row);

    void walk(FieldSink& sink, Reading reading = Reading::kept) const;

    // No report shows these two.
    int path_select = 0;
    int out_of_band = 0;
  };

  const char* get_table_id_text() const override { return "cable_virtual_channel_table"; }
  void walk(FieldSink& sink) const;

  std::vector<Channel> channels;

 private:
  // Throws error("AtscTVCT: descriptor start end mismatch").
  void _parse(ByteView body, bool keep_raw) override;
  bool is_valid_tablesid() const override { return get_table_id() == 0xC9; }
};

}  // namespace quillon
