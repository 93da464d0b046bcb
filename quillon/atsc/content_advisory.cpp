#include <quillon/atsc/content_advisory.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

DescriptorAtscContentAdvisory::DescriptorAtscContentAdvisory(ByteView d)
    : DescriptorAtscWireOnly(d), rating_region_count(d.bits(2, 5, 6)) {
  const int end = 2 + descriptor_length;
  int pos = 3;
  // A region takes all that is left, so that there is never a second one: kept.
  // Quirk: DescriptorAtscContentAdvisory regions
  if (d.standard()) {
    for (int n = 0; n < rating_region_count && pos < end && d.has(pos); ++n) {
      regions.emplace_back(d.from(pos), end - pos);
      pos += regions.back().size();
    }
    if (pos < end) pos = end;
  } else if (rating_region_count > 0 && pos < end && d.has(pos)) {
    regions.emplace_back(d.from(pos), end - pos);
    pos = end;
  }
  if (pos != end) throw error("DescriptorAtscContentAdvisory: region start end mismatch");
}

DescriptorAtscContentAdvisory::Region::Region(ByteView data, int length)
    : rating_region(data[0]), rated_dimensions(data[1]) {
  int pos = 2;
  for (int n = 0; n < rated_dimensions && pos < length && data.has(pos); ++n, pos += 2)
    dimensions.emplace_back(data.from(pos));
  rating_description_length = data[pos];
  if (data.standard()) {
    rating_description_text.parse_field(data, pos + 1, rating_description_length);
    return;
  }
  int consumed = rating_description_length;
  rating_description_text.parse(data.from(pos + 1), consumed);
  if (consumed != rating_description_length)
    throw error("DescriptorAtscContentAdvisory::Region: region start end mismatch");
}

template <class V, class S>
void DescriptorAtscContentAdvisory::describe(V& v, S& s) {
  v.field("rating_region_count", s.rating_region_count);
  v.list("regions", "region", s.regions);
}
QUILLON_WALK_OF(DescriptorAtscContentAdvisory)

template <class V, class S>
void DescriptorAtscContentAdvisory::Region::describe(V& v, S& s) {
  v.field("rating_region", s.rating_region);
  v.field("rated_dimensions", s.rated_dimensions);
  v.list("dimensions", "dimension", s.dimensions);
  v.field("rating_description_length", s.rating_description_length);
  v.field("rating_description_text", s.rating_description_text);
}
QUILLON_WALK_OF(DescriptorAtscContentAdvisory::Region)

template <class V, class S>
void DescriptorAtscContentAdvisory::Region::RatedDimension::describe(V& v, S& s) {
  v.field("rating_dimension_j", s.rating_dimension_j);
  v.field("rating_value", s.rating_value);
}
QUILLON_WALK_OF(DescriptorAtscContentAdvisory::Region::RatedDimension)

}  // namespace quillon
