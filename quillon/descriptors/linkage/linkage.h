#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>

namespace quillon {

// Points to a service, a table or a notification elsewhere (EN 300 468, 6.2.19). What follows linkage_type
// depends on it: a hand-over for 8, the platforms of IP/MAC notification for 11 (EN 301 192, 8.2.1), in the
// standard reading an event for 13 and events for 14 to 31, else private data alone.
class QUILLON_API DescriptorLinkage final : public DescriptorBase {
 public:
  // A platform, with its names.
  class QUILLON_API PlatformIDInfo {
   public:
    // The name in one language.
    class QUILLON_API PlatformIDInfoName {
     public:
      PlatformIDInfoName() = default;
      // `consumed` becomes the name's length plus 4.
      PlatformIDInfoName(ByteView p, int& consumed);

      QUILLON_FIELD(ISO639LanguageCode, iso_639_language_code, get_iso_639_language_code);
      QUILLON_FIELD(int, platform_name_length, get_platform_name_length);
      QUILLON_FIELD(Text, name, get_name);

      QUILLON_RECORD_FACES;
    };

    PlatformIDInfo() = default;
    // `len` holds the bytes left on entry, and on return those used: the loop length plus 4. Throws error
    // ("PlatformIDInfo: descriptor start end mismatch") unless the last name ends with the loop.
    PlatformIDInfo(ByteView p, int& len);

    QUILLON_FIELD(int, platform_id, get_platform_id);
    QUILLON_FIELD(int, platform_name_loop_length, get_platform_name_loop_length);
    QUILLON_FIELD(std::vector<PlatformIDInfoName>, platform_names, get_platform_names);

    QUILLON_RECORD_FACES;
  };

  // An event that this one is linked with. Which of the last four are there is what the types and flags say.
  class QUILLON_API ExtendedEvent {
   public:
    // `used` becomes the bytes of the row, 3 to 9.
    ExtendedEvent(ByteView p, int& used);

    QUILLON_FIELD(int, target_event_id, get_target_event_id);
    QUILLON_FIELD(int, target_listed, get_target_listed);
    QUILLON_FIELD(int, event_simulcast, get_event_simulcast);
    QUILLON_FIELD(int, link_type, get_link_type);            // 2 bits
    QUILLON_FIELD(int, target_id_type, get_target_id_type);  // 2 bits
    QUILLON_FIELD(int, original_network_id_flag, get_original_network_id_flag);
    QUILLON_FIELD(int, service_id_flag, get_service_id_flag);
    QUILLON_FIELD(int, user_defined_id, get_user_defined_id);
    QUILLON_FIELD(int, target_transport_stream_id, get_target_transport_stream_id);
    QUILLON_FIELD(int, target_original_network_id, get_target_original_network_id);
    QUILLON_FIELD(int, target_service_id, get_target_service_id);

    QUILLON_WALK;
  };

  DescriptorLinkage() = default;
  // For linkage_type 11 throws error("DescriptorLinkage: invalid platform_id_data_length length") if the
  // loop goes past the descriptor, error("DescriptorLinkage: descriptor start end mismatch") unless the last
  // platform ends with the loop; for 14 to 31 in the standard reading error("DescriptorLinkage: extended
  // event start end mismatch") unless the last event ends with the loop, within the descriptor.
  explicit DescriptorLinkage(ByteView d);

  static const char* get_linkage_type_text(int linkage_type);
  // In the edition in force.
  static const char* standard_linkage_type_text(int linkage_type);
  static const char* get_hand_over_type_text(int hand_over_type);
  static const char* get_origin_type_text(int origin_type);

  QUILLON_FIELD(int, transport_stream_id, get_transport_stream_id);
  QUILLON_FIELD(int, original_network_id, get_original_network_id);
  QUILLON_FIELD(int, service_id, get_service_id);
  QUILLON_FIELD(int, linkage_type, get_linkage_type);
  QUILLON_FIELD(std::vector<uint8_t>, private_data, get_private_data);
  QUILLON_FIELD(int, hand_over_type, get_hand_over_type);                    // linkage_type 8
  QUILLON_FIELD(int, origin_type, get_origin_type);                          // linkage_type 8
  QUILLON_FIELD(int, network_id, get_network_id);                            // hand_over_type 1 to 3
  QUILLON_FIELD(int, initial_service_id, get_initial_service_id);            // linkage_type 8, origin_type 0
  QUILLON_FIELD(int, platform_id_data_length, get_platform_id_data_length);  // linkage_type 11
  QUILLON_FIELD(std::vector<PlatformIDInfo>, platformidinfos, get_platformidinfos);

  // linkage_type 13, in the standard reading.
  QUILLON_FIELD(int, target_event_id, get_target_event_id);
  QUILLON_FIELD(int, target_listed, get_target_listed);
  QUILLON_FIELD(int, event_simulcast, get_event_simulcast);
  // linkage_type 14 to 31, in the standard reading.
  QUILLON_FIELD(std::vector<ExtendedEvent>, extended_events, get_extended_events);

  QUILLON_FACES(private_data_);

 private:
  void read_event(ByteView d);
  void read_extended_events(ByteView d);
  void read_hand_over(ByteView d);
  void read_platforms(ByteView d);
};

}  // namespace quillon
