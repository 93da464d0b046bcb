#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>

namespace quillon {

// The age that an event is meant for, country by country (EN 300 468, 6.2.28).
class QUILLON_API DescriptorParentalRating final : public DescriptorBase {
 public:
  // The rating for one country.
  class QUILLON_API RatingInfo {
   public:
    RatingInfo() = default;
    explicit RatingInfo(ByteView p) : country_code_(p), rating_(p[3]) {}

    QUILLON_FIELD(CodeCharacters, country_code, get_country_code);
    QUILLON_FIELD(int, rating, get_rating);

    QUILLON_RECORD_FACES;
  };

  DescriptorParentalRating() = default;
  // Throws error(error::length_mismatch, "parental_rating_descriptor") unless the length is a multiple of 4.
  explicit DescriptorParentalRating(ByteView d);

  QUILLON_FIELD(std::vector<RatingInfo>, ratinginfo, get_ratinginfo);

  QUILLON_FACES(ratinginfo_);
};

}  // namespace quillon
