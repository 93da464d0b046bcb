#include <quillon/atsc/names.h>
#include <quillon/faces/internal/walk_of.h>

namespace quillon {

DescriptorAtscExtendedChannelName::DescriptorAtscExtendedChannelName(ByteView d) : DescriptorAtscWireOnly(d) {
  int length = descriptor_length;
  long_channel_name_text.parse(d.from(2), length);
  if (length != descriptor_length)
    throw error("DescriptorAtscExtendedChannelName::Region: region start end mismatch");  // kept, the Region
}

DescriptorAtscComponentName::DescriptorAtscComponentName(ByteView d) : DescriptorAtscWireOnly(d) {
  int length = descriptor_length;
  component_name_string.parse(d.from(2), length);
  if (length != descriptor_length) throw error("DescriptorAtscComponentName: service start end mismatch");
}

template <class V, class S>
void DescriptorAtscExtendedChannelName::describe(V& v, S& s) {
  v.field("long_channel_name_text", s.long_channel_name_text);
}
QUILLON_WALK_OF(DescriptorAtscExtendedChannelName)

template <class V, class S>
void DescriptorAtscComponentName::describe(V& v, S& s) {
  v.field("component_name_string", s.component_name_string);
}
QUILLON_WALK_OF(DescriptorAtscComponentName)

}  // namespace quillon
