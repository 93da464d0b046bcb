#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>
#include <quillon/fields/wire_text.h>

namespace quillon {

// What a data service carries, with a text for its users (EN 300 468, 6.2.11).
class QUILLON_API DescriptorDataBroadcast final : public DescriptorBase {
 public:
  DescriptorDataBroadcast() = default;
  explicit DescriptorDataBroadcast(ByteView d);

  int data_broadcast_id = 0;
  int component_tag = 0;
  int selector_length = 0;
  std::vector<uint8_t> selector_bytes;
  ISO639LanguageCode language;
  int textlength = 0;
  WireText text;  // the bytes as they are; DVB text in the standard reading

  QUILLON_FACES(selector_bytes, text);
};

// A component's kind of data broadcast (EN 300 468, 6.2.12). Of the selectors, that of the IP/MAC
// notification is taken apart (EN 301 192, 8.3); any other is kept as bytes.
class QUILLON_API DescriptorDataBroadcastId final : public DescriptorBase {
 public:
  // data_broadcast_id of a component with an IP/MAC notification table.
  static constexpr int ip_mac_notification = 0x000B;

  // A platform that the notification table speaks of, and what to do there.
  class QUILLON_API PlatformIdData {
   public:
    PlatformIdData() = default;
    // The first byte of the platform's 24 bits is 24 bits up, not 16, but for the standard reading. Kept:
    // readers of saved documents rely on it.
    explicit PlatformIdData(ByteView p)
        // Quirk: DescriptorDataBroadcastId platform_id
        : platform_id(p.standard()
                          ? p.u24(0)
                          : static_cast<int>(uint32_t{p[0]} << 24 | static_cast<uint32_t>(p.u16(1)))),
          action_type(p[3]),
          INT_versioning_flag(p.bits(4, 5, 1)),
          INT_version(p.bits(4, 4, 5)) {}

    int platform_id = 0;
    int action_type = 0;
    int INT_versioning_flag = 0;
    int INT_version = 0;  // 5 bits

    QUILLON_RECORD_FACES;
  };

  DescriptorDataBroadcastId() = default;
  // Throws error("invalid length") if the platforms' length is no multiple of 5.
  explicit DescriptorDataBroadcastId(ByteView d);

  int data_broadcast_id = 0;
  std::vector<uint8_t> id_selector_bytes;  // of any other id; no document has them
  int platform_id_data_length = 0;         // this and the following of the notification's id alone
  std::vector<PlatformIdData> platform_id_data;
  std::vector<uint8_t> private_data;

  QUILLON_FACES(id_selector_bytes, platform_id_data, private_data);
};

}  // namespace quillon
