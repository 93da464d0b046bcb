#include "apps/quillon/html/field_tree.h"

#include "apps/quillon/html/markup.h"
#include "apps/quillon/text.h"

#include <quillon/fields/time.h>
#include <quillon/xml/attributes.h>

namespace quillon::app::html {

const Field& Field::operator[](std::string_view item) const {
  static const Field none;
  for (const Field& field : items)
    if (field.is(item)) return field;
  return none;
}

Field& FieldTree::add(const char* name, Field::Shape shape, std::string value) {
  std::vector<Field>& items = open_.back()->items;
  items.push_back({name, shape, std::move(value), {}, {}, {}});
  return items.back();
}

void FieldTree::number(const char* name, int64_t value, const char* meaning) {
  Field& field = add(name, Field::Shape::number, std::to_string(value));
  if (meaning) field.meaning = meaning;
}

void FieldTree::real(const char* name, double value) {
  add(name, Field::Shape::number, decimal(value, 6));
}

void FieldTree::text(const char* name, std::string_view utf8) {
  add(name, Field::Shape::text, std::string(utf8));
}

void FieldTree::bytes(const char* name, const uint8_t* data, size_t size) {
  std::string text;
  bin2str(data, text, static_cast<int>(size));
  add(name, Field::Shape::other, size == 0 ? "none" : std::move(text));
}

void FieldTree::time(const char* name, const DateTime& utc) {
  add(name, Field::Shape::other, is_defined(utc) ? iso_8601(utc) : "undefined");
}

void FieldTree::duration(const char* name, const Duration& value) {
  add(name, Field::Shape::other, is_defined(value) ? clock(value) : "undefined");
}

// A record that is open is the last item of the one around it: items are added to it alone, so that the
// places of those around it stay.
void FieldTree::begin(const char* name, const char*) {
  open_.push_back(&add(name, Field::Shape::record, {}));
}

void FieldTree::begin_list(const char* name, size_t size) {
  open_.push_back(&add(name, Field::Shape::list, grouped(size)));
}

void FieldTree::end() {
  open_.pop_back();
}

}  // namespace quillon::app::html
