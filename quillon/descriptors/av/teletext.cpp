#include <quillon/descriptors/av/teletext.h>
#include <quillon/descriptors/internal/describe.h>

namespace quillon {

DescriptorTeletext::DescriptorTeletext(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % TeletextItem::size != 0) throw error("descriptor length mismatch");
  teletext_items.reserve(static_cast<size_t>(descriptor_length / TeletextItem::size));
  walk(d, 2, 2 + descriptor_length, [this](ByteView at, int) {
    teletext_items.emplace_back(at);
    return TeletextItem::size;
  });
}

template <class V, class S>
void DescriptorTeletext::describe(V& v, S& s) {
  v.list("teletextitems", "teletext", s.teletext_items);
}
QUILLON_FACES_OF(DescriptorTeletext, "teletext_descriptor")

// A report begins with the language, a document with the type.
template <class V, class S>
void DescriptorTeletext::TeletextItem::describe(V& v, S& s) {
  v.labels("", " ");
  if constexpr (V::dump) v.field("language_code", s.language);
  v.field("teletext_type", s.teletext_type);
  if constexpr (V::xml) v.field("language_code", s.language);
  v.field("teletext_magazine_number", s.teletext_magazine_number);
  v.field("teletext_page_number", s.teletext_page_number);
}
QUILLON_RECORD_FACES_OF(DescriptorTeletext::TeletextItem)

const char* DescriptorTeletext::TeletextItem::get_teletext_type_text() const {
  switch (teletext_type) {
    case 1:
      return "initial teletext page";
    case 2:
      return "teletext subtitle page";
    case 3:
      return "additional information page";
    case 4:
      return "programme schedule page";
    default:
      return "reserved for future use";
  }
}

}  // namespace quillon
