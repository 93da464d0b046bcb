#include <quillon/atsc/genre.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

DescriptorAtscGenre::DescriptorAtscGenre(ByteView d)
    : DescriptorAtscWireOnly(d), attribute_count(d.bits(2, 4, 5)) {
  attributes.reserve(static_cast<size_t>(attribute_count));
  for (int i = 0; i < attribute_count; ++i) attributes.emplace_back(d.from(3 + i));
}

template <class V, class S>
void DescriptorAtscGenre::describe(V& v, S& s) {
  v.field("attribute_count", s.attribute_count);
  v.list("attributes", "attribute", s.attributes);
}
QUILLON_WALK_OF(DescriptorAtscGenre)

template <class V, class S>
void DescriptorAtscGenre::Attribute::describe(V& v, S& s) {
  v.field("attribute", s.attribute);
}
QUILLON_WALK_OF(DescriptorAtscGenre::Attribute)

}  // namespace quillon
