#pragma once

#include <quillon/atsc/wire_only.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// The ratings of an event (A/65, 6.9.3). Of several regions only the first is read, but in the
// standard reading.
class QUILLON_API DescriptorAtscContentAdvisory final : public DescriptorAtscWireOnly {
 public:
  // The rating in one region.
  //
  //   rating_region               8
  //   rated_dimensions            8
  //   dimensions
  //   rating_description_length   8
  //   rating_description_text
  class QUILLON_API Region {
   public:
    // The rating in one dimension of the region.
    class QUILLON_API RatedDimension {
     public:
      explicit RatedDimension(ByteView data)
          : rating_dimension_j(data[0]), rating_value(data.bits(1, 3, 4)) {}

      int rating_dimension_j = 0;
      int rating_value = 0;

      QUILLON_WALK;
    };

    // `length` bounds the dimensions alone. Throws error("DescriptorAtscContentAdvisory::Region: region start
    // end mismatch") unless the text has its length, except in the standard reading.
    Region(ByteView data, int length);
    // The bytes that it takes.
    int size() const { return 3 + 2 * static_cast<int>(dimensions.size()) + rating_description_length; }

    int rating_region = 0;
    int rated_dimensions = 0;
    std::vector<RatedDimension> dimensions;
    int rating_description_length = 0;
    ATSCMultipleStringStructure rating_description_text;

    QUILLON_WALK;
  };

  DescriptorAtscContentAdvisory() = default;
  // Throws error("DescriptorAtscContentAdvisory: region start end mismatch") if there are bytes and no
  // region.
  explicit DescriptorAtscContentAdvisory(ByteView d);

  const char* get_tag_text() const override { return "content_advisory_descriptor"; }

  int rating_region_count = 0;  // 6 bits
  std::vector<Region> regions;

  QUILLON_WALK;

 private:
  void _reset() override { regions.clear(); }
};

}  // namespace quillon
