#pragma once

#include <quillon/descriptors/descriptor_base.h>
#include <quillon/fields/language.h>

namespace quillon {

// One teletext page and its language, as the teletext and the VBI teletext descriptor list it.
class QUILLON_API TeletextPage {
 public:
  static constexpr int size = 5;

  ISO639LanguageCode language;
  int teletext_type = 0;             // 5 bits
  int teletext_magazine_number = 0;  // 3 bits, 0 is magazine 8
  int teletext_page_number = 0;      // two hexadecimal digits

 protected:
  TeletextPage() = default;
  explicit TeletextPage(ByteView p)
      : teletext_type(p.bits(3, 7, 5)),
        teletext_magazine_number(p.bits(3, 2, 3)),
        teletext_page_number(p[4]) {
    language.parse(p);
  }
};

// The pages of an EBU teletext stream (EN 300 468, 6.2.43).
class QUILLON_API DescriptorTeletext final : public DescriptorBase {
 public:
  // A page of teletext, in one language.
  class QUILLON_API TeletextItem : public TeletextPage {
   public:
    TeletextItem() = default;
    explicit TeletextItem(ByteView item) : TeletextPage(item) {}

    const char* get_teletext_type_text() const;
    // In the edition in force.
    static const char* standard_teletext_type_text(int teletext_type);

    QUILLON_RECORD_FACES;
  };

  DescriptorTeletext() = default;
  // Throws error("descriptor length mismatch") unless the length is a multiple of 5.
  explicit DescriptorTeletext(ByteView d);

  std::vector<TeletextItem> teletext_items;

  QUILLON_FACES(teletext_items);
};

}  // namespace quillon
