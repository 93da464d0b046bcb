#include <quillon/descriptors/event/parental_rating.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

template <class V, class S>
void DescriptorParentalRating::RatingInfo::describe(V& v, S& s) {
  v.labels("DescriptorParentalRating::RatingInfo::", ": ");
  if constexpr (!V::xml) v.field("country_code", s.country_code_);
  v.field("rating", s.rating_);
  if constexpr (V::xml) v.field("country_code", s.country_code_);
}
QUILLON_RECORD_FACES_OF(DescriptorParentalRating::RatingInfo)

DescriptorParentalRating::DescriptorParentalRating(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % 4 != 0) throw error(error::length_mismatch, "parental_rating_descriptor");
  read_rows(ratinginfo_, d, 2, descriptor_length, 4);
}

template <class V, class S>
void DescriptorParentalRating::describe(V& v, S& s) {
  v.list("ratinginfo", "info", s.ratinginfo_);
}
QUILLON_FACES_OF(DescriptorParentalRating, "parental_rating_descriptor")

}  // namespace quillon
