#pragma once

#include <quillon/atsc/wire_only.h>
#include <quillon/fields/multiple_string.h>

namespace quillon {

// The name of a virtual channel beyond its seven characters (A/65, 6.9.4).
class QUILLON_API DescriptorAtscExtendedChannelName final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscExtendedChannelName() = default;
  // Throws error("DescriptorAtscExtendedChannelName::Region: region start end mismatch") unless the text
  // fills the descriptor.
  explicit DescriptorAtscExtendedChannelName(ByteView d);

  const char* get_tag_text() const override { return "extended_channel_name_descriptor"; }

  ATSCMultipleStringStructure long_channel_name_text;

  QUILLON_WALK;
};

// The name of a component of a service (A/65, 6.9.7).
class QUILLON_API DescriptorAtscComponentName final : public DescriptorAtscWireOnly {
 public:
  DescriptorAtscComponentName() = default;
  // Throws error("DescriptorAtscComponentName: service start end mismatch") unless the text fills the
  // descriptor.
  explicit DescriptorAtscComponentName(ByteView d);

  const char* get_tag_text() const override { return "component_name_descriptor"; }

  ATSCMultipleStringStructure component_name_string;

  QUILLON_WALK;
};

}  // namespace quillon
