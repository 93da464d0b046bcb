#include <quillon/atsc/content_advisory.h>

namespace quillon {

DescriptorAtscContentAdvisory::DescriptorAtscContentAdvisory(ByteView d)
    : DescriptorAtscWireOnly(d), rating_region_count(d.bits(2, 5, 6)) {
  const int end = 2 + descriptor_length;
  int pos = 3;
  // A region takes all that is left, so that there is never a second one: kept.
  if (rating_region_count > 0 && pos < end && d.has(pos)) {
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
  int consumed = rating_description_length;
  rating_description_text.parse(data.from(pos + 1), consumed);
  if (consumed != rating_description_length)
    throw error("DescriptorAtscContentAdvisory::Region: region start end mismatch");
}

}  // namespace quillon
