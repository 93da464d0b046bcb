#include "tests/support/docs/header_comments.h"
#include "tests/support/docs/made_pages.h"
#include "tests/support/docs/observed.h"

#include <cstdio>
#include <string_view>

namespace quillon::test {

namespace {

constexpr std::string_view kHeaderOfTable[] = {
    "table_id",       "syntax_indicator",    "section_length",         "context_id", "version_number",
    "section_number", "last_section_number", "current_next_indicator", "crc32"};
constexpr std::string_view kHeaderOfDescriptor[] = {"descriptor_id", "descriptor_length"};

// Of what comes from the headers' prose.
std::string in_a_cell(const std::string& prose) {
  std::string out;
  for (const char c : prose)
    if (c == '|')
      out += "\\|";
    else if (c == '<')
      out += "&lt;";
    else
      out += c;
  return out;
}

std::string hex(int id) {
  char out[8];
  std::snprintf(out, sizeof out, "0x%02X", static_cast<unsigned>(id));
  return out;
}

std::string kind_text(const Shape& shape) {
  if (shape.kinds.contains(Kind::list)) return "list";
  if (shape.kinds.contains(Kind::record)) return "record";
  if (shape.kinds.contains(Kind::bytes)) return "bytes";
  if (shape.kinds.contains(Kind::text)) return "text";
  if (shape.kinds.contains(Kind::time)) return "time, UTC";
  if (shape.kinds.contains(Kind::duration)) return "duration";
  if (shape.kinds.contains(Kind::real)) return "number with a fraction";
  return shape.is_coded ? "number, with its meaning" : "number";
}

class Rows {
 public:
  Rows(const ClassFacts& facts, const std::map<std::string, HeaderComment>& comments)
      : facts_(facts), comments_(comments) {}

  template <class Names>
  std::string of(const std::string& class_name, const Names& header) {
    rows(class_name, &facts_.standard, &facts_.kept, &facts_.document, "", header);
    if (out_.empty()) return "No fields of its own.\n\n";
    return "| Field | Kind | Bits | Document | Report | Notes |\n| --- | --- | --- | --- | --- | --- |\n" +
           out_ + "\n";
  }

 private:
  static const Shape* shape_of(const Shape* parent, const std::string& name) {
    const Shape::Member* const member = parent ? parent->find(name) : nullptr;
    return member ? &member->shape : nullptr;
  }

  template <class Names>
  void rows(const std::string& class_name, const Shape* standard, const Shape* kept, const Shape* document,
            const std::string& path, const Names& header) {
    const auto is_header = [&](const std::string& name) {
      for (const std::string_view known : header)
        if (path.empty() && known == name) return true;
      return false;
    };
    const auto add = [&](const Shape::Member& member) {
      if (is_header(member.name)) return;
      const Shape* const in_kept = shape_of(kept, member.name);
      row(class_name, member, in_kept, shape_of(standard, member.name), shape_of(document, member.name),
          path + member.name);
      const std::string& inner = member.shape.class_name;
      rows(inner.empty() ? class_name : inner, shape_of(standard, member.name), in_kept,
           shape_of(document, member.name), path + member.name + "/", header);
    };
    if (standard)
      for (const Shape::Member& member : standard->members) add(member);
    if (kept)
      for (const Shape::Member& member : kept->members)
        if (!standard || !standard->find(member.name)) add(member);
  }

  void row(const std::string& class_name, const Shape::Member& member, const Shape* kept,
           const Shape* standard, const Shape* document, const std::string& path) {
    const auto known = facts_.fields.find(path);
    const FieldFacts facts = known == facts_.fields.end() ? FieldFacts() : known->second;
    int width = facts.width ? facts.width : facts.kept_width;
    std::string notes;
    const auto note = [&notes](const std::string& text) { notes += (notes.empty() ? "" : " ") + text; };
    if (!kept) note("Standard reading alone.");
    if (!standard) note("Kept reading alone.");
    if (width && facts.kept_width && width != facts.kept_width)
      note("In the kept reading " + std::to_string(facts.kept_width) + " bits.");
    if (const auto comment = comments_.find(class_name); comment != comments_.end()) {
      const std::string name = lower_case(member.name);
      const auto field = comment->second.fields.find(name);
      if (field != comment->second.fields.end() && !member.shape.kinds.contains(Kind::record))
        note(in_a_cell(field->second));
      const auto stated = comment->second.widths.find(name);
      if (!width && stated != comment->second.widths.end()) width = stated->second;
    }
    out_ += "| `" + path + "` | " + kind_text(member.shape) + " | " + (width ? std::to_string(width) : "") +
            " | " + (document ? "yes" : "") + " | " + (facts.is_reported ? "yes" : "") + " | " + notes +
            " |\n";
  }

