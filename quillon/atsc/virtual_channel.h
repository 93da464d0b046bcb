#pragma once

#include <quillon/atsc/atsc_table.h>
#include <quillon/platform/wide_string.h>

namespace quillon {

// What a channel of either virtual channel table has.
class QUILLON_API VirtualChannel : public AtscLoop {
 public:
  static const char* get_modulation_mode_text(int modulation_mode);
  const char* get_modulation_mode_text() const { return get_modulation_mode_text(modulation_mode); }
  static const char* get_ETM_location_text(int ETM_location);
  const char* get_ETM_location_text() const { return get_ETM_location_text(ETM_location); }
  static const char* get_service_type_text(int service_type);
  const char* get_service_type_text() const { return get_service_type_text(service_type); }
  // In the edition in force.
  static const char* standard_service_type_text(int service_type);

  // Prints the fields that are common to both tables, but for the name, as numbers.
  void dump_state(std::ostream& stream) const;

  wide_string short_name;  // at most seven units, none of them 0
  int major_channel_number = 0;
  int minor_channel_number = 0;
  int modulation_mode = 0;
  int carrier_frequency = 0;
  int channel_TSID = 0;
  int program_number = 0;
  int ETM_location = 0;  // 2 bits
  int access_controlled = 0;
  int hidden = 0;
  int hide_guide = 0;
  int service_type = 0;  // 6 bits
  int source_id = 0;
  int descriptors_length = 0;  // 10 bits

 protected:
  // The fields that are common to both tables, but for the descriptors.
  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);
  void read_short_name(ByteView channel);
  // Reads descriptors_length bytes of descriptors, which begin at byte 32, and gives the bytes of the
  // channel. Throws error("AtscTVCT::Channel: descriptor start end mismatch").
  int read_descriptors(ByteView channel, const RowContext& row);
};

// What either virtual channel table has beside its channels.
class QUILLON_API VirtualChannelTable : public AtscLoopTable {
 public:
  int protocol_version = 0;
  int num_channels_in_section = 0;        // as stated; there may be fewer after a failure
  int additional_descriptors_length = 0;  // bounds the descriptors in the standard reading alone

 protected:
  // The fields of the table, with its channels.
  template <class Visitor, class Self>
  static void describe(Visitor& v, Self& s);

  // Reads the body, whose first channel is at `begin`. Throws error("AtscTVCT: descriptor start end
  // mismatch").
  template <class Channel>
  void parse_channels(std::vector<Channel>& channels, int begin, ByteView body, bool keep_raw);

 private:
  void parse_additional_descriptors(int begin, ByteView body, bool keep_raw);
};

}  // namespace quillon
