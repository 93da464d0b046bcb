#include <quillon/descriptors/event/component.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

template <class V, class S>
void DescriptorComponent::describe(V& v, S& s) {
  v.standard("stream_content_ext", s.stream_content_ext_);
  v.field("stream_content", s.stream_content_);
  v.field("component_type", s.component_type_);
  v.field("component_tag", s.component_tag_);
  v.field("language_code", s.iso_639_language_code_);
  if constexpr (!V::xml) v.field("text", s.text_);
}
QUILLON_FACES_OF(DescriptorComponent, "component_descriptor")

DescriptorMultilingualComponent::DescriptorMultilingualComponent(ByteView d)
    : DescriptorBase(d), component_tag_(d[2]) {
  if (!read_uneven_rows(nameinfo_, d, 3, descriptor_length - 1)) throw error(error::bad_value);
}

template <class V, class S>
void DescriptorMultilingualComponent::describe(V& v, S& s) {
  if constexpr (!V::xml) v.field("component_tag", s.component_tag_);
  v.list("nameinfo", "info", s.nameinfo_);
}
QUILLON_FACES_OF(DescriptorMultilingualComponent, "multilingual_component_name_descriptor")

}  // namespace quillon