  const ClassFacts& facts_;
  const std::map<std::string, HeaderComment>& comments_;
  std::string out_;
};

constexpr const char* kFaces =
    "The walk, which `quillon show` and `quillon json` print and a `FieldSink` receives, has every field "
    "below.\n"
    "*Document* and *Report* say which of them the [XML form](xml.md) and the [report](reports.md) of the "
    "kept\n"
    "reading hold as well; a path is that of the document's elements. *Bits* is the width of a number on the "
    "wire,\n"
    "measured on examples: lengths and counts, of which not every value can be tried, may have none. The "
    "page is made\n"
    "by the tests from the library itself.\n\n";

std::string text_of(const std::map<std::string, HeaderComment>& comments, const std::string& name) {
  const auto comment = comments.find(name);
  if (comment == comments.end()) return "";
  return in_a_cell(comment->second.text) + "\n\n";
}

std::string header_of(const std::map<std::string, HeaderComment>& comments, const std::string& name) {
  const auto comment = comments.find(name);
  return comment == comments.end() ? "" : ", `<" + comment->second.header + ">`";
}

}  // namespace

std::string tables_page(const std::filesystem::path& top) {
  const auto comments = header_comments(top);
  std::string out = "# Every table\n\n";
  out += kFaces;
  out +=
      "Before these fields a section has `table_id` (8 bits), `syntax_indicator` (1) and `section_length` "
      "(12). A\n"
      "table of the long form goes on with `context_id` (16), which each table calls by a name of its own "
      "too,\n"
      "`version_number` (5), `current_next_indicator` (1), `section_number` (8) and `last_section_number` "
      "(8), and\n"
      "ends with `crc32` (32). All faces hold them, but the report leaves out `syntax_indicator`; those in "
      "the\n"
      "short form, TDT, TOT and RST, have `table_id` and `section_length` alone.\n\n"
      "| Table ids | Streams | Class | Element |\n| --- | --- | --- | --- |\n";
  const auto ids = [](const TableKind& kind) {
    return hex(kind.first_id) + (kind.last_id == kind.first_id ? "" : " to " + hex(kind.last_id));
  };
  std::map<std::string, const TableKind*> by_class;
  std::vector<std::string> order;
  for (const TableKind& kind : table_kinds()) {
    out += "| " + ids(kind) + " | " + kind.streams + " | [`" + kind.class_name + "`](#" +
           lower_case(kind.class_name) + ") | `" + kind.element + "` |\n";
    if (by_class.emplace(kind.class_name, &kind).second) order.push_back(kind.class_name);
  }
  for (const std::string& name : order) {
    out += "\n## " + name + "\n\n" + text_of(comments, name);
    out += "Element `" + by_class[name]->element + "`" + header_of(comments, name) + ".\n\n";
    out += Rows(observed().at(name), comments).of(name, kHeaderOfTable);
    out.pop_back();
  }
  return out;
}

std::string descriptors_page(const std::filesystem::path& top) {
  const auto comments = header_comments(top);
  std::string out = "# Every descriptor\n\n";
  out += kFaces;
  out +=
      "Before these fields a descriptor has `descriptor_id`, its tag, and `descriptor_length`, of 8 bits "
      "each, which\n"
      "all faces but some reports hold. A descriptor without a class, or whose class refuses it, is a\n"
      "[`DescriptorGeneral`](#descriptorgeneral).\n\n"
      "The loops of DVB's tables know the descriptors of MPEG-2 and DVB; those of the IP/MAC notification "
      "table\n"
      "its own and DVB's; those of ATSC's tables its own, and those of MPEG-2 with `atsc_` before accessor "
      "and\n"
      "element; those of application signalling its own alone.\n";
  std::set<std::string> shown;
  std::string details;
  const auto detail = [&](const std::string& name) {
    if (!shown.insert(name).second) return;
    details += "\n## " + name + "\n\n" + text_of(comments, name);
    if (const auto comment = comments.find(name); comment != comments.end())
      details += "In `<" + comment->second.header + ">`.\n\n";
    details += Rows(observed().at(name), comments).of(name, kHeaderOfDescriptor);
    details.pop_back();
  };
  for (const DescriptorFamily& family : descriptor_families()) {
    if (family.title.empty()) continue;
    out += "\n## " + family.title + "\n\n| Tag | Class | Accessor | Element |\n| --- | --- | --- | --- |\n";
    for (const DescriptorKind& kind : family.kinds) {
      out += "| " + (kind.tag < 0 ? "others" : hex(kind.tag)) + " | [`" + kind.class_name + "`](#" +
             lower_case(kind.class_name) + ") | `get_" + kind.accessor + "` | `" + kind.element + "`" +
             (kind.is_saved ? "" : ", loaded alone") + " |\n";
      detail(kind.class_name);
    }
  }
  return out + details;
}

}  // namespace quillon::test
