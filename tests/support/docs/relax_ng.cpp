#include "tests/support/docs/made_pages.h"
#include "tests/support/docs/observed.h"

#include <set>

namespace quillon::test {

namespace {

// What an attribute holds, by the field of the walk that it saves.
const char* type_of(const Shape& attribute, const Shape* walked) {
  if (!walked) return "text";
  if (walked->kinds.contains(Kind::number)) return "number";
  if (walked->kinds.contains(Kind::real)) return "real";
  if (walked->kinds.contains(Kind::bytes) || walked->kinds.contains(Kind::list)) return "bytes";
  if (walked->kinds.contains(Kind::time)) return "time";
  if (walked->kinds.contains(Kind::duration)) return "duration";
  if (walked->kinds.contains(Kind::record)) return "identifier";
  // Addresses are hexadecimal here, and have their points and colons in a walk.
  return walked->length > attribute.length && !attribute.varies && walked->varies ? "bytes" : "text";
}

class Writer {
 public:
  void line(const std::string& text) { out += std::string(depth_ * 2, ' ') + text + "\n"; }
  void open(const std::string& tag) {
    line("<" + tag + ">");
    ++depth_;
  }
  void close(const std::string& name) {
    --depth_;
    line("</" + name + ">");
  }

  // Attributes and elements of a class, or of what a class has in an element of its own.
  void content(const Shape& shape, const Shape* walked, const std::string& loop) {
    if (shape.members.empty()) line("<empty/>");
    for (const Shape::Member& member : shape.members) {
      const bool is_optional = member.parents != shape.count;
      const Shape::Member* const field = walked ? walked->find(member.name) : nullptr;
      if (is_optional) open("optional");
      if (member.shape.kinds.contains(Kind::text))
        line("<attribute name=\"" + member.name + "\"><ref name=\"" +
             type_of(member.shape, field ? &field->shape : nullptr) + "\"/></attribute>");
      else if (member.name == "descriptors")
        line("<ref name=\"descriptors_" + loop + "\"/>");
      else
        element(member, field ? &field->shape : nullptr, loop);
      if (is_optional) close("optional");
    }
  }

  std::string out;

 private:
  void element(const Shape::Member& member, const Shape* walked, const std::string& loop) {
    open("element name=\"" + member.name + "\"");
    if (walked && walked->kinds.contains(Kind::list)) {
      open("zeroOrMore");
      for (const Shape::Member& item : member.shape.members) {
        const Shape::Member* const row = walked->find(item.name);
        element(item, row ? &row->shape : nullptr, loop);
      }
      if (member.shape.members.empty()) line("<notAllowed/>");
      close("zeroOrMore");
    } else {
      content(member.shape, walked, loop);
    }
    close("element");
  }

  size_t depth_ = 0;
};

constexpr const char* kTypes = R"(  <define name="number">
    <data type="int"/>
  </define>
  <define name="real">
    <data type="double"/>
  </define>
  <define name="text">
    <text/>
  </define>
  <define name="bytes">
    <data type="string"><param name="pattern">([0-9a-f]{2})*</param></data>
  </define>
  <define name="time">
    <data type="string"><param name="pattern">[0-9]+ [0-9]+ -?[0-9]+ [0-9]+ [0-9]+ [0-9]+</param></data>
  </define>
  <define name="duration">
    <data type="string"><param name="pattern">[0-9]+ [0-9]+ [0-9]+</param></data>
  </define>
  <define name="identifier">
    <data type="string"><param name="pattern">[0-9A-F]{8} [0-9A-F]{4}</param></data>
  </define>
)";

}  // namespace

std::string relax_ng() {
  Writer writer;
  writer.line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  writer.line(
      "<!-- The documents that quillon saves: one table, or all tables of a stream. Made by the tests. -->");
  writer.open(
      "grammar xmlns=\"http://relaxng.org/ns/structure/1.0\"\n"
      "         datatypeLibrary=\"http://www.w3.org/2001/XMLSchema-datatypes\"");
  writer.open("start");
  writer.open("choice");
  writer.line("<ref name=\"table\"/>");
  writer.line("<element name=\"transport_stream\"><zeroOrMore><ref name=\"table\"/></zeroOrMore></element>");
  writer.close("choice");
  writer.close("start");
  writer.out += kTypes;

  std::set<std::string> elements;
  writer.open("define name=\"table\"");
  writer.open("choice");
  for (const TableKind& kind : table_kinds())
    if (elements.insert(kind.element).second)
      writer.line("<element name=\"" + kind.element + "\"><ref name=\"" + kind.class_name + "\"/></element>");
  writer.close("choice");
  writer.close("define");

  auto define = [&writer, done = std::set<std::string>()](const std::string& name,
                                                          const std::string& loop) mutable {
    if (!done.insert(name).second) return;
    const ClassFacts& facts = observed().at(name);
    writer.open("define name=\"" + name + "\"");
    writer.content(facts.document, &facts.kept, loop);
    writer.close("define");
  };
  for (const TableKind& kind : table_kinds()) define(kind.class_name, kind.family);
  for (const DescriptorFamily& family : descriptor_families()) {
    writer.open("define name=\"" + family.name + "\"");
    writer.open("choice");
    for (const DescriptorKind& kind : family.kinds)
      writer.line("<element name=\"" + kind.element + "\"><ref name=\"" + kind.class_name + "\"/></element>");
    for (const std::string& other : family.lists) writer.line("<ref name=\"" + other + "\"/>");
    writer.close("choice");
    writer.close("define");
    writer.line("<define name=\"descriptors_" + family.name +
                "\"><element name=\"descriptors\"><zeroOrMore><ref name=\"" + family.name +
                "\"/></zeroOrMore></element></define>");
  }
  for (const DescriptorFamily& family : descriptor_families())
    for (const DescriptorKind& kind : family.kinds) define(kind.class_name, family.name);
  writer.close("grammar");
  return writer.out;
}

}  // namespace quillon::test
