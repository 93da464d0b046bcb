#pragma once

#include <quillon/atsc/wire_only.h>

namespace quillon {

// The genres of an event (A/65, 6.9). As many attributes are read as the count says, whatever the length.
class QUILLON_API DescriptorAtscGenre final : public DescriptorAtscWireOnly {
 public:
  // A genre by its code.
  class QUILLON_API Attribute {
   public:
    explicit Attribute(ByteView data) : attribute(data[0]) {}

    int attribute = 0;

    QUILLON_WALK;
  };

  DescriptorAtscGenre() = default;
  explicit DescriptorAtscGenre(ByteView d);

  const char* get_tag_text() const override { return "genre_descriptor"; }

  int attribute_count = 0;
  std::vector<Attribute> attributes;

  QUILLON_WALK;
};

}  // namespace quillon
