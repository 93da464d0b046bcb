#include "tests/support/docs/shape.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include <quillon/fields/time.h>
#include <quillon/xml/attributes.h>

namespace quillon::test {

Value ValueSink::take() {
  Value out = std::move(open_.front());
  open_ = {Value()};
  return out;
}

Value& ValueSink::add(const char* name, Kind kind, std::string text) {
  Value& value = open_.back().items.emplace_back();
  value.name = name;
  value.kind = kind;
  value.text = std::move(text);
  return value;
}

void ValueSink::number(const char* name, int64_t value, const char* meaning) {
  Value& added = add(name, Kind::number, std::to_string(value));
  added.number = value;
  added.is_coded = meaning != nullptr;
}

void ValueSink::real(const char* name, double value) {
  char place[32];
  add(name, Kind::real, {place, std::to_chars(std::begin(place), std::end(place), value).ptr});
}

void ValueSink::text(const char* name, std::string_view utf8) {
  add(name, Kind::text, std::string(utf8));
}

void ValueSink::bytes(const char* name, const uint8_t* data, size_t size) {
  std::string digits;
  bin2str(data, digits, static_cast<int>(size));
  add(name, Kind::bytes, digits);
}

void ValueSink::time(const char* name, const DateTime& utc) {
  add(name, Kind::time, utc.get_date_as_text());
}

void ValueSink::duration(const char* name, const Duration& value) {
  add(name, Kind::duration, value.get_time_as_text());
}

void ValueSink::begin(const char* name, const char* kind) {
  Value value;
  value.name = name;
  value.text = kind;
  open_.push_back(std::move(value));
}

void ValueSink::begin_list(const char* name, size_t) {
  begin(name, "");
  open_.back().kind = Kind::list;
}

void ValueSink::end() {
  Value value = std::move(open_.back());
  open_.pop_back();
  open_.back().items.push_back(std::move(value));
}

namespace {

// Takes the element that begins at the front of `text`, as a save writes it.
Value take_element(std::string_view& text) {
  const auto take_to = [&text](std::string_view stops) {
    const std::string_view out = text.substr(0, text.find_first_of(stops));
    text.remove_prefix(out.size());
    return std::string(out);
  };
  const auto next_is = [&text](std::string_view front) {
    text.remove_prefix(std::min(text.find_first_not_of(" \n"), text.size()));
    if (!text.starts_with(front)) return false;
    text.remove_prefix(front.size());
    return true;
  };
  next_is("<");
  Value out;
  out.name = take_to(" />");
  while (!next_is(">")) {
    if (next_is("/>")) return out;
    Value& attribute = out.items.emplace_back();
    attribute.kind = Kind::text;
    attribute.name = take_to("=");
    text.remove_prefix(2);
    attribute.text = take_to("\"");
    text.remove_prefix(1);
  }
  while (!next_is("</")) out.items.push_back(take_element(text));
  text.remove_prefix(out.name.size() + 1);
  return out;
}

}  // namespace

Value element_of(std::string_view document) {
  if (document.starts_with("<?")) document.remove_prefix(document.find("?>") + 2);
  return take_element(document);
}

void Shape::add(const Value& value) {
  const bool is_node = value.kind == Kind::record || value.kind == Kind::list;
  if (is_node && !value.text.empty()) class_name = value.text;
  if (!is_node) {
    varies = varies || (count != 0 && value.text.size() != length);
    length = value.text.size();
  }
  kinds.insert(value.kind);
  is_coded = is_coded || value.is_coded;
  ++count;
  if (value.name == "descriptors") return;
  std::set<std::string_view> seen;
  size_t place = 0;
  for (const Value& item : value.items) {
    auto member =
        std::find_if(members.begin(), members.end(), [&](const Member& m) { return m.name == item.name; });
    if (member == members.end())
      member = members.insert(members.begin() + static_cast<ptrdiff_t>(place), Member{item.name});
    place = static_cast<size_t>(member - members.begin()) + 1;
    if (seen.insert(item.name).second) ++member->parents;
    member->shape.add(item);
  }
}

const Shape::Member* Shape::find(std::string_view name) const {
  for (const Member& member : members)
    if (member.name == name) return &member;
  return nullptr;
}

}  // namespace quillon::test
