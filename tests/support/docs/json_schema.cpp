#include "tests/support/docs/made_pages.h"
#include "tests/support/docs/observed.h"

#include <set>

namespace quillon::test {

namespace {

// A JSON text that is put together from its parts.
std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

std::string reference(const std::string& name) {
  return R"({"$ref": "#/$defs/)" + name + "\"}";
}

// Members of an object, and which of them it always has.
struct Object {
  std::string properties;
  std::string required;

  void add(const std::string& name, const std::string& schema, bool is_required, const std::string& indent) {
    properties += (properties.empty() ? "" : ",") + indent + quoted(name) + ": " + schema;
    if (is_required) required += (required.empty() ? "" : ", ") + quoted(name);
  }
  std::string text(const std::string& indent) const {
    return R"({"type": "object", "additionalProperties": false, "required": [)" + required +
           R"(], "properties": {)" + properties + indent + "}}";
  }
};

std::string schema_of(const Shape& shape, const std::string& name, const std::string& loop,
                      const std::string& indent);

void add_members(Object& object, const Shape& shape, const std::string& loop, const std::string& indent) {
  for (const Shape::Member& member : shape.members) {
    const bool is_required = member.parents == shape.count;
    object.add(member.name, schema_of(member.shape, member.name, loop, indent), is_required, indent);
    if (member.shape.is_coded) object.add(member.name + "_meaning", R"({"type": "string"})", false, indent);
  }
}

std::string schema_of(const Shape& shape, const std::string& name, const std::string& loop,
                      const std::string& indent) {
  if (shape.kinds.contains(Kind::list)) {
    if (name == "descriptors") return reference("descriptors_" + loop);
    if (shape.members.empty()) return R"({"type": "array"})";
    const Shape::Member& item = shape.members.front();
    return R"({"type": "array", "items": )" + schema_of(item.shape, item.name, loop, indent + "  ") + "}";
  }
  if (shape.kinds.contains(Kind::record)) {
    Object object;
    add_members(object, shape, loop, indent + "  ");
    return object.text(indent);
  }
  if (shape.kinds.contains(Kind::bytes)) return reference("bytes");
  if (shape.kinds.contains(Kind::text)) return R"({"type": "string"})";
  if (shape.kinds.contains(Kind::time)) return reference("time");
  if (shape.kinds.contains(Kind::duration)) return reference("duration");
  if (shape.kinds.contains(Kind::real)) return R"({"type": ["number", "null"]})";
  return R"({"type": "integer"})";
}

}  // namespace

std::string json_schema() {
  const std::string indent = "\n      ";
  std::string defs = R"(
    "bytes": {"type": "string", "pattern": "^([0-9a-f]{2})*$"},
    "time": {"type": ["string", "null"], "pattern": "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z$"},
    "duration": {"type": ["string", "null"], "pattern": "^[0-9]{2}:[0-9]{2}:[0-9]{2}$"})";
  const auto define = [&defs](const std::string& name, const std::string& schema) {
    defs += ",\n    " + quoted(name) + ": " + schema;
  };

  std::string tables;
  std::set<std::string> elements;
  for (const TableKind& kind : table_kinds()) {
    if (!elements.insert(kind.element).second) continue;
    Object line;
    line.add("input", R"({"type": "string"})", false, indent);
    line.add("pid", R"({"type": "integer", "minimum": 0, "maximum": 8191})", false, indent);
    line.add("packet", R"({"type": "integer", "minimum": 1})", true, indent);
    line.add("time", R"({"type": ["number", "null"]})", false, indent);
    line.add("arrival", R"({"type": "string"})", false, indent);
    line.add("table", R"({"const": ")" + kind.element + "\"}", true, indent);
    add_members(line, observed().at(kind.class_name).standard, kind.family, indent);
    define("table_" + kind.element, line.text("\n    "));
    tables += std::string(tables.empty() ? "" : ",") +
              "\n    {\"if\": {\"properties\": {\"table\": {\"const\": " + quoted(kind.element) +
              "}}}, \"then\": " + reference("table_" + kind.element) + "}";
  }
  std::string names;
  for (const std::string& element : elements) names += (names.empty() ? "" : ", ") + quoted(element);

  // One class may bear different names in different families: the name is set apart from the rest.
  std::set<std::string> classes;
  for (const DescriptorFamily& family : descriptor_families()) {
    std::string kinds;
    std::vector<const DescriptorFamily*> parts;
    for (const DescriptorFamily& other : descriptor_families())
      for (const std::string& name : family.lists)
        if (other.name == name) parts.push_back(&other);
    parts.push_back(&family);
    std::string known;
    for (const DescriptorFamily* part : parts)
      for (const DescriptorKind& kind : part->kinds) {
        kinds += std::string(kinds.empty() ? "" : ",") +
                 "\n      {\"if\": {\"properties\": {\"descriptor\": {\"const\": " + quoted(kind.element) +
                 "}}}, \"then\": " + reference(kind.class_name) + "}";
        known += (known.empty() ? "" : ", ") + quoted(kind.element);
        if (!classes.insert(kind.class_name).second) continue;
        Object object;
        object.add("descriptor", R"({"type": "string"})", true, indent);
        add_members(object, observed().at(kind.class_name).standard, family.name, indent);
        define(kind.class_name, object.text("\n    "));
      }
    define(
        "descriptors_" + family.name,
        R"({"type": "array", "items": {"required": ["descriptor"], "properties": {"descriptor": {"enum": [)" +
            known + R"(]}}, "allOf": [)" + kinds + "]}}");
  }
  return R"({
  "$schema": "https://json-schema.org/draft/2020-12/schema",
  "title": "A line of quillon json",
  "description": "A section with its place in the stream and every field, in the standard reading. Made by the tests.",
  "type": "object",
  "required": ["table"],
  "properties": {"table": {"enum": [)" +
         names + R"(]}},
  "allOf": [)" +
         tables + R"(
  ],
  "$defs": {)" +
         defs + R"(
  }
}
)";
}

}  // namespace quillon::test
