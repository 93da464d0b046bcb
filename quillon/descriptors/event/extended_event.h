#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>
#include <quillon/fields/text.h>

namespace quillon {

// The long description of an event (EN 300 468, 6.2.15), a table of items and a running text, as one of up
// to 16 descriptors. A save leaves out the text.
class QUILLON_API DescriptorExtendedEvent final : public DescriptorBase {
 public:
  // An item: what it is, and what it says.
  class QUILLON_API Item {
   public:
    Item() = default;
    // `len` is the bytes left, and becomes the bytes used. Throws error("data length mismatch") if the two
    // texts do not fit.
    Item(ByteView p, int& len);

    QUILLON_FIELD(Text, item_description, get_item_description);
    QUILLON_FIELD(Text, item, get_item);

    QUILLON_RECORD_FACES;
  };

  DescriptorExtendedEvent() = default;
  // Throws what an Item throws.
  explicit DescriptorExtendedEvent(ByteView d);

  QUILLON_FIELD(int, descriptor_number, get_descriptor_number);
  QUILLON_FIELD(int, last_descriptor_number, get_last_descriptor_number);
  QUILLON_FIELD(CodeCharacters, iso_639_language_code, get_iso_639_language_code);
  QUILLON_FIELD(std::vector<Item>, items, get_items);
  QUILLON_FIELD(Text, text, get_text);

  QUILLON_FACES(items_);
};

}  // namespace quillon
