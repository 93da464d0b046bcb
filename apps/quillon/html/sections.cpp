#include "apps/quillon/html/byte_places.h"
#include "apps/quillon/html/page.h"
#include "apps/quillon/parse.h"
#include "apps/quillon/text.h"

#include <algorithm>

#include <quillon/xml/attributes.h>

namespace quillon::app::html {

namespace {

// What the sections of an input may take of its page.
constexpr size_t kMostMarkup = size_t{3} << 20;

void write_fields(Markup& out, const Field& of) {
  out.begin("ul");
  for (const Field& field : of.items) {
    // The bytes of what is around it count where its own are not known.
    if (field.span.size > 0)
      out.begin("li", {{"data-b", std::to_string(field.span.begin) + " " + std::to_string(field.span.size)}});
    else
      out.begin("li");
    out.element("b", field.name);
    switch (field.shape) {
      case Field::Shape::text:
        out.text(" ").begin("q").name(field.value).end();
        break;
      case Field::Shape::list:
        out.text(" ").element("i", field.value);
        break;
      default:
        if (!field.value.empty()) out.text(" ").text(field.value);
    }
    if (!field.meaning.empty()) out.text(" ").element("em", field.meaning);
    if (!field.items.empty()) write_fields(out, field);
    out.end();
  }
  out.end();
}

std::string hex_of(std::span<const uint8_t> bytes) {
  std::string out;
  for (size_t i = 0; i < bytes.size(); ++i) {
    bin2str(&bytes[i], out, 1);
    out += i % 16 == 15 ? '\n' : ' ';
  }
  return out;
}

std::string title_of(const Page& page, const KeptSection& kept) {
  const StreamSection section = kept.view();
  std::string out = page.input.is_chain ? "section " : "packet ";
  out += grouped(kept.packet + 1);
  if (page.has_clock()) out += ", " + seconds_text(kept.seconds);
  if (section.is_long())
    out += ": " + hex(static_cast<unsigned>(section.extension()), 4) + ", version " +
           std::to_string(section.version()) + (section.is_current() ? "" : " (next)") + ", section " +
           std::to_string(section.section_number()) + " of " +
           std::to_string(section.last_section_number() + 1);
  return out + ", " + grouped(kept.bytes.size()) + " bytes";
}

std::string section_markup(const Page& page, const KeptSection& kept) {
  Markup out;
  const ParsedTable parsed = parse(kept.bytes, page.input.standard, Reading::standard);
  out.begin("details", {{"class", kept.crc_ok && parsed.refused.empty() ? "section" : "section broken"}})
      .element("summary", title_of(page, kept))
      .begin("div", {{"class", "pair"}})
      .begin("div", {{"class", "tree"}});
  if (!kept.crc_ok) out.element("p", {{"class", "bad"}}, "The CRC is wrong.");
  if (!parsed.refused.empty()) out.element("p", {{"class", "bad"}}, "Refused: " + parsed.refused);
  if (parsed.table) {
    for (const DescriptorFailure& failure : parsed.table->get_descriptor_failures())
      out.element("p", {{"class", "bad"}}, "Kept as it is, " + name_of(failure) + ": " + text_of(failure));
    Field root = FieldTree::of(*parsed.table);
    place_bytes(root, kept.bytes);
    write_fields(out, root);
  }
  out.end().element("pre", {{"tabindex", 0}, {"aria-label", "Bytes"}}, {}).end().end();
  std::string text = out.take();
  return text.insert(text.rfind("</pre>"), hex_of(kept.bytes));
}

struct Rendered {
  SectionSample::Key key;
  uint64_t met = 0;
  size_t size = 0;
  std::vector<std::string> sections;
};

// Every second section goes of what takes the most room, until the rest has its place.
void thin(std::vector<Rendered>& groups) {
  size_t all = 0;
  for (const Rendered& group : groups) all += group.size;
  while (all > kMostMarkup) {
    Rendered& largest = *std::max_element(
        groups.begin(), groups.end(), [](const Rendered& a, const Rendered& b) { return a.size < b.size; });
    all -= largest.size;
    std::vector<std::string> left;
    if (largest.sections.size() > 1)
      for (size_t i = 0; i < largest.sections.size(); i += 2) left.push_back(std::move(largest.sections[i]));
    largest.sections = std::move(left);
    largest.size = 0;
    for (const std::string& section : largest.sections) largest.size += section.size();
    all += largest.size;
  }
}

}  // namespace

void write_sections(Page& page) {
  const SectionSample& sample = page.record.sample;
  if (sample.met() == 0) return;
  std::vector<Rendered> groups;
  for (const auto& [key, group] : sample.groups()) {
    Rendered rendered{key, group.met, 0, {}};
    for (const KeptSection& kept : group.kept) {
      rendered.sections.push_back(section_markup(page, kept));
      rendered.size += rendered.sections.back().size();
    }
    groups.push_back(std::move(rendered));
  }
  thin(groups);
  size_t shown = 0;
  for (const Rendered& group : groups) shown += group.sections.size();

  const Part part(page, "sections", "Sections");
  Markup& out = page.out;
  const std::string id = page.id("sections");
  out.begin("p", {{"class", "note"}});
  if (shown == sample.met())
    out.text("All " + grouped(shown) + " distinct sections, field by field.");
  else
    out.text("A sample: " + grouped(shown) + " of " + grouped(sample.met()) +
             " distinct sections, spread evenly over those of each table.");
  out.text(
         " Where a field is pointed at, or chosen with the arrow keys, its bytes light up; where these are "
         "not known, those of the descriptor around it.")
      .end();
  out.begin("div", {{"class", "search"}, {"hidden", ""}, {"data-for", id + "-list"}})
      .element("label", {{"for", id + "-search"}}, "Search in names, values and bytes")
      .empty("input", {{"id", id + "-search"}, {"type", "search"}, {"autocomplete", "off"}})
      .element("output", {{"for", id + "-search"}}, "")
      .end();
  out.begin("div", {{"id", id + "-list"}, {"class", "groups"}});
  for (const Rendered& group : groups) {
    const auto& [pid, table_id] = group.key;
    out.begin("details",
              {{"class", "group"}, {"data-table", table_id}, {"data-met", static_cast<double>(group.met)}})
        .begin("summary")
        .element("b", table_title(table_id, page.input.standard))
        .text(pid < 0 ? " " : " PID " + pid_text(pid) + " ")
        .element("small", group.sections.size() == group.met
                              ? grouped(group.met) + (group.met == 1 ? " section" : " sections")
                              : grouped(group.sections.size()) + " of " + grouped(group.met))
        .end();
    for (const std::string& section : group.sections) out.made(section);
    out.end();
  }
  out.end();
}

}  // namespace quillon::app::html
