#include <quillon/atsc/names.h>

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

}  // namespace quillon
