#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The content reference identifiers of an event (TS 102 323, 12.1).
class QUILLON_API DescriptorContentIdentifier final : public DescriptorBase {
 public:
  // A CRID, in full or by reference.
  class QUILLON_API ContentIdentifierInfo {
   public:
    ContentIdentifierInfo() = default;
    // `consumed` becomes 2 and crid_length for location 0, 3 for location 1, and 1 for any other.
    ContentIdentifierInfo(ByteView p, int& consumed);

    QUILLON_FIELD(int, crid_type, get_crid_type);
    QUILLON_FIELD(int, crid_location, get_crid_location);
    QUILLON_FIELD(int, crid_length, get_crid_length);               // location 0, otherwise 0
    QUILLON_FIELD(std::vector<uint8_t>, crid_byte, get_crid_byte);  // location 0
    QUILLON_FIELD(int, crid_ref, get_crid_ref);                     // location 1, otherwise 0

    QUILLON_RECORD_FACES;
  };

  DescriptorContentIdentifier() = default;
  // Throws error("descriptor start end mismatch") if the last entry does not end with the body.
  explicit DescriptorContentIdentifier(ByteView d);

  QUILLON_FIELD(std::vector<ContentIdentifierInfo>, contentidentifierinfo, get_contentidentifierinfo);

  QUILLON_FACES(contentidentifierinfo_);
};

}  // namespace quillon
