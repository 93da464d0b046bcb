#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>
#include <quillon/fields/time.h>

namespace quillon {

// The offset of local time from UTC, region by region, now and from the next change on (EN 300 468, 6.2.20).
class QUILLON_API DescriptorLocalTimeOffset final : public DescriptorBase {
 public:
  // The offset of a region from UTC, and its next change.
  class QUILLON_API LocalTime {
   public:
    LocalTime() = default;
    // `consumed` becomes 13.
    LocalTime(ByteView p, int& consumed)
        : country_code_(p),
          // Quirk: DescriptorLocalTimeOffset country_region_id
          country_region_id_(p.bits(3, 7, p.standard() ? 6 : 2)),
          local_time_offset_polarity_(p.bits(3, 0, 1)),
          local_time_offset_(p.from(4)),
          time_of_change_(p.from(6)),
          next_time_offset_(p.from(11)) {
      consumed = 13;
    }

    QUILLON_FIELD(CodeCharacters, country_code, get_country_code);
    QUILLON_FIELD(int, country_region_id, get_country_region_id);  // the top two bits; all six when standard
    QUILLON_FIELD(int, local_time_offset_polarity, get_local_time_offset_polarity);
    QUILLON_FIELD(TimeOffset, local_time_offset, get_local_time_offset);
    QUILLON_FIELD(DateTime, time_of_change, get_time_of_change);
    QUILLON_FIELD(TimeOffset, next_time_offset, get_next_time_offset);

    QUILLON_RECORD_FACES;
  };

  DescriptorLocalTimeOffset() = default;
  // Throws error("descriptor start end mismatch") if the last entry does not end with the body.
  explicit DescriptorLocalTimeOffset(ByteView d);

  QUILLON_FIELD(std::vector<LocalTime>, localtime, get_localtime);

  QUILLON_FACES(localtime_);
};

}  // namespace quillon
