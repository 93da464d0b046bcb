#include <quillon/descriptors/event/component.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

template <class V, class S>
void DescriptorComponent::describe(V& v, S& s) {
  v.field("stream_content", s.stream_content_);
  v.field("component_type", s.component_type_);
  v.field("component_tag", s.component_tag_);
  v.field("language_code", s.iso_639_language_code_);
  if constexpr (V::dump) v.field("text", s.text_);
}
QUILLON_FACES_OF(DescriptorComponent, "component_descriptor")

DescriptorMultilingualComponent::DescriptorMultilingualComponent(ByteView d)
    : DescriptorBase(d), component_tag_(d[2]) {
  const bool ended = walk(d, 3, 2 + descriptor_length, [this](ByteView at, int left) {
    int used = 0;
    nameinfo_.emplace_back(at, left, used);
    return used;
  });
  if (!ended) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorMultilingualComponent::describe(V& v, S& s) {
  if constexpr (V::dump) v.field("component_tag", s.component_tag_);
  v.list("nameinfo", "info", s.nameinfo_);
}
QUILLON_FACES_OF(DescriptorMultilingualComponent, "multilingual_component_name_descriptor")

}  // namespace quillon
