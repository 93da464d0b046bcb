#include <quillon/descriptors/event/parental_rating.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorParentalRating::RatingInfo::describe(V& v, S& s) {
  v.labels("DescriptorParentalRating::RatingInfo::", ": ");
  if constexpr (V::dump) v.field("country_code", s.country_code_);
  v.field("rating", s.rating_);
  if constexpr (V::xml) v.field("country_code", s.country_code_);
}
QUILLON_RECORD_FACES_OF(DescriptorParentalRating::RatingInfo)

DescriptorParentalRating::DescriptorParentalRating(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 4 != 0) throw error(error::length_mismatch, "parental_rating_descriptor");
  ratinginfo_.reserve(static_cast<size_t>(descriptor_length) / 4);
  walk(d, 2, 2 + descriptor_length, [this](ByteView at, int) {
    ratinginfo_.emplace_back(at);
    return 4;
  });
}

template <class V, class S>
void DescriptorParentalRating::describe(V& v, S& s) {
  v.list("ratinginfo", "info", s.ratinginfo_);
}
QUILLON_FACES_OF(DescriptorParentalRating, "parental_rating_descriptor")

}  // namespace quillon
