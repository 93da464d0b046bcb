#include <quillon/descriptors/event/extended_event.h>
#include <quillon/faces/internal/describe.h>
#include <quillon/sections/internal/rows.h>

namespace quillon {

namespace {

// What an item claims to take, its two length bytes included.
int size_of_item(ByteView p) {
  return p[0] + p[1 + p[0]] + 2;
}

}  // namespace

DescriptorExtendedEvent::Item::Item(ByteView p, int& len) {
  const int size = size_of_item(p);
  if (size > len) throw error("data length mismatch");
  const int description_length = p[0];
  item_description_.parse(description_length, p.from(1));
  item_.parse(size - description_length - 2, p.from(2 + description_length));
  len = size;
}

template <class V, class S>
void DescriptorExtendedEvent::Item::describe(V& v, S& s) {
  v.field("description", s.item_description_);
  v.field("item", s.item_);
}
QUILLON_RECORD_FACES_OF(DescriptorExtendedEvent::Item)

DescriptorExtendedEvent::DescriptorExtendedEvent(ByteView d)
    : DescriptorBase(d),
      descriptor_number_(d.bits(2, 7, 4)),
      last_descriptor_number_(d.bits(2, 3, 4)),
      iso_639_language_code_(d.from(3)) {
  const int end = 7 + d[6];
  read_sized_rows(items_, d, 7, d[6], size_of_item);
  text_.parse(d[end], d.from(end + 1));
}

template <class V, class S>
void DescriptorExtendedEvent::describe(V& v, S& s) {
  v.field("descriptor_number", s.descriptor_number_);
  v.field("last_descriptor_number", s.last_descriptor_number_);
  v.field("language_code", s.iso_639_language_code_);
  if constexpr (!V::xml) v.field("text", s.text_);
  v.list("items", "item", s.items_);
}
QUILLON_FACES_OF(DescriptorExtendedEvent, "extended_event_descriptor")

}  // namespace quillon
