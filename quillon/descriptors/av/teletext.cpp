#include <quillon/descriptors/av/teletext.h>
#include <quillon/descriptors/internal/code_text.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

const char* teletext_type_text(int type) {
  return detail::text_of(type,
                         {"reserved for future use", "initial teletext page", "teletext subtitle page",
                          "additional information page", "programme schedule page"},
                         "reserved for future use");
}

}  // namespace

DescriptorTeletext::DescriptorTeletext(ByteView d) : DescriptorBase(d) {
  if (descriptor_length % TeletextItem::size != 0) throw error("descriptor length mismatch");
  read_rows(teletext_items, d, 2, descriptor_length, TeletextItem::size);
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
  if constexpr (!V::xml) v.field("language_code", s.language);
  v.coded("teletext_type", s.teletext_type, {teletext_type_text, standard_teletext_type_text});
  if constexpr (V::xml) v.field("language_code", s.language);
  v.field("teletext_magazine_number", s.teletext_magazine_number);
  v.field("teletext_page_number", s.teletext_page_number);
}
QUILLON_RECORD_FACES_OF(DescriptorTeletext::TeletextItem)

// Quirk: teletext_type texts
const char* DescriptorTeletext::TeletextItem::standard_teletext_type_text(int teletext_type) {
  return teletext_type == 5 ? "teletext subtitle page for hearing impaired people"
                            : teletext_type_text(teletext_type);
}

const char* DescriptorTeletext::TeletextItem::get_teletext_type_text() const {
  return teletext_type_text(teletext_type);
}

}  // namespace quillon
