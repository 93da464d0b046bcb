#include <quillon/atsc/genre.h>

namespace quillon {

DescriptorAtscGenre::DescriptorAtscGenre(ByteView d)
    : DescriptorAtscWireOnly(d), attribute_count(d.bits(2, 4, 5)) {
  attributes.reserve(static_cast<size_t>(attribute_count));
  for (int i = 0; i < attribute_count; ++i) attributes.emplace_back(d.from(3 + i));
}

}  // namespace quillon
