#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// The genres of an event (EN 300 468, 6.2.9).
class QUILLON_API DescriptorContent final : public DescriptorBase {
 public:
  // A genre: two nibbles of the standard, and two of the broadcaster.
  class QUILLON_API Content {
   public:
    Content() = default;
    explicit Content(ByteView p)
        : content_nibble_level_1_(p.bits(0, 7, 4)),
          content_nibble_level_2_(p.bits(0, 3, 4)),
          user_nibble1_(p.bits(1, 7, 4)),
          user_nibble2_(p.bits(1, 3, 4)) {}

    // The names of the first nibble and of both; those without one are
    // "undefined/user defined/reserved for future use".
    const char* get_content_nibble_level1_text() const;
    const char* get_content_nibble_level2_text() const;
    // In the edition in force.
    static const char* standard_content_nibble_level1_text(int level_1);
    static const char* standard_content_nibble_level2_text(int level_1, int level_2);

    QUILLON_FIELD(int, content_nibble_level_1, get_content_nibble_level_1);
    QUILLON_FIELD(int, content_nibble_level_2, get_content_nibble_level_2);
    QUILLON_FIELD(int, user_nibble1, get_user_nibble1);
    QUILLON_FIELD(int, user_nibble2, get_user_nibble2);

    QUILLON_RECORD_FACES;
  };

  DescriptorContent() = default;
  // Throws error("descriptor length mismatch") if the length is odd.
  explicit DescriptorContent(ByteView d);

  QUILLON_FIELD(std::vector<Content>, contents, get_contents);

  QUILLON_FACES(contents_);
};

}  // namespace quillon
